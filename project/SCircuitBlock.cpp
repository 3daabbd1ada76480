#include "SCircuitBlock.h"

#include "SProjectClassID.h"

SCOLLECTABLE_DEFINE(SCircuitBlock, SID_CIRCUITBLOCK, &SVerbatimBlock::staticTypeInfo())
