#ifndef SSWEPTVARIABLE_H
#define SSWEPTVARIABLE_H

#include "SCollectableString.h"
#include "SOrdered.h"
#include "SProjectStream.h"
#include "SValid.h"

#include <vector>

class SFile;

// One variable of a parameter sweep set, named after the project's variable it moves: its
// range in project units, the way it is stepped, and whether the set sweeps it at all.
class SSweptVariable : public SCollectableString {
  SCOLLECTABLE_DECLARE(SSweptVariable)
  SCOLLECTABLE_COPYABLE(SSweptVariable)
public:
  enum Type { Sweep = 0, LinearPoints = 1, Exponential = 2, Corner = 3, Sensitivity = 4, Single = 5, List = 6 };

  SSweptVariable() {}
  explicit SSweptVariable(const SString& name) : SCollectableString(name) {}

  // The line behind the name: "Y" or "N" with the type's letter, then the values by type.
  // False when the first word begins with neither "Y" nor "N".
  bool ReadValues(const SString& rest);
  // The whole line, name first; below format 9 the later types go as "N" of type 0.
  void Write(SProjectStream& out, int format) const;
  // "SWEEP", "LSWEEP", "ESWEEP", "CORNER", "STEP", "LIST"; other text keeps the type.
  void SetType(const SString& text);
  // For lists: the label and range, or "Fixed: " and the nominal; `unit` ends both.
  SString GetListText(const SString& unit) const;
  static const char* TypeLabel(int type);
  static char TypeLetter(int type);

  SDoubleValid itsStart;
  SDoubleValid itsStop;
  SDoubleValid itsStep;
  SDoubleValid itsNominal;
  SIntValid itsPoints;
  std::vector<double> itsValues;
  bool itsInUse = false;
  int itsType = Sweep;
};

// The variables of a sweep set, in order, and the kind of sweep they make together.
class SSweptVariableSpecification : public SCollectable {
  SCOLLECTABLE_DECLARE(SSweptVariableSpecification)
public:
  enum Kind { CornerSweep = 1, SensitivitySweep = 2, LinearSweep = 3, MixedSweep = 4 };

  SSweptVariableSpecification() {}
  SSweptVariableSpecification(const SSweptVariableSpecification& other);
  SSweptVariableSpecification& operator=(const SSweptVariableSpecification& other);
  ~SSweptVariableSpecification() override { itsVariables.clearAndDestroy(); }
  SCollectable* newSpecies() const override { return new SSweptVariableSpecification(); }
  SCollectable* copy() const override { return new SSweptVariableSpecification(*this); }

  size_t Count() const { return itsVariables.entries(); }
  SSweptVariable* Get(size_t i) const { return static_cast<SSweptVariable*>(itsVariables.at(i)); }
  SSweptVariable* Find(const SString& name) const;
  // Takes ownership.
  void Add(SSweptVariable* variable) { itsVariables.append(variable); }
  void Clear() { itsVariables.clearAndDestroy(); }
  bool HasVariableInUse() const;
  // The kind that the variables in use make, worked out afresh.
  int GetKind() const;
  static const char* KindLabel(int kind);
  bool Rename(const SString& oldName, const SString& newName);

private:
  SOrdered itsVariables;
};

#endif
