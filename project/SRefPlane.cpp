#include "SRefPlane.h"

#include "SGeoClassID.h"

SCOLLECTABLE_DEFINE(SRefPlane, SID_REFPLANE, &SEnclosure::staticTypeInfo())

SString SRefPlane::GetName() const {
  static const char* const kSides[] = {"left", "right", "top", "bottom", "autoground"};
  const int side = itsSide >= Left && itsSide <= AutoGround ? itsSide : Left;
  return SString("Ref Plane Length ") + kSides[side];
}
