#ifndef SVIAMETALTYPE_H
#define SVIAMETALTYPE_H

#include "SMaterialType.h"
#include "SValueVar.h"

class SDimensionBlock;
class SMetalType;
class SProjectStream;

class SViaMetalTypeData : public SMaterialTypeData {
public:
  enum Model { Volume = 0, Surface = 1, Array = 2 };

  SViaMetalTypeData(bool infinite = true, bool solid = true);

  SValueVarDouble itsRdc;
  SValueVarDouble itsRrf;
  SValueVarDouble itsXdc;
  SValueVarDouble itsFillFactor;
  SValueVarDouble itsViaDensity;
  bool itsCondIsInf = true;
  bool itsIsSolid = true;
  SValueVarDouble itsConductivity;
  SValueVarDouble itsWallThickness;
  int itsModel = Volume;
  // An array may take its loss from a planar metal, named in the file, bound after the read.
  int itsLinkedMetalIndex = -1;
  SString itsLinkedMetalName;
  SMetalType* itsLinkedMetal = nullptr;
  // A via metal whose loss this one follows (non-owning).
  SViaMetalTypeData* itsLinkedVia = nullptr;
  // 1 for the built-in "Lossless".
  int itsDefinition = 0;
};

class SViaMetalType : public SMaterialType<SViaMetalTypeData> {
  SCOLLECTABLE_DECLARE(SViaMetalType)
public:
  SViaMetalType();
  SViaMetalType(const SString& name, int pattern, bool infinite, bool solid, int model,
                double conductivity, double wallThickness);

  int GetDefinition() const { return itsDefinition; }
  bool IsSameAs(const SViaMetalType& other) const;
  // The loss type of the end of the chain of links: a linked planar metal's, else the last
  // linked via's, else this one's.
  int GetElectricalLossType() const;
  SString Describe() const;
  SString ToText() const;

  // From format 11 on; older formats can't hold a via metal.
  void Write(SProjectStream& out, int format, const SDimensionBlock* dim) const;
};

#endif
