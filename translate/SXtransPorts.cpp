#include "SXtransPorts.h"

#include <algorithm>

void SXtransPorts::Add(SPort* port, int type, int side, int level, const SPoint& position)
{
    itsEntries.push_back(Entry{port, type, side, level, position});
}

bool SXtransPorts::Before(const Entry& a, const Entry& b)
{
    if (a.itsType != b.itsType)
        return a.itsType < b.itsType;
    if (a.itsSide != b.itsSide)
        return a.itsSide < b.itsSide;
    if (a.itsLevel != b.itsLevel)
        return a.itsLevel < b.itsLevel;
    const bool alongY = a.itsSide == 0 || a.itsSide == 1;
    const double first = alongY ? a.itsPosition.y() : a.itsPosition.x();
    const double second = alongY ? b.itsPosition.y() : b.itsPosition.x();
    if (SPoint::NearlyEqual(first, second))
        return false;
    return first < second;
}

// The tolerant comparison isn't transitive; a merge sort stays within bounds all the same.
void SXtransPorts::Sort()
{
    std::stable_sort(itsEntries.begin(), itsEntries.end(), Before);
}
