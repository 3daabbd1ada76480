// The translator's options through SGdsOptions::Parse: value checks, their
// messages, the evaluation order and the checks on the file names.

#include "SCmdOption.h"
#include "SGdsDebug.h"
#include "SGdsOptions.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

namespace {

class GdsOptionsTest : public testing::Test
{
protected:
    void SetUp() override
    {
        GdsDebug().SetLevel(0);
        GdsDebug().SetTags(false);
        WarningsEnabled = true;
        WarningCount = 0;
    }

    // Parses "gds" followed by `arguments`; keeps what was printed.
    bool Parse(std::vector<std::string> arguments)
    {
        arguments.insert(arguments.begin(), "gds");
        std::vector<char*> argv;
        for (std::string& argument : arguments)
            argv.push_back(&argument[0]);
        argv.push_back(nullptr);
        testing::internal::CaptureStdout();
        testing::internal::CaptureStderr();
        const bool ok = itsOptions->Parse(int(arguments.size()), argv.data());
        itsOut = testing::internal::GetCapturedStdout();
        itsErr = testing::internal::GetCapturedStderr();
        return ok;
    }

    // Parses on a new SGdsOptions, as a new run would.
    bool ParseFresh(const std::vector<std::string>& arguments)
    {
        itsOptions = std::make_unique<SGdsOptions>();
        return Parse(arguments);
    }

    // One option value in front of a stream file name.
    bool ParseValue(const char* option, const std::string& value)
    {
        return ParseFresh({ option, value, "a.gds" });
    }

    static std::string Text(const SString& text) { return text.data(); }

    std::unique_ptr<SGdsOptions> itsOptions = std::make_unique<SGdsOptions>();
    std::string itsOut;
    std::string itsErr;
};

} // namespace

TEST_F(GdsOptionsTest, PlainFileNameWithDefaults)
{
    ASSERT_TRUE(Parse({ "chip.gds" }));
    EXPECT_EQ(itsOut, "");
    EXPECT_EQ(Text(itsOptions->itsGdsFile), "chip.gds");
    ASSERT_EQ(itsOptions->GetFileNames().entries(), 1u);
    EXPECT_EQ(Text(itsOptions->itsSubstrate), "normal");
    EXPECT_EQ(Text(itsOptions->itsTranslation), "normal");
    EXPECT_TRUE(itsOptions->itsTranslate);
    EXPECT_TRUE(itsOptions->itsNewProject);
    EXPECT_EQ(itsOptions->itsDefaultStructure, 2);
    EXPECT_EQ(itsOptions->itsViaFill, 1);
    EXPECT_FALSE(itsOptions->itsMargin.valid());
}

TEST_F(GdsOptionsTest, FileNameCount)
{
    EXPECT_FALSE(Parse({}));
    EXPECT_EQ(itsOut, "ERROR: Must specify at least one gds file.\n");

    EXPECT_FALSE(ParseFresh({ "-v" }));
    EXPECT_EQ(itsOut, "ERROR: Must specify at least one gds file.\n");

    EXPECT_FALSE(ParseFresh({ "a.gds", "b.gds" }));
    EXPECT_EQ(itsOut, "ERROR: Can only convert one gds file.\n");
}

TEST_F(GdsOptionsTest, DoubleDashMakesDashedNameTheStream)
{
    ASSERT_TRUE(Parse({ "--", "-a.gds" }));
    EXPECT_EQ(Text(itsOptions->itsGdsFile), "-a.gds");
}

TEST_F(GdsOptionsTest, DebugLevel)
{
    ASSERT_TRUE(Parse({ "-D", "3", "a.gds" }));
    EXPECT_EQ(itsOptions->itsDebugLevel, 3);
    EXPECT_EQ(GdsDebug().GetLevel(), 3);

    EXPECT_TRUE(ParseValue("-D", "junk"));
    EXPECT_EQ(itsOptions->itsDebugLevel, 0);
    EXPECT_TRUE(ParseValue("-D", "4x"));
    EXPECT_EQ(itsOptions->itsDebugLevel, 4);
    EXPECT_TRUE(ParseValue("-D", "99999999999999999999"));
    EXPECT_GT(itsOptions->itsDebugLevel, 0);
}

TEST_F(GdsOptionsTest, DebugWithoutValueThenMissingFile)
{
    EXPECT_FALSE(Parse({ "-D" }));
    EXPECT_EQ(itsOptions->itsDebugLevel, 0);
    EXPECT_EQ(itsOut, "ERROR: Must specify at least one gds file.\n");
}

TEST_F(GdsOptionsTest, ShortFormatOverridesDebugLevel)
{
    ASSERT_TRUE(Parse({ "-S", "-D", "5", "a.gds" }));
    EXPECT_TRUE(itsOptions->itsShortFormat);
    EXPECT_EQ(itsOptions->itsDebugLevel, 1);
    EXPECT_EQ(GdsDebug().GetLevel(), 1);
}

TEST_F(GdsOptionsTest, SubstrateValues)
{
    for (const char* word : { "max", "min", "normal", "test" }) {
        EXPECT_TRUE(ParseValue("-s", word)) << word;
        EXPECT_EQ(Text(itsOptions->itsSubstrate), word);
    }
    EXPECT_TRUE(ParseValue("-s", "300,200.5,junk"));
    EXPECT_EQ(Text(itsOptions->itsSubstrate), "custom");
    EXPECT_DOUBLE_EQ(itsOptions->itsSubstrateWidth, 300);
    EXPECT_DOUBLE_EQ(itsOptions->itsSubstrateHeight, 200.5);

    for (const char* bad : { "100", "0,5", "5,-1", "Max", "abc,4", ",4", "4,", "" }) {
        EXPECT_FALSE(ParseValue("-s", bad)) << bad;
        EXPECT_EQ(itsOut, std::string("Bad argument to -s option, argument = ") + bad + "\n");
    }
}

TEST_F(GdsOptionsTest, CellAndMinimumSizes)
{
    EXPECT_TRUE(ParseValue("-C", "0.5,2"));
    EXPECT_TRUE(itsOptions->itsCellSet);
    EXPECT_DOUBLE_EQ(itsOptions->itsCellX, 0.5);
    EXPECT_DOUBLE_EQ(itsOptions->itsCellY, 2);

    EXPECT_TRUE(ParseValue("-b", "1,3"));
    EXPECT_EQ(itsOptions->itsMinSizeMode, 1);
    EXPECT_DOUBLE_EQ(itsOptions->itsMinWidth, 1);
    EXPECT_DOUBLE_EQ(itsOptions->itsMinHeight, 3);

    EXPECT_TRUE(ParseValue("-B", "10,20"));
    EXPECT_EQ(itsOptions->itsMinSizeMode, 2);
    EXPECT_DOUBLE_EQ(itsOptions->itsMinHeight, 20);

    for (const char* option : { "-C", "-b", "-B" }) {
        for (const char* bad : { "0,5", "100", "x,y", "1e999,1" }) {
            EXPECT_FALSE(ParseValue(option, bad)) << option << " " << bad;
            EXPECT_EQ(itsOut, std::string("Bad argument to ") + option + " option, argument = " + bad + "\n");
        }
    }
}

TEST_F(GdsOptionsTest, TranslationValues)
{
    for (const char* word : { "none", "min", "center", "normal" }) {
        EXPECT_TRUE(ParseValue("-t", word)) << word;
        EXPECT_EQ(Text(itsOptions->itsTranslation), word);
    }
    // The value begins with a dash and is still taken as the value.
    EXPECT_TRUE(ParseValue("-t", "-10,20"));
    EXPECT_EQ(Text(itsOptions->itsTranslation), "custom");
    EXPECT_DOUBLE_EQ(itsOptions->itsTranslateX, -10);
    EXPECT_DOUBLE_EQ(itsOptions->itsTranslateY, 20);
    // A word that isn't a number reads as 0.
    EXPECT_TRUE(ParseValue("-t", "left,2"));
    EXPECT_DOUBLE_EQ(itsOptions->itsTranslateX, 0);

    for (const char* bad : { "5", "None", "1,,", "" }) {
        EXPECT_FALSE(ParseValue("-t", bad)) << bad;
        EXPECT_EQ(itsOut, std::string("Bad argument to -t option, argument = ") + bad + "\n");
    }
}

TEST_F(GdsOptionsTest, DefaultStructureChoice)
{
    const std::pair<const char*, int> words[] = { { "first", 0 }, { "last", 1 }, { "best", 2 } };
    for (const auto& word : words) {
        EXPECT_TRUE(ParseValue("-P", word.first));
        EXPECT_EQ(itsOptions->itsDefaultStructure, word.second);
    }
    EXPECT_FALSE(ParseValue("-P", "First"));
    EXPECT_EQ(itsOut, "Invalid default structure type, either use first, last or best\n");
}

TEST_F(GdsOptionsTest, PathConversion)
{
    for (const char* word : { "boundary_path", "no_boundary_path", "smart_path" }) {
        EXPECT_TRUE(ParseValue("-c", word));
        EXPECT_EQ(Text(itsOptions->itsPathConversion), word);
    }
    EXPECT_FALSE(ParseValue("-c", "boundary"));
    EXPECT_EQ(itsOut, "Unknown conversion path type boundary\n");
}

TEST_F(GdsOptionsTest, KeepBoxIsOrderedPerAxis)
{
    ASSERT_TRUE(ParseValue("-k", "10,0,20,5"));
    EXPECT_EQ(itsOptions->itsKeepBox, SRect(0, 5, 10, 20));
    ASSERT_TRUE(ParseValue("-k", "-1,1,-2,2,99"));
    EXPECT_EQ(itsOptions->itsKeepBox, SRect(-1, -2, 1, 2));

    EXPECT_FALSE(ParseValue("-k", "1,2,3"));
    EXPECT_EQ(itsOut, "Bad argument to -k option, argument = 1,2,3\n");
}

TEST_F(GdsOptionsTest, ExcludeBoxesAndViaFill)
{
    EXPECT_TRUE(ParseValue("-x", "box"));
    EXPECT_FALSE(itsOptions->itsConvertBoxes);
    EXPECT_FALSE(ParseValue("-x", "boxes"));
    EXPECT_EQ(itsOut, "Bad argument to -x option, argument = boxes\n");

    const std::pair<const char*, int> fills[] = {
        { "Full", 2 }, { "Vertices", 3 }, { "Center", 4 }, { "Bar", 5 }, { "*Hidden", 6 },
        { "Ring", 1 }, { "ring", 1 }, { "full", 1 }, { "", 1 },
    };
    for (const auto& fill : fills) {
        EXPECT_TRUE(ParseValue("-J", fill.first)) << fill.first;
        EXPECT_EQ(itsOptions->itsViaFill, fill.second) << fill.first;
    }
}

TEST_F(GdsOptionsTest, MarginNeedsExactlyFourValues)
{
    ASSERT_TRUE(ParseValue("-m", "10%,10%,0,-3"));
    const SMargin& margin = itsOptions->itsMargin;
    EXPECT_TRUE(margin.valid());
    EXPECT_DOUBLE_EQ(margin.value(SMargin::Left), 10);
    EXPECT_EQ(margin.kind(SMargin::Left), 1);
    EXPECT_EQ(margin.kind(SMargin::Right), 1);
    EXPECT_EQ(margin.kind(SMargin::Top), 0);
    EXPECT_DOUBLE_EQ(margin.value(SMargin::Top), 0);
    EXPECT_DOUBLE_EQ(margin.value(SMargin::Bottom), 0);

    ASSERT_TRUE(ParseValue("-m", " 1 ,2.5,3e1,4%"));
    EXPECT_DOUBLE_EQ(itsOptions->itsMargin.value(SMargin::Right), 2.5);
    EXPECT_DOUBLE_EQ(itsOptions->itsMargin.value(SMargin::Top), 30);
    EXPECT_EQ(itsOptions->itsMargin.kind(SMargin::Bottom), 1);

    for (const char* bad : { "1,2,3", "1,2,3,4,5", "1,2,3,4,", "a,1,2,3", "%,1,2,3", "10%%,1,2,3",
                             "%10,1,2,3", "1,,3,4", "nan,1,2,3", "" }) {
        EXPECT_FALSE(ParseValue("-m", bad)) << bad;
        EXPECT_EQ(itsOut, "Bad argument to -m option, expect to have 4 margin values: left, right, top, bottom.\n");
    }
}

TEST_F(GdsOptionsTest, ProjectChoices)
{
    ASSERT_TRUE(Parse({ "-f", "old.vel", "a.gds" }));
    EXPECT_EQ(Text(itsOptions->itsInputProject), "old.vel");
    EXPECT_TRUE(itsOptions->itsNewProject);

    // -i is evaluated after -f, whatever the order on the line.
    SGdsOptions both;
    char* argv[] = { (char*)"gds", (char*)"-i", (char*)"in.vel", (char*)"-f", (char*)"f.vel",
                     (char*)"-o", (char*)"out.vel", (char*)"a.gds", nullptr };
    testing::internal::CaptureStdout();
    ASSERT_TRUE(both.Parse(8, argv));
    testing::internal::GetCapturedStdout();
    EXPECT_EQ(Text(both.itsInputProject), "in.vel");
    EXPECT_FALSE(both.itsNewProject);
    EXPECT_EQ(Text(both.itsOutputProject), "out.vel");

    SGdsOptions append;
    char* qArgv[] = { (char*)"gds", (char*)"-q", (char*)"a.gds", nullptr };
    ASSERT_TRUE(append.Parse(3, qArgv));
    EXPECT_FALSE(append.itsNewProject);
    EXPECT_FALSE(append.itsReplaceGeometry);
}

TEST_F(GdsOptionsTest, RunModesClearTranslate)
{
    struct Mode
    {
        std::vector<std::string> arguments;
        bool listStructures;
    };
    const Mode modes[] = {
        { { "-d" }, true }, { { "-z", "list.txt" }, true }, { { "-F" }, false },
        { { "-L" }, false }, { { "-M", "out.matl" }, false },
    };
    for (const Mode& mode : modes) {
        std::vector<std::string> arguments = mode.arguments;
        arguments.push_back("a.gds");
        ASSERT_TRUE(ParseFresh(arguments)) << mode.arguments[0];
        EXPECT_FALSE(itsOptions->itsTranslate) << mode.arguments[0];
        EXPECT_EQ(itsOptions->itsListStructures, mode.listStructures) << mode.arguments[0];
    }
    EXPECT_EQ(Text(itsOptions->itsMaterialFile), "out.matl");
}

TEST_F(GdsOptionsTest, FlagsSetTheirFieldsAndGlobalState)
{
    ASSERT_TRUE(Parse({ "-1AFHQRUWegjrvy", "-p", "TOP", "-G", "out.gds", "a.gds" }));
    EXPECT_TRUE(itsOptions->itsRecordTags);
    EXPECT_TRUE(GdsDebug().GetTags());
    EXPECT_TRUE(itsOptions->itsVerbose);
    EXPECT_TRUE(itsOptions->itsAsciiInput);
    EXPECT_TRUE(itsOptions->itsSimpleVias);
    EXPECT_TRUE(itsOptions->itsRemoveEmptyLayers);
    EXPECT_TRUE(itsOptions->itsPolygonOperations);
    EXPECT_TRUE(itsOptions->itsSingleLayer);
    EXPECT_FALSE(itsOptions->itsNewProject);
    EXPECT_TRUE(itsOptions->itsInvertY);
    EXPECT_FALSE(WarningsEnabled);
    EXPECT_TRUE(itsOptions->itsViaPads);
    EXPECT_TRUE(itsOptions->itsZeroBoxType);
    EXPECT_FALSE(itsOptions->itsMakeTechLayers);
    EXPECT_TRUE(itsOptions->itsCircuitMode);
    EXPECT_EQ(Text(itsOptions->itsStructureName), "TOP");
    EXPECT_EQ(Text(itsOptions->itsGdsOutput), "out.gds");
    EXPECT_EQ(itsErr, "");
}

TEST_F(GdsOptionsTest, BundleOutOfOrderLeavesLetterUnknown)
{
    ASSERT_TRUE(Parse({ "-vd", "a.gds" }));
    EXPECT_TRUE(itsOptions->itsVerbose);
    EXPECT_TRUE(itsOptions->itsTranslate);
    EXPECT_NE(itsErr.find("-d"), std::string::npos) << itsErr;

    SGdsOptions listing;
    char* argv[] = { (char*)"gds", (char*)"-dv", (char*)"a.gds", nullptr };
    testing::internal::CaptureStderr();
    ASSERT_TRUE(listing.Parse(3, argv));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_TRUE(listing.itsVerbose);
    EXPECT_TRUE(listing.itsListStructures);
    EXPECT_FALSE(listing.itsTranslate);
}

TEST_F(GdsOptionsTest, BadValueIsReportedBeforeHelp)
{
    EXPECT_FALSE(Parse({ "-h", "-s", "bad", "a.gds" }));
    EXPECT_EQ(itsOut, "Bad argument to -s option, argument = bad\n");
}

TEST_F(GdsOptionsTest, VersionInTheMiddleKeepsEarlierFiles)
{
    ASSERT_TRUE(Parse({ "a.gds", "-version", "-s", "bad", "b.gds" }));
    EXPECT_EQ(itsOut, "Version: " + Text(SCommandLineOptions::VersionText()) + "\n");
    EXPECT_EQ(Text(itsOptions->itsGdsFile), "a.gds");
    EXPECT_EQ(Text(itsOptions->itsSubstrate), "normal");
}

TEST_F(GdsOptionsTest, LayerFileMustExistUnlessCreating)
{
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    const std::string missing = QDir(dir.path()).filePath("missing.lay").toStdString();
    EXPECT_FALSE(Parse({ "-l", missing, "a.gds" }));
    EXPECT_EQ(itsOut, "Can not read layer file \"" + missing + "\"\n");

    EXPECT_TRUE(ParseFresh({ "-L", "-l", missing, "a.gds" }));

    const QString present = QDir(dir.path()).filePath("present.lay");
    QFile file(present);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.close();
    EXPECT_TRUE(ParseFresh({ "-l", present.toStdString(), "a.gds" }));
    EXPECT_EQ(Text(itsOptions->itsLayerFile), present.toStdString());
}

TEST_F(GdsOptionsTest, GluedLayerFileSwallowsTheStreamName)
{
    EXPECT_FALSE(Parse({ "-lx.lay", "a.gds" }));
    EXPECT_EQ(Text(itsOptions->itsLayerFile), "a.gds");
    EXPECT_EQ(itsOut, "ERROR: Must specify at least one gds file.\n");
}

TEST_F(GdsOptionsTest, TraceFileIsOnlyNamedWhileParsing)
{
    // The run opens it once it knows the name is none of its inputs; a file named by
    // mistake for the stream must not be emptied by the parse.
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    const std::string path = QDir(dir.path()).filePath("a.gds").toStdString();
    QFile stream(QString::fromStdString(path));
    ASSERT_TRUE(stream.open(QIODevice::WriteOnly));
    stream.write("stream bytes");
    stream.close();
    EXPECT_TRUE(Parse({ "-T", path, path }));
    EXPECT_EQ(Text(itsOptions->itsTraceFile), path);
    EXPECT_EQ(QFileInfo(QString::fromStdString(path)).size(), 12);
}

TEST_F(GdsOptionsTest, OddValuesNeverBreakTheParser)
{
    const std::string values[] = {
        "", std::string(10000, '9'), std::string(10000, ','), "\xc3\xa9\xe2\x82\xac\xf0\x9f\x98\x80",
        "\xff\xfe\x80", "%s%n%d", "--", "-", "1e999,1e999,1e999,1e999", "0x1p3,0x10",
        "inf,inf", "-nan,nan", ",,,,", "1%,2%,3%,4%,", std::string(5000, '%'),
    };
    const char* options[] = { "-D", "-s", "-C", "-t", "-p", "-P", "-o", "-c", "-i", "-M", "-z",
                              "-k", "-b", "-B", "-G", "-f", "-J", "-x", "-m", "-l" };
    for (const char* option : options) {
        for (const std::string& value : values) {
            SetUp();
            const bool ok = ParseValue(option, value);
            // Whatever the value, a refusal comes with a message.
            if (!ok) {
                EXPECT_FALSE(itsOut.empty()) << option;
            }
        }
    }
    GdsDebug().SetLevel(0);
}

// Runs Parse in a child that must exit with status 0; returns its output.
std::string OutputOfExitingParse(std::vector<std::string> arguments)
{
    QTemporaryDir dir;
    if (!dir.isValid())
        return "<no temporary directory>";
    const QByteArray path = QDir(dir.path()).filePath("out.txt").toLocal8Bit();
    arguments.insert(arguments.begin(), "gds");
    std::vector<char*> argv;
    for (std::string& argument : arguments)
        argv.push_back(&argument[0]);
    argv.push_back(nullptr);
    EXPECT_EXIT(
        {
            if (!std::freopen(path.constData(), "w", stdout))
                std::_Exit(3);
            SGdsOptions options;
            options.Parse(int(arguments.size()), argv.data());
            std::_Exit(2);
        },
        testing::ExitedWithCode(0), "");
    QFile file(QString::fromLocal8Bit(path));
    if (!file.open(QIODevice::ReadOnly))
        return "<no output>";
    return file.readAll().toStdString();
}

TEST_F(GdsOptionsTest, HelpPrintsUsageAndExits)
{
    const QStringList lines = QString::fromStdString(OutputOfExitingParse({ "-v", "-h", "a.gds" })).split('\n');
    ASSERT_EQ(lines.size(), 61); // 60 lines and the empty piece behind the last newline
    EXPECT_EQ(lines.at(0), "gds [options] gdsfile");
    EXPECT_EQ(lines.at(1), "");
    EXPECT_EQ(lines.at(59), "  -h             - Prints this help message.");

    // Every option is documented, except the three that are meant to stay hidden.
    SGdsCmdLineOptions known;
    known.DefineOptions();
    for (size_t i = 0; i < known.GetOptions().entries(); ++i) {
        const QString name = known.GetOptions().at(i)->GetName().qstring();
        const bool documented = !lines.filter(QRegExp("^  -" + QRegExp::escape(name) + " ")).isEmpty();
        EXPECT_EQ(documented, name != "f" && name != "H" && name != "U") << name.toStdString();
    }
}

TEST_F(GdsOptionsTest, VersionWinsOverHelpAndExits)
{
    EXPECT_EQ(OutputOfExitingParse({ "-h", "-V" }),
              "Version: " + Text(SCommandLineOptions::VersionText()) + "\n");
}
