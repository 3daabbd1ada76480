#include "SProjectErrorEntry.h"

#include "SProjectClassID.h"

SCOLLECTABLE_DEFINE(SProjectErrorEntry, SID_PROJECTERRORENTRY, &SCollectable::staticTypeInfo())
