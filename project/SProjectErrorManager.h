#ifndef SPROJECTERRORMANAGER_H
#define SPROJECTERRORMANAGER_H

#include "SFileName.h"
#include "SOrdered.h"
#include "SProjectErrorEntry.h"

// Collects the numbered messages of a project read or check, with their line numbers,
// and shows them together. Severities: 1 warning, 3 error; everything from 2 up counts
// as an error when shown.
class SProjectErrorManager {
public:
  enum Severity { None = 0, Warning = 1, Error = 3 };

  SProjectErrorManager() {}
  ~SProjectErrorManager() { itsEntries.clearAndDestroy(); }
  SProjectErrorManager(const SProjectErrorManager&) = delete;
  SProjectErrorManager& operator=(const SProjectErrorManager&) = delete;

  // The text is the message's resource used as a printf format with the arguments.
  void AddError(int severity, int line, int messageId, ...);
  void AddErrorAtFront(int severity, int line, int messageId, ...);
  // The resource of `prefixId`, a line feed, then the formatted message; without a prefix
  // text the message alone.
  void AddPrefixedError(int severity, int line, int prefixId, int messageId, ...);
  // An entry of `messageId` with a text that the caller made of message texts.
  void AddText(int severity, int line, int messageId, const SString& text) { Add(false, severity, line, messageId, text); }

  // "Filename: <name>" and one "<name>:<line>: <text>" per entry ("Line <line>: <text>" when
  // no file is named, the text alone when the entry has no line).
  SString ErrorText() const;
  // ErrorText inside the error or warning heading.
  SString TitledText() const;
  // Shows ErrorText as a numbered report, a warning below severity 2; then clears.
  void Report();
  void ClearLines();
  void Clear();

  int GetSeverity() const { return itsSeverity; }
  bool HasErrors() const { return itsSeverity >= 2; }
  size_t Count() const { return itsEntries.entries(); }
  const SProjectErrorEntry* Entry(size_t i) const;
  // True when some entry carries this message number.
  bool Contains(int messageId) const;
  const SOrdered& Entries() const { return itsEntries; }

  // The file that line numbers count in, as the user named it.
  void SetFileName(const SFileName& name) { itsFileName = name; }
  const SFileName& GetFileName() const { return itsFileName; }
  void SetTitleId(int id) { itsTitleId = id; }
  int GetTitleId() const { return itsTitleId; }

private:
  void Add(bool atFront, int severity, int line, int messageId, const SString& text);

  int itsSeverity = None;
  SOrdered itsEntries;
  SFileName itsFileName;
  int itsTitleId = 7140;
};

class SFile;

// Files a read fault at the file's current line and answers false, so that readers can
// `return ReadFault(...)`. With a detail the entry carries the detail's number.
bool ReadFault(SProjectErrorManager& errors, const SFile& file, int message, int detail = 0);

#endif
