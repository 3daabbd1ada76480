#ifndef SMATLBRICK_H
#define SMATLBRICK_H

#include "SBrickType.h"
#include "SMatlDrawLayer.h"
#include "SMatlMaterial.h"
#include "SMatlMetalData.h"

// A dielectric brick: the fields of a metal draw layer and a brick description. A "BRICK"
// line makes one and reads nothing; it is never written.
class SMatlBrick : public SMatlMaterial, public SMatlDrawLayer, public SMatlMetalData {
  SCOLLECTABLE_DECLARE(SMatlBrick)
public:
  enum BrickType { Isotropic = 0, Anisotropic = 1 };

  SMatlBrick() {}
  SMatlBrick(const SMatlBrick& other) = default;

  int GetKind() const override { return BrickKind; }
  SMatlMaterial* Clone() const override { return new SMatlBrick(*this); }
  bool IsEqual(const SMatlMaterial& other) const override;
  SString GetName() const override { return itsLayerName; }

  int GetBrickType() const { return itsBrickType; }
  void SetBrickType(int type) { itsBrickType = type; }
  // Erel, loss, loss tangent, Mrel and magnetic loss tangent per axis, as the project's brick type holds them.
  SBrickTypeData& Description() { return itsDescription; }
  const SBrickTypeData& GetDescription() const { return itsDescription; }

private:
  int itsBrickType = Isotropic;
  SBrickTypeData itsDescription;
};

#endif
