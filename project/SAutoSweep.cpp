#include "SAutoSweep.h"

#include "SProjectClassID.h"

SCOLLECTABLE_DEFINE(SAutoSweep, SID_AUTOSWEEP, &SIFSEntry::staticTypeInfo())
