#ifndef SEXTERNALFILESWEEP_H
#define SEXTERNALFILESWEEP_H

#include "SFrequencyEntry.h"

// "FILE <name>": frequencies from an external file.
class SExternalFileSweep : public SFrequencyEntry {
  SCOLLECTABLE_DECLARE(SExternalFileSweep)
  SCOLLECTABLE_COPYABLE(SExternalFileSweep)
public:
  SString itsFileName;

  SString GetName() const override { return "FILE"; }
  bool Read(SFile& file) override;
  void Write(SProjectStream& out) const override;
  void GetFrequencies(std::vector<double>&) const override {}
  SString GetDescription() const override { return itsFileName; }
  void Scale(double) override {}
};

#endif
