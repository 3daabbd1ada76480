#include "SMatlTechLayerFastOpt.h"

#include "SMatlClassID.h"
#include "SMatlMetalDrawLayer.h"

SCOLLECTABLE_DEFINE(SMatlTechLayerFastOpt, SID_MATLTECHLAYERFASTOPT, &SMatlMaterial::staticTypeInfo())

SMatlTechLayerFastOpt::SMatlTechLayerFastOpt() : itsLayer(new STechLayer) {}
SMatlTechLayerFastOpt::SMatlTechLayerFastOpt(const SMatlTechLayerFastOpt& other) : SMatlMaterial(other), itsLayer(new STechLayer) {}
SMatlTechLayerFastOpt::~SMatlTechLayerFastOpt() {}
bool SMatlTechLayerFastOpt::Write(SProjectStream&) const { return false; }
bool SMatlTechLayerFastOpt::Read(SCommentedFile&) { return false; }
bool SMatlTechLayerFastOpt::IsEqual(const SMatlMaterial&) const { return false; }
const char* SMatlTechLayerFastOpt::SubKindKeyword(int) { return nullptr; }
