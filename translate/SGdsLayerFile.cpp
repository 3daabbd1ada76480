#include "SGdsLayerFile.h"

#include <cstdint>

#include "SGdsDebug.h"
#include "SGdsElement.h"
#include "SGdsStructureList.h"
#include "SInitializationFile.h"
#include "SOrdered.h"

SGdsLayerFile::SGdsLayerFile()
{
    if (SInitializationFile* settings = SInitializationFile::GetGlobal())
        itsUniqueStreamNumbers = settings->GetBool("Planform", "UniqueStreamNumbers", false);
}

SLayerMapping* SGdsLayerFile::NewMapping(int layer, int datatype) const
{
    return new SGdsLayerMapping(layer, datatype);
}

SGdsLayerMapping* SGdsLayerFile::FindGds(int layer, int datatype) const
{
    return static_cast<SGdsLayerMapping*>(Find(layer, datatype));
}

namespace {

// Puts what a technology layer says onto a mapping of its pair.
void ApplyTechLayer(SLayerMapping& mapping, const SLayerFileTechLayer& layer)
{
    mapping.itsTechLayerName = layer.itsName;
    if (layer.itsLayerType == 1) {
        mapping.itsPurpose = kPurposeMetal;
    } else if (layer.itsLayerType == 3) {
        mapping.itsPurpose = kPurposeBrick;
    } else if (layer.itsLayerType == 2) {
        mapping.itsPurpose = kPurposeVia;
        mapping.itsToLevelKind = layer.itsToLevelType;
        if (layer.itsToLevelType == kLevelNumber)
            mapping.SetToGeoNumber(layer.itsToLevel);
    }
    mapping.itsGround = layer.itsOnGround;
    if (layer.itsOnGround)
        mapping.ClearGeoNumber();
    else
        mapping.SetGeoNumber(layer.itsLevel);
    mapping.SetMapName(layer.itsMaterialName);
    mapping.itsMapped = true;
}

} // namespace

bool SGdsLayerFile::Create(SGdsStructureList& structures, const SString& structureName,
                           const SLayerFileCreateOptions& options, const SString& fileName)
{
    if (!structures.FindStructure(structureName)) {
        GdsError("Could not find structure \"%s\" the GDSII file\n", structureName.data());
        return false;
    }
    if (GdsDebug().GetLevel() >= 1)
        GdsDebug().Print("Creating layer file %s\n", fileName.data());

    ClearMappings();
    SOrdered elements;
    if (!structures.CollectElements(elements, structureName))
        return false;
    for (SCollectable* item : elements) {
        const SGdsElement* element = static_cast<const SGdsElement*>(item);
        if (!Find(element->itsLayer, element->itsDatatype))
            AddMapping(element->itsLayer, element->itsDatatype);
    }

    size_t count = Entries();
    if (options.itsRemoveEmptyLayers) {
        for (size_t i = 0; i < count; ++i) {
            int level = i < size_t(INT32_MAX) ? int(i) : INT32_MAX;
            At(i)->SetGeoNumber(level);
            At(i)->SetToGeoNumber(level);
        }
    }
    if (options.itsSingleLayer) {
        for (size_t i = 0; i < count; ++i) {
            At(i)->SetGeoNumber(0);
            At(i)->SetToGeoNumber(0);
        }
    }

    SInitializationFile* settings = SInitializationFile::GetGlobal();
    bool withoutTechLayer = settings && settings->GetBool("Gds", "MapWithoutTechLayer", false);
    // Every technology layer of a pair gets a line of its own.
    SOrdered extra;
    for (size_t i = 0; i < count; ++i) {
        SLayerMapping* mapping = At(i);
        mapping->itsMapped = withoutTechLayer || options.itsTechLayers.empty();
        const SGdsLayerMapping* gds = static_cast<const SGdsLayerMapping*>(mapping);
        for (const SLayerFileTechLayer& layer : options.itsTechLayers) {
            if (layer.itsStreamLayer < 0 || layer.itsStreamDatatype < 0)
                continue;
            if (layer.itsStreamLayer != gds->itsStreamLayer || layer.itsStreamDatatype != gds->itsStreamDatatype)
                continue;
            SLayerMapping* target = mapping;
            if (!mapping->itsTechLayerName.isEmpty()) {
                target = NewMapping(gds->itsStreamLayer, gds->itsStreamDatatype);
                extra.append(target);
            }
            ApplyTechLayer(*target, layer);
        }
    }
    for (SCollectable* item : extra)
        Insert(static_cast<SLayerMapping*>(item));

    if (!Write(fileName)) {
        GdsError("%s\n", GetErrorText().data());
        return false;
    }
    if (GdsDebug().GetLevel() > 4)
        GdsDebug().Print("Finished Creating layer file %s\n", fileName.data());
    return true;
}
