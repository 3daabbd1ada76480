#ifndef SMETALTYPE_H
#define SMETALTYPE_H

#include "SMaterialType.h"
#include "SValueVar.h"

class SFile;
class SProjectErrorManager;
class SProjectStream;
class SDimensionBlock;

// A planar metal's model.
class SMetalTypeData : public SMaterialTypeData {
public:
  enum Definition { UserMetal = 0, WGLoad = 1, Lossless = 2, FreeSpace = 3 };
  enum Location { PlainMetal = 0, TopCover = 1, BottomCover = 2 };
  enum Model { Normal = 0, ThickMetal = 1, Resistor = 2, RdcRrf = 3, General = 4, Rough = 5, Sense = 6 };

  SMetalTypeData();

  int GetDefinition() const { return itsDefinition; }
  void SetDefinition(int d) { itsDefinition = d; }
  int GetLocation() const { return itsLocation; }
  void SetLocation(int l) { itsLocation = l; }
  int GetModel() const { return itsModel; }
  void SetModel(int s) { itsModel = s; }

  SValueVarDouble itsRdc;
  SValueVarDouble itsRrf;
  SValueVarDouble itsXdc;
  SValueVarDouble itsLs;
  SValueVarDouble itsConductivity;
  bool itsCondIsInf = true;
  SValueVarDouble itsCurrentRatio;
  SValueVarDouble itsThickness;
  SValueVarDouble itsTopRoughness;
  SValueVarDouble itsBottomRoughness;
  int itsDefinition = UserMetal;
  int itsLocation = PlainMetal;
  int itsModel = Normal;
  SValueVarDouble itsNumSheets;
  // Rough metals: 0 thick model (THK), 1 thin (THN).
  int itsRoughnessType = 0;
  // 0 SR, 1 RR.
  int itsRoughnessModel = 0;
  // Thick metal grows up from its level (0) or down (1, TDWN).
  int itsThickDirection = 0;
};

class SMetalType : public SMaterialType<SMetalTypeData> {
  SCOLLECTABLE_DECLARE(SMetalType)
public:
  SMetalType();
  SMetalType(const SString& name, int definition, int pattern, int model, double rdc, double rrf,
             double xdc, double ls);

  bool IsSameAs(const SMetalType& other) const;

  // "WG Load", "Normal: Cnd:INF T:0 CR:0.5" and so on; for viewers, not for files.
  SString Describe() const;
  // The name and the description.
  SString ToText() const;

  // MET, TMET or BMET by location, in the form of the write format. `dim` gives the units
  // of older formats, which hold conductivity in S/m only; null leaves values as they are.
  void Write(SProjectStream& out, int format, const SDimensionBlock* dim) const;
};

// A TMET or BMET line as read, kept by the circuit until the block's types are known.
class SReadMetal : public SMetalType {
  SCOLLECTABLE_DECLARE(SReadMetal)
public:
  SReadMetal() {}
};

#endif
