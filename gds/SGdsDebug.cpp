#include "SGdsDebug.h"

#include <cstdarg>

#include "SProgress.h"

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

namespace {

// Every line goes out whole and at once, on a line of its own beside the progress line.
void PrintTo(FILE* out, const char* format, va_list args)
{
    Progress().ClearFor(out);
    vfprintf(out, format, args);
    fflush(out);
}

} // namespace

void SGdsDebug::Print(const char* format, ...)
{
    va_list args;
    va_start(args, format);
    PrintTo(Stream(), format, args);
    va_end(args);
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
    PrintTo(stdout, format, args);
    va_end(args);
}

void GdsVerbose(const char* format, ...)
{
    va_list args;
    va_start(args, format);
    PrintTo(stdout, format, args);
    va_end(args);
}

void GdsWarning(const char* format, ...)
{
    if (!WarningsEnabled)
        return;
    const char* text = format;
    if (++WarningCount > 25) {
        WarningsEnabled = false;
        text = "WARNING: Maximum number of warnings exceeded, further warnings will not be printed\n";
    }
    va_list args;
    va_start(args, format);
    PrintTo(stdout, text, args);
    va_end(args);
}
