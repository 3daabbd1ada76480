#include "SGdsExpander.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <unordered_map>

#include "SGdsDebug.h"
#include "SGdsElement.h"
#include "SGdsPolygon.h"
#include "SGdsPolygonList.h"
#include "SGdsRec.h"
#include "SGdsRecordList.h"
#include "SGdsStructure.h"
#include "SGdsStructureList.h"
#include "SInitializationFile.h"
#include "SProgress.h"
#include "SXtrans.h"

namespace {

bool IsArray(const SGdsElement& element)
{
    return element.GetName()[0] == 'A';
}

bool IsBoundary(const SGdsElement& element)
{
    const char* name = element.GetName();
    return std::strcmp(name, "Boundary") == 0 || std::strcmp(name, "Box") == 0;
}

uint64_t SaturatedAdd(uint64_t a, uint64_t b)
{
    uint64_t sum;
    return __builtin_add_overflow(a, b, &sum) ? UINT64_MAX : sum;
}

uint64_t SaturatedMultiply(uint64_t a, uint64_t b)
{
    uint64_t product;
    return __builtin_mul_overflow(a, b, &product) ? UINT64_MAX : product;
}

// Placements of the referred structure; bad counts place nothing.
uint64_t Placements(const SGdsElement& element)
{
    if (!IsArray(element))
        return 1;
    const SGdsElementAref& array = static_cast<const SGdsElementAref&>(element);
    if (array.itsColumns <= 0 || array.itsRows <= 0)
        return 0;
    return uint64_t(array.itsColumns) * uint64_t(array.itsRows);
}

// What a leaf element surely adds: a boundary its points; a path, unless
// all its points could fall together, two points or four.
uint64_t LeafMemory(const SGdsElement& element)
{
    const SGdsRecXy* xy = element.itsXyRecord;
    if (!xy)
        return 0;
    int count = xy->GetPointCount();
    if (IsBoundary(element))
        return sizeof(SGdsPolygon) + uint64_t(count) * sizeof(SPoint);
    if (!element.IsPath() || count < 2)
        return 0;
    if (SGdsPathConverter::Distance(xy->GetPoint(0), xy->GetPoint(count - 1)) < count * 1e-9)
        return 0;
    bool zero = static_cast<const SGdsElementPath&>(element).itsWidth == 0.0;
    return sizeof(SGdsPolygon) + (zero ? 2 : 4) * sizeof(SPoint);
}

} // namespace

SGdsExpander::SGdsExpander(SGdsStructureList& structures, SGdsPolygonList& polygons)
    : itsStructures(structures),
      itsPolygons(polygons)
{
}

bool ExpandStructure(SGdsStructureList& structures, SGdsPolygonList& polygons, const SString& name,
                     SGdsRecordList* spent)
{
    polygons.itsStructureList = &structures;
    SGdsExpander expander(structures, polygons);
    expander.SpendRecords(spent);
    return expander.ExpandStructure(name);
}

bool SGdsExpander::ExpandStructure(const SString& name)
{
    SGdsStructure* structure = FindStructure(name);
    if (!structure)
        return true;
    // A flattening that can't fit ends before it starts rather than after
    // filling the memory.
    uint64_t polygons = 0;
    uint64_t needed = MinimumMemory(structure, &polygons);
    if (needed > itsPolygons.GetMemoryLimit() - itsPolygons.GetMemoryUsed()) {
        GdsError("ERROR: Structure %s flattens to %llu polygons, too large for this machine's memory\n",
                 name.data(), (unsigned long long)polygons);
        return false;
    }
    itsArefMethodKnown = false;
    SProgressPhase phase("flattening", polygons, "polygons");
    PlanRecordRelease(structure);
    return ExpandElements(structure);
}

void SGdsExpander::PlanRecordRelease(SGdsStructure* top)
{
    itsRecordReleases.clear();
    itsNextRecordRelease = 0;
    if (!itsSpentRecords)
        return;
    const std::vector<SGdsArena::Chunk>& chunks = itsSpentRecords->GetArena().GetChunks();
    const SGdsArena::ChunkIndex index(itsSpentRecords->GetArena());
    const size_t kNone = SGdsArena::ChunkIndex::kNone;
    // Elements done with each chunk; kNone: some other structure's points lie in it.
    std::vector<size_t> after(chunks.size(), 0);
    const SOrdered& structures = itsStructures.GetStructures();
    for (size_t s = 0; s < structures.entries(); ++s) {
        const SGdsStructure* structure = static_cast<const SGdsStructure*>(structures.at(s));
        if (structure == top)
            continue;
        const SOrdered& elements = structure->itsElements;
        for (size_t e = 0; e < elements.entries(); ++e)
            if (const SGdsRecXy* xy = static_cast<const SGdsElement*>(elements.at(e))->itsXyRecord) {
                const size_t c = index.Find(xy);
                if (c != kNone)
                    after[c] = kNone;
            }
    }
    const SOrdered& elements = top->itsElements;
    for (size_t e = 0; e < elements.entries(); ++e)
        if (const SGdsRecXy* xy = static_cast<const SGdsElement*>(elements.at(e))->itsXyRecord) {
            const size_t c = index.Find(xy);
            if (c != kNone && after[c] != kNone)
                after[c] = std::max(after[c], e + 1);
        }
    for (size_t c = 0; c < chunks.size(); ++c)
        if (chunks[c].data && after[c] != kNone)
            itsRecordReleases.push_back(RecordRelease{after[c], c});
    std::sort(itsRecordReleases.begin(), itsRecordReleases.end(),
              [](const RecordRelease& a, const RecordRelease& b) { return a.after < b.after; });
    ReleaseRecords(0);
}

void SGdsExpander::ReleaseRecords(size_t elementsDone)
{
    while (itsNextRecordRelease < itsRecordReleases.size() &&
           itsRecordReleases[itsNextRecordRelease].after <= elementsDone) {
        itsPolygons.TakeChunk(itsSpentRecords->GetArena(), itsRecordReleases[itsNextRecordRelease].chunk);
        ++itsNextRecordRelease;
    }
}

SGdsStructure* SGdsExpander::FindStructure(const SString& name)
{
    SGdsDebug& debug = GdsDebug();
    if (debug.GetLevel() > 3)
        debug.Print("Expanding structure: %s \n", name.data());
    SGdsStructure* structure = itsStructures.FindStructure(name);
    if (!structure)
        GdsWarning("Structure %s is referenced, but not defined in the GDSII file\n", name.data());
    return structure;
}

bool SGdsExpander::Enter(SGdsStructure* structure)
{
    // Only nesting trips this: the flag is down again once a structure is done.
    if (structure->itsExpanding) {
        GdsError("GDSII file contains a circular reference for structure = %s\n", structure->data());
        return false;
    }
    structure->itsExpanding = true;
    Frame frame{};
    frame.structure = structure;
    itsFrames.push_back(frame);
    return true;
}

bool SGdsExpander::ExpandElements(SGdsStructure* top)
{
    if (!Enter(top))
        return false;
    SGdsDebug& debug = GdsDebug();
    SProgress& progress = Progress();
    const size_t first = itsPolygons.entries();
    while (!itsFrames.empty()) {
        progress.Tick(itsPolygons.entries() - first);
        Frame& frame = itsFrames.back();
        const SOrdered& elements = frame.structure->itsElements;
        if (frame.next >= elements.entries()) {
            frame.structure->itsExpanding = false;
            itsFrames.pop_back();
            if (!itsFrames.empty() && !StepReference(itsFrames.back()))
                return Abandon();
            continue;
        }
        SGdsElement* element = static_cast<SGdsElement*>(elements.at(frame.next));
        if (debug.GetLevel() > 3)
            debug.Print("Expanding: %s element, record=%ld,\n", element->GetName(), long(element->GetRecordNumber()));
        if (element->IsReference()) {
            // May push a frame: `frame` is not used after this.
            if (!StepReference(frame))
                return Abandon();
            continue;
        }
        if (!ExpandLeaf(*element))
            return Abandon();
        ++frame.next;
        // The top structure is walked once, so its points are then done with.
        if (itsFrames.size() == 1)
            ReleaseRecords(frame.next);
    }
    return true;
}

bool SGdsExpander::ExpandLeaf(SGdsElement& element)
{
    if (element.IsPath())
        return itsPaths.ExpandStructure(itsPolygons, static_cast<SGdsElementPath&>(element));
    if (IsBoundary(element))
        return ExpandBoundary(element);
    GdsError("INTERNAL ERROR: SGdsElement::ExpandStructure\n");
    return false;
}

bool SGdsExpander::ExpandBoundary(SGdsElement& element)
{
    const SGdsRecXy* xy = element.itsXyRecord;
    if (!xy) {
        GdsError("%s record %d missing associated XY record\n", element.GetName(), int(element.GetRecordNumber()));
        return false;
    }
    SGdsPolygon* polygon = itsPolygons.NewPolygon();
    SGdsDebug& debug = GdsDebug();
    if (debug.GetLevel() > 3)
        debug.Print("Expanding GDS Boundry to polygon: gdspolyid=%lld, record=%ld, (%s)\n",
                    (long long)polygon->gdspolyid, long(element.GetRecordNumber()), element.GetName());
    polygon->itsLayer = element.itsLayer;
    polygon->itsDatatype = element.itsDatatype;
    int count = xy->GetPointCount();
    itsPolygons.ReservePoints(*polygon, size_t(count));
    for (int i = 0; i < count; ++i)
        polygon->AddPoint(itsPolygons, xy->GetPoint(i), true);
    return true;
}

int SGdsExpander::GetArefMethod()
{
    // Read once a walk: arrays may be placed millions of times.
    if (!itsArefMethodKnown) {
        SInitializationFile* settings = SInitializationFile::GetGlobal();
        itsArefMethod = settings ? settings->GetInt("gds", "ArefMethod", 3) : 3;
        itsArefMethodKnown = true;
    }
    return itsArefMethod;
}

bool SGdsExpander::BeginArray(Frame& frame, SGdsElementSref& reference)
{
    SGdsElementAref& array = static_cast<SGdsElementAref&>(reference);
    int method = GetArefMethod();
    if (method < 1 || method > 3) {
        SGdsDebug& debug = GdsDebug();
        if (debug.GetLevel() > 3)
            debug.Print("Invalid value for velora.ini's ArefMethod = %ld\n", long(method));
        GdsError("Invalid value for velora.ini's ArefMethod = %ld, valid values are 1, 2 or 3\n", long(method));
        return false;
    }
    if (array.itsColumns <= 0 || array.itsRows <= 0)
        return false;
    frame.method = method;
    frame.savedOffset = array.itsTransform.itsPreOffset;
    frame.savedTranslation = array.itsTransform.itsTranslation;
    SPoint a = array.itsColumnPoint - array.itsReferencePoint;
    SPoint b = array.itsRowPoint - array.itsReferencePoint;
    if (method == 1) {
        // Steps along the cell's own axes, told by whichever point lies on them.
        double stepX, stepY;
        if (b.x() == 0.0 && a.y() == 0.0) {
            stepX = a.x() / array.itsColumns;
            stepY = b.y() / array.itsRows;
        } else {
            stepX = b.x() / array.itsRows;
            stepY = a.y() / array.itsColumns;
        }
        frame.columnStep = SPoint(stepX, 0.0);
        frame.rowStep = SPoint(0.0, stepY);
    } else {
        frame.columnStep = a / array.itsColumns;
        frame.rowStep = b / array.itsRows;
    }
    frame.column = 0;
    frame.row = 0;
    return true;
}

void SGdsExpander::PlaceCell(Frame& frame, SGdsElementSref& reference)
{
    SGdsElementAref& array = static_cast<SGdsElementAref&>(reference);
    SXtrans& transform = array.itsTransform;
    SPoint offset(frame.column * frame.columnStep.x() + frame.row * frame.rowStep.x(),
                  frame.column * frame.columnStep.y() + frame.row * frame.rowStep.y());
    if (frame.method == 3) {
        // The lattice lies in the parent, after the cell is turned.
        transform.itsPreOffset = SPoint();
        transform.itsTranslation = array.itsReferencePoint + offset;
    } else {
        // The lattice turns and scales with the cell.
        transform.itsPreOffset = offset;
        transform.itsTranslation = array.itsReferencePoint;
    }
    SGdsDebug& debug = GdsDebug();
    if (debug.GetLevel() > 3)
        debug.Print("Expanding structure, row = %d, col = %d, offset = (%g, %g)\n", frame.column, frame.row,
                    offset.x(), offset.y());
}

void SGdsExpander::FinishReference(Frame& frame, SGdsElementSref& reference)
{
    if (IsArray(reference)) {
        reference.itsTransform.itsPreOffset = frame.savedOffset;
        reference.itsTransform.itsTranslation = frame.savedTranslation;
    } else {
        SGdsDebug& debug = GdsDebug();
        if (debug.GetLevel() > 3)
            debug.Print("End expanding structure = %s }\n", reference.itsStructureName.data());
    }
    frame.placing = false;
    ++frame.next;
}

bool SGdsExpander::Advance(Frame& frame, const SGdsElementSref& reference) const
{
    if (!IsArray(reference))
        return false;
    const SGdsElementAref& array = static_cast<const SGdsElementAref&>(reference);
    if (++frame.row == array.itsRows) {
        frame.row = 0;
        ++frame.column;
    }
    return frame.column < array.itsColumns;
}

bool SGdsExpander::StepReference(Frame& frame)
{
    SGdsElementSref& reference = *static_cast<SGdsElementSref*>(frame.structure->itsElements.at(frame.next));
    bool array = IsArray(reference);
    SGdsDebug& debug = GdsDebug();
    if (frame.placing) {
        itsPolygons.itsTransforms.Pop();
        if (!Advance(frame, reference)) {
            FinishReference(frame, reference);
            return true;
        }
    } else {
        if (array) {
            if (!BeginArray(frame, reference)) {
                ++frame.next;
                return true;
            }
        } else if (debug.GetLevel() > 3) {
            debug.Print("Begin expanding structure = %s {\n", reference.itsStructureName.data());
        }
        frame.placing = true;
    }
    for (;;) {
        if (array)
            PlaceCell(frame, reference);
        itsPolygons.itsTransforms.Push(&reference.itsTransform);
        if (debug.GetLevel() > 3)
            reference.itsTransform.Dump();
        SGdsStructure* child = FindStructure(reference.itsStructureName);
        bool quiet = debug.GetLevel() <= 3;
        if (child && !(quiet && child->itsElements.isEmpty()))
            return Enter(child);
        itsPolygons.itsTransforms.Pop();
        // Every other cell would do the same: a structure without elements
        // makes nothing, and an undefined one only warns, until warnings are off.
        if (quiet && (child || !WarningsEnabled)) {
            FinishReference(frame, reference);
            return true;
        }
        if (!Advance(frame, reference)) {
            FinishReference(frame, reference);
            return true;
        }
    }
}

bool SGdsExpander::Abandon()
{
    for (Frame& frame : itsFrames) {
        frame.structure->itsExpanding = false;
        if (frame.placing) {
            SGdsElement* element = static_cast<SGdsElement*>(frame.structure->itsElements.at(frame.next));
            if (IsArray(*element)) {
                SXtrans& transform = static_cast<SGdsElementAref*>(element)->itsTransform;
                transform.itsPreOffset = frame.savedOffset;
                transform.itsTranslation = frame.savedTranslation;
            }
        }
    }
    itsFrames.clear();
    itsPolygons.itsTransforms.Clear();
    return false;
}

uint64_t SGdsExpander::MinimumMemory(SGdsStructure* top, uint64_t* polygons) const
{
    // Walked like the sizes of structures, with a stack of its own; a
    // structure met again inside a cycle counts nothing.
    struct Size
    {
        uint64_t bytes;
        uint64_t polygons;
    };
    const uint64_t kBusy = UINT64_MAX;
    std::unordered_map<const SGdsStructure*, Size> known;
    struct Step
    {
        SGdsStructure* structure;
        size_t next;
        Size sum;
    };
    std::vector<Step> steps;
    known[top] = Size{kBusy, 0};
    steps.push_back(Step{top, 0, {0, 0}});
    Size result{0, 0};
    while (!steps.empty()) {
        Step& step = steps.back();
        const SOrdered& elements = step.structure->itsElements;
        if (step.next == elements.entries()) {
            Size sum = step.sum;
            known[step.structure] = Size{sum.bytes == kBusy ? kBusy - 1 : sum.bytes, sum.polygons};
            steps.pop_back();
            if (steps.empty()) {
                result = sum;
                break;
            }
            Step& parent = steps.back();
            const SGdsElement& element =
                *static_cast<const SGdsElement*>(parent.structure->itsElements.at(parent.next));
            uint64_t placements = Placements(element);
            parent.sum.bytes = SaturatedAdd(parent.sum.bytes, SaturatedMultiply(sum.bytes, placements));
            parent.sum.polygons = SaturatedAdd(parent.sum.polygons, SaturatedMultiply(sum.polygons, placements));
            ++parent.next;
            continue;
        }
        const SGdsElement& element = *static_cast<const SGdsElement*>(elements.at(step.next));
        if (!element.IsReference()) {
            uint64_t bytes = LeafMemory(element);
            step.sum.bytes = SaturatedAdd(step.sum.bytes, bytes);
            step.sum.polygons = SaturatedAdd(step.sum.polygons, bytes > 0 ? 1 : 0);
            ++step.next;
            continue;
        }
        SGdsStructure* child =
            itsStructures.FindStructure(static_cast<const SGdsElementSref&>(element).itsStructureName);
        auto found = child ? known.find(child) : known.end();
        if (child && found == known.end()) {
            known[child] = Size{kBusy, 0};
            steps.push_back(Step{child, 0, {0, 0}});
            continue;
        }
        Size size = child && found->second.bytes != kBusy ? found->second : Size{0, 0};
        uint64_t placements = Placements(element);
        step.sum.bytes = SaturatedAdd(step.sum.bytes, SaturatedMultiply(size.bytes, placements));
        step.sum.polygons = SaturatedAdd(step.sum.polygons, SaturatedMultiply(size.polygons, placements));
        ++step.next;
    }
    if (polygons)
        *polygons = result.polygons;
    return result.bytes;
}
