#ifndef SLINEARSWEEP_H
#define SLINEARSWEEP_H

#include "SNumberPointsSweep.h"

class SLinearSweep : public SNumberPointsSweep {
  SCOLLECTABLE_DECLARE(SLinearSweep)
  SCOLLECTABLE_COPYABLE(SLinearSweep)
public:
  SString GetName() const override { return "LSWEEP"; }
  void GetFrequencies(std::vector<double>& out) const override;
};

#endif
