#ifndef SFREQLISTSWEEP_H
#define SFREQLISTSWEEP_H

#include "SFrequencyEntry.h"

#include <vector>

// "LIST f1 f2 ...".
class SFreqListSweep : public SFrequencyEntry {
  SCOLLECTABLE_DECLARE(SFreqListSweep)
  SCOLLECTABLE_COPYABLE(SFreqListSweep)
public:
  std::vector<double> itsFrequencies;

  SString GetName() const override { return "LIST"; }
  bool Read(SFile& file) override;
  void Write(SProjectStream& out) const override;
  void GetFrequencies(std::vector<double>& out) const override;
  SString GetDescription() const override;
  void Scale(double ratio) override;
};

#endif
