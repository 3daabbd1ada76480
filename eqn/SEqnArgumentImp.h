#ifndef SEQNARGUMENTIMP_H
#define SEQNARGUMENTIMP_H

#include "SCollectable.h"
#include "SEqnClassID.h"
#include "SString.h"

#include <complex>

class SEqnOwner;
class SVarSource;

// A formal argument of an equation: a name, matched case-blind, and a value.
class SEqnArgumentImp : public SCollectable {
  SCOLLECTABLE_DECLARE(SEqnArgumentImp)
public:
  explicit SEqnArgumentImp(const SString& name, const std::complex<double>& value = 0.0)
      : itsName(name), itsValue(value) {}

  virtual SEqnArgumentImp* Clone() const { return new SEqnArgumentImp(*this); }
  SCollectable* newSpecies() const override { return Clone(); }
  SCollectable* copy() const override { return Clone(); }

  const SString& GetName() const { return itsName; }
  bool IsNamed(const SString& name) const { return itsName.compare(name, true) == 0; }
  void SetValue(const std::complex<double>& value) { itsValue = value; }
  const std::complex<double>& GetStoredValue() const { return itsValue; }
  // The value for one evaluation at a frequency in the owner's unit; the plain argument gives
  // its stored value. False with the words in errorText.
  virtual bool GetValue(double frequency, std::complex<double>& value, SString& errorText);

protected:
  SString itsName;
  std::complex<double> itsValue;
};

// An argument bound to a named variable of the owner. It registers with its source while bound.
class SVarArgImplimentation : public SEqnArgumentImp {
  SCOLLECTABLE_DECLARE(SVarArgImplimentation)
public:
  SVarArgImplimentation(const SString& name, SVarSource* source);
  SVarArgImplimentation(const SVarArgImplimentation& other);
  SVarArgImplimentation& operator=(const SVarArgImplimentation&) = delete;
  ~SVarArgImplimentation() override;

  SEqnArgumentImp* Clone() const override { return new SVarArgImplimentation(*this); }
  // The source's current value; a released source fails with "Bad Argument (" name ") in equation ".
  bool GetValue(double frequency, std::complex<double>& value, SString& errorText) override;

  SVarSource* GetSource() const { return itsSource; }
  // For a source that goes away before its arguments: forgets it without unregistering.
  void ReleaseSource() { itsSource = nullptr; }

private:
  SVarSource* itsSource;
};

// The frequency argument: the evaluation's frequency, given in the owner's unit, in hertz.
class SVarFreqArgImplimentation : public SEqnArgumentImp {
  SCOLLECTABLE_DECLARE(SVarFreqArgImplimentation)
public:
  explicit SVarFreqArgImplimentation(const SEqnOwner* owner = nullptr, const SString& name = "FREQ")
      : SEqnArgumentImp(name), itsOwner(owner) {}

  SEqnArgumentImp* Clone() const override { return new SVarFreqArgImplimentation(*this); }
  bool GetValue(double frequency, std::complex<double>& value, SString& errorText) override;
  void SetOwner(const SEqnOwner* owner) { itsOwner = owner; }

private:
  const SEqnOwner* itsOwner;
};

#endif
