#ifndef SBRICKTYPE_H
#define SBRICKTYPE_H

#include "SMaterialType.h"
#include "SValueVar.h"

class SDimensionBlock;
class SProjectStream;

class SBrickTypeData : public SMaterialTypeData {
public:
  enum Axis { Isotropic = 0, X = 1, Y = 2, Z = 3 };
  enum Definition { UserBrick = 0, Air = 1 };

  SBrickTypeData();

  // Per axis (isotropic, X, Y, Z).
  SValueVarDouble itsEps[4];
  SValueVarDouble itsLoss[4];
  SValueVarDouble itsLossTan[4];
  SValueVarDouble itsMuRel[4];
  SValueVarDouble itsMagLossTan[4];
  // 1 isotropic, 0 anisotropic.
  int itsParmType = 1;
  int itsDefinition = UserBrick;
};

class SBrickType : public SMaterialType<SBrickTypeData> {
  SCOLLECTABLE_DECLARE(SBrickType)
public:
  SBrickType();
  SBrickType(const SString& name, int parmType, int pattern);

  int GetDefinition() const { return itsDefinition; }
  bool IsSameAs(const SBrickType& other) const;
  SString Describe() const;
  SString ToText() const;

  // BRI or BRA, from format 3 on.
  void Write(SProjectStream& out, int format, const SDimensionBlock* dim) const;
  // BRL: per axis X, Y, Z the electric values and then MuRel and the magnetic tangent. Material
  // files use it; the GEO block doesn't. An isotropic brick repeats its values on each axis.
  void WriteMagnetic(SProjectStream& out) const;
};

#endif
