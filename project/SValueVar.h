#ifndef SVALUEVAR_H
#define SVALUEVAR_H

#include "SEnclosure.h"

class SFile;
class SProjectStream;

// A field that holds a plain number or an equation kept as its text. Equations are worked
// out elsewhere; here they are only carried through a read and a write.
class SValueVar : public SEnclosure {
  SCOLLECTABLE_DECLARE(SValueVar)
public:
  enum UnitKind { Length = 0, Frequency = 1, Conductivity = 5, Resistivity = 6, SheetResistance = 7, NoUnit = 12 };

  SValueVar() {}
  explicit SValueVar(const SString& name) : itsName(name) {}
  // Values copy as values: the copy isn't placed in any tree.
  SValueVar(const SValueVar& other) : SEnclosure() { CopyFields(other); }
  SValueVar& operator=(const SValueVar& other) {
    if (this != &other) CopyFields(other);
    return *this;
  }

  SString GetName() const override { return itsName; }
  void SetName(const SString& name) { itsName = name; }
  int GetUnitKind() const { return itsUnitKind; }
  void SetUnitKind(int kind) { itsUnitKind = kind; }
  bool HasEquation() const { return !itsEquation.isEmpty(); }
  const SString& GetEquation() const { return itsEquation; }
  bool IsStored() const { return itsStored != 0; }

  virtual void SetFromText(const SString& text, bool defer = false);
  virtual SString GetText() const;
  // Takes one token; "<HIDDEN>" leaves the value as it is. False when there is no token.
  virtual bool ReadValueToken(SFile& file);
  // The number with 15 significant digits, or the equation in double quotes.
  virtual void WriteValue(SProjectStream& out) const;

protected:
  void CopyFields(const SValueVar& other) {
    itsName = other.itsName;
    itsUnitKind = other.itsUnitKind;
    itsEquation = other.itsEquation;
    itsStored = other.itsStored;
    itsHiddenValue = other.itsHiddenValue;
  }

  SString itsName;
  int itsUnitKind = NoUnit;
  SString itsEquation;
  unsigned char itsStored = 0;
  unsigned char itsHiddenValue = 0;
};

class SValueVarDouble : public SValueVar {
  SCOLLECTABLE_DECLARE(SValueVarDouble)
public:
  SValueVarDouble() {}
  explicit SValueVarDouble(double value) : itsValue(value) {}
  SValueVarDouble(const SString& name, double value) : SValueVar(name), itsValue(value) {}
  SValueVarDouble(const SValueVarDouble& other) : SValueVar(other), itsValue(other.itsValue) {}
  SValueVarDouble& operator=(const SValueVarDouble& other) {
    SValueVar::operator=(other);
    itsValue = other.itsValue;
    return *this;
  }

  double GetValue() const { return itsValue; }
  // A plain number; any equation is dropped.
  void SetValue(double value) {
    itsValue = value;
    itsEquation.clear();
  }
  // Copies number and equation, keeping this value's name.
  void CopyValue(const SValueVarDouble& other) {
    itsValue = other.itsValue;
    itsEquation = other.itsEquation;
  }

  void SetFromText(const SString& text, bool defer = false) override;
  SString GetText() const override;
  void WriteValue(SProjectStream& out) const override;

private:
  double itsValue = 0.0;
};

#endif
