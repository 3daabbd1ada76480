#include "SVariableSweepBlock.h"

#include "SDimensionBlock.h"
#include "SFile.h"
#include "SFrequencyEntry.h"
#include "SProject.h"
#include "SProjectClassID.h"
#include "SProjectErrorManager.h"
#include "SVariableSweep.h"

#include <algorithm>

SCOLLECTABLE_DEFINE(SVariableSweepBlock, SID_VARIABLESWEEPBLOCK, &SFileBlock::staticTypeInfo())

SVariableSweepBlock::SVariableSweepBlock(const SVariableSweepBlock& other)
    : SFileBlock(other), itsEnabled(other.itsEnabled) {
  for (const SCollectable* sweep : other.itsSweeps) itsSweeps.append(static_cast<const SVariableSweep*>(sweep)->copy());
}

SVariableSweep* SVariableSweepBlock::Get(size_t i) const {
  return i < itsSweeps.entries() ? static_cast<SVariableSweep*>(itsSweeps.at(i)) : nullptr;
}

void SVariableSweepBlock::Add(SVariableSweep* sweep) { Insert(itsSweeps.entries(), sweep); }

void SVariableSweepBlock::Insert(size_t i, SVariableSweep* sweep) {
  if (sweep == nullptr) return;
  sweep->SetProject(itsOwner);
  itsSweeps.insertAt(std::min(i, itsSweeps.entries()), sweep);
}

void SVariableSweepBlock::Remove(size_t i) {
  if (i < itsSweeps.entries()) delete itsSweeps.removeAt(i);
}

void SVariableSweepBlock::Replace(size_t i, SVariableSweep* sweep) {
  if (i >= itsSweeps.entries() || sweep == nullptr) return;
  sweep->SetProject(itsOwner);
  delete itsSweeps.at(i);
  itsSweeps.at(i) = sweep;
}

void SVariableSweepBlock::Move(size_t from, size_t to) {
  if (from >= itsSweeps.entries() || to >= itsSweeps.entries() || from == to) return;
  SCollectable* sweep = itsSweeps.removeAt(from);
  itsSweeps.insertAt(to, sweep);
}

void SVariableSweepBlock::SetAllEnabled(bool on) {
  for (size_t i = 0; i < Count(); ++i) Get(i)->SetEnabled(on);
}

bool SVariableSweepBlock::IsEnabled() const {
  if (!itsEnabled) return false;
  for (size_t i = 0; i < Count(); ++i)
    if (Get(i)->HasVariableInUse()) return true;
  return false;
}

void SVariableSweepBlock::RenameVariable(const SString& oldName, const SString& newName) {
  for (size_t i = 0; i < Count(); ++i) Get(i)->GetVariables().Rename(oldName, newName);
}

bool SVariableSweepBlock::ReadBody(SFile& file, SProjectErrorManager& errors) {
  itsSweeps.clearAndDestroy();
  itsEnabled = false;
  SString token;
  if (file.PeekToken(token) && Match(token, "SWPVARS")) {
    SString word;
    file.NextToken();
    itsEnabled = file.GetToken(word) && word == "ON";
    if (!file.NextLine()) return true;
  }
  for (;;) {
    if (!file.HasToken()) {
      if (!file.NextLine()) return true;
      continue;
    }
    file.PeekToken(token);
    if (Match(token, "END")) return true;
    if (!SVariableSweep::StartsSet(token)) {
      if (!Unknown(file, token, errors)) return false;
      continue;
    }
    SVariableSweep* sweep = new SVariableSweep(itsOwner);
    if (!sweep->Read(file, errors)) {
      delete sweep;
      const int line = LineOf(file);
      errors.AddError(SProjectErrorManager::Error, line, 7137, line);
      return false;
    }
    itsSweeps.append(sweep);
  }
}

bool SVariableSweepBlock::Write(SProjectStream& out) {
  if (Format() < 21) {
    bool any = false;
    for (size_t i = 0; i < Count() && !any; ++i) any = Get(i)->HasVariableInUse();
    if (!any) return true;
  }
  return SFileBlock::Write(out);
}

void SVariableSweepBlock::WriteBody(SProjectStream& out) {
  const int format = Format();
  if (format >= 21 && itsEnabled) out << "SWPVARS ON\n";
  for (size_t i = 0; i < Count(); ++i) Get(i)->Write(out, format);
}

void SVariableSweepBlock::ChangeUnits(const SDimensionBlock& newUnits) {
  const double ratio = FrequencyRatio(newUnits);
  if (ratio == 1.0) return;
  for (size_t i = 0; i < Count(); ++i)
    for (SCollectable* entry : Get(i)->GetEntries()) static_cast<SFrequencyEntry*>(entry)->Scale(ratio);
}

bool SVariableSweepBlock::Validate(SProjectErrorManager& errors) {
  if (Count() > 0) return true;
  errors.AddError(SProjectErrorManager::Error, -1, 7212);
  return false;
}
