#ifndef SVELORATRACE_H
#define SVELORATRACE_H

// The process-wide trace. Until a trace is installed (STraceCmd) a call does
// nothing and the test answers false.

enum STraceCategory {
  TRACE_UNKNOWN = 0,
  TRACE_INIT = 1,
  TRACE_ERRORS = 2,
  TRACE_GENERAL = 3,
  TRACE_BACKTRACE = 4,
  TRACE_MENUS = 5,
  TRACE_FUNCTIONS = 6,
  TRACE_PROCESS = 8,
  TRACE_PROCESS_COMM = 9,
  TRACE_IMSL_ERRORS = 10,
  TRACE_SOCKET = 11,
  TRACE_INTERFACE = 12,
  TRACE_SDT_IDLE = 13,
  TRACE_USER_MODEL = 14
};

void VeloraTrace(int level, int category, const char* fmt, ...) __attribute__((format(printf, 3, 4)));
// True when a line of this level and category would be kept.
bool VeloraTraceTest(int level, int category);

typedef void (*STraceFunction)(int level, int category, const char* text);
typedef bool (*STraceTestFunction)(int level, int category);
// Installs the entry points; null removes them.
void VeloraSetTraceFunctions(STraceFunction trace, STraceTestFunction test);

#endif
