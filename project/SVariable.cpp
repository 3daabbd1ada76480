#include "SVariable.h"

#include "SCircuit.h"
#include "SGeoClassID.h"
#include "SGeoVar.h"
#include "SProjectStream.h"
#include "SValvarLine.h"
#include "SEqnArgumentImp.h"

#include <algorithm>

SCOLLECTABLE_DEFINE(SVariable, SID_VARIABLE, &SEnclosure::staticTypeInfo())

SVariable::SVariable(const SString& name) : itsName(name) { itsValue.SetName(name); }

SVariable::~SVariable() {
  for (SVarArgImplimentation* argument : itsArguments) argument->ReleaseSource();
}

void SVariable::SetName(const SString& name) {
  itsName = name;
  itsValue.SetName(name);
  std::vector<SGeoVar*> geoVars;
  GetGeoVars(geoVars);
  for (SGeoVar* geoVar : geoVars) geoVar->SetVariableName(name);
}

bool SVariable::GetSourceValue(std::complex<double>& value, SString& errorText) {
  if (HasEquation() && !itsValue.Evaluate(errorText)) return false;
  value = itsValue.GetValue();
  return true;
}

void SVariable::RegisterArgument(SVarArgImplimentation* argument) {
  if (std::find(itsArguments.begin(), itsArguments.end(), argument) == itsArguments.end())
    itsArguments.push_back(argument);
}

void SVariable::UnregisterArgument(SVarArgImplimentation* argument) {
  itsArguments.erase(std::remove(itsArguments.begin(), itsArguments.end(), argument), itsArguments.end());
}

bool SVariable::IsFrequencyDependent() const {
  // Through the variables named, each once: a circle of names ends the search.
  std::vector<const SVariable*> seen{this};
  for (size_t i = 0; i < seen.size(); ++i) {
    const SValueVarDouble& value = seen[i]->itsValue;
    if (value.UsesFrequency()) return true;
    const SCircuit* circuit = seen[i]->GetCircuit();
    if (circuit == nullptr) continue;
    for (const QString& name : value.GetVariableNames()) {
      const SVariable* next = circuit->FindVariable(SString(name));
      if (next != nullptr && std::find(seen.begin(), seen.end(), next) == seen.end()) seen.push_back(next);
    }
  }
  return false;
}

bool SVariable::RecordUsageState() {
  const bool referred = !itsArguments.empty(), dependent = IsDependent();
  const bool changed = !itsReferred.IsValid() || !itsDependent.IsValid() || itsReferred.GetValue() != referred ||
                       itsDependent.GetValue() != dependent;
  itsReferred = SBooleanValid(referred);
  itsDependent = SBooleanValid(dependent);
  return changed;
}

void SVariable::GetGeoVars(std::vector<SGeoVar*>& list) const {
  for (size_t i = 0; i < GetNumberOfChildren(); ++i)
    if (GetChild(i)->isA() == SID_GEOVAR) list.push_back(static_cast<SGeoVar*>(GetChild(i)));
}

bool SVariable::HasGeoVars() const {
  for (size_t i = 0; i < GetNumberOfChildren(); ++i)
    if (GetChild(i)->isA() == SID_GEOVAR) return true;
  return false;
}

void SVariable::SetTargets(double value) {
  std::vector<SGeoVar*> geoVars;
  GetGeoVars(geoVars);
  for (SGeoVar* geoVar : geoVars) geoVar->SetTarget(value);
}

void SVariable::SetValue(double value) {
  itsValue.SetValue(value);
  SetTargets(value);
}

bool SVariable::IsSameValue(double value) const {
  if (HasEquation() || value != GetValue()) return false;
  std::vector<SGeoVar*> geoVars;
  GetGeoVars(geoVars);
  for (const SGeoVar* geoVar : geoVars)
    if (geoVar->GetNominal() != value) return false;
  return true;
}

bool SVariable::TrySetValue(double value) {
  if (!HasGeoVars() && !HasEquation()) {
    SetValue(value);
    return true;
  }
  return SValueVar::ComparePair(GetValue(), value) == 0;
}

bool SVariable::TrySetNominal(double value) {
  if (!HasGeoVars()) {
    SetValue(value);
    return true;
  }
  return SValueVar::WithinTolerance(GetValue(), value, SValueVar::NominalEpsilon());
}

void SVariable::Write(SProjectStream& out, const SCircuit& circuit, int format) const {
  if (format >= 9) SValvarLine::Write(out, itsName, itsValue, circuit.GetProject());
  std::vector<SGeoVar*> geoVars;
  GetGeoVars(geoVars);
  const SString equation =
      SValvarLine::RelativeFileNames(itsValue.GetEquation(), SValvarLine::ProjectDirectory(circuit.GetProject()));
  for (const SGeoVar* geoVar : geoVars) geoVar->Write(out, circuit, format, equation);
}
