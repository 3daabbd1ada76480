#include "SMatlViaDrawLayer.h"

#include "SCommentedFile.h"
#include "SMatlClassID.h"
#include "SMatlInterface.h"
#include "SMatlReporting.h"
#include "SMatlUtil.h"
#include "SProjectStream.h"
#include "SVeloraTrace.h"

SCOLLECTABLE_DEFINE(SMatlViaDrawLayer, SID_MATLVIADRAWLAYER, &SMatlMaterial::staticTypeInfo())

const SMatlWord SMatlViaDrawLayer::kViaTypes[] = {{"Volume", Volume}, {"Surface", Surface}, {"Array", Array}, {nullptr, 0}};
const SMatlWord SMatlViaDrawLayer::kViaFills[] = {{"Ring", Ring},     {"Vertices", Vertices}, {"Center", Center},
                                                  {"Full", Full},     {"Bar", Bar},           {"Default", DefaultViaFill},
                                                  {nullptr, 0}};
const SMatlWord SMatlViaDrawLayer::kPads[] = {{"PadsOn", 1}, {"PadsOff", 0}, {nullptr, 0}};
const SMatlWord SMatlViaDrawLayer::kVolumeLossModels[] = {
    {"Wall", Wall}, {"Solid", Solid}, {"N/A", NotApplicable}, {nullptr, 0}};

namespace {
const SMatlFieldMessages kConductivity = {20014, 20042, 20104};
const SMatlFieldMessages kCurrentRatio = {20170, 20170, 20023};
const SMatlFieldMessages kSheets = {20172, 20172, 20025};
const SMatlFieldMessages kViaFill = {20173, 20173, 20173};
const SMatlFieldMessages kPadsField = {20175, 20175, 20175};
const SMatlFieldMessages kFillFactor = {20168, 20169, 20099};
const SMatlFieldMessages kVolumeModel = {20176, 20176, 20176};
const SMatlFieldMessages kLoss = {20177, 20177, 20177};
const SMatlFieldMessages kDensity = {20179, 20178, 20123};
}  // namespace

const char* SMatlViaDrawLayer::ViaTypeName(int code) {
  const char* word = SMatlFieldReader::WordOf(kViaTypes, code);
  return word ? word : "Volume";
}

const char* SMatlViaDrawLayer::ViaFillName(int code) {
  const char* word = SMatlFieldReader::WordOf(kViaFills, code);
  return word ? word : "Default";
}

const char* SMatlViaDrawLayer::VolumeLossModelName(int code) {
  const char* word = SMatlFieldReader::WordOf(kVolumeLossModels, code);
  return word ? word : "N/A";
}

SMatlViaDrawLayer::SMatlViaDrawLayer() : SMatlDrawLayer(true) {
  itsFillFactor.SetValue(100.0);
  itsViaDensity.SetValue(1.0);
}

int SMatlViaDrawLayer::RuleMetalType() const { return itsIsMetal ? itsMetalType : static_cast<int>(Normal); }

bool SMatlViaDrawLayer::ReadViaMetalType(SMatlFieldReader& reader, const SMatlFieldMessages& messages) {
  SString token;
  bool present = false;
  if (!reader.Token(token, messages.missing, present)) return false;
  if (!present) return true;
  const int via = SMatlFieldReader::CodeOf(kViaTypes, token);
  if (via >= 0) {
    itsIsMetal = false;
    itsViaType = via;
    return true;
  }
  const int metal = SMatlFieldReader::CodeOf(kMetalTypes, token);
  if (metal < 0) return reader.Fail(messages.rule, token);
  itsIsMetal = true;
  itsMetalType = metal;
  return true;
}

const char* SMatlViaDrawLayer::ViaMetalTypeWord() const {
  return itsIsMetal ? MetalTypeName(itsMetalType) : ViaTypeName(itsViaType);
}

bool SMatlViaDrawLayer::ReadViaThickness(SMatlFieldReader& reader, const SMatlFieldMessages& messages) {
  const bool zeroAllowed = !itsIsMetal && (itsViaType == Surface || itsViaType == Array);
  if (!ReadThickness(reader, RuleMetalType(), zeroAllowed, messages)) return false;
  itsWallThickness.CopyValue(itsThickness);
  return true;
}

bool SMatlViaDrawLayer::ReadArrayValue(SMatlFieldReader& reader, SValueVarDouble& field,
                                       const SMatlFieldMessages& messages) {
  const bool array = !itsIsMetal && itsViaType == Array;
  return reader.Real(field, messages, array ? SMatlFieldReader::AboveZero : SMatlFieldReader::AnyValue);
}

bool SMatlViaDrawLayer::Read(SCommentedFile& file) {
  SMatlFieldReader reader(file, MessageFileName(file));
  itsLine = reader.GetLineNumber();
  if (itsMatl && itsMatl->GetNumDielectrics() < 1) return reader.Fail(20026);
  const bool ok = ReadLayerFields(reader, *this) &&
      reader.Level(itsToLevel, {20019, 20163, 20098}, "Invalid level number %d, at line %d.") &&
      ReadViaMetalType(reader, {20164, 20164, 20096});
  if (!ok) return false;

  reader.BeginOptional();
  int viaFill = itsViaFill;
  int pads = itsPads ? 1 : 0;
  SString fillWord;
  bool fillPresent = false;
  const bool rest = ReadConductivity(reader, RuleMetalType(), kConductivity) &&
                    ReadViaThickness(reader, {20167, 20050, 20097}) &&
                    reader.Real(itsCurrentRatio, kCurrentRatio, SMatlFieldReader::AtLeastZero,
                                "Invalid metal current ratio %g at line %d.") &&
                    ReadNumSheets(reader, RuleMetalType(), kSheets) && reader.Token(fillWord, 0, fillPresent);
  if (!rest) return false;
  if (fillPresent) {
    // The via fill field also takes a metal fill type.
    viaFill = SMatlFieldReader::CodeOf(kViaFills, fillWord);
    const int metalFill = SMatlFieldReader::CodeOf(kFillTypes, fillWord);
    if (viaFill < 0 && metalFill < 0) return reader.Fail(kViaFill.rule, fillWord);
    if (viaFill < 0) {
      viaFill = DefaultViaFill;
      itsFillType = metalFill;
    }
  }
  const bool tail = reader.Word(pads, kPads, kPadsField) && ReadArrayValue(reader, itsFillFactor, kFillFactor) &&
                    reader.Word(itsVolumeLossModel, kVolumeLossModels, kVolumeModel) &&
                    reader.Word(itsLossType, kLossTypes, kLoss) && ReadArrayValue(reader, itsViaDensity, kDensity);
  if (!tail) return false;
  itsViaFill = viaFill;
  itsPads = pads != 0;
  if (itsMatl) {
    if (itsLevel.IsGround()) itsLevel.SetNumber(itsMatl->GetHighestDielectricLevel());
    if (itsToLevel.IsGround()) itsToLevel.SetNumber(itsMatl->GetHighestDielectricLevel());
  }
  MakeConsistent();
  return SetUnusedToDefault();
}

void SMatlViaDrawLayer::MakeConsistent() {
  if (itsIsMetal) {
    const bool surface = itsMetalType == Resistor || itsMetalType == RdcRrf || itsMetalType == General ||
                         itsMetalType == SenseMetal;
    itsViaType = surface ? Surface : Volume;
  }
  if (itsViaType == Volume && itsVolumeLossModel == NotApplicable) {
    itsVolumeLossModel = Wall;
    const SString text = SString::format("Setting volume loss model to Wall for via '%s'.", GetName().data());
    VeloraTrace(3, TRACE_GENERAL, "%s", text.data());
    SMatlReporting::Instance().ReportNote(text);
  }
  itsWallThickness.CopyValue(itsThickness);
}

bool SMatlViaDrawLayer::SetUnusedToDefault(const SString& name) {
  VeloraTrace(4, TRACE_GENERAL, "Setting via properties to default if not used for '%s'.", name.data());
  VeloraTrace(4, TRACE_GENERAL, "Setting via metal properties to default if not used for '%s'.", name.data());
  // A via of a via type follows the rules of a plain metal; its own metal type stays as it is.
  const int kept = itsMetalType;
  itsMetalType = RuleMetalType();
  const bool ok = SMatlMetalData::SetUnusedToDefault(name);
  itsMetalType = kept;
  itsWallThickness.CopyValue(itsThickness);
  return ok;
}

bool SMatlViaDrawLayer::Write(SProjectStream& out) const {
  out << "VIA \"" << itsLayerName << '"';
  for (const SValueVarDouble* value : {&itsGrowth, &itsRdc, &itsRrf, &itsXdc, &itsLs}) WriteValue(out, *value);
  out << ' ' << itsPattern << " \"" << itsMetalName << "\" \"" << itsLevel.GetText() << "\" \"" << itsToLevel.GetText()
      << "\" \"" << ViaMetalTypeWord() << '"';
  WriteConductivity(out);
  WriteValue(out, itsThickness);
  WriteValue(out, itsCurrentRatio);
  const char* fill = itsViaFill != DefaultViaFill ? ViaFillName(itsViaFill) : FillTypeName(itsFillType);
  out << ' ' << itsNumSheets << " \"" << fill << "\" \"" << (itsPads ? "PadsOn" : "PadsOff") << '"';
  WriteValue(out, itsFillFactor);
  out << " \"" << VolumeLossModelName(itsVolumeLossModel) << "\" \"" << LossTypeName(itsLossType) << '"';
  WriteValue(out, itsViaDensity);
  out << '\n';
  return true;
}

bool SMatlViaDrawLayer::IsEqual(const SMatlMaterial& other) const {
  const SMatlViaDrawLayer* o = dynamic_cast<const SMatlViaDrawLayer*>(&other);
  return o && o->GetKind() == GetKind() && IsSameDrawLayer(*o) && IsSameMetal(*o) && itsToLevel == o->itsToLevel &&
         itsViaType == o->itsViaType && itsIsMetal == o->itsIsMetal && itsViaFill == o->itsViaFill &&
         itsPads == o->itsPads && itsVolumeLossModel == o->itsVolumeLossModel &&
         SMatlUtil::SameValue(itsWallThickness, o->itsWallThickness) &&
         SMatlUtil::SameValue(itsFillFactor, o->itsFillFactor) && SMatlUtil::SameValue(itsViaDensity, o->itsViaDensity);
}

void SMatlViaDrawLayer::Scale(int dimension, double factor) {
  ScaleMetal(dimension, factor);
  if (dimension == SMatlUtil::Length) SMatlUtil::ScaleValue(itsWallThickness, factor);
}
