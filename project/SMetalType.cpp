#include "SMetalType.h"

#include "SDimensionBlock.h"
#include "SGeoClassID.h"
#include "SInitializationFile.h"
#include "SProjectStream.h"

SCOLLECTABLE_DEFINE(SMetalType, SID_METALTYPE, &SEnclosure::staticTypeInfo())
SCOLLECTABLE_DEFINE(SReadMetal, SID_READMETAL, &SMetalType::staticTypeInfo())

namespace {
double CurrentRatioDefault() {
  SInitializationFile* ini = SInitializationFile::GetGlobal();
  return ini != nullptr ? ini->GetDouble("Planform", "CurrentRatioDefault", 0.5) : 0.5;
}

const char* const kSpecWords[] = {"NOR", "TMM", "RES", "NAT", "SUP", "RUF", "SEN"};
}  // namespace

SMetalTypeData::SMetalTypeData() {
  itsCurrentRatio.SetValue(CurrentRatioDefault());
  itsNumSheets.SetValue(2);
  itsConductivity.SetUnitKind(SValueVar::Conductivity);
  itsThickness.SetUnitKind(SValueVar::Length);
}

SMetalType::SMetalType() {}

SMetalType::SMetalType(const SString& name, int definition, int pattern, int specification, double rdc, double rrf,
                       double xdc, double ls) {
  itsTypeName = name;
  itsDefinition = definition;
  SetPattern(pattern);
  itsSpecification = specification;
  itsRdc.SetValue(rdc);
  itsRrf.SetValue(rrf);
  itsXdc.SetValue(xdc);
  itsLs.SetValue(ls);
}

bool SMetalType::IsSameAs(const SMetalType& o) const {
  auto same = [](const SValueVarDouble& a, const SValueVarDouble& b) {
    return a.GetValue() == b.GetValue() && a.GetEquation() == b.GetEquation();
  };
  return itsTypeName == o.itsTypeName && itsDefinition == o.itsDefinition &&
         itsSpecification == o.itsSpecification && same(itsRdc, o.itsRdc) && same(itsRrf, o.itsRrf) &&
         same(itsXdc, o.itsXdc) && same(itsLs, o.itsLs) && same(itsConductivity, o.itsConductivity) &&
         itsCondIsInf == o.itsCondIsInf && same(itsCurrentRatio, o.itsCurrentRatio) &&
         same(itsThickness, o.itsThickness) && same(itsTopRoughness, o.itsTopRoughness) &&
         same(itsBottomRoughness, o.itsBottomRoughness) && same(itsNumSheets, o.itsNumSheets) &&
         itsRoughnessType == o.itsRoughnessType && itsRoughnessModel == o.itsRoughnessModel &&
         itsThickDirection == o.itsThickDirection && itsLossType.GetCode() == o.itsLossType.GetCode();
}

namespace {
// "INF " or the value and a blank; older forms hold conductivity in S/m only.
void WriteConductivity(SProjectStream& out, const SMetalTypeData& metal, int format, const SDimensionBlock* dim) {
  if (metal.itsCondIsInf) {
    out << "INF ";
    return;
  }
  if (format < 15 && dim != nullptr && !metal.itsConductivity.HasEquation()) {
    double value = metal.itsConductivity.GetValue();
    const int code = metal.GetLossType().GetCode();
    if (code == SElectricalLossType::Resistivity) {
      const double rho = dim->ToBase(SDimensionBlock::Resistivity, value);
      value = rho > 0 ? 1.0 / rho : 0.0;
    } else if (code == SElectricalLossType::SheetResistance) {
      const double rs = dim->ToBase(SDimensionBlock::SheetResistance, value);
      const double t = dim->ToBase(SDimensionBlock::Length, metal.itsThickness.GetValue());
      value = rs > 0 && t > 0 ? 1.0 / (rs * t) : 0.0;
    } else {
      value = dim->ToBase(SDimensionBlock::Conductivity, value);
    }
    out.Number(value, 15) << ' ';
    return;
  }
  metal.itsConductivity.WriteValue(out);
  out << ' ';
}
}  // namespace

void SMetalType::Write(SProjectStream& out, int format, const SDimensionBlock* dim) const {
  out << (itsLocation == TopCover ? "TMET" : itsLocation == BottomCover ? "BMET" : "MET") << " \"" << itsTypeName
      << "\" " << itsPattern << ' ';
  if (itsDefinition == WGLoad) {
    out << "WGLOAD\n";
    return;
  }
  if (itsDefinition == FreeSpace) {
    out << "FREESPACE 376.7303136 0 0 0\n";
    return;
  }
  int spec = itsSpecification;
  const bool thin = itsRoughnessType == 1 || (format < 19 && itsThickDirection != 0);
  if (spec == Rough && format < 10) spec = thin ? Normal : ThickMetal;
  if (spec == ThickMetal && (format < 4 || (format < 19 && itsThickDirection != 0))) spec = Normal;
  const bool lossWord = format >= 15 && itsLossType.GetCode() != SElectricalLossType::Conductivity;
  out << kSpecWords[spec] << ' ';
  switch (spec) {
  case Normal:
  case ThickMetal:
    WriteConductivity(out, *this, format, dim);
    itsThickness.WriteValue(out);
    out << ' ';
    itsCurrentRatio.WriteValue(out);
    out << ' ';
    if (spec == Normal) {
      if (lossWord) out << ' ' << itsLossType.Keyword();
    } else {
      if (format >= 15)
        itsNumSheets.WriteValue(out);
      else
        out << static_cast<int>(itsNumSheets.GetValue());
      if (lossWord || itsThickDirection != 0) out << ' ' << itsLossType.Keyword();
      if (format >= 19 && itsThickDirection == 1) out << " TDWN";
    }
    break;
  case Resistor: itsRdc.WriteValue(out); break;
  case RdcRrf:
    itsRdc.WriteValue(out);
    out << ' ';
    itsRrf.WriteValue(out);
    break;
  case General:
    itsRdc.WriteValue(out);
    out << ' ';
    itsRrf.WriteValue(out);
    out << ' ';
    itsXdc.WriteValue(out);
    out << ' ';
    itsLs.WriteValue(out);
    break;
  case Sense: itsXdc.WriteValue(out); break;
  case Rough:
    out << (thin ? "THN " : "THK ");
    WriteConductivity(out, *this, format, dim);
    for (const SValueVarDouble* v : {&itsCurrentRatio, &itsTopRoughness, &itsBottomRoughness, &itsThickness}) {
      v->WriteValue(out);
      out << ' ';
    }
    if (lossWord) out << itsLossType.Keyword();
    if (!thin && itsThickDirection == 1) out << " TDWN";
    break;
  default: break;
  }
  out << '\n';
}
