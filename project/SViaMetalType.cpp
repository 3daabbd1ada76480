#include "SViaMetalType.h"

#include "SGeoClassID.h"
#include "SMaterialTypeIO.h"
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

SViaMetalType::SViaMetalType(const SString& name, int pattern, bool infinite, bool solid, int model,
                             double conductivity, double wallThickness)
    : SMaterialType<SViaMetalTypeData>(infinite, solid) {
  itsTypeName = name;
  SetPattern(pattern);
  itsModel = model;
  itsConductivity.SetValue(conductivity);
  itsWallThickness.SetValue(wallThickness);
}

bool SViaMetalType::IsSameAs(const SViaMetalType& o) const {
  auto same = [](const SValueVarDouble& a, const SValueVarDouble& b) {
    return a.GetValue() == b.GetValue() && a.GetEquation() == b.GetEquation();
  };
  return itsTypeName == o.itsTypeName && itsModel == o.itsModel && same(itsRdc, o.itsRdc) &&
         same(itsRrf, o.itsRrf) && same(itsXdc, o.itsXdc) && same(itsFillFactor, o.itsFillFactor) &&
         same(itsViaDensity, o.itsViaDensity) && itsCondIsInf == o.itsCondIsInf && itsIsSolid == o.itsIsSolid &&
         same(itsConductivity, o.itsConductivity) && same(itsWallThickness, o.itsWallThickness) &&
         itsLinkedMetalName == o.itsLinkedMetalName && itsLossType.GetCode() == o.itsLossType.GetCode();
}

int SViaMetalType::GetElectricalLossType() const {
  // Bounded: a file may link vias in a ring.
  const SViaMetalTypeData* via = this;
  for (int hops = 0; hops < 64 && via->itsLinkedMetal == nullptr && via->itsLinkedVia != nullptr; ++hops)
    via = via->itsLinkedVia;
  if (via->itsLinkedMetal != nullptr) return via->itsLinkedMetal->GetLossType().GetCode();
  return via->GetLossType().GetCode();
}

namespace {
SString Num(const SValueVarDouble& v) { return v.HasEquation() ? v.GetEquation() : SString::number(v.GetValue(), 6); }
}  // namespace

SString SViaMetalType::Describe() const {
  if (itsDefinition == 1) return "Lossless";
  const SString cond = itsCondIsInf ? SString("INF") : Num(itsConductivity);
  switch (itsModel) {
  case Surface: return "Surface: Rdc:" + Num(itsRdc) + " Rrf:" + Num(itsRrf) + " Xdc:" + Num(itsXdc);
  case Array: return "Array: Cnd:" + cond + " FF:" + Num(itsFillFactor) + " VD:" + Num(itsViaDensity);
  default: return SString(itsIsSolid ? "Volume solid: Cnd:" : "Volume: Cnd:") + cond + " WT:" + Num(itsWallThickness);
  }
}

SString SViaMetalType::ToText() const { return itsTypeName + ":  Via " + Describe(); }

void SViaMetalType::Write(SProjectStream& out, int format, const SDimensionBlock* dim) const {
  if (format < 3) SFATAL("VL1010", "Illegal Via output in wrong save format");
  if (format < 11) return;
  out << "MET \"" << itsTypeName << "\" " << itsPattern << ' ';
  const int loss = itsLossType.GetCode();
  const bool lossWord = format >= 15 && loss != SElectricalLossType::Conductivity;
  auto conductivity = [&] {
    SMaterialTypeIO::WriteConductiveLoss(out, itsConductivity, itsCondIsInf, loss, nullptr, format, dim, true);
  };
  switch (itsModel) {
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
    out << ' ';
    itsFillFactor.WriteValue(out);
    const SString linked = itsLinkedMetal != nullptr ? itsLinkedMetal->GetTypeName() : itsLinkedMetalName;
    // Density and link stand behind the loss word, so any of them brings it along.
    const bool tail = format >= 15 && (loss == SElectricalLossType::ResistancePerVia || itsViaDensity.HasEquation() ||
                                       itsViaDensity.GetValue() != 1.0 || !linked.isEmpty());
    if (tail) {
      out << ' ' << itsLossType.Keyword() << ' ';
      itsViaDensity.WriteValue(out);
      if (!linked.isEmpty()) out << " \"" << linked << '"';
    } else if (lossWord) {
      out << ' ' << itsLossType.Keyword();
    }
    break;
  }
  default:
    out << "VOL ";
    conductivity();
    if (itsIsSolid) out << "SOLID ";
    SMaterialTypeIO::WriteLength(out, itsWallThickness, dim);
    if (lossWord) out << ' ' << itsLossType.Keyword();
    break;
  }
  out << '\n';
}
