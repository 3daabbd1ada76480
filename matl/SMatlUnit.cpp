#include "SMatlUnit.h"

#include "SMatlClassID.h"
#include "SMatlMetalDrawLayer.h"

SCOLLECTABLE_DEFINE(SMatlUnit, SID_MATLUNIT, &SMatlMaterial::staticTypeInfo())

bool SMatlUnit::Write(SProjectStream&) const { return false; }
bool SMatlUnit::Read(SCommentedFile&) { return false; }
bool SMatlUnit::IsEqual(const SMatlMaterial&) const { return false; }
bool SMatlUnit::TakeToken(const SString&) { return false; }
SString SMatlUnit::GetCurrentName(int, bool) const { return SString(); }
SString SMatlUnit::GetFileName(int, bool) const { return SString(); }
double SMatlUnit::GetConversionFactor(int) const { return 1.0; }
