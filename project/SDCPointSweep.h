#ifndef SDCPOINTSWEEP_H
#define SDCPOINTSWEEP_H

#include "SFrequencyEntry.h"

// "DC_FREQ AUTO" or "DC_FREQ MAN <kHz>".
class SDCPointSweep : public SFrequencyEntry {
  SCOLLECTABLE_DECLARE(SDCPointSweep)
  SCOLLECTABLE_COPYABLE(SDCPointSweep)
public:
  bool itsManual = false;
  // In kHz, whatever the project's unit.
  double itsKiloHertz = 0.0;

  SString GetName() const override { return "DC_FREQ"; }
  bool Read(SFile& file) override;
  void Write(SProjectStream& out) const override;
  void GetFrequencies(std::vector<double>& out) const override;
  SString GetDescription() const override;
  void Scale(double) override {}
};

#endif
