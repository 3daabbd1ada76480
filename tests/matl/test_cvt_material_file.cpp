// The conversion material file of "-M": written from a filled object and read back, and
// written by the program for a stream with and without an existing project.

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

#include <string>
#include <vector>

#include "../gds/GdsRun.h"
#include "SCircuit.h"
#include "SCvtMaterialFile.h"
#include "SProject.h"
#include "STechLayer.h"

using gdstest::GdsRun;
using gdstest::RunResult;
using gdstest::StreamWriter;

namespace {

class CvtFile : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(itsDir.isValid()); }

    SString Path(const char* name) const { return SString(itsDir.filePath(QLatin1String(name))); }
    void Write(const char* name, const std::string& text) const
    {
        QFile file(Path(name).qstring());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(text.data(), qint64(text.size()));
    }

    QTemporaryDir itsDir;
};

STechLayer* Layer(int type, const char* name, int stream, const char* material, const char* level)
{
    STechLayer* layer = new STechLayer;
    layer->SetLayerType(type);
    layer->SetName(name);
    layer->SetStream(stream);
    layer->SetMaterialText(material);
    layer->SetLevelText(level);
    return layer;
}

TEST_F(CvtFile, WrittenFromAFilledObjectReadsBackTheSame)
{
    SCvtMaterialFile file;
    file.AddMetal("Gold");
    file.AddMetal("Thick  copper ");
    file.AddMetal("Gold");
    file.AddViaMetal("Via fill");
    file.AddBrick("Air");
    file.AddBrick("Air");
    std::vector<STechLayer*> layers{Layer(STechLayer::Metal, "M1", 5, "Thick  copper ", "0"),
                                    Layer(STechLayer::Via, "V 1", 7, "Via fill", "0-GND")};
    layers[1]->SetGerberName("v1.gbr");
    layers[1]->SetDXFName("VIA1");
    for (STechLayer* layer : layers)
        file.AddTechLayer(layer);
    file.SetExtents(SRect(-10, 0.5, 100, 50));
    file.SetBoxSize(SSize(200, 100));
    file.SetCellSize(SSize(10, 2.5));
    file.SetUnitName("UM");
    ASSERT_TRUE(file.Write(Path("a.cvt")));

    SCvtMaterialFile read;
    ASSERT_TRUE(read.Read(Path("a.cvt"))) << read.GetErrors().ErrorText().data();
    EXPECT_EQ(read.GetMetals(), (std::vector<SString>{"Gold", "Thick  copper "}));
    EXPECT_EQ(read.GetViaMetals(), std::vector<SString>{"Via fill"});
    EXPECT_EQ(read.GetBricks(), std::vector<SString>{"Air"});
    ASSERT_EQ(read.GetTechLayers().size(), 2u);
    EXPECT_TRUE(read.OwnsTechLayers());
    const STechLayer* via = read.GetTechLayers()[1];
    EXPECT_EQ(via->GetLayerType(), STechLayer::Via);
    EXPECT_EQ(via->GetName(), "V 1");
    EXPECT_EQ(via->GetDXFName(), "VIA1");
    EXPECT_EQ(via->GetGerberName(), "v1.gbr");
    EXPECT_EQ(via->GetRawStream(), 7);
    EXPECT_EQ(via->GetMaterialName(), "Via fill");
    EXPECT_EQ(via->GetLevelText(), "0-GND");
    EXPECT_EQ(read.GetTechLayers()[0]->GetMaterialName(), "Thick  copper ");
    EXPECT_EQ(read.GetExtents(), SRect(-10, 0.5, 100, 50));
    EXPECT_TRUE(read.HasBox());
    EXPECT_EQ(read.GetBoxSize(), SSize(200, 100));
    EXPECT_EQ(read.GetCellSize(), SSize(10, 2.5));
    EXPECT_EQ(read.GetUnitName(), "UM");
    EXPECT_EQ(read.Text(), file.Text());
    for (STechLayer* layer : layers)
        delete layer;
}

TEST_F(CvtFile, OnlyTheLinesItKnowsCount)
{
    Write("b.cvt", "! a summary\n"
                   "metal Gold ! plated\n"
                   "COLOR red\n"
                   "\n"
                   "Metal Silver\n"
                   "EXTENTS 1 2 &\n"
                   "  3 4\n"
                   "CELLSIZE 5 6\n"
                   "UNITNAME mils\n");
    SCvtMaterialFile read;
    ASSERT_TRUE(read.Read(Path("b.cvt")));
    EXPECT_EQ(read.GetMetals(), std::vector<SString>{"Gold"});
    EXPECT_EQ(read.GetExtents(), SRect(1, 2, 3, 4));
    EXPECT_FALSE(read.HasBox());
    EXPECT_EQ(read.GetCellSize(), SSize(5, 6));
    EXPECT_EQ(read.Text(), "metal Gold\nEXTENTS 1 2 3 4\nUNITNAME mils\n");
}

struct BadFile
{
    const char* text;
    int line;
    int message;
};

TEST_F(CvtFile, ABadLineFailsTheReadWithItsNumber)
{
    const BadFile cases[] = {
        {"metal A\nEXTENTS 1 2 x 4\n", 2, 6083},
        {"BOXSIZE 1\n", 1, 6083},
        {"CELLSIZE\n", 1, 6083},
        {"brick B\nTECHLAY METAL\n", 2, 7132},
        {"TECHLAY METAL M1 <UNSPECIFIED> 1 0 CVT Gold\nEND\n", 1, 7132},
        {"TECHLAY METAL M1 <UNSPECIFIED> 1 0 CVT Gold 0\n", 1, 7132},
    };
    for (const BadFile& c : cases) {
        Write("c.cvt", c.text);
        SCvtMaterialFile read;
        EXPECT_FALSE(read.Read(Path("c.cvt"))) << c.text;
        ASSERT_EQ(read.GetErrors().Count(), 1u) << c.text;
        EXPECT_EQ(read.GetErrors().Entry(0)->itsLine, c.line) << c.text;
        EXPECT_TRUE(read.GetErrors().Contains(c.message)) << c.text;
    }
    SCvtMaterialFile missing;
    EXPECT_FALSE(missing.Read(Path("none.cvt")));
    EXPECT_TRUE(missing.GetErrors().HasErrors());
    EXPECT_FALSE(missing.Write(Path("no/such/dir/x.cvt")));
}

// Metal layers 1 and 2, a via and a brick, on a stream in microns.
const char* const kLayers = "M1 metal_boundary 1 0 0 \"Gold\"\n"
                            "M2 metal_boundary 2 0 1 \"Copper\"\n"
                            "V1 via 3 0 0 \"Copper\" on gnd\n"
                            "B brick_boundary 5 0 0 \"Oxide\"\n";

StreamWriter Chip()
{
    StreamWriter s;
    s.Header().Bgnlib().Libname().Units(0.001, 1e-9).Bgnstr("top");
    s.Boundary(1, 0, {{0, 0}, {100000, 0}, {100000, 50000}, {0, 50000}, {0, 0}});
    s.Boundary(2, 0, {{-10000, 5000}, {10000, 5000}, {10000, 15000}, {-10000, 15000}, {-10000, 5000}});
    s.Endstr().Endlib();
    return s;
}

TEST(CvtSummary, AnExistingProjectGivesItsMaterialsLayersAndBox)
{
    GdsRun run;
    run.Write("chip.lay", kLayers);
    run.Write("chip.gds", Chip());
    ASSERT_EQ(run.Run({"-o", "base.vel", "-s", "200,100", "chip.gds"}).status, 0);
    const RunResult result = run.Run({"-g", "-i", "base.vel", "-M", "summary.txt", "chip.gds"});
    EXPECT_EQ(result.status, 0) << result.out << result.err;

    SCvtMaterialFile summary;
    ASSERT_TRUE(summary.Read(SString(run.Path("summary.txt").c_str()))) << summary.GetErrors().ErrorText().data();
    SProject project;
    project.SetProjectType(SProject::SecondSolverProject);
    project.SetFileName(SString(run.Path("base.vel").c_str()));
    ASSERT_TRUE(project.Read(0)) << project.GetErrors().ErrorText().data();
    ASSERT_TRUE(project.GetCircuit());
    SCvtMaterialFile expected;
    expected.CollectFrom(project);
    expected.SetExtents(SRect(-10, 0, 100, 50));
    EXPECT_EQ(summary.Text(), expected.Text());

    // What the project holds, said plainly.
    EXPECT_EQ(summary.GetMetals(), (std::vector<SString>{"Lossless", "Gold", "Copper"}));
    EXPECT_EQ(summary.GetBricks(), (std::vector<SString>{"Air", "Oxide"}));
    std::vector<STechLayer*> layers;
    project.GetCircuit()->GetTechLayers(layers);
    ASSERT_EQ(summary.GetTechLayers().size(), layers.size());
    for (size_t i = 0; i < layers.size(); ++i) {
        EXPECT_EQ(summary.GetTechLayers()[i]->GetName(), layers[i]->GetName());
        EXPECT_EQ(summary.GetTechLayers()[i]->GetMaterialName(), layers[i]->GetMaterialName());
        EXPECT_EQ(summary.GetTechLayers()[i]->GetLevelText(), layers[i]->GetLevelText());
    }
    EXPECT_TRUE(summary.HasBox());
    EXPECT_EQ(summary.GetBoxSize(), SSize(200, 100));
    EXPECT_EQ(summary.GetUnitName(), "UM");
    EXPECT_FALSE(run.Exists("chip.vel"));
}

TEST(CvtSummary, ANewProjectGivesExtentsAndUnitOnly)
{
    GdsRun run;
    run.Write("chip.lay", kLayers);
    run.Write("chip.gds", Chip());
    const RunResult result = run.Run({"-M", "new.txt", "chip.gds"});
    EXPECT_EQ(result.status, 0) << result.out << result.err;
    SCvtMaterialFile summary;
    ASSERT_TRUE(summary.Read(SString(run.Path("new.txt").c_str())));
    EXPECT_TRUE(summary.GetMetals().empty() && summary.GetViaMetals().empty() && summary.GetBricks().empty());
    EXPECT_TRUE(summary.GetTechLayers().empty());
    EXPECT_FALSE(summary.HasBox());
    EXPECT_EQ(summary.GetExtents(), SRect(-10, 0, 100, 50));
    EXPECT_EQ(summary.GetUnitName(), "uM");

    // A summary that can't be written fails the run with the message.
    const RunResult refused = run.Run({"-M", "no/such/dir/new.txt", "chip.gds"});
    EXPECT_EQ(refused.status, 1);
    EXPECT_NE(refused.out.find("Can not write to file no/such/dir/new.txt"), std::string::npos) << refused.out;
}

} // namespace
