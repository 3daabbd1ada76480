#include "SVeloraTrace.h"

#include <cstdarg>
#include <cstdio>

namespace {
STraceFunction gTrace = nullptr;
STraceTestFunction gTest = nullptr;
}  // namespace

void VeloraSetTraceFunctions(STraceFunction trace, STraceTestFunction test) {
  gTrace = trace;
  gTest = test;
}

bool VeloraTraceTest(int level, int category) { return gTest && gTest(level, category); }

void VeloraTrace(int level, int category, const char* fmt, ...) {
  if (!gTrace || !fmt || !VeloraTraceTest(level, category)) return;
  char text[1024];
  va_list args;
  va_start(args, fmt);
  vsnprintf(text, sizeof text, fmt, args);
  va_end(args);
  gTrace(level, category, text);
}
