// Structures as data: sizes, the default structure of -P, the names of -d
// and the list file of -z.

#include <gtest/gtest.h>

#include <QRegularExpression>
#include <QString>
#include <QStringList>

#include <QDir>

#include "GdsRun.h"
#include "LimitedRun.h"
#include "RecordReader.h"
#include "SGdsElement.h"
#include "SGdsStructure.h"
#include "StreamWriter.h"

using namespace gdstest;

namespace {

// A holds one boundary, B places A twice.
StreamWriter AB()
{
    StreamWriter s;
    s.Begin().Cell("A").Bgnstr("B").Sref("A", 0, 0).Sref("A", 100, 0).Endstr().Endlib();
    return s;
}

// The size lines of the -D 4 trace, in the order printed.
std::string SizeLines(const std::string& out)
{
    QRegularExpression line("^(Best )?Structure \\S+ size is -?\\d+$");
    std::string result;
    for (const QString& text : QString::fromStdString(out).split('\n')) {
        if (line.match(text).hasMatch())
            result += text.toStdString() + "\n";
    }
    return result;
}

} // namespace

TEST(Structures, SizesCountEveryPlacementOfEveryLeaf)
{
    StreamWriter s;
    s.Begin().Cell("FIVE", 5).Bgnstr("TOP").Aref("FIVE", 3, 2, {{0, 0}, {30, 0}, {0, 20}});
    s.Path(1, 0, 10, {{0, 0}, {1, 1}}).Box(2, 0, StreamWriter::Rect(0, 0, 1, 1)).Endstr();
    s.Bgnstr("TWICE").Sref("TOP", 0, 0).Sref("TOP", 9, 9).Sref("UNDEFINED", 0, 0).Endstr().Endlib();
    RecordReader reader;
    ASSERT_TRUE(reader.Load(s));
    ASSERT_TRUE(reader.Build());
    SGdsStructureList& list = reader.List();
    EXPECT_EQ(list.GetSize("FIVE"), 5);
    EXPECT_EQ(list.GetSize("TOP"), 32);
    EXPECT_EQ(list.GetSize("TWICE"), 64);
    EXPECT_EQ(list.GetSize("nothing"), 0);
    EXPECT_EQ(list.GetDefaultStructure(kDefaultStructureBest), SString("TWICE"));
    EXPECT_EQ(list.GetDefaultStructure(kDefaultStructureFirst), SString("FIVE"));
    EXPECT_EQ(list.GetDefaultStructure(kDefaultStructureLast), SString("TWICE"));
}

TEST(Structures, ElementsHoldWhatTheirRecordsSay)
{
    StreamWriter s;
    s.Begin().Bgnstr("S");
    s.NoData(PATH).Int2(LAYER, {7}).Int2(DATATYPE, {3}).Int2(PATHTYPE, {4}).Int4(WIDTH, {2500});
    s.Int4(BGNEXTN, {-500}).Int4(ENDTEXTN, {750}).Xy({{0, 0}, {1000, 0}}).Endel();
    s.NoData(AREF).String(SNAME, "X").BitArray(STRANS, 0x80, 0x06).Real(MAG, {2}).Real(ANGLE, {45});
    s.Int2(COLROW, {4, 5}).Xy({{1000, 2000}, {5000, 2000}, {1000, 7000}}).Endel();
    s.Box(9, 6, StreamWriter::Rect(0, 0, 1, 1)).Endstr().Endlib();
    RecordReader reader;
    ASSERT_TRUE(reader.Load(s));
    ASSERT_TRUE(reader.Build());
    SGdsStructure* structure = reader.List().FindStructure("S");
    ASSERT_NE(structure, nullptr);
    ASSERT_EQ(structure->itsElements.entries(), 3u);

    auto* path = static_cast<SGdsElementPath*>(structure->itsElements.at(0));
    EXPECT_STREQ(path->GetName(), "Path");
    EXPECT_EQ(path->itsLayer, 7);
    EXPECT_EQ(path->itsDatatype, 3);
    EXPECT_EQ(path->itsPathType, 4);
    EXPECT_DOUBLE_EQ(path->itsWidth, 2.5);
    EXPECT_DOUBLE_EQ(path->itsBeginExtension, -0.5);
    EXPECT_DOUBLE_EQ(path->itsEndExtension, 0.75);
    ASSERT_NE(path->itsXyRecord, nullptr);
    EXPECT_EQ(path->itsXyRecord->GetPointCount(), 2);

    auto* array = static_cast<SGdsElementAref*>(structure->itsElements.at(1));
    EXPECT_STREQ(array->GetName(), "ARef");
    EXPECT_EQ(array->itsStructureName, SString("X"));
    EXPECT_EQ(array->itsColumns, 4);
    EXPECT_EQ(array->itsRows, 5);
    EXPECT_TRUE(array->itsTransform.itsReflection);
    EXPECT_TRUE(array->itsTransform.itsAbsoluteMagnification);
    EXPECT_TRUE(array->itsTransform.itsAbsoluteAngle);
    EXPECT_EQ(array->itsTransform.itsMagnification, 2.0);
    EXPECT_EQ(array->itsTransform.itsAngle, 45.0);
    EXPECT_EQ(array->itsTransform.itsTranslation, SPoint(1.0, 2.0));
    EXPECT_EQ(array->itsReferencePoint, SPoint(1.0, 2.0));
    EXPECT_EQ(array->itsColumnPoint, SPoint(5.0, 2.0));
    EXPECT_EQ(array->itsRowPoint, SPoint(1.0, 7.0));

    auto* box = static_cast<SGdsElement*>(structure->itsElements.at(2));
    EXPECT_STREQ(box->GetName(), "Box");
    EXPECT_EQ(box->itsLayer, 9);
    EXPECT_EQ(box->itsDatatype, 6);
}

TEST(Structures, BoxOptionsChangeWhatABoxBecomes)
{
    StreamWriter s;
    s.Begin().Bgnstr("S").Box(9, 5, StreamWriter::Rect(0, 0, 1, 1)).Endstr().Endlib();
    {
        RecordReader reader;
        ZeroBoxType = true;
        ASSERT_TRUE(reader.Load(s));
        ASSERT_TRUE(reader.Build());
        SGdsStructure* structure = reader.List().FindStructure("S");
        ASSERT_EQ(structure->itsElements.entries(), 1u);
        EXPECT_EQ(static_cast<SGdsElement*>(structure->itsElements.at(0))->itsDatatype, 0);
    }
    {
        // Without boxes its BOXTYPE and XY find no element.
        RecordReader reader;
        ConvertBoxes = false;
        ASSERT_TRUE(reader.Load(s));
        ASSERT_TRUE(reader.Build());
        EXPECT_EQ(reader.List().FindStructure("S")->itsElements.entries(), 0u);
        EXPECT_EQ(reader.List().GetSize("S"), 0);
    }
    ZeroBoxType = false;
    ConvertBoxes = true;
}

TEST(Structures, ReferencesReachTheFirstOfTwoEqualNames)
{
    StreamWriter s;
    s.Begin().Cell("D", 1).Cell("D", 4).Bgnstr("TOP").Sref("D", 0, 0).Endstr().Endlib();
    RecordReader reader;
    ASSERT_TRUE(reader.Load(s));
    ASSERT_TRUE(reader.Build());
    EXPECT_EQ(reader.List().itsStructures.entries(), 3u);
    EXPECT_EQ(reader.List().GetSize("TOP"), 1);
    // The second D is counted on its own and is the largest.
    EXPECT_EQ(reader.List().GetDefaultStructure(kDefaultStructureBest), SString("D"));
    EXPECT_EQ(static_cast<SGdsStructure*>(reader.List().itsStructures.at(1))->GetSize(reader.List()), 4);
}

TEST(Structures, CycleHasAFiniteSize)
{
    StreamWriter s;
    s.Begin();
    s.Bgnstr("A").Boundary(1, 0, StreamWriter::Rect(0, 0, 1, 1)).Sref("B", 0, 0).Endstr();
    s.Bgnstr("B").Boundary(1, 0, StreamWriter::Rect(0, 0, 1, 1)).Sref("A", 0, 0).Endstr();
    s.Bgnstr("SELF").Sref("SELF", 0, 0).Aref("SELF", 2, 2, {{0, 0}, {1, 0}, {0, 1}}).Endstr().Endlib();
    GdsRun gds;
    gds.Write("cycle.gds", s);
    RunResult run = gds.Run({"-D", "4", "-d", "cycle.gds"});
    EXPECT_EQ(run.status, 0);
    // A is sized first and sees B's cycle back to A as empty.
    EXPECT_EQ(SizeLines(run.out), "Structure A size is 2\n"
                                  "Structure B size is 1\n"
                                  "Structure SELF size is 0\n"
                                  "Best Structure A size is 2\n");

    RecordReader reader;
    ASSERT_TRUE(reader.Load(s));
    ASSERT_TRUE(reader.Build());
    // Entered at B, the cycle counts the other way round.
    EXPECT_EQ(reader.List().GetSize("B"), 2);
    EXPECT_EQ(reader.List().GetSize("A"), 1);
}

TEST(Structures, ListedStructuresAndTheBestOne)
{
    GdsRun gds;
    gds.Write("ab.gds", AB());
    EXPECT_RUN(gds.Run({"-d", "ab.gds"}), 0, "A\nB\n");
    EXPECT_RUN(gds.Run({"-v", "-d", "ab.gds"}), 0,
               "Reading gds file - ab.gds\n"
               "Release = 6.0\n"
               "Gds library last modification - Nov 23, 2026  09:30:05\n"
               "Gds library name: \"LIB\"\n"
               "Read 24 records\n"
               "Primary structure \"B\"\n"
               "A\nB\n");
    RunResult first = gds.Run({"-v", "-d", "-P", "first", "ab.gds"});
    EXPECT_NE(first.out.find("Primary structure \"A\"\nA\nB\n"), std::string::npos) << first.out;
    RunResult named = gds.Run({"-v", "-d", "-p", "elsewhere", "ab.gds"});
    EXPECT_EQ(named.status, 0);
    EXPECT_NE(named.out.find("Primary structure \"elsewhere\"\nA\nB\n"), std::string::npos) << named.out;
}

TEST(Structures, ArrayCountsColumnsTimesRowsInTheTrace)
{
    StreamWriter s;
    s.Begin().Cell("FIVE", 5).Bgnstr("TOP").Aref("FIVE", 3, 2, {{0, 0}, {30, 0}, {0, 20}}).Endstr().Endlib();
    GdsRun gds;
    gds.Write("a.gds", s);
    RunResult run = gds.Run({"-D", "4", "-d", "a.gds"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(SizeLines(run.out), "Structure FIVE size is 5\nStructure TOP size is 30\nBest Structure TOP size is 30\n");
}

TEST(Structures, LargestStructureWinsWhetherPlacedOrNot)
{
    StreamWriter s;
    s.Begin().Cell("LEAF", 1).Bgnstr("TOP").Sref("LEAF", 0, 0).Sref("LEAF", 5, 5).Endstr();
    s.Cell("BIG", 3).Cell("SAME", 3).Endlib();
    GdsRun gds;
    gds.Write("s.gds", s);
    RunResult run = gds.Run({"-v", "-d", "s.gds"});
    EXPECT_EQ(run.status, 0);
    EXPECT_NE(run.out.find("Primary structure \"BIG\"\nLEAF\nTOP\nBIG\nSAME\n"), std::string::npos) << run.out;
}

TEST(Structures, NoStructureToChoose)
{
    GdsRun gds;
    StreamWriter none;
    none.Begin().Endlib();
    StreamWriter empty;
    empty.Begin().Bgnstr("E1").Endstr().Bgnstr("E2").Sref("E1", 0, 0).Endstr().Endlib();
    gds.Write("none.gds", none);
    gds.Write("empty.gds", empty);
    const char* message = "No structures are defined in the gds file\n";
    for (const char* mode : {"first", "last", "best"})
        EXPECT_RUN(gds.Run({"-d", "-P", mode, "none.gds"}), 1, message);
    EXPECT_RUN(gds.Run({"-d", "empty.gds"}), 1, message);
    EXPECT_RUN(gds.Run({"-d", "-P", "best", "empty.gds"}), 1, message);
    EXPECT_RUN(gds.Run({"empty.gds"}), 1, std::string(message) + "Conversion failed\n");
    // first and last take a name whatever its size.
    EXPECT_RUN(gds.Run({"-d", "-P", "first", "empty.gds"}), 0, "E1\nE2\n");
    EXPECT_RUN(gds.Run({"-z", "list.txt", "-P", "last", "empty.gds"}), 0, "");
    EXPECT_EQ(gds.Read("list.txt"), "E2\n\nE1\nE2\n");
    // Reading alone needs no structure.
    EXPECT_EQ(gds.Run({"-S", "none.gds"}).status, 0);
}

TEST(Structures, StructureWithoutStrnameIsNeitherListedNorChosen)
{
    StreamWriter s;
    s.Begin().Cell("A", 1);
    s.Int2(BGNSTR, {2026, 1, 1, 0, 0, 0, 2026, 1, 1, 0, 0, 0}).Boundary(1, 0, StreamWriter::Rect(0, 0, 1, 1));
    s.Boundary(1, 0, StreamWriter::Rect(0, 0, 1, 1)).Endstr().Bgnstr("").Endstr().Endlib();
    GdsRun gds;
    gds.Write("s.gds", s);
    RunResult run = gds.Run({"-v", "-d", "s.gds"});
    EXPECT_EQ(run.status, 0);
    EXPECT_NE(run.out.find("Primary structure \"A\"\nA\nNoName_1\n"), std::string::npos) << run.out;
}

TEST(StructureList, FileHoldsPrimaryEmptyLineAndAllNames)
{
    StreamWriter s;
    s.Begin().Cell("A", 1).Cell("B", 3).Cell("C", 2).Cell("A", 1).Endlib();
    GdsRun gds;
    gds.Write("s.gds", s);
    EXPECT_RUN(gds.Run({"-z", "list.txt", "s.gds"}), 0, "");
    EXPECT_EQ(gds.Read("list.txt"), "B\n\nA\nB\nC\nA\n");
    // With -d as well, the names still go only to the file.
    EXPECT_RUN(gds.Run({"-d", "-z", "list2.txt", "-P", "first", "s.gds"}), 0, "");
    EXPECT_EQ(gds.Read("list2.txt"), "A\n\nA\nB\nC\nA\n");
    // -p names the structure to convert, not the primary one of the list.
    EXPECT_RUN(gds.Run({"-z", "list3.txt", "-p", "C", "s.gds"}), 0, "");
    EXPECT_EQ(gds.Read("list3.txt"), "B\n\nA\nB\nC\nA\n");
    // Nothing else is made.
    EXPECT_FALSE(gds.Exists("s.lay"));
    EXPECT_FALSE(gds.Exists("s.vel"));
}

TEST(StructureList, UnwritableFileFailsTheRun)
{
    GdsRun gds;
    gds.Write("ab.gds", AB());
    EXPECT_RUN(gds.Run({"-z", "missing/list.txt", "ab.gds"}), 1, "Can not write to file missing/list.txt\n");

    // On a full disk the list that was there stays whole, and no temporary file is left.
    StreamWriter many;
    many.Begin();
    for (int i = 0; i < 20; ++i)
        many.Cell("STRUCTURE_" + std::to_string(i));
    gds.Write("many.gds", many.Endlib());
    gds.Write("list.txt", "OLD\n\nOLD\n");
    Limits full;
    full.fileBytes = 64;
    RunResult run = RunLimited(gds, {"-z", "list.txt", "many.gds"}, full);
    EXPECT_RUN(run, 1, "Can not write to file list.txt\n");
    EXPECT_EQ(gds.Read("list.txt"), "OLD\n\nOLD\n");
    EXPECT_EQ(QDir(gds.Dir()).entryList(QDir::Files, QDir::Name), (QStringList{"ab.gds", "list.txt", "many.gds"}));
}

TEST(Structures, CollectingWalksEachStructureOnceAndStillFindsCycles)
{
    // LEAF is reached 2 * (3 + 10 * 10) times, and through OTHER as well.
    StreamWriter s;
    s.Begin().Bgnstr("LEAF").Boundary(1, 0, StreamWriter::Rect(0, 0, 1, 1)).Box(2, 0, StreamWriter::Rect(0, 0, 1, 1));
    s.Endstr().Bgnstr("MID").Sref("LEAF", 0, 0).Sref("LEAF", 1, 0).Sref("LEAF", 2, 0);
    s.Aref("LEAF", 10, 10, {{0, 0}, {10, 0}, {0, 10}}).Sref("GONE", 0, 0).Endstr();
    s.Bgnstr("OTHER").Sref("LEAF", 0, 0).Path(3, 0, 1, {{0, 0}, {5, 0}}).Endstr();
    s.Bgnstr("TOP").Sref("MID", 0, 0).Sref("OTHER", 0, 0).Sref("MID", 50, 0).Endstr();
    s.Bgnstr("RING_A").Sref("LEAF", 0, 0).Sref("RING_B", 0, 0).Endstr();
    s.Bgnstr("RING_B").Sref("LEAF", 0, 0).Sref("RING_A", 0, 0).Endstr().Endlib();
    RecordReader reader;
    ASSERT_TRUE(reader.Load(s));
    ASSERT_TRUE(reader.Build());

    SOrdered elements;
    testing::internal::CaptureStdout();
    bool ok = reader.List().CollectElements(elements, "TOP");
    std::string printed = testing::internal::GetCapturedStdout();
    EXPECT_TRUE(ok);
    // The undefined name is told once for the one reference that names it.
    EXPECT_EQ(printed, "Structure GONE is referenced, but not defined in the GDSII file\n");
    std::string names;
    for (SCollectable* item : elements)
        names += std::string(static_cast<SGdsElement*>(item)->GetName()) + " ";
    EXPECT_EQ(names, "Boundary Box Path ");

    // A cycle is still told, and a later walk starts afresh.
    for (int round = 0; round < 2; ++round) {
        elements.clear();
        testing::internal::CaptureStdout();
        EXPECT_FALSE(reader.List().CollectElements(elements, "RING_A"));
        EXPECT_EQ(testing::internal::GetCapturedStdout(),
                  "GDSII file contains a circular reference for structure = RING_B\n");
    }
}

TEST(Structures, DeepHierarchyDoesNotExhaustTheStack)
{
    // Each structure places the next; only the last one holds a shape.
    const int depth = 200000;
    StreamWriter s;
    s.Begin();
    for (int i = 0; i < depth - 1; ++i)
        s.Bgnstr("S" + std::to_string(i)).Sref("S" + std::to_string(i + 1), 0, 0).Endstr();
    s.Cell("S" + std::to_string(depth - 1)).Endlib();
    GdsRun gds;
    gds.Write("deep.gds", s);
    RunResult run = gds.Run({"-v", "-d", "deep.gds"}, "out.txt");
    EXPECT_TRUE(run.finished) << "the program crashed";
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.err, "");
    // All have size 1, so the first wins.
    EXPECT_NE(gds.Read("out.txt").find("Primary structure \"S0\"\nS0\nS1\n"), std::string::npos);

    // The layer file is made by a walk of its own.
    EXPECT_RUN(gds.Run({"-L", "deep.gds"}), 0, "");
    EXPECT_EQ(gds.Read("deep.lay"), "Not_defined metal_boundary 1 0 1 \"Unknown_metal\" on 1\n");
}

TEST(Structures, HugeArraysNeverCountBelowZero)
{
    // Four levels of 32767 by 32767 arrays place more shapes than 64 bits count.
    StreamWriter s;
    s.Begin().Cell("L");
    std::string previous = "L";
    for (int i = 0; i < 4; ++i) {
        std::string name = "A" + std::to_string(i);
        s.Bgnstr(name).Aref(previous, 32767, 32767, {{0, 0}, {1, 0}, {0, 1}}).Endstr();
        previous = name;
    }
    GdsRun gds;
    gds.Write("huge.gds", s.Endlib());
    RunResult run = gds.Run({"-D", "4", "-d", "huge.gds"});
    EXPECT_TRUE(run.finished);
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.err, "");
    std::string sizes = SizeLines(run.out);
    EXPECT_NE(sizes.find("Structure A0 size is 1073676289\n"), std::string::npos) << sizes;
    EXPECT_EQ(sizes.find(" size is -"), std::string::npos) << sizes;
}
