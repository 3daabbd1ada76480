// The project a translation starts from and the one it saves: -g and -i drop the old
// drawing while they read it, -q keeps it and is told when the file was cut short, and a
// target that can't be written is named before anything is made.

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <algorithm>
#include <string>
#include <unistd.h>

#include "SCircuit.h"
#include "SErrorMessages.h"
#include "SHeaderBlock.h"
#include "SVeloraError.h"
#include "SXtranProject.h"

namespace {

std::string gReports;

void Capture(const char* text, int)
{
    gReports += text;
    gReports += '\n';
}

// A square of 10 at (x, y) with the lines `extra` between its header and its points.
std::string Square(const std::string& level, long long id, double x, double y, const std::string& extra = "",
                   const std::string& material = "-1")
{
    const std::string x0 = std::to_string(static_cast<int>(x)), x1 = std::to_string(static_cast<int>(x) + 10);
    const std::string y0 = std::to_string(static_cast<int>(y)), y1 = std::to_string(static_cast<int>(y) + 10);
    return level + " 5 " + material + " N " + std::to_string(id) + " 1 1 100 100 0 0 0 Y\n" + extra + x0 + " " + y0 +
           "\n" + x1 + " " + y0 + "\n" + x1 + " " + y1 + "\n" + x0 + " " + y1 + "\n" + x0 + " " + y0 + "\nEND\n";
}

// `count` plain squares with the ids first, first + 1, ...
std::string Squares(long long first, int count)
{
    std::string text;
    for (int i = 0; i < count; ++i)
        text += Square(std::to_string(i % 3), first + i, (i % 10) * 12, (i / 10 % 10) * 12);
    return text;
}

const std::string kHead = "FTYP VELPROJ 17\nDIM\nLNG UM\nEND DIM\nGEO\n";

// Box planes, a coupled group's plane, ports, an edge via and a dimension hang on polygons
// 7, 8 and 12; technology layers name others.
const std::string kObjects = "DRP1 LEFT LINK\nPOLY 7 1\n2\n"
                             "DRP1 RIGHT LINK\nPOLY 12 1\n0\n"
                             "DRP1 TOP FIX 3\n"
                             "TMET \"Lossless\" 0 SUP 0 0 0 0\n"
                             "BMET \"Lossless\" 0 SUP 0 0 0 0\n"
                             "MET \"Gold\" 1 NOR INF 0 0.5\n"
                             "BOX 2 160 160 32 32 20 0\n"
                             "      0 1 1 0 0 0 0 \"Air\"\n"
                             "      5 1 1 0 0 0 0 \"Oxide\"\n"
                             "      5 9.8 1 0 0 0 0 \"Substrate\"\n"
                             "TECHLAY METAL M1 <UNSPECIFIED> 1 0 \n"
                             "0 0 -1 N 0 1 1 100 100 0 0 0 Y\nEND\nEND\n"
                             "TECHLAY METAL \"M 2\" <UNSPECIFIED> 2 0 \n"
                             "1 0 -1 N 0 1 1 100 100 0 0 0 Y\nEND\nEND\n"
                             "DIM STD XDIR 1\nPOS 5 -10\nNOM 10\nREF1 POLY 7 1\n0\nREF2 POLY 8 1\n1\nEND\n"
                             "LORGN 0 160 U\n"
                             "EVIA1\nPOLY 7 1\n1\nTOLEVEL 1\n"
                             "POR1 STD\nPOLY 7 1\n3\n1 50 0 0 0 0 5 \n"
                             "POR1 CUP \"G1\"\nPOLARITY REVERSED\nGNDREF BOX BELOW\nTERMW FEED\nPOLY 8 1\n0\n"
                             "2,-3 50 0 1e-09 2e-12 5 0 FIX 4 2\n"
                             "CUPGRP \"G1\"\nID 1\nGNDREF BOX BELOW\nDRP1 LEFT LINK\nPOLY 8 1\n1\nEND\n";

// Polygons of every kind and form, among many plain ones: a via, a brick, a layer name in
// quotes, a comment, user text, a group line, a line ending in a carriage return, an id of
// 0 (the reader makes it the line's number, the highest id of all).
std::string Drawing()
{
    return Squares(100, 1500) + Square("0", 7, 20, 30, "TLAYNAM M1 INH\n", "0") + Square("0", 0, 15, 15) + "VIA POLYGON\n" +
           Square("0", 9, 40, 40, "TOLEVEL 1 RING COVERS\n") + Square("1", 8, 60, 60, "TLAYNAM \"M 2\" NOH\n") +
           "BRI POLY\n" + Square("0", 20, 80, 80, "", "0") + Squares(2000, 1500) +
           Square("1", 12, 100, 20, "USER_DAT imported ! kept apart\n") + Square("2", 13, 0, 0, "GLG GROUP 2\n") +
           Square("0", 14, 5, 5, "USER_DAT windows\r\n") + Squares(4000, 300) +
           Square("1", 9000, 0, 100);
}

std::string Count(const std::string& polygons)
{
    size_t n = 0;
    for (size_t at = polygons.find("\nEND\n"); at != std::string::npos; at = polygons.find("\nEND\n", at + 1))
        ++n;
    return "NUM " + std::to_string(n) + "\n";
}

class UpdatedProject : public testing::Test
{
protected:
    void SetUp() override
    {
        static bool loaded = false;
        if (!loaded) {
            SErrorMessages::Instance()->LoadFile(SString(GDS_SOURCE_DIR "/resource/strings_util.h"));
            SErrorMessages::Instance()->LoadFile(SString(GDS_SOURCE_DIR "/resource/strings_filelib.h"));
            loaded = true;
        }
        SHeaderBlock::SetFixedTime(1700000000);
        VeloraSetErrorSink(Capture);
        gReports.clear();
        ASSERT_TRUE(itsDir.isValid());
    }

    void TearDown() override
    {
        SHeaderBlock::SetFixedTime(0);
        VeloraSetErrorSink(nullptr);
    }

    SString Path(const std::string& name) const { return SString(itsDir.filePath(QString::fromStdString(name))); }

    void Write(const std::string& name, const std::string& text) const
    {
        QFile file(Path(name).qstring());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(text.data(), static_cast<qint64>(text.size()));
    }

    std::string Text(const std::string& name) const
    {
        QFile file(Path(name).qstring());
        return file.open(QIODevice::ReadOnly) ? file.readAll().toStdString() : std::string("<missing>");
    }

    // What -g makes of `input`, the drawing dropped while reading or removed after a full
    // read: whether it got through, what it reported, the next free polygon id, the file.
    struct Result
    {
        bool ok = false;
        std::string reports;
        long long nextId = -1;
        std::string text;
    };

    Result Update(const std::string& input, bool drop)
    {
        const std::string out = drop ? "dropped.vel" : "removed.vel";
        QFile::remove(Path(out).qstring());
        gReports.clear();
        Result result;
        SXtranProject project;
        project.SetDropDrawing(drop);
        result.ok = project.ReadProject(Path(input)) && project.RemoveDimensions() && project.RemovePolygons() &&
                    project.ReleaseReferencePlanes() && project.Save(Path(out));
        result.reports = gReports;
        if (project.GetCircuit() != nullptr)
            result.nextId = project.GetCircuit()->GetNextPolygonId();
        result.text = Text(out);
        return result;
    }

    // Both roads agree; the result of the full read.
    Result ExpectSameRoads(const std::string& input, const std::string& what)
    {
        const Result removed = Update(input, false);
        const Result dropped = Update(input, true);
        EXPECT_EQ(dropped.ok, removed.ok) << what;
        EXPECT_EQ(dropped.reports, removed.reports) << what;
        EXPECT_EQ(dropped.nextId, removed.nextId) << what;
        EXPECT_EQ(dropped.text, removed.text) << what;
        return removed;
    }

    QTemporaryDir itsDir;
};

TEST_F(UpdatedProject, DroppingTheDrawingWhileReadingSavesWhatRemovingItAfterwardsSaves)
{
    const std::string drawing = Drawing();
    const std::string input = kHead + kObjects + Count(drawing) + drawing + "END GEO\nQSG\nEND QSG\n";
    Write("old.vel", input);
    // The polygon of id 0 takes the number of its line, the highest id of all.
    const size_t zero = input.find("\n0 5 -1 N 0 ");
    const long long zeroLine = std::count(input.begin(), input.begin() + static_cast<long>(zero), '\n') + 2;
    const Result removed = Update("old.vel", false);
    ASSERT_TRUE(removed.ok) << removed.reports;
    EXPECT_EQ(removed.reports, "");
    const Result dropped = Update("old.vel", true);
    ASSERT_TRUE(dropped.ok) << dropped.reports;
    EXPECT_EQ(dropped.reports, "");
    EXPECT_EQ(dropped.text, removed.text);
    // New polygons number on from the highest id the old drawing used.
    EXPECT_EQ(removed.nextId, zeroLine + 1);
    EXPECT_EQ(dropped.nextId, removed.nextId);

    // The planes tied to polygons 7 and 12 took the lengths they had: the left one to x of
    // polygon 7's third point, the right one from polygon 12's first point to the wall.
    const std::string& text = dropped.text;
    EXPECT_NE(text.find("DRP1 LEFT FIX 30\n"), std::string::npos) << text;
    EXPECT_NE(text.find("DRP1 RIGHT FIX 60\n"), std::string::npos) << text;
    EXPECT_NE(text.find("NUM 0\n"), std::string::npos) << text;
    EXPECT_EQ(text.find("POR1"), std::string::npos) << text;
    EXPECT_EQ(text.find("EVIA1"), std::string::npos) << text;
    EXPECT_NE(text.find("TECHLAY METAL \"M 2\""), std::string::npos) << text;
    EXPECT_NE(text.find("CUPGRP \"G1\""), std::string::npos) << text;
}

TEST_F(UpdatedProject, ADroppedDrawingIsCheckedAsAFullReadChecksIt)
{
    const std::string plain = Squares(100, 1200);
    const std::string good = Square("0", 7, 20, 30) + Square("1", 8, 0, 0) + Square("0", 12, 100, 20);
    // Each broken polygon stands after a long plain run and again first of all.
    const std::pair<const char*, std::string> broken[] = {
        {"a point that is no number", "0 5 -1 N 50 1 1 100 100 0 0 0 Y\n0 0\n1 x\n1 1\n0 1\n0 0\nEND\n"},
        {"a closing point that isn't the first", "0 5 -1 N 50 1 1 100 100 0 0 0 Y\n0 0\n1 0\n1 1\n0 1\n0 2\nEND\n"},
        {"a material that doesn't exist", Square("0", 50, 0, 0, "", "4")},
        {"a level beyond the box", Square("3", 50, 0, 0)},
        {"a technology layer that doesn't exist", Square("0", 50, 0, 0, "TLAYNAM M9 INH\n")},
        {"a polygon without END", "0 5 -1 N 50 1 1 100 100 0 0 0 Y\n0 0\n1 0\n1 1\n0 1\n0 0\n0 5 -1 N 51 1 1 100 100 0 0 0 Y\n"},
        {"user text whose open quote takes in a point", Square("0", 50, 0, 0, "USER_DAT \"open\n")},
        {"user text continued onto a point", Square("0", 50, 0, 0, "USER_DAT more &\n")},
        {"a fill letter nobody knows", "0 5 -1 Q 50 1 1 100 100 0 0 0 Y\n0 0\n1 0\n1 1\n0 1\n0 0\nEND\n"},
    };
    for (const auto& bad : broken) {
        for (bool first : {false, true}) {
            const std::string polygons = first ? bad.second + plain + good : plain + bad.second + good;
            Write("bad.vel", kHead + kObjects + Count(polygons) + polygons + "END GEO\n");
            const std::string what = std::string(bad.first) + (first ? ", first" : ", after others");
            EXPECT_FALSE(ExpectSameRoads("bad.vel", what).ok) << what;
        }
    }

    // A port on a polygon the file doesn't hold, and fewer polygons than NUM says.
    const std::string polygons = plain + good;
    Write("bad.vel", kHead + kObjects + "POR1 STD\nPOLY 77 1\n3\n3 50 0 0 0 0 5 \n" + Count(polygons) + polygons +
                         "END GEO\n");
    EXPECT_FALSE(ExpectSameRoads("bad.vel", "a port on a missing polygon").ok);
    Write("short.vel", kHead + kObjects + "NUM 5000\n" + polygons + "END GEO\n");
    const Result whole = ExpectSameRoads("short.vel", "fewer polygons than NUM, and END GEO");
    EXPECT_TRUE(whole.ok) << whole.reports;
    EXPECT_NE(whole.text.find("DRP1 LEFT FIX 30\n"), std::string::npos);
}

// Found when a project whose GEO promised 25 polygons but held 5, with no END GEO, was
// updated with -q: the 20 missing polygons went without a word.
TEST_F(UpdatedProject, AProjectCutShortInsideItsDrawingIsToldWithTheFileAndLine)
{
    std::string polygons;
    for (int i = 1; i <= 5; ++i)
        polygons += Square("0", i, i * 12, 0);
    const std::string head = kHead + "BOX 1 160 160 32 32 20 0\n 0 1 1 0 0 0 0\n 0 1 1 0 0 0 0\n";
    const std::string cut = head + "NUM 25\n" + polygons;
    Write("cut.vel", cut);
    const int lastLine = static_cast<int>(std::count(cut.begin(), cut.end(), '\n'));

    for (bool drop : {false, true}) {
        gReports.clear();
        SXtranProject project;
        project.SetDropDrawing(drop);
        ASSERT_TRUE(project.ReadProject(Path("cut.vel"))) << gReports;
        EXPECT_EQ(project.GetCircuit()->CountPolygons(), drop ? 0 : 5);
        EXPECT_NE(gReports.find("Warning"), std::string::npos) << gReports;
        EXPECT_NE(gReports.find(Path("cut.vel").data() + std::string(":") + std::to_string(lastLine) +
                                ": The file ends inside the GEO block: 5 of the 25 polygons that NUM announced "
                                "were read. The project file may have been cut short."),
                  std::string::npos)
            << gReports;
    }

    // Cut before the polygons: the same warning without counts.
    Write("early.vel", head);
    gReports.clear();
    SXtranProject early;
    ASSERT_TRUE(early.ReadProject(Path("early.vel")));
    EXPECT_NE(gReports.find("early.vel:" + std::to_string(std::count(head.begin(), head.end(), '\n')) +
                            ": The file ends inside the GEO block, before its END GEO line."),
              std::string::npos)
        << gReports;

    // A whole file that holds fewer polygons than NUM says is no cut file.
    Write("whole.vel", head + "NUM 25\n" + polygons + "END GEO\n");
    gReports.clear();
    SXtranProject whole;
    ASSERT_TRUE(whole.ReadProject(Path("whole.vel")));
    EXPECT_EQ(whole.GetCircuit()->CountPolygons(), 5);
    EXPECT_EQ(gReports, "");
}

// Found when a project could not be saved into a missing directory and the run said
// nothing a user could act on.
TEST_F(UpdatedProject, ATargetThatCannotBeWrittenIsNamedAndNothingIsSaved)
{
    SXtranProject project;
    project.InitNew();
    auto failure = [&project](const SString& target) {
        project.GetErrors().Clear();
        EXPECT_FALSE(project.Save(target)) << target.data();
        return std::string(project.GetErrors().ErrorText().data());
    };
    ASSERT_TRUE(QDir(itsDir.path()).mkdir("folder.vel"));
    Write("plain.txt", "not a directory\n");

    EXPECT_NE(failure(Path("folder.vel")).find("it is a directory. No file was written."), std::string::npos);
    EXPECT_NE(failure(Path("missing/chip.vel"))
                  .find("the directory " + std::string(Path("missing").data()) + " does not exist. No file was written."),
              std::string::npos);
    EXPECT_NE(failure(Path("plain.txt/chip.vel")).find(std::string(Path("plain.txt").data()) + " is not a directory."),
              std::string::npos);
    EXPECT_EQ(QDir(itsDir.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
              (QStringList{"folder.vel", "plain.txt"}));
    EXPECT_TRUE(project.Save(Path("chip.vel")));
}

TEST_F(UpdatedProject, AWriteProtectedTargetIsNamedAndLeftAsItWas)
{
    if (::geteuid() == 0) {
        // Root may write any file: the test runs again as nobody, where that can be done.
        const QString setpriv = QStandardPaths::findExecutable("setpriv");
        if (setpriv.isEmpty())
            GTEST_SKIP() << "root may write any file, and there is no setpriv";
        QProcess child;
        child.setProcessChannelMode(QProcess::MergedChannels);
        child.start(setpriv, {"--reuid=65534", "--regid=65534", "--clear-groups",
                              QFileInfo("/proc/self/exe").canonicalFilePath(),
                              "--gtest_filter=UpdatedProject.AWriteProtectedTargetIsNamedAndLeftAsItWas"});
        ASSERT_TRUE(child.waitForFinished(60000));
        const QByteArray output = child.readAll();
        // 126 and 127: nobody may not run the test program from where it lies.
        if (child.exitCode() == 126 || child.exitCode() == 127)
            GTEST_SKIP() << output.toStdString();
        // Nor read the message texts, in a checkout only its owner may enter.
        if (output.contains("Unable to open error data file"))
            GTEST_SKIP() << output.toStdString();
        EXPECT_EQ(child.exitCode(), 0) << output.toStdString();
        EXPECT_TRUE(output.contains("[  PASSED  ] 1 test")) << output.toStdString();
        return;
    }
    SXtranProject project;
    project.InitNew();
    Write("locked.vel", "old\n");
    ASSERT_TRUE(QFile::setPermissions(Path("locked.vel").qstring(), QFileDevice::ReadOwner));
    EXPECT_FALSE(project.Save(Path("locked.vel")));
    EXPECT_NE(std::string(project.GetErrors().ErrorText().data())
                  .find("the file is write-protected. The previous file is unchanged."),
              std::string::npos);
    EXPECT_EQ(Text("locked.vel"), "old\n");

    ASSERT_TRUE(QDir(itsDir.path()).mkdir("shut"));
    ASSERT_TRUE(QFile::setPermissions(Path("shut").qstring(), QFileDevice::ReadOwner | QFileDevice::ExeOwner));
    project.GetErrors().Clear();
    EXPECT_FALSE(project.Save(Path("shut/chip.vel")));
    EXPECT_NE(std::string(project.GetErrors().ErrorText().data()).find(" is write-protected. No file was written."),
              std::string::npos);
    QFile::setPermissions(Path("shut").qstring(), QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
}

} // namespace
