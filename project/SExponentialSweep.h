#ifndef SEXPONENTIALSWEEP_H
#define SEXPONENTIALSWEEP_H

#include "SNumberPointsSweep.h"

class SExponentialSweep : public SNumberPointsSweep {
  SCOLLECTABLE_DECLARE(SExponentialSweep)
  SCOLLECTABLE_COPYABLE(SExponentialSweep)
public:
  SString GetName() const override { return "ESWEEP"; }
  void GetFrequencies(std::vector<double>& out) const override;
};

#endif
