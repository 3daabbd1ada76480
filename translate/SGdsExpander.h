#ifndef SGDSEXPANDER_H
#define SGDSEXPANDER_H

#include <cstdint>
#include <vector>

#include "SGdsPathConverter.h"
#include "SPoint.h"
#include "SString.h"

class SGdsElement;
class SGdsElementSref;
class SGdsPolygonList;
class SGdsRecordList;
class SGdsStructure;
class SGdsStructureList;

// Flattens a structure: walks its tree of references with the placements on
// the polygon list's transform stack, and turns every boundary, box and path
// it reaches into a polygon of the list, in file order.
//
// The walk keeps its own stack of structures, so a hierarchy may nest as
// deep as memory allows. Only the current path of expansion is held; nothing
// is copied.
class SGdsExpander
{
public:
    SGdsExpander(SGdsStructureList& structures, SGdsPolygonList& polygons);

    // An unknown name warns and makes nothing. False after its message when
    // the walk must stop: a circular reference, an element without points, or
    // more polygons than the memory holds, told before any is made.
    bool ExpandStructure(const SString& name);
    // The records the shapes' points lie in, to be given to the polygon list chunk by chunk
    // as soon as the walk is done with them: the records of the structure walked from are
    // read once, and a flat stream's are most of the memory. Their elements must not be
    // looked at after the walk.
    void SpendRecords(SGdsRecordList* records) { itsSpentRecords = records; }

    // Bytes that the polygons of a structure's boundaries, boxes and paths
    // take at the least, every placement counted, and how many polygons those
    // are; both saturate.
    uint64_t MinimumMemory(SGdsStructure* structure, uint64_t* polygons = nullptr) const;

private:
    struct Frame
    {
        SGdsStructure* structure;
        size_t next;
        // The reference at `next` has its placement on the transform stack.
        bool placing;
        int column;
        int row;
        SPoint columnStep;
        SPoint rowStep;
        int method;
        SPoint savedOffset;
        SPoint savedTranslation;
    };

    SGdsStructure* FindStructure(const SString& name);
    bool Enter(SGdsStructure* structure);
    bool ExpandElements(SGdsStructure* top);
    bool ExpandLeaf(SGdsElement& element);
    bool ExpandBoundary(SGdsElement& element);
    // Starts the reference at the frame's element, or goes on after one of
    // its placements; pushes the frame of the next structure to expand.
    bool StepReference(Frame& frame);
    bool BeginArray(Frame& frame, SGdsElementSref& reference);
    void PlaceCell(Frame& frame, SGdsElementSref& reference);
    void FinishReference(Frame& frame, SGdsElementSref& reference);
    // On to the next cell of an array; false after the last placement.
    bool Advance(Frame& frame, const SGdsElementSref& reference) const;
    int GetArefMethod();
    bool Abandon();
    // Which record chunks hold only points of the top structure's shapes, and after how
    // many of its elements each is done with.
    void PlanRecordRelease(SGdsStructure* top);
    void ReleaseRecords(size_t elementsDone);

    struct RecordRelease
    {
        size_t after;
        size_t chunk;
    };

    SGdsStructureList& itsStructures;
    SGdsPolygonList& itsPolygons;
    SGdsPathConverter itsPaths;
    std::vector<Frame> itsFrames;
    int itsArefMethod = 3;
    bool itsArefMethodKnown = false;
    SGdsRecordList* itsSpentRecords = nullptr;
    std::vector<RecordRelease> itsRecordReleases;
    size_t itsNextRecordRelease = 0;
};

// The flattening step: the named structure of the stream into the polygons; `spent`, when
// given, as SGdsExpander::SpendRecords.
bool ExpandStructure(SGdsStructureList& structures, SGdsPolygonList& polygons, const SString& name,
                     SGdsRecordList* spent = nullptr);

#endif
