#ifndef SVARIABLECONSTRAINTS_H
#define SVARIABLECONSTRAINTS_H

#include "SString.h"
#include "SValid.h"

class SFile;
class SProjectStream;

// Bounds of a value for one use: the EM solver ("EM"), tuning ("TUNE") or optimisation
// ("OPT"). A bound that isn't valid is written as its text, so it reads back unchanged.
class SVariableConstraints {
public:
  explicit SVariableConstraints(const SString& kind);
  virtual ~SVariableConstraints() {}

  // The rest of a VCNSTR line behind the variable's name: minimum, maximum and the
  // fields of the kind. Missing tokens keep their values.
  virtual bool Read(SFile& file);
  // The VCNSTR line of `name`, when ShouldWrite says so.
  virtual void Write(SProjectStream& out, const SString& name) const;
  virtual SDoubleValid GetMinimum() const { return itsMinimum; }
  virtual SDoubleValid GetMaximum() const { return itsMaximum; }
  // Comma-joined: kind, minimum, maximum, then the fields of the kind.
  virtual SString GetText() const;
  // Whether the line carries anything beyond the defaults.
  virtual bool ShouldWrite() const = 0;

  const SString& GetKind() const { return itsKind; }
  void SetMinimum(double value) { itsMinimum.Set(value); }
  void SetMaximum(double value) { itsMaximum.Set(value); }

  SDoubleValid itsMinimum;
  SDoubleValid itsMaximum;

protected:
  // Behind "maximum, a blank" of the line.
  virtual void WriteRest(SProjectStream& out) const = 0;
  // A number, or a bound that isn't valid with the token as its text.
  static void ReadBound(SFile& file, SDoubleValid& bound);
  static SString BoundText(const SDoubleValid& bound);

  SString itsKind;
};

class SVariableEMConstraints : public SVariableConstraints {
public:
  SVariableEMConstraints();

  bool Read(SFile& file) override;
  SString GetText() const override;
  // Unless the granularity is "AUTO", which is a valid 0.0.
  bool ShouldWrite() const override { return !IsAutoGranularity(); }
  bool IsAutoGranularity() const { return itsGranularity.IsValid() && itsGranularity.GetValue() == 0.0; }

  SDoubleValid itsGranularity;

protected:
  void WriteRest(SProjectStream& out) const override;
};

class SVariableBaseConstraints : public SVariableConstraints {
public:
  explicit SVariableBaseConstraints(const SString& kind) : SVariableConstraints(kind) {}

  bool Read(SFile& file) override;
  SString GetText() const override;
  bool ShouldWrite() const override { return itsEnabled != 0; }
  bool IsEnabled() const { return itsEnabled != 0; }
  void SetEnabled(bool on) { itsEnabled = on ? 1 : 0; }

  unsigned char itsEnabled = 0;

protected:
  void WriteRest(SProjectStream& out) const override;
};

class SVariableOptConstraints : public SVariableBaseConstraints {
public:
  SVariableOptConstraints() : SVariableBaseConstraints("OPT") {}
};

class SVariableTuningConstraints : public SVariableBaseConstraints {
public:
  enum StepType { Linear = 0, Logarithmic = 1 };

  SVariableTuningConstraints();

  bool Read(SFile& file) override;
  SString GetText() const override;

  SDoubleValid itsStep;
  unsigned char itsStepType = Linear;

protected:
  void WriteRest(SProjectStream& out) const override;
};

#endif
