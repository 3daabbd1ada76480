#include "SLevel.h"

#include "SCircuit.h"
#include "SDimensionBlock.h"
#include "SFile.h"
#include "SGeoClassID.h"
#include "SNumberFormat.h"
#include "SProjectErrorManager.h"
#include "SProjectStream.h"

SCOLLECTABLE_DEFINE(SLevel, SID_LEVEL, &SObjectEnclosure::staticTypeInfo())

namespace {
const char* const kWords[] = {"Thickness", "Erel", "MuRel", "DLossTan", "MLossTan", "DieElecLoss"};
const char* const kWordsZ[] = {"ErelZ", "MuRelZ", "DLossTanZ", "MLossTanZ", "DieElecLossZ"};
const int kMessages[] = {6083, 6084, 6085, 6086, 6087, 6088};
}  // namespace

SLevelData::SLevelData() {
  itsValues[Erel].SetValue(1.0);
  itsValues[MuRel].SetValue(1.0);
  itsValues[DieElecLoss].SetUnitKind(SValueVar::Conductivity);
  for (int i = Erel; i < ValueCount; ++i) itsValuesZ[i - Erel].CopyValue(itsValues[i]);
  itsValuesZ[DieElecLoss - Erel].SetUnitKind(SValueVar::Conductivity);
  itsValues[Thickness].SetUnitKind(SValueVar::Length);
}

void SLevelData::NameValues(int index) {
  const SString prefix = "Layer " + SString::number(static_cast<double>(index), 8) + " ";
  for (int i = 0; i < ValueCount; ++i) itsValues[i].SetName(prefix + kWords[i]);
  for (int i = 0; i < ValueCount - 1; ++i) itsValuesZ[i].SetName(prefix + kWordsZ[i]);
}

void SLevelData::WriteLoss(SProjectStream& out, const SValueVarDouble& loss, int format,
                           const SDimensionBlock* dim) const {
  const int code = itsLossType.GetCode();
  if (format >= 15 || code == SElectricalLossType::Conductivity || dim == nullptr || loss.HasEquation()) {
    loss.WriteValue(out);
    return;
  }
  // Older forms know conductivity only.
  double sigma = 0.0;
  const double value = loss.GetValue();
  if (code == SElectricalLossType::Resistivity) {
    const double rho = dim->ToBase(SDimensionBlock::Resistivity, value);
    sigma = rho > 0 ? 1.0 / rho : 0.0;
  } else if (code == SElectricalLossType::SheetResistance) {
    const double thickness = dim->ToBase(SDimensionBlock::Length, GetThickness());
    const double rs = dim->ToBase(SDimensionBlock::SheetResistance, value);
    sigma = rs > 0 && thickness > 0 ? 1.0 / (rs * thickness) : 0.0;
  } else {
    loss.WriteValue(out);
    return;
  }
  out.Number(dim->FromBase(SDimensionBlock::Conductivity, sigma), SNumberFormat::Named);
}

void SLevelData::WriteDielectric(SProjectStream& out, int format, const SDimensionBlock* dim) const {
  SProjectDigits digits(out, SNumberFormat::Named);
  out << "      ";
  for (int i = Thickness; i <= MLossTan; ++i) {
    itsValues[i].WriteValue(out);
    out << ' ';
  }
  WriteLoss(out, itsValues[DieElecLoss], format, dim);
  out << ' ' << (format < 5 && itsNZParts == 0 ? 2 : itsNZParts);
  if (format >= 3) out << " \"" << itsName << '"';
  if (itsAnisotropic && format >= 8) {
    out << " A ";
    for (int i = Erel; i <= MLossTan; ++i) {
      GetValueZ(i).WriteValue(out);
      out << ' ';
    }
    WriteLoss(out, GetValueZ(DieElecLoss), format, dim);
  }
  if (format >= 15 && itsLossType.GetCode() != SElectricalLossType::Conductivity)
    out << ' ' << itsLossType.Keyword();
  out << '\n';
}

bool SLevelData::ReadDielectric(SFile& file, SProjectErrorManager& errors) {
  const int line = static_cast<int>(file.LineCount());
  for (int i = 0; i < ValueCount; ++i) {
    if (!itsValues[i].ReadValueToken(file)) {
      errors.AddError(SProjectErrorManager::Error, line, kMessages[i]);
      return false;
    }
  }
  if (!file.GetIntStrict(itsNZParts)) {
    errors.AddError(SProjectErrorManager::Error, line, 6089);
    return false;
  }
  if (itsNZParts < 0) {
    errors.AddPrefixedError(SProjectErrorManager::Error, line, 6005, 6089);
    return false;
  }
  SString token;
  itsName = file.GetToken(token) ? token : SString("Unknown");
  if (!file.PeekToken(token)) return true;
  if (token == "A") {
    file.NextToken();
    itsAnisotropic = 1;
    for (int i = Erel; i < ValueCount; ++i) {
      if (!ValueZ(i).ReadValueToken(file)) {
        errors.AddError(SProjectErrorManager::Error, line, kMessages[i]);
        return false;
      }
    }
  }
  if (file.GetToken(token)) itsLossType.SetFromKeyword(token);
  return true;
}

SLevel::SLevel(SBaseEnclosure* owner, int index) : itsIndex(index) {
  NameValues(index);
  if (owner != nullptr) owner->AddChild(this);
}

void SLevel::NoteChild(const SBaseEnclosure* child, int change) {
  const ClassID id = child->isA();
  if (id == SID_TECHLAYER)
    itsTechLayers += static_cast<size_t>(change);
  else if (id == SID_SMDEV)
    itsComponents += static_cast<size_t>(change);
}

void SLevel::SetIndex(int index) {
  itsIndex = index;
  NameValues(index);
}

void SLevel::CopyDielectric(const SLevelData& other) {
  for (int i = 0; i < ValueCount; ++i) itsValues[i].CopyValue(other.GetValue(i));
  for (int i = Erel; i < ValueCount; ++i) ValueZ(i).CopyValue(other.GetValueZ(i));
  itsNZParts = other.GetNZParts();
  itsName = other.GetLevelName();
  itsAnisotropic = other.IsAnisotropic() ? 1 : 0;
  itsLossType = other.GetLossType();
  itsFromSTF = other.IsMaterialFromSTF() ? 1 : 0;
}
