#include "SJXYBlock.h"

#include "SProjectClassID.h"

SCOLLECTABLE_DEFINE(SJXYBlock, SID_JXYBLOCK, &SVerbatimBlock::staticTypeInfo())
