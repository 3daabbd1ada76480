#ifndef SXTRANSPORTS_H
#define SXTRANSPORTS_H

#include <cstddef>
#include <vector>

#include "SPoint.h"

class SPort;

// The order in which a translation numbers its ports: by port type, then by the side of
// the box (left, right, top, bottom, none), then by level, then along the side: y on the
// left and right walls, x on the top and bottom ones. Coordinates compare with the
// tolerance of SPoint, so ports a rounding apart count as level with each other.
class SXtransPorts
{
public:
    void Add(SPort* port, int type, int side, int level, const SPoint& position);
    // Stable: ports that compare equal keep the order they were added in.
    void Sort();
    size_t Count() const { return itsEntries.size(); }
    SPort* At(size_t i) const { return itsEntries[i].itsPort; }

    struct Entry
    {
        SPort* itsPort;
        int itsType;
        int itsSide;
        int itsLevel;
        SPoint itsPosition;
    };
    // True when a goes before b.
    static bool Before(const Entry& a, const Entry& b);

private:
    std::vector<Entry> itsEntries;
};

#endif
