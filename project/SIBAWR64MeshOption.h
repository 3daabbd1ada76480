#ifndef SIBAWR64MESHOPTION_H
#define SIBAWR64MESHOPTION_H

#include "SCollectable.h"
#include "SProjectStream.h"

class SFile;

// Meshing of one item of the host tool's project (AWR64MESHI). The density fixes the pair
// of ranges, which isn't written.
class SIBAWR64MeshOption : public SCollectable {
  SCOLLECTABLE_DECLARE(SIBAWR64MeshOption)
  SCOLLECTABLE_COPYABLE(SIBAWR64MeshOption)
public:
  enum Density { Normal = 0, High = 1, Low = 2, NoVariable = 3 };

  bool Read(SFile& file);
  void Write(SProjectStream& out) const;
  // Normal gives 1 to 100, Low 1 to 10, NoVariable 50 to 100; High leaves the ranges.
  void SetDensity(int density);

  int itsIndex = 0;
  bool itsFlags[3] = {true, false, false};
  int itsDensity = Normal;
  // MDec_None 0 to MDec_VeryHigh 4.
  int itsDecimation = 2;
  int itsRange[2] = {1, 100};
};

#endif
