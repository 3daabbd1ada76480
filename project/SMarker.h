#ifndef SMARKER_H
#define SMARKER_H

#include "SEnclosure.h"
#include "SPoint.h"

class SFile;
class SProjectErrorManager;
class SProjectStream;

// The local origin of a circuit: a point and which way its Y axis runs.
class SMarker : public SEnclosure {
  SCOLLECTABLE_DECLARE(SMarker)
public:
  SMarker() {}
  explicit SMarker(SBaseEnclosure* owner) : SEnclosure(owner) {}

  const SPoint& GetPosition() const { return itsPosition; }
  void SetPosition(const SPoint& p) { itsPosition = p; }
  void Move(const SPoint& delta) { itsPosition += delta; }
  void Scale(double factor) { itsPosition *= factor; }
  // Axis 0 mirrors X about `at`, axis 1 mirrors Y.
  void Mirror(int axis, double at);
  bool IsUpper() const { return itsUpper != 0; }
  void SetUpper(bool on) { itsUpper = on ? 1 : 0; }
  bool IsVisible() const { return itsVisible != 0; }

  // "LORGN x y U|L"; the file holds lengths times `fileFactor` (12 for feet in older forms).
  void Write(SProjectStream& out, double fileFactor) const;
  // The rest of a LORGN line. Faults are warnings: the read of the block goes on.
  void Read(SFile& file, SProjectErrorManager& errors, double fileFactor);

private:
  SPoint itsPosition;
  unsigned char itsVisible = 1;
  unsigned char itsUpper = 1;
  unsigned char itsSpare = 0;
};

#endif
