#include "SVeloraError.h"

#include "SErrorMessages.h"
#include "SProgress.h"
#include "SString.h"
#include "SVeloraTrace.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>

namespace {
struct SErrorId {
  const char* id;
  const char* description;
};

const SErrorId kErrorIds[] = {
    {"VL1001", "Pointer Check Failed"},
    {"VL1002", "Object not found"},
    {"VL1003", "Bad index"},
    {"VL1004", "Attempted Access To An Object Marked Invalid"},
    {"VL1005", "Multiple objects have inconsistent data"},
    {"VL1006", "Encountered an unexpected object type"},
    {"VL1007", "Encountered an unexpected command number"},
    {"VL1008", "Error reading file"},
    {"VL1009", "Invalid value for data item"},
    {"VL1010", "Internal Error"},
    {"VL1011", "System Resource allocation error"},
    {"VL1012", "Error with file name"},
    {"VL1013", "Error with command line option"},
    {"VL1014", "Unexpected empty file encountered"},
    {"VL1015", "Unexpected empty object encountered"},
    {"VL1016", "Unexpected zero value encountered"},
    {"VL1017", "Unexpected block keyword encountered"},
    {"VL1020", "Unable to allocate memory"},
    {"VL1021", "Illegal program data encountered"},
    {"VL1022", "Program Data out of allowed range"},
    {"VL1023", "Unexpected null pointer encountered"},
    {"VL1025", "Program logic error"},
    {"VL1024", "Illegal enum value encountered"},
};

const size_t kTextLimit = 1024;
const char* const kNoMessage = " String Number : %d\nNo message associated with this code.\n";

void DefaultSink(const char* text, int) {
  Progress().ClearFor(stderr);
  fputs(text, stderr);
  fputc('\n', stderr);
  fflush(stderr);
}

SErrorSink gSink = DefaultSink;
bool gSinkOn = true;
void (*gErrorHook)() = nullptr;
void (*gReportHook)(const char*, int) = nullptr;
void (*gExitHook)() = nullptr;
void (*gExitStatusHook)(int) = nullptr;

void Sink(const char* text, int kind) {
  if (gSinkOn && gSink) gSink(text, kind);
}

// A format read from a file may not write through its arguments.
QByteArray SafeFormat(const SString& text) {
  QByteArray format = text.toUtf8();
  format.replace("%n", "%%n");
  return format;
}

SString VFormatNumber(int number, va_list args) {
  const SString* text = SErrorMessages::Instance()->FindMessage(number);
  if (!text) return SString::format(kNoMessage, number);
  const QByteArray format = SafeFormat(*text);
  return SString::vformat(format.constData(), args);
}

SString FormatNumber(int number, ...) {
  va_list args;
  va_start(args, number);
  SString result = VFormatNumber(number, args);
  va_end(args);
  return result;
}

SString Cut(const SString& text) {
  QByteArray bytes = text.toUtf8();
  if (bytes.size() > static_cast<int>(kTextLimit)) bytes.truncate(static_cast<int>(kTextLimit));
  return SString::fromUtf8(bytes);
}

void Report(bool warning, int messageNumber, const SString& detail) {
  SErrorMessages* messages = SErrorMessages::Instance();
  const SString* heading = messages->FindMessage(warning ? 5600 : 5900);
  const SString* text = messages->FindMessage(messageNumber);
  SString report;
  if (!heading || !text) {
    report = SString::format("Error System Error - Message Resource Not Found- %d", messageNumber);
  } else {
    report = Cut(SString::format("%s%d:\n%s%s\n%s%s", heading->data(), messageNumber, "", text->data(), "",
                                 detail.data()));
  }
  VeloraTrace(1, TRACE_ERRORS, "%s", report.data());
  if (gReportHook) gReportHook(report.data(), warning ? 2 : 1);
  Sink(report.data(), warning ? 2 : 1);
}

bool gExiting = false;
char gMemoryText[256];

void MemoryHandler() {
  // Whatever the report itself allocates must not come back here.
  std::set_new_handler(nullptr);
  snprintf(gMemoryText, sizeof gMemoryText, "%s%s",
           "Memory allocation failure.\nProgram was unable to allocate required memory.",
           "\nPlease check project memory requirements and\navailable virtual memory on computer.");
  VeloraFatalError("VL1020", __FILE__, __LINE__, "Memory Alloc Error:\n%s", gMemoryText);
}
}  // namespace

const char* VeloraErrorDescription(const char* id) {
  if (!id) return nullptr;
  for (const SErrorId& entry : kErrorIds)
    if (strcmp(entry.id, id) == 0) return entry.description;
  return nullptr;
}

[[noreturn]] static void VFatal(const char* id, const char* sourceFile, int line, const char* fmt, va_list args) {
  char detail[kTextLimit];
  detail[0] = '\0';
  if (fmt) vsnprintf(detail, sizeof detail, fmt, args);
  char unknown[128];
  const char* description = VeloraErrorDescription(id);
  if (!description) {
    snprintf(unknown, sizeof unknown, "Error System Error - Message Key Not Found- %s", id ? id : "");
    description = unknown;
  }
  // The source file by its own name: where the program was built is no business of its user.
  const char* source = sourceFile ? sourceFile : "";
  if (const char* slash = strrchr(source, '/')) source = slash + 1;
  char text[kTextLimit * 2];
  snprintf(text, sizeof text, "%s: #%s, %s\n File: %s, Line: %d\n%s", "Velora Internal Error", id ? id : "",
           description, source, line, detail);
  Sink(text, 2);
  VeloraTrace(1, TRACE_GENERAL, "%s", text);
  if (gErrorHook) gErrorHook();
  VeloraExit(1);
}

void VeloraFatalError(const char* id, const char* sourceFile, int line, const char* fmt, ...) {
  va_list args;
  va_start(args, fmt);
  VFatal(id, sourceFile, line, fmt, args);
}

void VeloraFatalError(const char* id, const char* sourceFile, int line) {
  VeloraFatalError(id, sourceFile, line, "%s", "");
}

void VeloraVReport(bool warning, int messageNumber, int textNumber, va_list args) {
  Report(warning, messageNumber, VFormatNumber(textNumber, args));
}

void VeloraErrorReport(int messageNumber, int textNumber, ...) {
  va_list args;
  va_start(args, textNumber);
  VeloraVReport(false, messageNumber, textNumber, args);
  va_end(args);
}

void VeloraWarningReport(int messageNumber, int textNumber, ...) {
  va_list args;
  va_start(args, textNumber);
  VeloraVReport(true, messageNumber, textNumber, args);
  va_end(args);
}

void VeloraFatalReport(int messageNumber, int textNumber, ...) {
  va_list args;
  va_start(args, textNumber);
  VeloraVReport(false, messageNumber, textNumber, args);
  va_end(args);
  VeloraExit(1);
}

void VeloraFileFailureReport(int kind, const char* fileName, const char* detail, bool warning) {
  int header = 5855;
  int textNumber = 5005;
  switch (kind) {
    case 2: header = 5850; textNumber = 5006; break;
    case 3: header = 5850; textNumber = 5008; break;
    case 4: header = 5860; textNumber = 5001; break;
    case 5: header = 5860; textNumber = 5002; break;
    case 6: header = 5868; textNumber = 5044; break;
    case 7: header = 5855; textNumber = 5003; break;
    default: break;
  }
  const char* name = fileName ? fileName : "";
  SString text = FormatNumber(textNumber);
  text += "\n";
  if (detail && *detail)
    text += FormatNumber(5861, name, detail);
  else
    text += FormatNumber(5863, name);
  text += "\n";
  text += FormatNumber(5862);
  Report(warning, header, text);
}

void VeloraGetMessage(int number, char* buffer, size_t size) {
  if (!buffer || size == 0) return;
  const SString* text = SErrorMessages::Instance()->FindMessage(number);
  const SString fallback = text ? SString() : SString::format(kNoMessage, number);
  const char* source = text ? text->data() : fallback.data();
  strncpy(buffer, source, size - 1);
  buffer[size - 1] = '\0';
}

SString VeloraMessageText(int number) {
  const SString* text = SErrorMessages::Instance()->FindMessage(number);
  return text ? *text : SString::format(kNoMessage, number);
}

bool VeloraHasMessage(int number) { return SErrorMessages::Instance()->HasMessage(number); }

void VeloraVFormatMessage(SString& text, int number, va_list args) { text = VFormatNumber(number, args); }

void VeloraFormatMessage(SString& text, int number, ...) {
  va_list args;
  va_start(args, number);
  VeloraVFormatMessage(text, number, args);
  va_end(args);
}

void VeloraSetErrorSink(SErrorSink sink) { gSink = sink ? sink : DefaultSink; }
void VeloraEnableErrorSink(bool on) { gSinkOn = on; }
void VeloraSetErrorHook(void (*hook)()) { gErrorHook = hook; }
void VeloraSetReportHook(void (*hook)(const char*, int)) { gReportHook = hook; }
void VeloraSetExitHook(void (*hook)()) { gExitHook = hook; }
void VeloraSetExitStatusHook(void (*hook)(int)) { gExitStatusHook = hook; }

void VeloraExit(int status) {
  // A hook that ends in another exit must not run the hooks again.
  if (!gExiting) {
    gExiting = true;
    if (gExitHook) gExitHook();
    if (gExitStatusHook) gExitStatusHook(status);
  }
  exit(status);
}

void VeloraInstallMemoryHandler() { std::set_new_handler(MemoryHandler); }
