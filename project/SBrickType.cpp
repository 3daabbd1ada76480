#include "SBrickType.h"

#include "SGeoClassID.h"
#include "SProjectStream.h"

SCOLLECTABLE_DEFINE(SBrickType, SID_BRICKTYPE, &SEnclosure::staticTypeInfo())

SBrickTypeData::SBrickTypeData() {
  itsTypeName = "Unnamed";
  for (int axis = 0; axis < 4; ++axis) {
    itsEps[axis].SetValue(1);
    itsMuRel[axis].SetValue(1);
    itsLoss[axis].SetUnitKind(SValueVar::Conductivity);
  }
}

SBrickType::SBrickType() {}

SBrickType::SBrickType(const SString& name, int parmType, int pattern) {
  itsTypeName = name;
  itsParmType = parmType;
  SetPattern(pattern);
}

bool SBrickType::IsSameAs(const SBrickType& o) const {
  auto same = [](const SValueVarDouble& a, const SValueVarDouble& b) {
    return a.GetValue() == b.GetValue() && a.GetEquation() == b.GetEquation();
  };
  if (itsTypeName != o.itsTypeName || itsParmType != o.itsParmType || itsDefinition != o.itsDefinition ||
      itsLossType.GetCode() != o.itsLossType.GetCode())
    return false;
  for (int axis = 0; axis < 4; ++axis)
    if (!same(itsEps[axis], o.itsEps[axis]) || !same(itsLoss[axis], o.itsLoss[axis]) ||
        !same(itsLossTan[axis], o.itsLossTan[axis]) || !same(itsMuRel[axis], o.itsMuRel[axis]) ||
        !same(itsMagLossTan[axis], o.itsMagLossTan[axis]))
      return false;
  return true;
}

void SBrickType::Write(SProjectStream& out, int format, const SDimensionBlock*) const {
  if (format < 3) return;
  const bool isotropic = itsParmType == 1;
  out << (isotropic ? "BRI" : "BRA") << " \"" << itsTypeName << "\" " << itsPattern << ' ';
  const int first = isotropic ? Isotropic : X;
  const int last = isotropic ? Isotropic : Z;
  for (int axis = first; axis <= last; ++axis) {
    for (const SValueVarDouble* v : {&itsEps[axis], &itsLossTan[axis], &itsLoss[axis]}) {
      v->WriteValue(out);
      out << ' ';
    }
  }
  if (format >= 15 && itsLossType.GetCode() != SElectricalLossType::Conductivity) out << ' ' << itsLossType.Keyword();
  out << '\n';
}
