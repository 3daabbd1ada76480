#include "SGdsRecordList.h"

#include "SGdsRecord.h"

void SGdsRecordList::clearAndDestroy()
{
    itsArena.Release();
    itsCount = 0;
    itsLast = nullptr;
}

void SGdsRecordList::Commit(SGdsRecord* record)
{
    itsArena.Take(record->StorageSize());
    itsLast = record;
    ++itsCount;
}

SGdsRecord* SGdsRecordList::Iterator::next()
{
    const std::vector<SGdsArena::Chunk>& chunks = itsList.itsArena.GetChunks();
    while (itsChunk < chunks.size()) {
        const SGdsArena::Chunk& chunk = chunks[itsChunk];
        if (chunk.data && itsOffset < chunk.used) {
            SGdsRecord* record = reinterpret_cast<SGdsRecord*>(chunk.data + itsOffset);
            itsOffset += record->StorageSize();
            return record;
        }
        ++itsChunk;
        itsOffset = 0;
    }
    return nullptr;
}
