#include "SMatlMetalDrawLayer.h"

#include "SMatlClassID.h"
#include "SMatlMetalDrawLayer.h"

SCOLLECTABLE_DEFINE(SMatlMetalDrawLayer, SID_MATLMETALDRAWLAYER, &SMatlMaterial::staticTypeInfo())

bool SMatlMetalDrawLayer::Write(SProjectStream&) const { return false; }
bool SMatlMetalDrawLayer::Read(SCommentedFile&) { return false; }
bool SMatlMetalDrawLayer::IsEqual(const SMatlMaterial&) const { return false; }
void SMatlMetalDrawLayer::Scale(int, double) {}
bool SMatlMetalDrawLayer::SetUnusedToDefault(const SString&) { return false; }
void SMatlMetalDrawLayer::OrderRanges() {}
