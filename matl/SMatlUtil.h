#ifndef SMATLUTIL_H
#define SMATLUTIL_H

#include "SString.h"

class SFile;
class SProjectStream;
class SValueVarDouble;

// Parsing, unit tables and small text helpers that every material file line shares. One
// instance serves the process; it holds the significant digits of written numbers.
class SMatlUtil {
public:
  // The dimensions of a material file's units, in the order a unit token tries them.
  enum Dimension { Length = 0, Conductivity = 1, Resistivity = 2, SheetResistance = 3, Temperature = 4, DimensionCount = 5 };
  // Outcome of taking a number from a file.
  enum Take { Taken = 0, Missing = 1, NotANumber = 2 };
  // The layer name patterns of SplitLayerName.
  enum NamePart {
    TrailingDigits = 0,    // "[0-9_]*$"
    FirstDigits = 1,       // "[0-9]+"
    FirstLetters = 2,      // "[a-zA-Z]+"
    LeadingLetters = 3,    // "^[a-zA-Z]+"
    LeadingTwoLetters = 4, // "^[a-zA-Z]{2}"
    FirstAlphanumeric = 5  // "[a-zA-Z0-9]+"
  };

  static SMatlUtil& Instance();

  int GetSignificantDigits() const { return itsDigits; }
  void SetSignificantDigits(int digits) { itsDigits = digits; }
  // A number with the significant digits of the instance.
  SString FormatNumber(double value) const;
  // A value field as files hold it: a number with the instance's digits, an expression in
  // double quotes.
  void WriteValue(SProjectStream& out, const SValueVarDouble& value) const;

  // Equal numbers and equal expression texts.
  static bool SameValue(const SValueVarDouble& a, const SValueVarDouble& b);
  // Multiplies a plain number; an expression stays as it is.
  static void ScaleValue(SValueVarDouble& value, double factor);

  // A real in fixed or exponent form ("%lf" with nothing left over); words such as "inf" or
  // "nan" are no numbers.
  static bool ParseReal(const SString& text, double& value);
  // A decimal integer ("%d" with nothing left over).
  static bool ParseInt(const SString& text, int& value);
  // Takes the current token of the file; `token` gets it for messages. The token is taken
  // even when it isn't a number.
  static Take TakeReal(SFile& file, double& value, SString& token);
  static Take TakeInt(SFile& file, int& value, SString& token);

  // Unit names: `code` of a dimension to its name in files (long or short where a
  // dimension has both); null for an unknown code.
  static const char* UnitName(int dimension, int code, bool longName = true);
  // The code of an accepted spelling, compared in upper case; -1 when the dimension
  // doesn't know the token.
  static int UnitCode(int dimension, const SString& token);
  // The number of codes of a dimension.
  static int UnitCount(int dimension);
  // The keyword the project's dimension block knows a unit by; empty when it has none.
  static SString DimensionUnitKeyword(int dimension, int code);
  // Metres per length unit; 1 for an unknown code.
  static double LengthFactor(int code);
  // The factor that turns a value in unit `from` into unit `to` of one dimension: the
  // project's factor of the first over that of the second. 1 for temperature and unknown units.
  static double ConversionFactor(int dimension, int from, int to);

  // Any of ! & = " in the text.
  static bool HasIllegalCharacter(const SString& text);
  static SString BlanksToUnderscores(const SString& text);
  // Blanks and tabs gone from both ends, then a leading "//" or run of ; # ! * $ % with the
  // white space behind it.
  static SString StripCommentLeader(const SString& text);
  // The first match of a name pattern in a layer name; empty without one.
  static SString SplitLayerName(const SString& name, int part);
  // A conductivity through the number formatter with 4 significant digits.
  static double TruncateConductivity(double value);

private:
  SMatlUtil() {}
  int itsDigits = 15;
};

#endif
