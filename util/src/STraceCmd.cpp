#include "STraceCmd.h"

#include "SInitializationFile.h"
#include "SProgress.h"
#include "STime.h"
#include "SVarRWCString.h"
#include "SVeloraDirectoryInstance.h"
#include "SVeloraTrace.h"

#include <QCoreApplication>
#include <QFile>
#include <QMutexLocker>
#include <QTextStream>
#include <cstdio>
#include <cstdlib>

SCOLLECTABLE_DEFINE(STraceEvent, SID_TRACEEVENT, &SCollectable::staticTypeInfo())

namespace {
STraceCmd* gTrace = nullptr;
long long gSequence = 0;

void TraceEntry(int level, int category, const char* text) {
  if (gTrace) gTrace->Trace(level, category, text);
}

bool TestEntry(int level, int category) { return gTrace && gTrace->Test(level, category); }
}  // namespace

STraceCmd::STraceCmd() {
  static const struct {
    int number;
    const char* name;
  } kCategories[] = {{0, "Unknown"},       {1, "Init"},         {2, "Errors/Warnings"}, {3, "General"},
                     {4, "Back Trace"},    {5, "Menus"},        {6, "Functions"},       {8, "Process"},
                     {9, "Process Comm"},  {10, "Imsl Errors"}, {11, "Socket"},         {12, "Interface"},
                     {13, "SDT Idle"},     {14, "User Model"}};
  for (const auto& category : kCategories) AddCategory(category.number, SString(category.name));
  itsProgram = SString(QCoreApplication::applicationName());
  itsVersion = SString(QCoreApplication::applicationVersion());
  connect(this, &STraceCmd::DisplayTrace, this, &STraceCmd::DefaultDisplay);
}

STraceCmd::~STraceCmd() {
  if (gTrace == this) {
    gTrace = nullptr;
    VeloraSetTraceFunctions(nullptr, nullptr);
  }
  delete itsStream;
  delete itsFile;
  for (STraceEvent* event : itsEvents) delete event;
}

STraceCmd* STraceCmd::CreateTrace() {
  if (gTrace) return gTrace;
  STraceCmd* trace = new STraceCmd();
  SString name("$SUSER_DIR/trace.txt");
  if (SInitializationFile* settings = SInitializationFile::GetGlobal())
    name = settings->GetValue("Velora", "UnixTraceFile", name);
  trace->SetFileName(SVarRWCString(name).Expand());
  gTrace = trace;
  VeloraSetTraceFunctions(TraceEntry, TestEntry);
  if (const char* value = getenv("VELORA_TRACE")) {
    const int level = static_cast<int>(strtol(value, nullptr, 10));
    trace->SetAllLevels(level);
    printf("VELORA_TRACE set to %d\n", level);
    fflush(stdout);
    trace->SetLogToFile(true);
    trace->SetDisplay(true);
    emit trace->OpenDisplayChannel();
  }
  return trace;
}

STraceCmd* STraceCmd::Instance() { return gTrace; }

void STraceCmd::CloseTrace() {
  STraceCmd* trace = gTrace;
  if (!trace) return;
  trace->Close();
  delete trace;
}

void VeloraCloseTraceAtExit(int) { STraceCmd::CloseTrace(); }

void STraceCmd::AddCategory(int number, const SString& name, const SString& group) {
  for (SCategory& category : itsCategories)
    if (category.number == number) {
      category.name = name;
      category.group = group;
      return;
    }
  itsCategories.push_back(SCategory{number, name, group, itsCurrentLevel});
}

const STraceCmd::SCategory* STraceCmd::GetCategory(int number) const {
  for (const SCategory& category : itsCategories)
    if (category.number == number) return &category;
  return nullptr;
}

void STraceCmd::SetLevel(int category, int level) {
  for (SCategory& entry : itsCategories)
    if (entry.number == category) entry.level = level;
}

void STraceCmd::SetAllLevels(int level) {
  itsCurrentLevel = level;
  for (SCategory& entry : itsCategories) entry.level = level;
}

bool STraceCmd::Test(int level, int category) const {
  const SCategory* entry = GetCategory(category);
  if (!entry) entry = GetCategory(itsDefaultCategory);
  return entry && level <= entry->level;
}

void STraceCmd::SetProgram(const SString& name, const SString& version) {
  itsProgram = name;
  itsVersion = version;
}

SString STraceCmd::ExpandFileName(const SString& name) {
  SString result(name);
  if (result.contains(SString("##"))) result.replace(SString("##"), STime().format("%y%m%d%H%M%S"));
  return result;
}

bool STraceCmd::OpenFile() {
  if (itsFileOpen) return true;
  if (itsFileName.isEmpty()) return false;
  const SString name = ExpandFileName(itsFileName);
  QFile* file = new QFile(name.qstring());
  if (!file->open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Text)) {
    delete file;  // tried again at the next event
    return false;
  }
  itsFile = file;
  itsStream = new QTextStream(itsFile);
  itsStream->setCodec("UTF-8");
  itsOpenedFileName = name;
  itsFileOpen = true;
  *itsStream << "Velora Tracefile : " << STime().dateTime().qstring() << '\n';
  *itsStream << "Program : " << itsProgram.qstring() << " Version : " << itsVersion.qstring() << '\n';
  *itsStream << "Velora Directory : " << GetInstallDir().qstring() << '\n';
  itsStream->flush();
  return true;
}

void STraceCmd::WriteEvent(const STraceEvent& event) {
  if (!OpenFile()) return;
  *itsStream << event.GetText().qstring() << '\n';
  itsStream->flush();
}

void STraceCmd::Trace(int level, int category, const char* text) {
  if (!GetCategory(category)) category = itsDefaultCategory;
  if (!Test(level, category)) return;
  SString message = STime().time();
  message += " ";
  message += text ? text : "";
  QMutexLocker lock(&itsMutex);
  STraceEvent* event = new STraceEvent(++gSequence, level, category, message);
  if (itsLogToFile) WriteEvent(*event);
  if (itsDisplay) emit DisplayTrace(event);
  if (itsKeepEvents) {
    itsEvents.push_back(event);
    while (itsEvents.size() > static_cast<size_t>(itsMaxEvents)) {
      delete itsEvents.front();
      itsEvents.pop_front();
    }
  } else {
    delete event;
  }
}

void STraceCmd::DefaultDisplay(STraceEvent* event) {
  if (!event) return;
  Progress().ClearFor(stdout);
  fputs(event->GetText().data(), stdout);
  fputc('\n', stdout);
  fflush(stdout);
}

void STraceCmd::PushFunction(const SString& name) {
  QMutexLocker lock(&itsMutex);
  itsFunctions.append(name.qstring());
}

void STraceCmd::PopFunction() {
  QMutexLocker lock(&itsMutex);
  if (!itsFunctions.isEmpty()) itsFunctions.removeLast();
}

void STraceCmd::Close() {
  QMutexLocker lock(&itsMutex);
  if (!itsLogToFile && itsFlushOnClose && !itsEvents.empty()) {
    itsLogToFile = true;
    for (const STraceEvent* event : itsEvents) WriteEvent(*event);
  }
  if (itsUseStack && !itsFunctions.isEmpty() && OpenFile()) {
    *itsStream << "BACK TRACE:\n";
    for (int i = itsFunctions.size() - 1; i >= 0; --i) *itsStream << itsFunctions.at(i) << '\n';
    itsStream->flush();
  }
  itsLogToFile = false;
  if (itsDisplay) emit CloseDisplayChannel();
  delete itsStream;
  itsStream = nullptr;
  delete itsFile;
  itsFile = nullptr;
  itsFileOpen = false;
}
