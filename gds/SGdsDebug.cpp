#include "SGdsDebug.h"

#include <cstdarg>
#include <string>
#include <vector>

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

enum SHeldKind { kHeldDebug, kHeldError, kHeldVerbose, kHeldWarning };

struct SHeldMessage
{
    SHeldKind kind;
    std::string text;
};

bool theHolding = false;
// No more than this many warnings can ever be given out (the cap and its line), so no more
// are kept: a stream may hold millions of paths with a bad type.
const size_t kMostHeldWarnings = 26;
size_t theHeldWarnings = 0;
std::vector<SHeldMessage>& Held()
{
    static std::vector<SHeldMessage>* held = new std::vector<SHeldMessage>;
    return *held;
}

// True when the message was kept.
bool Hold(SHeldKind kind, const char* format, va_list args)
{
    if (!theHolding)
        return false;
    va_list copy;
    va_copy(copy, args);
    const int size = vsnprintf(nullptr, 0, format, copy);
    va_end(copy);
    std::string text(size > 0 ? size_t(size) : 0, '\0');
    if (size > 0)
        vsnprintf(&text[0], text.size() + 1, format, args);
    Held().push_back(SHeldMessage{kind, std::move(text)});
    return true;
}

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
    if (!Hold(kHeldDebug, format, args))
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
    if (!Hold(kHeldError, format, args))
        PrintTo(stdout, format, args);
    va_end(args);
}

void GdsVerbose(const char* format, ...)
{
    va_list args;
    va_start(args, format);
    if (!Hold(kHeldVerbose, format, args))
        PrintTo(stdout, format, args);
    va_end(args);
}

void GdsWarning(const char* format, ...)
{
    if (theHolding) {
        if (theHeldWarnings >= kMostHeldWarnings)
            return;
        ++theHeldWarnings;
        va_list args;
        va_start(args, format);
        Hold(kHeldWarning, format, args);
        va_end(args);
        return;
    }
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

void HoldMessages(bool hold)
{
    theHolding = hold;
}

void ReleaseMessages(bool print)
{
    theHolding = false;
    theHeldWarnings = 0;
    std::vector<SHeldMessage> held;
    held.swap(Held());
    if (!print)
        return;
    for (const SHeldMessage& message : held) {
        switch (message.kind) {
        case kHeldDebug: GdsDebug().Print("%s", message.text.c_str()); break;
        case kHeldError: GdsError("%s", message.text.c_str()); break;
        case kHeldVerbose: GdsVerbose("%s", message.text.c_str()); break;
        case kHeldWarning: GdsWarning("%s", message.text.c_str()); break;
        }
    }
}
