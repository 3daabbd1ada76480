#include "SXmatlCond.h"

#include "SMatlMetalData.h"
#include "SMatlUtil.h"
#include "SXmatlEntries.h"

namespace {

struct SKindRow {
  const char* word;
  int values;
  int lossType;
  int metalType;
};

// By kind: the "condspec" word, the value attributes, the loss type and the fixed metal type.
const SKindRow kKinds[] = {
    {"cond", SXmatlCond::ValueCond, SMatlMetalData::Cond, -1},
    {"rsvy", SXmatlCond::ValueRsvy, SMatlMetalData::Res, -1},
    {"shres", SXmatlCond::ValueShRes, SMatlMetalData::ShRes, -1},
    {"rpv", SXmatlCond::ValueRpv, SMatlMetalData::RPV, -1},
    {"res", SXmatlCond::ValueRdc, SMatlMetalData::Cond, SMatlMetalData::Resistor},
    {"rdcrrf", SXmatlCond::ValueRdc | SXmatlCond::ValueRrf, SMatlMetalData::Cond, SMatlMetalData::RdcRrf},
    {"general", SXmatlCond::ValueRdc | SXmatlCond::ValueRrf | SXmatlCond::ValueXdc | SXmatlCond::ValueLs,
     SMatlMetalData::Cond, SMatlMetalData::General},
    {"sense", SXmatlCond::ValueXdc, SMatlMetalData::Cond, SMatlMetalData::SenseMetal},
    // A surface has no metal type of its own; its values are those of a general metal.
    {"surface", SXmatlCond::ValueRdc | SXmatlCond::ValueRrf | SXmatlCond::ValueXdc | SXmatlCond::ValueLs,
     SMatlMetalData::Cond, SMatlMetalData::General},
};
const int kKindCount = static_cast<int>(sizeof kKinds / sizeof kKinds[0]);

bool ValidKind(int kind) { return kind >= 0 && kind < kKindCount; }

} // namespace

SXmatlCond::SXmatlCond() {
  itsCondIsInf = false;
  itsCurrentRatio.SetValue(0.0);
}

const char* SXmatlCond::KindWord(int kind) { return ValidKind(kind) ? kKinds[kind].word : "cond"; }

int SXmatlCond::KindOf(const SString& word) {
  for (int kind = 0; kind < kKindCount; ++kind)
    if (word == kKinds[kind].word) return kind;
  return -1;
}

int SXmatlCond::Values(int kind) { return ValidKind(kind) ? kKinds[kind].values : 0; }

void SXmatlCond::SetKind(int kind) {
  itsKind = ValidKind(kind) ? kind : Cond;
  SetLossType(kKinds[itsKind].lossType);
  if (kKinds[itsKind].metalType >= 0) SetModel(kKinds[itsKind].metalType);
}

int SXmatlCond::GetFixedMetalType() const { return kKinds[itsKind].metalType; }

bool SXmatlCond::IsSame(const SXmatlCond& o) const {
  if (itsName != o.itsName || itsPrivate != o.itsPrivate || itsKind != o.itsKind) return false;
  const int values = Values(itsKind);
  if (values & (ValueCond | ValueRsvy | ValueShRes | ValueRpv)) {
    if (itsCondIsInf != o.itsCondIsInf) return false;
    if (!itsCondIsInf && !SXmatlSameNumber(itsConductivity.GetValue(), o.itsConductivity.GetValue())) return false;
  }
  const std::pair<int, SValueVarDouble SMetalTypeData::*> fields[] = {
      {ValueRdc, &SMetalTypeData::itsRdc}, {ValueRrf, &SMetalTypeData::itsRrf},
      {ValueXdc, &SMetalTypeData::itsXdc}, {ValueLs, &SMetalTypeData::itsLs}};
  for (const auto& field : fields)
    if ((values & field.first) && !SXmatlSameNumber((this->*field.second).GetValue(), (o.*field.second).GetValue()))
      return false;
  return true;
}

void SXmatlCond::Scale(int dimension, double factor) {
  const bool scaled = (dimension == SMatlUtil::Conductivity && itsKind == Cond) ||
                      (dimension == SMatlUtil::Resistivity && itsKind == Rsvy) ||
                      (dimension == SMatlUtil::SheetResistance && itsKind == ShRes);
  if (scaled && !itsCondIsInf) SMatlUtil::ScaleValue(itsConductivity, factor);
}
