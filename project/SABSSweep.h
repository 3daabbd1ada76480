#ifndef SABSSWEEP_H
#define SABSSWEEP_H

#include "SAFIEntry.h"

class SABSSweep : public SAFIEntry {
  SCOLLECTABLE_DECLARE(SABSSweep)
  SCOLLECTABLE_COPYABLE(SABSSweep)
public:
  SString GetName() const override { return "ABS_ENTRY"; }
};

#endif
