#include "SViaCoordinates.h"

#include <initializer_list>

SCOLLECTABLE_DEFINE(SViaCoordinates, SID_VIACOORDINATES, &SCollectable::staticTypeInfo())

int SViaCoordinates::compareTo(const SCollectable* other) const
{
    if (!other || !other->isKindOf(SID_VIACOORDINATES))
        return SCollectable::compareTo(other);
    const SViaCoordinates& o = static_cast<const SViaCoordinates&>(*other);
    const int32_t mine[4] = {itsY1, itsX1, itsY2, itsX2};
    const int32_t theirs[4] = {o.itsY1, o.itsX1, o.itsY2, o.itsX2};
    for (int i = 0; i < 4; ++i) {
        if (mine[i] != theirs[i])
            return mine[i] < theirs[i] ? -1 : 1;
    }
    return 0;
}

bool SViaCoordinates::isEqual(const SCollectable* other) const
{
    return other && other->isKindOf(SID_VIACOORDINATES) && *this == static_cast<const SViaCoordinates&>(*other);
}

unsigned SViaCoordinates::hash() const
{
    uint64_t h = 1469598103934665603ull;
    for (int32_t v : {itsX1, itsX2, itsY1, itsY2}) {
        h ^= static_cast<uint32_t>(v);
        h *= 1099511628211ull;
    }
    return static_cast<unsigned>(h ^ (h >> 32));
}
