#ifndef SMATLMETALDATA_H
#define SMATLMETALDATA_H

#include "SMatlFieldReader.h"
#include "SValueVar.h"

class SMatlDrawLayer;
class SProjectStream;

// The values of a metal as the metal, via and material lines of a material file give them,
// with the rules they share. Lengths are in the file's length unit; the conductivity is in
// the unit of its electrical loss type.
class SMatlMetalData {
public:
  // Metal type codes; any other code prints as "General".
  enum MetalType { Normal = 0, ThickMetalModel = 1, Resistor = 2, RdcRrf = 3, General = 4, RoughMetal = 5, SenseMetal = 6 };
  enum FillType { DefaultFill = 0, Staircase = 1, Diagonal = 2, Conformal = 3 };
  enum CrossSection { Thin = 0, Thick = 1, ThickDown = 2, ThickUp = 3 };
  // Electrical loss types; a read of any other word fails the line.
  enum LossType { Cond = 0, Res = 1, RPV = 2, ShRes = 3 };

  static const SMatlWord kMetalTypes[];
  static const SMatlWord kFillTypes[];
  static const SMatlWord kCrossSections[];
  static const SMatlWord kLossTypes[];
  static const SMatlWord kEdgeMesh[];
  // The conductivity that "INF" stands for.
  static constexpr double kInfinite = 1e50;
  // The conductivity a rough metal line without one gets (copper, S/m).
  static constexpr double kRoughDefaultConductivity = 5.8e7;

  SMatlMetalData();
  virtual ~SMatlMetalData() {}

  static const char* MetalTypeName(int code);
  static const char* FillTypeName(int code);
  static const char* CrossSectionName(int code);
  static const char* LossTypeName(int code);

  const SString& GetMetalName() const { return itsMetalName; }
  void SetMetalName(const SString& name) { itsMetalName = name; }
  int GetMetalType() const { return itsMetalType; }
  void SetMetalType(int type) { itsMetalType = type; }
  int GetLossType() const { return itsLossType; }
  void SetLossType(int type) { itsLossType = type; }
  bool IsConductivityInfinite() const { return itsCondInf; }
  // INF stores 1e50.
  void SetConductivityInfinite(bool on);
  int GetNumSheets() const { return itsNumSheets; }
  void SetNumSheets(int sheets) { itsNumSheets = sheets; }
  int GetFillType() const { return itsFillType; }
  void SetFillType(int fill) { itsFillType = fill; }
  int GetCrossSection() const { return itsCrossSection; }
  void SetCrossSection(int section) { itsCrossSection = section; }
  int GetTopRoughnessType() const { return itsTopRoughnessType; }
  void SetTopRoughnessType(int type) { itsTopRoughnessType = type; }
  bool GetEdgeMesh() const { return itsEdgeMesh; }
  void SetEdgeMesh(bool on) { itsEdgeMesh = on; }
  int GetXMin() const { return itsXMin; }
  int GetXMax() const { return itsXMax; }
  int GetYMin() const { return itsYMin; }
  int GetYMax() const { return itsYMax; }
  void SetXRange(int low, int high) { itsXMin = low, itsXMax = high; }
  void SetYRange(int low, int high) { itsYMin = low, itsYMax = high; }
  bool IsTruncateConductivity() const { return itsTruncate; }
  void SetTruncateConductivity(bool on) { itsTruncate = on; }

  // Unused values of the metal type go back to their defaults; false (after the trace) for
  // an unknown type. `name` is for the trace.
  virtual bool SetUnusedToDefault(const SString& name);
  bool IsSameMetal(const SMatlMetalData& other) const;
  void ScaleMetal(int dimension, double factor);
  // The conductivity as files hold it: "INF", else the number (4 digits when truncated).
  void WriteConductivity(SProjectStream& out) const;

  // Public as the project's metal types hold them: the owner sets them into a project.
  SValueVarDouble itsGrowth;
  SValueVarDouble itsRdc;
  SValueVarDouble itsRrf;
  SValueVarDouble itsXdc;
  SValueVarDouble itsLs;
  SValueVarDouble itsConductivity;
  SValueVarDouble itsThickness;
  SValueVarDouble itsCurrentRatio;
  SValueVarDouble itsTopRoughness;
  SValueVarDouble itsBottomRoughness;

protected:
  // The conductivity field of a line: a number or INF; a missing token on a rough metal
  // gives 5.8e7 and warning 20103. `rule` is the rule broken message of the line kind.
  bool ReadConductivity(SMatlFieldReader& reader, int metalType, const SMatlFieldMessages& messages);
  // The metal thickness rule for a metal type: above 0, or for the types that allow it 0,
  // with a negative value warned (20107) and set to 0. `zeroAllowed` forces the latter.
  bool ReadThickness(SMatlFieldReader& reader, int metalType, bool zeroAllowed, const SMatlFieldMessages& messages);
  // Number of sheets: at least 2, on a rough metal 1 or 2.
  bool ReadNumSheets(SMatlFieldReader& reader, int metalType, const SMatlFieldMessages& messages);
  // The fields that METAL and VIA lines begin with: layer name, growth, Rdc, Rrf, Xdc, Ls,
  // pattern, metal name, level.
  bool ReadLayerFields(SMatlFieldReader& reader, SMatlDrawLayer& layer);
  // Conductivity, thickness, current ratio, number of sheets (METAL and MATERIAL lines).
  bool ReadLossFields(SMatlFieldReader& reader);
  void WriteLossFields(SProjectStream& out) const;
  // Cross section, top and bottom roughness, electrical loss type: the end of METAL and
  // MATERIAL lines.
  bool ReadSurfaceFields(SMatlFieldReader& reader);
  void WriteSurfaceFields(SProjectStream& out) const;
  // Writes " value" for each of the values named, for the writers of the line kinds.
  static void WriteValue(SProjectStream& out, const SValueVarDouble& value);

  SString itsMetalName = "Unnamed";
  int itsMetalType = General;
  bool itsCondInf = false;
  int itsNumSheets = 2;
  int itsFillType = DefaultFill;
  int itsXMin = 1;
  int itsXMax = 100;
  int itsYMin = 1;
  int itsYMax = 100;
  bool itsEdgeMesh = true;
  int itsCrossSection = Thin;
  int itsTopRoughnessType = 0;
  int itsLossType = Cond;
  // Set by the technology file: the conductivity is written with 4 significant digits.
  bool itsTruncate = false;
};

#endif
