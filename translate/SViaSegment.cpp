#include "SViaSegment.h"

#include <algorithm>

SCOLLECTABLE_DEFINE(SViaSegment, SID_VIASEGMENT, &SCollectable::staticTypeInfo())

int SViaSegment::compareTo(const SCollectable* other) const
{
    if (!other || !other->isKindOf(SID_VIASEGMENT))
        return SCollectable::compareTo(other);
    const SViaSegment& o = static_cast<const SViaSegment&>(*other);
    const size_t n = std::min(itsCells.size(), o.itsCells.size());
    for (size_t i = 0; i < n; ++i) {
        const int c = itsCells[i].compareTo(&o.itsCells[i]);
        if (c != 0)
            return c;
    }
    if (itsCells.size() == o.itsCells.size())
        return 0;
    return itsCells.size() < o.itsCells.size() ? -1 : 1;
}

bool SViaSegment::Contains(const SViaCoordinates& coordinates) const
{
    return std::find(itsCells.begin(), itsCells.end(), coordinates) != itsCells.end();
}

void SViaSegment::Reverse()
{
    std::reverse(itsCells.begin(), itsCells.end());
}
