#ifndef SAFIENTRY_H
#define SAFIENTRY_H

#include "SBaseSweep.h"

// Adaptive entries: start, stop and, in the current format, a resolution.
class SAFIEntry : public SBaseSweep {
  SCOLLECTABLE_DECLARE(SAFIEntry)
public:
  SDoubleValid itsResolution;

  bool Read(SFile& file) override;
  void Write(SProjectStream& out) const override;
  void GetFrequencies(std::vector<double>& out) const override;
  void Scale(double ratio) override;
};

#endif
