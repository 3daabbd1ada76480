#ifndef SNUMBERPOINTSSWEEP_H
#define SNUMBERPOINTSSWEEP_H

#include "SBaseSweep.h"

// Start, stop and a number of points.
class SNumberPointsSweep : public SBaseSweep {
  SCOLLECTABLE_DECLARE(SNumberPointsSweep)
public:
  int itsPoints = 0;

  bool Read(SFile& file) override;
  void Write(SProjectStream& out) const override;
  SString GetDescription() const override;
};

#endif
