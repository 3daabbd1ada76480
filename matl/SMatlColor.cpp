#include "SMatlColor.h"

#include "SMatlClassID.h"
#include "SMatlMetalDrawLayer.h"

SCOLLECTABLE_DEFINE(SMatlColor, SID_MATLCOLOR, &SMatlMaterial::staticTypeInfo())

bool SMatlColor::Read(SCommentedFile&) { return false; }
bool SMatlColor::IsEqual(const SMatlMaterial&) const { return false; }
