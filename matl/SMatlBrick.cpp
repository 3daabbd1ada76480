#include "SMatlBrick.h"

#include "SMatlClassID.h"
#include "SMatlMetalDrawLayer.h"

SCOLLECTABLE_DEFINE(SMatlBrick, SID_MATLBRICK, &SMatlMaterial::staticTypeInfo())

bool SMatlBrick::IsEqual(const SMatlMaterial&) const { return false; }
