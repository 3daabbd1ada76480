// Values of the stream as the record classes decode them: reals, integers,
// bit arrays, strings, time stamps, units and the release table.

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <random>
#include <string>

#include "RecordReader.h"
#include "SGdsRec.h"
#include "StreamWriter.h"

using namespace gdstest;

namespace {

std::string HexOf(const unsigned char* bytes, int count = 8)
{
    std::string text;
    char pair[4];
    for (int i = 0; i < count; ++i) {
        snprintf(pair, sizeof pair, i ? " %02X" : "%02X", bytes[i]);
        text += pair;
    }
    return text;
}

std::string Encoded(double value)
{
    unsigned char bytes[8];
    SGdsTypeEightByteReal::Encode(value, bytes);
    return HexOf(bytes);
}

double Decoded(const std::string& hex)
{
    Bytes bytes = Hex(hex);
    return SGdsTypeEightByteReal::Decode(bytes.data());
}

// A stream of the frame and one structure holding what the test adds.
StreamWriter InStructure()
{
    StreamWriter s;
    s.Begin().Bgnstr("S");
    return s;
}

} // namespace

TEST(EightByteReal, EncodesTheKnownExamples)
{
    EXPECT_EQ(Encoded(1.0), "41 10 00 00 00 00 00 00");
    EXPECT_EQ(Encoded(-1.0), "C1 10 00 00 00 00 00 00");
    EXPECT_EQ(Encoded(0.5), "40 80 00 00 00 00 00 00");
    EXPECT_EQ(Encoded(0.001), "3E 41 89 37 4B C6 A7 F0");
    EXPECT_EQ(Encoded(0.0), "00 00 00 00 00 00 00 00");
}

TEST(EightByteReal, DecodesTheKnownExamples)
{
    EXPECT_EQ(Decoded("41 10 00 00 00 00 00 00"), 1.0);
    EXPECT_EQ(Decoded("C1 10 00 00 00 00 00 00"), -1.0);
    EXPECT_EQ(Decoded("40 80 00 00 00 00 00 00"), 0.5);
    EXPECT_EQ(Decoded("3E 41 89 37 4B C6 A7 F0"), 0.001);
    EXPECT_EQ(Decoded("00 00 00 00 00 00 00 00"), 0.0);
}

TEST(EightByteReal, ZeroMantissaIsZeroWhateverTheExponent)
{
    EXPECT_EQ(Decoded("41 00 00 00 00 00 00 00"), 0.0);
    EXPECT_EQ(Decoded("7F 00 00 00 00 00 00 00"), 0.0);
    EXPECT_EQ(Decoded("C5 00 00 00 00 00 00 00"), 0.0);
}

TEST(EightByteReal, UnnormalisedMantissaIsTakenAsItStands)
{
    // 1/256 of 16, and 1/2^56 of 16^2.
    EXPECT_EQ(Decoded("41 01 00 00 00 00 00 00"), 0.0625);
    EXPECT_EQ(Decoded("42 00 00 00 00 00 00 01"), std::ldexp(1.0, 8 - 56));
    EXPECT_EQ(Decoded("C0 00 00 00 00 00 00 10"), -std::ldexp(1.0, -52));
}

TEST(EightByteReal, EveryDoubleInRangeSurvivesARoundTrip)
{
    // Reals of the stream carry 56 mantissa bits, more than a double has, so
    // coding is exact within the exponent range; the independent coder must
    // agree with the program's byte for byte.
    std::mt19937_64 random(20261123);
    std::uniform_real_distribution<double> mantissa(0.5, 1.0);
    std::uniform_int_distribution<int> exponent(-230, 230);
    for (int i = 0; i < 20000; ++i) {
        double value = std::ldexp(mantissa(random), exponent(random));
        if (i % 2)
            value = -value;
        unsigned char ours[8], theirs[8];
        SGdsTypeEightByteReal::Encode(value, ours);
        EncodeReal(value, theirs);
        ASSERT_EQ(HexOf(ours), HexOf(theirs)) << "value " << value;
        ASSERT_EQ(SGdsTypeEightByteReal::Decode(ours), value) << HexOf(ours);
    }
    for (double value : {1e-9, 2.54e-5, 0.3048, 0.0254, 1e-6, 1e-3, 0.01, 90.0, 1e70, 1e-70, 123456789.125,
                         std::ldexp(1.0, 53) - 1.0, 0.1, 1.0 / 3.0}) {
        unsigned char ours[8];
        SGdsTypeEightByteReal::Encode(value, ours);
        EXPECT_EQ(SGdsTypeEightByteReal::Decode(ours), value) << value;
    }
}

TEST(EightByteReal, RecordsReadTheirValues)
{
    RecordReader reader;
    ASSERT_TRUE(reader.Load(InStructure()
                                .NoData(SREF).String(SNAME, "X").Real(MAG, {2.5}).Real(ANGLE, {-90})
                                .Xy({{0, 0}}).Endel().Endstr().Endlib()));
    EXPECT_EQ(reader.Find<SGdsRecMag>(MAG)->GetValue(0), 2.5);
    EXPECT_EQ(reader.Find<SGdsRecAngle>(ANGLE)->GetValue(0), -90.0);
    SGdsRecUnits* units = reader.Find<SGdsRecUnits>(UNITS);
    EXPECT_EQ(units->GetUserUnit(), 0.001);
    EXPECT_EQ(units->GetMeterUnit(), 1e-9);
}

TEST(Integers, TwoByteValuesAreSigned)
{
    StreamWriter s = InStructure();
    s.NoData(BOUNDARY).Int2(LAYER, {0xFFFF}).Int2(DATATYPE, {0xFFFE}).Endel();
    s.NoData(BOUNDARY).Int2(LAYER, {0x7FFF}).Int2(DATATYPE, {0x8000}).Endel();
    RecordReader reader;
    ASSERT_TRUE(reader.Load(s.Endstr().Endlib()));
    EXPECT_EQ(reader.Find<SGdsRecLayer>(LAYER, 0)->GetValue(0), -1);
    EXPECT_EQ(reader.Find<SGdsRecDatatype>(DATATYPE, 0)->GetValue(), -2);
    EXPECT_EQ(reader.Find<SGdsRecLayer>(LAYER, 1)->GetValue(0), 32767);
    EXPECT_EQ(reader.Find<SGdsRecDatatype>(DATATYPE, 1)->GetValue(), -32768);
}

TEST(Integers, FourByteValuesAreSignedAndPairedIntoPoints)
{
    RecordReader reader;
    ASSERT_TRUE(reader.Load(InStructure()
                                .NoData(BOUNDARY)
                                .Int4(XY, {0xFFFFFFF6LL, 2147483647LL, -2147483647LL - 1, 7, 9})
                                .Endel().Endstr().Endlib()));
    SGdsRecXy* xy = reader.Find<SGdsRecXy>(XY);
    ASSERT_EQ(xy->GetCount(), 5);
    EXPECT_EQ(xy->GetValue(0), -10);
    EXPECT_EQ(xy->GetValue(1), 2147483647);
    EXPECT_EQ(xy->GetValue(2), -2147483648LL);
    // An odd value has no partner and makes no point.
    EXPECT_EQ(xy->GetPointCount(), 2);
}

TEST(Integers, ShortRecordsHoldNoValues)
{
    StreamWriter s = InStructure();
    // Length 4 on a variable record, and 5 with one stray byte.
    s.NoData(BOUNDARY).Record(XY, INT4).Endel();
    s.NoData(BOUNDARY).Record(XY, INT4, {0x12}).Endel();
    RecordReader reader;
    ASSERT_TRUE(reader.Load(s.Endstr().Endlib()));
    EXPECT_EQ(reader.Find<SGdsRecXy>(XY, 0)->GetCount(), 0);
    EXPECT_EQ(reader.Find<SGdsRecXy>(XY, 0)->GetPointCount(), 0);
    EXPECT_EQ(reader.Find<SGdsRecXy>(XY, 1)->GetCount(), 0);
    EXPECT_EQ(reader.Find<SGdsRecXy>(XY, 1)->GetLength(), 5);
}

TEST(Integers, PointsAreScaledByTheUnitOfTheStream)
{
    RecordReader reader;
    StreamWriter s;
    s.Header().Bgnlib().Libname().Units(0.001, 1e-9).Bgnstr("S").NoData(BOUNDARY).Xy({{1500, -2000}});
    ASSERT_TRUE(reader.Load(s.Endel().Endstr().Endlib()));
    SGdsRecXy* xy = reader.Find<SGdsRecXy>(XY);
    EXPECT_DOUBLE_EQ(xy->GetX(0), 1.5);
    EXPECT_DOUBLE_EQ(xy->GetY(0), -2.0);
}

TEST(BitArrays, StransBitsCountFromTheTopOfTheFirstByte)
{
    StreamWriter s = InStructure();
    for (auto bits : {std::make_pair(0x80, 0x00), std::make_pair(0x00, 0x06), std::make_pair(0x00, 0x04),
                      std::make_pair(0x00, 0x02)})
        s.NoData(SREF).String(SNAME, "X").BitArray(STRANS, bits.first, bits.second).Xy({{0, 0}}).Endel();
    RecordReader reader;
    ASSERT_TRUE(reader.Load(s.Endstr().Endlib()));
    struct { bool reflection, magnification, angle; } expected[] = {
        {true, false, false}, {false, true, true}, {false, true, false}, {false, false, true}};
    for (int i = 0; i < 4; ++i) {
        SGdsRecStrans* strans = reader.Find<SGdsRecStrans>(STRANS, i);
        EXPECT_EQ(strans->IsReflection(), expected[i].reflection) << i;
        EXPECT_EQ(strans->IsAbsoluteMagnification(), expected[i].magnification) << i;
        EXPECT_EQ(strans->IsAbsoluteAngle(), expected[i].angle) << i;
    }
    EXPECT_TRUE(reader.Find<SGdsRecStrans>(STRANS, 1)->GetBit(13));
    EXPECT_FALSE(reader.Find<SGdsRecStrans>(STRANS, 1)->GetBit(12));
    EXPECT_STREQ(SGdsTypeBitArray::BitText(true), "set");
    EXPECT_STREQ(SGdsTypeBitArray::BitText(false), "not set");
}

TEST(Strings, TextEndsAtTheFirstZeroByte)
{
    StreamWriter s;
    s.Header().Bgnlib().Record(LIBNAME, ASCII, {0x41, 0x00, 0x42, 0x00}).Units();
    s.Bgnstr("ABC").NoData(SREF).Record(SNAME, ASCII).Xy({{0, 0}}).Endel().Endstr().Endlib();
    RecordReader reader;
    ASSERT_TRUE(reader.Load(s));
    EXPECT_EQ(reader.Find<SGdsRecLibname>(LIBNAME)->GetText(), SString("A"));
    // Written as "ABC" and a padding zero.
    EXPECT_EQ(reader.Find<SGdsRecStrname>(STRNAME)->GetStructureName(), SString("ABC"));
    EXPECT_TRUE(reader.Find<SGdsRecSname>(SNAME)->GetText().isEmpty());
}

TEST(Strings, UnnamedStructuresAreNumberedOverTheStream)
{
    StreamWriter s;
    s.Begin();
    s.Bgnstr("").Endstr().Bgnstr("named").Endstr();
    s.Int2(BGNSTR, {2026, 1, 1, 0, 0, 0, 2026, 1, 1, 0, 0, 0}).Record(STRNAME, ASCII, {0, 0}).Endstr();
    RecordReader reader;
    ASSERT_TRUE(reader.Load(s.Endlib()));
    EXPECT_EQ(reader.Find<SGdsRecStrname>(STRNAME, 0)->GetStructureName(), SString("NoName_1"));
    EXPECT_EQ(reader.Find<SGdsRecStrname>(STRNAME, 1)->GetStructureName(), SString("named"));
    EXPECT_EQ(reader.Find<SGdsRecStrname>(STRNAME, 2)->GetStructureName(), SString("NoName_2"));
    // A second stream counts from 1 again.
    RecordReader again;
    ASSERT_TRUE(again.Load(s));
    EXPECT_EQ(again.Find<SGdsRecStrname>(STRNAME, 0)->GetStructureName(), SString("NoName_1"));
}

TEST(TimeStamps, DatesPrintWithMonthNamesAndFullYears)
{
    StreamWriter s;
    s.Header()
        .Int2(BGNLIB, {2026, 11, 23, 9, 30, 5, 95, 13, 1, 0, 0, 0})
        .Libname().Units()
        .Int2(BGNSTR, {5, 1, 31, 23, 59, 59, 2001, 0, 2, 12, 3, 4})
        .String(STRNAME, "S").Endstr().Endlib();
    RecordReader reader;
    ASSERT_TRUE(reader.Load(s));
    SGdsRecBgnlib* lib = reader.Find<SGdsRecBgnlib>(BGNLIB);
    EXPECT_EQ(lib->DateText(0), SString("Nov 23, 2026  09:30:05"));
    EXPECT_EQ(lib->DateText(1), SString("bad 1, 1995  00:00:00"));
    SGdsRecBgnstr* str = reader.Find<SGdsRecBgnstr>(BGNSTR);
    EXPECT_EQ(str->DateText(0), SString("Jan 31, 2005  23:59:59"));
    EXPECT_EQ(str->DateText(1), SString("bad 2, 2001  12:03:04"));
}

TEST(TimeStamps, YearsBelow1900AreMovedIntoTheCenturyTheyMeant)
{
    StreamWriter s;
    s.Header().Int2(BGNLIB, {59, 12, 1, 0, 0, 0, 60, 6, 1, 0, 0, 0}).Endlib();
    RecordReader reader;
    ASSERT_TRUE(reader.Load(s));
    EXPECT_EQ(reader.Find<SGdsRecBgnlib>(BGNLIB)->DateText(0), SString("Dec 1, 2059  00:00:00"));
    EXPECT_EQ(reader.Find<SGdsRecBgnlib>(BGNLIB)->DateText(1), SString("Jun 1, 1960  00:00:00"));
}

namespace {

struct UnitCase
{
    double user;
    double metres;
    const char* name;
    double value;
};

} // namespace

TEST(Units, NameTheUserUnitWithinOnePartInAThousand)
{
    const UnitCase cases[] = {
        {0.001, 1e-9, "uM", 1e-6},           {1.0, 1.0000004e-6, "uM", 1e-6},
        {1.0, 2.5e-5, "units", 1.0},          {1.0, 2.54e-5, "mils", 2.54e-5},
        {0.01, 0.003048, "feet", 0.3048},     {1.0, 0.0254, "inches", 0.0254},
        {0.001, 1e-6, "mm", 0.001},           {1.0, 0.01, "cm", 0.01},
        {0.5, 0.5, "M", 1.0},                 {1.0, 0.00100099, "mm", 0.001},
        {1.0, 0.0010011, "units", 1.0},       {1.0, 0.0009990001, "mm", 0.001},
    };
    for (const UnitCase& c : cases) {
        RecordReader reader;
        ASSERT_TRUE(reader.Load(StreamWriter().Header().Units(c.user, c.metres).Endlib()));
        SString name;
        double value = 0;
        reader.Find<SGdsRecUnits>(UNITS)->GetUnit(name, value);
        EXPECT_EQ(name, SString(c.name)) << c.user << " " << c.metres;
        EXPECT_EQ(value, c.value) << c.user << " " << c.metres;
    }
}

TEST(Units, TheListKeepsTheUnitAndLibraryName)
{
    RecordReader reader;
    ASSERT_TRUE(reader.Load(StreamWriter().Header().Bgnlib().Libname("CHIP").Units(1.0, 2.54e-5).Endlib()));
    ASSERT_TRUE(reader.Build());
    EXPECT_EQ(reader.List().itsUnitName, SString("mils"));
    EXPECT_EQ(reader.List().itsUnitValue, 2.54e-5);
    EXPECT_EQ(reader.List().itsLibraryName, SString("CHIP"));

    RecordReader none;
    ASSERT_TRUE(none.Load(StreamWriter().Header().Endlib()));
    ASSERT_TRUE(none.Build());
    EXPECT_EQ(none.List().itsLibraryName, SString("NotDefined"));
    EXPECT_EQ(none.List().itsUnitValue, 1.0);
}

TEST(Units, ScaleIsRoundedToSixSignificantDigits)
{
    RecordReader reader;
    EXPECT_EQ(SGdsRecord::GetScale(), 1.0);
    ASSERT_TRUE(reader.Load(StreamWriter().Header().Units(0.00100000000000005, 1e-9).Endlib()));
    EXPECT_EQ(SGdsRecord::GetScale(), 0.001);

    RecordReader other;
    ASSERT_TRUE(other.Load(StreamWriter().Header().Units(0.1234567, 1e-9).Endlib()));
    EXPECT_EQ(SGdsRecord::GetScale(), 0.123457);
}

TEST(Header, ReleaseTable)
{
    const std::pair<int, const char*> table[] = {
        {0, "Prior to 3.0"}, {3, "3.0"},     {4, "4.0"},     {5, "5.0"},     {6, "6"},
        {600, "6.0"},        {601, "6.0.1"}, {602, "6.0.2"}, {603, "6.0.3"}, {610, "6.1.0"}};
    for (const auto& row : table) {
        RecordReader reader;
        testing::internal::CaptureStdout();
        ASSERT_TRUE(reader.Load(StreamWriter().Header(row.first).Endlib()));
        EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
        EXPECT_STREQ(reader.Find<SGdsRecHeader>(HEADER)->GetRelease(), row.second);
    }
}

TEST(Header, UnknownReleaseWarnsAndReadingGoesOn)
{
    for (int version : {7, 1, 2, 611, -1}) {
        RecordReader reader;
        testing::internal::CaptureStdout();
        bool read = reader.Load(StreamWriter().Header(version).Bgnlib().Endlib());
        EXPECT_EQ(testing::internal::GetCapturedStdout(),
                  "Unknown release number " + std::to_string(version) + " - will try to convert file anyway.\n");
        EXPECT_TRUE(read);
        EXPECT_EQ(reader.Count(), 3);
        EXPECT_STREQ(reader.Find<SGdsRecHeader>(HEADER)->GetRelease(), "UNKNOWN");
    }
}

TEST(PathType, StreamValuesMapToInternalTypes)
{
    StreamWriter s = InStructure();
    for (int type : {0, 1, 2, 4, 3, -1})
        s.NoData(PATH).Int2(PATHTYPE, {type}).Endel();
    RecordReader reader;
    testing::internal::CaptureStdout();
    ASSERT_TRUE(reader.Load(s.Endstr().Endlib()));
    EXPECT_EQ(reader.Find<SGdsRecPathtype>(PATHTYPE, 0)->GetPathType(), 1);
    EXPECT_EQ(reader.Find<SGdsRecPathtype>(PATHTYPE, 1)->GetPathType(), 3);
    EXPECT_EQ(reader.Find<SGdsRecPathtype>(PATHTYPE, 2)->GetPathType(), 3);
    EXPECT_EQ(reader.Find<SGdsRecPathtype>(PATHTYPE, 3)->GetPathType(), 4);
    EXPECT_EQ(reader.Find<SGdsRecPathtype>(PATHTYPE, 4)->GetPathType(), 3);
    EXPECT_EQ(reader.Find<SGdsRecPathtype>(PATHTYPE, 5)->GetPathType(), 3);
    // Records 1-4 frame the library, 5-6 open the structure; each path takes three.
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "Pathtype is invalid in record 20, pathtype = 3, using 2 instead\n"
              "Pathtype is invalid in record 23, pathtype = -1, using 2 instead\n");
}

TEST(Colrow, NegativeCountsAreReportedButKept)
{
    StreamWriter s = InStructure();
    s.NoData(AREF).String(SNAME, "X").Int2(COLROW, {-2, 3}).Xy({{0, 0}, {1, 0}, {0, 1}}).Endel();
    s.NoData(AREF).String(SNAME, "X").Int2(COLROW, {2, -3}).Xy({{0, 0}, {1, 0}, {0, 1}}).Endel();
    RecordReader reader;
    testing::internal::CaptureStdout();
    ASSERT_TRUE(reader.Load(s.Endstr().Endlib()));
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "Invalid number of columns (-2) in COLROW record. Record = 9\n"
              "Invalid number of rows (-3) in COLROW record. Record = 14\n");
    EXPECT_EQ(reader.Find<SGdsRecColrow>(COLROW, 0)->GetColumns(), -2);
    EXPECT_EQ(reader.Find<SGdsRecColrow>(COLROW, 1)->GetRows(), -3);
}
