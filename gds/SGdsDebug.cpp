#include "SGdsDebug.h"

#include <cstdarg>

bool WarningsEnabled = true;
unsigned WarningCount = 0;

SGdsDebug::~SGdsDebug()
{
    if (itsStream)
        fclose(itsStream);
}

bool SGdsDebug::OpenTraceFile(const char* name)
{
    FILE* file = fopen(name, "w");
    if (!file) {
        GdsError("Can not write to trace file %s\n", name);
        return false;
    }
    if (itsStream)
        fclose(itsStream);
    itsStream = file;
    return true;
}

void SGdsDebug::Print(const char* format, ...)
{
    FILE* out = Stream();
    va_list args;
    va_start(args, format);
    vfprintf(out, format, args);
    va_end(args);
    fflush(out);
}

SGdsDebug& GdsDebug()
{
    // Exists before main runs and outlives every caller.
    static SGdsDebug* debug = new SGdsDebug;
    return *debug;
}

void GdsError(const char* format, ...)
{
    va_list args;
    va_start(args, format);
    vprintf(format, args);
    va_end(args);
    fflush(stdout);
}

void GdsWarning(const char* format, ...)
{
    if (!WarningsEnabled)
        return;
    if (++WarningCount > 25) {
        fputs("WARNING: Maximum number of warnings exceeded, further warnings will not be printed\n", stdout);
        fflush(stdout);
        WarningsEnabled = false;
        return;
    }
    va_list args;
    va_start(args, format);
    vprintf(format, args);
    va_end(args);
    fflush(stdout);
}
