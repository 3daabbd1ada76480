#ifndef SGDSRECORDLIST_H
#define SGDSRECORDLIST_H

#include <cstddef>
#include <cstdint>

#include "SGdsArena.h"

class SGdsRecord;

// All records of a stream in file order, placed one behind the other in
// large chunks rather than allocated one by one: a stream of millions of
// records then costs a few allocations and no more memory than it needs.
// Records own nothing outside their chunk, so freeing the chunks frees them.
class SGdsRecordList
{
public:
    SGdsRecordList() = default;
    SGdsRecordList(const SGdsRecordList&) = delete;
    SGdsRecordList& operator=(const SGdsRecordList&) = delete;

    // Room for a record of that size at the end; Commit makes it an entry.
    void* Reserve(size_t bytes) { return itsArena.Reserve(bytes); }
    void Commit(SGdsRecord* record);

    int64_t entries() const { return itsCount; }
    bool isEmpty() const { return itsCount == 0; }
    SGdsRecord* last() const { return itsLast; }
    void clearAndDestroy();
    // Where the records lie, for a user that gives chunks away (SGdsArena::GiveChunk); the
    // records in a chunk given away are gone, and an iterator passes over them.
    SGdsArena& GetArena() { return itsArena; }

    class Iterator
    {
    public:
        explicit Iterator(const SGdsRecordList& list) : itsList(list) {}
        // The next record, null behind the last.
        SGdsRecord* next();
        void reset() { itsChunk = 0; itsOffset = 0; }

    private:
        const SGdsRecordList& itsList;
        size_t itsChunk = 0;
        size_t itsOffset = 0;
    };

private:
    SGdsArena itsArena;
    int64_t itsCount = 0;
    SGdsRecord* itsLast = nullptr;
};

#endif
