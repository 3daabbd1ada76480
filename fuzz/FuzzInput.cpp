#include "FuzzInput.h"

#include <cstdio>
#include <sys/mman.h>
#include <unistd.h>

#include "SGdsDebug.h"
#include "SGdsRecord.h"

namespace {
int theFd = -1;

// Malformed text ends the program; under the fuzzer it ends the input only.
void TextFailure()
{
    throw 1;
}
} // namespace

void FuzzSetup()
{
    static bool done = false;
    if (done)
        return;
    done = true;
    // Messages are part of the behaviour but not of interest here.
    if (!freopen("/dev/null", "w", stdout))
        return;
    SetTextFailureHandler(TextFailure);
    theFd = memfd_create("fuzz", 0);
}

std::string FuzzFile(const uint8_t* data, size_t size)
{
    if (ftruncate(theFd, 0) != 0 || pwrite(theFd, data, size, 0) != ssize_t(size))
        return std::string();
    return "/proc/self/fd/" + std::to_string(theFd);
}
