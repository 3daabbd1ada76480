#include "SViaMetalType.h"

#include "SGeoClassID.h"
#include "SMetalType.h"
#include "SProjectStream.h"
#include "SVeloraError.h"

SCOLLECTABLE_DEFINE(SViaMetalType, SID_VIAMETALTYPE, &SEnclosure::staticTypeInfo())

SViaMetalTypeData::SViaMetalTypeData(bool infinite, bool solid) : itsCondIsInf(infinite), itsIsSolid(solid) {
  itsFillFactor.SetValue(100);
  itsViaDensity.SetValue(1);
  itsConductivity.SetUnitKind(SValueVar::Conductivity);
  itsWallThickness.SetUnitKind(SValueVar::Length);
}

SViaMetalType::SViaMetalType() {}

SViaMetalType::SViaMetalType(const SString& name, int pattern, bool infinite, bool solid, int specification,
                             double conductivity, double wallThickness)
    : SViaMetalTypeData(infinite, solid) {
  itsTypeName = name;
  SetPattern(pattern);
  itsSpecification = specification;
  itsConductivity.SetValue(conductivity);
  itsWallThickness.SetValue(wallThickness);
}

bool SViaMetalType::IsSameAs(const SViaMetalType& o) const {
  auto same = [](const SValueVarDouble& a, const SValueVarDouble& b) {
    return a.GetValue() == b.GetValue() && a.GetEquation() == b.GetEquation();
  };
  return itsTypeName == o.itsTypeName && itsSpecification == o.itsSpecification && same(itsRdc, o.itsRdc) &&
         same(itsRrf, o.itsRrf) && same(itsXdc, o.itsXdc) && same(itsFillFactor, o.itsFillFactor) &&
         same(itsViaDensity, o.itsViaDensity) && itsCondIsInf == o.itsCondIsInf && itsIsSolid == o.itsIsSolid &&
         same(itsConductivity, o.itsConductivity) && same(itsWallThickness, o.itsWallThickness) &&
         itsLinkedMetalName == o.itsLinkedMetalName && itsLossType.GetCode() == o.itsLossType.GetCode();
}

void SViaMetalType::Write(SProjectStream& out, int format, const SDimensionBlock*) const {
  if (format < 3) SFATAL("VL1010", "Illegal Via output in wrong save format");
  if (format < 11) return;
  out << "MET \"" << itsTypeName << "\" " << itsPattern << ' ';
  const bool lossWord = format >= 15 && itsLossType.GetCode() != SElectricalLossType::Conductivity;
  auto conductivity = [&] {
    if (itsCondIsInf) {
      out << "INF ";
    } else {
      itsConductivity.WriteValue(out);
      out << ' ';
    }
  };
  switch (itsSpecification) {
  case Surface:
    out << "SFC ";
    itsRdc.WriteValue(out);
    out << ' ';
    itsRrf.WriteValue(out);
    out << ' ';
    itsXdc.WriteValue(out);
    break;
  case Array: {
    out << "ARR ";
    conductivity();
    itsFillFactor.WriteValue(out);
    const bool linked = !itsLinkedMetalName.isEmpty() || itsLinkedMetal != nullptr;
    const bool extra = format >= 15 && (itsLossType.GetCode() == SElectricalLossType::ResistancePerVia ||
                                        itsViaDensity.HasEquation() || itsViaDensity.GetValue() != 1.0 || linked);
    if (extra) {
      out << ' ' << itsLossType.Keyword() << ' ';
      itsViaDensity.WriteValue(out);
      if (linked)
        out << " \"" << (itsLinkedMetal != nullptr ? itsLinkedMetal->GetTypeName() : itsLinkedMetalName) << '"';
    } else if (lossWord) {
      out << ' ' << itsLossType.Keyword();
    }
    break;
  }
  default:
    out << "VOL ";
    conductivity();
    if (itsIsSolid) out << "SOLID ";
    itsWallThickness.WriteValue(out);
    if (lossWord) out << ' ' << itsLossType.Keyword();
    break;
  }
  out << '\n';
}
