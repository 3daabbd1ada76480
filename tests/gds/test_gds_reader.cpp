// The stream reader as a user meets it: what the program prints and how it
// ends for every kind of broken stream, the -G copy, and the format errors
// found while structures are built.

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>

#include <random>

#include <unistd.h>

#include "GdsRun.h"
#include "StreamWriter.h"

using namespace gdstest;

namespace {

const char* const kEndOfRecord = "Unexpected end-of-file reached while reading record\n";

// HEADER, BGNLIB, LIBNAME and UNITS are records 1 to 4.
StreamWriter Lib()
{
    StreamWriter s;
    s.Begin();
    return s;
}

class Reader : public testing::Test
{
protected:
    // The same broken input, listed (-d) and converted: a conversion adds
    // "Conversion failed" and nothing else.
    void ExpectFailure(const StreamWriter& stream, const std::string& message)
    {
        SCOPED_TRACE(message);
        gds.Write("in.gds", stream);
        EXPECT_RUN(gds.Run({"-d", "in.gds"}), 1, message);
        EXPECT_RUN(gds.Run({"in.gds"}), 1, message + "Conversion failed\n");
    }

    GdsRun gds;
};

} // namespace

TEST_F(Reader, EmptyFile)
{
    ExpectFailure(StreamWriter(), "Gds file in.gds is empty\n");
}

TEST_F(Reader, FileOfFewerThanFourBytes)
{
    ExpectFailure(StreamWriter().Raw(Hex("00 06 00")), "File in.gds is not in GDSII format\n");
    ExpectFailure(StreamWriter().Raw(Hex("00")), "File in.gds is not in GDSII format\n");
}

TEST_F(Reader, WrongFirstBytesShowWhatWasExpectedAndFound)
{
    const std::string expected = "File in.gds is not in GDSII format\n"
                                 "All GDS files must begin with a HEADER record.\n"
                                 "A HEADER record begins with:   \"0006 0002\".\n";
    // Gzip data, a text file, and a stream whose first record is no HEADER.
    ExpectFailure(StreamWriter().Raw(Hex("1F 8B 08 00 00 00")),
                  expected + "The gds file read begins with: \"1F8B 0800\".\n");
    gds.Write("in.gds", std::string("HEADER 600\n"));
    EXPECT_RUN(gds.Run({"-d", "in.gds"}), 1, expected + "The gds file read begins with: \"4845 4144\".\n");
    ExpectFailure(StreamWriter().Bgnlib().Endlib(), expected + "The gds file read begins with: \"001C 0102\".\n");
    // A HEADER of the wrong length is refused on its first bytes too.
    ExpectFailure(StreamWriter().Int2(HEADER, {600, 0}).Endlib(),
                  expected + "The gds file read begins with: \"0008 0002\".\n");
}

TEST_F(Reader, HeaderBytesWithoutTheirData)
{
    ExpectFailure(StreamWriter().Raw(Hex("00 06 00 02")), std::string("Error in record 1\n") + kEndOfRecord);
}

TEST_F(Reader, RecordLengthBelowFour)
{
    ExpectFailure(Lib().RecordWithLength(2, ENDLIB, NO_DATA),
                  "Error in record 5\nRecord length is less than 4 bytes\nRecord Length = 2\n");
    // The length is looked at before the type and the data type.
    ExpectFailure(Lib().RecordWithLength(0, 99, 99),
                  "Error in record 5\nRecord length is less than 4 bytes\nRecord Length = 0\n");
}

TEST_F(Reader, RecordTypeAbove59)
{
    ExpectFailure(Lib().Record(60, NO_DATA).Endlib(), "Error in record 5\nUnknown record type encountered = 60\n");
    ExpectFailure(Lib().Record(255, 9).Endlib(), "Error in record 5\nUnknown record type encountered = 255\n");
    // 59 is the last known type, a skip record.
    gds.Write("in.gds", Lib().Record(59, INT4, Hex("01 02 03")).Cell("A").Endlib());
    EXPECT_RUN(gds.Run({"-d", "in.gds"}), 0, "A\n");
}

TEST_F(Reader, DataTypeAbove6)
{
    ExpectFailure(Lib().Record(ENDLIB, 7), "Error in record 5\nUnknown data type encountered = 7\n");
}

TEST_F(Reader, KnownRecordWithTheWrongDataType)
{
    ExpectFailure(Lib().Bgnstr("A").Int4(LAYER, {1}).Endstr().Endlib(),
                  "ERROR: Encountered a record with the wrong data type\n"
                  "This record has a data type of FOUR_BYTE_INT\n"
                  "The data type should be TWO_BYTE_INT\n"
                  "Error encounted in record 7\n");
    // Four-byte reals exist as a data type but no known record holds them.
    ExpectFailure(StreamWriter().Header().Record(UNITS, REAL4, Hex("3E418937 3944B82F")).Endlib(),
                  "ERROR: Encountered a record with the wrong data type\n"
                  "This record has a data type of FOUR_BYTE_REAL\n"
                  "The data type should be EIGHT_BYTE_REAL\n"
                  "Error encounted in record 2\n");
    // The data type is checked first when both are wrong.
    ExpectFailure(Lib().Record(ENDLIB, INT2, Hex("0001")),
                  "ERROR: Encountered a record with the wrong data type\n"
                  "This record has a data type of TWO_BYTE_INT\n"
                  "The data type should be NO_DATA\n"
                  "Error encounted in record 5\n");
}

TEST_F(Reader, KnownRecordWithTheWrongLength)
{
    ExpectFailure(Lib().Bgnstr("A").Int2(LAYER, {1, 2}).Endstr().Endlib(),
                  "ERROR: Encountered a record with the wrong length\n"
                  "This record has a length of 8\n"
                  "The length should be 6\n"
                  "Error encounted in record 7\n");
    ExpectFailure(Lib().Bgnstr("A").Record(ENDSTR, NO_DATA, Hex("0000")).Endlib(),
                  "ERROR: Encountered a record with the wrong length\n"
                  "This record has a length of 6\n"
                  "The length should be 4\n"
                  "Error encounted in record 7\n");
    ExpectFailure(StreamWriter().Header().Int2(BGNLIB, {2026, 1, 1, 0, 0, 0}).Endlib(),
                  "ERROR: Encountered a record with the wrong length\n"
                  "This record has a length of 16\n"
                  "The length should be 28\n"
                  "Error encounted in record 2\n");
    ExpectFailure(StreamWriter().Header().Real(UNITS, {0.001}).Endlib(),
                  "ERROR: Encountered a record with the wrong length\n"
                  "This record has a length of 12\n"
                  "The length should be 20\n"
                  "Error encounted in record 2\n");
}

TEST_F(Reader, SkippedRecordsTakeAnyDataTypeAndLength)
{
    StreamWriter s = Lib();
    s.Record(SPACING, REAL4, Hex("01 02 03")).Record(29, BIT_ARRAY).Record(ENDMASKS, ASCII, Hex("41"));
    s.Bgnstr("A").Record(TEXT, INT4, Hex("00 00 00")).Endel().Boundary(1, 0, StreamWriter::Rect(0, 0, 1, 1));
    s.Endstr().Endlib();
    gds.Write("in.gds", s);
    EXPECT_RUN(gds.Run({"-d", "in.gds"}), 0, "A\n");
}

TEST_F(Reader, FileEndingInsideARecord)
{
    // XY announces 20 bytes and has 6; then a header cut after two bytes.
    ExpectFailure(Lib().Bgnstr("A").NoData(BOUNDARY).RecordWithLength(20, XY, INT4, Hex("00000001 0002")),
                  std::string("Error in record 8\n") + kEndOfRecord);
    ExpectFailure(Lib().Raw(Hex("00 04")), std::string("Error in record 5\n") + kEndOfRecord);
}

TEST_F(Reader, FileEndingAtARecordBoundaryBeforeEndlib)
{
    // The reader has no message of its own for this.
    ExpectFailure(Lib().Cell("A"), "");
    ExpectFailure(StreamWriter().Header(), "");
}

TEST_F(Reader, DirectoryIsNotReadable)
{
    ASSERT_TRUE(QDir(gds.Dir()).mkdir("dir.gds"));
    EXPECT_RUN(gds.Run({"-d", "dir.gds"}), 1, "Can not read GDSII file dir.gds\n");
    EXPECT_RUN(gds.Run({"dir.gds"}), 1, "Can not read GDSII file dir.gds\nConversion failed\n");
}

TEST_F(Reader, NonexistentFile)
{
    EXPECT_RUN(gds.Run({"-d", "none.gds"}), 1, "Can not read GDSII file none.gds\n");
    EXPECT_RUN(gds.Run({"none.gds"}), 1, "Can not read GDSII file none.gds\nConversion failed\n");
    EXPECT_RUN(gds.Run({"-F", "none.gds"}), 1, "Can not read GDSII file none.gds\n");
}

TEST_F(Reader, UnreadableFile)
{
    gds.Write("locked.gds", Lib().Cell("A").Endlib());
    std::string path = gds.Path("locked.gds");
    ASSERT_TRUE(QFile::setPermissions(QString::fromStdString(path), QFileDevice::Permissions()));
    if (access(path.c_str(), R_OK) == 0)
        GTEST_SKIP() << "running as a user who reads any file";
    EXPECT_RUN(gds.Run({"-d", "locked.gds"}), 1, "Can not read GDSII file locked.gds\n");
}

TEST_F(Reader, BadOutputFileStopsBeforeReading)
{
    gds.Write("in.gds", Lib().Cell("A").Endlib());
    EXPECT_RUN(gds.Run({"-d", "-G", "missing/out.gds", "in.gds"}), 1, "Can not write to GDSII file missing/out.gds\n");
    EXPECT_RUN(gds.Run({"-G", "missing/out.gds", "in.gds"}), 1,
               "Can not write to GDSII file missing/out.gds\nConversion failed\n");
}

TEST(CopyOfStream, IsByteExactUpToEndlibAndLeavesOutWhatFollows)
{
    GdsRun gds;
    StreamWriter stream = Lib();
    stream.Cell("A", 3).Bgnstr("B").Sref("A", 5, -7).Aref("A", 2, 3, {{0, 0}, {20, 0}, {0, 30}});
    stream.Path(2, 1, 100, {{0, 0}, {500, 0}}, 2).Box(3, 4, StreamWriter::Rect(0, 0, 5, 5));
    stream.Record(TEXT, NO_DATA).Int2(LAYER, {9}).String(STRING, "label").Endel().Endstr().Endlib();
    StreamWriter input = stream;
    // Padding as tape blocks have it, and a whole stream behind that.
    input.Raw(Bytes(300, 0)).Raw(stream.bytes());
    gds.Write("in.gds", input);
    EXPECT_RUN(gds.Run({"-d", "-G", "copy.gds", "in.gds"}), 0, "A\nB\n");
    EXPECT_EQ(gds.Read("copy.gds"), std::string(stream.bytes().begin(), stream.bytes().end()));
    // The copy is made while reading, whatever else the run does.
    EXPECT_EQ(gds.Run({"-F", "-G", "copy2.gds", "in.gds"}).status, 0);
    EXPECT_EQ(gds.Read("copy2.gds"), gds.Read("copy.gds"));
}

TEST(CopyOfStream, KeepsWhatWasReadWhenTheStreamIsCut)
{
    GdsRun gds;
    StreamWriter cut = Lib();
    cut.Bgnstr("A").NoData(BOUNDARY).RecordWithLength(44, XY, INT4, Hex("00000001 00000002 00000003"));
    gds.Write("in.gds", cut);
    EXPECT_RUN(gds.Run({"-d", "-G", "copy.gds", "in.gds"}), 1, std::string("Error in record 8\n") + kEndOfRecord);
    EXPECT_EQ(gds.Read("copy.gds"), std::string(cut.bytes().begin(), cut.bytes().end()));
}

// Format errors that end the build, and those it goes on from.
class Build : public Reader
{
};

TEST_F(Build, BgnstrInsideAStructure)
{
    ExpectFailure(Lib().Bgnstr("A").Cell("B").Endstr().Endlib(),
                  "GDS File format error (record = 7): Found BGNSTR before ENDEL.\n");
}

TEST_F(Build, StrnameOutsideAStructure)
{
    ExpectFailure(Lib().String(STRNAME, "A").Cell("B").Endlib(),
                  "GDS File format error (record = 5): Found a STRNAME without a previous BGNSTR.\n");
    ExpectFailure(Lib().Cell("B").String(STRNAME, "A").Endlib(),
                  "GDS File format error (record = 13): Found a STRNAME without a previous BGNSTR.\n");
}

TEST_F(Build, GeometryOutsideAStructure)
{
    ExpectFailure(Lib().Boundary(1, 0, StreamWriter::Rect(0, 0, 1, 1)).Cell("A").Endlib(),
                  "GDS File format error (record = 5): Found BOUNDARY without a matching BGNSTR.\n");
    ExpectFailure(Lib().Cell("A").Path(1, 0, 10, {{0, 0}, {1, 0}}).Endlib(),
                  "GDS File format error (record = 13): Found PATH without a matching BGNSTR.\n");
    ExpectFailure(Lib().Box(1, 0, StreamWriter::Rect(0, 0, 1, 1)).Endlib(),
                  "GDS File format error (record = 5): Found BOX without a matching BGNSTR.\n");
}

TEST_F(Build, ReferencesAndEndstrOutsideAStructureAreReportedAndPassed)
{
    gds.Write("in.gds", Lib().Sref("A", 0, 0).Aref("A", 1, 1, {{0, 0}, {1, 0}, {0, 1}}).Endstr().Cell("A").Endlib());
    EXPECT_RUN(gds.Run({"-d", "in.gds"}), 0,
               "GDS File format error (record = 5): Found SREF without a matching BGNSTR.\n"
               "GDS File format error (record = 9): Found AREF without a matching BGNSTR.\n"
               "GDS File format error (record = 14): Found ENDSTR without a matching BGNSTR.\n"
               "A\n");
}

TEST_F(Build, GeometryWhileAnElementIsOpen)
{
    ExpectFailure(Lib().Bgnstr("A").NoData(BOUNDARY).Int2(LAYER, {1}).Boundary(1, 0, StreamWriter::Rect(0, 0, 1, 1))
                      .Endstr().Endlib(),
                  "GDS File format error (record = 9): Found BOUNDARY record expecting a ENDEL.\n");
    ExpectFailure(Lib().Bgnstr("A").NoData(SREF).NoData(PATH).Endel().Endstr().Endlib(),
                  "GDS File format error (record = 8): Found PATH record expecting a ENDEL.\n");
}

TEST_F(Build, ReferenceWhileAnElementIsOpenIsReportedAndPassed)
{
    // The SREF is dropped and its records go to the open boundary.
    StreamWriter s = Lib();
    s.Bgnstr("A").NoData(BOUNDARY).Int2(LAYER, {1}).Sref("B", 0, 0).Endstr();
    s.Bgnstr("B").NoData(PATH).NoData(AREF).Endel().Endstr().Endlib();
    gds.Write("in.gds", s);
    EXPECT_RUN(gds.Run({"-d", "in.gds"}), 0,
               "GDS File format error (record = 9): Found SREF record expecting a ENDEL.\n"
               "GDS File format error (record = 17): Found AREF record expecting a ENDEL.\n"
               "A\nB\n");
}

TEST_F(Build, ArrayPositionsNeedThreePoints)
{
    ExpectFailure(Lib().Bgnstr("A").Aref("B", 2, 2, {{0, 0}}).Endstr().Endlib(),
                  "Record: 10, Length of XY record is 12, its should be 28\n");
    ExpectFailure(Lib().Bgnstr("A").Aref("B", 2, 2, {{0, 0}, {1, 1}, {2, 2}, {3, 3}}).Endstr().Endlib(),
                  "Record: 10, Length of XY record is 36, its should be 28\n");
}

TEST_F(Build, ReferencePositionIsOnePoint)
{
    ExpectFailure(Lib().Bgnstr("A").NoData(SREF).String(SNAME, "B").Xy({{0, 0}, {1, 0}, {0, 1}}).Endel().Endstr().Endlib(),
                  "Record: 9, Length of XY record is 28, its should be 12\n");
    ExpectFailure(Lib().Bgnstr("A").NoData(SREF).String(SNAME, "B").Record(XY, INT4).Endel().Endstr().Endlib(),
                  "Record: 9, Length of XY record is 4, its should be 12\n");
}

TEST_F(Build, StructureLeftOpenAtTheEnd)
{
    ExpectFailure(Lib().Cell("A").Bgnstr("B").Boundary(1, 0, StreamWriter::Rect(0, 0, 1, 1)).Endlib(),
                  "Unexpected end-of-file reached while reading gds file\n");
}

TEST_F(Build, ElementRecordsWithoutAnElementAreIgnored)
{
    // LAYER before any element, WIDTH in a boundary, XY after ENDEL, a TEXT
    // element with its records, and properties between elements.
    StreamWriter s = Lib();
    s.Bgnstr("A").Int2(LAYER, {4}).Xy({{0, 0}}).NoData(BOUNDARY).Int4(WIDTH, {10}).Xy(StreamWriter::Rect(0, 0, 2, 2));
    s.Endel().Xy({{1, 1}}).Endel();
    s.Record(TEXT, NO_DATA).Int2(LAYER, {1}).Int2(TEXTTYPE, {0}).Int2(PRESENTATION, {5}).Xy({{3, 3}});
    s.String(STRING, "pin").Endel().Int2(PROPATTR, {1}).String(PROPVALUE, "x").Endstr().Endlib();
    gds.Write("in.gds", s);
    EXPECT_RUN(gds.Run({"-d", "in.gds"}), 0, "A\n");
}

TEST_F(Build, ColrowOnASingleReferenceIsAProgramFault)
{
    gds.Write("in.gds", Lib().Bgnstr("A").NoData(SREF).String(SNAME, "B").Int2(COLROW, {1, 1}).Xy({{0, 0}})
                            .Endel().Endstr().Endlib());
    RunResult run = gds.Run({"-d", "in.gds"});
    EXPECT_TRUE(run.finished);
    EXPECT_EQ(run.status, 1);
    EXPECT_NE((run.out + run.err).find("VL1001"), std::string::npos) << run.out << run.err;
}

TEST_F(Build, TheFaultComesOnlyWhereTheBuildingComesAfterTheWholeStream)
{
    // The building comes after the reading: what the reading says later in the stream
    // is said first, and a stream that can't be read ends with the reading's error alone.
    StreamWriter faulty = Lib();
    faulty.Bgnstr("A").NoData(SREF).String(SNAME, "B").Int2(COLROW, {1, 1}).Xy({{0, 0}}).Endel().Endstr();
    StreamWriter whole = faulty;
    gds.Write("whole.gds", whole.Units(-1, 1e-9).Endlib());
    RunResult run = gds.Run({"-d", "whole.gds"});
    EXPECT_EQ(run.status, 1);
    EXPECT_NE(run.out.find("units must be positive"), std::string::npos) << run.out;
    EXPECT_NE(run.err.find("VL1001"), std::string::npos) << run.err;
    gds.Write("cut.gds", faulty);
    run = gds.Run({"-d", "cut.gds"});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ((run.out + run.err).find("VL1001"), std::string::npos) << run.out << run.err;
}

TEST(Warnings, StopAfterTwentyFiveWithOneLimitLine)
{
    GdsRun gds;
    const std::string limit =
        "WARNING: Maximum number of warnings exceeded, further warnings will not be printed\n";
    for (int count : {25, 26, 27}) {
        StreamWriter s = Lib();
        s.Bgnstr("P");
        for (int i = 0; i < count; ++i)
            s.NoData(PATH).Int2(PATHTYPE, {3}).Endel();
        gds.Write("p.gds", s.Endstr().Endlib());
        std::string expected;
        for (int i = 0; i < count && i < 25; ++i)
            expected += "Pathtype is invalid in record " + std::to_string(8 + 3 * i) + ", pathtype = 3, using 2 instead\n";
        if (count > 25)
            expected += limit;
        EXPECT_RUN(gds.Run({"-d", "p.gds"}), 0, expected + "P\n");
        EXPECT_RUN(gds.Run({"-W", "-d", "p.gds"}), 0, "P\n");
    }
}

TEST(Warnings, UnknownReleaseIsReadAnyway)
{
    GdsRun gds;
    StreamWriter s;
    s.Header(7).Bgnlib().Libname().Units().Cell("A").Endlib();
    gds.Write("r.gds", s);
    EXPECT_RUN(gds.Run({"-d", "r.gds"}), 0, "Unknown release number 7 - will try to convert file anyway.\nA\n");
    RunResult verbose = gds.Run({"-v", "-d", "r.gds"});
    EXPECT_EQ(verbose.status, 0);
    EXPECT_EQ(verbose.out.substr(0, verbose.out.find("Gds library")),
              "Reading gds file - r.gds\nRelease = 7\nUnknown release number 7 - will try to convert file anyway.\n");
}

TEST(Records, SecondHeaderIsAnOrdinaryRecord)
{
    GdsRun gds;
    gds.Write("h.gds", Lib().Cell("A").Header(3).Bgnlib().Units(1.0, 1e-6).Cell("B", 2).Endlib());
    EXPECT_RUN(gds.Run({"-d", "h.gds"}), 0, "A\nB\n");
}

TEST(Records, NamesReadAsLatin1AndPrintAsUtf8)
{
    GdsRun gds;
    gds.Write("n.gds", Lib().Cell("\xE9t\xE9").Bgnstr("top").Sref("\xE9t\xE9", 0, 0).Sref("\xE9t\xE9", 1, 1).Endstr().Endlib());
    EXPECT_RUN(gds.Run({"-d", "n.gds"}), 0, "\xC3\xA9t\xC3\xA9\ntop\n");
    RunResult tags = gds.Run({"-F", "n.gds"});
    EXPECT_NE(tags.out.find("<STRNAME=\"\xC3\xA9t\xC3\xA9\"> \n"), std::string::npos) << tags.out;
    EXPECT_NE(tags.out.find("<SNAME=\"\xC3\xA9t\xC3\xA9\"> "), std::string::npos) << tags.out;
}

TEST(Robustness, DamagedStreamsEndInAnOrderlyWay)
{
    // A stream with a record of most kinds, damaged in a few bytes at a time
    // or cut short: every run ends with a status of its own and no fault.
    StreamWriter good = Lib();
    good.Cell("A", 2).Bgnstr("B").Sref("A", 5, -7).Aref("A", 2, 3, {{0, 0}, {20, 0}, {0, 30}});
    good.Path(2, 1, 100, {{0, 0}, {500, 0}, {500, 500}}, 4).Box(3, 4, StreamWriter::Rect(0, 0, 5, 5));
    good.NoData(SREF).String(SNAME, "A").BitArray(STRANS, 0x80, 0x06).Real(MAG, {2}).Real(ANGLE, {30});
    good.Xy({{1, 1}}).Endel().Record(TEXT, NO_DATA).String(STRING, "t").Endel().Endstr().Endlib();
    const Bytes& original = good.bytes();
    GdsRun gds;
    std::mt19937 random(7);
    for (int round = 0; round < 60; ++round) {
        Bytes damaged = original;
        if (round % 4 == 3) {
            damaged.resize(4 + random() % (damaged.size() - 4));
        } else {
            for (int n = 0; n <= round % 3; ++n)
                damaged[4 + random() % (damaged.size() - 4)] = static_cast<unsigned char>(random());
        }
        gds.Write("damaged.gds", damaged);
        for (const char* option : {"-d", "-S"}) {
            RunResult run = gds.Run({option, "damaged.gds"}, "out.txt");
            EXPECT_TRUE(run.finished) << "round " << round << " " << option;
            EXPECT_TRUE(run.status == 0 || run.status == 1) << "round " << round << " " << option;
            EXPECT_EQ(run.err, "") << "round " << round << " " << option;
        }
    }
}
