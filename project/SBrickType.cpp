#include "SBrickType.h"

#include "SGeoClassID.h"
#include "SMaterialTypeIO.h"
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

namespace {
SString Num(const SValueVarDouble& v) { return v.HasEquation() ? v.GetEquation() : SString::number(v.GetValue(), 6); }

void Field(SProjectStream& out, const SValueVarDouble& value) {
  value.WriteValue(out);
  out << ' ';
}
}  // namespace

SString SBrickType::Describe() const {
  if (itsDefinition == Air) return "Air";
  if (itsParmType == 1)
    return "Isotropic: Eps:" + Num(itsEps[Isotropic]) + " Tan:" + Num(itsLossTan[Isotropic]) +
           " Cnd:" + Num(itsLoss[Isotropic]);
  SString text = "Anisotropic:";
  const char* const axes[] = {"", " X", " Y", " Z"};
  for (int axis = X; axis <= Z; ++axis)
    text += SString(axes[axis]) + " Eps:" + Num(itsEps[axis]) + " Tan:" + Num(itsLossTan[axis]) +
            " Cnd:" + Num(itsLoss[axis]);
  return text;
}

SString SBrickType::ToText() const { return itsTypeName + ":  Brick " + Describe(); }

void SBrickType::Write(SProjectStream& out, int format, const SDimensionBlock* dim) const {
  if (format < 3) return;
  const bool isotropic = itsParmType == 1;
  out << (isotropic ? "BRI" : "BRA") << " \"" << itsTypeName << "\" " << itsPattern << ' ';
  const int first = isotropic ? Isotropic : X;
  const int last = isotropic ? Isotropic : Z;
  const int loss = itsLossType.GetCode();
  for (int axis = first; axis <= last; ++axis) {
    Field(out, itsEps[axis]);
    Field(out, itsLossTan[axis]);
    SMaterialTypeIO::WriteConductiveLoss(out, itsLoss[axis], false, loss, nullptr, format, dim, false);
  }
  if (format >= 15 && loss != SElectricalLossType::Conductivity) out << ' ' << itsLossType.Keyword();
  out << '\n';
}

void SBrickType::WriteMagnetic(SProjectStream& out) const {
  out << "BRL \"" << itsTypeName << "\" " << itsPattern << ' ';
  for (int axis = X; axis <= Z; ++axis) {
    const int from = itsParmType == 1 ? Isotropic : axis;
    for (const SValueVarDouble* v :
         {&itsEps[from], &itsLossTan[from], &itsLoss[from], &itsMuRel[from], &itsMagLossTan[from]})
      Field(out, *v);
  }
  if (itsLossType.GetCode() != SElectricalLossType::Conductivity) out << ' ' << itsLossType.Keyword();
  out << '\n';
}
