#include "SInterfaceBlock.h"

#include "SProjectClassID.h"

SCOLLECTABLE_DEFINE(SInterfaceBlock, SID_INTERFACEBLOCK, &SVerbatimBlock::staticTypeInfo())
