#ifndef SINTERFACEWORDS_H
#define SINTERFACEWORDS_H

#include "SFile.h"
#include "SProjectStream.h"
#include "SString.h"

#include <QStringList>

// Reading and writing the small fields of the interface lines.
namespace SInterfaceWords {
// A token that must be a number; kept as its text so that the host tool's digits survive.
inline bool GetNumberText(SFile& file, SString& out) {
  if (!file.GetToken(out)) return false;
  bool ok = false;
  out.qstring().toDouble(&ok);
  return ok;
}

inline bool GetInt(SFile& file, int& out) {
  SString token;
  if (!file.GetToken(token)) return false;
  bool ok = false;
  out = token.qstring().toInt(&ok);
  return ok;
}

// "Y" or "N", compared whole.
inline bool GetYesNo(SFile& file, bool& out) {
  SString token;
  if (!file.GetToken(token) || (token != "Y" && token != "N")) return false;
  out = token == "Y";
  return true;
}

// "1" for a set flag; anything else, the empty word or nothing, for a clear one.
inline bool GetFlag(SFile& file) {
  SString token;
  return file.GetToken(token) && token == "1";
}
inline const char* FlagWord(bool on) { return on ? " 1" : " \"\""; }

// The index of `word` among `words`, compared whole; -1 for none.
template <size_t N> int IndexOf(const char* const (&words)[N], const SString& word) {
  for (size_t i = 0; i < N; ++i)
    if (word == words[i]) return static_cast<int>(i);
  return -1;
}

inline void Quoted(SProjectStream& out, const SString& text) { out << " \"" << text << '"'; }

inline void Numbers(SProjectStream& out, const QStringList& values) {
  for (const QString& value : values) out << ' ' << SString(value);
}
}  // namespace SInterfaceWords

#endif
