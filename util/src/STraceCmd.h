#ifndef STRACECMD_H
#define STRACECMD_H

#include "SCollectable.h"
#include "SString.h"

#include <QObject>
#include <QRecursiveMutex>
#include <QStringList>
#include <deque>
#include <vector>

class QFile;
class QTextStream;

// One kept line of the trace: "%H:%M:%S" and the message.
class STraceEvent : public SCollectable {
  SCOLLECTABLE_DECLARE(STraceEvent)
public:
  STraceEvent(long long sequence, int level, int category, const SString& text)
      : itsSequence(sequence), itsLevel(level), itsCategory(category), itsText(text) {}
  long long GetSequence() const { return itsSequence; }
  int GetLevel() const { return itsLevel; }
  int GetCategory() const { return itsCategory; }
  const SString& GetText() const { return itsText; }

private:
  long long itsSequence;
  int itsLevel;
  int itsCategory;
  SString itsText;
};

// The process's trace: categories with levels, kept events, an optional file and
// display. A line is kept when its level is at most its category's level.
class STraceCmd : public QObject {
  Q_OBJECT
public:
  struct SCategory {
    int number;
    SString name;
    SString group;
    int level;
  };

  STraceCmd();
  ~STraceCmd() override;

  // Makes the process's trace, reads `VELORA_TRACE` and installs the entry points.
  // The file name is key UnixTraceFile of section "Velora", "$SUSER_DIR/trace.txt" by default.
  static STraceCmd* CreateTrace();
  static STraceCmd* Instance();
  // Closes and drops the process's trace; the entry points fall silent again.
  static void CloseTrace();

  void AddCategory(int number, const SString& name, const SString& group = SString());
  const SCategory* GetCategory(int number) const;
  void SetLevel(int category, int level);
  void SetAllLevels(int level);
  bool Test(int level, int category) const;
  void Trace(int level, int category, const char* text);

  void SetFileName(const SString& name) { itsFileName = name; }
  const SString& GetFileName() const { return itsFileName; }
  // The name the file was opened under, "##" replaced by the time.
  const SString& GetOpenedFileName() const { return itsOpenedFileName; }
  void SetLogToFile(bool on) { itsLogToFile = on; }
  void SetKeepEvents(bool on) { itsKeepEvents = on; }
  void SetFlushOnClose(bool on) { itsFlushOnClose = on; }
  void SetMaxEvents(int count) { itsMaxEvents = count > 0 ? count : 1; }
  void SetDisplay(bool on) { itsDisplay = on; }
  void SetProgram(const SString& name, const SString& version);
  bool IsFileOpen() const { return itsFileOpen; }
  size_t EventCount() const { return itsEvents.size(); }
  const STraceEvent* Event(size_t index) const { return index < itsEvents.size() ? itsEvents[index] : nullptr; }

  // The function stack written as the back trace on closing.
  void PushFunction(const SString& name);
  void PopFunction();
  void SetUseFunctionStack(bool on) { itsUseStack = on; }

  // Writes what is due and closes the file.
  void Close();

  // "##" in a trace file name becomes the local time as "%y%m%d%H%M%S".
  static SString ExpandFileName(const SString& name);

signals:
  void DisplayTrace(STraceEvent* event);
  void OpenDisplayChannel();
  void CloseDisplayChannel();

public slots:
  // Writes the event's text and a newline to standard output.
  void DefaultDisplay(STraceEvent* event);

private:
  bool OpenFile();
  void WriteEvent(const STraceEvent& event);

  std::vector<SCategory> itsCategories;
  int itsCurrentLevel = 0;
  SString itsFileName;
  SString itsOpenedFileName;
  SString itsProgram;
  SString itsVersion;
  bool itsLogToFile = false;
  bool itsKeepEvents = true;
  bool itsFlushOnClose = true;
  int itsMaxEvents = 5000;
  bool itsFileOpen = false;
  int itsDefaultCategory = 0;
  QFile* itsFile = nullptr;
  QTextStream* itsStream = nullptr;
  std::deque<STraceEvent*> itsEvents;
  QStringList itsFunctions;
  bool itsUseStack = false;
  mutable QRecursiveMutex itsMutex;
  bool itsDisplay = false;
};

// An exit hook that closes the trace (VeloraSetExitStatusHook).
void VeloraCloseTraceAtExit(int status);

#endif
