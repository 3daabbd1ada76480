#include "SEqnFileRef.h"

namespace {
const char* const kKindNames[] = {"VELORA_FILE", "SITE_FILE", "USER_FILE", "GRAPH_FILE", "USER", "UNKNOWN"};
const int kKindCount = 6;
}  // namespace

SString SEqnFileRef::KindName(Kind kind) {
  return kind >= 0 && kind < kKindCount ? SString(kKindNames[kind]) : SString(kKindNames[UNKNOWN]);
}

SEqnFileRef::Kind SEqnFileRef::KindFromName(const SString& name) {
  const SString trimmed = name.stripped();
  for (int kind = 0; kind < kKindCount; ++kind)
    if (trimmed.compare(kKindNames[kind], true) == 0) return static_cast<Kind>(kind);
  return UNKNOWN;
}
