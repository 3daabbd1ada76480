#include "SGdsPolygonList.h"

#include <cstring>
#include <new>
#include <sys/resource.h>
#include <unistd.h>

#include "SGdsDebug.h"
#include "SGdsLayerFile.h"
#include "SGdsPolygon.h"
#include "SCircuit.h"
#include "SInitializationFile.h"
#include "SOrdered.h"
#include "SProgress.h"
#include "SPolygonEdge.h"
#include "SXtranProject.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <unordered_map>
#include <utility>

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
#ifdef GDS_FUZZING
    // Fuzzing looks for faults: a small stream that legitimately flattens to millions of
    // polygons only costs minutes, and would hide a real hang behind the timeout.
    limit = std::min(limit, size_t(256) << 20);
#endif
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
    if (capacity > INT32_MAX || capacity > SIZE_MAX / sizeof(SPoint))
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

void SGdsPolygonList::ScheduleRelease(SGdsArena& arena, bool points, std::vector<ChunkRelease>& releases) const
{
    const std::vector<SGdsArena::Chunk>& chunks = arena.GetChunks();
    if (chunks.empty())
        return;
    const SGdsArena::ChunkIndex index(arena);
    // Visited in order, so the last polygon seen in a chunk is its last user. A chunk nobody
    // uses goes with the first polygon.
    std::vector<size_t> last(chunks.size(), 0);
    auto note = [&](const void* place, size_t polygon) {
        const size_t c = index.Find(place);
        if (c != SGdsArena::ChunkIndex::kNone)
            last[c] = polygon;
    };
    if (points) {
        for (size_t i = 0; i < itsCount; ++i)
            if (const SPoint* first = at(i)->itsPoints)
                note(first, i);
    } else {
        for (size_t b = 0; b < itsBlocks.size(); ++b)
            note(itsBlocks[b], std::min((b + 1) * kBlockSize, itsCount) - 1);
    }
    for (size_t c = 0; c < chunks.size(); ++c)
        releases.push_back(ChunkRelease{last[c], &arena, c});
}

void SGdsPolygonList::CopyIn(const SGdsPolygon& polygon)
{
    SGdsPolygon* copy = NewPolygon();
    copy->gdspolyid = polygon.gdspolyid;
    copy->itsLayer = polygon.itsLayer;
    copy->itsDatatype = polygon.itsDatatype;
    copy->itsRounded = polygon.itsRounded;
    ReservePoints(*copy, polygon.itsPointCount);
    for (const SPoint& point : polygon)
        AppendPoint(*copy, point);
}

bool SGdsPolygonList::AddToProject(SXtranProject& project, SGdsLayerFile& layerFile)
{
    SGdsDebug& debug = GdsDebug();
    if (debug.GetLevel() > 0)
        debug.Print("Expanded to %d internal polygons\n", int(itsCount));

    const bool keep = !itsKeepBox.isEmpty();
    const SRect keepBox = itsKeepBox.normalized();
    double minWidth = 0.0, minHeight = 0.0;
    // A walk over every point, only for what looks at it.
    const bool needAll = (itsMinSizeMode == 2 && !keep) || debug.GetLevel() > 3;
    const SRect all = needAll ? GetBoundingBox() : SRect();
    if (itsMinSizeMode == 1) {
        minWidth = itsMinWidth;
        minHeight = itsMinHeight;
    } else if (itsMinSizeMode == 2) {
        const SRect reference = keep ? keepBox : all;
        minWidth = reference.width() * itsMinWidth / 100.0;
        minHeight = reference.height() * itsMinHeight / 100.0;
        if (debug.GetLevel() > 3)
            debug.Print("Bounding box for circuit is (%f,%f) - (%f,%f)\n", reference.x1(), reference.y1(),
                        reference.x2(), reference.y2());
    }
    if (debug.GetLevel() > 3) {
        debug.Print("Min width is %f\n", minWidth);
        debug.Print("Min height is %f\n", minHeight);
        debug.Print("Bounding box for circuit is X=%f -> %f, Y=%f -> %f\n", all.x1(), all.x2(), all.y1(), all.y2());
    }

    SInitializationFile* settings = SInitializationFile::GetGlobal();
    const bool allowed = settings ? settings->GetBool("Gds", "MakeTechLayers", true) : true;
    if (allowed && itsMakeTechLayers)
        layerFile.MakeTechLayers(project);

    // New polygons number from 1; only polygons an update keeps (-q) hold ids to number on from.
    if (SCircuit* circuit = project.GetCircuit())
        SGdsPolygon::SkipFileIds(circuit->GetHighestPolygonId());
    // Mostly one project polygon for each flat one.
    project.ReserveNewPolygons(itsCount);

    // The list is consumed as it goes: each polygon is destroyed once handed over, and the
    // memory it lay in goes back as soon as no later polygon lies there, so the flat list
    // and the project's polygons never both stand whole. Ports and the substrate still need
    // theirs, and get a copy.
    std::vector<ChunkRelease> releases;
    ScheduleRelease(itsPolygonArena, false, releases);
    ScheduleRelease(itsPointArena, true, releases);
    std::stable_sort(releases.begin(), releases.end(),
                     [](const ChunkRelease& a, const ChunkRelease& b) { return a.lastUse < b.lastUse; });
    size_t nextRelease = 0;
    SGdsPolygonList later(itsStructureList);
    std::unordered_map<uint64_t, bool> neededLater;

    int skipped = 0;
    bool ok = true;
    SOrdered scratch;
    SProgressPhase phase("adding to project", itsCount, "polygons");
    SProgress& progress = Progress();
    size_t i = 0;
    for (; i < itsCount && ok; ++i) {
        progress.Tick(i);
        SGdsPolygon* polygon = at(i);
        bool pass = true;
        if (itsMinSizeMode != 0) {
            const SRect box = polygon->GetBoundingBox();
            if (minWidth > box.width() && minHeight > box.height()) {
                if (debug.GetLevel() > 3)
                    debug.Print("Skipping polygon due to size: gdspolyid=%d, (%f, %f)\n", int(polygon->gdspolyid),
                                box.width(), box.height());
                pass = false;
            }
        }
        if (pass && keep && !polygon->IsInside(keepBox))
            pass = false;
        if (pass)
            ok = polygon->AddToCircuit(project, layerFile, scratch);
        else
            ++skipped;
        const uint64_t pair = (uint64_t(uint32_t(polygon->itsLayer)) << 32) | uint32_t(polygon->itsDatatype);
        auto known = neededLater.find(pair);
        if (known == neededLater.end()) {
            scratch.clear();
            layerFile.GetMappings(scratch, polygon->itsLayer, polygon->itsDatatype, kPurposePort);
            layerFile.GetMappings(scratch, polygon->itsLayer, polygon->itsDatatype, kPurposeSubstrate);
            known = neededLater.emplace(pair, !scratch.isEmpty()).first;
        }
        if (known->second)
            later.CopyIn(*polygon);
        polygon->~SGdsPolygon();
        for (; nextRelease < releases.size() && releases[nextRelease].lastUse <= i; ++nextRelease)
            releases[nextRelease].arena->ReleaseChunk(releases[nextRelease].chunk);
    }
    for (; i < itsCount; ++i)
        at(i)->~SGdsPolygon();
    itsCount = 0;
    itsBlocks.clear();
    itsPolygonArena.Release();
    itsPointArena.Release();
    itsBlocks.swap(later.itsBlocks);
    itsPolygonArena.Swap(later.itsPolygonArena);
    itsPointArena.Swap(later.itsPointArena);
    std::swap(itsCount, later.itsCount);
    std::swap(itsMemoryUsed, later.itsMemoryUsed);
    if (!ok)
        return false;
    if (skipped > 0 && debug.GetLevel() > 0)
        debug.Print("Skipped %d internal polygons\n", skipped);
    return true;
}

bool SGdsPolygonList::GetSubstrate(const SGdsLayerFile& layerFile, SRect& rect)
{
    rect = SRect();
    SOrdered mappings;
    layerFile.GetByPurpose(mappings, kPurposeSubstrate);
    if (mappings.isEmpty())
        return true;
    int count = 0;
    SRect found;
    for (size_t i = 0; i < itsCount; ++i) {
        SRect box;
        if (at(i)->GetSubstrateBox(layerFile, box)) {
            ++count;
            found = box;
        }
    }
    if (count == 0) {
        GdsWarning("WARNING: There are no substrate polygons, default substrate will be created.\n");
        return true;
    }
    if (count > 1) {
        GdsError("ERROR: There are more than one substrate polygons.\n");
        return false;
    }
    rect = found;
    return true;
}

void SGdsPolygonList::AddPorts(SXtranProject& project, const SGdsLayerFile& layerFile)
{
    SOrdered mappings;
    layerFile.GetByPurpose(mappings, kPurposePort);
    if (mappings.isEmpty())
        return;
    SGdsDebug& debug = GdsDebug();
    std::vector<SPolygonEdge> edges;
    std::set<std::pair<const void*, int>> seen;
    for (size_t i = 0; i < itsCount; ++i) {
        SGdsPolygon* polygon = at(i);
        std::vector<SPolygonEdge> own;
        if (!polygon->FindPortEdges(project, layerFile, own)) {
            const SPoint first = polygon->GetPoint(0);
            const SString where = SString::format("(%f,%f)\n  layer=%d, datatype=%d", first.x(), first.y(),
                                                  polygon->itsLayer, polygon->itsDatatype);
            GdsWarning("WARNING: Did not add port for port polygon at %s - %s.\n", where.data(),
                       "could not find polygon to attach port to");
            if (debug.GetLevel() > 3)
                debug.Print("gdspolyid=%d, Skipped adding port - could not find polygon to attach port to.\n",
                            int(polygon->gdspolyid));
        }
        for (const SPolygonEdge& edge : own)
            if (seen.insert(std::make_pair(static_cast<const void*>(edge.itsPolygon), edge.itsVertex)).second)
                edges.push_back(edge);
    }
    for (const SPolygonEdge& edge : edges) {
        if (!project.IsInBox(edge.GetFirstPoint()) || !project.IsInBox(edge.GetSecondPoint()))
            continue;
        if (project.GetEdgeSide(edge.itsPolygon, edge.itsVertex) != SXtranProject::SideNone) {
            project.AddPort(edge.itsPolygon, edge.itsVertex);
            continue;
        }
        SMetalPolygon* extension = nullptr;
        int extensionEdge = 0;
        if (project.ExtendToWall(edge.itsPolygon, edge.itsVertex, extension, extensionEdge, SGdsPolygon::TakeFileId()))
            project.AddPort(extension, extensionEdge);
    }
    project.RenumberPorts(false);
}

uint64_t SGdsPolygonList::GetMaxLevel(const SGdsLayerFile& layerFile) const
{
    uint64_t level = 0;
    SOrdered scratch;
    // A pair's level is looked up once; polygons of one pair mostly come together.
    int32_t lastLayer = 0, lastDatatype = 0;
    for (size_t i = 0; i < itsCount; ++i) {
        const SGdsPolygon* polygon = at(i);
        if (i > 0 && polygon->itsLayer == lastLayer && polygon->itsDatatype == lastDatatype)
            continue;
        lastLayer = polygon->itsLayer;
        lastDatatype = polygon->itsDatatype;
        const uint64_t own = polygon->GetMaxLevel(layerFile, scratch);
        level = own > level ? own : level;
    }
    return level;
}

void SGdsPolygonList::Translate(const SPoint& delta)
{
    for (size_t i = 0; i < itsCount; ++i)
        at(i)->Translate(delta);
}
