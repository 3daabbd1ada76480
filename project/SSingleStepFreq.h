#ifndef SSINGLESTEPFREQ_H
#define SSINGLESTEPFREQ_H

#include "SStandardSweep.h"

// "STEP f": one frequency.
class SSingleStepFreq : public SStandardSweep {
  SCOLLECTABLE_DECLARE(SSingleStepFreq)
  SCOLLECTABLE_COPYABLE(SSingleStepFreq)
public:
  SString GetName() const override { return "STEP"; }
  bool Read(SFile& file) override;
  void Write(SProjectStream& out) const override;
  void GetFrequencies(std::vector<double>& out) const override;
  SString GetDescription() const override;
};

#endif
