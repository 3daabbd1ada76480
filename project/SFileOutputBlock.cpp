#include "SFileOutputBlock.h"

#include "SProjectClassID.h"

SCOLLECTABLE_DEFINE(SFileOutputBlock, SID_FILEOUTPUTBLOCK, &SVerbatimBlock::staticTypeInfo())
