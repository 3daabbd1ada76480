#ifndef SCOMMENTEDFILE_H
#define SCOMMENTEDFILE_H

#include "SFile.h"

class SRegexp;

// SFile with comments, continued lines and double-quoted strings. Lines without
// a token are passed over unless SetSkipBlankLines(false).
class SCommentedFile : public SFile {
public:
  SCommentedFile();
  explicit SCommentedFile(const SString& fileName, const SString& commentStart = "!",
                          const SString& continuation = "&");
  explicit SCommentedFile(QTextStream* stream, const SString& commentStart = "!",
                          const SString& continuation = "&");

  bool NextLine() override;
  bool GetRestOfLine(SString& out) override { return SFile::GetRestOfLine(out); }
  bool GetAfterFirstToken(SString& out) override { return SFile::GetAfterFirstToken(out); }
  void NextToken() override;

  // GetToken over as many lines as needed; false at the end of the file.
  bool GetNextToken(SString& out);
  // Reads tokens until one equals `word`; false at the end of the file.
  bool SkipTo(const SString& word);
  // The remaining tokens of the line, joined by one blank.
  bool GetTokensOfLine(SString& out);
  // Splits the current token at the first match: the token becomes what follows.
  bool SplitToken(const SRegexp& pattern, SString& before, SString& match);
  bool SplitToken(char separator, SString& before, SString& after);
  // Reports the rest of the current line with its number (messages 5910 and 5911).
  void ReportBadLine();

  void SetCommentStart(const SString& marker) { itsCommentStart = marker; }
  void SetContinuation(const SString& marker) { itsContinuation = marker; }
  // When set, a comment runs over lines up to this marker.
  void SetCommentEnd(const SString& marker) { itsCommentEnd = marker; }
  // When set, the comment marker followed directly by this text is no comment: both are
  // dropped and the line reads on ("!<" in project files).
  void SetCommentEscape(const SString& escape) { itsCommentEscape = escape; }
  void SetSkipBlankLines(bool on) { itsSkipBlankLines = on; }
  void SetParse(bool on) { itsParse = on; }
  const SString& GetLastComment() const { return itsLastComment; }

protected:
  void SplitLine() override;
  void StartLine() override;
  // Reads the next logical line: comment removed, continued lines joined. No token is taken.
  bool LoadLogicalLine();
  // Cuts the comment from `line`; true when the line ends in the continuation marker,
  // which is then cut as well.
  bool ProcessLine(SString& line);
  // Comment and continuation markers that stand as tokens of their own.
  void HandleMarkers();
  bool IsQuotedToken(size_t index) const;

  SString itsCommentStart;
  SString itsContinuation;
  SString itsCommentEnd;
  SString itsCommentEscape;
  SString itsLastComment;
  bool itsSkipBlankLines = true;
  bool itsParse = true;
};

#endif
