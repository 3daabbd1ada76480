#include "SABSFindSweep.h"

#include "SProjectClassID.h"

SCOLLECTABLE_DEFINE(SABSFindSweep, SID_ABSFINDSWEEP, &SAFIEntry::staticTypeInfo())
