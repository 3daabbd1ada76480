#include "SMatlMetalData.h"

#include "SMatlDrawLayer.h"
#include "SMatlUtil.h"
#include "SProjectStream.h"
#include "SVeloraTrace.h"

const SMatlWord SMatlMetalData::kMetalTypes[] = {
    {"Normal", Normal},   {"ThickMetalModel", ThickMetalModel}, {"Resistor", Resistor},     {"Rdc/Rrf", RdcRrf},
    {"General", General}, {"RoughMetal", RoughMetal},           {"SenseMetal", SenseMetal}, {nullptr, 0}};
const SMatlWord SMatlMetalData::kFillTypes[] = {
    {"Staircase", Staircase}, {"Diagonal", Diagonal}, {"Conformal", Conformal}, {"Default", DefaultFill}, {nullptr, 0}};
const SMatlWord SMatlMetalData::kCrossSections[] = {
    {"Thin", Thin}, {"Thick", Thick}, {"ThickDown", ThickDown}, {"ThickUp", ThickUp}, {nullptr, 0}};
const SMatlWord SMatlMetalData::kLossTypes[] = {{"Cond", Cond}, {"Res", Res}, {"RPV", RPV}, {"ShRes", ShRes}, {nullptr, 0}};
const SMatlWord SMatlMetalData::kEdgeMesh[] = {{"EdgeMeshOn", 1}, {"EdgeMeshOff", 0}, {nullptr, 0}};

SMatlMetalData::SMatlMetalData() {}

const char* SMatlMetalData::MetalTypeName(int code) {
  const char* word = SMatlFieldReader::WordOf(kMetalTypes, code);
  return word ? word : "General";
}

const char* SMatlMetalData::FillTypeName(int code) {
  const char* word = SMatlFieldReader::WordOf(kFillTypes, code);
  return word ? word : "Default";
}

const char* SMatlMetalData::CrossSectionName(int code) {
  const char* word = SMatlFieldReader::WordOf(kCrossSections, code);
  return word ? word : "Thin";
}

const char* SMatlMetalData::LossTypeName(int code) {
  const char* word = SMatlFieldReader::WordOf(kLossTypes, code);
  return word ? word : "Cond";
}

void SMatlMetalData::SetConductivityInfinite(bool on) {
  itsCondInf = on;
  if (on) itsConductivity.SetValue(kInfinite);
}

bool SMatlMetalData::SetUnusedToDefault(const SString&) {
  // The values of the types that take their loss from Rdc, Rrf, Xdc and Ls.
  auto common = [this]() {
    itsLossType = Cond;
    SetConductivityInfinite(true);
    itsCurrentRatio.SetValue(0.0);
    itsThickness.SetValue(0.0);
    itsNumSheets = 2;
    itsCrossSection = Thin;
    itsTopRoughness.SetValue(0.0);
    itsBottomRoughness.SetValue(0.0);
  };
  auto zero = [](std::initializer_list<SValueVarDouble*> values) {
    for (SValueVarDouble* value : values) value->SetValue(0.0);
  };
  // Thick and rough metals keep their thickness: their lines need one above 0, so a file
  // written after the reset must still read.
  switch (itsMetalType) {
    case Normal:
      zero({&itsRdc, &itsRrf, &itsXdc, &itsLs, &itsTopRoughness, &itsBottomRoughness});
      itsNumSheets = 2;
      itsCrossSection = Thin;
      return true;
    case ThickMetalModel:
      zero({&itsRdc, &itsRrf, &itsXdc, &itsLs, &itsTopRoughness, &itsBottomRoughness});
      itsCrossSection = Thick;
      return true;
    case Resistor:
      zero({&itsRrf, &itsXdc, &itsLs});
      common();
      return true;
    case RdcRrf:
      zero({&itsXdc, &itsLs});
      common();
      return true;
    case General:
      common();
      return true;
    case SenseMetal:
      zero({&itsRdc, &itsRrf, &itsLs});
      common();
      return true;
    case RoughMetal:
      zero({&itsRdc, &itsRrf, &itsXdc, &itsLs});
      itsNumSheets = 2;
      return true;
    default:
      VeloraTrace(3, TRACE_ERRORS, "Attempting to set metal properties for unknown metal type.");
      return false;
  }
}

bool SMatlMetalData::IsSameMetal(const SMatlMetalData& o) const {
  const SValueVarDouble SMatlMetalData::*values[] = {
      &SMatlMetalData::itsGrowth,       &SMatlMetalData::itsRdc,       &SMatlMetalData::itsRrf,
      &SMatlMetalData::itsXdc,          &SMatlMetalData::itsLs,        &SMatlMetalData::itsConductivity,
      &SMatlMetalData::itsThickness,    &SMatlMetalData::itsCurrentRatio, &SMatlMetalData::itsTopRoughness,
      &SMatlMetalData::itsBottomRoughness};
  for (auto value : values)
    if (!SMatlUtil::SameValue(this->*value, o.*value)) return false;
  return itsMetalName == o.itsMetalName && itsMetalType == o.itsMetalType && itsCondInf == o.itsCondInf &&
         itsNumSheets == o.itsNumSheets && itsFillType == o.itsFillType && itsXMin == o.itsXMin &&
         itsXMax == o.itsXMax && itsYMin == o.itsYMin && itsYMax == o.itsYMax && itsEdgeMesh == o.itsEdgeMesh &&
         itsCrossSection == o.itsCrossSection && itsTopRoughnessType == o.itsTopRoughnessType &&
         itsLossType == o.itsLossType && itsTruncate == o.itsTruncate;
}

void SMatlMetalData::ScaleMetal(int dimension, double factor) {
  switch (dimension) {
    case SMatlUtil::Length:
      for (SValueVarDouble* value : {&itsGrowth, &itsThickness, &itsTopRoughness, &itsBottomRoughness})
        SMatlUtil::ScaleValue(*value, factor);
      return;
    case SMatlUtil::Conductivity:
      if (itsLossType == Cond && !itsCondInf) SMatlUtil::ScaleValue(itsConductivity, factor);
      return;
    case SMatlUtil::Resistivity:
      if (itsLossType == Res && !itsCondInf) SMatlUtil::ScaleValue(itsConductivity, factor);
      return;
    case SMatlUtil::SheetResistance:
      if (itsLossType == ShRes && !itsCondInf) SMatlUtil::ScaleValue(itsConductivity, factor);
      return;
    default:
      return;
  }
}

void SMatlMetalData::WriteConductivity(SProjectStream& out) const {
  out << ' ';
  if (itsCondInf)
    out << "INF";
  else if (itsTruncate && !itsConductivity.HasEquation())
    out.Number(itsConductivity.GetValue(), 4);
  else
    SMatlUtil::Instance().WriteValue(out, itsConductivity);
}

void SMatlMetalData::WriteValue(SProjectStream& out, const SValueVarDouble& value) {
  out << ' ';
  SMatlUtil::Instance().WriteValue(out, value);
}

bool SMatlMetalData::ReadConductivity(SMatlFieldReader& reader, int metalType, const SMatlFieldMessages& messages) {
  bool infinite = itsCondInf;
  if (!reader.RealOrInf(itsConductivity, infinite, messages)) return false;
  if (reader.IsEnded()) {
    // A rough metal can't do without a conductivity: copper's stands in.
    if (metalType == RoughMetal) {
      itsConductivity.SetValue(kRoughDefaultConductivity);
      itsCondInf = false;
      reader.Warn(20103);
    }
    return true;
  }
  itsCondInf = infinite;
  if (infinite) return true;
  const double value = itsConductivity.GetValue();
  const bool rough = metalType == RoughMetal;
  if (rough ? value > 0.0 : value >= 0.0) return true;
  VeloraTrace(3, TRACE_ERRORS, "Invalid metal conductivity %g found at line %d.", value,
              static_cast<int>(reader.GetLineNumber()));
  return reader.Fail(rough ? 20043 : 20040, reader.GetToken());
}

bool SMatlMetalData::ReadThickness(SMatlFieldReader& reader, int metalType, bool zeroAllowed,
                                   const SMatlFieldMessages& messages) {
  if (!reader.Real(itsThickness, messages)) return false;
  const bool needed = !zeroAllowed && (metalType == ThickMetalModel || metalType == RoughMetal ||
                                       (metalType == Normal && !itsCondInf));
  // A line that ends before a thickness its type needs would keep 0, which the type can't
  // have: written out, such a line would not read back.
  if (reader.IsEnded()) return !needed || reader.Fail(messages.missing);
  const double value = itsThickness.GetValue();
  if (value > 0.0) return true;
  if (needed) {
    VeloraTrace(3, TRACE_ERRORS, "Invalid metal thickness %g at line %d.", value,
                static_cast<int>(reader.GetLineNumber()));
    return reader.Fail(messages.rule, reader.GetToken());
  }
  if (value < 0.0) {
    reader.Warn(20107, reader.GetToken());
    itsThickness.SetValue(0.0);
  }
  return true;
}

bool SMatlMetalData::ReadNumSheets(SMatlFieldReader& reader, int metalType, const SMatlFieldMessages& messages) {
  int sheets = itsNumSheets;
  if (!reader.Int(sheets, messages)) return false;
  if (reader.IsEnded()) return true;
  const bool valid = metalType == RoughMetal ? (sheets == 1 || sheets == 2) : sheets >= 2;
  if (!valid) {
    VeloraTrace(3, TRACE_ERRORS, "Invalid number of sheets %g at line %d.", static_cast<double>(sheets),
                static_cast<int>(reader.GetLineNumber()));
    return reader.Fail(messages.rule, reader.GetToken());
  }
  VeloraTrace(5, TRACE_GENERAL, "Number of sheets %d is valid", sheets);
  itsNumSheets = sheets;
  return true;
}

bool SMatlMetalData::ReadLayerFields(SMatlFieldReader& reader, SMatlDrawLayer& layer) {
  SString name = layer.GetLayerName();
  int pattern = layer.GetPattern();
  const bool ok =
      reader.Name(name, {20047, 0, 20048}, SMatlFieldReader::NoBlank) && reader.Real(itsGrowth, {0, 20010, 20055}) &&
      reader.Real(itsRdc, {0, 20016, 20135}) && reader.Real(itsRrf, {0, 20018, 20136}) &&
      reader.Real(itsXdc, {0, 20022, 20137}) && reader.Real(itsLs, {0, 20012, 20138}) &&
      reader.Int(pattern, {20140, 20140, 20001}, SMatlFieldReader::AtLeastZero, "Invalid color/pattern %d at line %d.") &&
      reader.Name(itsMetalName, {20015, 0, 20141}, SMatlFieldReader::NoIllegalCharacter) &&
      reader.Level(layer.Level(), {20142, 20142, 20011}, "Invalid level number %d, at line %d.");
  layer.SetLayerName(name);
  layer.SetPattern(pattern);
  return ok;
}

bool SMatlMetalData::ReadLossFields(SMatlFieldReader& reader) {
  return ReadConductivity(reader, itsMetalType, {20014, 20042, 20104}) &&
         ReadThickness(reader, itsMetalType, false, {20041, 20050, 20145}) &&
         reader.Real(itsCurrentRatio, {20170, 20170, 20023}, SMatlFieldReader::AtLeastZero,
                     "Invalid metal current ratio %g at line %d.") &&
         ReadNumSheets(reader, itsMetalType, {20172, 20172, 20025});
}

void SMatlMetalData::WriteLossFields(SProjectStream& out) const {
  WriteConductivity(out);
  WriteValue(out, itsThickness);
  WriteValue(out, itsCurrentRatio);
  out << ' ' << itsNumSheets;
}

bool SMatlMetalData::ReadSurfaceFields(SMatlFieldReader& reader) {
  return reader.Word(itsCrossSection, kCrossSections, {20180, 20180, 20180}, "Invalid cross section '%s', at line %d.") &&
         reader.Real(itsTopRoughness, {20182, 20182, 20181}, SMatlFieldReader::AtLeastZero,
                     "Invalid top roughness %g found at line %d.") &&
         reader.Real(itsBottomRoughness, {20183, 20183, 20000}, SMatlFieldReader::AtLeastZero,
                     "Invalid bottom roughness %g found at line %d.") &&
         reader.Word(itsLossType, kLossTypes, {20177, 20177, 20177});
}

void SMatlMetalData::WriteSurfaceFields(SProjectStream& out) const {
  out << " \"" << CrossSectionName(itsCrossSection) << '"';
  WriteValue(out, itsTopRoughness);
  WriteValue(out, itsBottomRoughness);
  out << " \"" << LossTypeName(itsLossType) << "\"\n";
}
