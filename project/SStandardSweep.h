#ifndef SSTANDARDSWEEP_H
#define SSTANDARDSWEEP_H

#include "SBaseSweep.h"

// "SWEEP start stop step": start, start + step, ... up to stop.
class SStandardSweep : public SBaseSweep {
  SCOLLECTABLE_DECLARE(SStandardSweep)
  SCOLLECTABLE_COPYABLE(SStandardSweep)
public:
  SDoubleValid itsStep;

  SString GetName() const override { return "SWEEP"; }
  bool Read(SFile& file) override;
  void Write(SProjectStream& out) const override;
  void GetFrequencies(std::vector<double>& out) const override;
  SString GetDescription() const override;
  void Scale(double ratio) override;
};

#endif
