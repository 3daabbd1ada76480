#include "SSubdivisionBlock.h"

#include "SProjectClassID.h"

SCOLLECTABLE_DEFINE(SSubdivisionBlock, SID_SUBDIVISIONBLOCK, &SVerbatimBlock::staticTypeInfo())
