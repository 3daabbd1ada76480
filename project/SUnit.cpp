#include "SUnit.h"

#include "SProjectClassID.h"

SCOLLECTABLE_DEFINE(SUnit, SID_UNIT, &SCollectableString::staticTypeInfo())
