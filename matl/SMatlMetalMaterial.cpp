#include "SMatlMetalMaterial.h"

#include "SMatlClassID.h"
#include "SMatlMetalDrawLayer.h"

SCOLLECTABLE_DEFINE(SMatlMetalMaterial, SID_MATLMETALMATERIAL, &SMatlMaterial::staticTypeInfo())

SMatlMetalMaterial::SMatlMetalMaterial(const SMatlMetalDrawLayer&) {}
bool SMatlMetalMaterial::Write(SProjectStream&) const { return false; }
bool SMatlMetalMaterial::Read(SCommentedFile&) { return false; }
bool SMatlMetalMaterial::IsEqual(const SMatlMaterial&) const { return false; }
void SMatlMetalMaterial::Scale(int, double) {}
bool SMatlMetalMaterial::SetUnusedToDefault(const SString&) { return false; }
bool SMatlMetalMaterial::IsRestrictedName(const SString&) { return false; }
