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
    void Push(SXtrans* transform)
    {
        itsEntries.push_back(transform);
        itsComposed = false;
    }
    // Nothing on an empty list.
    void Pop()
    {
        if (!itsEntries.empty())
            itsEntries.pop_back();
        itsComposed = false;
    }
    void Clear()
    {
        itsEntries.clear();
        itsComposed = false;
    }
    size_t Entries() const { return itsEntries.size(); }
    SXtrans* At(size_t i) const { return itsEntries[i]; }

    // Places a point of the innermost structure in the top structure. An
    // absolute angle or magnification takes the outer rotations or
    // magnifications out again about the flagged reference's own origin.
    SPoint Transform(const SPoint& point) const;
    // The magnification a path width sees: the product from the innermost
    // entry outwards, up to and including the first absolute one.
    double GetMagnification() const;
    // Transform, then times `factor`, rounded to six digits, exactly as that
    // would. The whole list is composed into one matrix once per placement
    // (right angles and unit magnifications exactly), and a coordinate too near
    // a rounding tie, or zero, for the polar turns' last-place errors to be
    // ruled out takes the polar road. An entry changed while on the list must
    // be pushed again.
    SPoint PlaceRounded(const SPoint& point, double factor) const;
    // Points that PlaceRounded placed through the matrix.
    size_t GetComposedPlacements() const { return itsComposedPlacements; }

private:
    // Fills the matrix, or finds that absolute flags forbid one.
    void Compose() const;

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

    // placed = itsMatrix * point + itsShift, within itsErrorScale * |point| +
    // itsErrorBase of what Transform gives.
    mutable bool itsComposed = false;
    mutable bool itsComposable = false;
    mutable double itsMatrix[4] = {1.0, 0.0, 0.0, 1.0};
    mutable double itsShift[2] = {0.0, 0.0};
    mutable double itsErrorScale = 0.0;
    mutable double itsErrorBase = 0.0;
    mutable size_t itsComposedPlacements = 0;
};

#endif
