#include "SOptimizationGoal.h"

#include "SFile.h"
#include "SFileBlock.h"
#include "SFrequencyEntry.h"
#include "SOptimizationGoalEntry.h"
#include "SProjectClassID.h"
#include "SProjectErrorManager.h"
#include "SSimpleSweep.h"

#include <QRegularExpression>

#include <memory>

SCOLLECTABLE_DEFINE(SOptimizationGoal, SID_OPTIMIZATIONGOAL, &SCollectable::staticTypeInfo())

namespace {
bool IsWord(const SString& token, const char* word) { return token.upper() == word; }

bool IsEntryKeyword(const SString& word) {
  std::unique_ptr<SFrequencyEntry> entry(SFrequencyEntry::Create(word));
  return entry != nullptr;
}
}  // namespace

SOptimizationGoal::SOptimizationGoal(const SOptimizationGoal& other)
    : SCollectable(other), itsProject(other.itsProject), itsEnabled(other.itsEnabled) {
  for (const SCollectable* entry : other.itsEntries)
    itsEntries.append(static_cast<const SFrequencyEntry*>(entry)->Clone());
  for (const SCollectable* entry : other.itsGoalEntries) itsGoalEntries.append(entry->copy());
}

SOptimizationGoal::~SOptimizationGoal() {
  itsEntries.clearAndDestroy();
  itsGoalEntries.clearAndDestroy();
}

void SOptimizationGoal::SetProject(SProject* project) {
  itsProject = project;
  for (size_t i = 0; i < CountGoalEntries(); ++i) GetGoalEntry(i)->itsProject = project;
}

void SOptimizationGoal::AddEntry(SFrequencyEntry* entry) {
  if (entry != nullptr) itsEntries.append(entry);
}

void SOptimizationGoal::AddGoalEntry(SOptimizationGoalEntry* entry) {
  if (entry == nullptr) return;
  entry->itsProject = itsProject;
  itsGoalEntries.append(entry);
}

SOptimizationGoalEntry* SOptimizationGoal::GetGoalEntry(size_t i) const {
  return i < itsGoalEntries.entries() ? static_cast<SOptimizationGoalEntry*>(itsGoalEntries.at(i)) : nullptr;
}

bool SOptimizationGoal::StartsGoal(const SString& word) {
  return IsWord(word, "FREQ") || IsWord(word, "GOAL") || SFileBlock::Match(word, "ENABLED") || IsEntryKeyword(word);
}

bool SOptimizationGoal::IsGoalLine(const SString& line) {
  static const QRegularExpression kNet(QStringLiteral("[nN][eE][tT]=[^ ]+"));
  return kNet.match(line.qstring()).hasMatch();
}

bool SOptimizationGoal::PeekLine(SFile& file, SString& word, SString& line) {
  while (!file.HasToken())
    if (!file.NextLine()) return false;
  file.PeekToken(word);
  file.GetLine(line);
  return true;
}

bool SOptimizationGoal::ReadEntry(SFile& file, bool selected) {
  SString keyword;
  if (!file.GetToken(keyword)) return false;
  std::unique_ptr<SFrequencyEntry> entry(SFrequencyEntry::Create(keyword));
  if (!entry || !entry->Read(file)) return false;
  entry->SetSelected(selected);
  itsEntries.append(entry.release());
  return true;
}

bool SOptimizationGoal::ReadGoalLine(SFile& file, SProjectErrorManager& errors) {
  bool enabled = true;
  SString flag;
  if (file.PeekToken(flag) && (IsWord(flag, "Y") || IsWord(flag, "N"))) {
    enabled = IsWord(flag, "Y");
    file.NextToken();
  }
  std::unique_ptr<SOptimizationGoalEntry> entry(new SOptimizationGoalEntry(itsProject));
  if (!entry->Read(file)) {
    errors.AddError(SProjectErrorManager::Warning, SFileBlock::LineOf(file), 7136);
    return false;
  }
  entry->itsEnabled = enabled;
  itsGoalEntries.append(entry.release());
  return true;
}

bool SOptimizationGoal::Read(SFile& file, SProjectErrorManager& errors) {
  // Goal lines end the frequency part: a word that opens a goal after them opens the next.
  bool goalsRead = false;
  SString token, line;
  while (PeekLine(file, token, line)) {
    if (SFileBlock::TakeSectionEnd(file)) break;
    if (goalsRead && !IsWord(token, "GOAL") && StartsGoal(token)) break;
    if (IsWord(token, "FREQ")) {
      file.NextToken();
      SString flag, mode;
      if (!file.GetUpperToken(flag)) return false;
      // The adaptive flag of a sweep set's line means nothing here.
      if (file.PeekToken(mode) && (IsWord(mode, "AY") || IsWord(mode, "AN"))) file.NextToken();
      if (!ReadEntry(file, flag != "N")) return false;
    } else if (SFileBlock::Match(token, "ENABLED")) {
      file.NextToken();
      SString flag;
      itsEnabled = !file.GetToken(flag) || flag != "N";
    } else if (IsWord(token, "GOAL")) {
      file.NextToken();
      ReadGoalLine(file, errors);
      goalsRead = true;
    } else if (IsEntryKeyword(token)) {
      if (!ReadEntry(file, true)) return false;
    } else if (IsGoalLine(line)) {
      ReadGoalLine(file, errors);
      goalsRead = true;
    } else {
      break;
    }
    if (!file.NextLine()) break;
  }
  return true;
}

void SOptimizationGoal::WriteEntry(SProjectStream& out, const SFrequencyEntry& entry, int format) const {
  // The oldest goals know a plain sweep only as SIMPLE.
  const SStandardSweep* standard = dynamic_cast<const SStandardSweep*>(&entry);
  if (format < 5 && standard != nullptr && entry.isA() != SID_SINGLESTEPFREQ) {
    SSimpleSweep simple;
    simple.itsStart = standard->itsStart;
    simple.itsStop = standard->itsStop;
    simple.itsStep = standard->itsStep;
    simple.Write(out);
    return;
  }
  entry.Write(out);
}

void SOptimizationGoal::Write(SProjectStream& out, int format) const {
  const auto entry = [this](size_t i) { return static_cast<const SFrequencyEntry*>(itsEntries.at(i)); };
  if (format >= 21) {
    out << "ENABLED " << (itsEnabled ? 'Y' : 'N') << '\n';
    for (size_t i = 0; i < itsEntries.entries(); ++i) {
      out << "FREQ " << (entry(i)->IsSelected() ? 'Y' : 'N') << ' ';
      entry(i)->Write(out);
    }
    for (size_t i = 0; i < CountGoalEntries(); ++i) {
      out << "GOAL " << (GetGoalEntry(i)->itsEnabled ? 'Y' : 'N') << ' ';
      GetGoalEntry(i)->Write(out);
      out << '\n';
    }
    out << "END\n";
    return;
  }
  if (itsEntries.entries() > 0) WriteEntry(out, *entry(0), format);
  if (CountGoalEntries() > 0) {
    GetGoalEntry(0)->Write(out);
    out << '\n';
  }
}
