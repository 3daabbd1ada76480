#ifndef SMATLVALIDATION_H
#define SMATLVALIDATION_H

#include "SString.h"

class SMatlBrick;
class SMatlDielectric;
class SMatlMetalData;
class SMatlViaDrawLayer;
class SProjectStream;
class SValueVarDouble;

// The rules of material entries, for values found after reading (the technology file sets
// entries from expressions). Each rule traces its outcome; a broken rule of an entry
// raises its message with the entry's name. One instance serves the process.
class SMatlValidation {
public:
  static SMatlValidation& Instance();

  // Range helpers.
  static bool IsAtLeastZero(double value) { return value >= 0.0; }
  static bool IsAboveZero(double value) { return value > 0.0; }
  static bool IsValidLossType(int code) { return code >= 0 && code < 4; }
  static bool IsValidViaFill(int code) { return code >= 0 && code < 6; }
  static bool IsValidMetalType(int code) { return code >= 0 && code < 7; }
  static bool IsValidViaType(int code) { return code >= 0 && code < 3; }
  static bool IsValidBrickType(int code) { return code >= 0 && code < 2; }
  // At least 2; on a rough metal (type 5) 1 or 2.
  bool IsValidNumSheets(int sheets, int metalType) const;

  // Single values; `name` names the entry in the trace and the message.
  bool ValidateDielectricValue(int which, double value, const SString& name, bool zValue = false) const;
  // An empty name becomes "Unnamed" (warning 20105); a name with ! & = " is 20005.
  bool ValidateDielectricName(SString& name) const;
  bool ValidatePattern(int pattern, const SString& name) const;
  bool ValidateBrickType(int type, const SString& name) const;
  // Empty becomes "Unnamed"; "Unnamed" warns (20074) and stays; ! & = " is 20035.
  bool ValidateMetalName(SString& name) const;
  bool ValidateMetalType(int type, const SString& name) const;
  // Above 0 or INF.
  bool ValidateViaConductivity(double value, bool infinite, const SString& name) const;
  bool ValidateWallThickness(double value, const SString& name) const;
  // Not empty (20079), no ! & = " (20080).
  bool ValidateLayerName(const SString& name) const;
  // "TOP" and "GND" are valid, else at least 0 (20082).
  bool ValidateToLevel(const SString& text, const SString& name) const;
  // Above 0; 0 also where the metal type allows it (20094).
  bool ValidateMetalThickness(double value, int metalType, bool infinite, const SString& name) const;
  bool ValidateCurrentRatio(double value, const SString& name, bool via = false) const;
  bool ValidateNumSheets(int sheets, int metalType, const SString& name) const;
  bool ValidateFillType(int fill, const SString& name) const;
  // The RMS roughness of a rough metal (20091) and its top surface type (20067).
  bool ValidateRoughness(double top, double bottom, int topType, const SString& name) const;
  bool ValidateViaFillFactor(double value, const SString& name) const;
  bool ValidateViaDensity(double value, const SString& name) const;
  // At least 1; `which` is "XMin", "XMax", "YMin" or "YMax".
  bool ValidateMeshLimit(const char* which, int value, const SString& name) const;
  // "EdgeMeshOn" or "EdgeMeshOff".
  bool ValidateEdgeMesh(const SString& token) const;
  // Found and without ! & = ".
  bool ValidateSubstrateName(const SString& name) const;
  // False with "Output stream does not exist.  Unable to write." for a null stream.
  bool ValidateOutput(const SProjectStream* out) const;

  // Whole entries: every value rule of the entry, the first broken one reported.
  bool Validate(SMatlDielectric& dielectric) const;
  bool ValidateMetal(SMatlMetalData& metal, const SString& layerName, int pattern, bool hasLayer) const;
  bool Validate(SMatlViaDrawLayer& via) const;
  bool Validate(SMatlBrick& brick) const;

private:
  SMatlValidation() {}
};

#endif
