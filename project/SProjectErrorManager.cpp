#include "SProjectErrorManager.h"

#include "SFile.h"

#include "SVeloraError.h"

#include <cstdarg>

namespace {
// The text behind a report, shown whole: the message file gives it as "%s".
const int kPlainText = 7045;
const int kProjectTitle = 5602;
const int kNoMessages = 7134;
}  // namespace

void SProjectErrorManager::Add(bool atFront, int severity, int line, int messageId, const SString& text) {
  if (severity > itsSeverity) itsSeverity = severity;
  SProjectErrorEntry* entry = new SProjectErrorEntry(line, static_cast<uint64_t>(messageId), text, severity);
  if (atFront)
    itsEntries.prepend(entry);
  else
    itsEntries.append(entry);
}

void SProjectErrorManager::AddError(int severity, int line, int messageId, ...) {
  va_list args;
  va_start(args, messageId);
  SString text;
  VeloraVFormatMessage(text, messageId, args);
  va_end(args);
  Add(false, severity, line, messageId, text);
}

void SProjectErrorManager::AddErrorAtFront(int severity, int line, int messageId, ...) {
  va_list args;
  va_start(args, messageId);
  SString text;
  VeloraVFormatMessage(text, messageId, args);
  va_end(args);
  Add(true, severity, line, messageId, text);
}

void SProjectErrorManager::AddPrefixedError(int severity, int line, int prefixId, int messageId, ...) {
  va_list args;
  va_start(args, messageId);
  SString text;
  VeloraVFormatMessage(text, messageId, args);
  va_end(args);
  const SString prefix = VeloraHasMessage(prefixId) ? VeloraMessageText(prefixId) : SString();
  Add(false, severity, line, messageId, prefix.isEmpty() ? text : prefix + "\n" + text);
}

SString SProjectErrorManager::ErrorText() const {
  SString out;
  if (!itsFileName.isEmpty()) {
    out += "Filename: ";
    out += itsFileName;
    out += "\n";
  }
  if (itsSeverity == None && itsEntries.isEmpty()) {
    out += VeloraMessageText(kNoMessages);
    out += "\n";
    return out;
  }
  for (const SCollectable* item : itsEntries) {
    const SProjectErrorEntry* entry = static_cast<const SProjectErrorEntry*>(item);
    // "file:line:" lets the user (and an editor) go straight to the line.
    if (entry->itsLine >= 0 && !itsFileName.isEmpty())
      out += SString::format("%s:%d: %s", itsFileName.data(), entry->itsLine, entry->itsText.data());
    else if (entry->itsLine >= 0)
      out += SString::format("Line %d: %s", entry->itsLine, entry->itsText.data());
    else
      out += entry->itsText;
    out += "\n";
  }
  return out;
}

SString SProjectErrorManager::TitledText() const {
  return VeloraMessageText(itsSeverity < 2 ? 5900 : 5600) + ErrorText();
}

void SProjectErrorManager::Report() {
  const SString text = VeloraMessageText(itsTitleId) + "\n" + ErrorText();
  if (itsSeverity < 2)
    VeloraWarningReport(kProjectTitle, kPlainText, text.data());
  else
    VeloraErrorReport(kProjectTitle, kPlainText, text.data());
  Clear();
}

void SProjectErrorManager::ClearLines() {
  for (SCollectable* item : itsEntries) static_cast<SProjectErrorEntry*>(item)->itsLine = -1;
}

void SProjectErrorManager::Clear() {
  itsEntries.clearAndDestroy();
  itsSeverity = None;
}

const SProjectErrorEntry* SProjectErrorManager::Entry(size_t i) const {
  return i < itsEntries.entries() ? static_cast<const SProjectErrorEntry*>(itsEntries.at(i)) : nullptr;
}

bool SProjectErrorManager::Contains(int messageId) const {
  for (const SCollectable* item : itsEntries)
    if (static_cast<const SProjectErrorEntry*>(item)->itsMessageId == static_cast<uint64_t>(messageId)) return true;
  return false;
}

bool ReadFault(SProjectErrorManager& errors, const SFile& file, int message, int detail) {
  const int line = static_cast<int>(file.LineCount());
  if (detail != 0)
    errors.AddPrefixedError(SProjectErrorManager::Error, line, message, detail);
  else
    errors.AddError(SProjectErrorManager::Error, line, message);
  return false;
}
