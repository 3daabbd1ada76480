#ifndef SGDSSTRUCTURE_H
#define SGDSSTRUCTURE_H

#include <cstdint>

#include "SCollectableString.h"
#include "SOrdered.h"

class SGdsElement;
class SGdsStructureList;

// Sizes of huge nested arrays saturate rather than wrap.
inline int64_t SaturatedAdd(int64_t a, int64_t b)
{
    int64_t sum;
    if (__builtin_add_overflow(a, b, &sum))
        return b < 0 ? INT64_MIN : INT64_MAX;
    return sum;
}

inline int64_t SaturatedMultiply(int64_t a, int64_t b)
{
    int64_t product;
    if (__builtin_mul_overflow(a, b, &product))
        return (a < 0) != (b < 0) ? INT64_MIN : INT64_MAX;
    return product;
}

// A named structure with its elements in file order.
class SGdsStructure : public SCollectableString
{
public:
    SGdsStructure();
    ~SGdsStructure() override;

    // False when an element is still open; the caller reports that.
    bool AddElement(SGdsElement* element);
    void CloseElement() { itsOpenElement = nullptr; }
    SGdsElement* GetOpenElement() const { return itsOpenElement; }
    const SOrdered& GetElements() const { return itsElements; }

    // Leaf elements an expansion visits; 0 for a structure met again while
    // its own size is being worked out (a reference cycle).
    int64_t GetSize(SGdsStructureList& list);
    virtual bool CollectElements(SOrdered& elements, SGdsStructureList& list);

    SOrdered itsElements;
    SGdsElement* itsOpenElement = nullptr;
    bool itsExpanding = false;
    int64_t itsSize = 0;
    bool itsSizeKnown = false;
    bool itsSizing = false;
    int64_t itsBgnstrRecord = -1;
};

#endif
