#ifndef SFILE_H
#define SFILE_H

#include "SString.h"

#include <QList>
#include <vector>

class QFile;
class QTextStream;

// The line-and-token reader under every text format. Getters never throw or
// print: they return false and leave a code in GetError(). A numeric getter
// advances only on success, so a failed token can be tried as something else.
class SFile {
public:
  enum Error {
    NoError = 0,
    NoData = 1,
    NotDouble = 2,
    NotInteger = 3,
    NotBoolean = 4,
    NegativeUnsigned = 5,
    EndOfFile = 8
  };

  SFile();
  explicit SFile(const SString& fileName);
  // Reads from a stream the caller owns.
  explicit SFile(QTextStream* stream);
  SFile(const SFile&) = delete;
  SFile& operator=(const SFile&) = delete;
  virtual ~SFile();

  virtual bool Open(const SString& fileName);
  virtual void Close();
  virtual bool IsOk() const;
  virtual bool IsOpen() const { return IsOk(); }
  virtual bool NextLine();
  // Splits `text` as if it had been read; the line count stays.
  virtual bool SetLine(const SString& text);
  virtual bool RewindLine();
  virtual bool GetLine(SString& out);
  // From the current token on, with its spacing.
  virtual bool GetRestOfLine(SString& out);
  // Behind `word` and the white space after it; without `word` in the line the text behind
  // the first token, and false. An empty word gives the whole line.
  virtual bool GetRestOfLineAfter(const SString& word, SString& out);
  // Behind the first token, one blank skipped.
  virtual bool GetAfterFirstToken(SString& out);
  virtual bool GetToken(SString& out);
  virtual bool GetToken(SString& out, const SString& fallback);
  virtual bool GetUpperToken(SString& out);
  virtual bool GetUpperToken(SString& out, const SString& fallback);
  virtual bool GetInt(int& out);
  virtual bool GetInt(int& out, int fallback);
  virtual bool GetLong(long long& out);
  virtual bool GetIntStrict(int& out);
  virtual bool GetUnsigned(unsigned& out);
  virtual bool GetDouble(double& out);
  virtual bool GetDouble(double& out, double fallback);
  virtual bool GetDoubleStrict(double& out);
  // strtod on the token; fails only without a token.
  virtual bool GetDoubleLoose(double& out);
  // on/true/Y/yes and off/false/N/no, regardless of case.
  virtual bool GetBool(bool& out);
  virtual bool GetFirstToken(SString& out);
  virtual bool PeekToken(SString& out);
  virtual bool PeekLine(SString& out) { return GetLine(out); }
  virtual long long LineCount() const { return itsLineCount; }
  virtual double GetDoubleNoCheck();
  virtual int GetIntNoCheck();
  // The rest of the file without carriage returns; closes the file.
  virtual bool ReadAll(SString& out);
  virtual bool ReadLines(QList<SString>& lines);
  // Leaves out all but the first `first` and last `last` lines, with one marker line,
  // when the file has at least first + last + margin lines (margin 0 means 100).
  virtual bool ReadLinesAbridged(QList<SString>& lines, int first, int last, int margin);
  virtual SString GetFilename() const { return itsFileName; }
  virtual void SkipLine();
  virtual void NextToken();

  int GetError() const { return itsError; }
  void ClearError() { itsError = NoError; }
  // True while the current line has a token left (an empty quoted one counts).
  bool HasToken() const { return itsCurrent < itsSpans.size(); }
  const SString& CurrentLine() const { return itsLine; }

  void SetSeparator(char separator) { itsSeparator = separator; }
  void SetSplitAtSpace(bool on) { itsSplitAtSpace = on; }
  void SetSplitAtSeparator(bool on) { itsSplitAtSeparator = on; }

protected:
  // Tokenises itsLine into the token buffer.
  virtual void SplitLine();
  // Puts the cursor on the first token of the line.
  virtual void StartLine();
  // Next physical line without its line end and carriage returns; counts it. At the end
  // `emptyAtEnd` tells an empty last read from a stream that was used up already.
  bool ReadPhysicalLine(SString& out, bool* emptyAtEnd = nullptr);
  void DropTokens();
  // Plain positioning on the next token, without any marker handling.
  void FetchToken();
  void AddToken(const QByteArray& bytes, int column, int endColumn);
  // White space or the extra separator, as switched on.
  bool IsSeparatorByte(unsigned char c) const;
  bool StreamUsable() const;
  bool TakeNumberToken(SString& token);

  QFile* itsFile = nullptr;
  QTextStream* itsStream = nullptr;
  bool itsOwnsStream = false;
  // One token of the current line: its bytes in itsTokens, and its span in the line's
  // UTF-8 form (a quoted token's span includes the quotes).
  struct STokenSpan {
    int start;
    int length;
    int column;
    int end;
  };
  QByteArray itsTokens;
  std::vector<STokenSpan> itsSpans;
  // The line's UTF-8 form, which the spans refer to.
  QByteArray itsLineBytes;
  // Index of itsToken among the tokens; the count when the line is used up.
  size_t itsCurrent = 0;
  SString itsLine;
  SString itsToken;
  long long itsLineCount = 0;
  SString itsFileName;
  int itsError = NoError;
  char itsSeparator = ',';
  bool itsSplitAtSpace = true;
  bool itsSplitAtSeparator = false;
};

#endif
