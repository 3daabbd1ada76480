#ifndef SOPTIMIZATIONVARIABLE_H
#define SOPTIMIZATIONVARIABLE_H

#include "SCollectable.h"
#include "SCollectableString.h"
#include "SOrdered.h"
#include "SProjectStream.h"
#include "SValid.h"

#include <QStringList>

// One variable of an optimisation, named after the project's variable: its bounds and
// granularity in project units, and the value the optimiser last reached.
class SOptimizationVariable : public SCollectableString {
  SCOLLECTABLE_DECLARE(SOptimizationVariable)
  SCOLLECTABLE_COPYABLE(SOptimizationVariable)
public:
  SOptimizationVariable() {}
  explicit SOptimizationVariable(const SString& name) : SCollectableString(name) {}

  // The words behind the name: "Y" or "N", start, stop, granularity. False when the flag
  // is neither; a value that isn't numeric (or is missing) stays not valid.
  bool ReadValues(const QStringList& words);
  // The whole line, name first.
  void Write(SProjectStream& out) const;

  SDoubleValid itsStart{0.0, false};
  SDoubleValid itsStop{0.0, false};
  SDoubleValid itsNominal{0.0, false};
  SDoubleValid itsCurrent{0.0, false};
  SDoubleValid itsGranularity{0.0, false};
  bool itsInUse = false;
};

// The VARS list of an optimisation, in the order of the file.
class SOptimizationVariableSpec : public SCollectable {
  SCOLLECTABLE_DECLARE(SOptimizationVariableSpec)
public:
  SOptimizationVariableSpec() {}
  SOptimizationVariableSpec(const SOptimizationVariableSpec& other) : SCollectable(other) { *this = other; }
  SOptimizationVariableSpec& operator=(const SOptimizationVariableSpec& other);
  ~SOptimizationVariableSpec() override { itsVariables.clearAndDestroy(); }
  SCollectable* newSpecies() const override { return new SOptimizationVariableSpec(); }
  SCollectable* copy() const override { return new SOptimizationVariableSpec(*this); }

  size_t Count() const { return itsVariables.entries(); }
  SOptimizationVariable* Get(size_t i) const { return static_cast<SOptimizationVariable*>(itsVariables.at(i)); }
  SOptimizationVariable* Find(const SString& name) const;
  // Takes ownership; a variable of the same name is replaced.
  void Add(SOptimizationVariable* variable);
  void Clear() { itsVariables.clearAndDestroy(); }
  bool Rename(const SString& oldName, const SString& newName);

private:
  SOrdered itsVariables;
};

#endif
