// The print forms of records (-D 1 to 3, -F, -S) on a small stream holding a
// record of every kind, compared whole with the files in expected/.

#include <gtest/gtest.h>

#include <QFile>
#include <QString>
#include <QStringList>

#include <string>

#include "GdsRun.h"
#include "StreamWriter.h"

using namespace gdstest;

namespace {

std::string Expected(const char* name)
{
    QFile file(QString(GDS_SOURCE_DIR "/tests/gds/expected/") + name);
    if (!file.open(QIODevice::ReadOnly))
        return std::string("<no file ") + name + ">";
    QByteArray data = file.readAll();
    return std::string(data.constData(), size_t(data.size()));
}

class PrintForms : public testing::Test
{
protected:
    void SetUp() override
    {
        RunResult made = gds.Run({"-A", "-G", "forms.gds", "-F", GDS_SOURCE_DIR "/tests/gds/data/forms.txt"});
        ASSERT_EQ(made.status, 0) << made.out;
    }

    GdsRun gds;
};

} // namespace

TEST_F(PrintForms, RecordLinesAtLevel1)
{
    EXPECT_RUN(gds.Run({"-D", "1", "-d", "forms.gds"}), 0, Expected("forms.D1.txt"));
}

TEST_F(PrintForms, ValuesAtLevel2)
{
    EXPECT_RUN(gds.Run({"-D", "2", "-d", "forms.gds"}), 0, Expected("forms.D2.txt"));
}

TEST_F(PrintForms, DumpAndDetailsAtLevel3)
{
    EXPECT_RUN(gds.Run({"-D", "3", "-d", "forms.gds"}), 0, Expected("forms.D3.txt"));
}

TEST_F(PrintForms, StructureWorkAtLevel4)
{
    EXPECT_RUN(gds.Run({"-D", "4", "-d", "forms.gds"}), 0, Expected("forms.D4.txt"));
}

TEST_F(PrintForms, TagsWithF)
{
    EXPECT_RUN(gds.Run({"-F", "forms.gds"}), 0, Expected("forms.F.txt"));
}

TEST_F(PrintForms, ShortFormWithS)
{
    EXPECT_RUN(gds.Run({"-S", "forms.gds"}), 0, Expected("forms.S.txt"));
    // -S overrides any level given with -D.
    EXPECT_RUN(gds.Run({"-S", "-D", "3", "forms.gds"}), 0, Expected("forms.S.txt"));
}

TEST_F(PrintForms, BoxOptionsShowInTheForms)
{
    // -Q prints the BOXTYPE it makes of the value.
    std::string zeroed = Expected("forms.S.txt");
    size_t at = zeroed.find("BOXTYPE - 5\n");
    ASSERT_NE(at, std::string::npos);
    zeroed.replace(at, std::string("BOXTYPE - 5").size(), "BOXTYPE - 0");
    EXPECT_RUN(gds.Run({"-Q", "-S", "forms.gds"}), 0, zeroed);
    std::string tags = Expected("forms.F.txt");
    at = tags.find("<BOXTYPE=5>");
    ASSERT_NE(at, std::string::npos);
    tags.replace(at, std::string("<BOXTYPE=5>").size(), "<BOXTYPE=0>");
    EXPECT_RUN(gds.Run({"-Q", "-F", "forms.gds"}), 0, tags);

    // -x box makes BOX a skipped record of the same name.
    std::string skipped = Expected("forms.D2.txt");
    std::string box = "# record: 12, type:             BOX\n";
    at = skipped.find(box);
    ASSERT_NE(at, std::string::npos);
    skipped.insert(at + box.size(), "Record skipped\n");
    EXPECT_RUN(gds.Run({"-x", "box", "-D", "2", "-d", "forms.gds"}), 0, skipped);
}

TEST_F(PrintForms, TextInputDumpsAsItsBinaryStream)
{
    EXPECT_RUN(gds.Run({"-A", "-G", "again.gds", "-S", GDS_SOURCE_DIR "/tests/gds/data/forms.txt"}), 0,
               Expected("forms.S.txt"));
    EXPECT_EQ(gds.Read("again.gds"), gds.Read("forms.gds"));
}

TEST(ShortForm, OddByteOfAnXyIsDumpedButMakesNoPoint)
{
    GdsRun gds;
    StreamWriter s;
    s.Header().Bgnstr("S").NoData(BOUNDARY).Record(XY, INT4, {0x12}).Xy({{7, -8}}).Endel().Endstr().Endlib();
    gds.Write("odd.gds", s);
    EXPECT_RUN(gds.Run({"-S", "odd.gds"}), 0,
               "00000000  0006 0002 0258 \nHEADER\n\n"
               "00000006  001C 0502 07EA 0001 0002 0003 0004 0005 \n"
               "00000016  07EA 0001 0002 0003 0004 0005 \nBGNSTR\n\n"
               "00000022  0006 0606 5300 \nSTRNAME - S\n\n"
               "00000028  0004 0800 \nBOUNDARY\n\n"
               "0000002C  0005 1003 12\n\n"
               "00000031  000C 1003 0000 0007 FFFF FFF8 \nXY     ( 7, -8 )\n\n"
               "0000003D  0004 1100 \nENDEL\n\n"
               "00000041  0004 0700 \nENDSTR\n\n"
               "00000045  0004 0400 \nENDLIB\n\n");
}

TEST_F(PrintForms, TraceFileTakesTheDebugLinesOnly)
{
    EXPECT_RUN(gds.Run({"-D", "2", "-T", "trace.txt", "-d", "forms.gds"}), 0, "leaf\ntop\n");
    std::string expected = Expected("forms.D2.txt");
    EXPECT_EQ(gds.Read("trace.txt"), expected.substr(0, expected.size() - std::string("leaf\ntop\n").size()));
}

TEST_F(PrintForms, VerboseLinesGoToStandardOutputWithTheTrace)
{
    RunResult run = gds.Run({"-v", "-D", "1", "-T", "trace.txt", "-d", "forms.gds"});
    EXPECT_RUN(run, 0,
               "Reading gds file - forms.gds\n"
               "Release = 6.0\n"
               "Gds library last modification - Nov 23, 2026  09:30:05\n"
               "Gds library name: \"FORMS\"\n"
               "Read 56 records\n"
               "Primary structure \"top\"\n"
               "leaf\ntop\n");
}
