#include "SMatlDielectric.h"

#include "SMatlClassID.h"
#include "SMatlMetalDrawLayer.h"

SCOLLECTABLE_DEFINE(SMatlDielectric, SID_MATLDIELECTRIC, &SMatlMaterial::staticTypeInfo())

SMatlDielectric::SMatlDielectric() {}
SMatlDielectric::SMatlDielectric(const SMatlDielectric& other) : SMatlMaterial(other), SLevelData(other), itsLevelNumber(other.itsLevelNumber), itsTruncate(other.itsTruncate) {}
bool SMatlDielectric::Write(SProjectStream&) const { return false; }
bool SMatlDielectric::Read(SCommentedFile&) { return false; }
bool SMatlDielectric::IsEqual(const SMatlMaterial&) const { return false; }
void SMatlDielectric::Scale(int, double) {}
