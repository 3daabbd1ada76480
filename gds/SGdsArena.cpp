#include "SGdsArena.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <new>
#include <sys/mman.h>

namespace {

// Small streams stay small and cheap: chunks start at 16 KiB from the heap, which a run of
// many small inputs reuses without a system call, and double up to 8 MiB. From 256 KiB
// they are mapped, from 2 MiB on huge pages.
const size_t kFirstChunk = size_t(16) << 10;
const size_t kLargestHeapChunk = size_t(128) << 10;
const size_t kLargestChunk = size_t(8) << 20;
const size_t kHugePage = size_t(2) << 20;
// The helper only maps and touches memory.
const size_t kHelperStack = size_t(64) << 10;

// Null when there is no memory. Where a chunk came from follows from its capacity alone.
unsigned char* NewChunk(size_t capacity) noexcept
{
    if (capacity <= kLargestHeapChunk)
        return static_cast<unsigned char*>(malloc(capacity));
    if (capacity < kHugePage) {
        void* block = mmap(nullptr, capacity, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        return block == MAP_FAILED ? nullptr : static_cast<unsigned char*>(block);
    }
    void* block = mmap(nullptr, capacity + kHugePage, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (block == MAP_FAILED)
        return nullptr;
    uintptr_t start = reinterpret_cast<uintptr_t>(block);
    uintptr_t aligned = (start + kHugePage - 1) & ~uintptr_t(kHugePage - 1);
    if (aligned > start)
        munmap(block, aligned - start);
    uintptr_t end = start + capacity + kHugePage;
    if (end > aligned + capacity)
        munmap(reinterpret_cast<void*>(aligned + capacity), end - (aligned + capacity));
    madvise(reinterpret_cast<void*>(aligned), capacity, MADV_HUGEPAGE);
    return reinterpret_cast<unsigned char*>(aligned);
}

void FreeChunk(unsigned char* data, size_t capacity)
{
    if (capacity <= kLargestHeapChunk)
        free(data);
    else
        munmap(data, capacity);
}

// As operator new does: the failure handler may free memory and return, or end the process.
unsigned char* NewChunkOrFail(size_t capacity)
{
    for (;;) {
        if (unsigned char* data = NewChunk(capacity))
            return data;
        std::new_handler handler = std::get_new_handler();
        if (!handler)
            throw std::bad_alloc();
        handler();
    }
}

// The helper thread: maps a chunk and faults its pages in, so that its first use finds
// them present. Allocating or throwing here would take the process down when memory runs
// out, so a failure is only the null result and the owner maps for itself.
void* PopulatedChunk(void* capacityWord) noexcept
{
    size_t capacity = reinterpret_cast<uintptr_t>(capacityWord);
    unsigned char* data = NewChunk(capacity);
    if (data && madvise(data, capacity, MADV_POPULATE_WRITE) != 0) {
        for (size_t offset = 0; offset < capacity; offset += 4096)
            static_cast<volatile unsigned char*>(data)[offset] = 0;
    }
    return data;
}

} // namespace

unsigned char* SGdsArena::TakeSpare(size_t capacity)
{
    if (!itsHelperRunning)
        return nullptr;
    void* result = nullptr;
    pthread_join(itsHelper, &result);
    itsHelperRunning = false;
    unsigned char* data = static_cast<unsigned char*>(result);
    if (!data || itsSpareCapacity >= capacity)
        return data;
    FreeChunk(data, itsSpareCapacity);
    return nullptr;
}

void SGdsArena::PrepareSpare(size_t capacity)
{
    pthread_attr_t attributes;
    if (pthread_attr_init(&attributes) != 0)
        return;
    pthread_attr_setstacksize(&attributes, kHelperStack);
    // No thread to be had: chunks are mapped as they are needed.
    if (pthread_create(&itsHelper, &attributes, PopulatedChunk, reinterpret_cast<void*>(uintptr_t(capacity))) == 0) {
        itsHelperRunning = true;
        itsSpareCapacity = capacity;
    }
    pthread_attr_destroy(&attributes);
}

void* SGdsArena::Reserve(size_t bytes)
{
    bytes = (bytes + 7) & ~size_t(7);
    if (itsChunks.empty() || itsChunks.back().capacity - itsChunks.back().used < bytes || !itsChunks.back().data) {
        size_t capacity = itsChunks.empty() ? kFirstChunk : itsChunks.back().capacity * 2;
        if (capacity > kLargestChunk)
            capacity = kLargestChunk;
        while (capacity < bytes)
            capacity *= 2;
        // Room for the entry first, so that a failure after the chunk is had can't lose it.
        if (itsChunks.size() == itsChunks.capacity())
            itsChunks.reserve(itsChunks.size() * 2 + 8);
        if (!itsGiven.empty() && itsGiven.back().capacity >= bytes) {
            itsChunks.push_back(itsGiven.back());
            itsGiven.pop_back();
            Chunk& chunk = itsChunks.back();
            return chunk.data + chunk.used;
        }
        unsigned char* data = TakeSpare(capacity);
        if (data)
            capacity = itsSpareCapacity;
        else
            data = NewChunkOrFail(capacity);
        itsChunks.push_back(Chunk{data, 0, capacity});
        if (capacity >= kHugePage && itsGiven.empty())
            PrepareSpare(capacity * 2 < kLargestChunk ? capacity * 2 : kLargestChunk);
    }
    Chunk& chunk = itsChunks.back();
    return chunk.data + chunk.used;
}

void SGdsArena::Release()
{
    if (unsigned char* spare = TakeSpare(0))
        FreeChunk(spare, itsSpareCapacity);
    for (Chunk& chunk : itsChunks)
        if (chunk.data)
            FreeChunk(chunk.data, chunk.capacity);
    itsChunks.clear();
    for (Chunk& chunk : itsGiven)
        FreeChunk(chunk.data, chunk.capacity);
    itsGiven.clear();
}

void SGdsArena::ReleaseChunk(size_t index)
{
    Chunk& chunk = itsChunks[index];
    if (!chunk.data)
        return;
    FreeChunk(chunk.data, chunk.capacity);
    chunk.data = nullptr;
    chunk.used = chunk.capacity;
}

void SGdsArena::GiveChunk(size_t index, SGdsArena& to)
{
    Chunk& chunk = itsChunks[index];
    if (!chunk.data)
        return;
    // Room for the entry first, so that a failure can't lose the chunk.
    to.itsGiven.reserve(to.itsGiven.size() + 1);
    to.itsGiven.push_back(Chunk{chunk.data, 0, chunk.capacity});
    chunk.data = nullptr;
    chunk.used = chunk.capacity;
}

SGdsArena::ChunkIndex::ChunkIndex(const SGdsArena& arena)
    : itsChunks(arena.itsChunks)
{
    for (size_t c = 0; c < itsChunks.size(); ++c)
        if (itsChunks[c].data)
            itsStarts.emplace_back(itsChunks[c].data, c);
    std::sort(itsStarts.begin(), itsStarts.end());
}

size_t SGdsArena::ChunkIndex::Find(const void* place) const
{
    const unsigned char* p = static_cast<const unsigned char*>(place);
    auto after = std::upper_bound(itsStarts.begin(), itsStarts.end(), p,
                                  [](const unsigned char* q, const std::pair<const unsigned char*, size_t>& start) {
                                      return q < start.first;
                                  });
    if (after == itsStarts.begin())
        return kNone;
    const Chunk& chunk = itsChunks[std::prev(after)->second];
    return p < chunk.data + chunk.capacity ? std::prev(after)->second : kNone;
}
