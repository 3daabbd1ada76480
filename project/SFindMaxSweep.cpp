#include "SFindMaxSweep.h"

#include "SProjectClassID.h"

SCOLLECTABLE_DEFINE(SFindMaxSweep, SID_FINDMAXSWEEP, &SIFSEntry::staticTypeInfo())
