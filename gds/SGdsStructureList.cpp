#include "SGdsStructureList.h"

#include <cstdio>
#include <unordered_set>
#include <vector>

#include "SGdsDebug.h"
#include "SGdsElement.h"
#include "SGdsRecord.h"
#include "SGdsStructure.h"
#include "SSafeSave.h"

SGdsStructureList::SGdsStructureList()
    : itsLibraryName("NotDefined")
{
}

SGdsStructureList::~SGdsStructureList()
{
    itsStructures.clearAndDestroy();
    for (SGdsStructure* structure : itsUnnamed)
        delete structure;
}

SGdsStructure* SGdsStructureList::OpenStructure(int64_t bgnstrRecord)
{
    SGdsStructure* structure = new SGdsStructure;
    structure->itsBgnstrRecord = bgnstrRecord;
    // Owned here until a STRNAME enters it in the table.
    itsUnnamed.push_back(structure);
    itsOpenStructure = structure;
    return structure;
}

SGdsElement* SGdsStructureList::GetOpenElement() const
{
    return itsOpenStructure ? itsOpenStructure->GetOpenElement() : nullptr;
}

void SGdsStructureList::SetStructureName(const SString& name)
{
    SGdsStructure* structure = itsOpenStructure;
    if (!structure)
        return;
    static_cast<SString&>(*structure) = name;
    for (auto it = itsUnnamed.begin(); it != itsUnnamed.end(); ++it) {
        if (*it == structure) {
            itsUnnamed.erase(it);
            itsStructures.append(structure);
            break;
        }
    }
    if (!itsByName.contains(name.qstring()))
        itsByName.insert(name.qstring(), structure);
}

SGdsStructure* SGdsStructureList::RequireOpenStructure(const SGdsRecord& record)
{
    if (!itsOpenStructure)
        GdsError("GDS File format error (record = %ld): Found %s without a matching BGNSTR.\n",
                 long(record.GetRecordNumber()), record.GetName());
    return itsOpenStructure;
}

bool SGdsStructureList::AddElement(SGdsElement* element, const SGdsRecord& record)
{
    SGdsStructure* structure = RequireOpenStructure(record);
    if (structure && structure->AddElement(element))
        return true;
    if (structure)
        GdsError("GDS File format error (record = %ld): Found %s record expecting a ENDEL.\n",
                 long(record.GetRecordNumber()), record.GetName());
    DestroyElement(element);
    return false;
}

namespace {

void RescaleElement(SGdsElement& element, double scale)
{
    if (element.IsPath()) {
        SGdsElementPath& path = static_cast<SGdsElementPath&>(element);
        double* lengths[3] = {&path.itsWidth, &path.itsBeginExtension, &path.itsEndExtension};
        for (int i = 0; i < 3; ++i)
            if (path.itsRawLengthsSet & (1u << i))
                *lengths[i] = scale * double(path.itsRawLengths[i]);
        return;
    }
    if (!element.IsReference())
        return;
    SGdsElementSref& reference = static_cast<SGdsElementSref&>(element);
    if (!reference.itsRawPointsSet)
        return;
    auto point = [&](int i) {
        return SPoint(scale * double(reference.itsRawPoints[2 * i]), scale * double(reference.itsRawPoints[2 * i + 1]));
    };
    reference.itsTransform.itsTranslation = point(0);
    if (reference.GetName()[0] == 'A') {
        SGdsElementAref& array = static_cast<SGdsElementAref&>(reference);
        array.itsReferencePoint = point(0);
        array.itsColumnPoint = point(1);
        array.itsRowPoint = point(2);
    }
}

} // namespace

void SGdsStructureList::Rescale()
{
    const double scale = SGdsRecord::GetScale();
    if (!itsScaleUsed || (!itsScalesDiffer && scale == itsUsedScale))
        return;
    auto walk = [scale](SGdsStructure* structure) {
        const SOrdered& elements = structure->GetElements();
        for (size_t i = 0; i < elements.entries(); ++i)
            RescaleElement(*static_cast<SGdsElement*>(elements.at(i)), scale);
    };
    for (size_t i = 0; i < itsStructures.entries(); ++i)
        walk(static_cast<SGdsStructure*>(itsStructures.at(i)));
    for (SGdsStructure* structure : itsUnnamed)
        walk(structure);
    itsUsedScale = scale;
    itsScalesDiffer = false;
}

void SGdsStructureList::DestroyElement(SGdsElement* element)
{
    // The memory goes with the arena.
    element->~SGdsElement();
}

SGdsStructure* SGdsStructureList::FindStructure(const SString& name) const
{
    return itsByName.value(name.qstring(), nullptr);
}

int64_t SGdsStructureList::GetSize(const SString& name)
{
    SGdsStructure* structure = FindStructure(name);
    return structure ? structure->GetSize(*this) : 0;
}

SString SGdsStructureList::GetDefaultStructure(int mode)
{
    if (itsStructures.isEmpty())
        return SString();
    if (mode == kDefaultStructureFirst)
        return *static_cast<SGdsStructure*>(itsStructures.first());
    if (mode == kDefaultStructureLast)
        return *static_cast<SGdsStructure*>(itsStructures.last());
    SGdsDebug& debug = GdsDebug();
    SGdsStructure* best = nullptr;
    int64_t maximum = 0;
    size_t count = itsStructures.entries();
    for (size_t i = 0; i < count; ++i) {
        SGdsStructure* structure = static_cast<SGdsStructure*>(itsStructures.at(i));
        int64_t size = structure->GetSize(*this);
        if (debug.GetLevel() > 3)
            debug.Print("Structure %s size is %lld\n", structure->data(), (long long)size);
        if (size > maximum) {
            maximum = size;
            best = structure;
        }
    }
    if (!best)
        return SString();
    if (debug.GetLevel() > 3)
        debug.Print("Best Structure %s size is %lld\n", best->data(), (long long)maximum);
    return *best;
}

bool SGdsStructureList::CollectElements(SOrdered& elements, const SString& name)
{
    SGdsStructure* top = FindStructure(name);
    if (!top) {
        GdsError("Structure %s is referenced, but not defined in the GDSII file\n", name.data());
        return true;
    }
    // A structure holds the same leaves wherever it is placed, so each one is walked once:
    // a hierarchy that places its structures 2^60 times costs what the file holds. The walk
    // keeps its own stack, as a stream may nest deeper than the program's stack allows.
    struct Step
    {
        SGdsStructure* structure;
        size_t next;
        // The reference that led here, marked while its structure is walked.
        SGdsElementSref* via;
    };
    std::unordered_set<const SGdsStructure*> done;
    std::vector<Step> steps{Step{top, 0, nullptr}};
    while (!steps.empty()) {
        Step& step = steps.back();
        if (step.next == step.structure->itsElements.entries()) {
            done.insert(step.structure);
            if (step.via)
                step.via->itsCollecting = false;
            steps.pop_back();
            continue;
        }
        SGdsElement* element = static_cast<SGdsElement*>(step.structure->itsElements.at(step.next++));
        if (!element->IsReference()) {
            element->CollectElements(elements, *this);
            continue;
        }
        SGdsElementSref* reference = static_cast<SGdsElementSref*>(element);
        // A structure met again before it is done lies on the current path: walking it
        // again reaches the reference still marked, which closes the cycle.
        if (reference->itsCollecting) {
            GdsError("GDSII file contains a circular reference for structure = %s\n",
                     reference->itsStructureName.data());
            for (const Step& open : steps) {
                if (open.via)
                    open.via->itsCollecting = false;
            }
            return false;
        }
        SGdsStructure* child = FindStructure(reference->itsStructureName);
        if (!child) {
            GdsError("Structure %s is referenced, but not defined in the GDSII file\n",
                     reference->itsStructureName.data());
            continue;
        }
        if (done.count(child))
            continue;
        reference->itsCollecting = true;
        steps.push_back(Step{child, 0, reference});
    }
    return true;
}

bool SGdsStructureList::ListStructures(const SString& fileName, int mode)
{
    size_t count = itsStructures.entries();
    if (fileName.isEmpty()) {
        for (size_t i = 0; i < count; ++i)
            printf("%s\n", static_cast<SGdsStructure*>(itsStructures.at(i))->data());
        fflush(stdout);
        return true;
    }
    SString primary = GetDefaultStructure(mode);
    QByteArray text = primary.toUtf8() + "\n\n";
    for (size_t i = 0; i < count; ++i)
        text += static_cast<SGdsStructure*>(itsStructures.at(i))->toUtf8() + "\n";
    // Whole or not at all: a list cut short would name a wrong set of structures.
    SSafeSave save(fileName);
    if (!save.Commit(text.constData(), size_t(text.size()))) {
        GdsError("Can not write to file %s\n", fileName.data());
        return false;
    }
    return true;
}
