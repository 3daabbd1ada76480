#ifndef SGDSPOLYGON_H
#define SGDSPOLYGON_H

#include <cstdint>
#include <vector>

#include "SCollectable.h"
#include "SPoint.h"
#include "SRect.h"

class SGdsLayerFile;
class SGdsPolygonList;
class SOrdered;
class SPolygonEdge;
class SXtranProject;

enum SGdsPolygonClassID : ClassID { SID_GDSPOLYGON = 3152 };

// One flat polygon in stream units times the conversion factor, as the
// expansion made it; a boundary keeps the stream's closing point. The points
// lie contiguously in memory that the list owns, so a polygon can be neither
// copied nor destroyed on its own.
class SGdsPolygon : public SCollectable
{
    SCOLLECTABLE_DECLARE(SGdsPolygon)

public:
    // Takes the next number of the process-wide count.
    SGdsPolygon();
    SGdsPolygon(const SGdsPolygon&) = delete;
    SGdsPolygon& operator=(const SGdsPolygon&) = delete;

    // Appends one point: placed through the list's transforms when asked,
    // then multiplied by the list's conversion factor.
    virtual void AddPoint(SGdsPolygonList& list, const SPoint& point, bool transform);
    // Rounds the points, then adds one project polygon for each mapping of its pair.
    // False only when the project refused one. `scratch` is an empty list the caller
    // lends, so that looking up millions of polygons allocates nothing.
    virtual bool AddToCircuit(SXtranProject& project, const SGdsLayerFile& layerFile, SOrdered& scratch);
    // For each port mapping of its pair, the project edge the polygon lies across.
    // False when it has a port mapping and found no edge.
    virtual bool FindPortEdges(SXtranProject& project, const SGdsLayerFile& layerFile,
                               std::vector<SPolygonEdge>& edges);
    // True, with the polygon's box, when a substrate mapping of its pair is on.
    virtual bool GetSubstrateBox(const SGdsLayerFile& layerFile, SRect& rect);
    // The highest level a metal, brick, via or hole mapping of its pair names.
    virtual uint64_t GetMaxLevel(const SGdsLayerFile& layerFile, SOrdered& scratch) const;
    // The empty rectangle for a polygon without points.
    virtual SRect GetBoundingBox() const;
    virtual void Translate(const SPoint& delta);
    // Every point in the rectangle, edges included.
    virtual bool IsInside(const SRect& rect) const;
    virtual bool IsFirstPointInside(const SRect& rect) const;

    int GetPointCount() const { return int(itsPointCount); }
    const SPoint& GetPoint(int i) const { return itsPoints[i]; }
    const SPoint* begin() const { return itsPoints; }
    const SPoint* end() const { return itsPoints + itsPointCount; }

    // Every coordinate kept to six significant digits, as printing with "%g"
    // and reading back would.
    void RoundPoints();
    static double RoundToSixDigits(double value);
    // The value rounded as RoundToSixDigits does, when every value within
    // `margin` of it rounds the same; false near a tie or near zero.
    static bool RoundAwayFromTie(double value, double margin, double& rounded);

    // The number the last polygon made took; 0 before the first.
    static int64_t GetLastId();
    // The process-wide count of project polygons attempted: the next fileid.
    static int64_t TakeFileId();
    // Raises the count so that the next fileid lies above `id`.
    static void SkipFileIds(int64_t id);

    int64_t gdspolyid;
    int32_t itsLayer = -1;
    int32_t itsDatatype = -1;

private:
    friend class SGdsPolygonList;

    SPoint* itsPoints = nullptr;
    uint32_t itsPointCount = 0;
    uint32_t itsPointCapacity : 31;
    // Every point placed already rounded, so that RoundPoints has nothing to do.
    uint32_t itsRounded : 1;
};

#endif
