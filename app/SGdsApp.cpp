#include "SGdsApp.h"

#include <QFile>
#include <QFileInfo>
#include <sys/stat.h>
#include <QRegExp>
#include <cstdio>
#include <unistd.h>

#include "SGdsDebug.h"
#include "SGdsFile.h"
#include "SGdsExpander.h"
#include "SGdsLayerFile.h"
#include "SGdsPathConverter.h"
#include "SGdsPolygonList.h"
#include "SGdsRecord.h"
#include "SGdsStructureList.h"
#include "SErrorMessages.h"
#include "SCircuit.h"
#include "SCircuitPolygonOps.h"
#include "SCvtMaterialFile.h"
#include "SDimensionBlock.h"
#include "SLevel.h"
#include "SMatl.h"
#include "SXmatl.h"
#include "SProjectOperations.h"
#include "SProgress.h"
#include "SProjectStream.h"
#include "STechLayer.h"
#include "SVeloraError.h"
#include "SXtranProject.h"

#include <algorithm>
#include <string>

namespace {
SGdsApp* theApp = nullptr;
}

SGdsApp::SGdsApp()
    : itsLayerFile(new SGdsLayerFile)
{
    theApp = this;
}

SGdsApp::~SGdsApp()
{
    delete itsGdsFile;
    delete itsStructureList;
    if (!itsLeaveLayout) {
        delete itsPolygonList;
        delete itsProject;
    }
    delete itsLayerFile;
    delete itsSummaryProject;
    if (theApp == this)
        theApp = nullptr;
}

SGdsApp* SGdsApp::Instance()
{
    return theApp;
}

bool SGdsApp::LoadStringFiles()
{
    SApplicationManager::LoadStringFiles();
    SErrorMessages::LoadStringFile("strings_gds.h");
    SErrorMessages::LoadStringFile("strings_matl.h");
    return true;
}

SString SGdsApp::ReplaceExtension(const SString& name, const char* extension)
{
    QString text = name.qstring();
    QRegExp pattern("\\.[^\\.\\\\/]*$");
    int at = pattern.indexIn(text);
    if (at >= 0)
        text.truncate(at);
    text += '.';
    text += QString::fromLatin1(extension);
    return SString(text);
}

void SGdsApp::DeriveDefaultNames()
{
    itsInputProjectName = itsOptions.itsInputProject.isEmpty() ? ReplaceExtension(itsGdsFileName, "vel")
                                                               : itsOptions.itsInputProject;
    itsOutputProjectName = itsOptions.itsOutputProject.isEmpty() ? ReplaceExtension(itsGdsFileName, "vel")
                                                                 : itsOptions.itsOutputProject;
    itsLayerFileName = itsOptions.itsLayerFile.isEmpty() ? ReplaceExtension(itsGdsFileName, "lay")
                                                         : itsOptions.itsLayerFile;
}

bool SGdsApp::Run(int argc, char** argv)
{
    // Only a person watching a terminal wants it; files, pipes and logs stay as they were.
    if (isatty(STDERR_FILENO))
        Progress().Enable(stderr, isatty(STDOUT_FILENO), "gds");
    if (!LoadStringFiles())
        return false;
    CreateTrace();
    DumpCommandLine(argc, argv);
    if (!itsOptions.Parse(argc, argv))
        return false;

    ShortFormat = itsOptions.itsShortFormat;
    AsciiInput = itsOptions.itsAsciiInput;
    VerboseOutput = itsOptions.itsVerbose;
    ZeroBoxType = itsOptions.itsZeroBoxType;
    ConvertBoxes = itsOptions.itsConvertBoxes;
    if (!itsOptions.itsPathConversion.isEmpty())
        SetPathConversionMode(itsOptions.itsPathConversion);

    itsMaterialFileName = itsOptions.itsMaterialFile;
    itsStructureListFileName = itsOptions.itsStructureListFile;
    itsConvert = itsOptions.itsTranslate;
    itsGdsFileName = itsOptions.itsGdsFile;
    DeriveDefaultNames();
    if (!CheckOutputNames())
        return false;
    if (!itsOptions.itsTraceFile.isEmpty() && !GdsDebug().OpenTraceFile(QFile::encodeName(itsOptions.itsTraceFile.qstring()).constData()))
        return false;

    bool read = ReadStream();
    if (itsOptions.itsShortFormat || itsOptions.itsRecordTags || !read)
        return read;
    if (!BuildStructures() || !SelectStructure())
        return false;
    if (itsOptions.itsListStructures && !ListStructures())
        return false;
    if (!itsConvert && !itsOptions.itsCreateLayerFile && itsMaterialFileName.isEmpty())
        return true;
    if (!itsOptions.itsCreateLayerFile && !LoadLayerFile())
        return false;
    if (!CreateProject() || !ExpandStructure())
        return false;
    // A summary that was asked for and could not be written fails the run, as a project does.
    if (!itsMaterialFileName.isEmpty() && !WriteMaterialFile())
        return false;
    if (itsOptions.itsCreateLayerFile)
        return CreateLayerFile();
    if (!itsConvert)
        return true;
    // The flat polygons are all that is left to use: the stream's records and structures go
    // now, and the project's polygons take over their memory.
    delete itsStructureList;
    itsStructureList = nullptr;
    delete itsGdsFile;
    itsGdsFile = nullptr;
    if (!UpdateProject() || !WriteProject())
        return false;
    if (itsOptions.itsVerbose)
        GdsVerbose("Conversion completed\n");
    if (GdsDebug().GetLevel() > 3)
        GdsDebug().Print("Conversion completed\n");
    return true;
}

namespace {

struct SNamedFile
{
    const char* role;
    SString name;
};

// One file under two names, whether or not it exists yet: the same inode for files that
// exist, else the same absolute path with links in the directory resolved.
bool SameFile(const SString& a, const SString& b)
{
    struct stat first, second;
    const QByteArray aBytes = QFile::encodeName(a.qstring());
    const QByteArray bBytes = QFile::encodeName(b.qstring());
    const bool aExists = ::stat(aBytes.constData(), &first) == 0;
    const bool bExists = ::stat(bBytes.constData(), &second) == 0;
    if (aExists && bExists)
        return first.st_dev == second.st_dev && first.st_ino == second.st_ino;
    if (aExists != bExists)
        return false;
    auto where = [](const SString& name) {
        const QFileInfo info(name.qstring());
        const QString directory = QFileInfo(info.absolutePath()).canonicalFilePath();
        return (directory.isEmpty() ? info.absolutePath() : directory) + QLatin1Char('/') + info.fileName();
    };
    return where(a) == where(b);
}

} // namespace

bool SGdsApp::CheckOutputNames() const
{
    const bool translating = itsConvert && !itsOptions.itsCreateLayerFile;
    const bool readsProject = !itsOptions.itsNewProject &&
                              (itsConvert || itsOptions.itsCreateLayerFile || !itsMaterialFileName.isEmpty());
    std::vector<SNamedFile> inputs = {{"input stream", itsGdsFileName}};
    if (!itsOptions.itsCreateLayerFile && QFileInfo::exists(itsLayerFileName.qstring()))
        inputs.push_back({"layer file read", itsLayerFileName});
    if (readsProject)
        inputs.push_back({"input project", itsInputProjectName});

    std::vector<SNamedFile> outputs;
    if (!itsOptions.itsGdsOutput.isEmpty())
        outputs.push_back({"-G stream", itsOptions.itsGdsOutput});
    if (!itsStructureListFileName.isEmpty())
        outputs.push_back({"-z structure list", itsStructureListFileName});
    if (!itsOptions.itsTraceFile.isEmpty())
        outputs.push_back({"-T trace file", itsOptions.itsTraceFile});
    if (!itsMaterialFileName.isEmpty())
        outputs.push_back({"-M material summary", itsMaterialFileName});
    if (itsOptions.itsCreateLayerFile || (translating && !QFileInfo::exists(itsLayerFileName.qstring())))
        outputs.push_back({"layer file", itsLayerFileName});
    if (translating)
        outputs.push_back({"project", itsOutputProjectName});

    for (size_t i = 0; i < outputs.size(); ++i) {
        for (const SNamedFile& input : inputs) {
            // A project is updated in its own file: the save replaces it whole or not at all.
            if (outputs[i].role == std::string("project") && input.role == std::string("input project"))
                continue;
            if (SameFile(outputs[i].name, input.name)) {
                GdsError("ERROR: The %s %s is the %s itself; it is not written over.\n", outputs[i].role,
                         outputs[i].name.data(), input.role);
                return false;
            }
        }
        for (size_t j = 0; j < i; ++j) {
            if (SameFile(outputs[i].name, outputs[j].name)) {
                GdsError("ERROR: The %s and the %s are one file, %s; nothing is written.\n", outputs[j].role,
                         outputs[i].role, outputs[i].name.data());
                return false;
            }
        }
    }
    return true;
}

namespace {

const int kUnusableFile = 5690;
const int kUnreadableMaterialFile = 5681;

bool HasSuffix(const SString& path, const char* suffix)
{
    return QFileInfo(path.qstring()).suffix().compare(suffix, Qt::CaseInsensitive) == 0;
}

// Material and technology files are known by their extension.
bool IsProcessFile(const SString& path)
{
    return HasSuffix(path, "matl") || HasSuffix(path, "stf");
}

} // namespace

bool SGdsApp::LoadLayerFile()
{
    if (!QFileInfo::exists(itsLayerFileName.qstring())) {
        // A missing layer file is made from the stream; a process (a material file as the
        // project) adds its technology layers, so that the stream's layers land on them. The
        // read below reports what went wrong if that failed.
        SLayerFileCreateOptions options;
        if (!ProcessTechLayers(options.itsTechLayers))
            return false;
        const bool created = itsLayerFile->Create(*itsStructureList, itsStructureName, options, itsLayerFileName);
        delete itsLayerFile;
        itsLayerFile = new SGdsLayerFile;
        // The creation has said why; that the file can't be opened then would only mislead.
        if (!created && !QFileInfo::exists(itsLayerFileName.qstring()))
            return false;
    }
    if (!itsLayerFile->Read(itsLayerFileName)) {
        GdsError("%s\n", itsLayerFile->GetErrorText().data());
        return false;
    }
    return true;
}

bool SGdsApp::ProcessTechLayers(std::vector<SLayerFileTechLayer>& list)
{
    if (itsOptions.itsNewProject || !IsProcessFile(itsInputProjectName))
        return true;
    SXtranProject process;
    if (!ReadInputProject(process, itsInputProjectName))
        return false;
    list = LayerFileTechLayers(*process.GetCircuit());
    return true;
}

std::vector<SLayerFileTechLayer> SGdsApp::LayerFileTechLayers(const SCircuit& circuit)
{
    std::vector<STechLayer*> layers;
    circuit.GetTechLayers(layers);
    std::vector<SLayerFileTechLayer> list;
    const int ground = circuit.GetNumberOfLevels() - 1;
    for (const STechLayer* layer : layers) {
        SLayerFileTechLayer found;
        found.itsName = layer->GetName();
        found.itsStreamLayer = layer->HasStreamMapping() ? layer->GetStream() : -1;
        found.itsStreamDatatype = layer->GetData();
        found.itsLayerType = layer->GetLayerType();
        found.itsLevel = layer->GetLevel();
        found.itsOnGround = layer->GetLevel() == ground;
        found.itsToLevelType = layer->GetToLevelType();
        found.itsToLevel = layer->GetToLevel();
        found.itsMaterialName = layer->GetMaterialName();
        list.push_back(found);
    }
    return list;
}


void SGdsApp::ApplySettings(SXtranProject& project) const
{
    project.SetTranslationMode(itsOptions.itsTranslation);
    project.SetCustomTranslation(itsOptions.itsTranslateX, itsOptions.itsTranslateY);
    project.SetSizeMode(itsOptions.itsSubstrate);
    project.SetCustomSize(itsOptions.itsSubstrateWidth, itsOptions.itsSubstrateHeight);
    project.itsViaPads = itsOptions.itsViaPads;
    project.itsViaFill = itsOptions.itsViaFill;
}

bool SGdsApp::ReadInputProject(SXtranProject& project, const SString& path)
{
    if (!IsProcessFile(path))
        return project.ReadProject(path);
    // A new project that the process described in the file fills.
    project.InitNew();
    bool ok = false;
    if (HasSuffix(path, "matl")) {
        SMatl material;
        ok = material.Read(path) && material.SetIntoProject(project);
    } else {
        // The translator reads no enciphered private part: it is passed over.
        SXmatl technology;
        ok = technology.Read(path) && technology.SetIntoProject(project);
    }
    if (!ok)
        VeloraErrorReport(kUnusableFile, kUnreadableMaterialFile, path.data());
    return ok;
}

bool SGdsApp::CreateProject()
{
    SGdsDebug& debug = GdsDebug();
    if (debug.GetLevel() > 3)
        debug.Print("\nCREATING VELORA PROJECT\n");
    delete itsProject;
    itsProject = new SXtranProject;
    itsConversionFactor = 1.0;
    if (!itsOptions.itsNewProject) {
        ApplySettings(*itsProject);
        itsProject->SetTemplateRead(true);
        if (debug.GetLevel() > 0)
            debug.Print("Reading velora project %s\n", itsInputProjectName.data());
        if (itsOptions.itsVerbose)
            GdsVerbose("Reading project file %s\n", itsInputProjectName.data());
        // Under -g the drawing goes anyway: a read that passes over it keeps large projects fast.
        itsProject->SetDropDrawing(itsOptions.itsReplaceGeometry);
        if (!ReadInputProject(*itsProject, itsInputProjectName))
            return false;
        if (itsOptions.itsReplaceGeometry) {
            if (!itsProject->RemoveDimensions() || !itsProject->RemovePolygons() ||
                !itsProject->ReleaseReferencePlanes())
                return false;
        } else {
            itsProject->itsImportTag = "FromImport";
        }
        const double factor = itsProject->GetLengthFactor();
        itsConversionFactor = factor > 0 ? itsStructureList->itsUnitValue / factor : 1.0;
    } else {
        if (debug.GetLevel() > 3)
            debug.Print("Create new velora project\n");
        itsProject->InitNew();
        // The project takes the stream's unit, so coordinates pass unchanged.
        if (itsStructureList->itsUnitName != "units")
            itsProject->SetLengthUnit(itsStructureList->itsUnitName);
        ApplySettings(*itsProject);
        itsProject->SetCells(256, 256);
    }
    if (itsOptions.itsCellSet) {
        itsProject->itsCellSize = SSize(itsOptions.itsCellX, itsOptions.itsCellY);
        itsProject->itsCellSizeSet = true;
    }
    if (debug.GetLevel() > 3)
        debug.Print("Conversion factor: %g\n", itsConversionFactor);
    return true;
}

bool SGdsApp::UpdateProject()
{
    SGdsDebug& debug = GdsDebug();
    if (debug.GetLevel() > 3)
        debug.Print("\nUPDATING VELORA PROJECT\n");
    SXtranProject& project = *itsProject;
    itsLayerFile->BindProject(project);

    // Levels 0 to the highest named, then ground.
    const uint64_t highest = itsPolygonList->GetMaxLevel(*itsLayerFile);
    // Stream layers are 16-bit numbers; a fresh layer file puts layer n on level n.
    const uint64_t kLevelLimit = 65536;
    if (highest >= kLevelLimit) {
        GdsError("ERROR: Level %llu of the layer file is beyond the %llu levels a project can hold.\n",
                 static_cast<unsigned long long>(highest), static_cast<unsigned long long>(kLevelLimit));
        return false;
    }
    SCircuit* circuit = project.GetCircuit();
    if (circuit->GetNumberOfLevels() < int(highest) + 2)
        circuit->SetNumberOfLevels(int(highest) + 2);

    itsPolygonList->itsMakeTechLayers = itsOptions.itsMakeTechLayers;
    project.itsFollowTechLayers = itsOptions.itsCircuitMode;
    project.itsSimpleVias = itsOptions.itsSimpleVias;
    itsPolygonList->AddToProject(project, *itsLayerFile);

    SRect substrate;
    if (!itsPolygonList->GetSubstrate(*itsLayerFile, substrate))
        return false;
    if (!substrate.isEmpty()) {
        // The substrate polygon is the box, whatever -s and -t said.
        project.SetCustomSize(std::fabs(substrate.x2() - substrate.x1()), std::fabs(substrate.y2() - substrate.y1()));
        project.SetSizeMode(SXtranProject::SizeCustom);
        project.SetTranslationMode(SXtranProject::MoveCustom);
        project.SetCustomTranslation(-std::min(substrate.x1(), substrate.x2()),
                                     -std::min(substrate.y1(), substrate.y2()));
    }
    if (itsOptions.itsMargin.valid())
        project.SetMargin(itsOptions.itsMargin);
    project.SizeBox(true);
    // The project's y axis runs down, the stream's up.
    if (!itsOptions.itsInvertY)
        project.Invert(true);
    if (itsOptions.itsPolygonOperations) {
        SCircuitPolygonOps operations(&project);
        operations.MergeAll();
    }
    itsPolygonList->AddPorts(project, *itsLayerFile);
    if (debug.GetLevel() > 4) {
        SProjectStream text;
        project.Write(text);
        debug.Print("%s", text.Text().c_str());
    }
    return true;
}

bool SGdsApp::WriteProject()
{
    if (itsOptions.itsVerbose)
        GdsVerbose("Created %d polygons in project file\n", itsProject->itsPolygonCount + itsProject->itsBrickCount);
    // A project that could not be saved fails the run, so that a calling script can tell.
    if (!itsProject->Save(itsOutputProjectName)) {
        itsProject->GetErrors().Report();
        return false;
    }
    SProjectOperations operations(itsOutputProjectName);
    operations.Clean(true);
    return true;
}

bool SGdsApp::WriteMaterialFile()
{
    SCvtMaterialFile summary;
    summary.SetExtents(itsPolygonList->GetBoundingBox());
    SCircuit* circuit = nullptr;
    if (!itsOptions.itsNewProject) {
        delete itsSummaryProject;
        itsSummaryProject = new SXtranProject;
        itsSummaryProject->SetTemplateRead(true);
        if (!ReadInputProject(*itsSummaryProject, itsInputProjectName))
            return false;
        circuit = itsSummaryProject->GetCircuit();
        summary.CollectFrom(*itsSummaryProject);
    } else if (!itsStructureList->itsUnitName.isEmpty() && itsStructureList->itsUnitName != "units") {
        // "units" is what a stream says when it names none.
        summary.SetUnitName(itsStructureList->itsUnitName);
    }
    if (!summary.Write(itsMaterialFileName)) {
        GdsError("Can not write to file %s\n", itsMaterialFileName.data());
        return false;
    }
    itsTechLayers.clear();
    if (circuit)
        itsTechLayers = LayerFileTechLayers(*circuit);
    return true;
}

bool SGdsApp::ExpandStructure()
{
    SGdsDebug& debug = GdsDebug();
    if (debug.GetLevel() > 3)
        debug.Print("\nEXPANDING STRUCTURES\n");
    if (!itsStructureList->FindStructure(itsStructureName)) {
        GdsError("Could not find structure \"%s\" the GDSII file\n", itsStructureName.data());
        return false;
    }
    itsPolygonList->itsConversionFactor = itsConversionFactor;
    // Before the walk: the filters decide how points are placed.
    itsPolygonList->itsRoundWhilePlacing = true;
    itsPolygonList->itsKeepBox = itsOptions.itsKeepBox;
    itsPolygonList->itsMinSizeMode = itsOptions.itsMinSizeMode;
    itsPolygonList->itsMinWidth = itsOptions.itsMinWidth;
    itsPolygonList->itsMinHeight = itsOptions.itsMinHeight;
    // A translation needs the stream's records no more once the flat polygons are made,
    // and their memory goes to those; -L walks the structures again afterwards.
    const bool spend = itsConvert && !itsOptions.itsCreateLayerFile && itsGdsFile;
    return ::ExpandStructure(*itsStructureList, *itsPolygonList, itsStructureName,
                             spend ? &itsGdsFile->GetRecords() : nullptr);
}

bool SGdsApp::CreateLayerFile()
{
    SLayerFileCreateOptions options;
    options.itsRemoveEmptyLayers = itsOptions.itsRemoveEmptyLayers;
    options.itsSingleLayer = itsOptions.itsSingleLayer;
    options.itsTechLayers = itsTechLayers;
    if (options.itsTechLayers.empty() && !ProcessTechLayers(options.itsTechLayers))
        return false;
    return itsLayerFile->Create(*itsStructureList, itsStructureName, options, itsLayerFileName);
}

bool SGdsApp::ReadStream()
{
    itsGdsFile = new SGdsFile(itsGdsFileName);
    itsGdsFile->SetOutputName(itsOptions.itsGdsOutput);
    if (!AsciiInput && !itsGdsFile->CheckHeader())
        return false;
    // The structures are built on the way, so that the stream's records need not all be
    // held; not when the records are shown, since their dump reads the unit in force.
    const bool dumping = itsOptions.itsShortFormat || itsOptions.itsRecordTags || GdsDebug().GetLevel() > 1;
    if (!dumping)
        itsStructureList = new SGdsStructureList;
    return itsGdsFile->Read(itsStructureList);
}

bool SGdsApp::BuildStructures()
{
    if (!itsStructureList)
        itsStructureList = new SGdsStructureList;
    if (!itsGdsFile->BuildStructures(*itsStructureList))
        return false;
    if (itsStructureList->GetOpenStructure()) {
        GdsError("Unexpected end-of-file reached while reading gds file\n");
        return false;
    }
    return true;
}

bool SGdsApp::SelectStructure()
{
    if (!itsPolygonList)
        itsPolygonList = new SGdsPolygonList(itsStructureList);
    if (!itsOptions.itsStructureName.isEmpty()) {
        itsStructureName = itsOptions.itsStructureName;
    } else {
        itsStructureName = itsStructureList->GetDefaultStructure(itsOptions.itsDefaultStructure);
        if (itsStructureName.isEmpty()) {
            GdsError("No structures are defined in the gds file\n");
            return false;
        }
    }
    if (itsOptions.itsVerbose)
        GdsVerbose(itsConvert ? "Converting structure \"%s\"\n" : "Primary structure \"%s\"\n", itsStructureName.data());
    return true;
}

bool SGdsApp::ListStructures()
{
    return itsStructureList->ListStructures(itsStructureListFileName, itsOptions.itsDefaultStructure);
}
