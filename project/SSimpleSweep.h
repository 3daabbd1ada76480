#ifndef SSIMPLESWEEP_H
#define SSIMPLESWEEP_H

#include "SStandardSweep.h"

class SSimpleSweep : public SStandardSweep {
  SCOLLECTABLE_DECLARE(SSimpleSweep)
  SCOLLECTABLE_COPYABLE(SSimpleSweep)
public:
  SString GetName() const override { return "SIMPLE"; }
};

#endif
