#include "SCommentedFile.h"

#include "SRegexp.h"
#include "SVeloraError.h"

SCommentedFile::SCommentedFile() : itsCommentStart("!"), itsContinuation("&") {}

SCommentedFile::SCommentedFile(const SString& fileName, const SString& commentStart, const SString& continuation)
    : SFile(fileName), itsCommentStart(commentStart), itsContinuation(continuation) {}

SCommentedFile::SCommentedFile(QTextStream* stream, const SString& commentStart, const SString& continuation)
    : SFile(stream), itsCommentStart(commentStart), itsContinuation(continuation) {}

bool SCommentedFile::NextLine() {
  if (!itsParse) {
    for (;;) {
      if (!SFile::NextLine()) return false;
      if (!itsSkipBlankLines || HasToken()) return true;
    }
  }
  // A loop, not recursion: a file of blank lines must not deepen the stack.
  for (;;) {
    if (!LoadLogicalLine()) return false;
    StartLine();
    if (!itsSkipBlankLines || HasToken()) return true;
  }
}

bool SCommentedFile::LoadLogicalLine() {
  SString raw;
  bool emptyAtEnd = false;
  if (!ReadPhysicalLine(raw, &emptyAtEnd)) {
    DropTokens();
    if (emptyAtEnd) itsLine.clear();
    itsError = EndOfFile;
    return false;
  }
  itsLastComment.clear();
  // The raw line is split first: a quote opened in a comment swallows the next line.
  itsLine = raw;
  SplitLine();
  SString logical = itsLine;
  bool continued = ProcessLine(logical);
  bool changed = continued || logical != itsLine;
  while (continued) {
    SString next;
    if (!ReadPhysicalLine(next)) break;  // a marker on the last line is dropped
    itsLine = next;
    SplitLine();
    SString piece = itsLine;
    continued = ProcessLine(piece);
    logical += piece;
  }
  if (changed) {
    itsLine = logical;
    SplitLine();
  }
  itsCurrent = 0;
  return true;
}

bool SCommentedFile::ProcessLine(SString& line) {
  // Most lines hold no marker at all, and then quotes don't matter either.
  if (!itsCommentStart.isEmpty() && line.qstring().contains(itsCommentStart.qstring())) {
    const QString marker = itsCommentStart.qstring();
    bool inQuote = false;
    int i = 0;
    while (i < line.length()) {
      const QString& text = line.qstring();
      if (text.at(i) == QLatin1Char('"')) {
        inQuote = !inQuote;
        ++i;
        continue;
      }
      if (inQuote || !text.midRef(i).startsWith(marker)) {
        ++i;
        continue;
      }
      const int after = i + marker.length();
      if (!itsCommentEscape.isEmpty() && text.midRef(after).startsWith(itsCommentEscape.qstring())) {
        line.remove(i, marker.length() + itsCommentEscape.length());
        continue;
      }
      if (!itsCommentEnd.isEmpty()) {
        const int end = text.indexOf(itsCommentEnd.qstring(), after);
        if (end >= 0) {
          itsLastComment = line.mid(i, end + itsCommentEnd.length() - i);
          line.remove(i, end + itsCommentEnd.length() - i);
          continue;
        }
        // The comment runs on over the following lines up to the end marker.
        itsLastComment = line.mid(i);
        line = line.left(i);
        SString next;
        while (ReadPhysicalLine(next)) {
          const int close = next.index(itsCommentEnd);
          if (close >= 0) {
            line += " ";
            line += next.mid(close + itsCommentEnd.length());
            break;
          }
        }
        continue;
      }
      itsLastComment = line.mid(i);
      line = line.left(i);
      line.strip(2, ' ');
      line.strip(2, '\t');
      break;
    }
  }
  if (itsContinuation.isEmpty()) return false;
  const int at = line.index(itsContinuation);
  if (at < 0) return false;
  if (!line.mid(at + itsContinuation.length()).qstring().trimmed().isEmpty()) return false;
  line = line.left(at);
  return true;
}

void SCommentedFile::SplitLine() {
  if (!itsParse) {
    SFile::SplitLine();
    return;
  }
  itsTokens.clear();
  itsSpans.clear();
  itsCurrent = 0;
  itsLineBytes = itsLine.toUtf8();
  QByteArray token;
  bool inQuote = false;
  bool open = false;
  int column = 0;
  int i = 0;
  for (;;) {
    while (i < itsLineBytes.size()) {
      const char c = itsLineBytes[i];
      if (IsSeparatorByte(static_cast<unsigned char>(c))) {
        if (inQuote) {
          token += c;
        } else if (open) {
          AddToken(token, column, i);
          token.clear();
          open = false;
        }
      } else if (c == '"' && !(i > 0 && itsLineBytes[i - 1] == '\\')) {
        inQuote = !inQuote;
        if (!open) {
          open = true;
          column = i;
        }
      } else {
        if (!open) {
          open = true;
          column = i;
        }
        // The rest of a plain run goes in one piece.
        int run = i + 1;
        while (run < itsLineBytes.size() && itsLineBytes[run] != '"' &&
               !IsSeparatorByte(static_cast<unsigned char>(itsLineBytes[run])))
          ++run;
        token.append(itsLineBytes.constData() + i, run - i);
        i = run;
        continue;
      }
      ++i;
    }
    if (!inQuote) break;
    // The string runs on over the line end, which it keeps.
    SString next;
    if (!ReadPhysicalLine(next) || next.isEmpty()) break;
    itsLine += "\n";
    itsLine += next;
    itsLineBytes += '\n';
    itsLineBytes += next.toUtf8();
  }
  if (open) AddToken(token, column, itsLineBytes.size());
}

bool SCommentedFile::IsQuotedToken(size_t index) const {
  if (index >= itsSpans.size()) return false;
  const int column = itsSpans[index].column;
  return column < itsLineBytes.size() && itsLineBytes[column] == '"';
}

void SCommentedFile::HandleMarkers() {
  if (!itsParse) return;
  for (;;) {
    if (!HasToken() || IsQuotedToken(itsCurrent)) return;
    if (!itsCommentStart.isEmpty() && itsToken.startsWith(itsCommentStart)) {
      SkipLine();
      return;
    }
    if (itsContinuation.isEmpty() || !itsToken.startsWith(itsContinuation)) return;
    if (!LoadLogicalLine()) return;
    itsCurrent = 0;
    FetchToken();
  }
}

void SCommentedFile::StartLine() {
  SFile::StartLine();
  HandleMarkers();
}

void SCommentedFile::NextToken() {
  SFile::NextToken();
  HandleMarkers();
}

bool SCommentedFile::GetNextToken(SString& out) {
  for (;;) {
    if (HasToken()) return GetToken(out);
    if (!NextLine()) {
      out.clear();
      return false;
    }
  }
}

bool SCommentedFile::SkipTo(const SString& word) {
  SString token;
  for (;;) {
    if (!HasToken() && !NextLine()) return false;
    if (!HasToken()) continue;
    GetToken(token);
    if (token == word) return true;
  }
}

bool SCommentedFile::GetTokensOfLine(SString& out) {
  out.clear();
  SString token;
  bool any = false;
  while (HasToken()) {
    GetToken(token);
    if (any) out += " ";
    out += token;
    any = true;
  }
  if (!any) itsError = NoData;
  return any;
}

bool SCommentedFile::SplitToken(const SRegexp& pattern, SString& before, SString& match) {
  if (!HasToken()) {
    itsError = NoData;
    return false;
  }
  int length = 0;
  const int pos = pattern.index(itsToken, 0, &length);
  if (pos < 0) return false;
  before = itsToken.left(pos);
  match = itsToken.mid(pos, length);
  const SString rest = itsToken.mid(pos + length);
  if (rest.isEmpty())
    NextToken();
  else
    itsToken = rest;
  return true;
}

bool SCommentedFile::SplitToken(char separator, SString& before, SString& after) {
  if (!HasToken()) {
    itsError = NoData;
    return false;
  }
  const int pos = itsToken.qstring().indexOf(QLatin1Char(separator));
  if (pos < 0) return false;
  before = itsToken.left(pos);
  after = itsToken.mid(pos + 1);
  if (after.isEmpty())
    NextToken();
  else
    itsToken = after;
  return true;
}

void SCommentedFile::ReportBadLine() {
  SString rest;
  if (!GetRestOfLine(rest)) rest = itsLine;
  VeloraErrorReport(5910, 5911, static_cast<int>(LineCount()), rest.data());
}
