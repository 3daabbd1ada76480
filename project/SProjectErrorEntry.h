#ifndef SPROJECTERRORENTRY_H
#define SPROJECTERRORENTRY_H

#include "SCollectable.h"
#include "SString.h"

#include <cstdint>

// One message collected while a project was read or checked.
class SProjectErrorEntry : public SCollectable {
  SCOLLECTABLE_DECLARE(SProjectErrorEntry)
  SCOLLECTABLE_COPYABLE(SProjectErrorEntry)
public:
  SProjectErrorEntry() {}
  SProjectErrorEntry(int line, uint64_t messageId, const SString& text, int severity)
      : itsLine(line), itsMessageId(messageId), itsText(text), itsSeverity(severity) {}

  // Negative: no line number is shown.
  int itsLine = -1;
  uint64_t itsMessageId = 0;
  SString itsText;
  // The severity the entry was added with (1 warning, 3 error).
  int itsSeverity = 0;
};

#endif
