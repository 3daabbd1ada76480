#include "SMatlValidation.h"

#include "SMatlBrick.h"
#include "SMatlDielectric.h"
#include "SMatlReporting.h"
#include "SMatlUtil.h"
#include "SMatlViaDrawLayer.h"
#include "SVeloraTrace.h"

namespace {

struct SDielectricRule {
  const char* word;
  bool aboveZero;
  int message;
};

// By SLevelData's value index.
const SDielectricRule kDielectricRules[] = {{"thickness", false, 20027}, {"Erel", true, 20031},
                                            {"Mrel", true, 20032},       {"TanE", false, 20033},
                                            {"TanM", false, 20034},      {"conductivity", false, 20030}};

bool Broken(int number, const SString& name) {
  SMatlReporting::Instance().NameError(number, name);
  return false;
}

bool BrokenText(const SString& text) {
  SMatlReporting::Instance().ReportError(text);
  return false;
}

}  // namespace

SMatlValidation& SMatlValidation::Instance() {
  static SMatlValidation instance;
  return instance;
}

bool SMatlValidation::IsValidNumSheets(int sheets, int metalType) const {
  if (metalType == SMatlMetalData::RoughMetal && (sheets == 1 || sheets == 2)) {
    VeloraTrace(5, TRACE_GENERAL, "Number of sheets %d is valid", sheets);
    return true;
  }
  return sheets >= 2;
}

bool SMatlValidation::ValidateDielectricValue(int which, double value, const SString& name, bool zValue) const {
  if (which < 0 || which >= SLevelData::ValueCount) return false;
  const SDielectricRule& rule = kDielectricRules[which];
  const bool ok = rule.aboveZero ? IsAboveZero(value) : IsAtLeastZero(value);
  const char* axis = zValue ? " (Z)" : "";
  if (ok) {
    VeloraTrace(5, TRACE_GENERAL, "%s%s %g is valid for %s.", rule.word, axis, value, name.data());
    return true;
  }
  VeloraTrace(3, TRACE_ERRORS, "Invalid dielectric %s%s, %g.", rule.word, axis, value);
  return Broken(rule.message, name);
}

bool SMatlValidation::ValidateDielectricName(SString& name) const {
  if (name.isEmpty()) {
    name = "Unnamed";
    SMatlReporting::Instance().NameWarning(20105, name);
  }
  if (SMatlUtil::HasIllegalCharacter(name)) {
    VeloraTrace(3, TRACE_ERRORS, "Invalid dielectric name, %s.", name.data());
    return Broken(20005, name);
  }
  return true;
}

bool SMatlValidation::ValidatePattern(int pattern, const SString& name) const {
  if (pattern >= 0) return true;
  return Broken(20069, name);
}

bool SMatlValidation::ValidateBrickType(int type, const SString& name) const {
  if (IsValidBrickType(type)) return true;
  return BrokenText(SString::format("Invalid Brick Type %d for %s.  Unable to continue!", type, name.data()));
}

bool SMatlValidation::ValidateMetalName(SString& name) const {
  if (name.isEmpty()) name = "Unnamed";
  // A metal left without a name is allowed, but the user should know.
  if (name == "Unnamed") SMatlReporting::Instance().NameWarning(20074, name);
  if (SMatlUtil::HasIllegalCharacter(name)) return Broken(20035, name);
  return true;
}

bool SMatlValidation::ValidateMetalType(int type, const SString& name) const {
  if (IsValidMetalType(type)) return true;
  return Broken(20073, name);
}

bool SMatlValidation::ValidateViaConductivity(double value, bool infinite, const SString& name) const {
  if (infinite || IsAboveZero(value)) return true;
  return Broken(20101, name);
}

bool SMatlValidation::ValidateWallThickness(double value, const SString& name) const {
  if (IsAtLeastZero(value)) return true;
  return BrokenText("Invalid wall thickness for " + name +
                    ".\n\nWall thickness must be a number greater or equal to 0.\n\nUnable to continue.");
}

bool SMatlValidation::ValidateLayerName(const SString& name) const {
  if (name.isEmpty()) return Broken(20079, name);
  if (SMatlUtil::HasIllegalCharacter(name)) return Broken(20080, name);
  return true;
}

bool SMatlValidation::ValidateToLevel(const SString& text, const SString& name) const {
  const SString upper = text.upper();
  if (upper == "TOP" || upper == "GND") return true;
  int level = 0;
  if (SMatlUtil::ParseInt(text, level) && level >= 0) return true;
  return Broken(20082, name);
}

bool SMatlValidation::ValidateMetalThickness(double value, int metalType, bool infinite, const SString& name) const {
  if (value > 0.0) return true;
  const bool needed = metalType == SMatlMetalData::ThickMetalModel || metalType == SMatlMetalData::RoughMetal ||
                      (metalType == SMatlMetalData::Normal && !infinite);
  if (!needed) return true;
  return Broken(20094, name);
}

bool SMatlValidation::ValidateCurrentRatio(double value, const SString& name, bool via) const {
  if (IsAtLeastZero(value)) return true;
  return Broken(via ? 20077 : 20076, name);
}

bool SMatlValidation::ValidateNumSheets(int sheets, int metalType, const SString& name) const {
  if (IsValidNumSheets(sheets, metalType)) return true;
  return Broken(20087, name);
}

bool SMatlValidation::ValidateFillType(int fill, const SString& name) const {
  if (fill >= SMatlMetalData::DefaultFill && fill <= SMatlMetalData::Conformal) return true;
  return Broken(20089, name);
}

bool SMatlValidation::ValidateRoughness(double top, double bottom, int topType, const SString& name) const {
  if (!IsAtLeastZero(top) || !IsAtLeastZero(bottom)) return Broken(20091, name);
  if (topType < 0 || topType > 1) return Broken(20067, name);
  return true;
}

bool SMatlValidation::ValidateViaFillFactor(double value, const SString& name) const {
  if (IsAboveZero(value)) return true;
  return Broken(20039, name);
}

bool SMatlValidation::ValidateViaDensity(double value, const SString& name) const {
  if (IsAboveZero(value)) return true;
  return Broken(20122, name);
}

bool SMatlValidation::ValidateMeshLimit(const char* which, int value, const SString& name) const {
  if (value >= 1) return true;
  return BrokenText(SString::format("Invalid %s value for %s.\n\n%s value must be a number greater or equal to "
                                    "1.\n\nUnable to continue.",
                                    which, name.data(), which));
}

bool SMatlValidation::ValidateEdgeMesh(const SString& token) const {
  if (token == "EdgeMeshOn" || token == "EdgeMeshOff") return true;
  return BrokenText("Invalid UseEdgeMesh.\n\nUseEdgeMesh must match one of EdgeMeshOn or EdgeMeshOff, found \"" +
                    token + "\".\n\nUnable to continue.");
}

bool SMatlValidation::ValidateSubstrateName(const SString& name) const {
  if (name.isEmpty()) {
    VeloraTrace(3, TRACE_ERRORS, "Substrate name not found");
    return false;
  }
  if (SMatlUtil::HasIllegalCharacter(name)) {
    VeloraTrace(3, TRACE_ERRORS, "Substrate name '%s' contains an invalid character", name.data());
    return false;
  }
  VeloraTrace(5, TRACE_GENERAL, "Substrate name '%s' is valid", name.data());
  return true;
}

bool SMatlValidation::ValidateOutput(const SProjectStream* out) const {
  if (out) return true;
  return BrokenText("Output stream does not exist.  Unable to write.");
}

bool SMatlValidation::Validate(SMatlDielectric& dielectric) const {
  SString name = dielectric.GetLevelName();
  if (!ValidateDielectricName(name)) return false;
  dielectric.SetLevelName(name);
  for (int which = 0; which < SLevelData::ValueCount; ++which)
    if (!ValidateDielectricValue(which, dielectric.GetValue(which).GetValue(), name)) return false;
  if (dielectric.IsAnisotropic())
    for (int which = SLevelData::Erel; which < SLevelData::ValueCount; ++which)
      if (!ValidateDielectricValue(which, dielectric.GetValueZ(which).GetValue(), name, true)) return false;
  return true;
}

bool SMatlValidation::ValidateMetal(SMatlMetalData& metal, const SString& layerName, int pattern, bool hasLayer) const {
  SString name = metal.GetMetalName();
  if (!ValidateMetalName(name)) return false;
  metal.SetMetalName(name);
  const SString& label = hasLayer ? layerName : name;
  if (hasLayer && !ValidateLayerName(layerName)) return false;
  const int type = metal.GetMetalType();
  return ValidatePattern(pattern, label) && ValidateMetalType(type, label) &&
         ValidateMetalThickness(metal.itsThickness.GetValue(), type, metal.IsConductivityInfinite(), label) &&
         ValidateCurrentRatio(metal.itsCurrentRatio.GetValue(), label) &&
         ValidateNumSheets(metal.GetNumSheets(), type, label) && ValidateFillType(metal.GetFillType(), label) &&
         (type != SMatlMetalData::RoughMetal ||
          ValidateRoughness(metal.itsTopRoughness.GetValue(), metal.itsBottomRoughness.GetValue(),
                            metal.GetTopRoughnessType(), label)) &&
         ValidateMeshLimit("XMin", metal.GetXMin(), label) && ValidateMeshLimit("XMax", metal.GetXMax(), label) &&
         ValidateMeshLimit("YMin", metal.GetYMin(), label) && ValidateMeshLimit("YMax", metal.GetYMax(), label);
}

bool SMatlValidation::Validate(SMatlViaDrawLayer& via) const {
  const SString& name = via.GetLayerName();
  if (!ValidateMetal(via, name, via.GetPattern(), true)) return false;
  if (!ValidateToLevel(via.GetToLevel().GetText(), name)) return false;
  const int type = via.GetViaType();
  if (!via.IsMetal() && (type == SMatlViaDrawLayer::Volume || type == SMatlViaDrawLayer::Array) &&
      !ValidateViaConductivity(via.itsConductivity.GetValue(), via.IsConductivityInfinite(), name))
    return false;
  if (!ValidateWallThickness(via.itsWallThickness.GetValue(), name)) return false;
  if (type == SMatlViaDrawLayer::Array)
    return ValidateViaFillFactor(via.itsFillFactor.GetValue(), name) &&
           ValidateViaDensity(via.itsViaDensity.GetValue(), name);
  return true;
}

bool SMatlValidation::Validate(SMatlBrick& brick) const {
  return ValidateLayerName(brick.GetLayerName()) && ValidatePattern(brick.GetPattern(), brick.GetLayerName()) &&
         ValidateBrickType(brick.GetBrickType(), brick.GetLayerName());
}
