#ifndef SVIACOORDINATES_H
#define SVIACOORDINATES_H

#include "SCollectable.h"

#include <cstddef>
#include <cstdint>

// One rectangle of the via grid, in half cells: even indices lie on cell
// boundaries, odd ones are cell centres. A single cell spans two indices.
class SViaCoordinates : public SCollectable
{
    SCOLLECTABLE_DECLARE(SViaCoordinates)
    SCOLLECTABLE_COPYABLE(SViaCoordinates)

public:
    SViaCoordinates() = default;
    SViaCoordinates(int32_t x1, int32_t x2, int32_t y1, int32_t y2) : itsX1(x1), itsX2(x2), itsY1(y1), itsY2(y2) {}
    // The cell whose centre has the odd indices (x, y).
    static SViaCoordinates Cell(int32_t x, int32_t y) { return SViaCoordinates(x - 1, x + 1, y - 1, y + 1); }

    int compareTo(const SCollectable* other) const override;
    bool isEqual(const SCollectable* other) const override;
    unsigned hash() const override;
    bool operator==(const SViaCoordinates& other) const
    {
        return itsX1 == other.itsX1 && itsX2 == other.itsX2 && itsY1 == other.itsY1 && itsY2 == other.itsY2;
    }
    bool operator!=(const SViaCoordinates& other) const { return !(*this == other); }

    int32_t CenterX() const { return itsX1 + (itsX2 - itsX1) / 2; }
    int32_t CenterY() const { return itsY1 + (itsY2 - itsY1) / 2; }
    bool IsCell() const { return itsX2 - itsX1 == 2 && itsY2 - itsY1 == 2; }

    int32_t itsX1 = 0;
    int32_t itsX2 = 0;
    int32_t itsY1 = 0;
    int32_t itsY2 = 0;
};

struct SViaCoordinatesHash
{
    size_t operator()(const SViaCoordinates& c) const { return c.hash(); }
};

enum SViaClassID : ClassID { SID_VIACOORDINATES = 3170, SID_VIASEGMENT = 3171 };

#endif
