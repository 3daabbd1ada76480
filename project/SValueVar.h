#ifndef SVALUEVAR_H
#define SVALUEVAR_H

#include "SEnclosure.h"
#include "SVariableConstraints.h"

#include <QStringList>

class SFile;
class SProject;
class SProjectStream;

// A field that holds a plain number or an equation. An equation read before its project
// exists is held as text; SetEquation compiles it once the project is attached.
class SValueVar : public SEnclosure {
  SCOLLECTABLE_DECLARE(SValueVar)
public:
  // The unit kinds of a value; NoUnit is written "NONE" (and "UNLS" reads as it).
  enum UnitKind {
    Length = 0,
    Frequency = 1,
    Resistance = 2,
    Inductance = 3,
    Capacitance = 4,
    Conductivity = 5,
    Resistivity = 6,
    SheetResistance = 7,
    OhmsPerSquare = 8,
    SiemensPerMetre = 9,
    PicohenriesPerMetre = 10,
    ResistancePerRootFrequency = 11,
    NoUnit = 12,
    UnitKindCount = 13
  };

  SValueVar() {}
  explicit SValueVar(const SString& name) : itsName(name) {}
  // Values copy as values: the copy isn't placed in any tree, but keeps the project.
  SValueVar(const SValueVar& other) : SEnclosure() { CopyFields(other); }
  SValueVar& operator=(const SValueVar& other) {
    if (this != &other) CopyFields(other);
    return *this;
  }

  // The keyword of a unit kind ("LNG" ... "NONE"); "NONE" outside the table.
  static const char* UnitKeyword(int kind);
  // The kind of a keyword in any case, "UNLS" giving NoUnit; -1 for an unknown keyword.
  static int UnitKindOf(const SString& keyword);
  // The family of the project's unit table for a kind, -1 for kinds without one.
  static int UnitFamily(int kind);

  SString GetName() const override { return itsName; }
  void SetName(const SString& name) { itsName = name; }
  SProject* GetProject() const { return itsProject; }
  // Held equation text stays held until CompileHeldText or the next SetEquation.
  void SetProject(SProject* project) { itsProject = project; }
  // Compiles held text against the project; true when nothing is held any more.
  bool CompileHeldText(SString* errorText = nullptr, bool report = false);
  int GetUnitKind() const { return itsUnitKind; }
  void SetUnitKind(int kind) { itsUnitKind = kind; }
  // What the project's unit table calls the kind; "Other" for NoUnit, empty without a name.
  SString GetUnitListName() const;
  const SString& GetDescription() const { return itsDescription; }
  void SetDescription(const SString& text) { itsDescription = text; }
  bool IsStored() const { return itsStored != 0; }
  void SetStored(bool on) { itsStored = on ? 1 : 0; }
  int GetUsage() const { return itsUsage; }
  void SetUsage(int usage) { itsUsage = usage; }
  bool IsValueHidden() const { return itsHiddenValue != 0; }
  void SetValueHidden(bool on) { itsHiddenValue = on ? 1 : 0; }

  // An equation, compiled or still held as text.
  bool HasEquation() const { return !itsEquation.isEmpty() || !itsHeldText.isEmpty(); }
  // Text waiting for a project to be compiled against.
  bool IsHeld() const { return !itsHeldText.isEmpty(); }
  // The equation's text, held or compiled; empty for a plain number.
  const SString& GetEquation() const { return itsHeldText.isEmpty() ? itsEquation : itsHeldText; }
  // Without a project the text is held. Otherwise it is compiled: on failure the old
  // equation stays, the reason goes to `errorText` and, with `report`, to message 5760.
  bool SetEquation(const SString& text, SString* errorText = nullptr, bool report = false);
  // Holds the text as read, without compiling (readers before the project is complete).
  void HoldEquation(const SString& text);
  // True for an equation that refers to variables or to the frequency.
  bool IsDependent() const;
  // The files an equation names (TABLE1, TABLE2), absolute.
  const QStringList& GetFileNames() const { return itsFileNames; }

  SVariableEMConstraints& EMConstraints() { return itsEMConstraints; }
  const SVariableEMConstraints& EMConstraints() const { return itsEMConstraints; }
  SVariableTuningConstraints& TuningConstraints() { return itsTuningConstraints; }
  const SVariableTuningConstraints& TuningConstraints() const { return itsTuningConstraints; }
  SVariableOptConstraints& OptConstraints() { return itsOptConstraints; }
  const SVariableOptConstraints& OptConstraints() const { return itsOptConstraints; }
  // The constraint of a kind name ("EM", "TUNE", "OPT", in any case), or null.
  SVariableConstraints* Constraints(const SString& kind);

  // The value as "%lf" reads it, with nothing left over.
  static bool IsNumeric(const SString& text, double& value);

  // Takes one value token: "<HIDDEN>" leaves the value and marks it hidden; any other token
  // has its escaped double quotes undone and goes to SetFromText. False without a token.
  virtual bool ReadValueToken(SFile& file);
  // Multiplies a plain number of unit kind `kind` by `factor`; an equation is worked out first.
  virtual void SetWithScale(int kind, double factor);
  // "<HIDDEN>", the number with 15 significant digits, or the equation in double quotes.
  virtual void WriteValue(SProjectStream& out) const;
  virtual void SetNumber(double value);
  // Empty text is 0.0 and one leading "=" is dropped; numeric text is a number, anything
  // else an equation, held as text with `defer` or without a project.
  virtual void SetFromText(const SString& text, bool defer = false);
  // GetText cut to `width` with "..." when `truncate`; a number with `precision` digits,
  // rounded to an integer with `asInteger`. Hidden: "-" when `truncate`, else "<Hidden>".
  virtual SString GetListText(bool truncate, int width, int precision, bool asInteger) const;
  virtual SString GetText() const;

  // Tolerances of the settings file group "Velora": "NominalEpsilon" is read at each call,
  // "ParameterCompareEpsilon" once per process; both default to 1e-6.
  static double NominalEpsilon();
  static double ParameterCompareEpsilon();
  // Whether `number` equals `value` within a relative `epsilon` (at value 0: |(1+e) number| <= e).
  static bool WithinTolerance(double value, double number, double epsilon);
  // The pair comparison with ParameterCompareEpsilon: 0 equal, 1 when `number` lies below
  // the interval around `value`, -1 above it.
  static int ComparePair(double value, double number);

protected:
  void CopyFields(const SValueVar& other);
  void ClearEquation();
  // The one place where equation text is compiled; false with the reason in `errorText`.
  bool CompileEquation(const SString& text, SString& errorText);
  // Works the equation out into `result`; false with the reason.
  virtual bool EvaluateEquation(double frequency, double& result, SString& errorText) const;

  SString itsName;
  SProject* itsProject = nullptr;
  int itsUnitKind = NoUnit;
  // The compiled equation's text; empty for a plain number.
  SString itsEquation;
  SString itsHeldText;
  SString itsDescription;
  unsigned char itsStored = 0;
  int itsUsage = 0;
  unsigned char itsHiddenValue = 0;
  SVariableEMConstraints itsEMConstraints;
  SVariableTuningConstraints itsTuningConstraints;
  SVariableOptConstraints itsOptConstraints;
  QStringList itsFileNames;
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
  void SetValue(double value) { SetNumber(value); }
  // Copies number and equation, keeping this value's name.
  void CopyValue(const SValueVarDouble& other);
  // Works an equation out into the number; false with the reason (the number stays).
  bool Evaluate(SString& errorText, double frequency = 0.0);

  void SetWithScale(int kind, double factor) override;
  void WriteValue(SProjectStream& out) const override;
  void SetNumber(double value) override;
  void SetFromText(const SString& text, bool defer = false) override;
  SString GetListText(bool truncate, int width, int precision, bool asInteger) const override;
  SString GetText() const override;

private:
  double itsValue = 0.0;
};

#endif
