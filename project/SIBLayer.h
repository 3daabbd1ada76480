#ifndef SIBLAYER_H
#define SIBLAYER_H

#include "SCollectable.h"
#include "SProjectStream.h"

class SFile;

// A layer of the host tool (LAYFPAWR): its number, two values and two flags, which only
// the host tool reads.
class SIBLayer : public SCollectable {
  SCOLLECTABLE_DECLARE(SIBLayer)
  SCOLLECTABLE_COPYABLE(SIBLayer)
public:
  // The fields behind the keyword; false when a number can't be read.
  bool Read(SFile& file);
  void Write(SProjectStream& out) const;

  int itsNumber = 0;
  int itsValues[2] = {0, 0};
  bool itsFlags[2] = {false, false};
};

#endif
