#ifndef SWORDTABLE_H
#define SWORDTABLE_H

#include "SString.h"

#include <cstddef>

// Words of a file or a report, indexed by their code. A null entry is a code without a word.
namespace SWordTable {
// The word of `code`, or `otherwise` for a code without one.
template <size_t N> const char* WordOf(const char* const (&words)[N], int code, const char* otherwise) {
  return code >= 0 && static_cast<size_t>(code) < N && words[code] != nullptr ? words[code] : otherwise;
}

// The code of a word compared whole, or `otherwise` for a word not in the table.
template <size_t N> int CodeOf(const char* const (&words)[N], const SString& word, int otherwise) {
  for (size_t i = 0; i < N; ++i)
    if (words[i] != nullptr && word == words[i]) return static_cast<int>(i);
  return otherwise;
}
}  // namespace SWordTable

#endif
