#include "SVariableSweep.h"

#include "SABSSweep.h"
#include "SCircuit.h"
#include "SControlBlock.h"
#include "SFile.h"
#include "SFileBlock.h"
#include "SFrequencyEntry.h"
#include "SGeometryBlock.h"
#include "SParameterBlock.h"
#include "SProject.h"
#include "SProjectClassID.h"
#include "SProjectErrorManager.h"
#include "SVariable.h"
#include "SVariablePair.h"
#include "SVeloraError.h"

SCOLLECTABLE_DEFINE(SVariableSweep, SID_VARIABLESWEEP, &SCollectable::staticTypeInfo())

namespace {
bool IsWord(const SString& token, const char* word) { return token.upper() == word; }
}  // namespace

SVariableSweep::SVariableSweep(SProject* project) : itsProject(project) {}

SVariableSweep::SVariableSweep(const SVariableSweep& other)
    : SCollectable(other), itsVariables(other.itsVariables), itsProject(other.itsProject),
      itsEnabled(other.itsEnabled) {
  for (const SCollectable* entry : other.itsEntries)
    itsEntries.append(static_cast<const SFrequencyEntry*>(entry)->Clone());
  if (other.itsOverride) itsOverride.reset(new SControlBlock(*other.itsOverride));
}

SVariableSweep::~SVariableSweep() { itsEntries.clearAndDestroy(); }

void SVariableSweep::AddEntry(SFrequencyEntry* entry) {
  if (entry != nullptr) itsEntries.append(entry);
}

void SVariableSweep::TakeEntries(SOrdered& into) {
  for (SCollectable* entry : itsEntries) into.append(entry);
  itsEntries.clear();
}

void SVariableSweep::SetOverrideControl(SControlBlock* control) { itsOverride.reset(control); }

bool SVariableSweep::StartsSet(const SString& word) {
  if (IsWord(word, "FREQ") || SFileBlock::Match(word, "ENABLED") || SFileBlock::Match(word, "OVRCONTROL")) return true;
  std::unique_ptr<SFrequencyEntry> entry(SFrequencyEntry::Create(word));
  return entry != nullptr;
}

bool SVariableSweep::ReadEntry(SFile& file, bool selected, bool adaptive) {
  SString keyword;
  if (!file.GetToken(keyword)) return false;
  std::unique_ptr<SFrequencyEntry> entry(SFrequencyEntry::Create(keyword));
  if (!entry || !entry->Read(file)) return false;
  entry->SetSelected(selected);
  entry->SetAdaptive(adaptive);
  itsEntries.append(entry.release());
  return true;
}

bool SVariableSweep::ReadOverrideControl(SFile& file, SProjectErrorManager& errors) {
  std::unique_ptr<SControlBlock> control(new SControlBlock(itsProject));
  if (!file.NextLine() || !control->ReadBody(file, errors)) return false;
  SString word, name;
  if (!file.GetToken(word) || !IsWord(word, "END") || !file.GetToken(name) || !IsWord(name, "OVRCONTROL")) return false;
  control->SetPresent(true);
  itsOverride = std::move(control);
  return true;
}

bool SVariableSweep::StartWithProjectVariables() {
  itsVariables.Clear();
  if (itsProject == nullptr) return false;
  bool known = false;
  // A layout's variables are the circuit's; the VAR block's count too, so that a set never
  // drops a name that either holds.
  if (SCircuit* circuit = itsProject->GetGeometryBlock()->IsPresent() ? itsProject->GetCircuit() : nullptr) {
    std::vector<SVariable*> variables;
    circuit->GetVariables(variables);
    for (const SVariable* source : variables) {
      SSweptVariable* variable = new SSweptVariable(source->GetName());
      variable->itsNominal = SDoubleValid(source->GetValue());
      itsVariables.Add(variable);
    }
    known = true;
  }
  SParameterBlock* parameters = itsProject->GetParameterBlock();
  if (parameters == nullptr || !parameters->IsPresent()) return known;
  const SVariableSpecification& list = parameters->GetSpecification();
  for (size_t i = 0; i < list.Count(); ++i) {
    if (itsVariables.Find(list.At(i)->GetName()) != nullptr) continue;
    SSweptVariable* variable = new SSweptVariable(list.At(i)->GetName());
    variable->itsNominal = SDoubleValid(list.At(i)->Value().GetValue());
    itsVariables.Add(variable);
  }
  return true;
}

bool SVariableSweep::Read(SFile& file, SProjectErrorManager& errors) {
  const bool known = StartWithProjectVariables();
  // Variable lines end the frequency part: a word that opens a set after them opens the next.
  bool variablesRead = false;
  bool listed = false;
  SSweptVariableSpecification listedVariables;
  for (;;) {
    if (!file.HasToken()) {
      if (!file.NextLine()) break;
      continue;
    }
    SString token;
    file.PeekToken(token);
    if (SFileBlock::TakeSectionEnd(file)) break;
    if (variablesRead && StartsSet(token)) break;
    if (IsWord(token, "FREQ")) {
      file.NextToken();
      SString flag, mode;
      if (!file.GetUpperToken(flag)) return false;
      bool adaptive = false;
      if (file.PeekToken(mode) && (IsWord(mode, "AY") || IsWord(mode, "AN"))) {
        adaptive = IsWord(mode, "AY");
        file.NextToken();
      }
      if (!ReadEntry(file, flag != "N", adaptive)) return false;
    } else if (SFileBlock::Match(token, "ENABLED")) {
      file.NextToken();
      SString flag;
      itsEnabled = !file.GetToken(flag) || flag != "N";
    } else if (SFileBlock::Match(token, "OVRCONTROL")) {
      if (!ReadOverrideControl(file, errors)) return false;
    } else if (StartsSet(token)) {
      if (!ReadEntry(file, true, false)) return false;
    } else if ((IsWord(token, "Y") || IsWord(token, "N")) && !variablesRead) {
      // The flag of a second ABS entry in the oldest sweep sets.
      file.NextToken();
      if (file.HasToken()) return false;
    } else {
      const bool withWord = IsWord(token, "VAR");
      if (withWord) file.NextToken();
      SString name, rest;
      if (!file.GetToken(name)) return false;
      file.GetRestOfLine(rest);
      variablesRead = true;
      SSweptVariable* projectVariable = itsVariables.Find(name);
      if (known && projectVariable == nullptr) {
        errors.AddError(SProjectErrorManager::Warning, SFileBlock::LineOf(file), 7350,
                        VeloraMessageText(6183).data(), name.data());
        if (!file.NextLine()) break;
        continue;
      }
      SSweptVariableSpecification& list = withWord ? listedVariables : itsVariables;
      listed = listed || withWord;
      SSweptVariable* variable = list.Find(name);
      if (variable == nullptr) {
        variable = projectVariable != nullptr ? new SSweptVariable(*projectVariable) : new SSweptVariable(name);
        list.Add(variable);
      }
      if (!variable->ReadValues(rest)) return false;
    }
    if (!file.NextLine()) break;
  }
  if (listed) itsVariables = listedVariables;
  return true;
}

void SVariableSweep::WriteVariables(SProjectStream& out, int format, const char* prefix) const {
  for (size_t i = 0; i < itsVariables.Count(); ++i) {
    out << prefix;
    itsVariables.Get(i)->Write(out, format);
  }
}

void SVariableSweep::Write(SProjectStream& out, int format) const {
  const auto entry = [this](size_t i) { return static_cast<const SFrequencyEntry*>(itsEntries.at(i)); };
  if (format >= 21) {
    out << "ENABLED " << (itsEnabled ? 'Y' : 'N') << '\n';
    if (itsOverride) {
      out << "OVRCONTROL\n";
      itsOverride->WriteBody(out);
      out << "END OVRCONTROL\n";
    }
    for (size_t i = 0; i < itsEntries.entries(); ++i) {
      out << "FREQ " << (entry(i)->IsSelected() ? 'Y' : 'N') << (entry(i)->IsAdaptive() ? " AY " : " AN ");
      entry(i)->Write(out);
    }
    WriteVariables(out, format, "VAR ");
    out << "END\n";
    return;
  }
  if (!HasVariableInUse()) return;
  if (format >= 11) {
    for (size_t i = 0; i < itsEntries.entries(); ++i) entry(i)->Write(out);
    WriteVariables(out, format, "VAR ");
    out << "END\n";
    return;
  }
  // Older sets hold a single frequency entry.
  if (itsEntries.entries() > 0) entry(0)->Write(out);
  if (format == 3 || format == 4) {
    const SFrequencyEntry* second = nullptr;
    for (size_t i = 1; i < itsEntries.entries() && second == nullptr; ++i)
      if (entry(i)->isA() == SID_ABSSWEEP) second = entry(i);
    if (second != nullptr) second->Write(out);
    out << (second != nullptr ? "Y\n" : "N\n");
  }
  WriteVariables(out, format, "");
}
