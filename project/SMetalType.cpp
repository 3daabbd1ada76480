#include "SMetalType.h"

#include "SGeoClassID.h"
#include "SInitializationFile.h"
#include "SMaterialTypeIO.h"
#include "SProjectStream.h"

SCOLLECTABLE_DEFINE(SMetalType, SID_METALTYPE, &SEnclosure::staticTypeInfo())
SCOLLECTABLE_DEFINE(SReadMetal, SID_READMETAL, &SMetalType::staticTypeInfo())

namespace {
double CurrentRatioDefault() {
  SInitializationFile* ini = SInitializationFile::GetGlobal();
  return ini != nullptr ? ini->GetDouble("Planform", "CurrentRatioDefault", 0.5) : 0.5;
}

const char* const kModelWords[] = {"NOR", "TMM", "RES", "NAT", "SUP", "RUF", "SEN"};
}  // namespace

SMetalTypeData::SMetalTypeData() {
  itsCurrentRatio.SetValue(CurrentRatioDefault());
  itsNumSheets.SetValue(2);
  itsConductivity.SetUnitKind(SValueVar::Conductivity);
  itsThickness.SetUnitKind(SValueVar::Length);
}

SMetalType::SMetalType() {}

SMetalType::SMetalType(const SString& name, int definition, int pattern, int model, double rdc, double rrf,
                       double xdc, double ls) {
  itsTypeName = name;
  itsDefinition = definition;
  SetPattern(pattern);
  itsModel = model;
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
         itsModel == o.itsModel && same(itsRdc, o.itsRdc) && same(itsRrf, o.itsRrf) &&
         same(itsXdc, o.itsXdc) && same(itsLs, o.itsLs) && same(itsConductivity, o.itsConductivity) &&
         itsCondIsInf == o.itsCondIsInf && same(itsCurrentRatio, o.itsCurrentRatio) &&
         same(itsThickness, o.itsThickness) && same(itsTopRoughness, o.itsTopRoughness) &&
         same(itsBottomRoughness, o.itsBottomRoughness) && same(itsNumSheets, o.itsNumSheets) &&
         itsRoughnessType == o.itsRoughnessType && itsRoughnessModel == o.itsRoughnessModel &&
         itsThickDirection == o.itsThickDirection && itsLossType.GetCode() == o.itsLossType.GetCode();
}

namespace {
SString Num(const SValueVarDouble& v) { return v.HasEquation() ? v.GetEquation() : SString::number(v.GetValue(), 6); }

SString Cond(const SMetalTypeData& m) { return m.itsCondIsInf ? SString("INF") : Num(m.itsConductivity); }

void Field(SProjectStream& out, const SValueVarDouble& value) {
  value.WriteValue(out);
  out << ' ';
}

// A length in the file's unit: older feet files hold inches.
void LengthField(SProjectStream& out, const SValueVarDouble& value, const SDimensionBlock* dim) {
  SMaterialTypeIO::WriteLength(out, value, dim);
  out << ' ';
}
}  // namespace

SString SMetalType::Describe() const {
  switch (itsDefinition) {
  case WGLoad: return "WG Load";
  case Lossless: return "Lossless";
  case FreeSpace: return "Free Space";
  default: break;
  }
  const SString common = "Cnd:" + Cond(*this) + " T:" + Num(itsThickness) + " CR:" + Num(itsCurrentRatio);
  switch (itsModel) {
  case Normal: return "Normal: " + common;
  case ThickMetal: return "TMM-" + Num(itsNumSheets) + ": " + common + " NS:" + Num(itsNumSheets);
  case Resistor: return "Resistor: Rdc:" + Num(itsRdc);
  case RdcRrf: return "Rdc/Rrf: Rdc:" + Num(itsRdc) + " Rrf:" + Num(itsRrf);
  case General:
    return "General: Rdc:" + Num(itsRdc) + " Rrf:" + Num(itsRrf) + " Xdc:" + Num(itsXdc) + " Ls:" + Num(itsLs);
  case Rough:
    return SString(itsRoughnessType == 1 ? "Rough thin: " : "Rough thick: ") + common + " Top:" +
           Num(itsTopRoughness) + " Bot:" + Num(itsBottomRoughness);
  case Sense: return "Sense: Xdc:" + Num(itsXdc);
  default: return SString();
  }
}

SString SMetalType::ToText() const { return itsTypeName + ":  Planar " + Describe(); }

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
  // Older formats know fewer models: each falls back on the nearest one they hold.
  int model = itsModel;
  const bool thin = itsRoughnessType == 1 || (format < 19 && itsThickDirection != 0);
  if (model == Rough && format < 10) model = thin ? Normal : ThickMetal;
  if (model == ThickMetal && (format < 4 || (format < 19 && itsThickDirection != 0))) model = Normal;
  const int loss = itsLossType.GetCode();
  const bool lossWord = format >= 15 && loss != SElectricalLossType::Conductivity;
  auto conductivity = [&] {
    SMaterialTypeIO::WriteConductiveLoss(out, itsConductivity, itsCondIsInf, loss, &itsThickness, format, dim, true);
  };
  if (model == Rough && format < 12) {
    // ROG: ratio, bottom roughness, sheets, thickness, roughness model, conductivity.
    out << "ROG ";
    Field(out, itsCurrentRatio);
    LengthField(out, itsBottomRoughness, dim);
    out << (thin ? 1 : 2) << ' ';
    LengthField(out, itsThickness, dim);
    out << (itsRoughnessModel == 1 ? "RR " : "SR ");
    conductivity();
    out << '\n';
    return;
  }
  out << kModelWords[model] << ' ';
  switch (model) {
  case Normal:
    conductivity();
    LengthField(out, itsThickness, dim);
    Field(out, itsCurrentRatio);
    if (lossWord) out << ' ' << itsLossType.Keyword();
    break;
  case ThickMetal:
    conductivity();
    LengthField(out, itsThickness, dim);
    Field(out, itsCurrentRatio);
    if (format >= 15)
      itsNumSheets.WriteValue(out);
    else
      out << static_cast<int>(itsNumSheets.GetValue());
    if (lossWord || itsThickDirection != 0) out << ' ' << itsLossType.Keyword();
    if (format >= 19 && itsThickDirection == 1) out << " TDWN";
    break;
  case Resistor: itsRdc.WriteValue(out); break;
  case RdcRrf:
    Field(out, itsRdc);
    itsRrf.WriteValue(out);
    break;
  case General:
    Field(out, itsRdc);
    Field(out, itsRrf);
    Field(out, itsXdc);
    itsLs.WriteValue(out);
    break;
  case Sense: itsXdc.WriteValue(out); break;
  case Rough:
    out << (thin ? "THN " : "THK ");
    conductivity();
    Field(out, itsCurrentRatio);
    for (const SValueVarDouble* v : {&itsTopRoughness, &itsBottomRoughness, &itsThickness}) LengthField(out, *v, dim);
    if (lossWord) out << itsLossType.Keyword();
    if (!thin && itsThickDirection == 1) out << " TDWN";
    break;
  default: break;
  }
  out << '\n';
}
