#ifndef SAWRFULLBANDABSSWEEP_H
#define SAWRFULLBANDABSSWEEP_H

#include "SAFIEntry.h"

class SAWRFullBandABSSweep : public SAFIEntry {
  SCOLLECTABLE_DECLARE(SAWRFullBandABSSweep)
  SCOLLECTABLE_COPYABLE(SAWRFullBandABSSweep)
public:
  SString GetName() const override { return "AWRFBS"; }
};

#endif
