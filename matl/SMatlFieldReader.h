#ifndef SMATLFIELDREADER_H
#define SMATLFIELDREADER_H

#include "SString.h"

class SFile;
class SMatlLevel;
class SValueVarDouble;

// The message numbers of one field: its rule broken, its token not of the field's form, its
// token missing. 0 where a field has no such message; a missing form message falls back on
// the rule message and the other way round.
struct SMatlFieldMessages {
  int rule;
  int form;
  int missing;
};

// One word of a field that takes words, with its code.
struct SMatlWord {
  const char* word;
  int code;
};

// Reads the fields of one line of a material file in turn, all in the same way: take the
// next token; none is the "missing" message, or, once BeginOptional was called, the end of
// the line, after which every field reader returns true and leaves its field alone. A token
// of the wrong form gives the form message, a value that breaks the rule the rule message
// and a trace. Messages name the file, the line number, the line text and the token; each
// returns false, which ends the line's reader.
class SMatlFieldReader {
public:
  enum Rule { AnyValue = 0, AtLeastZero = 1, AboveZero = 2, AtLeastOne = 3, AtLeastTwo = 4 };
  enum NameRule { NoBlank = 0, NoIllegalCharacter = 1, NoBlankNoIllegal = 2 };

  SMatlFieldReader(SFile& file, const SString& fileName);

  // From here on the line may end.
  void BeginOptional() { itsOptional = true; }
  bool IsOptional() const { return itsOptional; }
  // The line ended at an optional field.
  bool IsEnded() const { return itsEnded; }

  // A real; `trace` is a format taking the value (%g) and the line number (%d), in that order.
  bool Real(SValueVarDouble& field, const SMatlFieldMessages& messages, int rule = AnyValue,
            const char* trace = nullptr);
  // A real or "INF" in any case; INF stores 1e50 and sets `infinite`. Without a rule check.
  bool RealOrInf(SValueVarDouble& field, bool& infinite, const SMatlFieldMessages& messages);
  // An integer; `trace` takes the value (%d) and the line number (%d).
  bool Int(int& field, const SMatlFieldMessages& messages, int rule = AnyValue, const char* trace = nullptr);
  // One of the words of `table` (ended by a null word), in any case; `trace` takes the token (%s)
  // and the line number (%d).
  bool Word(int& code, const SMatlWord* table, const SMatlFieldMessages& messages, const char* trace = nullptr);
  // A name: the token as it stands (quotes gone).
  bool Name(SString& field, const SMatlFieldMessages& messages, int rule);
  // An integer at least 0, "GND", or "TOP" where the level allows it; `trace` as for Int.
  bool Level(SMatlLevel& level, const SMatlFieldMessages& messages, const char* trace = nullptr);
  // The next token without any check; false (after the missing message) or at the end.
  // `present` tells whether a token was there.
  bool Token(SString& token, int missingMessage, bool& present);

  // The line's keyword (taken already, read again) among the words of `table`; -1 after the
  // trace (taking the keyword, %s) and message `message`.
  int Keyword(const SMatlWord* table, const char* trace, int message);

  // A line form error with the value, always false; a line form warning.
  bool Fail(int number, const SString& value = SString()) const;
  void Warn(int number, const SString& value = SString()) const;

  const SString& GetFileName() const { return itsFileName; }
  long long GetLineNumber() const { return itsLineNumber; }
  const SString& GetLineText() const { return itsLineText; }
  // The last token taken.
  const SString& GetToken() const { return itsToken; }

  // The word of a code in a table; null when the table hasn't it.
  static const char* WordOf(const SMatlWord* table, int code);
  // The code of a word in any case; -1 when the table hasn't it.
  static int CodeOf(const SMatlWord* table, const SString& word);
  static bool Satisfies(double value, int rule);

private:
  // 1 a token, 0 the end of an optional line, -1 failure (reported).
  int Next(int missingMessage);

  SFile& itsFile;
  SString itsFileName;
  long long itsLineNumber;
  SString itsLineText;
  SString itsToken;
  bool itsOptional = false;
  bool itsEnded = false;
};

#endif
