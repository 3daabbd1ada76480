#include "SMatlBrick.h"

#include "SMatlClassID.h"
#include "SMatlUtil.h"

SCOLLECTABLE_DEFINE(SMatlBrick, SID_MATLBRICK, &SMatlMaterial::staticTypeInfo())

bool SMatlBrick::IsEqual(const SMatlMaterial& other) const {
  const SMatlBrick* o = dynamic_cast<const SMatlBrick*>(&other);
  if (!o || !IsSameDrawLayer(*o) || !IsSameMetal(*o) || itsBrickType != o->itsBrickType) return false;
  const SBrickTypeData& a = itsDescription;
  const SBrickTypeData& b = o->itsDescription;
  for (int axis = 0; axis < 4; ++axis)
    if (!SMatlUtil::SameValue(a.itsEps[axis], b.itsEps[axis]) || !SMatlUtil::SameValue(a.itsLoss[axis], b.itsLoss[axis]) ||
        !SMatlUtil::SameValue(a.itsLossTan[axis], b.itsLossTan[axis]) ||
        !SMatlUtil::SameValue(a.itsMuRel[axis], b.itsMuRel[axis]) ||
        !SMatlUtil::SameValue(a.itsMagLossTan[axis], b.itsMagLossTan[axis]))
      return false;
  return a.itsParmType == b.itsParmType;
}
