#include "SFrequencyBlock.h"

#include "SDimensionBlock.h"
#include "SFile.h"
#include "SFrequencyEntry.h"
#include "SProject.h"
#include "SProjectClassID.h"
#include "SProjectErrorManager.h"
#include "SRegexp.h"
#include "SVariableSweep.h"
#include "SVariableSweepBlock.h"

#include <algorithm>

SCOLLECTABLE_DEFINE(SFrequencyBlock, SID_FREQUENCYBLOCK, &SFileBlock::staticTypeInfo())

SFrequencyBlock::SFrequencyBlock(const SFrequencyBlock& other) : SFileBlock(other), itsChanged(other.itsChanged) {
  for (const SCollectable* entry : other.itsEntries)
    itsEntries.append(static_cast<const SFrequencyEntry*>(entry)->Clone());
}

void SFrequencyBlock::AddEntry(SFrequencyEntry* entry) {
  if (entry) itsEntries.append(entry);
}

bool SFrequencyBlock::TakeUnit(const SString& token) {
  static const SRegexp unitPattern("[GgMmTtKkPp]?[Hh][Zz]");
  if (!unitPattern.exactMatch(token)) return false;
  SDimensionBlock* units = itsOwner ? itsOwner->GetDimensionBlock() : nullptr;
  if (units) units->SetUnit(SDimensionBlock::Frequency, token.upper());
  return true;
}

bool SFrequencyBlock::ReadFirstLine(SFile& file) {
  SString token;
  while (file.GetToken(token)) TakeUnit(token);
  file.NextLine();
  return true;
}

bool SFrequencyBlock::ReadBody(SFile& file, SProjectErrorManager& errors) {
  itsEntries.clearAndDestroy();
  itsChanged = false;
  for (;;) {
    if (!file.HasToken()) return true;
    SString keyword;
    file.PeekToken(keyword);
    if (Match(keyword, "END")) return true;
    if (TakeUnit(keyword)) {
      // the unit alone on a line
    } else if (keyword.compare("FREQUNIT", true) == 0) {
      SString unit;
      file.GetToken(keyword);
      file.GetToken(unit);
      SDimensionBlock* units = itsOwner ? itsOwner->GetDimensionBlock() : nullptr;
      if (units && !units->SetUnit(SDimensionBlock::Frequency, unit))
        errors.AddError(SProjectErrorManager::Warning, LineOf(file), 7139, "FREQ", unit.data());
    } else {
      SFrequencyEntry* entry = SFrequencyEntry::Create(keyword);
      if (!entry) {
        if (!Unknown(file, keyword, errors)) return false;
        continue;
      }
      file.GetToken(keyword);
      if (!entry->Read(file)) {
        delete entry;
        SString text;
        file.GetLine(text);
        errors.AddError(SProjectErrorManager::Error, LineOf(file), 7132, text.data());
        return false;
      }
      const SString name = entry->GetName();
      if (name == "AUTO" || name == "FINDMAX" || name == "FINDMIN") itsChanged = true;
      itsEntries.append(entry);
    }
    if (!file.NextLine()) return true;
  }
}

void SFrequencyBlock::WriteBody(SProjectStream& out) {
  for (const SCollectable* entry : itsEntries) static_cast<const SFrequencyEntry*>(entry)->Write(out);
}

void SFrequencyBlock::ChangeUnits(const SDimensionBlock& newUnits) {
  SDimensionBlock* old = itsOwner ? itsOwner->GetDimensionBlock() : nullptr;
  if (old) ScaleToUnit(old->GetFactor(SDimensionBlock::Frequency), newUnits.GetFactor(SDimensionBlock::Frequency));
}

void SFrequencyBlock::ScaleToUnit(double oldFactor, double newFactor) {
  if (oldFactor == 0.0 || newFactor == 0.0 || oldFactor == newFactor) return;
  for (SCollectable* entry : itsEntries) static_cast<SFrequencyEntry*>(entry)->Scale(oldFactor / newFactor);
}

void SFrequencyBlock::GetAllFrequencies(std::vector<double>& out) const {
  out.clear();
  for (const SCollectable* entry : itsEntries) static_cast<const SFrequencyEntry*>(entry)->GetFrequencies(out);
  std::sort(out.begin(), out.end());
  out.erase(std::unique(out.begin(), out.end()), out.end());
}

size_t SFrequencyBlock::CountFrequencies() const {
  std::vector<double> all;
  GetAllFrequencies(all);
  return all.size();
}

// How the two options merge is ours to choose: ReplaceFreqs gives each parameter set the
// block's entries in place of its own, AdditionalFreqs adds those a set lacks to its own.
// Either way the block's entries also stay a set of their own, so nothing of it is lost.
void SFrequencyBlock::MoveToSweeps(SVariableSweepBlock& sweeps, bool replace, bool additional) {
  if (replace || additional) {
    for (size_t i = 0; i < sweeps.Count(); ++i) {
      SVariableSweep* sweep = sweeps.Get(i);
      if (!sweep->HasVariableInUse()) continue;
      if (replace) {
        SOrdered old;
        sweep->TakeEntries(old);
        old.clearAndDestroy();
      }
      for (const SCollectable* item : itsEntries) {
        const SFrequencyEntry* entry = static_cast<const SFrequencyEntry*>(item);
        bool known = false;
        for (const SCollectable* mine : sweep->GetEntries())
          known = known || static_cast<const SFrequencyEntry*>(mine)->Compare(*entry);
        if (!known) sweep->AddEntry(entry->Clone());
      }
    }
  }
  SVariableSweep* frequencies = new SVariableSweep(itsOwner);
  // Like any new set, it lists the project's variables, none of them swept.
  frequencies->StartWithProjectVariables();
  for (SCollectable* entry : itsEntries) frequencies->AddEntry(static_cast<SFrequencyEntry*>(entry));
  itsEntries.clear();
  sweeps.Insert(0, frequencies);
  sweeps.SetPresent(true);
  SetPresent(false);
}

SFrequencyBlock::SFromSweeps::SFromSweeps(SFrequencyBlock& block, const SVariableSweepBlock& sweeps)
    : itsBlock(block), itsWasPresent(block.IsPresent()) {
  SOrdered fromSweeps;
  for (size_t i = 0; i < sweeps.Count(); ++i) {
    const SVariableSweep* sweep = sweeps.Get(i);
    if (sweep->HasVariableInUse()) continue;
    for (const SCollectable* entry : sweep->GetEntries())
      fromSweeps.append(static_cast<const SFrequencyEntry*>(entry)->Clone());
  }
  // A block that no set speaks for stays as it is.
  itsSwapped = fromSweeps.entries() > 0;
  if (!itsSwapped) return;
  for (SCollectable* entry : block.itsEntries) itsSaved.append(entry);
  block.itsEntries.clear();
  for (SCollectable* entry : fromSweeps) block.itsEntries.append(entry);
  block.SetPresent(true);
}

SFrequencyBlock::SFromSweeps::~SFromSweeps() {
  if (!itsSwapped) return;
  itsBlock.itsEntries.clearAndDestroy();
  for (SCollectable* entry : itsSaved) itsBlock.itsEntries.append(entry);
  itsBlock.SetPresent(itsWasPresent);
}
