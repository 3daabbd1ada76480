#include "STranslatorBlock.h"

#include "SProjectClassID.h"

SCOLLECTABLE_DEFINE(STranslatorBlock, SID_TRANSLATORBLOCK, &SVerbatimBlock::staticTypeInfo())
