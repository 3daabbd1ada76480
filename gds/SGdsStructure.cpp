#include "SGdsStructure.h"

#include <vector>

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

namespace {

// How many placements of the referred structure an element stands for.
int64_t Placements(const SGdsElement* element)
{
    if (element->GetName()[0] != 'A')
        return 1;
    const SGdsElementAref* array = static_cast<const SGdsElementAref*>(element);
    return SaturatedMultiply(array->itsColumns, array->itsRows);
}

} // namespace

int64_t SGdsStructure::GetSize(SGdsStructureList& list)
{
    if (itsSizeKnown)
        return itsSize;
    if (itsSizing)
        return 0;
    // Walked with a stack of its own: a stream may nest structures deeper
    // than the program's stack would allow.
    struct Frame
    {
        SGdsStructure* structure;
        size_t next;
        int64_t sum;
    };
    std::vector<Frame> frames;
    itsSizing = true;
    frames.push_back(Frame{this, 0, 0});
    while (!frames.empty()) {
        Frame& frame = frames.back();
        SGdsStructure* structure = frame.structure;
        if (frame.next == structure->itsElements.entries()) {
            int64_t size = frame.sum;
            structure->itsSize = size;
            structure->itsSizing = false;
            structure->itsSizeKnown = true;
            frames.pop_back();
            if (!frames.empty()) {
                Frame& parent = frames.back();
                const SGdsElement* element = static_cast<const SGdsElement*>(parent.structure->itsElements.at(parent.next));
                parent.sum = SaturatedAdd(parent.sum, SaturatedMultiply(size, Placements(element)));
                ++parent.next;
            }
            continue;
        }
        const SGdsElement* element = static_cast<const SGdsElement*>(structure->itsElements.at(frame.next));
        if (!element->IsReference()) {
            frame.sum = SaturatedAdd(frame.sum, 1);
            ++frame.next;
            continue;
        }
        SGdsStructure* child = list.FindStructure(static_cast<const SGdsElementSref*>(element)->itsStructureName);
        if (child && !child->itsSizeKnown && !child->itsSizing) {
            child->itsSizing = true;
            frames.push_back(Frame{child, 0, 0});
            continue;
        }
        // Unknown, or met again inside a cycle: nothing.
        int64_t size = child && child->itsSizeKnown ? child->itsSize : 0;
        frame.sum = SaturatedAdd(frame.sum, SaturatedMultiply(size, Placements(element)));
        ++frame.next;
    }
    return itsSize;
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
