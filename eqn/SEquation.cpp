#include "SEquation.h"

#include "SEqnElementDictionary.h"
#include "SVeloraError.h"

#include <QTextStream>
#include <atomic>
#include <cmath>

SCOLLECTABLE_DEFINE(SEquation, SID_EQUATION, &SCalculation::staticTypeInfo())

// One token of the text with what the syntax check found it to be.
struct SEquation::SToken {
  enum Kind { OPERAND, FUNCTION, OPERATOR, OPEN, CLOSE, COMMA };
  enum OperandKind { NUMBER, STRING, BRACKET, PROTOTYPE, ARGUMENT, UNRESOLVED };

  QString text;
  int line = 1;
  int column = 1;
  int position = 0;
  Kind kind = OPERAND;
  OperandKind operand = NUMBER;
  bool unary = false;
  double number = 0.0;
  long long offset = 0;
  bool relative = false;
  int argument = -1;
  const SEqnElement* prototype = nullptr;
};

namespace {
bool IsWordChar(QChar c) { return c.isLetterOrNumber() || c == QLatin1Char('.') || c == QLatin1Char('_'); }
bool IsDigit(QChar c) { return c >= QLatin1Char('0') && c <= QLatin1Char('9'); }

// Reads digits from text[i] on; the count read.
int Digits(const QString& text, int& i) {
  const int start = i;
  while (i < text.size() && IsDigit(text[i])) ++i;
  return i - start;
}

// Digits, an optional point and digits, at least one digit in all: text[start, end).
bool IsMantissa(const QString& text, int start, int end) {
  int i = start;
  int digits = Digits(text, i);
  if (i < end && text[i] == QLatin1Char('.')) {
    ++i;
    digits += Digits(text, i);
  }
  return digits > 0 && i == end;
}

// A number in fixed or exponent form, finite.
bool ParseNumber(const QString& text, double& value) {
  int i = 0;
  int digits = Digits(text, i);
  if (i < text.size() && text[i] == QLatin1Char('.')) {
    ++i;
    digits += Digits(text, i);
  }
  if (digits == 0) return false;
  if (i < text.size() && (text[i] == QLatin1Char('e') || text[i] == QLatin1Char('E'))) {
    ++i;
    if (i < text.size() && (text[i] == QLatin1Char('+') || text[i] == QLatin1Char('-'))) ++i;
    if (Digits(text, i) == 0) return false;
  }
  if (i != text.size()) return false;
  bool ok = false;
  value = text.toDouble(&ok);
  return ok && std::isfinite(value);
}

// "[F]", "[F+2]", "[f-1]" relative to the argument position; "[3]", "[+3]" absolute.
bool ParseBracket(const QString& text, long long& offset, bool& relative) {
  if (text.size() < 2 || !text.endsWith(QLatin1Char(']'))) return false;
  const QString inner = text.mid(1, text.size() - 2).trimmed();
  int i = 0;
  relative = !inner.isEmpty() && (inner[0] == QLatin1Char('F') || inner[0] == QLatin1Char('f'));
  bool negative = false;
  if (relative) {
    ++i;
    offset = 0;
    if (i == inner.size()) return true;
    if (inner[i] != QLatin1Char('+') && inner[i] != QLatin1Char('-')) return false;
    negative = inner[i] == QLatin1Char('-');
    ++i;
  } else if (i < inner.size() && inner[i] == QLatin1Char('+')) {
    ++i;
  }
  const int start = i;
  const int count = Digits(inner, i);
  // Nine digits keep any offset plus a position far from overflow.
  if (count == 0 || count > 9 || i != inner.size()) return false;
  offset = inner.mid(start).toLongLong();
  if (negative) offset = -offset;
  return true;
}

int SkipSpace(const QString& text, int i) {
  while (i < text.size() && text[i].isSpace()) ++i;
  return i;
}

// End of the token that starts at `start`.
int TokenEnd(const QString& text, int start) {
  const int size = text.size();
  if (start >= size) return start;
  const QChar c = text[start];
  if (c == QLatin1Char('"') || c == QLatin1Char('[')) {
    const int close = text.indexOf(c == QLatin1Char('"') ? QLatin1Char('"') : QLatin1Char(']'), start + 1);
    return close < 0 ? size : close + 1;
  }
  if (!IsWordChar(c)) return start + 1;
  int i = start + 1;
  while (i < size) {
    const QChar d = text[i];
    const bool sign = d == QLatin1Char('+') || d == QLatin1Char('-');
    const QChar e = text[i - 1];
    if (IsWordChar(d) || (sign && (e == QLatin1Char('e') || e == QLatin1Char('E')) && IsMantissa(text, start, i - 1)))
      ++i;
    else
      break;
  }
  return i;
}

// Moves line and column over text[from, to): LF, CR and CR LF each end a line.
void Advance(const QString& text, int from, int to, int& line, int& column) {
  for (int i = from; i < to; ++i) {
    const QChar c = text[i];
    if (c == QLatin1Char('\r') || c == QLatin1Char('\n')) {
      if (c == QLatin1Char('\r') && i + 1 < to && text[i + 1] == QLatin1Char('\n')) ++i;
      ++line;
      column = 1;
    } else {
      ++column;
    }
  }
}

int ResultFormat(const SString& name) {
  const SString type = name.stripped().upper();
  if (type == "DB") return 0;
  if (type == "MAG") return 1;
  if (type == "ANG" || type == "ANG_DEG") return 2;
  if (type == "ANG_RAD") return 3;
  if (type == "IMAG") return 5;
  return 4;
}

SEqnFunction::Code OperatorCode(QChar c) {
  switch (c.toLatin1()) {
    case '+': return SEqnFunction::PLUS;
    case '-': return SEqnFunction::MINUS;
    case '*': return SEqnFunction::TIMES;
    case '/': return SEqnFunction::DIVIDE;
    default: return SEqnFunction::POWER;
  }
}

std::atomic<unsigned long long> gTagCount{0};
}  // namespace

SEquation::SEquation(SEqnOwner* owner) : SCalculation(owner), itsDictionary(&SEqnElementDictionary::Standard()) {
  NewTag();
}

SEquation::SEquation(const SString& text, SEqnOwner* owner) : SEquation(owner) { itsText = text; }

SEquation::SEquation(const SEquation& other)
    : SCalculation(other),
      itsResultType(other.itsResultType),
      itsDictionary(other.itsDictionary),
      itsUsedArguments(other.itsUsedArguments),
      itsArgumentPosition(other.itsArgumentPosition),
      itsErrorCode(other.itsErrorCode),
      itsErrorText(other.itsErrorText),
      itsText(other.itsText),
      itsFileRef(other.itsFileRef),
      itsUnresolvedNames(other.itsUnresolvedNames),
      itsResultFormat(other.itsResultFormat),
      itsCompiled(other.itsCompiled) {
  for (SCollectable* element : other.itsPostfix) itsPostfix.append(static_cast<SEqnElement*>(element)->Clone());
  NewTag();
}

SEquation& SEquation::operator=(const SEquation& other) {
  if (this == &other) return *this;
  SCalculation::operator=(other);
  itsPostfix.clearAndDestroy();
  for (SCollectable* element : other.itsPostfix) itsPostfix.append(static_cast<SEqnElement*>(element)->Clone());
  itsResultType = other.itsResultType;
  itsDictionary = other.itsDictionary;
  itsUsedArguments = other.itsUsedArguments;
  itsArgumentPosition = other.itsArgumentPosition;
  itsErrorCode = other.itsErrorCode;
  itsErrorText = other.itsErrorText;
  itsText = other.itsText;
  itsFileRef = other.itsFileRef;
  itsUnresolvedNames = other.itsUnresolvedNames;
  itsResultFormat = other.itsResultFormat;
  itsCompiled = other.itsCompiled;
  return *this;
}

SEquation::~SEquation() { itsPostfix.clearAndDestroy(); }

void SEquation::NewTag() { itsTag = SString::format("EQD%llu", ++gTagCount); }

void SEquation::Reset() {
  itsPostfix.clearAndDestroy();
  itsUnresolvedNames.clear();
  itsUsedArguments.clear();
  itsErrorCode = 0;
  itsErrorText.clear();
  itsCompiled = false;
}

void SEquation::SetEquation(const SString& text) {
  Reset();
  itsText = text;
}

void SEquation::SetResultType(const SString& name) {
  itsResultType = name;
  itsResultFormat = ResultFormat(name);
}

bool SEquation::NextToken(SString& text, SString& token, int& line, int& column, int& position, bool restart) {
  if (restart) {
    line = 1;
    column = 1;
    position = 0;
  } else {
    Advance(token.qstring(), 0, token.length(), line, column);
    position += token.length();
  }
  const QString rest = text.qstring();
  const int start = SkipSpace(rest, 0);
  Advance(rest, 0, start, line, column);
  position += start;
  const int end = TokenEnd(rest, start);
  token = SString(rest.mid(start, end - start));
  text = SString(rest.mid(end));
  return !token.isEmpty();
}

bool SEquation::Tokenize(std::vector<SToken>& tokens) {
  const QString& text = itsText.qstring();
  int line = 1;
  int column = 1;
  int i = 0;
  for (;;) {
    const int start = SkipSpace(text, i);
    Advance(text, i, start, line, column);
    if (start >= text.size()) break;
    const int end = TokenEnd(text, start);
    SToken token;
    token.text = text.mid(start, end - start);
    token.line = line;
    token.column = column;
    token.position = start;
    tokens.push_back(token);
    Advance(text, start, end, line, column);
    i = end;
  }
  return !tokens.empty();
}

SString SEquation::FormatError(int code, int line, int column, const SString& token, int position) {
  SString words = SEqnErrorWords(code, token);
  if (line > 0 && column > 0) {
    SString where;
    VeloraFormatMessage(where, kEqnLineColumnMessage, line, column);
    words += ", " + where;
  }
  if (position >= 0) {
    SString at;
    if (position >= itsText.length())
      at = SEqnMessage(kEqnAtEndMessage);
    else
      VeloraFormatMessage(at, kEqnAtCharacterMessage, position + 1);
    words += " " + at;
  }
  itsErrorCode = code;
  itsErrorText = words;
  return words;
}

bool SEquation::Fail(int code, const SToken& token) {
  FormatError(code, token.line, token.column, SString(token.text), token.position);
  return false;
}

bool SEquation::Fail(int code, const SEqnElement* element, const SString& token) {
  FormatError(code, 0, 0, token);
  if (element) itsErrorText += " " + element->GetErrorContext(code);
  itsCompiled = false;
  return false;
}

bool SEquation::Classify(SToken& token, bool followedByParenthesis, bool allowUnknown) {
  const QString& text = token.text;
  const QChar c = text[0];
  token.kind = SToken::OPERAND;
  if (c == QLatin1Char('"')) {
    token.operand = SToken::STRING;
    return text.size() >= 2 && text.endsWith(QLatin1Char('"')) ? true : Fail(kEqnUnclosedString, token);
  }
  if (c == QLatin1Char('[')) {
    token.operand = SToken::BRACKET;
    return ParseBracket(text, token.offset, token.relative) ? true : Fail(kEqnBadBracket, token);
  }
  if (IsDigit(c) || c == QLatin1Char('.')) {
    token.operand = SToken::NUMBER;
    return ParseNumber(text, token.number) ? true : Fail(kEqnBadNumber, token);
  }
  if (IsWordChar(c)) {
    const SString name(text);
    const SEqnElement* prototype = itsDictionary->FindElement(name);
    if (prototype && prototype->isKindOf(SID_EQNFUNCTION)) {
      if (!followedByParenthesis) return Fail(kEqnFunctionWithoutParenthesis, token);
      token.kind = SToken::FUNCTION;
      token.prototype = prototype;
      return true;
    }
    if (prototype) {
      token.operand = SToken::PROTOTYPE;
      token.prototype = prototype;
      return true;
    }
    token.argument = FindArgument(name);
    if (token.argument >= 0) {
      token.operand = SToken::ARGUMENT;
      return true;
    }
    if (followedByParenthesis) return Fail(kEqnUnknownFunction, token);
    if (!allowUnknown) return Fail(kEqnUnknownName, token);
    token.operand = SToken::UNRESOLVED;
    bool known = false;
    for (const QString& seen : itsUnresolvedNames) known = known || seen.compare(text, Qt::CaseInsensitive) == 0;
    if (!known) itsUnresolvedNames << text;
    return true;
  }
  switch (c.toLatin1()) {
    case '+':
    case '-':
    case '*':
    case '/':
    case '^': token.kind = SToken::OPERATOR; return true;
    case '(': token.kind = SToken::OPEN; return true;
    case ')': token.kind = SToken::CLOSE; return true;
    case ',': token.kind = SToken::COMMA; return true;
    default: return Fail(kEqnBadCharacter, token);
  }
}

bool SEquation::CheckSyntax(std::vector<SToken>& tokens, bool allowUnknown) {
  std::vector<bool> frames;  // one per open "(": true for a function's operands
  bool operandExpected = true;
  bool afterMinus = false;
  bool functionNext = false;
  bool emptyList = false;  // just behind a function's "("
  for (size_t i = 0; i < tokens.size(); ++i) {
    SToken& token = tokens[i];
    const bool parenthesisNext = i + 1 < tokens.size() && tokens[i + 1].text == QLatin1String("(");
    if (!Classify(token, parenthesisNext, allowUnknown)) return false;
    bool minus = false;
    bool opened = false;
    switch (token.kind) {
      case SToken::OPERAND:
        if (!operandExpected) return Fail(kEqnOperandAfterOperand, token);
        operandExpected = false;
        break;
      case SToken::FUNCTION:
        if (!operandExpected) return Fail(kEqnOperandAfterOperand, token);
        functionNext = true;
        break;
      case SToken::OPEN:
        if (!operandExpected) return Fail(kEqnOperandAfterOperand, token);
        frames.push_back(functionNext);
        opened = functionNext;
        functionNext = false;
        break;
      case SToken::OPERATOR:
        if (operandExpected) {
          // One unary minus in front of an operand, none other.
          if (token.text != QLatin1String("-") || afterMinus) return Fail(kEqnOperatorForOperand, token);
          token.unary = true;
          minus = true;
        }
        operandExpected = true;
        break;
      case SToken::CLOSE:
        if (frames.empty()) return Fail(kEqnUnopenedParenthesis, token);
        // A function may be called with nothing between its parentheses; the stack check judges it.
        if (operandExpected && !emptyList) return Fail(kEqnMissingOperand, token);
        frames.pop_back();
        operandExpected = false;
        break;
      case SToken::COMMA:
        if (frames.empty() || !frames.back()) return Fail(kEqnMisplacedComma, token);
        if (operandExpected) return Fail(kEqnMissingOperand, token);
        operandExpected = true;
        break;
    }
    afterMinus = minus;
    emptyList = opened;
  }
  if (tokens.empty()) {
    FormatError(kEqnEmpty);
    return false;
  }
  SToken end;
  Advance(itsText.qstring(), 0, itsText.length(), end.line, end.column);
  end.position = itsText.length();
  if (operandExpected) {
    end.text = tokens.back().text;
    return Fail(kEqnMissingOperandAtEnd, end);
  }
  if (!frames.empty()) return Fail(kEqnUnclosedParenthesis, end);
  return true;
}

void SEquation::MakePostfix(const std::vector<SToken>& tokens) {
  std::vector<SEqnFunction*> operators;  // an IDENTITY element stands for each open "("
  std::vector<bool> frames;
  bool functionNext = false;
  for (const SToken& token : tokens) {
    switch (token.kind) {
      case SToken::OPERAND: {
        SEqnElement* element = nullptr;
        switch (token.operand) {
          case SToken::NUMBER: element = new SEqnValue(token.number, SString(token.text)); break;
          case SToken::STRING: element = new SEqnString(SString(token.text.mid(1, token.text.size() - 2))); break;
          case SToken::BRACKET: element = new SEqnArgReference(SString(token.text), token.offset, token.relative); break;
          case SToken::PROTOTYPE: element = token.prototype->Clone(); break;
          case SToken::ARGUMENT:
          case SToken::UNRESOLVED: element = new SEqnArgReference(SString(token.text), token.argument); break;
        }
        itsPostfix.append(element);
        break;
      }
      case SToken::FUNCTION: {
        const SEqnFunction* prototype = static_cast<const SEqnFunction*>(token.prototype);
        operators.push_back(new SEqnFunction(prototype->GetCode(), prototype->GetName(), itsResultFormat));
        functionNext = true;
        break;
      }
      case SToken::OPEN:
        operators.push_back(new SEqnFunction(SEqnFunction::IDENTITY));
        frames.push_back(functionNext);
        functionNext = false;
        break;
      case SToken::OPERATOR: {
        // A prefix minus has no left operand to finish, so it pops nothing.
        if (token.unary) {
          operators.push_back(new SEqnFunction(SEqnFunction::NEGATE));
          break;
        }
        SEqnFunction* element = new SEqnFunction(OperatorCode(token.text[0]));
        while (!operators.empty() && operators.back()->GetPrecedence() >= element->GetPrecedence()) {
          itsPostfix.append(operators.back());
          operators.pop_back();
        }
        operators.push_back(element);
        break;
      }
      case SToken::CLOSE:
      case SToken::COMMA:
        while (operators.back()->GetCode() != SEqnFunction::IDENTITY) {
          itsPostfix.append(operators.back());
          operators.pop_back();
        }
        if (token.kind == SToken::COMMA) break;
        delete operators.back();
        operators.pop_back();
        if (frames.back()) {
          itsPostfix.append(operators.back());
          operators.pop_back();
        }
        frames.pop_back();
        break;
    }
  }
  while (!operators.empty()) {
    itsPostfix.append(operators.back());
    operators.pop_back();
  }
  itsPostfix.append(new SEqnFunction(SEqnFunction::FORMAT, SString(), itsResultFormat));
}

bool SEquation::CheckStack(bool allowUnresolved) {
  itsCompiled = false;
  if (itsPostfix.isEmpty()) {
    FormatError(kEqnEmpty);
    return false;
  }
  // The elements whose values are on the stack, null for a computed value.
  std::vector<const SEqnElement*> stack;
  const SEqnElement* last = nullptr;
  for (SCollectable* item : itsPostfix) {
    const SEqnElement* element = static_cast<const SEqnElement*>(item);
    if (!element->isKindOf(SID_EQNFUNCTION)) {
      stack.push_back(element);
      last = element;
      continue;
    }
    const SEqnFunction* function = static_cast<const SEqnFunction*>(element);
    const size_t count = static_cast<size_t>(function->GetOperandCount());
    if (stack.size() < count) return Fail(kEqnStackUnderflow, function);
    for (size_t k = 0; k < count; ++k) {
      const SEqnElement* operand = stack[stack.size() - count + k];
      const bool text = operand && operand->isKindOf(SID_EQNSTRING);
      if (function->IsTableFunction() && k == 0 && !text)
        return Fail(kEqnMisplacedString, function, function->GetName());
      if (text && !(function->IsTableFunction() && k == 0))
        return Fail(kEqnMisplacedString, operand, "\"" + static_cast<const SEqnString*>(operand)->GetText() + "\"");
    }
    stack.resize(stack.size() - count);
    stack.push_back(nullptr);
    if (function->GetCode() != SEqnFunction::FORMAT) last = function;
  }
  if (stack.size() != 1) return Fail(kEqnStackLeftOver, last);
  for (SCollectable* item : itsPostfix) {
    if (!item->isKindOf(SID_EQNARGREFERENCE)) continue;
    SEqnArgReference* reference = static_cast<SEqnArgReference*>(item);
    if (reference->IsBracket()) continue;
    reference->SetIndex(FindArgument(reference->GetName()));
    if (!reference->IsBound() && !allowUnresolved)
      return Fail(kEqnUnresolvedName, reference, reference->GetName());
  }
  itsCompiled = true;
  return true;
}

bool SEquation::Compile(bool allowUnknown, bool allowNoArgs) {
  Reset();
  itsResultFormat = ResultFormat(itsResultType);
  if (itsArguments.isEmpty() && !allowNoArgs) AddArgument("FREQ");
  std::vector<SToken> tokens;
  Tokenize(tokens);
  if (!CheckSyntax(tokens, allowUnknown)) return false;
  MakePostfix(tokens);
  if (CheckStack(allowUnknown)) return true;
  itsPostfix.clearAndDestroy();
  return false;
}

bool SEquation::Evaluate(const std::vector<std::complex<double>>& arguments, std::complex<double>& result,
                         SString& errorText) {
  if (!itsCompiled && itsErrorCode == 0 && !itsText.isEmpty()) Compile();
  if (!itsCompiled) {
    if (itsErrorText.isEmpty()) FormatError(kEqnEmpty);
    errorText = itsErrorText;
    return false;
  }
  SEqnStack stack;
  stack.itsArguments = &arguments;
  stack.itsArgumentPosition = itsArgumentPosition;
  std::complex<double> value = 0.0;
  SString words;
  for (SCollectable* item : itsPostfix) {
    if (static_cast<const SEqnElement*>(item)->Evaluate(stack, value, words, itsOwner)) continue;
    // A failure without words is a broken sequence: an operator found no operand.
    itsErrorCode = stack.itsErrorCode ? stack.itsErrorCode : words.isEmpty() ? kEqnEvaluationUnderflow : 0;
    if (words.isEmpty()) words = SEqnErrorWords(kEqnEvaluationUnderflow);
    itsUsedArguments = stack.itsUsedArguments;
    errorText = words;
    return false;
  }
  itsUsedArguments = stack.itsUsedArguments;
  itsErrorCode = 0;
  result = value;
  return true;
}

SString SEquation::GetPostfixText() const {
  QString text;
  QTextStream stream(&text);
  bool first = true;
  for (SCollectable* item : itsPostfix) {
    if (!first) stream << ' ';
    static_cast<const SEqnElement*>(item)->Write(stream);
    first = false;
  }
  stream.flush();
  return SString(text);
}
