#include "SVarCalculation.h"

#include "SEqnOwner.h"
#include "SVarSource.h"

#include <vector>

SCOLLECTABLE_DEFINE(SVarCalculation, SID_VARCALCULATION, &SCalculation::staticTypeInfo())

namespace {
// Variables whose equations refer to one another in a circle would evaluate without end; a
// chain deeper than this is taken for one.
const int kMaximumDepth = 100;
thread_local int gDepth = 0;

class SDepthGuard {
public:
  SDepthGuard() { ++gDepth; }
  ~SDepthGuard() { --gDepth; }
  bool TooDeep() const { return gDepth > kMaximumDepth; }
};
}  // namespace

SVarCalculation::SVarCalculation(SEqnOwner* owner) : SCalculation(owner), itsEquation(owner) {}

bool SVarCalculation::Compile(const SString& text, SString& errorText) {
  ClearArguments();
  itsVariableNames.clear();
  itsEquation.SetOwner(itsOwner);
  itsEquation.SetEquation(text);
  itsEquation.SetArguments(QStringList() << "FREQ");
  AddArgument(new SVarFreqArgImplimentation(itsOwner));
  // A failed compile keeps no bindings, so no source counts it among its users.
  auto failure = [&](const SString& words) {
    ClearArguments();
    itsVariableNames.clear();
    itsEquation.SetEquation(text);
    itsErrorText = words;
    errorText = words;
    return false;
  };
  if (!itsEquation.Compile(true, true)) return failure("Bad Equation: " + itsEquation.GetErrorText());
  for (const QString& name : itsEquation.GetUnresolvedNames()) {
    SVarSource* source = itsOwner ? itsOwner->FindVariableSource(SString(name)) : nullptr;
    if (!source) return failure("Bad Argument (" + SString(name) + ") in equation " + text);
    AddArgument(new SVarArgImplimentation(SString(name), source));
    itsEquation.AddArgument(SString(name));
    itsVariableNames << name;
  }
  if (!itsEquation.CheckStack(false)) return failure("Bad Equation: " + itsEquation.GetErrorText());
  itsErrorText.clear();
  return true;
}

bool SVarCalculation::Evaluate(double frequencyInOwnerUnits, std::complex<double>& result, SString& errorText) {
  SDepthGuard guard;
  if (guard.TooDeep()) {
    errorText = "Variables refer to one another in a circle in equation " + GetText();
    return false;
  }
  itsEquation.SetOwner(itsOwner);
  std::vector<std::complex<double>> values;
  values.reserve(itsArguments.entries());
  for (SCollectable* item : itsArguments) {
    std::complex<double> value;
    if (!static_cast<SEqnArgumentImp*>(item)->GetValue(frequencyInOwnerUnits, value, errorText)) {
      if (errorText.isEmpty()) errorText = "Bad Argument (" + static_cast<SEqnArgumentImp*>(item)->GetName() + ")";
      if (errorText.endsWith(" in equation ")) errorText += GetText();
      return false;
    }
    values.push_back(value);
  }
  return itsEquation.Evaluate(values, result, errorText);
}

bool SVarCalculation::UsesFrequency() const {
  for (SCollectable* item : itsEquation.GetPostfix()) {
    if (!item->isKindOf(SID_EQNARGREFERENCE)) continue;
    const SEqnArgReference* reference = static_cast<const SEqnArgReference*>(item);
    if (reference->IsBracket() || reference->GetIndex() == 0) return true;
  }
  return false;
}

QStringList SVarCalculation::GetFileNames() const {
  QStringList names;
  for (SCollectable* item : itsEquation.GetPostfix())
    if (item->isKindOf(SID_EQNSTRING)) names << static_cast<const SEqnString*>(item)->GetText().qstring();
  return names;
}
