#include "SMatlComment.h"

#include "SMatlClassID.h"
#include "SMatlMetalDrawLayer.h"

SCOLLECTABLE_DEFINE(SMatlComment, SID_MATLCOMMENT, &SMatlMaterial::staticTypeInfo())

bool SMatlComment::Write(SProjectStream&) const { return false; }
bool SMatlComment::Read(SCommentedFile&) { return false; }
bool SMatlComment::IsEqual(const SMatlMaterial&) const { return false; }
bool SMatlComment::AddLine(const SString&) { return false; }
