// The layer file as a user meets it: -L, the file a translation makes for
// itself when none exists, what a full disk leaves, and layer numbers that
// read negative.

#include <gtest/gtest.h>

#include <QDir>

#include "GdsRun.h"
#include "LimitedRun.h"

using gdstest::GdsRun;
using gdstest::RunResult;
using gdstest::StreamWriter;
using Strings = std::vector<std::string>;

namespace {

const QString kExample = QString(GDS_SOURCE_DIR) + "/examples/chip.gds";

void CopyExample(const GdsRun& run)
{
    QFile::copy(kExample, run.Dir() + "/chip.gds");
}

// The (layer, datatype) columns of every mapping line, in file order.
std::vector<std::string> Pairs(const std::string& text)
{
    std::vector<std::string> pairs;
    QStringList lines = QString::fromStdString(text).split('\n', Qt::SkipEmptyParts);
    for (const QString& line : lines) {
        QStringList fields = line.split(' ', Qt::SkipEmptyParts);
        if (fields.size() > 3 && !line.startsWith('#'))
            pairs.push_back((fields[2] + "/" + fields[3]).toStdString());
    }
    return pairs;
}

// Names of the files in the run's directory, sorted.
Strings Files(const GdsRun& run)
{
    Strings names;
    for (const QString& name : QDir(run.Dir()).entryList(QDir::Files, QDir::Name))
        names.push_back(name.toStdString());
    return names;
}

// Every write past 64 bytes fails, as on a full disk.
gdstest::Limits FullDisk()
{
    gdstest::Limits limits;
    limits.fileBytes = 64;
    return limits;
}

TEST(LayerFileCommandLine, DashLWritesTheLayersOfTheChosenStructure)
{
    GdsRun run;
    CopyExample(run);
    RunResult result = run.Run({"-L", "chip.gds"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(Pairs(run.Read("chip.lay")), (std::vector<std::string>{"1/0", "1/1", "2/0"}));
    EXPECT_FALSE(run.Exists("chip.vel"));

    // Only what "via" reaches, into a file named by -l.
    result = run.Run({"-L", "-p", "via", "-l", "via.lay", "chip.gds"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(Pairs(run.Read("via.lay")), (std::vector<std::string>{"2/0"}));
}

TEST(LayerFileCommandLine, FailedDashLSaysOnlyWhatWentWrong)
{
    GdsRun run;
    RunResult result = run.Run({"-L", "missing.gds"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, "Can not read GDSII file missing.gds\n");
}

TEST(LayerFileCommandLine, ListingNeitherReadsNorMakesALayerFile)
{
    GdsRun run;
    CopyExample(run);
    RunResult result = run.Run({"-z", "list.txt", "chip.gds"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(run.Read("list.txt"), "top\n\nvia\nline\ntop\n");
    EXPECT_FALSE(run.Exists("chip.lay"));
}

TEST(LayerFileCommandLine, TranslationMakesAMissingLayerFileFirst)
{
    GdsRun run;
    CopyExample(run);
    run.Run({"chip.gds"});
    EXPECT_EQ(Pairs(run.Read("chip.lay")), (std::vector<std::string>{"1/0", "1/1", "2/0"}));

    // An existing file is read, not replaced.
    run.Write("chip.lay", std::string("# kept\n") + run.Read("chip.lay"));
    run.Run({"chip.gds"});
    EXPECT_EQ(run.Read("chip.lay").rfind("# kept\n", 0), 0u);
}

TEST(LayerFileCommandLine, BrokenLayerFileEndsTheTranslationWithItsMessage)
{
    GdsRun run;
    CopyExample(run);
    run.Write("chip.lay", "this is no layer line\n");
    RunResult result = run.Run({"chip.gds"});
    EXPECT_EQ(result.status, 1);
    EXPECT_NE(result.out.find("chip.lay:1"), std::string::npos) << result.out;
    EXPECT_NE(result.out.find("Conversion failed\n"), std::string::npos);
}

TEST(LayerFileCommandLine, FullDiskLeavesTheLayerFileWholeOrAbsent)
{
    GdsRun run;
    CopyExample(run);
    const std::string good = "# kept as it was\nm metal_boundary 1 0 1 \"Gold\" on 1\n";
    run.Write("chip.lay", good);
    RunResult result = gdstest::RunLimited(run, {"-L", "chip.gds"}, FullDisk());
    EXPECT_TRUE(result.finished);
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, "Unable to write the file chip.lay\n");
    EXPECT_EQ(run.Read("chip.lay"), good);
    EXPECT_EQ(Files(run), (Strings{"chip.gds", "chip.lay"}));

    // A translation that must make its layer file first stops when it can't.
    QFile::remove(run.Dir() + "/chip.lay");
    result = gdstest::RunLimited(run, {"chip.gds"}, FullDisk());
    EXPECT_TRUE(result.finished);
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out.rfind("Unable to write the file chip.lay\n", 0), 0u) << result.out;
    EXPECT_EQ(Files(run), Strings{"chip.gds"});
}

TEST(LayerFileCommandLine, LayersThatReadNegativeGoToALevelTheFileReadsBack)
{
    // LAYER 0xFFFF and 0x8000 read as -1 and -32768.
    StreamWriter s;
    s.Begin().Bgnstr("TOP").Boundary(0xFFFF, 0xFFFE, StreamWriter::Rect(0, 0, 5, 5));
    s.Boundary(0x8000, 0, StreamWriter::Rect(10, 0, 15, 5)).Boundary(3, 0, StreamWriter::Rect(20, 0, 25, 5));
    s.Endstr().Endlib();
    GdsRun run;
    run.Write("neg.gds", s);
    EXPECT_RUN(run.Run({"-L", "neg.gds"}), 0, "");
    EXPECT_EQ(run.Read("neg.lay"), "Not_defined metal_boundary -32768 0 0 \"Unknown_metal\" on 0\n"
                                   "Not_defined metal_boundary -1 -2 0 \"Unknown_metal\" on 0\n"
                                   "Not_defined metal_boundary 3 0 3 \"Unknown_metal\" on 3\n");
    // The translation reads it and places every shape.
    RunResult translated = run.Run({"-v", "neg.gds"});
    EXPECT_EQ(translated.status, 0) << translated.out;
    EXPECT_NE(translated.out.find("Created 3 polygons in project file\n"), std::string::npos) << translated.out;
}

TEST(LayerFileCommandLine, AFailedCreationSaysOnlyWhy)
{
    GdsRun run;
    CopyExample(run);
    EXPECT_RUN(run.Run({"-p", "nothing", "chip.gds"}), 1,
               "Could not find structure \"nothing\" the GDSII file\nConversion failed\n");
    StreamWriter s;
    s.Begin().Bgnstr("A").Sref("B", 0, 0).Endstr().Bgnstr("B").Sref("A", 0, 0).Endstr().Endlib();
    run.Write("loop.gds", s);
    EXPECT_RUN(run.Run({"-p", "A", "loop.gds"}), 1,
               "GDSII file contains a circular reference for structure = B\nConversion failed\n");
    EXPECT_EQ(Files(run), (Strings{"chip.gds", "loop.gds"}));
}

} // namespace
