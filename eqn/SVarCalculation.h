#ifndef SVARCALCULATION_H
#define SVARCALCULATION_H

#include "SCalculation.h"
#include "SEquation.h"

#include <QStringList>
#include <complex>

// An equation over the owner's named variables and the frequency. Its arguments are the
// frequency "FREQ" (any case) and one bound argument for each variable the text names.
class SVarCalculation : public SCalculation {
  SCOLLECTABLE_DECLARE(SVarCalculation)
public:
  explicit SVarCalculation(SEqnOwner* owner = nullptr);
  SVarCalculation(const SVarCalculation& other) = default;
  SVarCalculation& operator=(const SVarCalculation& other) = default;
  ~SVarCalculation() override = default;
  SCalculation* Clone() const override { return new SVarCalculation(*this); }

  // Compiles the text and binds each name that is no function, constant or property to the
  // owner's variable of that name. False with "Bad Equation: " and the words, or
  // "Bad Argument (" name ") in equation " and the text, in errorText.
  bool Compile(const SString& text, SString& errorText);
  // Evaluates at a frequency in the owner's unit; variables give their current values.
  bool Evaluate(double frequencyInOwnerUnits, std::complex<double>& result, SString& errorText);

  // Distinct names of the variables referred to, in order of first use.
  QStringList GetVariableNames() const { return itsVariableNames; }
  bool UsesFrequency() const;
  // Neither a variable nor the frequency: the value never changes.
  bool IsConstant() const { return itsVariableNames.isEmpty() && !UsesFrequency(); }
  SString GetText() const { return itsEquation.GetEquation(); }
  bool IsCompiled() const { return itsEquation.IsCompiled(); }
  // The double-quoted operands (the table files of table functions), in order.
  QStringList GetFileNames() const;
  const SEquation& GetEquation() const { return itsEquation; }
  // The words of the last failure, as Compile or Evaluate gave them.
  const SString& GetErrorText() const { return itsErrorText; }

private:
  SEquation itsEquation;
  QStringList itsVariableNames;
  SString itsErrorText;
};

#endif
