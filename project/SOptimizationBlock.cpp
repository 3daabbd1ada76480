#include "SOptimizationBlock.h"

#include "SCircuit.h"
#include "SCommentedFile.h"
#include "SControlBlock.h"
#include "SDimensionBlock.h"
#include "SFile.h"
#include "SFrequencyEntry.h"
#include "SOptimizationGoal.h"
#include "SParameterBlock.h"
#include "SProject.h"
#include "SProjectClassID.h"
#include "SProjectErrorManager.h"
#include "SSafeSave.h"
#include "SVariable.h"
#include "SVariablePair.h"

#include <QFile>
#include <QRegularExpression>

#include <algorithm>
#include <vector>

SCOLLECTABLE_DEFINE(SOptimizationBlock, SID_OPTIMIZATIONBLOCK, &SFileBlock::staticTypeInfo())

namespace {
bool IsWord(const SString& token, const char* word) { return token.upper() == word; }
}  // namespace

SOptimizationBlock::SOptimizationBlock(const SOptimizationBlock& other)
    : SFileBlock(other), itsVariables(other.itsVariables), itsBestValues(other.itsBestValues),
      itsMaxIterations(other.itsMaxIterations), itsError(other.itsError) {
  for (const SCollectable* goal : other.itsGoals) itsGoals.append(goal->copy());
}

SOptimizationGoal* SOptimizationBlock::GetGoal(size_t i) const {
  return i < itsGoals.entries() ? static_cast<SOptimizationGoal*>(itsGoals.at(i)) : nullptr;
}

void SOptimizationBlock::AddGoal(SOptimizationGoal* goal) {
  if (goal == nullptr) return;
  goal->SetProject(itsOwner);
  itsGoals.append(goal);
}

void SOptimizationBlock::RemoveGoal(size_t i) {
  if (i < itsGoals.entries()) delete itsGoals.removeAt(i);
}

void SOptimizationBlock::MoveGoal(size_t from, size_t to) {
  if (from >= itsGoals.entries() || to >= itsGoals.entries() || from == to) return;
  SCollectable* goal = itsGoals.removeAt(from);
  itsGoals.insertAt(to, goal);
}

void SOptimizationBlock::ReplaceGoal(size_t i, SOptimizationGoal* goal) {
  if (i >= itsGoals.entries() || goal == nullptr) return;
  goal->SetProject(itsOwner);
  delete itsGoals.at(i);
  itsGoals.at(i) = goal;
}

void SOptimizationBlock::ResetValues() {
  for (size_t i = 0; i < itsVariables.Count(); ++i) itsVariables.Get(i)->itsCurrent = SDoubleValid(0.0, false);
}

void SOptimizationBlock::RenameVariable(const SString& oldName, const SString& newName) {
  itsVariables.Rename(oldName, newName);
  if (SVariablePair* pair = itsBestValues.Find(oldName)) pair->SetName(newName);
}

bool SOptimizationBlock::Validate(SProjectErrorManager& errors) {
  if (CountGoals() > 0) return true;
  errors.AddError(SProjectErrorManager::Error, -1, 7212);
  return false;
}

void SOptimizationBlock::ChangeUnits(const SDimensionBlock& newUnits) {
  const double ratio = FrequencyRatio(newUnits);
  if (ratio == 1.0) return;
  for (size_t i = 0; i < CountGoals(); ++i)
    for (SCollectable* entry : GetGoal(i)->GetEntries()) static_cast<SFrequencyEntry*>(entry)->Scale(ratio);
}

// ---- reading

bool SOptimizationBlock::ReadBody(SFile& file, SProjectErrorManager& errors) {
  itsGoals.clearAndDestroy();
  itsVariables.Clear();
  itsMaxIterations = 100;
  bool listRead = false;
  SString token, line;
  while (SOptimizationGoal::PeekLine(file, token, line)) {
    if (Match(token, "END")) break;
    if (token == "VARS") {
      if (!file.NextLine() || !ReadVariables(file, errors)) return false;
      listRead = true;
      continue;
    }
    if (Match(token, "MAX")) {
      file.NextToken();
      double count = 0.0;
      if (!file.GetDouble(count)) {
        if (!Unknown(file, token, errors)) return false;
        continue;
      }
      itsMaxIterations = static_cast<int>(count);
    } else if (SOptimizationGoal::StartsGoal(token) || SOptimizationGoal::IsGoalLine(line)) {
      SOptimizationGoal* goal = new SOptimizationGoal(itsOwner);
      if (!goal->Read(file, errors)) {
        delete goal;
        errors.AddError(SProjectErrorManager::Error, LineOf(file), 7136);
        return false;
      }
      itsGoals.append(goal);
      continue;
    } else {
      if (!Unknown(file, token, errors)) return false;
      continue;
    }
    if (!file.NextLine()) break;
  }
  ReadOptValues();
  if (listRead) MoveBoundsToProject();
  return true;
}

bool SOptimizationBlock::ReadVariables(SFile& file, SProjectErrorManager& errors) {
  SString token, line;
  while (SOptimizationGoal::PeekLine(file, token, line)) {
    if (TakeSectionEnd(file)) return true;
    if (token == "VARS" || Match(token, "MAX") || SOptimizationGoal::StartsGoal(token) ||
        SOptimizationGoal::IsGoalLine(line))
      return true;
    if (IsWord(token, "VAR")) file.NextToken();
    SString name, rest;
    file.GetToken(name);
    file.GetRestOfLine(rest);
    QString words = rest.qstring();
    words.remove(QLatin1Char('"'));
    const QStringList values = words.split(QRegularExpression(QStringLiteral("\\s+")), Qt::SkipEmptyParts);
    SOptimizationVariable* variable = new SOptimizationVariable(name);
    if (name.isEmpty() || !variable->ReadValues(values)) {
      delete variable;
      file.RewindLine();
      if (!Unknown(file, token, errors)) return false;
      continue;
    }
    itsVariables.Add(variable);
    if (!file.NextLine()) return true;
  }
  return true;
}

SValueVarDouble* SOptimizationBlock::FindProjectValue(const SString& name) const {
  if (itsOwner == nullptr) return nullptr;
  if (SCircuit* circuit = itsOwner->GetCircuit())
    if (SVariable* variable = circuit->FindVariable(name)) return &variable->Value();
  SParameterBlock* parameters = itsOwner->GetParameterBlock();
  if (parameters == nullptr || !parameters->IsPresent()) return nullptr;
  SVariablePair* pair = parameters->GetSpecification().Find(name);
  return pair != nullptr ? &pair->Value() : nullptr;
}

void SOptimizationBlock::MoveBoundsToProject() {
  SControlBlock* control = itsOwner ? itsOwner->GetControlBlock() : nullptr;
  const bool optimising = control != nullptr && control->itsAnalysisType == SControlBlock::Optimization;
  for (size_t i = 0; i < itsVariables.Count(); ++i) {
    SOptimizationVariable* variable = itsVariables.Get(i);
    SValueVarDouble* value = FindProjectValue(*variable);
    if (value == nullptr) continue;
    variable->itsNominal = SDoubleValid(value->GetValue());
    SVariableOptConstraints& bounds = value->OptConstraints();
    // An open bound reads back from its VCNSTR line as open.
    bounds.itsMinimum = variable->itsStart.IsValid() ? variable->itsStart : SDoubleValid(0.0, false, "UNDEF");
    bounds.itsMaximum = variable->itsStop.IsValid() ? variable->itsStop : SDoubleValid(0.0, false, "UNDEF");
    bounds.SetEnabled(variable->itsInUse);
    // A granularity left open is the solver's own choice, as outside an optimisation.
    const bool given = optimising && variable->itsGranularity.IsValid();
    value->EMConstraints().itsGranularity = given ? variable->itsGranularity : SDoubleValid(0.0);
  }
}

// ---- writing

void SOptimizationBlock::CollectVariables(SOptimizationVariableSpec& list) const {
  SControlBlock* control = itsOwner ? itsOwner->GetControlBlock() : nullptr;
  const bool optimising = control != nullptr && control->itsAnalysisType == SControlBlock::Optimization;
  const auto fill = [optimising](SOptimizationVariable& variable, const SValueVarDouble& value) {
    const SVariableOptConstraints& bounds = value.OptConstraints();
    variable.itsStart = bounds.itsMinimum;
    variable.itsStop = bounds.itsMaximum;
    variable.itsInUse = bounds.IsEnabled();
    // Outside an optimisation, or left to the solver, the granularity isn't the project's.
    if (optimising && !value.EMConstraints().IsAutoGranularity())
      variable.itsGranularity = value.EMConstraints().itsGranularity;
  };
  list = itsVariables;
  for (size_t i = 0; i < list.Count(); ++i)
    if (const SValueVarDouble* value = FindProjectValue(*list.Get(i))) fill(*list.Get(i), *value);
  if (itsOwner == nullptr) return;
  std::vector<const SValueVarDouble*> values;
  std::vector<SString> names;
  if (SCircuit* circuit = itsOwner->GetCircuit()) {
    std::vector<SVariable*> variables;
    circuit->GetVariables(variables);
    for (SVariable* variable : variables) {
      names.push_back(variable->GetName());
      values.push_back(&variable->GetValueVar());
    }
  }
  SParameterBlock* parameters = itsOwner->GetParameterBlock();
  if (parameters != nullptr && parameters->IsPresent())
    for (size_t i = 0; i < parameters->GetSpecification().Count(); ++i) {
      names.push_back(parameters->GetSpecification().At(i)->GetName());
      values.push_back(&parameters->GetSpecification().At(i)->Value());
    }
  for (size_t i = 0; i < names.size(); ++i) {
    if (list.Find(names[i]) != nullptr || !values[i]->OptConstraints().IsEnabled()) continue;
    SOptimizationVariable* variable = new SOptimizationVariable(names[i]);
    variable->itsGranularity = values[i]->EMConstraints().itsGranularity;
    fill(*variable, *values[i]);
    list.Add(variable);
  }
}

void SOptimizationBlock::WriteBody(SProjectStream& out) {
  const int format = Format();
  out << "MAX ";
  out.Number(itsMaxIterations, 8);
  out << '\n';
  for (size_t i = 0; i < CountGoals(); ++i) GetGoal(i)->Write(out, format);
  if (format >= 21) return;
  SOptimizationVariableSpec list;
  CollectVariables(list);
  out << "VARS\n";
  for (size_t i = 0; i < list.Count(); ++i) {
    if (format >= 11) out << "VAR ";
    list.Get(i)->Write(out);
  }
  if (format >= 11) out << "END\n";
}

// ---- values file

SString SOptimizationBlock::GetOptValuesPath() const {
  const SString directory = itsOwner ? itsOwner->GetDataDirectory() : SString();
  return directory.isEmpty() ? directory : directory + "/opt.sid";
}

bool SOptimizationBlock::ReadOptValues() {
  itsBestValues.Clear();
  itsError = SDoubleValid(0.0, false);
  const SString path = GetOptValuesPath();
  if (path.isEmpty() || !QFile::exists(path.qstring())) return false;
  SCommentedFile file(path, "!", "&");
  file.SetCommentEnd("<");
  if (!file.IsOk()) return false;
  double fileFactor = 0.0;
  SProjectErrorManager ignored;
  while (file.NextLine()) {
    SString token;
    if (!file.GetToken(token)) continue;
    if (Match(token, "FTYP")) continue;
    if (Match(token, "LUNIT")) {
      SString unit;
      file.GetToken(unit);
      fileFactor = SDimensionBlock::UnitFactor(SDimensionBlock::Length, unit);
    } else if (Match(token, "ERROR")) {
      double error = 0.0;
      if (file.GetDouble(error)) itsError = SDoubleValid(error);
    } else if (Match(token, "PARAMS")) {
      // The list is the file's last part.
      if (file.NextLine()) itsBestValues.ReadList(file, nullptr, ignored);
      break;
    } else if (Match(token, "END")) {
      break;
    }
  }
  const double projectFactor =
      itsOwner ? itsOwner->GetDimensionBlock()->GetFactor(SDimensionBlock::Length) : fileFactor;
  if (fileFactor > 0.0 && projectFactor > 0.0 && fileFactor != projectFactor)
    for (size_t i = 0; i < itsBestValues.Count(); ++i) {
      SValueVarDouble& value = itsBestValues.At(i)->Value();
      value.SetValue(value.GetValue() * fileFactor / projectFactor);
    }
  for (size_t i = 0; i < itsBestValues.Count(); ++i)
    if (SOptimizationVariable* variable = itsVariables.Find(itsBestValues.At(i)->GetName()))
      variable->itsCurrent = SDoubleValid(itsBestValues.At(i)->Value().GetValue());
  return itsBestValues.Count() > 0;
}

bool SOptimizationBlock::WriteOptValues(const SVariableSpecification& values) {
  const SString path = GetOptValuesPath();
  if (path.isEmpty() || (itsOwner && !itsOwner->MakeDataDirectory())) return false;
  SProjectStream out;
  out << "FTYPE OPTVALUES\n";
  out << "LUNIT " << (itsOwner ? itsOwner->GetDimensionBlock()->GetUnitName(SDimensionBlock::Length) : SString("UM"))
      << '\n';
  out << "ERROR ";
  out.Number(itsError.IsValid() ? itsError.GetValue() : 0.0, 15);
  out << "\nPARAMS\n";
  values.Write(out, SString(), false, false);
  out << "END\n";
  SSafeSave save(path);
  return save.Commit(out.Text());
}

bool SOptimizationBlock::RemoveOptValues() {
  const SString path = GetOptValuesPath();
  return !path.isEmpty() && (!QFile::exists(path.qstring()) || QFile::remove(path.qstring()));
}
