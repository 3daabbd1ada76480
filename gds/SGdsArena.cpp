#include "SGdsArena.h"

#include <cstdint>
#include <new>
#include <system_error>
#include <sys/mman.h>

namespace {

// Small streams stay small: chunks start at 256 KiB and double up to 8 MiB.
const size_t kFirstChunk = size_t(256) << 10;
const size_t kLargestChunk = size_t(8) << 20;
const size_t kHugePage = size_t(2) << 20;

unsigned char* MapChunk(size_t capacity)
{
    if (capacity < kHugePage) {
        void* block = mmap(nullptr, capacity, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (block == MAP_FAILED)
            throw std::bad_alloc();
        return static_cast<unsigned char*>(block);
    }
    void* block = mmap(nullptr, capacity + kHugePage, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (block == MAP_FAILED)
        throw std::bad_alloc();
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

// Faults the pages of a fresh chunk in, so that its first use finds them present.
unsigned char* PopulatedChunk(size_t capacity)
{
    unsigned char* data = MapChunk(capacity);
    if (madvise(data, capacity, MADV_POPULATE_WRITE) != 0) {
        for (size_t offset = 0; offset < capacity; offset += 4096)
            static_cast<volatile unsigned char*>(data)[offset] = 0;
    }
    return data;
}

} // namespace

unsigned char* SGdsArena::TakeSpare(size_t capacity)
{
    if (!itsSpare.valid())
        return nullptr;
    unsigned char* data = itsSpare.get();
    if (itsSpareCapacity >= capacity)
        return data;
    munmap(data, itsSpareCapacity);
    return nullptr;
}

void SGdsArena::PrepareSpare(size_t capacity)
{
    try {
        itsSpare = std::async(std::launch::async, PopulatedChunk, capacity);
        itsSpareCapacity = capacity;
    } catch (const std::system_error&) {
        // No thread to be had: chunks are mapped as they are needed.
    }
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
        unsigned char* data = TakeSpare(capacity);
        if (data)
            capacity = itsSpareCapacity;
        else
            data = MapChunk(capacity);
        itsChunks.push_back(Chunk{data, 0, capacity});
        if (capacity >= kHugePage)
            PrepareSpare(capacity * 2 < kLargestChunk ? capacity * 2 : kLargestChunk);
    }
    Chunk& chunk = itsChunks.back();
    return chunk.data + chunk.used;
}

void SGdsArena::Release()
{
    if (itsSpare.valid()) {
        try {
            munmap(itsSpare.get(), itsSpareCapacity);
        } catch (const std::bad_alloc&) {
            // The helper could not map it: nothing to give back.
        }
    }
    for (Chunk& chunk : itsChunks)
        if (chunk.data)
            munmap(chunk.data, chunk.capacity);
    itsChunks.clear();
}

void SGdsArena::ReleaseChunk(size_t index)
{
    Chunk& chunk = itsChunks[index];
    if (!chunk.data)
        return;
    munmap(chunk.data, chunk.capacity);
    chunk.data = nullptr;
    chunk.used = chunk.capacity;
}
