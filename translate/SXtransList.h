#ifndef SXTRANSLIST_H
#define SXTRANSLIST_H

#include <cstddef>
#include <cstdint>
#include <vector>

#include "SPoint.h"

class SXtrans;

// The placements from the top structure down to the one being expanded: the
// outermost reference first. The entries belong to the elements.
class SXtransList
{
public:
    void Push(SXtrans* transform) { itsEntries.push_back(transform); }
    // Nothing on an empty list.
    void Pop()
    {
        if (!itsEntries.empty())
            itsEntries.pop_back();
    }
    void Clear() { itsEntries.clear(); }
    size_t Entries() const { return itsEntries.size(); }
    SXtrans* At(size_t i) const { return itsEntries[i]; }

    // Places a point of the innermost structure in the top structure. An
    // absolute angle or magnification takes the outer rotations or
    // magnifications out again about the flagged reference's own origin.
    SPoint Transform(const SPoint& point) const;
    // The magnification a path width sees: the product from the innermost
    // entry outwards, up to and including the first absolute one.
    double GetMagnification() const;

private:
    // One entry's placement of a point. The polar turn costs an arc tangent,
    // a root, a sine and a cosine, and in arrays and repeated references the
    // same points meet the same rotation again and again, so turned points
    // are remembered by their exact bits.
    SPoint Place(const SXtrans& entry, const SPoint& point) const;

    struct Turned
    {
        uint64_t key[4];
        bool used;
        SPoint turned;
    };

    std::vector<SXtrans*> itsEntries;
    mutable std::vector<Turned> itsTurned;
    mutable unsigned itsLookups = 0;
    mutable unsigned itsHits = 0;
    mutable unsigned itsBypass = 0;
};

#endif
