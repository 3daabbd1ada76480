#ifndef SVIASEGMENT_H
#define SVIASEGMENT_H

#include "SViaCoordinates.h"

#include <vector>

// One run of via cells, in the order they were found. The rectangles are held
// by value, side by side.
class SViaSegment : public SCollectable
{
    SCOLLECTABLE_DECLARE(SViaSegment)
    SCOLLECTABLE_COPYABLE(SViaSegment)

public:
    SViaSegment() = default;

    // Element by element, then the shorter first.
    int compareTo(const SCollectable* other) const override;
    bool isEqual(const SCollectable* other) const override { return compareTo(other) == 0; }

    void Append(const SViaCoordinates& coordinates) { itsCells.push_back(coordinates); }
    size_t Entries() const { return itsCells.size(); }
    bool IsEmpty() const { return itsCells.empty(); }
    const SViaCoordinates& At(size_t i) const { return itsCells.at(i); }
    const SViaCoordinates& Last() const { return itsCells.back(); }
    bool Contains(const SViaCoordinates& coordinates) const;
    void Reverse();
    void Clear() { itsCells.clear(); }

    const std::vector<SViaCoordinates>& Cells() const { return itsCells; }
    std::vector<SViaCoordinates>::const_iterator begin() const { return itsCells.begin(); }
    std::vector<SViaCoordinates>::const_iterator end() const { return itsCells.end(); }

private:
    std::vector<SViaCoordinates> itsCells;
};

#endif
