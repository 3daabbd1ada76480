#ifndef SGDSOPTIONS_H
#define SGDSOPTIONS_H

#include "SGdsCmdLineOptions.h"
#include "SMargin.h"
#include "SOrdered.h"
#include "SRect.h"
#include "SString.h"

// Everything the command line says, checked and stored in fields that the
// rest of the translator reads.
class SGdsOptions
{
public:
    SGdsOptions();
    ~SGdsOptions();
    SGdsOptions(const SGdsOptions&) = delete;
    SGdsOptions& operator=(const SGdsOptions&) = delete;

    // Reads and checks the command line; false after a message when the run
    // must end. "-h" and "-V" end the process with status 0.
    bool Parse(int argc, char** argv);

    // The plain arguments (SCollectableString), in order.
    const SOrdered& GetFileNames() const { return itsFileNames; }
    const SGdsCmdLineOptions& GetCmdLine() const { return itsCmdLine; }

    // The "-h" text, one line a string, as printed.
    static const char* const* UsageLines();
    static int UsageLineCount();

    int itsDebugLevel = 0;
    bool itsRecordTags = false;
    SString itsTraceFile;
    SString itsGdsFile;
    bool itsVerbose = false;
    bool itsListStructures = false;
    bool itsAsciiInput = false;
    SString itsSubstrate;
    SString itsTranslation;
    SString itsStructureName;
    bool itsCreateLayerFile = false;
    bool itsInvertY = false;
    SString itsLayerFile;
    SString itsInputProject;
    bool itsNewProject = true;
    SString itsOutputProject;
    SString itsPathConversion;
    bool itsShortFormat = false;
    SString itsMaterialFile;
    SString itsStructureListFile;
    bool itsTranslate = true;
    bool itsSimpleVias = false;
    bool itsPolygonOperations = false;
    // Stream units with -b, per cent of the extent with -B.
    double itsMinWidth = 0.0;
    double itsMinHeight = 0.0;
    SRect itsKeepBox;
    bool itsRemoveEmptyLayers = false;
    bool itsSingleLayer = false;
    // 0 first, 1 last, 2 best.
    int itsDefaultStructure = 2;
    SString itsGdsOutput;
    // 0 none, 1 -b, 2 -B.
    int itsMinSizeMode = 0;
    double itsTranslateX = 0.0;
    double itsTranslateY = 0.0;
    double itsSubstrateWidth = 0.0;
    double itsSubstrateHeight = 0.0;
    double itsCellX = 0.0;
    double itsCellY = 0.0;
    bool itsCellSet = false;
    bool itsReplaceGeometry = true;
    bool itsViaPads = false;
    bool itsConvertBoxes = true;
    // 1 Ring, 2 Full, 3 Vertices, 4 Center, 5 Bar, 6 hidden.
    int itsViaFill = 1;
    bool itsZeroBoxType = false;
    bool itsMakeTechLayers = true;
    bool itsCircuitMode = false;
    SMargin itsMargin;

private:
    bool Evaluate(char name);
    bool IsActive(const char* name) const;
    SString Value(const char* name) const;

    bool SetSubstrate(const SString& value);
    bool SetCellSize(const SString& value);
    bool SetTranslation(const SString& value);
    bool SetDefaultStructure(const SString& value);
    bool SetPathConversion(const SString& value);
    bool SetKeepBox(const SString& value);
    bool SetMinSize(const SString& value, int mode);
    bool SetViaFill(const SString& value);
    bool SetExcludeBoxes(const SString& value);
    bool SetMargin(const SString& value);
    bool CheckFileNames();

    void PrintVersion() const;
    void PrintUsage() const;

    SGdsCmdLineOptions itsCmdLine;
    SOrdered itsFileNames;
};

#endif
