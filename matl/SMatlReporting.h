#ifndef SMATLREPORTING_H
#define SMATLREPORTING_H

#include "SString.h"

#include <functional>
#include <vector>

// Where the material library's messages go. In mode 1 (the default) errors are printed on
// standard error behind "*ERROR* Velora: ", warnings on standard output behind
// "*WARNING* Velora: ", notes on standard output as they are; mode 0 is silent; any other
// mode hands every message to the handlers (errors to the error handler, warnings and
// notes to the message handler).
//
// Numbered messages take their text from the message files (strings_matl.h). Their
// arguments come in three fixed forms, so that a text can't read an argument that isn't
// there:
//   line form:  file name (%s), line number (%d), line text (%s), value (%s)
//   name form:  entry name (%s)
//   write form: entry name (%s), file name (%s)
class SMatlReporting {
public:
  enum Kind { Error = 1, Warning = 2, Note = 3 };
  // The kind, the message number (0 for a text of its own) and the finished text.
  typedef std::function<void(int kind, int number, const SString& text)> Handler;

  static SMatlReporting& Instance();

  int GetMode() const { return itsMode; }
  void SetMode(int mode) { itsMode = mode; }
  void SetErrorHandler(Handler handler) { itsErrorHandler = std::move(handler); }
  void SetMessageHandler(Handler handler) { itsMessageHandler = std::move(handler); }
  const Handler& GetErrorHandler() const { return itsErrorHandler; }
  const Handler& GetMessageHandler() const { return itsMessageHandler; }

  void ReportError(const SString& text, int number = 0);
  void ReportWarning(const SString& text, int number = 0);
  void ReportNote(const SString& text);

  // Line form: a message about one line of a file.
  void LineError(int number, const SString& file, long long line, const SString& lineText,
                 const SString& value = SString());
  void LineWarning(int number, const SString& file, long long line, const SString& lineText,
                   const SString& value = SString());
  // Name form: a message about one entry.
  void NameError(int number, const SString& name);
  void NameWarning(int number, const SString& name);
  // Write form: an entry that couldn't be written to a file.
  void WriteError(int number, const SString& name, const SString& file);

private:
  SMatlReporting() {}
  void Deliver(int kind, int number, const SString& text);

  int itsMode = 1;
  Handler itsErrorHandler;
  Handler itsMessageHandler;
};

// Sends the material library's messages to a list for the life of the object, the mode and
// handlers before it coming back afterwards (tests, and callers that show messages their own way).
class SMatlReportCapture {
public:
  struct SEntry {
    int kind;
    int number;
    SString text;
  };
  SMatlReportCapture();
  ~SMatlReportCapture();
  SMatlReportCapture(const SMatlReportCapture&) = delete;
  SMatlReportCapture& operator=(const SMatlReportCapture&) = delete;

  const std::vector<SEntry>& Entries() const { return itsEntries; }
  // The numbers of the messages of a kind, in order.
  std::vector<int> Numbers(int kind) const;
  bool Has(int kind, int number) const;
  void Clear() { itsEntries.clear(); }

private:
  std::vector<SEntry> itsEntries;
  int itsSavedMode;
  SMatlReporting::Handler itsSavedError;
  SMatlReporting::Handler itsSavedMessage;
};

#endif
