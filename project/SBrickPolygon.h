#ifndef SBRICKPOLYGON_H
#define SBRICKPOLYGON_H

#include "SEnclosure.h"
#include "SPolygonData.h"

class SBrickType;
class SFile;
class SProjectErrorManager;
class SProjectStream;

class SBrickData {
public:
  int GetBrickId() const { return itsBrickId; }
  void SetBrickId(int id) { itsBrickId = id; }

protected:
  int itsBrickId = 0;
};

class SBrickPolygonData : public SBrickData, public SPolygonData {};

// A dielectric brick.
class SBrickPolygon : public SEnclosure, public SBrickPolygonData {
  SCOLLECTABLE_DECLARE(SBrickPolygon)
public:
  SBrickPolygon() {}
  explicit SBrickPolygon(SBaseEnclosure* owner) : SEnclosure(owner) {}

  // Null means "Air".
  SBrickType* GetType() const;
  void SetType(SBrickType* type);
  int GetLevelIndex() const;
  void MoveTo(SBaseEnclosure* parent);

  // `lengthFactor` is the feet factor of older forms.
  void Write(SProjectStream& out, int level, int format, double lengthFactor) const;
  bool Read(SFile& file, SProjectErrorManager& errors, long long& level, double lengthFactor);
};

#endif
