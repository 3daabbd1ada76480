// The chunk store under the stream and the flat polygons: what it hands out stays put
// and apart however large it grows, and running out of memory ends the program with the
// memory message, never a crash, whichever thread or phase meets the limit first.

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <new>
#include <string>
#include <vector>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "GdsRun.h"
#include "SGdsArena.h"
#include "StreamWriter.h"
#include "SVeloraError.h"

using namespace gdstest;

#if defined(__SANITIZE_ADDRESS__)
#define GDS_UNDER_SANITIZER 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define GDS_UNDER_SANITIZER 1
#endif
#endif

namespace {

// More than the address space of any machine, so that no chunk can be had.
const size_t kImpossible = size_t(1) << 47;

TEST(Arena, PiecesOfAGrowingArenaStayApartAndKeepTheirBytes)
{
    // 48 MiB in uneven pieces runs through small chunks and huge-page ones, with the
    // helper mapping ahead; every piece is filled with its own number and checked at the end.
    SGdsArena arena;
    std::vector<std::pair<uint32_t*, size_t>> pieces;
    size_t total = 0;
    for (uint32_t n = 0; total < (size_t(48) << 20); ++n) {
        size_t words = 1 + (n * 7919u) % 4000;
        uint32_t* piece = static_cast<uint32_t*>(arena.Allocate(words * 4));
        ASSERT_EQ(reinterpret_cast<uintptr_t>(piece) % 8, 0u);
        for (size_t i = 0; i < words; ++i)
            piece[i] = n;
        pieces.emplace_back(piece, words);
        total += words * 4;
    }
    for (size_t n = 0; n < pieces.size(); ++n)
        for (size_t i = 0; i < pieces[n].second; ++i)
            ASSERT_EQ(pieces[n].first[i], n) << "piece " << n << " word " << i;

    // Large chunks sit on huge-page boundaries and none is larger than 8 MiB.
    size_t huge = 0;
    for (const SGdsArena::Chunk& chunk : arena.GetChunks()) {
        EXPECT_LE(chunk.capacity, size_t(8) << 20);
        if (chunk.capacity >= (size_t(2) << 20)) {
            EXPECT_EQ(reinterpret_cast<uintptr_t>(chunk.data) % (size_t(2) << 20), 0u);
            ++huge;
        }
    }
    EXPECT_GE(huge, 5u);
}

TEST(Arena, ReleasedChunksAreNotReusedAndSwapMovesEverything)
{
    SGdsArena arena;
    arena.Allocate(100);
    arena.ReleaseChunk(0);
    arena.ReleaseChunk(0); // twice is harmless
    void* second = arena.Allocate(100);
    EXPECT_EQ(arena.GetChunks().size(), 2u);
    EXPECT_EQ(arena.GetChunks()[0].data, nullptr);
    EXPECT_NE(second, nullptr);

    // A large arena, its helper busy, swapped into one that is then released.
    SGdsArena large;
    for (int i = 0; i < 600; ++i)
        memset(large.Allocate(size_t(16) << 10), i & 0xff, size_t(16) << 10);
    size_t chunks = large.GetChunks().size();
    SGdsArena other;
    other.Swap(large);
    EXPECT_TRUE(large.GetChunks().empty());
    EXPECT_EQ(other.GetChunks().size(), chunks);
    other.Release();
    EXPECT_TRUE(other.GetChunks().empty());
    EXPECT_NE(other.Allocate(8), nullptr);
}

int theHandlerCalls = 0;

// Gives up after one call, as a handler that can free nothing more does.
void OneTimeHandler()
{
    ++theHandlerCalls;
    std::set_new_handler(nullptr);
}

TEST(Arena, RoomThatCantBeHadGoesToTheAllocationFailureHandlerThenThrows)
{
    SGdsArena arena;
    arena.Allocate(64);
    std::new_handler saved = std::set_new_handler(OneTimeHandler);
    theHandlerCalls = 0;
    EXPECT_THROW(arena.Reserve(kImpossible), std::bad_alloc);
    EXPECT_EQ(theHandlerCalls, 1);
    std::set_new_handler(saved);
    // The arena is as it was and goes on.
    EXPECT_EQ(arena.GetChunks().size(), 1u);
    EXPECT_NE(arena.Allocate(64), nullptr);
}

TEST(ArenaDeathTest, RoomThatCantBeHadEndsTheProgramWithTheMemoryMessage)
{
    EXPECT_EXIT(
        {
            VeloraInstallMemoryHandler();
            SGdsArena arena;
            arena.Reserve(kImpossible);
        },
        testing::ExitedWithCode(1), "VL1020, Unable to allocate memory(.|\n)*Memory allocation failure");
}

struct LimitedRun
{
    bool exited = false;
    int status = -1;
    int signal = 0;
    std::string output;
};

// The program in a child with its address space limited to `megabytes`; standard output
// and error together.
LimitedRun RunLimited(const GdsRun& dir, const std::vector<std::string>& arguments, size_t megabytes)
{
    std::vector<std::string> words = {GDS_BINARY};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> argv;
    for (std::string& word : words)
        argv.push_back(&word[0]);
    argv.push_back(nullptr);
    // Only the settings of the scratch directory; made before the fork, which may only exec.
    std::vector<std::string> environment = {"HOME=" + dir.Dir().toStdString(), "LC_ALL=C", "PATH=/usr/bin:/bin"};
    std::vector<char*> envp;
    for (std::string& entry : environment)
        envp.push_back(&entry[0]);
    envp.push_back(nullptr);
    std::string outputPath = dir.Path("output.txt");
    std::string directory = dir.Dir().toStdString();

    LimitedRun run;
    pid_t child = fork();
    if (child == 0) {
        int out = open(outputPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
        if (out < 0 || chdir(directory.c_str()) != 0)
            _exit(126);
        dup2(out, 1);
        dup2(out, 2);
        struct rlimit limit;
        limit.rlim_cur = limit.rlim_max = rlim_t(megabytes) << 20;
        setrlimit(RLIMIT_AS, &limit);
        execve(argv[0], argv.data(), envp.data());
        _exit(127);
    }
    if (child < 0)
        return run;
    int status = 0;
    if (waitpid(child, &status, 0) != child)
        return run;
    run.exited = WIFEXITED(status);
    run.status = run.exited ? WEXITSTATUS(status) : -1;
    run.signal = WIFSIGNALED(status) ? WTERMSIG(status) : 0;
    run.output = dir.Read("output.txt");
    return run;
}

TEST(Arena, TranslationTooLargeForItsMemoryEndsWithTheMessageAtEveryLimit)
{
#ifdef GDS_UNDER_SANITIZER
    GTEST_SKIP() << "the sanitizer's shadow memory does not fit under an address space limit";
#endif
    // 900,000 rectangles need well over 300 MB; below that the limit meets the read, the
    // flattening or the project, with the helper thread mapping ahead or not.
    GdsRun gds;
    StreamWriter stream;
    stream.Begin().Bgnstr("TOP");
    for (int i = 0; i < 900000; ++i)
        stream.Boundary(1, 0, StreamWriter::Rect(i, 0, i + 10, 10 + i % 7));
    stream.Endstr().Endlib();
    gds.Write("big.gds", stream);
    gds.Write("big.lay", "M metal_boundary 1 0 0 \"Copper\"\n");

    for (size_t megabytes = 100; megabytes <= 250; megabytes += 30) {
        SCOPED_TRACE(std::to_string(megabytes) + " MB");
        LimitedRun run = RunLimited(gds, {"-l", "big.lay", "-o", "big.vel", "big.gds"}, megabytes);
        EXPECT_EQ(run.signal, 0) << run.output;
        EXPECT_TRUE(run.exited);
        EXPECT_EQ(run.status, 1) << run.output;
        EXPECT_NE(run.output.find("Memory allocation failure"), std::string::npos) << run.output;
    }
}

} // namespace
