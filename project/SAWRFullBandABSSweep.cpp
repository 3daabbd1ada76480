#include "SAWRFullBandABSSweep.h"

#include "SProjectClassID.h"

SCOLLECTABLE_DEFINE(SAWRFullBandABSSweep, SID_AWRFULLBANDABSSWEEP, &SAFIEntry::staticTypeInfo())
