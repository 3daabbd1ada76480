#include "SEqnElement.h"

#include "SEqnMessages.h"
#include "SEqnOwner.h"
#include "SVeloraError.h"

#include <QTextStream>
#include <cmath>

SCOLLECTABLE_DEFINE(SEqnElement, SID_EQNELEMENT, &SCollectable::staticTypeInfo())
SCOLLECTABLE_DEFINE(SEqnFunction, SID_EQNFUNCTION, &SEqnElement::staticTypeInfo())
SCOLLECTABLE_DEFINE(SEqnValue, SID_EQNVALUE, &SEqnElement::staticTypeInfo())
SCOLLECTABLE_DEFINE(SEqnArgReference, SID_EQNARGREFERENCE, &SEqnValue::staticTypeInfo())
SCOLLECTABLE_DEFINE(SEqnProperty, SID_EQNPROPERTY, &SEqnValue::staticTypeInfo())
SCOLLECTABLE_DEFINE(SEqnString, SID_EQNSTRING, &SEqnElement::staticTypeInfo())

namespace {
typedef std::complex<double> Complex;

// Magnitudes at or below this count as zero for division and logarithms.
const double kTiny = 1e-100;
// A cosine at or below this makes tan fail.
const double kTinyCosine = 1e-8;
// |exponent| * log10|base| must stay below this, so that a power stays finite.
const double kPowerLimit = 290.0;
// e^667.75 is near the largest double.
const double kExpLimit = 667.7496769682732;
const double kRadToDeg = 57.29577951308232;

struct SFunctionEntry {
  SEqnFunction::Code code;
  const char* name;
  int operands;
  int precedence;
};

const SFunctionEntry kFunctions[SEqnFunction::FUNCTION_COUNT] = {
    {SEqnFunction::PLUS, "+", 2, 1},        {SEqnFunction::MINUS, "-", 2, 1},
    {SEqnFunction::TIMES, "*", 2, 2},       {SEqnFunction::DIVIDE, "/", 2, 2},
    {SEqnFunction::POWER, "^", 2, 4},       {SEqnFunction::SIN, "sin", 1, 6},
    {SEqnFunction::COS, "cos", 1, 6},       {SEqnFunction::CMPLX, "cmplx", 2, 5},
    {SEqnFunction::NEGATE, "", 1, 3},       {SEqnFunction::REAL, "real", 1, 6},
    {SEqnFunction::IMAG, "imag", 1, 6},     {SEqnFunction::RAD, "rad", 1, 6},
    {SEqnFunction::MAG, "mag", 1, 6},       {SEqnFunction::DEG, "deg", 1, 6},
    {SEqnFunction::CONJ, "conj", 1, 6},     {SEqnFunction::DB20, "db20", 1, 6},
    {SEqnFunction::DB10, "db10", 1, 6},     {SEqnFunction::LOG10, "log10", 1, 6},
    {SEqnFunction::LN, "ln", 1, 6},         {SEqnFunction::EXP, "exp", 1, 6},
    {SEqnFunction::SQRT, "sqrt", 1, 6},     {SEqnFunction::IDENTITY, "", 1, 0},
    {SEqnFunction::ACOS, "acos", 1, 6},     {SEqnFunction::ASIN, "asin", 1, 6},
    {SEqnFunction::ATAN, "atan", 1, 6},     {SEqnFunction::ATAN2, "atan2", 2, 6},
    {SEqnFunction::ACOSH, "acosh", 1, 6},   {SEqnFunction::ASINH, "asinh", 1, 6},
    {SEqnFunction::ATANH, "atanh", 1, 6},   {SEqnFunction::COSH, "cosh", 1, 6},
    {SEqnFunction::FMOD, "fmod", 2, 6},     {SEqnFunction::HYPOT, "hypot", 2, 6},
    {SEqnFunction::INT, "int", 1, 6},       {SEqnFunction::MAX, "max", 2, 6},
    {SEqnFunction::MIN, "min", 2, 6},       {SEqnFunction::SINH, "sinh", 1, 6},
    {SEqnFunction::TAN, "tan", 1, 6},       {SEqnFunction::TANH, "tanh", 1, 6},
    {SEqnFunction::TABLE1, "table1", 2, 6}, {SEqnFunction::TABLE1C, "table1c", 2, 6},
    {SEqnFunction::TABLE2, "table2", 3, 6}, {SEqnFunction::M2P, "m2p", 1, 6},
    {SEqnFunction::H2P, "h2p", 1, 6},       {SEqnFunction::P2M, "p2m", 1, 6},
    {SEqnFunction::P2H, "p2h", 1, 6},       {SEqnFunction::FORMAT, "FORMAT", 1, 6},
};

const char* const kFormatNames[] = {"DB", "MAG", "ANG_DEG", "ANG_RAD", "REAL", "IMAG"};

const char* const kPropertyNames[SEqnProperty::PROPERTY_COUNT] = {"CELL_X", "CELL_Y", "CELLS_X", "CELLS_Y", "BOX_X",
                                                                  "BOX_Y",  "REF_L",  "REF_R",   "REF_T",   "REF_B"};

[[noreturn]] void IllegalVirtual() { SFATAL("VL1005", "%s", "Illegal Virtual Method Called."); }

bool Fail(SString& errorText, const char* words) {
  errorText = words;
  return false;
}

// A logarithm's argument must not vanish; `words` name the function for the failure.
bool Logarithm(const Complex& x, Complex& result, SString& errorText, const char* words) {
  if (std::abs(x) <= kTiny) return Fail(errorText, words);
  result = std::log(x);
  return true;
}

bool Power(const Complex& base, const Complex& exponent, Complex& result) {
  const double magnitude = std::abs(base);
  if (magnitude == 0.0) {
    result = 0.0;
    return true;
  }
  if (std::abs(exponent) * std::log10(magnitude) >= kPowerLimit) return false;
  const bool real = base.imag() == 0.0 && exponent.imag() == 0.0;
  // Real powers stay exact where the complex formula would round (2^3^2 is 64, not 63.99...).
  if (real && (base.real() > 0.0 || exponent.real() == std::trunc(exponent.real())))
    result = std::pow(base.real(), exponent.real());
  else
    result = std::pow(base, exponent);
  return true;
}

bool LookupFailure(SString& errorText) { return Fail(errorText, "illegal table lookup"); }
}  // namespace

bool SEqnStack::Pop(std::complex<double>& value) {
  if (itsValues.empty()) return false;
  value = itsValues.back();
  itsValues.pop_back();
  return true;
}

void SEqnStack::Load(std::complex<double>& value, const std::complex<double>& next) {
  if (itsHasValue) itsValues.push_back(value);
  value = next;
  itsHasValue = true;
}

// The base element is never evaluated: every operation of it is a program error.
SEqnElement* SEqnElement::Clone() const { IllegalVirtual(); }
bool SEqnElement::Evaluate(SEqnStack&, std::complex<double>&, SString&, const SEqnOwner*) const { IllegalVirtual(); }
int SEqnElement::GetStackEffect() const { IllegalVirtual(); }
void SEqnElement::Write(QTextStream&) const { IllegalVirtual(); }
SString SEqnElement::GetErrorContext(int) const { IllegalVirtual(); }
int SEqnElement::GetPrecedence() const { IllegalVirtual(); }

SEqnFunction::SEqnFunction(Code code, const SString& name, int resultFormat)
    : itsCode(code), itsName(name.isEmpty() ? SString(TableName(code)) : name), itsResultFormat(resultFormat) {
  if (itsResultFormat < 0 || itsResultFormat > 5) itsResultFormat = 4;
}

const char* SEqnFunction::TableName(Code code) {
  return code >= 0 && code < FUNCTION_COUNT ? kFunctions[code].name : "";
}

int SEqnFunction::GetOperandCount() const { return kFunctions[itsCode].operands; }

int SEqnFunction::GetPrecedence() const { return kFunctions[itsCode].precedence; }

void SEqnFunction::Write(QTextStream& stream) const {
  if (itsCode == NEGATE)
    stream << "neg";
  else if (itsCode == IDENTITY)
    stream << "()";
  else
    stream << itsName.qstring();
}

SString SEqnFunction::GetErrorContext(int) const {
  if (itsCode == NEGATE) return SEqnMessage(kEqnNegateContext);
  if (itsCode == FORMAT) return SEqnMessage(kEqnFormatContext, kFormatNames[itsResultFormat]);
  if (itsCode <= POWER) return SEqnMessage(kEqnOperatorContext, itsName);
  return SEqnMessage(kEqnFunctionContext, itsName);
}

bool SEqnFunction::Evaluate(SEqnStack& stack, std::complex<double>& value, SString& errorText,
                            const SEqnOwner* owner) const {
  if (!stack.itsHasValue) return false;
  const int count = GetOperandCount();
  Complex operands[3];
  operands[count - 1] = value;
  for (int i = count - 2; i >= 0; --i)
    if (!stack.Pop(operands[i])) return false;
  return Apply(operands, value, errorText, stack, owner);
}

bool SEqnFunction::Apply(const std::complex<double>* operands, std::complex<double>& value, SString& errorText,
                         SEqnStack& stack, const SEqnOwner* owner) const {
  const Complex& x = operands[0];
  const Complex& y = operands[1];
  switch (itsCode) {
    case PLUS: value = x + y; return true;
    case MINUS: value = x - y; return true;
    case TIMES: value = x * y; return true;
    case DIVIDE:
      if (std::abs(y) <= kTiny) return Fail(errorText, "Divide by zero");
      value = x / y;
      return true;
    case POWER:
      if (!Power(x, y, value)) return Fail(errorText, "illegal argument to ^");
      return true;
    case SIN: value = std::sin(x); return true;
    case COS: value = std::cos(x); return true;
    case CMPLX: value = x + Complex(0.0, 1.0) * y; return true;
    case NEGATE: value = -x; return true;
    case REAL: value = x.real(); return true;
    case IMAG: value = x.imag(); return true;
    case RAD: value = std::arg(x); return true;
    case MAG: value = std::abs(x); return true;
    case DEG: value = std::arg(x) * kRadToDeg; return true;
    case CONJ: value = std::conj(x); return true;
    case DB20:
      if (std::abs(x) <= kTiny) return Fail(errorText, "illegal argument to db20");
      value = 20.0 * std::log10(std::abs(x));
      return true;
    case DB10:
      if (std::abs(x) <= kTiny) return Fail(errorText, "illegal argument to db10");
      value = 10.0 * std::log10(std::abs(x));
      return true;
    case LOG10:
      if (std::abs(x) <= kTiny) return Fail(errorText, "illegal argument to log10");
      value = std::log10(x);
      return true;
    case LN: return Logarithm(x, value, errorText, "illegal argument to ln");
    case EXP:
      if (std::abs(x) >= kExpLimit) return Fail(errorText, "illegal argument to exp");
      value = std::exp(x);
      return true;
    case SQRT: value = std::sqrt(x); return true;
    case IDENTITY: value = x; return true;
    case ACOS: value = std::acos(x); return true;
    case ASIN: value = std::asin(x); return true;
    case ATAN: value = std::atan(x); return true;
    case ATAN2: value = std::atan2(x.real(), y.real()); return true;
    case ACOSH: return Logarithm(x + std::sqrt(x * x - 1.0), value, errorText, "illegal argument to acosh");
    case ASINH: return Logarithm(x + std::sqrt(x * x + 1.0), value, errorText, "illegal argument to asinh");
    case ATANH:
      if (std::abs(1.0 - x) <= kTiny) return Fail(errorText, "illegal argument to atanh");
      if (!Logarithm((1.0 + x) / (1.0 - x), value, errorText, "illegal argument to atanh")) return false;
      value *= 0.5;
      return true;
    case COSH: value = std::cosh(x); return true;
    case FMOD: {
      if (std::abs(y) <= kTiny) return Fail(errorText, "illegal argument to fmod");
      const double remainder = std::fmod(std::abs(x), std::abs(y));
      value = x.real() < 0.0 ? -remainder : remainder;
      return true;
    }
    case HYPOT: value = std::hypot(x.real(), y.real()); return true;
    case INT: value = std::trunc(x.real()); return true;
    case MAX: value = x.real() >= y.real() ? x : y; return true;
    case MIN: value = x.real() <= y.real() ? x : y; return true;
    case SINH: value = std::sinh(x); return true;
    case TAN: {
      const Complex cosine = std::cos(x);
      if (std::abs(cosine) <= kTinyCosine) return Fail(errorText, "illegal argument to tan");
      value = std::sin(x) / cosine;
      return true;
    }
    case TANH: value = std::tanh(x); return true;
    case TABLE1:
    case TABLE1C:
    case TABLE2: {
      if (stack.itsStrings.empty()) return LookupFailure(errorText);
      const SString name = stack.itsStrings.back();
      stack.itsStrings.pop_back();
      const int dimensions = itsCode == TABLE2 ? 2 : 1;
      const double second = dimensions == 2 ? operands[2].real() : 0.0;
      double result = 0.0;
      if (!owner || !owner->LookupTable(name, itsCode == TABLE1C ? 'c' : 'l', dimensions, y.real(), second, result))
        return LookupFailure(errorText);
      value = result;
      return true;
    }
    case M2P:
    case H2P:
    case P2M:
    case P2H: {
      double result = 0.0;
      if (!owner || !owner->MapInductorTable(itsCode, x.real(), result)) return LookupFailure(errorText);
      value = result;
      return true;
    }
    case FORMAT:
      switch (itsResultFormat) {
        case 0:
          if (std::abs(x) <= kTiny) return Fail(errorText, "illegal argument to db10");
          value = 20.0 * std::log10(std::abs(x));
          return true;
        case 1: value = std::abs(x); return true;
        case 2: value = std::arg(x) * kRadToDeg; return true;
        case 3: value = std::arg(x); return true;
        case 5: value = x.imag(); return true;
        default: value = x.real(); return true;
      }
    case FUNCTION_COUNT: break;
  }
  return false;
}

bool SEqnValue::Evaluate(SEqnStack& stack, std::complex<double>& value, SString&, const SEqnOwner*) const {
  stack.Load(value, itsValue);
  return true;
}

void SEqnValue::Write(QTextStream& stream) const { stream << itsText.qstring(); }

SString SEqnValue::GetErrorContext(int) const {
  return SEqnMessage(itsNamed ? kEqnConstantContext : kEqnNumberContext, itsText);
}

bool SEqnArgReference::Evaluate(SEqnStack& stack, std::complex<double>& value, SString& errorText,
                                const SEqnOwner*) const {
  long long index = itsIndex;
  if (itsBracket && !itsRelative) index = itsOffset;
  if (itsBracket && itsRelative && __builtin_add_overflow(stack.itsArgumentPosition, itsOffset, &index)) index = -1;
  if (!itsBracket && itsIndex < 0) {
    stack.itsErrorCode = kEqnUnresolvedName;
    errorText = SEqnErrorWords(kEqnUnresolvedName, itsText);
    return false;
  }
  const std::vector<Complex>* arguments = stack.itsArguments;
  if (index < 0 || !arguments || index >= static_cast<long long>(arguments->size())) {
    stack.itsErrorCode = kEqnArgumentWithoutValue;
    errorText = SEqnErrorWords(kEqnArgumentWithoutValue, itsText);
    return false;
  }
  const int used = static_cast<int>(index);
  bool known = false;
  for (int seen : stack.itsUsedArguments) known = known || seen == used;
  if (!known) stack.itsUsedArguments.push_back(used);
  stack.Load(value, (*arguments)[used]);
  return true;
}

SString SEqnArgReference::GetErrorContext(int) const {
  return SEqnMessage(itsBracket ? kEqnBracketContext : kEqnArgumentContext, itsText);
}

const char* SEqnProperty::PropertyName(Code code) {
  return code >= 0 && code < PROPERTY_COUNT ? kPropertyNames[code] : "";
}

bool SEqnProperty::Evaluate(SEqnStack& stack, std::complex<double>& value, SString&, const SEqnOwner* owner) const {
  double property = 0.0;
  if (!owner || !owner->GetEquationProperty(itsCode, property)) property = 0.0;
  stack.Load(value, property);
  return true;
}

SString SEqnProperty::GetErrorContext(int) const { return SEqnMessage(kEqnPropertyContext, itsText); }

bool SEqnString::Evaluate(SEqnStack& stack, std::complex<double>& value, SString&, const SEqnOwner*) const {
  stack.itsStrings.push_back(itsText);
  stack.Load(value, 0.0);
  return true;
}

void SEqnString::Write(QTextStream& stream) const { stream << '"' << itsText.qstring() << '"'; }

SString SEqnString::GetErrorContext(int) const { return SEqnMessage(kEqnStringContext, "\"" + itsText + "\""); }
