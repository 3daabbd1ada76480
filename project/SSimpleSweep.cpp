#include "SSimpleSweep.h"

#include "SProjectClassID.h"

SCOLLECTABLE_DEFINE(SSimpleSweep, SID_SIMPLESWEEP, &SStandardSweep::staticTypeInfo())
