#ifndef SGDSDEBUG_H
#define SGDSDEBUG_H

#include <cstdio>

// The translator's debug stream. Callers test the level themselves; Print
// only writes. Debug lines go to the trace file of -T when one is open.
class SGdsDebug
{
public:
    SGdsDebug() = default;
    ~SGdsDebug();
    SGdsDebug(const SGdsDebug&) = delete;
    SGdsDebug& operator=(const SGdsDebug&) = delete;

    void SetLevel(int level) { itsLevel = level; }
    int GetLevel() const { return itsLevel; }
    void SetTags(bool on) { itsTags = on; }
    bool GetTags() const { return itsTags; }

    // Empties the file; on failure reports it as an error and returns false.
    bool OpenTraceFile(const char* name);

    void Print(const char* format, ...) __attribute__((format(printf, 2, 3)));

    // Where debug lines go: the trace file or standard output.
    FILE* Stream() const { return itsStream ? itsStream : stdout; }

private:
    int itsLevel = 0;
    FILE* itsStream = nullptr;
    bool itsTags = false;
};

SGdsDebug& GdsDebug();

// Errors always print, on standard output, flushed at once so that they
// interleave correctly with the debug stream.
void GdsError(const char* format, ...) __attribute__((format(printf, 1, 2)));

// Warnings print up to a cap of 25; the 26th prints the limit line instead.
void GdsWarning(const char* format, ...) __attribute__((format(printf, 1, 2)));

// The lines of -v: on standard output, flushed at once.
void GdsVerbose(const char* format, ...) __attribute__((format(printf, 1, 2)));

// While held, messages are kept in order instead of printed, and given out later as if
// printed then: a stream's structures are built while it is read, and what the building
// says must still come after all that the reading says. A held warning counts towards
// the cap only when it is given out.
void HoldMessages(bool hold);
// Gives the held messages out, or drops them; either way holding ends.
void ReleaseMessages(bool print);

extern bool WarningsEnabled;
extern unsigned WarningCount;

#endif
