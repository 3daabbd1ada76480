#include "SResponseBlock.h"

#include "SProjectClassID.h"

SCOLLECTABLE_DEFINE(SResponseBlock, SID_RESPONSEBLOCK, &SVerbatimBlock::staticTypeInfo())
