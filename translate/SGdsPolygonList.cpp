#include "SGdsPolygonList.h"

#include <cstring>
#include <new>
#include <sys/resource.h>
#include <unistd.h>

#include "SGdsPolygon.h"

SGdsPolygonList::SGdsPolygonList(SGdsStructureList* structures)
    : itsStructureList(structures),
      itsMemoryLimit(DefaultMemoryLimit())
{
}

SGdsPolygonList::~SGdsPolygonList()
{
    clearAndDestroy();
}

size_t SGdsPolygonList::DefaultMemoryLimit()
{
    long pages = sysconf(_SC_PHYS_PAGES);
    long pageSize = sysconf(_SC_PAGE_SIZE);
    size_t limit = pages > 0 && pageSize > 0 ? size_t(pages) * size_t(pageSize) : SIZE_MAX;
    struct rlimit address;
    if (getrlimit(RLIMIT_AS, &address) == 0 && address.rlim_cur != RLIM_INFINITY && address.rlim_cur < limit)
        limit = size_t(address.rlim_cur);
    return limit == SIZE_MAX ? limit : limit / 4 * 3;
}

void SGdsPolygonList::MemoryFailure()
{
    if (std::new_handler handler = std::get_new_handler())
        handler();
    throw std::bad_alloc();
}

void* SGdsPolygonList::Reserve(SGdsArena& arena, size_t bytes)
{
    size_t chunks = arena.GetChunks().size();
    void* room = nullptr;
    try {
        room = arena.Reserve(bytes);
    } catch (const std::bad_alloc&) {
        MemoryFailure();
    }
    if (arena.GetChunks().size() != chunks) {
        size_t capacity = arena.GetChunks().back().capacity;
        if (capacity > itsMemoryLimit || itsMemoryUsed > itsMemoryLimit - capacity)
            MemoryFailure();
        itsMemoryUsed += capacity;
    }
    return room;
}

SGdsPolygon* SGdsPolygonList::NewPolygon()
{
    if (itsCount == itsBlocks.size() * kBlockSize) {
        itsBlocks.reserve(itsBlocks.size() + 1);
        size_t bytes = kBlockSize * sizeof(SGdsPolygon);
        void* block = Reserve(itsPolygonArena, bytes);
        itsPolygonArena.Take(bytes);
        itsBlocks.push_back(static_cast<SGdsPolygon*>(block));
    }
    SGdsPolygon* polygon = new (&itsBlocks[itsCount / kBlockSize][itsCount % kBlockSize]) SGdsPolygon;
    ++itsCount;
    return polygon;
}

void SGdsPolygonList::clearAndDestroy()
{
    for (size_t i = 0; i < itsCount; ++i)
        at(i)->~SGdsPolygon();
    itsBlocks.clear();
    itsPolygonArena.Release();
    itsPointArena.Release();
    itsCount = 0;
    itsMemoryUsed = 0;
}

SRect SGdsPolygonList::GetBoundingBox() const
{
    SRect box;
    bool first = true;
    for (size_t i = 0; i < itsCount; ++i) {
        const SGdsPolygon* polygon = at(i);
        if (polygon->GetPointCount() == 0)
            continue;
        SRect own = polygon->GetBoundingBox();
        if (first) {
            box = own;
            first = false;
            continue;
        }
        box.set(own.x1() < box.x1() ? own.x1() : box.x1(), own.y1() < box.y1() ? own.y1() : box.y1(),
                own.x2() > box.x2() ? own.x2() : box.x2(), own.y2() > box.y2() ? own.y2() : box.y2());
    }
    return box;
}

// The polygon being built sits at the end of the point arena and grows in
// place; any other one moves to the end, leaving its old room unused.
void SGdsPolygonList::GrowPoints(SGdsPolygon& polygon, size_t capacity)
{
    if (capacity > UINT32_MAX || capacity > SIZE_MAX / sizeof(SPoint))
        MemoryFailure();
    if (polygon.itsPoints) {
        size_t extra = (capacity - polygon.itsPointCapacity) * sizeof(SPoint);
        if (Reserve(itsPointArena, extra) == polygon.itsPoints + polygon.itsPointCapacity) {
            itsPointArena.Take(extra);
            polygon.itsPointCapacity = uint32_t(capacity);
            return;
        }
    }
    SPoint* room = static_cast<SPoint*>(Reserve(itsPointArena, capacity * sizeof(SPoint)));
    itsPointArena.Take(capacity * sizeof(SPoint));
    if (polygon.itsPointCount)
        std::memcpy(static_cast<void*>(room), polygon.itsPoints, polygon.itsPointCount * sizeof(SPoint));
    polygon.itsPoints = room;
    polygon.itsPointCapacity = uint32_t(capacity);
}
