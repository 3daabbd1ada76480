#ifndef SEQNELEMENT_H
#define SEQNELEMENT_H

#include "SCollectable.h"
#include "SEqnClassID.h"
#include "SString.h"

#include <complex>
#include <vector>

class QTextStream;
class SEqnOwner;

// Working state of one evaluation: the values under the accumulator, the table names given
// as strings, and the argument values bound for the run.
class SEqnStack {
public:
  void Push(const std::complex<double>& value) { itsValues.push_back(value); }
  // False when nothing is left.
  bool Pop(std::complex<double>& value);

  std::vector<std::complex<double>> itsValues;
  std::vector<SString> itsStrings;
  // Whether an operand has filled the accumulator yet.
  bool itsHasValue = false;
  const std::vector<std::complex<double>>* itsArguments = nullptr;
  // Base of bracket references "[F+n]".
  long long itsArgumentPosition = 0;
  // Indices of the arguments taken, in order of first use.
  std::vector<int> itsUsedArguments;
  // The equation's error code of a failure that has one (18, 20), else 0.
  int itsErrorCode = 0;

  // An operand: pushes the accumulator, if it holds a value yet, and puts `next` in its place.
  void Load(std::complex<double>& value, const std::complex<double>& next);
};

// One element of an equation's postfix sequence. The base's operations are never meant to run:
// each is the fatal error "VL1005".
class SEqnElement : public SCollectable {
  SCOLLECTABLE_DECLARE(SEqnElement)
public:
  virtual SEqnElement* Clone() const;
  // Applies the element to the accumulator `value`. False on a failure, with the words in
  // errorText (empty when the sequence itself is broken).
  virtual bool Evaluate(SEqnStack& stack, std::complex<double>& value, SString& errorText,
                        const SEqnOwner* owner) const;
  // Net number of values the element adds to the stack.
  virtual int GetStackEffect() const;
  // The element as it reads in a postfix listing.
  virtual void Write(QTextStream& stream) const;
  // Words that place an error of the given code at this element.
  virtual SString GetErrorContext(int code) const;
  virtual int GetPrecedence() const;

  SCollectable* newSpecies() const override { return Clone(); }
  SCollectable* copy() const override { return Clone(); }
};

// An operator or function from the table of functions.
class SEqnFunction : public SEqnElement {
  SCOLLECTABLE_DECLARE(SEqnFunction)
public:
  enum Code {
    PLUS = 0, MINUS, TIMES, DIVIDE, POWER, SIN, COS, CMPLX, NEGATE, REAL, IMAG, RAD, MAG, DEG, CONJ, DB20, DB10,
    LOG10, LN, EXP, SQRT, IDENTITY, ACOS, ASIN, ATAN, ATAN2, ACOSH, ASINH, ATANH, COSH, FMOD, HYPOT, INT, MAX,
    MIN, SINH, TAN, TANH, TABLE1, TABLE1C, TABLE2, M2P, H2P, P2M, P2H, FORMAT,
    FUNCTION_COUNT
  };

  // The name is the one the equation used ("abs" or "mag"); empty takes the table's.
  explicit SEqnFunction(Code code, const SString& name = SString(), int resultFormat = 4);

  SEqnElement* Clone() const override { return new SEqnFunction(*this); }
  bool Evaluate(SEqnStack& stack, std::complex<double>& value, SString& errorText,
                const SEqnOwner* owner) const override;
  int GetStackEffect() const override { return 1 - GetOperandCount(); }
  void Write(QTextStream& stream) const override;
  SString GetErrorContext(int code) const override;
  int GetPrecedence() const override;

  Code GetCode() const { return itsCode; }
  const SString& GetName() const { return itsName; }
  int GetOperandCount() const;
  bool IsTableFunction() const { return itsCode == TABLE1 || itsCode == TABLE1C || itsCode == TABLE2; }
  // The names of the table, each code once, first name only ("mag" for MAG).
  static const char* TableName(Code code);

private:
  bool Apply(const std::complex<double>* operands, std::complex<double>& value, SString& errorText,
             SEqnStack& stack, const SEqnOwner* owner) const;

  Code itsCode;
  SString itsName;
  // Used by FORMAT only: the equation's result format code.
  int itsResultFormat;
};

// A number or a named constant.
class SEqnValue : public SEqnElement {
  SCOLLECTABLE_DECLARE(SEqnValue)
public:
  // `text` is how the equation wrote it (the digits, or the constant's name).
  SEqnValue(const std::complex<double>& value, const SString& text, bool named = false)
      : itsValue(value), itsText(text), itsNamed(named) {}

  SEqnElement* Clone() const override { return new SEqnValue(*this); }
  bool Evaluate(SEqnStack& stack, std::complex<double>& value, SString& errorText,
                const SEqnOwner* owner) const override;
  int GetStackEffect() const override { return 1; }
  void Write(QTextStream& stream) const override;
  SString GetErrorContext(int code) const override;

  const std::complex<double>& GetValue() const { return itsValue; }
  const SString& GetText() const { return itsText; }

protected:
  std::complex<double> itsValue;
  SString itsText;
  bool itsNamed;
};

// The value of an argument: by name, or by index from a bracket "[3]", "[F]", "[F+1]".
class SEqnArgReference : public SEqnValue {
  SCOLLECTABLE_DECLARE(SEqnArgReference)
public:
  // A named reference; index -1 while the name is not yet bound to an argument.
  SEqnArgReference(const SString& name, int index) : SEqnValue(0.0, name), itsIndex(index) {}
  // A bracket reference: relative to the argument position, or absolute.
  SEqnArgReference(const SString& text, long long offset, bool relative)
      : SEqnValue(0.0, text), itsIndex(-1), itsOffset(offset), itsBracket(true), itsRelative(relative) {}

  SEqnElement* Clone() const override { return new SEqnArgReference(*this); }
  bool Evaluate(SEqnStack& stack, std::complex<double>& value, SString& errorText,
                const SEqnOwner* owner) const override;
  SString GetErrorContext(int code) const override;

  bool IsBracket() const { return itsBracket; }
  bool IsBound() const { return itsBracket || itsIndex >= 0; }
  int GetIndex() const { return itsIndex; }
  void SetIndex(int index) { itsIndex = index; }
  const SString& GetName() const { return itsText; }

private:
  int itsIndex;
  long long itsOffset = 0;
  bool itsBracket = false;
  bool itsRelative = false;
};

// A property of the owner's box, 0 when the owner has none.
class SEqnProperty : public SEqnValue {
  SCOLLECTABLE_DECLARE(SEqnProperty)
public:
  enum Code { CELL_X = 0, CELL_Y, CELLS_X, CELLS_Y, BOX_X, BOX_Y, REF_L, REF_R, REF_T, REF_B, PROPERTY_COUNT };

  SEqnProperty(Code code, const SString& name) : SEqnValue(0.0, name, true), itsCode(code) {}

  SEqnElement* Clone() const override { return new SEqnProperty(*this); }
  bool Evaluate(SEqnStack& stack, std::complex<double>& value, SString& errorText,
                const SEqnOwner* owner) const override;
  SString GetErrorContext(int code) const override;

  Code GetCode() const { return itsCode; }
  static const char* PropertyName(Code code);

private:
  Code itsCode;
};

// A double-quoted text: the name of a table for table1, table1c, table2. It pushes a zero
// marker, and its text goes on the string stack.
class SEqnString : public SEqnElement {
  SCOLLECTABLE_DECLARE(SEqnString)
public:
  // `text` without its quotes.
  explicit SEqnString(const SString& text) : itsText(text) {}

  SEqnElement* Clone() const override { return new SEqnString(*this); }
  bool Evaluate(SEqnStack& stack, std::complex<double>& value, SString& errorText,
                const SEqnOwner* owner) const override;
  int GetStackEffect() const override { return 1; }
  void Write(QTextStream& stream) const override;
  SString GetErrorContext(int code) const override;

  const SString& GetText() const { return itsText; }

private:
  SString itsText;
};

#endif
