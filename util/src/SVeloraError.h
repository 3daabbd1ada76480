#ifndef SVELORAERROR_H
#define SVELORAERROR_H

#include <cstdarg>
#include <cstddef>

class SString;

// Fatal program errors (ids "VLnnnn"), numbered reports whose texts live in the
// message files, and the one exit path of the process.

// Prints the error with the id's description and ends the process with status 1.
[[noreturn]] void VeloraFatalError(const char* id, const char* sourceFile, int line, const char* fmt, ...)
    __attribute__((format(printf, 4, 5)));
[[noreturn]] void VeloraFatalError(const char* id, const char* sourceFile, int line);
#define SFATAL(id, ...) VeloraFatalError(id, __FILE__, __LINE__, __VA_ARGS__)

// The fixed description of a program error id.
const char* VeloraErrorDescription(const char* id);

// Numbered reports: `textNumber` is a printf format taking the arguments. The run goes on,
// except for the fatal report.
void VeloraErrorReport(int messageNumber, int textNumber, ...);
void VeloraWarningReport(int messageNumber, int textNumber, ...);
[[noreturn]] void VeloraFatalReport(int messageNumber, int textNumber, ...);
void VeloraVReport(bool warning, int messageNumber, int textNumber, va_list args);

// One report for a failed file operation of the given kind (2 to 7).
void VeloraFileFailureReport(int kind, const char* fileName, const char* detail, bool warning);

// Copies the text of a message number into `buffer` (always terminated).
void VeloraGetMessage(int number, char* buffer, size_t size);
// The text of a message number, or the fixed "no message" words.
SString VeloraMessageText(int number);
// True when the number has a text in the loaded message files.
bool VeloraHasMessage(int number);
// printf of the number's text into `text`.
void VeloraFormatMessage(SString& text, int number, ...);
void VeloraVFormatMessage(SString& text, int number, va_list args);

// Where reports go: kind 1 error, 2 warning. The default writes to standard error.
typedef void (*SErrorSink)(const char* text, int kind);
void VeloraSetErrorSink(SErrorSink sink);
void VeloraEnableErrorSink(bool on);
// Called after a fatal error has been printed, before the exit.
void VeloraSetErrorHook(void (*hook)());
// Sees every numbered report with its kind.
void VeloraSetReportHook(void (*hook)(const char* text, int kind));

// The process's exit path: the plain hook, the hook with the status, then exit().
[[noreturn]] void VeloraExit(int status);
void VeloraSetExitHook(void (*hook)());
void VeloraSetExitStatusHook(void (*hook)(int status));

// Installs the allocation failure handler that raises "VL1020".
void VeloraInstallMemoryHandler();

#endif
