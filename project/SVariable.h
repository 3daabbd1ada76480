#ifndef SVARIABLE_H
#define SVARIABLE_H

#include "SEnclosure.h"
#include "SValid.h"
#include "SValueVar.h"
#include "SVarSource.h"

#include <vector>

class SCircuit;
class SGeoVar;
class SProjectStream;

// A named value of the layout. The geometry variables bound to it are its children: a new
// value gives them a target to move their points to.
class SVariable : public SEnclosure, public SVarSource {
  SCOLLECTABLE_DECLARE(SVariable)
public:
  explicit SVariable(const SString& name = SString());
  ~SVariable() override;

  SString GetName() const override { return itsName; }
  void SetName(const SString& name);
  SValueVarDouble& Value() { return itsValue; }
  const SValueVarDouble& GetValueVar() const { return itsValue; }
  double GetValue() const { return itsValue.GetValue(); }
  SString GetValueString() const { return itsValue.GetText(); }
  int GetUnitType() const { return itsValue.GetUnitKind(); }
  void SetUnitType(int code) { itsValue.SetUnitKind(code); }
  bool HasEquation() const { return itsValue.HasEquation(); }
  // An equation that refers to variables or to the frequency.
  bool IsDependent() const { return itsValue.IsDependent(); }
  // An equation that uses the frequency, itself or through a variable it refers to.
  bool IsFrequencyDependent() const;
  // Whether anything refers to the variable or its dependence changed since the last call;
  // true the first time.
  bool RecordUsageState();

  // Equations that name the variable read its value here.
  SString GetSourceName() const override { return itsName; }
  bool GetSourceValue(std::complex<double>& value, SString& errorText) override;
  void RegisterArgument(SVarArgImplimentation* argument) override;
  void UnregisterArgument(SVarArgImplimentation* argument) override;

  // A plain number: the equation goes, and bound geometry variables take it as their target.
  void SetValue(double value);
  // Gives the number worked out from the equation to the geometry variables, keeping it.
  void SetTargets(double value);
  // False with an equation; true when the number equals the value and every bound
  // geometry variable's nominal exactly.
  bool IsSameValue(double value) const;
  // Without geometry variables and equation: sets the number. Otherwise whether the number
  // is the value, within the parameter tolerance.
  bool TrySetValue(double value);
  // Without geometry variables: sets the number. Otherwise whether it lies within the
  // nominal tolerance of the value.
  bool TrySetNominal(double value);

  void GetGeoVars(std::vector<SGeoVar*>& list) const;
  bool HasGeoVars() const;

  // The VALVAR form, then each bound geometry variable.
  void Write(SProjectStream& out, const SCircuit& circuit, int format) const;

private:
  SString itsName;
  SValueVarDouble itsValue;
  // Not owned: they leave when they die, and are let go when the variable dies first.
  std::vector<SVarArgImplimentation*> itsArguments;
  SBooleanValid itsReferred;
  SBooleanValid itsDependent;
};

#endif
