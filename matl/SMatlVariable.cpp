#include "SMatlVariable.h"

#include "SMatlClassID.h"
#include "SMatlMetalDrawLayer.h"

SCOLLECTABLE_DEFINE(SMatlVariable, SID_MATLVARIABLE, &SMatlMaterial::staticTypeInfo())

bool SMatlVariable::Write(SProjectStream&) const { return false; }
bool SMatlVariable::Read(SCommentedFile&) { return false; }
bool SMatlVariable::IsEqual(const SMatlMaterial&) const { return false; }
void SMatlVariable::Set(const SString&, const SString&) {}
SString SMatlVariable::GetValueText() const { return SString(); }
bool SMatlVariable::SetIntoProject(SProject*) const { return false; }
