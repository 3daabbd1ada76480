#ifndef SBASESWEEP_H
#define SBASESWEEP_H

#include "SFrequencyEntry.h"

// Entries with a start and a stop frequency.
class SBaseSweep : public SFrequencyEntry {
  SCOLLECTABLE_DECLARE(SBaseSweep)
public:
  SDoubleValid itsStart;
  SDoubleValid itsStop;

  void Scale(double ratio) override;
  SString GetDescription() const override;
  bool HasLimits() const { return itsStart.IsValid() && itsStop.IsValid(); }
};

#endif
