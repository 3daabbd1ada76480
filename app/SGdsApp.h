#ifndef SGDSAPP_H
#define SGDSAPP_H

#include "SApplicationManager.h"
#include "SGdsOptions.h"
#include "SString.h"

class SGdsFile;
class SGdsLayerFile;
class SGdsPolygonList;
class SGdsStructureList;

// One run of the translator: a fixed sequence of steps, each returning true
// to go on; a step that fails has printed its message already.
class SGdsApp : public SApplicationManager
{
public:
    SGdsApp();
    ~SGdsApp() override;

    bool Run(int argc, char** argv) override;
    bool LoadStringFiles() override;

    bool IsConverting() const { return itsConvert; }
    const SGdsOptions& GetOptions() const { return itsOptions; }
    static SGdsApp* Instance();

    // The name with its last extension replaced, as for the default names.
    static SString ReplaceExtension(const SString& name, const char* extension);

private:
    bool ReadStream();
    bool BuildStructures();
    bool SelectStructure();
    bool ListStructures();
    bool LoadLayerFile();
    bool CreateProject();
    bool ExpandStructure();
    bool CreateLayerFile();
    void DeriveDefaultNames();

    SGdsOptions itsOptions;
    SString itsGdsFileName;
    SGdsFile* itsGdsFile = nullptr;
    SGdsStructureList* itsStructureList = nullptr;
    SGdsPolygonList* itsPolygonList = nullptr;
    SString itsStructureName;
    SGdsLayerFile* itsLayerFile;
    SString itsLayerFileName;
    SString itsInputProjectName;
    SString itsOutputProjectName;
    double itsConversionFactor = 1.0;
    SString itsMaterialFileName;
    SString itsStructureListFileName;
    bool itsConvert = true;
};

#endif
