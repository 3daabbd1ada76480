#include "SMatlTechLayer.h"

#include "SMatlClassID.h"
#include "SMatlMetalDrawLayer.h"

SCOLLECTABLE_DEFINE(SMatlTechLayer, SID_MATLTECHLAYER, &SMatlMaterial::staticTypeInfo())

SMatlTechLayer::SMatlTechLayer() : itsLayer(new STechLayer) {}
SMatlTechLayer::SMatlTechLayer(const SMatlTechLayer& other) : SMatlMaterial(other), itsLayer(new STechLayer) {}
SMatlTechLayer::~SMatlTechLayer() {}
bool SMatlTechLayer::Write(SProjectStream&) const { return false; }
bool SMatlTechLayer::Read(SCommentedFile&) { return false; }
bool SMatlTechLayer::IsEqual(const SMatlMaterial&) const { return false; }
const char* SMatlTechLayer::SubKindKeyword(int) { return nullptr; }
