#ifndef SGDSLAYERFILE_H
#define SGDSLAYERFILE_H

#include <vector>

#include "SGdsLayerMapping.h"
#include "SLayerFile.h"

class SGdsStructureList;

// What a technology layer of the project tells a layer file being created:
// the project side fills one for each of its layers.
struct SLayerFileTechLayer
{
    SString itsName;
    // Negative when the layer has no stream mapping.
    int itsStreamLayer = -1;
    int itsStreamDatatype = 0;
    // 1 metal, 2 via, 3 brick.
    int itsLayerType = 0;
    int itsLevel = 0;
    // The level is the project's ground level.
    bool itsOnGround = false;
    // For a via: 0 a level number, 1 top, 2 ground.
    int itsToLevelType = 0;
    int itsToLevel = 0;
    SString itsMaterialName;
};

// How a layer file is made from a stream.
struct SLayerFileCreateOptions
{
    // -R: one level for each mapping, in order, with no gaps.
    bool itsRemoveEmptyLayers = false;
    // -1: everything on level 0.
    bool itsSingleLayer = false;
    // The technology layers of the run; empty until a project gives some.
    std::vector<SLayerFileTechLayer> itsTechLayers;
};

// The layer file of a stream: mappings keyed by layer and datatype.
class SGdsLayerFile : public SLayerFile
{
public:
    SGdsLayerFile();

    ClassID isA() const override { return SID_GDSLAYERFILE; }

    SGdsLayerMapping* FindGds(int layer, int datatype) const;

    // A technology layer for each mapping that is on, of purpose metal, brick or via and
    // with a layer name: the project's layer of that name (any case) when it has one, whose
    // level and material the mapping then takes, else a new one on the mapping's level.
    void MakeTechLayers(SXtranProject& project);

    // Fills this file with one mapping for each pair used under the structure
    // and writes it. Prints its own message and returns false when the
    // structure is missing, the hierarchy has a cycle or the file can't be
    // written.
    bool Create(SGdsStructureList& structures, const SString& structureName,
                const SLayerFileCreateOptions& options, const SString& fileName);

    // From the settings; only the layout editor's numbering uses it.
    bool itsUniqueStreamNumbers = false;

protected:
    SLayerMapping* NewMapping(int layer, int datatype) const override;
};

#endif
