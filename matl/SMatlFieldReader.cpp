#include "SMatlFieldReader.h"

#include "SFile.h"
#include "SMatlLevel.h"
#include "SMatlMetalData.h"
#include "SMatlReporting.h"
#include "SMatlUtil.h"
#include "SValueVar.h"
#include "SVeloraTrace.h"

#pragma GCC diagnostic ignored "-Wformat-nonliteral"

namespace {
int FormMessage(const SMatlFieldMessages& m) { return m.form ? m.form : m.rule ? m.rule : m.missing; }
int RuleMessage(const SMatlFieldMessages& m) { return m.rule ? m.rule : m.form ? m.form : m.missing; }
int MissingMessage(const SMatlFieldMessages& m) { return m.missing ? m.missing : FormMessage(m); }
}  // namespace

SMatlFieldReader::SMatlFieldReader(SFile& file, const SString& fileName)
    : itsFile(file), itsFileName(fileName), itsLineNumber(file.LineCount()), itsLineText(file.CurrentLine()) {}

bool SMatlFieldReader::Fail(int number, const SString& value) const {
  SMatlReporting::Instance().LineError(number, itsFileName, itsLineNumber, itsLineText, value);
  return false;
}

void SMatlFieldReader::Warn(int number, const SString& value) const {
  SMatlReporting::Instance().LineWarning(number, itsFileName, itsLineNumber, itsLineText, value);
}

int SMatlFieldReader::Next(int missingMessage) {
  itsToken.clear();
  if (!itsFile.HasToken()) {
    // An optional field may end the line; an empty quoted token is a missing value all the same.
    if (itsOptional) {
      itsEnded = true;
      return 0;
    }
    Fail(missingMessage);
    return -1;
  }
  if (!itsFile.GetToken(itsToken)) {
    Fail(missingMessage);
    return -1;
  }
  return 1;
}

bool SMatlFieldReader::Token(SString& token, int missingMessage, bool& present) {
  present = false;
  if (itsEnded) return true;
  const int got = Next(missingMessage);
  if (got < 0) return false;
  if (got == 0) return true;
  present = true;
  token = itsToken;
  return true;
}

bool SMatlFieldReader::Satisfies(double value, int rule) {
  switch (rule) {
    case AtLeastZero:
      return value >= 0.0;
    case AboveZero:
      return value > 0.0;
    case AtLeastOne:
      return value >= 1.0;
    case AtLeastTwo:
      return value >= 2.0;
    default:
      return true;
  }
}

bool SMatlFieldReader::Real(SValueVarDouble& field, const SMatlFieldMessages& messages, int rule, const char* trace) {
  if (itsEnded) return true;
  const int got = Next(MissingMessage(messages));
  if (got <= 0) return got == 0;
  double value = 0.0;
  if (!SMatlUtil::ParseReal(itsToken, value)) return Fail(FormMessage(messages), itsToken);
  if (!Satisfies(value, rule)) {
    if (trace) VeloraTrace(3, TRACE_ERRORS, trace, value, static_cast<int>(itsLineNumber));
    return Fail(RuleMessage(messages), itsToken);
  }
  field.SetValue(value);
  return true;
}

bool SMatlFieldReader::RealOrInf(SValueVarDouble& field, bool& infinite, const SMatlFieldMessages& messages) {
  if (itsEnded) return true;
  const int got = Next(MissingMessage(messages));
  if (got <= 0) return got == 0;
  if (itsToken.upper() == "INF") {
    infinite = true;
    field.SetValue(SMatlMetalData::kInfinite);
    return true;
  }
  double value = 0.0;
  if (!SMatlUtil::ParseReal(itsToken, value)) return Fail(FormMessage(messages), itsToken);
  infinite = false;
  field.SetValue(value);
  return true;
}

bool SMatlFieldReader::Int(int& field, const SMatlFieldMessages& messages, int rule, const char* trace) {
  if (itsEnded) return true;
  const int got = Next(MissingMessage(messages));
  if (got <= 0) return got == 0;
  int value = 0;
  if (!SMatlUtil::ParseInt(itsToken, value)) return Fail(FormMessage(messages), itsToken);
  if (!Satisfies(value, rule)) {
    if (trace) VeloraTrace(3, TRACE_ERRORS, trace, value, static_cast<int>(itsLineNumber));
    return Fail(RuleMessage(messages), itsToken);
  }
  field = value;
  return true;
}

bool SMatlFieldReader::Word(int& code, const SMatlWord* table, const SMatlFieldMessages& messages, const char* trace) {
  if (itsEnded) return true;
  const int got = Next(MissingMessage(messages));
  if (got <= 0) return got == 0;
  const int found = CodeOf(table, itsToken);
  if (found < 0) {
    if (trace) VeloraTrace(3, TRACE_ERRORS, trace, itsToken.data(), static_cast<int>(itsLineNumber));
    return Fail(RuleMessage(messages), itsToken);
  }
  code = found;
  return true;
}

bool SMatlFieldReader::Name(SString& field, const SMatlFieldMessages& messages, int rule) {
  if (itsEnded) return true;
  const int got = Next(MissingMessage(messages));
  if (got <= 0) return got == 0;
  const bool blank = itsToken.contains(QChar(' ')) || itsToken.contains(QChar('\t'));
  const bool illegal = SMatlUtil::HasIllegalCharacter(itsToken);
  if ((rule != NoIllegalCharacter && blank) || (rule != NoBlank && illegal)) return Fail(RuleMessage(messages), itsToken);
  field = itsToken;
  return true;
}

bool SMatlFieldReader::Level(SMatlLevel& level, const SMatlFieldMessages& messages, const char* trace) {
  if (itsEnded) return true;
  const int got = Next(MissingMessage(messages));
  if (got <= 0) return got == 0;
  bool numeric = false;
  SMatlLevel read = level;
  if (read.SetFromText(itsToken, &numeric)) {
    level = read;
    return true;
  }
  // "TOP" where it isn't allowed is no failure: the level is a numbered one.
  if (itsToken.upper() == "TOP") {
    level.SetType(SMatlLevel::Numbered);
    return true;
  }
  if (!numeric) return Fail(FormMessage(messages), itsToken);
  if (trace) VeloraTrace(3, TRACE_ERRORS, trace, itsToken.toInt(), static_cast<int>(itsLineNumber));
  return Fail(RuleMessage(messages), itsToken);
}

const char* SMatlFieldReader::WordOf(const SMatlWord* table, int code) {
  for (const SMatlWord* row = table; row->word; ++row)
    if (row->code == code) return row->word;
  return nullptr;
}

int SMatlFieldReader::CodeOf(const SMatlWord* table, const SString& word) {
  for (const SMatlWord* row = table; row->word; ++row)
    if (word.compare(SString(row->word), true) == 0) return row->code;
  return -1;
}

int SMatlFieldReader::Keyword(const SMatlWord* table, const char* trace, int message) {
  SString keyword;
  itsFile.GetFirstToken(keyword);
  const int code = CodeOf(table, keyword);
  if (code >= 0) return code;
  if (trace) VeloraTrace(3, TRACE_ERRORS, trace, keyword.data());
  Fail(message, keyword);
  return -1;
}
