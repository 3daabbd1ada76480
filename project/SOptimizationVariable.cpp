#include "SOptimizationVariable.h"

#include "SProjectClassID.h"

#include <QStringList>

SCOLLECTABLE_DEFINE(SOptimizationVariable, SID_OPTIMIZATIONVARIABLE, &SCollectableString::staticTypeInfo())
SCOLLECTABLE_DEFINE(SOptimizationVariableSpec, SID_OPTIMIZATIONVARIABLESPEC, &SCollectable::staticTypeInfo())

namespace {
const int kDigits = 10;

SDoubleValid Number(const QStringList& words, int i) {
  bool ok = false;
  const double value = i < words.size() ? words[i].toDouble(&ok) : 0.0;
  return SDoubleValid(ok ? value : 0.0, ok);
}

void WriteBound(SProjectStream& out, const SDoubleValid& value) {
  if (value.IsValid())
    out.Number(value.GetValue(), kDigits);
  else
    out << "UNDEF";
}
}  // namespace

bool SOptimizationVariable::ReadValues(const QStringList& words) {
  if (words.isEmpty()) return false;
  const QString flag = words[0].toUpper();
  if (flag != QLatin1String("Y") && flag != QLatin1String("N")) return false;
  itsInUse = flag == QLatin1String("Y");
  itsStart = Number(words, 1);
  itsStop = Number(words, 2);
  itsGranularity = Number(words, 3);
  return true;
}

void SOptimizationVariable::Write(SProjectStream& out) const {
  out.Name(*this);
  out << ' ' << (itsInUse ? 'Y' : 'N') << ' ';
  WriteBound(out, itsStart);
  out << ' ';
  WriteBound(out, itsStop);
  out << ' ';
  WriteBound(out, itsGranularity);
  out << '\n';
}

SOptimizationVariableSpec& SOptimizationVariableSpec::operator=(const SOptimizationVariableSpec& other) {
  if (this == &other) return *this;
  itsVariables.clearAndDestroy();
  for (const SCollectable* variable : other.itsVariables) itsVariables.append(variable->copy());
  return *this;
}

SOptimizationVariable* SOptimizationVariableSpec::Find(const SString& name) const {
  for (size_t i = 0; i < Count(); ++i)
    if (static_cast<const SString&>(*Get(i)) == name) return Get(i);
  return nullptr;
}

void SOptimizationVariableSpec::Add(SOptimizationVariable* variable) {
  if (variable == nullptr) return;
  for (size_t i = 0; i < Count(); ++i)
    if (static_cast<const SString&>(*Get(i)) == static_cast<const SString&>(*variable)) {
      delete itsVariables.at(i);
      itsVariables.at(i) = variable;
      return;
    }
  itsVariables.append(variable);
}

bool SOptimizationVariableSpec::Rename(const SString& oldName, const SString& newName) {
  SOptimizationVariable* variable = Find(oldName);
  if (variable == nullptr) return false;
  static_cast<SString&>(*variable) = newName;
  return true;
}
