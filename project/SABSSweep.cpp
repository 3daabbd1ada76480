#include "SABSSweep.h"

#include "SProjectClassID.h"

SCOLLECTABLE_DEFINE(SABSSweep, SID_ABSSWEEP, &SAFIEntry::staticTypeInfo())
