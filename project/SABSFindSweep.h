#ifndef SABSFINDSWEEP_H
#define SABSFINDSWEEP_H

#include "SAFIEntry.h"

// ABS_FMIN or ABS_FMAX, as read.
class SABSFindSweep : public SAFIEntry {
  SCOLLECTABLE_DECLARE(SABSFindSweep)
  SCOLLECTABLE_COPYABLE(SABSFindSweep)
public:
  bool itsFindMax = false;
  SString GetName() const override { return itsFindMax ? "ABS_FMAX" : "ABS_FMIN"; }
};

#endif
