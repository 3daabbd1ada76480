#include "SFile.h"

#include "SNumberTest.h"

#include <QFile>
#include <QTextCodec>
#include <QTextStream>
#include <cctype>
#include <climits>
#include <cmath>
#include <cstdio>
#include <cstdlib>

SFile::SFile() {}

SFile::SFile(const SString& fileName) { Open(fileName); }

SFile::SFile(QTextStream* stream) : itsStream(stream), itsOwnsStream(false) {}

SFile::~SFile() { Close(); }

bool SFile::Open(const SString& fileName) {
  if (fileName.isEmpty()) return false;
  Close();
  itsFileName = fileName;
  itsLineCount = 0;
  itsError = NoError;
  itsLine.clear();
  DropTokens();
  itsFile = new QFile(fileName.qstring());
  if (!itsFile->open(QIODevice::ReadOnly)) {
    delete itsFile;
    itsFile = nullptr;
    return false;
  }
  itsStream = new QTextStream(itsFile);
  itsStream->setCodec("UTF-8");
  itsOwnsStream = true;
  return true;
}

void SFile::Close() {
  if (itsOwnsStream) delete itsStream;
  itsStream = nullptr;
  itsOwnsStream = false;
  delete itsFile;
  itsFile = nullptr;
}

bool SFile::IsOk() const { return itsStream && itsStream->status() == QTextStream::Ok; }

bool SFile::StreamUsable() const { return IsOk(); }

bool SFile::ReadPhysicalLine(SString& out, bool* emptyAtEnd) {
  if (emptyAtEnd) *emptyAtEnd = false;
  if (!StreamUsable() || itsStream->atEnd()) return false;
  QString line = itsStream->readLine();
  if (line.isEmpty() && itsStream->atEnd()) {
    if (emptyAtEnd) *emptyAtEnd = true;
    return false;
  }
  ++itsLineCount;
  int end = line.length();
  while (end > 0 && line.at(end - 1) == QLatin1Char('\r')) --end;
  if (end < line.length()) line.truncate(end);
  out = line;
  return true;
}

void SFile::DropTokens() {
  itsTokens.clear();
  itsSpans.clear();
  itsCurrent = 0;
  itsToken.clear();
}

bool SFile::NextLine() {
  SString line;
  bool emptyAtEnd = false;
  if (!ReadPhysicalLine(line, &emptyAtEnd)) {
    DropTokens();
    if (emptyAtEnd) itsLine.clear();
    itsError = EndOfFile;
    return false;
  }
  itsLine = line;
  SplitLine();
  SFile::StartLine();
  return true;
}

bool SFile::SetLine(const SString& text) {
  itsLine = text;
  SplitLine();
  StartLine();
  return true;
}

bool SFile::RewindLine() {
  StartLine();
  return true;
}

void SFile::StartLine() {
  itsCurrent = 0;
  FetchToken();
}

void SFile::FetchToken() {
  if (itsCurrent < itsSpans.size()) {
    const STokenSpan& span = itsSpans[itsCurrent];
    itsToken = SString::fromUtf8(itsTokens.constData() + span.start, span.length);
  } else {
    itsToken.clear();
  }
}

void SFile::NextToken() {
  if (itsCurrent < itsSpans.size()) ++itsCurrent;
  FetchToken();
}

void SFile::SkipLine() {
  itsCurrent = itsSpans.size();
  itsToken.clear();
}

bool SFile::IsSeparatorByte(unsigned char c) const {
  return (itsSplitAtSpace && c < 0x80 && std::isspace(c)) || (itsSplitAtSeparator && c == static_cast<unsigned char>(itsSeparator));
}

void SFile::AddToken(const QByteArray& bytes, int column, int endColumn) {
  STokenSpan span;
  span.start = itsTokens.size();
  span.length = bytes.size();
  span.column = column;
  span.end = endColumn;
  itsTokens.append(bytes);
  itsTokens.append('\0');
  itsSpans.push_back(span);
}

void SFile::SplitLine() {
  itsTokens.clear();
  itsSpans.clear();
  itsCurrent = 0;
  itsLineBytes = itsLine.toUtf8();
  const int size = itsLineBytes.size();
  int i = 0;
  while (i < size) {
    // Bytes with the top bit set separate tokens in the plain reader.
    while (i < size && (IsSeparatorByte(static_cast<unsigned char>(itsLineBytes[i])) ||
                        (static_cast<unsigned char>(itsLineBytes[i]) & 0x80)))
      ++i;
    const int start = i;
    while (i < size && !IsSeparatorByte(static_cast<unsigned char>(itsLineBytes[i])) &&
           !(static_cast<unsigned char>(itsLineBytes[i]) & 0x80))
      ++i;
    if (i > start) AddToken(itsLineBytes.mid(start, i - start), start, i);
  }
}

bool SFile::GetLine(SString& out) {
  out = itsLine;
  if (out.isEmpty()) {
    itsError = NoData;
    return false;
  }
  return true;
}

bool SFile::GetRestOfLine(SString& out) {
  if (!HasToken()) {
    out.clear();
    itsError = NoData;
    return false;
  }
  out = SString::fromUtf8(itsLineBytes.mid(itsSpans[itsCurrent].column));
  return true;
}

namespace {
int SkipBlanks(const QByteArray& bytes, int pos) {
  while (pos < bytes.size() && (bytes[pos] == ' ' || bytes[pos] == '\t')) ++pos;
  return pos;
}
}  // namespace

bool SFile::GetRestOfLineAfter(const SString& word, SString& out) {
  if (word.isEmpty()) {
    out = itsLine;
    return true;
  }
  const QByteArray needle = word.toUtf8();
  const int found = itsLineBytes.indexOf(needle);
  if (found < 0) {
    out = itsSpans.empty() ? SString() : SString::fromUtf8(itsLineBytes.mid(SkipBlanks(itsLineBytes, itsSpans[0].end)));
    return false;
  }
  out = SString::fromUtf8(itsLineBytes.mid(SkipBlanks(itsLineBytes, found + needle.size())));
  return true;
}

bool SFile::GetAfterFirstToken(SString& out) {
  if (itsSpans.empty()) {
    out.clear();
    itsError = NoData;
    return false;
  }
  int pos = itsSpans[0].end;
  if (pos < itsLineBytes.size() && itsLineBytes[pos] == ' ') ++pos;
  out = SString::fromUtf8(itsLineBytes.mid(pos));
  return true;
}

bool SFile::GetToken(SString& out) {
  if (!HasToken()) {
    out.clear();
    itsError = NoData;
    return false;
  }
  out = itsToken;
  NextToken();
  if (out.isEmpty()) {
    itsError = NoData;
    return false;
  }
  return true;
}

bool SFile::GetToken(SString& out, const SString& fallback) {
  if (GetToken(out)) return true;
  out = fallback;
  return false;
}

bool SFile::GetUpperToken(SString& out) {
  const bool ok = GetToken(out);
  out.toUpper();
  return ok;
}

bool SFile::GetUpperToken(SString& out, const SString& fallback) {
  const bool ok = GetToken(out, fallback);
  out.toUpper();
  return ok;
}

bool SFile::TakeNumberToken(SString& token) {
  if (!HasToken() || itsToken.isEmpty()) {
    itsError = NoData;
    return false;
  }
  token = itsToken;
  return true;
}

bool SFile::GetInt(int& out) {
  SString token;
  if (!TakeNumberToken(token)) return false;
  bool ok = false;
  const int value = token.qstring().toInt(&ok, 10);
  if (!ok) {
    itsError = NotInteger;
    return false;
  }
  out = value;
  NextToken();
  return true;
}

bool SFile::GetInt(int& out, int fallback) {
  if (GetInt(out)) return true;
  out = fallback;
  return false;
}

bool SFile::GetLong(long long& out) {
  out = 0;
  SString token;
  if (!TakeNumberToken(token)) return false;
  bool ok = false;
  const long long value = token.qstring().toLongLong(&ok, 10);
  if (!ok) {
    itsError = NotInteger;
    return false;
  }
  out = value;
  NextToken();
  return true;
}

bool SFile::GetIntStrict(int& out) {
  out = 0;
  SString token;
  if (!TakeNumberToken(token)) return false;
  int value = 0;
  if (!IsInteger(token) || sscanf(token.data(), "%d", &value) != 1) {
    itsError = NotInteger;
    return false;
  }
  out = value;
  NextToken();
  return true;
}

bool SFile::GetUnsigned(unsigned& out) {
  SString token;
  if (!TakeNumberToken(token)) return false;
  bool ok = false;
  const int value = token.qstring().toInt(&ok, 10);
  if (!ok) {
    itsError = NotInteger;
    return false;
  }
  if (value < 0) {
    itsError = NegativeUnsigned;
    return false;
  }
  out = static_cast<unsigned>(value);
  NextToken();
  return true;
}

bool SFile::GetDouble(double& out) {
  SString token;
  if (!TakeNumberToken(token)) return false;
  bool ok = false;
  const double value = token.qstring().toDouble(&ok);
  // Words such as "inf" or "nan" are left to the format code.
  if (!ok || !std::isfinite(value)) {
    itsError = NotDouble;
    return false;
  }
  out = value;
  NextToken();
  return true;
}

bool SFile::GetDouble(double& out, double fallback) {
  if (GetDouble(out)) return true;
  out = fallback;
  return false;
}

bool SFile::GetDoubleStrict(double& out) {
  out = 0.0;
  SString token;
  if (!TakeNumberToken(token)) return false;
  double value = 0.0;
  if (!IsDouble(token) || sscanf(token.data(), "%lf", &value) != 1) {
    itsError = NotDouble;
    return false;
  }
  out = value;
  NextToken();
  return true;
}

bool SFile::GetDoubleLoose(double& out) {
  SString token;
  if (!TakeNumberToken(token)) return false;
  out = strtod(token.data(), nullptr);
  NextToken();
  return true;
}

bool SFile::GetBool(bool& out) {
  out = false;
  SString token;
  if (!TakeNumberToken(token)) {
    itsError = NotBoolean;
    return false;
  }
  static const char* const yes[] = {"on", "true", "Y", "yes"};
  static const char* const no[] = {"off", "false", "N", "no"};
  for (const char* word : yes)
    if (token.compare(SString(word), true) == 0) {
      out = true;
      NextToken();
      return true;
    }
  for (const char* word : no)
    if (token.compare(SString(word), true) == 0) {
      NextToken();
      return true;
    }
  itsError = NotBoolean;
  return false;
}

bool SFile::GetFirstToken(SString& out) {
  if (itsSpans.empty()) {
    out.clear();
    itsError = NoData;
    return false;
  }
  out = SString::fromUtf8(itsTokens.constData() + itsSpans[0].start, itsSpans[0].length);
  return !out.isEmpty();
}

bool SFile::PeekToken(SString& out) {
  out = itsToken;
  if (out.isEmpty()) {
    itsError = NoData;
    return false;
  }
  return true;
}

double SFile::GetDoubleNoCheck() {
  if (!HasToken()) return 0.0;
  const double value = strtod(itsToken.data(), nullptr);
  NextToken();
  return value;
}

int SFile::GetIntNoCheck() {
  if (!HasToken()) return 0;
  long value = strtol(itsToken.data(), nullptr, 10);
  if (value > INT_MAX) value = INT_MAX;
  if (value < INT_MIN) value = INT_MIN;
  NextToken();
  return static_cast<int>(value);
}

bool SFile::ReadAll(SString& out) {
  out.clear();
  if (!StreamUsable()) return false;
  QString text = itsStream->readAll();
  text.remove(QLatin1Char('\r'));
  out = text;
  Close();
  return true;
}

bool SFile::ReadLines(QList<SString>& lines) {
  if (!StreamUsable()) return false;
  SString line;
  while (ReadPhysicalLine(line)) lines.append(line);
  return true;
}

bool SFile::ReadLinesAbridged(QList<SString>& lines, int first, int last, int margin) {
  QList<SString> all;
  if (!ReadLines(all)) return false;
  if (first < 0) first = 0;
  if (last < 0) last = 0;
  if (margin <= 0) margin = 100;
  const long long count = all.size();
  if (count < static_cast<long long>(first) + last + margin) {
    lines.append(all);
    return true;
  }
  for (int i = 0; i < first; ++i) lines.append(all.at(i));
  lines.append(SString::format("<<< Skipping %d lines >>>", static_cast<int>(count - first - last)));
  for (long long i = count - last; i < count; ++i) lines.append(all.at(static_cast<int>(i)));
  return true;
}
