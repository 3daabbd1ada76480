#include "SMatlViaDrawLayer.h"

#include "SMatlClassID.h"
#include "SMatlMetalDrawLayer.h"

SCOLLECTABLE_DEFINE(SMatlViaDrawLayer, SID_MATLVIADRAWLAYER, &SMatlMaterial::staticTypeInfo())

SMatlViaDrawLayer::SMatlViaDrawLayer() : SMatlDrawLayer(true) {}
bool SMatlViaDrawLayer::Write(SProjectStream&) const { return false; }
bool SMatlViaDrawLayer::Read(SCommentedFile&) { return false; }
bool SMatlViaDrawLayer::IsEqual(const SMatlMaterial&) const { return false; }
void SMatlViaDrawLayer::Scale(int, double) {}
bool SMatlViaDrawLayer::SetUnusedToDefault(const SString&) { return false; }
void SMatlViaDrawLayer::MakeConsistent() {}
