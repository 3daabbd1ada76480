#include "SGdsOptions.h"

#include "SCmdOption.h"
#include "SCollectableString.h"
#include "SFileName.h"
#include "SGdsDebug.h"
#include "SNumberTest.h"
#include "SVeloraError.h"

#include <QStringList>

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <locale.h>

namespace {

// The order in which the options take effect, whatever their order on the
// command line: a bad value reported first wins over -h, -V over -h, and -S
// over -D.
const char EvaluationOrder[] = "DTsCtpPolfiMzckbBGJxmFvVdrHALR1hgqySWjQeU";

const char* const Usage[] = {
    "gds [options] gdsfile",
    "",
    "  -v             - Verbose output",
    "  -d             - Print list of structures in file",
    "  -p structname  - Convert structure structname instead of default structure.",
    "  -P default     - Converts default structure, either \"first\", \"last\", or \"best\"",
    "  -L             - Create a layer file for user. Gds file not converted.",
    "  -R             - Remove empty layers when creating layer file.",
    "  -1             - Create single layer file.",
    "  -l layerfile   - Input using layer file.",
    "  -g             - Use project file for circuit information.",
    "  -q             - Use project file for circuit information (appends to existing geometry).",
    "  -i project     - Use project for input.",
    "  -o project     - Output using project file.",
    "  -y             - Invert the coordinates over the X-axis.",
    "  -r             - Convert vias to simplified vias",
    "  -t <type>      - Translate coordinates",
    "     none          - no tranlation",
    "     min           - move min x,y coordinates so it is a 0,0",
    "     normal        - move min x,y coordinates so it is in substrate",
    "     x,y           - move x,y coordiante ",
    "  -s <type>      - Create substrate",
    "     max           - use max_x,max_y as size of substrate",
    "     min           - make substrate the smallest possible",
    "     normal        - make substrate large enough so that the",
    "                   - circuit is away from the wall. (default)",
    "     width,height  - make substrate width and height size",
    "  -c <type>      - Specify conversion control option for zero width paths",
    "     boundary_path     - Converts paths to boundaries, assuming that each point",
    "                         is an endpoint (default)",
    "     no_boundary_path  - Do not convert paths to boundaries.  Will make zero",
    "                         width lines by tracing each line to end then back",
    "                         to the beginning.  Note that these polygons have",
    "                         no subsections.",
    "     smart_path        - Makes a path into a boundary path if the end point",
    "                          equals the begin point.  Else makes it a",
    "                          no_boundary_path",
    "  -m left,right,top,bottom    - Set margin for circuit",
    "  -k boxsize     - Only output polygons that are entirely in the box.",
    "                   Format of box is X1,X2,Y1,Y2",
    "  -b Width,Height - Do not output polygons which are smaller than height and width",
    "  -B %Width,%Height - Same as -b options except width and height are in terms",
    "                 - of percentage of the entire circuit",
    "  -C Width,Height- Set output project cell size",
    "  -W             - Suppresses warning messages.",
    "  -z file        - Print list of structures and put results into file",
    "  -M file        - Set the material file.",
    "  -D n           - Set debug level",
    "  -F             - Output record identification format.",
    "  -A             - Use Ascii file input",
    "  -T File        - Set trace file",
    "  -S             - Output abbreviate (short) record format.",
    "  -G File        - Create gds file from ASCII input",
    "  -j             - Create via pads",
    "  -J type        - Specify the via meshing fill (Full, Ring(default), Vertices or Center)",
    "  -x box         - Exclude converting box elements",
    "  -Q             - For box elements, force BOXTYPE values to 0",
    "  -e             - Make tech layers",
    "  -V             - Prints program version",
    "  -h             - Prints this help message.",
};

locale_t CLocale()
{
    static locale_t locale = newlocale(LC_ALL_MASK, "C", locale_t(0));
    return locale;
}

// "-h" and "-V" end the run here, as a normal end of the program.
[[noreturn]] void ExitAfterOption()
{
    std::fflush(stdout);
    VeloraExit(0);
}

// The comma forms: a comma is appended and the text split with empty parts
// kept, so "100" lacks its second number. Each needed token goes through
// strtod, where text that isn't a number reads as 0; surplus tokens are
// ignored. Infinite and undefined values are refused, since the box and
// cell computations can't use them.
bool ReadNumbers(const SString& text, int count, double* values)
{
    const QStringList parts = (text.qstring() + QLatin1Char(',')).split(QLatin1Char(','));
    if (parts.size() < count)
        return false;
    for (int i = 0; i < count; ++i) {
        if (parts.at(i).isEmpty())
            return false;
        const QByteArray bytes = parts.at(i).toUtf8();
        const double value = strtod_l(bytes.constData(), nullptr, CLocale());
        if (!std::isfinite(value))
            return false;
        values[i] = value;
    }
    return true;
}

// A margin value as the number tests of the utility layer see it; like the
// other sizes it has to be finite.
bool ReadMarginValue(const QString& text, double& value)
{
    if (!IsDouble(SString(text)))
        return false;
    value = text.trimmed().toDouble();
    return std::isfinite(value);
}

}

SGdsOptions::SGdsOptions()
    : itsSubstrate("normal"), itsTranslation("normal")
{
}

SGdsOptions::~SGdsOptions()
{
    itsFileNames.clearAndDestroy();
}

const char* const* SGdsOptions::UsageLines()
{
    return Usage;
}

int SGdsOptions::UsageLineCount()
{
    return int(sizeof(Usage) / sizeof(Usage[0]));
}

bool SGdsOptions::IsActive(const char* name) const
{
    return itsCmdLine.FindActiveOption(SString(name)) != nullptr;
}

SString SGdsOptions::Value(const char* name) const
{
    const SCmdOption* option = itsCmdLine.FindActiveOption(SString(name));
    return option ? option->GetValueText() : SString();
}

bool SGdsOptions::Parse(int argc, char** argv)
{
    itsCmdLine.DefineOptions();
    itsCmdLine.ReadCmdLine(argc, argv);

    for (const char* name = EvaluationOrder; *name; ++name) {
        char letter[2] = { *name, '\0' };
        if (IsActive(letter) && !Evaluate(*name))
            return false;
    }

    itsFileNames.clearAndDestroy();
    const SOrdered& arguments = itsCmdLine.GetArguments();
    for (size_t i = 0; i < arguments.entries(); ++i) {
        const auto* argument = static_cast<const SCollectableString*>(arguments.at(i));
        itsFileNames.insert(new SCollectableString(SString(argument->qstring())));
    }
    return CheckFileNames();
}

bool SGdsOptions::CheckFileNames()
{
    if (itsFileNames.isEmpty()) {
        GdsError("ERROR: Must specify at least one gds file.\n");
        return false;
    }
    if (itsFileNames.entries() > 1) {
        GdsError("ERROR: Can only convert one gds file.\n");
        return false;
    }
    itsGdsFile = SString(static_cast<const SCollectableString*>(itsFileNames.at(0))->qstring());

    // Only the default layer file name may be created by the run; a named
    // one has to be there already.
    if (!itsCreateLayerFile && !itsLayerFile.isEmpty()
        && !SFileName(itsLayerFile).Exists()) {
        GdsError("Can not read layer file \"%s\"\n", itsLayerFile.data());
        return false;
    }
    return true;
}

bool SGdsOptions::Evaluate(char name)
{
    const char letter[2] = { name, '\0' };
    const SString value = Value(letter);
    switch (name) {
    case 'D': {
        const QByteArray bytes = value.toUtf8();
        const long level = std::strtol(bytes.constData(), nullptr, 10);
        itsDebugLevel = int(level < INT_MIN ? INT_MIN : (level > INT_MAX ? INT_MAX : level));
        GdsDebug().SetLevel(itsDebugLevel);
        return true;
    }
    case 'T':
        // Opened by the run once it knows that the name is no input of its own.
        itsTraceFile = value;
        return true;
    case 's':
        return SetSubstrate(value);
    case 'C':
        return SetCellSize(value);
    case 't':
        return SetTranslation(value);
    case 'p':
        itsStructureName = value;
        return true;
    case 'P':
        return SetDefaultStructure(value);
    case 'o':
        itsOutputProject = value;
        return true;
    case 'l':
        itsLayerFile = value;
        return true;
    case 'f':
        itsInputProject = value;
        return true;
    case 'i':
        itsInputProject = value;
        itsNewProject = false;
        return true;
    case 'M':
        itsMaterialFile = value;
        itsTranslate = false;
        return true;
    case 'z':
        itsStructureListFile = value;
        itsListStructures = true;
        itsTranslate = false;
        return true;
    case 'c':
        return SetPathConversion(value);
    case 'k':
        return SetKeepBox(value);
    case 'b':
        return SetMinSize(value, 1);
    case 'B':
        return SetMinSize(value, 2);
    case 'G':
        itsGdsOutput = value;
        return true;
    case 'J':
        return SetViaFill(value);
    case 'x':
        return SetExcludeBoxes(value);
    case 'm':
        return SetMargin(value);
    case 'F':
        itsRecordTags = true;
        itsTranslate = false;
        GdsDebug().SetTags(true);
        return true;
    case 'v':
        itsVerbose = true;
        return true;
    case 'V':
        PrintVersion();
        ExitAfterOption();
    case 'd':
        itsListStructures = true;
        itsTranslate = false;
        return true;
    case 'r':
        itsSimpleVias = true;
        return true;
    case 'H':
        itsPolygonOperations = true;
        return true;
    case 'A':
        itsAsciiInput = true;
        return true;
    case 'L':
        itsCreateLayerFile = true;
        itsTranslate = false;
        return true;
    case 'R':
        itsRemoveEmptyLayers = true;
        return true;
    case '1':
        itsSingleLayer = true;
        return true;
    case 'h':
        PrintUsage();
        ExitAfterOption();
    case 'g':
        itsNewProject = false;
        return true;
    case 'q':
        itsNewProject = false;
        itsReplaceGeometry = false;
        return true;
    case 'y':
        itsInvertY = true;
        return true;
    case 'S':
        itsShortFormat = true;
        itsDebugLevel = 1;
        GdsDebug().SetLevel(1);
        return true;
    case 'W':
        WarningsEnabled = false;
        return true;
    case 'j':
        itsViaPads = true;
        return true;
    case 'Q':
        itsZeroBoxType = true;
        return true;
    case 'e':
        itsMakeTechLayers = false;
        return true;
    case 'U':
        itsCircuitMode = true;
        return true;
    default:
        return true;
    }
}

bool SGdsOptions::SetSubstrate(const SString& value)
{
    if (value == "max" || value == "min" || value == "normal" || value == "test") {
        itsSubstrate = value;
        return true;
    }
    double size[2];
    if (!ReadNumbers(value, 2, size) || size[0] <= 0.0 || size[1] <= 0.0) {
        GdsError("Bad argument to -s option, argument = %s\n", value.data());
        return false;
    }
    itsSubstrate = "custom";
    itsSubstrateWidth = size[0];
    itsSubstrateHeight = size[1];
    return true;
}

bool SGdsOptions::SetCellSize(const SString& value)
{
    double size[2];
    if (!ReadNumbers(value, 2, size) || size[0] <= 0.0 || size[1] <= 0.0) {
        GdsError("Bad argument to -C option, argument = %s\n", value.data());
        return false;
    }
    itsCellX = size[0];
    itsCellY = size[1];
    itsCellSet = true;
    return true;
}

bool SGdsOptions::SetTranslation(const SString& value)
{
    if (value == "none" || value == "min" || value == "center" || value == "normal") {
        itsTranslation = value;
        return true;
    }
    double offset[2];
    if (!ReadNumbers(value, 2, offset)) {
        GdsError("Bad argument to -t option, argument = %s\n", value.data());
        return false;
    }
    itsTranslation = "custom";
    itsTranslateX = offset[0];
    itsTranslateY = offset[1];
    return true;
}

bool SGdsOptions::SetDefaultStructure(const SString& value)
{
    if (value == "first")
        itsDefaultStructure = 0;
    else if (value == "last")
        itsDefaultStructure = 1;
    else if (value == "best")
        itsDefaultStructure = 2;
    else {
        GdsError("Invalid default structure type, either use first, last or best\n");
        return false;
    }
    return true;
}

bool SGdsOptions::SetPathConversion(const SString& value)
{
    if (value == "boundary_path" || value == "no_boundary_path" || value == "smart_path") {
        itsPathConversion = value;
        return true;
    }
    GdsError("Unknown conversion path type %s\n", value.data());
    return false;
}

bool SGdsOptions::SetKeepBox(const SString& value)
{
    double box[4];
    if (!ReadNumbers(value, 4, box)) {
        GdsError("Bad argument to -k option, argument = %s\n", value.data());
        return false;
    }
    // Given as X1,X2,Y1,Y2 in any order along each axis.
    itsKeepBox = SRect(std::min(box[0], box[1]), std::min(box[2], box[3]),
                       std::max(box[0], box[1]), std::max(box[2], box[3]));
    return true;
}

bool SGdsOptions::SetMinSize(const SString& value, int mode)
{
    double size[2];
    if (!ReadNumbers(value, 2, size) || size[0] <= 0.0 || size[1] <= 0.0) {
        GdsError("Bad argument to -%c option, argument = %s\n", mode == 1 ? 'b' : 'B',
                 value.data());
        return false;
    }
    itsMinWidth = size[0];
    itsMinHeight = size[1];
    itsMinSizeMode = mode;
    return true;
}

bool SGdsOptions::SetViaFill(const SString& value)
{
    if (value == "Full")
        itsViaFill = 2;
    else if (value == "Vertices")
        itsViaFill = 3;
    else if (value == "Center")
        itsViaFill = 4;
    else if (value == "Bar")
        itsViaFill = 5;
    else if (value == "*Hidden")
        itsViaFill = 6;
    else
        itsViaFill = 1;
    return true;
}

bool SGdsOptions::SetExcludeBoxes(const SString& value)
{
    if (value == "box") {
        itsConvertBoxes = false;
        return true;
    }
    GdsError("Bad argument to -x option, argument = %s\n", value.data());
    return false;
}

// Exactly four values, each a number with an optional per cent sign behind
// it; unlike the other comma forms a surplus value is an error.
bool SGdsOptions::SetMargin(const SString& value)
{
    QStringList parts = (value.qstring() + QLatin1Char(',')).split(QLatin1Char(','));
    parts.removeLast();
    double values[4];
    int kinds[4];
    bool ok = parts.size() == 4;
    for (int i = 0; ok && i < 4; ++i) {
        QString token = parts.at(i);
        kinds[i] = token.endsWith(QLatin1Char('%')) ? 1 : 0;
        if (kinds[i])
            token.chop(1);
        ok = ReadMarginValue(token, values[i]);
    }
    if (!ok) {
        GdsError("Bad argument to -m option, expect to have 4 margin values: left, right, top, bottom.\n");
        return false;
    }
    itsMargin.setValues(values[0], values[1], values[2], values[3], kinds[0], kinds[1], kinds[2],
                        kinds[3]);
    return true;
}

void SGdsOptions::PrintVersion() const
{
    std::printf("Version: %s\n", SCommandLineOptions::VersionText().data());
}

void SGdsOptions::PrintUsage() const
{
    for (int i = 0; i < UsageLineCount(); ++i)
        std::printf("%s\n", Usage[i]);
}
