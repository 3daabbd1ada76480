#include "FuzzInput.h"

#include <cstdio>
#include <cstdlib>
#include <sys/mman.h>
#include <unistd.h>

#include "SGdsDebug.h"
#include "SGdsRecord.h"
#include "SVeloraError.h"

namespace {
int theFd = -1;

// Malformed text and broken structure end the program; under the fuzzer
// they end the input only.
void Failure()
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
    // Messages are part of the behaviour but not of interest here; FUZZ_SHOW keeps them,
    // to see what a harness does.
    if (getenv("FUZZ_SHOW") == nullptr && !freopen("/dev/null", "w", stdout))
        return;
    SetTextFailureHandler(Failure);
    VeloraSetErrorHook(Failure);
    theFd = memfd_create("fuzz", 0);
}

std::string FuzzFile(const uint8_t* data, size_t size)
{
    if (ftruncate(theFd, 0) != 0 || pwrite(theFd, data, size, 0) != ssize_t(size))
        return std::string();
    return "/proc/self/fd/" + std::to_string(theFd);
}
