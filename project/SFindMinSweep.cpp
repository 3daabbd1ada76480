#include "SFindMinSweep.h"

#include "SProjectClassID.h"

SCOLLECTABLE_DEFINE(SFindMinSweep, SID_FINDMINSWEEP, &SIFSEntry::staticTypeInfo())
