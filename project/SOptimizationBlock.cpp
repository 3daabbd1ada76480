#include "SOptimizationBlock.h"

#include "SProjectClassID.h"

SCOLLECTABLE_DEFINE(SOptimizationBlock, SID_OPTIMIZATIONBLOCK, &SVerbatimBlock::staticTypeInfo())
