// Updates of a project that holds components: -q keeps them with the drawing, -g keeps them
// while the drawing goes, and a component the reader refuses leaves the project as it was.

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "GdsRun.h"
#include "SCircuit.h"
#include "SGeometryBlock.h"
#include "SProject.h"
#include "SSMDBlock.h"
#include "SRefPlane.h"
#include "SSMDPort.h"
#include "SSMDev.h"

using gdstest::GdsRun;
using gdstest::RunResult;
using gdstest::StreamWriter;

namespace {

// Rectangles in microns on a stream of 1 nm database units.
struct Shape
{
    int layer;
    double x1, y1, x2, y2;
};

StreamWriter Stream(const std::vector<Shape>& shapes)
{
    StreamWriter s;
    s.Header().Bgnlib().Libname().Units(0.001, 1e-9).Bgnstr("top");
    auto dbu = [](double v) { return static_cast<long long>(v * 1000.0 + (v < 0 ? -0.5 : 0.5)); };
    for (const Shape& r : shapes)
        s.Boundary(r.layer, 0,
                   {{dbu(r.x1), dbu(r.y1)}, {dbu(r.x2), dbu(r.y1)}, {dbu(r.x2), dbu(r.y2)},
                    {dbu(r.x1), dbu(r.y2)}, {dbu(r.x1), dbu(r.y1)}});
    s.Endstr().Endlib();
    return s;
}

const char* const kLayers = "M1 metal_boundary 1 0 0 \"Gold\"\n";

// A resistor whose first pin has a plane linked to vertex 0 of polygon 1, and a data file
// part whose file the SMDFILES block names.
const char* const kComponents = "SMD 0 \"R1\"\nID 1\nGNDREF AUTO\nSBOX 10 10 20 14\nPBSHW Y\nLPOS 15 12\n"
                                "TYPE IDEAL RES 50\n"
                                "SMDP 0 40 12 L 1 1 LINK 0\nPOLY 1 1\n0\n"
                                "EXSMDP\nGNDREF AUTO\nTERMW FEED\nEND EXSMDP\n"
                                "SMDP 0 20 12 R 2 2 \nEXSMDP\nGNDREF AUTO\nTERMW FEED\nEND EXSMDP\nEND\n"
                                "SMD 0 \"S\"\nID 2\nGNDREF AUTO\nSBOX 0 0 1 1\nPBSHW N\nLPOS 0 0\nTYPE SPARAM 5\n"
                                "SMDP 0 0 0 L 3 1 \nEXSMDP\nGNDREF AUTO\nTERMW FEED\nEND EXSMDP\nEND\n";

// What a written project holds of its components.
struct Components
{
    bool read = false;
    std::string error;
    std::vector<SSMDev*> list;
    SString dataFile;
    std::unique_ptr<SProject> project;
};

Components ReadComponents(const GdsRun& run, const std::string& name)
{
    Components c;
    c.project = std::make_unique<SProject>();
    c.project->SetProjectType(SProject::SecondSolverProject);
    c.project->SetTemplateRead(true);
    c.project->SetFileName(SString(run.Path(name).c_str()));
    c.read = c.project->Read(0);
    c.error = c.project->GetErrors().ErrorText().data();
    if (!c.read || c.project->GetGeometryBlock()->GetCircuit() == nullptr)
        return c;
    SSMDev::Collect(*c.project->GetGeometryBlock()->GetCircuit(), c.list);
    c.dataFile = c.project->GetSMDBlock()->GetFile(5);
    return c;
}

// A translated project with the components and their data file block added.
std::string ProjectWithComponents(GdsRun& run)
{
    run.Write("chip.lay", kLayers);
    run.Write("first.gds", Stream({{1, 0, 0, 30, 20}}));
    EXPECT_EQ(run.Run({"-o", "chip.vel", "-l", "chip.lay", "-s", "100,100", "first.gds"}).status, 0);
    std::string text = run.Read("chip.vel");
    EXPECT_NE(text.find("\nNUM "), std::string::npos) << text;
    text.insert(text.find("\nNUM ") + 1, kComponents);
    text += "SMDFILES\n5 \"data/s.s2p\"\nEND SMDFILES\n";
    run.Write("chip.vel", text);
    run.Write("second.gds", Stream({{1, 50, 50, 60, 60}}));
    return text;
}

TEST(Components, KeepingTheDrawingKeepsTheComponentsAndTheirLinks)
{
    GdsRun run;
    const std::string text = ProjectWithComponents(run);
    RunResult result = run.Run({"-q", "-o", "q.vel", "-l", "chip.lay", "-i", "chip.vel", "second.gds"});
    ASSERT_EQ(result.status, 0) << result.out << result.err;
    const std::string q = run.Read("q.vel");
    EXPECT_NE(q.find(kComponents), std::string::npos) << q;
    // An update writes file names as the read made them: absolute, valid wherever the output goes.
    EXPECT_NE(q.find("SMDFILES\n5 \"" + run.Path("data/s.s2p") + "\"\nEND SMDFILES\n"), std::string::npos) << q;
    Components c = ReadComponents(run, "q.vel");
    ASSERT_TRUE(c.read) << c.error;
    ASSERT_EQ(c.list.size(), 2u);
    EXPECT_EQ(c.list[1]->GetFileName(), SString(run.Path("data/s.s2p").c_str()));
    EXPECT_EQ(run.Read("chip.vel"), text);
}

TEST(Components, ReplacingTheDrawingKeepsTheComponentsWithFixedPlanes)
{
    GdsRun run;
    ProjectWithComponents(run);
    RunResult result = run.Run({"-g", "-o", "g.vel", "-l", "chip.lay", "-i", "chip.vel", "second.gds"});
    ASSERT_EQ(result.status, 0) << result.out << result.err;
    const std::string g = run.Read("g.vel");
    // The polygon the plane was linked to is gone: the plane keeps the distance it had.
    EXPECT_EQ(g.find("LINK"), std::string::npos) << g;
    EXPECT_NE(g.find("SMDP 0 40 12 L 1 1 FIX "), std::string::npos) << g;
    EXPECT_NE(g.find("TYPE SPARAM 5\n"), std::string::npos) << g;
    EXPECT_NE(g.find("SMDFILES\n5 \"" + run.Path("data/s.s2p") + "\"\nEND SMDFILES\n"), std::string::npos) << g;
    Components c = ReadComponents(run, "g.vel");
    ASSERT_TRUE(c.read) << c.error;
    ASSERT_EQ(c.list.size(), 2u);
    std::vector<SSMDPort*> ports;
    c.list[0]->GetPorts(ports);
    ASSERT_EQ(ports.size(), 2u);
    ASSERT_NE(ports[0]->GetRefPlane(), nullptr);
    EXPECT_GT(ports[0]->GetRefPlane()->GetLength(), 0.0);
}

TEST(Components, AComponentTheReaderRefusesLeavesTheProjectAsItWas)
{
    GdsRun run;
    std::string text = ProjectWithComponents(run);
    const size_t at = text.find("SMD 0 \"S\"\n");
    ASSERT_NE(at, std::string::npos);
    text.insert(at + 10, "EXSMDP\n");
    run.Write("chip.vel", text);
    const long line = std::count(text.begin(), text.begin() + static_cast<long>(at), '\n') + 2;
    for (const char* mode : {"-q", "-g"}) {
        RunResult result = run.Run({mode, "-l", "chip.lay", "-i", "chip.vel", "second.gds"});
        EXPECT_TRUE(result.finished);
        EXPECT_EQ(result.status, 1) << mode;
        EXPECT_NE(result.err.find("chip.vel:" + std::to_string(line) +
                                  ": A port extension line without a port before it.\n"),
                  std::string::npos)
            << mode << result.err;
        EXPECT_EQ(run.Read("chip.vel"), text) << mode;
    }
}

}  // namespace
