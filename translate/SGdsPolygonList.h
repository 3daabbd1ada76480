#ifndef SGDSPOLYGONLIST_H
#define SGDSPOLYGONLIST_H

#include <cstddef>
#include <cstdint>
#include <new>
#include <vector>

#include "SGdsArena.h"
#include "SGdsPolygon.h"
#include "SPoint.h"
#include "SRect.h"
#include "SXtransList.h"

class SGdsLayerFile;
class SGdsStructureList;
class SXtranProject;

// The state of one flattening and its result: the flat polygons in the order
// they were made, the placements of the reference being expanded, and the
// factor from stream units to project units.
//
// The list owns its polygons and their points. Both live in blocks that are
// released together, and a polygon's points are contiguous, so flattening
// millions of polygons costs no allocation per polygon or per point.
class SGdsPolygonList
{
public:
    explicit SGdsPolygonList(SGdsStructureList* structures = nullptr);
    virtual ~SGdsPolygonList();
    SGdsPolygonList(const SGdsPolygonList&) = delete;
    SGdsPolygonList& operator=(const SGdsPolygonList&) = delete;

    // A new polygon at the end of the list.
    virtual SGdsPolygon* NewPolygon();

    // Filters the polygons, makes the technology layers of the mappings and hands every
    // polygon that passes to the project. False when the project refused one.
    virtual bool AddToProject(SXtranProject& project, SGdsLayerFile& layerFile);
    // The box of the one substrate polygon, or the empty rectangle for none; false, after
    // the message, for more than one.
    virtual bool GetSubstrate(const SGdsLayerFile& layerFile, SRect& rect);
    // Ports where port polygons lie across project edges, numbered in wall order. Runs
    // on final coordinates, over every polygon, filtered or not.
    virtual void AddPorts(SXtranProject& project, const SGdsLayerFile& layerFile);
    // The highest level named by a mapping in use; 0 for none.
    virtual uint64_t GetMaxLevel(const SGdsLayerFile& layerFile) const;
    virtual void Translate(const SPoint& delta);

    size_t entries() const { return itsCount; }
    bool isEmpty() const { return itsCount == 0; }
    SGdsPolygon* at(size_t i) const { return &itsBlocks[i / kBlockSize][i % kBlockSize]; }
    // Destroys every polygon and gives back their memory.
    void clearAndDestroy();

    // The union of the polygons' boxes; the empty rectangle for none.
    SRect GetBoundingBox() const;

    // Room for count more points of a polygon, so that adding them moves nothing.
    void ReservePoints(SGdsPolygon& polygon, size_t count)
    {
        if (polygon.itsPointCapacity - polygon.itsPointCount < count)
            GrowPoints(polygon, polygon.itsPointCount + count);
    }
    void AppendPoint(SGdsPolygon& polygon, const SPoint& point)
    {
        if (polygon.itsPointCount == polygon.itsPointCapacity)
            GrowPoints(polygon, polygon.itsPointCapacity < 4 ? 4 : size_t(polygon.itsPointCapacity) * 2);
        new (&polygon.itsPoints[polygon.itsPointCount]) SPoint(point);
        ++polygon.itsPointCount;
    }

    // Bytes of polygons and points the list may hold; past it an allocation
    // fails as if the system had refused it. By default three quarters of the
    // physical memory, or of the address space limit when that is lower, so
    // that a flattening too big for the machine ends through the memory
    // handler instead of being killed.
    void SetMemoryLimit(size_t bytes) { itsMemoryLimit = bytes; }
    size_t GetMemoryLimit() const { return itsMemoryLimit; }
    size_t GetMemoryUsed() const { return itsMemoryUsed; }
    static size_t DefaultMemoryLimit();
    // A chunk another arena is done with, for the points to fill before fresh memory.
    void TakeChunk(SGdsArena& from, size_t index) { from.GiveChunk(index, itsPointArena); }
    // The process's allocation failure handler when one is installed (it
    // ends the process), otherwise std::bad_alloc.
    [[noreturn]] static void MemoryFailure();

    SGdsStructureList* itsStructureList;
    SXtransList itsTransforms;
    double itsConversionFactor = 1.0;

    // Filters of AddToProject. The keep box is off while it is the empty rectangle. Size
    // mode 0 keeps all, 1 takes the minimum in units, 2 in per cent of the keep box or,
    // without one, of all polygons.
    SRect itsKeepBox;
    int itsMinSizeMode = 0;
    double itsMinWidth = 0.0;
    double itsMinHeight = 0.0;
    // -e clears it; the "MakeTechLayers" setting of section "Gds" can veto it.
    bool itsMakeTechLayers = true;
    // Points rounded to six digits as they are placed, as a project takes them, instead
    // of when they are handed over; the flat list then holds them rounded. Never while a
    // filter looks at the points before rounding.
    bool itsRoundWhilePlacing = false;
    bool RoundsWhilePlacing() const
    {
        return itsRoundWhilePlacing && itsMinSizeMode == 0 && itsKeepBox.isEmpty();
    }

private:
    static const size_t kBlockSize = 4096;

    struct ChunkRelease
    {
        size_t lastUse;
        SGdsArena* arena;
        size_t chunk;
    };
    // Each chunk of `arena` with the last polygon that lies in it (its points, or the
    // polygon itself).
    void ScheduleRelease(SGdsArena& arena, bool points, std::vector<ChunkRelease>& releases) const;
    // A copy of `polygon` at the end of the list.
    void CopyIn(const SGdsPolygon& polygon);

    // Room at the end of an arena, counted against the limit.
    void* Reserve(SGdsArena& arena, size_t bytes);
    void GrowPoints(SGdsPolygon& polygon, size_t capacity);

    // Blocks of kBlockSize polygons, so that the n-th is found at once.
    std::vector<SGdsPolygon*> itsBlocks;
    size_t itsCount = 0;
    SGdsArena itsPolygonArena;
    // The polygon being made lies at the end and grows in place.
    SGdsArena itsPointArena;
    size_t itsMemoryUsed = 0;
    size_t itsMemoryLimit;
};

#endif
