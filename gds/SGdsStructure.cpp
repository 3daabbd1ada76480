#include "SGdsStructure.h"

#include "SGdsElement.h"
#include "SGdsStructureList.h"

SGdsStructure::SGdsStructure()
    : SCollectableString("UNDEFINED")
{
}

SGdsStructure::~SGdsStructure()
{
    // Elements live in the arena of the structure list; only their
    // destructors run here.
    size_t count = itsElements.entries();
    for (size_t i = 0; i < count; ++i)
        SGdsStructureList::DestroyElement(static_cast<SGdsElement*>(itsElements.at(i)));
    itsElements.clear();
}

bool SGdsStructure::AddElement(SGdsElement* element)
{
    if (itsOpenElement)
        return false;
    itsElements.append(element);
    itsOpenElement = element;
    return true;
}

int64_t SGdsStructure::GetSize(SGdsStructureList& list)
{
    if (itsSizeKnown)
        return itsSize;
    if (itsSizing)
        return 0;
    itsSizing = true;
    int64_t sum = 0;
    size_t count = itsElements.entries();
    for (size_t i = 0; i < count; ++i)
        sum += static_cast<SGdsElement*>(itsElements.at(i))->GetSize(list);
    itsSize = sum;
    itsSizing = false;
    itsSizeKnown = true;
    return sum;
}

bool SGdsStructure::CollectElements(SOrdered& elements, SGdsStructureList& list)
{
    size_t count = itsElements.entries();
    for (size_t i = 0; i < count; ++i) {
        if (!static_cast<SGdsElement*>(itsElements.at(i))->CollectElements(elements, list))
            return false;
    }
    return true;
}
