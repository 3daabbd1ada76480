#include "SGdsApp.h"

#include <QFileInfo>
#include <QRegExp>
#include <cstdio>

#include "SGdsDebug.h"
#include "SGdsFile.h"
#include "SGdsExpander.h"
#include "SGdsLayerFile.h"
#include "SGdsPathConverter.h"
#include "SGdsPolygonList.h"
#include "SGdsRecord.h"
#include "SGdsStructureList.h"
#include "SErrorMessages.h"

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
    delete itsPolygonList;
    delete itsLayerFile;
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
    if (itsOptions.itsCreateLayerFile)
        return CreateLayerFile();

    GdsError("Material files and projects can not be made by this build yet\n");
    return false;
}

bool SGdsApp::LoadLayerFile()
{
    if (!QFileInfo::exists(itsLayerFileName.qstring())) {
        // A missing layer file is made from the stream alone; the read below
        // reports what went wrong if that failed.
        itsLayerFile->Create(*itsStructureList, itsStructureName, SLayerFileCreateOptions(), itsLayerFileName);
        delete itsLayerFile;
        itsLayerFile = new SGdsLayerFile;
    }
    if (!itsLayerFile->Read(itsLayerFileName)) {
        GdsError("%s\n", itsLayerFile->GetErrorText().data());
        return false;
    }
    return true;
}

bool SGdsApp::CreateProject()
{
    // A new project takes the stream's unit, so coordinates pass unchanged.
    itsConversionFactor = 1.0;
    if (GdsDebug().GetLevel() > 3)
        GdsDebug().Print("Conversion factor: %g\n", itsConversionFactor);
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
    return ::ExpandStructure(*itsStructureList, *itsPolygonList, itsStructureName);
}

bool SGdsApp::CreateLayerFile()
{
    SLayerFileCreateOptions options;
    options.itsRemoveEmptyLayers = itsOptions.itsRemoveEmptyLayers;
    options.itsSingleLayer = itsOptions.itsSingleLayer;
    return itsLayerFile->Create(*itsStructureList, itsStructureName, options, itsLayerFileName);
}

bool SGdsApp::ReadStream()
{
    itsGdsFile = new SGdsFile(itsGdsFileName);
    itsGdsFile->SetOutputName(itsOptions.itsGdsOutput);
    if (!AsciiInput && !itsGdsFile->CheckHeader())
        return false;
    return itsGdsFile->Read();
}

bool SGdsApp::BuildStructures()
{
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
    if (itsOptions.itsVerbose) {
        printf(itsConvert ? "Converting structure \"%s\"\n" : "Primary structure \"%s\"\n", itsStructureName.data());
        fflush(stdout);
    }
    return true;
}

bool SGdsApp::ListStructures()
{
    return itsStructureList->ListStructures(itsStructureListFileName, itsOptions.itsDefaultStructure);
}
