#include "SGdsLayerFile.h"

#include <algorithm>
#include <cstdint>
#include <map>
#include <utility>
#include <vector>

#include <QHash>

#include "SCircuit.h"
#include "SGdsDebug.h"
#include "SGdsElement.h"
#include "SGdsStructureList.h"
#include "SInitializationFile.h"
#include "SOrdered.h"
#include "SBrickType.h"
#include "SMetalType.h"
#include "STechLayer.h"
#include "SViaMetalType.h"
#include "SXtranProject.h"

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
    // One mapping a pair, put in order at once: a stream may use a great many pairs.
    std::vector<std::pair<int, int>> pairs;
    pairs.reserve(elements.entries());
    for (SCollectable* item : elements) {
        const SGdsElement* element = static_cast<const SGdsElement*>(item);
        pairs.emplace_back(element->itsLayer, element->itsDatatype);
    }
    std::sort(pairs.begin(), pairs.end());
    pairs.erase(std::unique(pairs.begin(), pairs.end()), pairs.end());
    DeferInserts();
    for (const auto& pair : pairs)
        AddMapping(pair.first, pair.second);
    InsertPending();

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
    std::map<std::pair<int, int>, std::vector<const SLayerFileTechLayer*>> techLayers;
    for (const SLayerFileTechLayer& layer : options.itsTechLayers) {
        if (layer.itsStreamLayer >= 0 && layer.itsStreamDatatype >= 0)
            techLayers[{layer.itsStreamLayer, layer.itsStreamDatatype}].push_back(&layer);
    }
    SOrdered extra;
    for (size_t i = 0; i < count; ++i) {
        SLayerMapping* mapping = At(i);
        mapping->itsMapped = withoutTechLayer || options.itsTechLayers.empty();
        const SGdsLayerMapping* gds = static_cast<const SGdsLayerMapping*>(mapping);
        auto found = techLayers.find({gds->itsStreamLayer, gds->itsStreamDatatype});
        if (found == techLayers.end())
            continue;
        for (const SLayerFileTechLayer* layer : found->second) {
            SLayerMapping* target = mapping;
            if (!mapping->itsTechLayerName.isEmpty()) {
                target = NewMapping(gds->itsStreamLayer, gds->itsStreamDatatype);
                extra.append(target);
            }
            ApplyTechLayer(*target, *layer);
        }
    }
    DeferInserts();
    for (SCollectable* item : extra)
        Insert(static_cast<SLayerMapping*>(item));
    InsertPending();

    if (!Write(fileName)) {
        GdsError("%s\n", GetErrorText().data());
        return false;
    }
    if (GdsDebug().GetLevel() > 4)
        GdsDebug().Print("Finished Creating layer file %s\n", fileName.data());
    return true;
}

void SGdsLayerFile::MakeTechLayers(SXtranProject& project)
{
    static const struct
    {
        int purpose;
        int layerType;
    } kKinds[] = {{kPurposeMetal, STechLayer::Metal}, {kPurposeBrick, STechLayer::Brick}, {kPurposeVia, STechLayer::Via}};
    const int ground = project.GetGroundLevel();
    // The project's layers by name in any case, the first of a name as the project's own
    // search finds it: a search of them all for each mapping grows with the square of a
    // large layer file.
    QHash<QString, STechLayer*> byName;
    auto known = [&byName](STechLayer* layer) {
        const QString key = layer->GetName().qstring().toCaseFolded();
        if (!byName.contains(key))
            byName.insert(key, layer);
    };
    std::vector<STechLayer*> existing;
    if (project.GetCircuit())
        project.GetCircuit()->GetTechLayers(existing);
    for (STechLayer* layer : existing)
        known(layer);
    for (const auto& kind : kKinds) {
        for (SCollectable* item : itsMappings) {
            SGdsLayerMapping& mapping = *static_cast<SGdsLayerMapping*>(item);
            if (!mapping.itsMapped || mapping.itsPurpose != kind.purpose || mapping.itsTechLayerName.isEmpty() ||
                mapping.itsTechLayerName == "<None>")
                continue;
            STechLayer* layer = byName.value(mapping.itsTechLayerName.qstring().toCaseFolded(), nullptr);
            if (layer) {
                // The project's layer wins: the mapping takes its level, kind and material.
                layer->SetStream(mapping.itsStreamLayer);
                layer->SetData(mapping.itsStreamDatatype);
                const int level = layer->GetLevel();
                mapping.itsGround = level == ground;
                if (mapping.itsGround)
                    mapping.ClearGeoNumber();
                else
                    mapping.SetGeoNumber(level);
                switch (layer->GetLayerType()) {
                case STechLayer::Via:
                    mapping.itsPurpose = kPurposeVia;
                    mapping.itsToLevelKind = layer->GetToLevelType();
                    if (mapping.itsToLevelKind == kLevelNumber)
                        mapping.SetToGeoNumber(layer->GetToLevel());
                    mapping.itsViaType = layer->GetViaMetalType();
                    break;
                case STechLayer::Brick:
                    mapping.itsPurpose = kPurposeBrick;
                    mapping.itsToLevelKind = kLevelNotVia;
                    mapping.itsBrickType = layer->GetBrickType();
                    break;
                default:
                    mapping.itsPurpose = kPurposeMetal;
                    mapping.itsToLevelKind = kLevelNotVia;
                    mapping.itsMetalType = layer->GetMetalType();
                    break;
                }
            } else {
                const int from = mapping.itsGround ? ground : mapping.itsGeoNumber.GetValue();
                int to = 0;
                if (mapping.itsToLevelKind == kLevelAboveGround)
                    to = ground - 1;
                else if (mapping.itsToLevelKind != kLevelTop && mapping.itsToGeoNumber.IsValid())
                    to = mapping.itsToGeoNumber.GetValue();
                layer = project.CreateTechLayer(kind.layerType, mapping.itsTechLayerName, from, to);
                if (!layer)
                    continue;
                known(layer);
                layer->SetStream(mapping.itsStreamLayer);
                layer->SetData(mapping.itsStreamDatatype);
                layer->SetDXFName(SString());
                layer->SetGerberName(SString());
                if (kind.layerType == STechLayer::Via) {
                    const int toType = mapping.itsToLevelKind == kLevelTop      ? STechLayer::ToTop
                                       : mapping.itsToLevelKind == kLevelGround ? STechLayer::ToGround
                                                                                : STechLayer::ToLevelNumber;
                    layer->SetToLevelType(toType);
                    if (toType == STechLayer::ToLevelNumber)
                        layer->SetToLevel(to);
                    layer->SetMaterial(mapping.itsViaType);
                } else if (kind.layerType == STechLayer::Brick) {
                    layer->SetMaterial(mapping.itsBrickType);
                } else {
                    layer->SetMaterial(mapping.itsMetalType);
                }
            }
            mapping.itsTechLayer = layer;
        }
    }
}
