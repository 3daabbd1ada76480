#include "SMatlViaMaterial.h"

#include "SMatlClassID.h"
#include "SMatlMetalDrawLayer.h"

SCOLLECTABLE_DEFINE(SMatlViaMaterial, SID_MATLVIAMATERIAL, &SMatlViaDrawLayer::staticTypeInfo())

bool SMatlViaMaterial::Write(SProjectStream&) const { return false; }
bool SMatlViaMaterial::Read(SCommentedFile&) { return false; }
bool SMatlViaMaterial::IsEqual(const SMatlMaterial&) const { return false; }
bool SMatlViaMaterial::IsRestrictedName(const SString&) { return false; }
