#ifndef SGDSARENA_H
#define SGDSARENA_H

#include <cstddef>
#include <pthread.h>
#include <utility>
#include <vector>

// Memory handed out in order from large chunks and released all at once, or chunk by
// chunk by a user that knows what lies where.
// Small chunks come from the heap, so that a small stream costs no system calls. Large
// ones are aligned to huge pages and marked for them, because every first touch of a
// small page costs a fault: a million-element stream would take tens of thousands of
// them.
// When no memory is to be had, the process's allocation failure handler is called as
// operator new would call it; without one, std::bad_alloc is thrown.
class SGdsArena
{
public:
    SGdsArena() = default;
    ~SGdsArena() { Release(); }
    SGdsArena(const SGdsArena&) = delete;
    SGdsArena& operator=(const SGdsArena&) = delete;

    // Room for bytes (8-aligned) at the end, not yet taken.
    void* Reserve(size_t bytes);
    // Takes the reserved room.
    void Take(size_t bytes) { itsChunks.back().used += (bytes + 7) & ~size_t(7); }
    void* Allocate(size_t bytes)
    {
        void* memory = Reserve(bytes);
        Take(bytes);
        return memory;
    }
    void Release();
    // Gives back one chunk ahead of the rest; what it held must not be touched again. Room
    // asked for after it comes from a new chunk.
    void ReleaseChunk(size_t index);
    // As ReleaseChunk, but the memory goes to another arena, which fills it before it asks
    // for more: memory already touched costs nothing to touch again.
    void GiveChunk(size_t index, SGdsArena& to);
    void Swap(SGdsArena& other)
    {
        itsChunks.swap(other.itsChunks);
        std::swap(itsHelper, other.itsHelper);
        std::swap(itsHelperRunning, other.itsHelperRunning);
        std::swap(itsSpareCapacity, other.itsSpareCapacity);
        itsGiven.swap(other.itsGiven);
    }

    struct Chunk
    {
        unsigned char* data;
        size_t used;
        size_t capacity;
    };
    const std::vector<Chunk>& GetChunks() const { return itsChunks; }

    // Which chunk of an arena holds an address, for users that give chunks away once what
    // lies in them is done with. Made from the chunks as they are; chunks given away since
    // are not in it.
    class ChunkIndex
    {
    public:
        explicit ChunkIndex(const SGdsArena& arena);
        static constexpr size_t kNone = ~size_t(0);
        // The index of the chunk holding `place`, or kNone.
        size_t Find(const void* place) const;

    private:
        const std::vector<Chunk>& itsChunks;
        // Start addresses with chunk indexes, sorted.
        std::vector<std::pair<const unsigned char*, size_t>> itsStarts;
    };

private:
    // The spare chunk when the helper made one of at least `capacity` bytes, else null.
    unsigned char* TakeSpare(size_t capacity);
    void PrepareSpare(size_t capacity);

    std::vector<Chunk> itsChunks;
    // Chunks given by other arenas, not yet used.
    std::vector<Chunk> itsGiven;
    // Once an arena grows large, the chunk after the one being filled is mapped and its
    // pages faulted in by a helper thread meanwhile: the first touch of fresh memory is
    // much of the cost of a large stream, and a second core can take it. The helper only
    // maps; it neither allocates nor throws, and hands back null when the mapping fails.
    pthread_t itsHelper{};
    bool itsHelperRunning = false;
    size_t itsSpareCapacity = 0;
};

#endif
