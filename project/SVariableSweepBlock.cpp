#include "SVariableSweepBlock.h"

#include "SProjectClassID.h"

SCOLLECTABLE_DEFINE(SVariableSweepBlock, SID_VARIABLESWEEPBLOCK, &SVerbatimBlock::staticTypeInfo())
