// The text form of a stream read back into bytes (-A): the items of a data
// line, comments, the -G copy it makes, and every way it gives up.

#include <gtest/gtest.h>

#include <QTemporaryDir>

#include <fstream>
#include <string>

#include "GdsRun.h"
#include "SGdsInput.h"
#include "SGdsRecord.h"
#include "StreamWriter.h"

using namespace gdstest;

namespace {

void WriteText(const std::string& path, const std::string& text)
{
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out << text;
}

// What one request of `count` bytes gets from the text.
std::string Deliver(const std::string& text, int count, double scale = 1.0)
{
    QTemporaryDir dir;
    std::string path = (dir.path() + "/t.txt").toStdString();
    WriteText(path, text);
    SGdsInput input;
    if (!input.Open(path.c_str()))
        return "<not opened>";
    ResetTextReader();
    SGdsRecord::SetScale(scale);
    Bytes buffer(size_t(count) + 1, 0xEE);
    int got = ReadText(buffer.data(), count, input);
    SGdsRecord::SetScale(1.0);
    std::string hex;
    char pair[4];
    for (int i = 0; i < got; ++i) {
        snprintf(pair, sizeof pair, i ? " %02X" : "%02X", buffer[size_t(i)]);
        hex += pair;
    }
    return hex;
}

} // namespace

TEST(TextItems, HexadecimalPairsBehindAnAddress)
{
    EXPECT_EQ(Deliver("00000000  0006 0002 0258\n", 6), "00 06 00 02 02 58");
    // The address is anything up to the first blank that begins with a digit.
    EXPECT_EQ(Deliver("9zz-x\t0a0B ff\n", 3), "0A 0B FF");
    // Blanks may stand between the digits of a pair.
    EXPECT_EQ(Deliver("0  0 0 0 6  0 0 0 2\n", 4), "00 06 00 02");
    EXPECT_EQ(Deliver("0 (1A,2B)\n", 2), "1A 2B");
    EXPECT_EQ(Deliver("0 12\r\n0 34\r\n", 2), "12 34");
}

TEST(TextItems, LinesThatDoNotBeginWithADigitAreComments)
{
    EXPECT_EQ(Deliver("HEADER 0102\n 0304\n\tab\n\n# 77\n0 0506\n", 2), "05 06");
    EXPECT_EQ(Deliver("A 0102\n0 0708\n", 2), "07 08");
}

TEST(TextItems, TypedNumbers)
{
    EXPECT_EQ(Deliver("0 L:100 L:-100\n", 8), "00 00 00 64 FF FF FF 9C");
    EXPECT_EQ(Deliver("0 I:32767 I:-32768 I:+5\n", 6), "7F FF 80 00 00 05");
    EXPECT_EQ(Deliver("0 R:1\n", 8), "41 10 00 00 00 00 00 00");
    EXPECT_EQ(Deliver("0 R:-0.5 R:0\n", 16), "C0 80 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
    EXPECT_EQ(Deliver("0 R: 0.001\n", 8), "3E 41 89 37 4B C6 A7 F0");
    // Items mix freely with pairs, with or without blanks between them.
    EXPECT_EQ(Deliver("0 0008 0D02 I:7,(L:1)\n", 10), "00 08 0D 02 00 07 00 00 00 01");
}

TEST(TextItems, MinusOneStaysMinusOne)
{
    // Rounding adds a half; a negative sum is taken one further down, so
    // that -1 does not become 0.
    EXPECT_EQ(Deliver("0 I:1 I:-1\n", 4), "00 01 FF FF");
    EXPECT_EQ(Deliver("0 L:-1 I:-2\n", 6), "FF FF FF FF FF FE");
}

TEST(TextItems, EqualsSignScalesByTheUnitOfTheStream)
{
    EXPECT_EQ(Deliver("0 L=2\n", 4, 0.001), "00 00 07 D0");
    EXPECT_EQ(Deliver("0 L=2\n", 4, 1.0), "00 00 00 02");
    EXPECT_EQ(Deliver("0 L:2\n", 4, 0.001), "00 00 00 02");
    EXPECT_EQ(Deliver("0 L=-3\n", 4, 0.001), "FF FF F4 48");
    EXPECT_EQ(Deliver("0 R=1\n", 8, 0.5), "41 20 00 00 00 00 00 00");
    // Integers are read as integers: the dot ends the number.
    EXPECT_EQ(Deliver("0 L=1.5\n", 4, 0.001), "00 00 03 E8");
}

TEST(TextItems, ARequestEndsMidLineAndTheNextGoesOnThere)
{
    QTemporaryDir dir;
    std::string path = (dir.path() + "/t.txt").toStdString();
    WriteText(path, "note\n0 0102 0304\n0 05\n");
    SGdsInput input;
    ASSERT_TRUE(input.Open(path.c_str()));
    ResetTextReader();
    unsigned char buffer[8] = {};
    ASSERT_EQ(ReadText(buffer, 3, input), 3);
    ASSERT_EQ(ReadText(buffer + 3, 2, input), 2);
    EXPECT_EQ(std::string(buffer, buffer + 5), std::string("\x01\x02\x03\x04\x05"));
    EXPECT_EQ(ReadText(buffer, 0, input), 0);
    // At the end of the input what is there is delivered.
    EXPECT_EQ(ReadText(buffer, 4, input), 0);
}

TEST(TextItems, ShortInputDeliversWhatItHas)
{
    EXPECT_EQ(Deliver("0 0102\n", 4), "01 02");
    EXPECT_EQ(Deliver("comment only\n", 4), "");
    EXPECT_EQ(Deliver("", 4), "");
}

namespace {

// A text stream: one structure holding a boundary given in user units.
const char* const kTextStream =
    "Made by hand\n"
    "0 0006 0002 I:600\n"
    "0 001C 0102 I:2026 I:1 I:2 I:3 I:4 I:5 I:2026 I:1 I:2 I:3 I:4 I:5\n"
    "0 0014 0305 R:0.001 R:0.000000001\n"
    "0 001C 0502 I:2026 I:1 I:2 I:3 I:4 I:5 I:2026 I:1 I:2 I:3 I:4 I:5\n"
    "0 0006 0606 5400\n"
    "BOUNDARY, LAYER, DATATYPE, XY in microns\n"
    "0 0004 0800 0006 0D02 I:1\n"
    "0 0006 0E02 I:0\n"
    "0 002C 1003  (L=0,L=0) (L=2,L=0) (L=2,L=2) (L=0,L=2) (L=0,L=0)\n"
    "0 0004 1100 0004 0700\n"
    "0 0004 0400\n";

StreamWriter TextStreamAsBinary()
{
    StreamWriter s;
    s.Header(600).Int2(BGNLIB, {2026, 1, 2, 3, 4, 5, 2026, 1, 2, 3, 4, 5}).Units(0.001, 1e-9);
    s.Int2(BGNSTR, {2026, 1, 2, 3, 4, 5, 2026, 1, 2, 3, 4, 5}).String(STRNAME, "T");
    s.Boundary(1, 0, StreamWriter::Rect(0, 0, 2000, 2000)).Endstr().Endlib();
    return s;
}

} // namespace

TEST(TextStream, BecomesABinaryStreamWithG)
{
    GdsRun gds;
    gds.Write("t.txt", std::string(kTextStream));
    EXPECT_RUN(gds.Run({"-A", "-G", "t.gds", "-d", "t.txt"}), 0, "T\n");
    const Bytes expected = TextStreamAsBinary().bytes();
    EXPECT_EQ(gds.Read("t.gds"), std::string(expected.begin(), expected.end()));
    // The binary stream reads as the text did.
    EXPECT_RUN(gds.Run({"-d", "t.gds"}), 0, "T\n");
}

TEST(TextStream, RecordsMayShareTheLastLine)
{
    // Lines hold bytes, not records: the last line may hold several.
    GdsRun gds;
    gds.Write("one.txt", std::string("0 0006 0002 0258 0004 0400\n"));
    EXPECT_RUN(gds.Run({"-A", "-F", "one.txt"}), 0, "<HEADER> <ENDLIB> \n");
    gds.Write("two.txt", std::string("x\n0 0006 0002 0258\n0 001C 0502 07EA 0001 0002 0003 0004 0005 07EA 0001 0002 0003"
                                     " 0004 0005 0006 0606 4100 0004 0800 0006 0D02 0001 000C 1003 0000 0001 0000 0002"
                                     " 0004 1100 0004 0700 0004 0400\n"));
    EXPECT_RUN(gds.Run({"-A", "-d", "two.txt"}), 0, "A\n");
}

TEST(TextStream, IsNotCheckedForTheHeaderBytes)
{
    GdsRun gds;
    gds.Write("endlib.txt", std::string("0 0004 0400\n"));
    EXPECT_RUN(gds.Run({"-A", "-F", "endlib.txt"}), 0, "<ENDLIB> \n");
    EXPECT_RUN(gds.Run({"-A", "-d", "endlib.txt"}), 1, "No structures are defined in the gds file\n");
}

TEST(TextStream, EndsBeforeTheRecordDoes)
{
    GdsRun gds;
    gds.Write("cut.txt", std::string("0 0006 0002 0258\n0 001C 0102 07EA\n"));
    EXPECT_RUN(gds.Run({"-A", "-d", "cut.txt"}), 1,
               "Error in record 2\nUnexpected end-of-file reached while reading record\n");
    EXPECT_RUN(gds.Run({"-A", "cut.txt"}), 1,
               "Error in record 2\nUnexpected end-of-file reached while reading record\nConversion failed\n");
}

TEST(TextStream, ExampleOfTheDistributionReads)
{
    GdsRun gds;
    RunResult run = gds.Run({"-A", "-G", "chip.gds", "-v", "-d", GDS_SOURCE_DIR "/examples/chip.txt"});
    EXPECT_EQ(run.status, 0);
    EXPECT_NE(run.out.find("Primary structure \"top\"\nvia\nline\ntop\n"), std::string::npos) << run.out;
    EXPECT_RUN(gds.Run({"-d", "chip.gds"}), 0, "via\nline\ntop\n");
}

TEST(TextStream, ShortDumpReadsBackToTheSameStream)
{
    StreamWriter s;
    s.Begin().Cell("1st", 2).Bgnstr("with a long name of more than sixteen bytes");
    s.Sref("1st", -5, 7).NoData(SREF).String(SNAME, "1st").BitArray(STRANS, 0x80, 0x06).Real(MAG, {2.5});
    s.Real(ANGLE, {-90}).Xy({{1, 2}}).Endel().Aref("1st", 3, 2, {{0, 0}, {300, 0}, {0, 200}});
    s.Path(2, 7, 50, {{0, 0}, {100, 0}, {100, 100}}, 4).Int4(BGNEXTN, {5});
    s.Box(3, 4, StreamWriter::Rect(0, 0, 5, 5));
    s.Record(TEXT, NO_DATA).Int2(LAYER, {1}).Int2(TEXTTYPE, {0}).String(STRING, "0 1234 label").Endel();
    s.Record(SPACING, REAL4, Hex("01020304")).Record(ENDMASKS, NO_DATA).Endstr().Endlib();
    GdsRun gds;
    gds.Write("s.gds", s);
    ASSERT_EQ(gds.Run({"-S", "s.gds"}, "dump.txt").status, 0);
    EXPECT_RUN(gds.Run({"-A", "-G", "copy.gds", "-F", "dump.txt"}, "tags.txt"), 0, "");
    EXPECT_EQ(gds.Read("copy.gds"), gds.Read("s.gds"));
}

// Malformed text ends the process at once, with the line it stopped on.
class TextFailure : public testing::Test
{
protected:
    void ExpectFatal(const std::string& text, const std::string& message)
    {
        SCOPED_TRACE(message);
        gds.Write("bad.txt", text);
        EXPECT_RUN(gds.Run({"-A", "-d", "bad.txt"}), 1, message);
        // Not even a conversion adds its failure line.
        EXPECT_RUN(gds.Run({"-A", "bad.txt"}), 1, message);
    }

    GdsRun gds;
};

TEST_F(TextFailure, UnevenNumberOfHexDigits)
{
    ExpectFatal("first comment\nsecond\n0 0006 000\n", "Uneven number of hex digits on line 3\n");
    ExpectFatal("0 0006 0002 0\n", "Uneven number of hex digits on line 1\n");
}

TEST_F(TextFailure, BadCharacterInAPair)
{
    ExpectFatal("0 0006 00G2\n", "Bad character G (107) on line 1\n");
    ExpectFatal("x\n0 0006 0002 02\n0 5Z\n", "Bad character Z (132) on line 3\n");
}

TEST_F(TextFailure, LastLineWithoutNewlineWhenMoreIsWanted)
{
    // The end of the line's text is taken as the second digit.
    ExpectFatal("0 0006 0002\n0 02", std::string("Bad character ") + '\0' + " (0) on line 2\n");
}

TEST_F(TextFailure, TypedItemWiderThanWhatIsWanted)
{
    ExpectFatal("0 0006 0002 L:600\n", "Overrun of buffer on line 1\n");
    // A typed item that filled the request is not the end of the line.
    ExpectFatal("0 0006 0002 I:600 I:3\n0 0004 0400\n", "Overrun of buffer on line 1\n");
    ExpectFatal("0 0006 0002\n\n0 0004 04 R:1\nend\n", "Overrun of buffer on line 3\n");
}

TEST_F(TextFailure, ConversionCharacter)
{
    ExpectFatal("0 0006 0002 I#600\n", "Conversion character must be = or :, it is #, on line 1\n");
    // Blanks may follow the item letter, so the conversion character is the 6.
    ExpectFatal("0 0006 0002 I 600\n", "Conversion character must be = or :, it is 6, on line 1\n");
}

TEST_F(TextFailure, PartialCopyStaysOnDisk)
{
    gds.Write("bad.txt", std::string("0 0006 0002 0258\n0 001C 0102 I:2026 Q1\n"));
    EXPECT_RUN(gds.Run({"-A", "-G", "out.gds", "-d", "bad.txt"}), 1, "Bad character Q (121) on line 2\n");
    EXPECT_TRUE(gds.Exists("out.gds"));
}

TEST(TextRobustness, OddInputNeverCrashes)
{
    GdsRun gds;
    std::string longLine = "0";
    for (int i = 0; i < 700; ++i)
        longLine += " 00";
    const std::string inputs[] = {
        std::string(5000, '7') + "\n",
        "0" + std::string(600, '\t') + "0006 0002\n",
        "12345678901234567890123456789012345678901234567890\n0 0006\n",
        longLine + "\n",
        std::string(300, '0'),
        "0 0006 0002 I:99999999999999999999999 R:1e400\n0 0004 0400\n",
        "0 0006 0002 R:" + std::string(400, '9') + "\n",
        std::string("0 \x01\x02\xff\xfe\n", 8),
        "0 0006 0002 L=",
        // A unit of zero would make every scaled number infinite.
        "0 0006 0002 0258\n0 0014 0305 R:0 R:0\n0 001C 0502 L=5 L=-5 I=7 I=-7 R=1 0001 0002 0003 0004\n",
    };
    int n = 0;
    for (const std::string& text : inputs) {
        std::string name = "odd" + std::to_string(n++) + ".txt";
        gds.Write(name, text);
        RunResult run = gds.Run({"-A", "-G", "odd.gds", "-d", QString::fromStdString(name)});
        EXPECT_TRUE(run.finished) << name;
        EXPECT_TRUE(run.status == 0 || run.status == 1) << name;
        EXPECT_EQ(run.err, "") << name;
    }
}
