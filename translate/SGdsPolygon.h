#ifndef SGDSPOLYGON_H
#define SGDSPOLYGON_H

#include <cstdint>

#include "SCollectable.h"
#include "SPoint.h"
#include "SRect.h"

class SGdsPolygonList;

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
    // The empty rectangle for a polygon without points.
    virtual SRect GetBoundingBox() const;

    int GetPointCount() const { return int(itsPointCount); }
    const SPoint& GetPoint(int i) const { return itsPoints[i]; }
    const SPoint* begin() const { return itsPoints; }
    const SPoint* end() const { return itsPoints + itsPointCount; }

    // Every coordinate kept to six significant digits, as printing with "%g"
    // and reading back would.
    void RoundPoints();
    static double RoundToSixDigits(double value);

    // The number the last polygon made took; 0 before the first.
    static int64_t GetLastId();

    int64_t gdspolyid;
    int32_t itsLayer = -1;
    int32_t itsDatatype = -1;

private:
    friend class SGdsPolygonList;

    SPoint* itsPoints = nullptr;
    uint32_t itsPointCount = 0;
    uint32_t itsPointCapacity = 0;
};

#endif
