#ifndef SGDSAPP_H
#define SGDSAPP_H

#include <vector>

#include "SApplicationManager.h"
#include "SGdsLayerFile.h"
#include "SGdsOptions.h"
#include "SString.h"

class SCircuit;
class SGdsFile;
class SGdsLayerFile;
class SGdsPolygonList;
class SGdsStructureList;
class SXtranProject;

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
    // The project and the flat list aren't freed with the application: the process is ending.
    void LeaveLayoutAtExit() { itsLeaveLayout = true; }
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
    bool WriteMaterialFile();
    bool CreateLayerFile();
    bool UpdateProject();
    bool WriteProject();
    void DeriveDefaultNames();
    bool CheckOutputNames() const;
    // The mode, sizes and via settings of the command line, onto a project.
    void ApplySettings(SXtranProject& project) const;
    // A project, or a material or technology file, read into the project; false after
    // the message.
    bool ReadInputProject(SXtranProject& project, const SString& path);
    // The technology layers of the process named as the project (a material file), when it
    // is one; false after the message when it can't be read.
    bool ProcessTechLayers(std::vector<SLayerFileTechLayer>& list);
    // What a layer file needs to know of a project's technology layers.
    static std::vector<SLayerFileTechLayer> LayerFileTechLayers(const SCircuit& circuit);

    SGdsOptions itsOptions;
    SString itsGdsFileName;
    SGdsFile* itsGdsFile = nullptr;
    SGdsStructureList* itsStructureList = nullptr;
    SGdsPolygonList* itsPolygonList = nullptr;
    SXtranProject* itsProject = nullptr;
    bool itsLeaveLayout = false;
    SString itsStructureName;
    SGdsLayerFile* itsLayerFile;
    SString itsLayerFileName;
    SString itsInputProjectName;
    SString itsOutputProjectName;
    double itsConversionFactor = 1.0;
    SString itsMaterialFileName;
    SString itsStructureListFileName;
    bool itsConvert = true;
    // What the material summary found, for a layer file made in the same run.
    std::vector<SLayerFileTechLayer> itsTechLayers;
    SXtranProject* itsSummaryProject = nullptr;
};

#endif
