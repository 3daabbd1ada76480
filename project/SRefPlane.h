#ifndef SREFPLANE_H
#define SREFPLANE_H

#include "SEnclosure.h"
#include "SRefPlaneData.h"

// A reference plane of a box side, a coupled group or a port.
class SRefPlane : public SEnclosure, public SRefPlaneData {
  SCOLLECTABLE_DECLARE(SRefPlane)
public:
  SRefPlane() {}
  SRefPlane(int side, int type) : SRefPlaneData(side, type) {}

  // "Ref Plane Length left" and so on, as the reports name it.
  SString GetName() const override;
  void CopyPlane(const SRefPlaneData& other) { static_cast<SRefPlaneData&>(*this) = other; }
};

#endif
