#ifndef SVARIABLEPAIR_H
#define SVARIABLEPAIR_H

#include "SCollectableString.h"
#include "SValueVar.h"

// A named value apart from the circuit: one entry of the VAR block or of a sweep. The
// string is the name.
class SVariablePair : public SCollectableString {
  SCOLLECTABLE_DECLARE(SVariablePair)
  SCOLLECTABLE_COPYABLE(SVariablePair)
public:
  // The kind codes of a pair whose value depends on other values or the frequency.
  enum { DependentKind = 2, DefaultKind = 3 };

  SVariablePair() {}
  explicit SVariablePair(const SString& name, bool inUse = true) : SCollectableString(name), itsInUse(inUse ? 1 : 0) {
    itsValue.SetName(name);
  }
  SVariablePair(const SVariablePair& other) = default;

  const SString& GetName() const { return *this; }
  void SetName(const SString& name);
  SValueVarDouble& Value() { return itsValue; }
  const SValueVarDouble& Value() const { return itsValue; }
  bool IsInUse() const { return itsInUse != 0; }
  void SetInUse(bool on) { itsInUse = on ? 1 : 0; }
  bool IsFromVariable() const { return itsFromVariable != 0; }
  void SetFromVariable(bool on) { itsFromVariable = on ? 1 : 0; }
  // The pair was read from a VALVAR line, and goes out in that form again where it can.
  bool IsValvarForm() const { return itsValvarForm != 0; }
  void SetValvarForm(bool on) { itsValvarForm = on ? 1 : 0; }
  // Holds what only the VALVAR form can carry: a unit, a description, a hidden value or
  // constraints that are written.
  bool NeedsValvarForm() const;

  // Both kind codes follow the value: DependentKind for a dependent equation.
  void UpdateKinds();

  int itsFirstKind = DefaultKind;
  int itsSecondKind = DefaultKind;

private:
  SValueVarDouble itsValue;
  unsigned char itsInUse = 1;
  unsigned char itsFromVariable = 0;
  unsigned char itsValvarForm = 0;
};

#endif
