#ifndef SEQUATION_H
#define SEQUATION_H

#include "SCalculation.h"
#include "SEqnElement.h"
#include "SEqnFileRef.h"
#include "SEqnMessages.h"

#include <QStringList>
#include <complex>
#include <vector>

class SEqnElementDictionary;

// One formula: the text, its postfix sequence of elements, and complex evaluation. Parsing and
// evaluation are iterative, so no input can recurse deeply.
class SEquation : public SCalculation {
  SCOLLECTABLE_DECLARE(SEquation)
public:
  explicit SEquation(SEqnOwner* owner = nullptr);
  explicit SEquation(const SString& text, SEqnOwner* owner = nullptr);
  // A copy has its own elements and its own tag.
  SEquation(const SEquation& other);
  SEquation& operator=(const SEquation& other);
  ~SEquation() override;
  SCalculation* Clone() const override { return new SEquation(*this); }

  // Sets the text; the equation must be compiled again.
  void SetEquation(const SString& text);
  const SString& GetEquation() const { return itsText; }

  // Parses and checks the text. allowUnknown: names that are no function, constant, property or
  // argument are noted as unresolved instead of failing. allowNoArgs: an equation without
  // arguments stays without; otherwise it gets the default first argument "FREQ". False with
  // the error code and text set.
  bool Compile(bool allowUnknown = false, bool allowNoArgs = false);
  bool IsCompiled() const { return itsCompiled; }

  // "DB", "MAG", "ANG" or "ANG_DEG", "ANG_RAD", "REAL", "IMAG" in any case; other texts give REAL.
  // Takes effect at the next compile.
  void SetResultType(const SString& name);
  const SString& GetResultType() const { return itsResultType; }
  int GetResultFormat() const { return itsResultFormat; }

  // Evaluates with the argument values by position (FREQ first, as the arguments are listed).
  // An equation with text but never compiled is compiled first. False with the words in errorText.
  bool Evaluate(const std::vector<std::complex<double>>& arguments, std::complex<double>& result,
                SString& errorText);
  bool Evaluate(std::complex<double>& result, SString& errorText) { return Evaluate({}, result, errorText); }
  // The argument index that "[F]" refers to; 0 by default.
  void SetArgumentPosition(long long position) { itsArgumentPosition = position; }
  long long GetArgumentPosition() const { return itsArgumentPosition; }
  // The arguments the last evaluation took, by index, in order of first use.
  const std::vector<int>& GetUsedArguments() const { return itsUsedArguments; }

  // Takes the first token from the front of `text` and leaves the rest there. On entry `token`
  // is the previous token, over which line, column and position move on; they then give where
  // the new token starts (line and column from 1, position from 0). `restart` starts over at
  // line 1, column 1. False at the end of the text, with an empty token.
  static bool NextToken(SString& text, SString& token, int& line, int& column, int& position, bool restart);

  // Sets and returns the words of an error: the message of the code with the token, then the line
  // and column when valid, then the character position when not negative (a position at the end
  // of the text says so).
  SString FormatError(int code, int line = 0, int column = 0, const SString& token = SString(), int position = -1);
  // Verifies the postfix sequence: every element finds its operands (error 15), one value is
  // left (16), texts in double quotes only name tables (21); then binds names to arguments, and a
  // name that is none is error 18 unless allowUnresolved.
  bool CheckStack(bool allowUnresolved = false);

  int GetErrorCode() const { return itsErrorCode; }
  const SString& GetErrorText() const { return itsErrorText; }
  // Names not known at the compile, distinct and case-blind, in order of first use.
  const QStringList& GetUnresolvedNames() const { return itsUnresolvedNames; }
  const SOrdered& GetPostfix() const { return itsPostfix; }
  // The postfix sequence, elements separated by blanks.
  SString GetPostfixText() const;
  // "EQD" and a number, unique in the process.
  const SString& GetTag() const { return itsTag; }
  SEqnFileRef& GetFileRef() { return itsFileRef; }
  const SEqnFileRef& GetFileRef() const { return itsFileRef; }

private:
  struct SToken;
  bool Fail(int code, const SToken& token);
  bool Fail(int code, const SEqnElement* element, const SString& token = SString());
  bool Tokenize(std::vector<SToken>& tokens);
  bool Classify(SToken& token, bool followedByParenthesis, bool allowUnknown);
  bool CheckSyntax(std::vector<SToken>& tokens, bool allowUnknown);
  void MakePostfix(const std::vector<SToken>& tokens);
  void Reset();
  void NewTag();

  SString itsResultType = "REAL";
  SOrdered itsPostfix;
  const SEqnElementDictionary* itsDictionary;
  std::vector<int> itsUsedArguments;
  long long itsArgumentPosition = 0;
  int itsErrorCode = 0;
  SString itsErrorText;
  SString itsText;
  SEqnFileRef itsFileRef;
  QStringList itsUnresolvedNames;
  SString itsTag;
  int itsResultFormat = 4;
  bool itsCompiled = false;
};

#endif
