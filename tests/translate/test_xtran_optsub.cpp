// An update of a project that holds an optimisation and a subdivision: both lie outside
// what the translator reads, so they go, while the variables' bounds and the rest stay.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "GdsRun.h"
#include "SOptimizationBlock.h"
#include "SProject.h"
#include "SSubdivisionBlock.h"

using gdstest::GdsRun;
using gdstest::RunResult;
using gdstest::StreamWriter;

namespace {

// Squares in microns on a stream of 1 nm database units, on layer 1.
StreamWriter Stream(const std::vector<double>& corners)
{
    StreamWriter s;
    s.Header().Bgnlib().Libname().Units(0.001, 1e-9).Bgnstr("top");
    for (size_t i = 0; i + 3 < corners.size(); i += 4) {
        const auto dbu = [](double v) { return static_cast<long long>(v * 1000 + 0.5); };
        const long long x1 = dbu(corners[i]), y1 = dbu(corners[i + 1]);
        const long long x2 = dbu(corners[i + 2]), y2 = dbu(corners[i + 3]);
        s.Boundary(1, 0, {{x1, y1}, {x2, y1}, {x2, y2}, {x1, y2}, {x1, y1}});
    }
    s.Endstr().Endlib();
    return s;
}

const char* const kLayers = "M1 metal_boundary 1 0 0 \"Gold\"\n";

const char* const kOptAndSubdiv = "SUBDIV\nMAIN $BASENAME.vel\nREFPLANE F 12.5\nLINE 1 50 V\nEND SUBDIV\n"
                                  "OPT\nMAX 20\nENABLED Y\nFREQ Y SWEEP 1 10 1\nGOAL Y NET=GEO DB[S11] < VALUE=-20 1\n"
                                  "END\nEND OPT\n";

bool Has(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

} // namespace

TEST(TranslationOptSub, AnUpdateDropsOptimisationAndSubdivisionAndKeepsTheBounds)
{
    GdsRun run;
    run.Write("chip.lay", kLayers);
    run.Write("first.gds", Stream({0, 0, 100, 100, 150, 0, 200, 100}));
    ASSERT_EQ(run.Run({"-o", "chip.vel", "-l", "chip.lay", "-s", "300,200", "-t", "10,10", "first.gds"}).status, 0);
    std::string text = run.Read("chip.vel");
    ASSERT_TRUE(Has(text, "LORGN")) << text;
    const std::string bounds = "VALVAR W LNG 50 \"gap\"\nVCNSTR OPT W 40 60 ON \n";
    text.insert(text.find("LORGN"), bounds);
    text.insert(text.find("CONTROL"), "FREQ\nSWEEP 1 2 0.5\nEND FREQ\n");
    text += kOptAndSubdiv;
    run.Write("chip.vel", text);

    // The full read set holds both blocks.
    SProject full;
    full.SetProjectType(SProject::GeoFile);
    full.SetFileName(SString(run.Path("chip.vel").c_str()));
    ASSERT_TRUE(full.Read(0)) << full.GetErrors().ErrorText().data();
    EXPECT_EQ(full.GetOptimizationBlock()->CountGoals(), 1u);
    EXPECT_EQ(full.GetSubdivisionBlock()->CountLines(), 1u);

    run.Write("second.gds", Stream({0, 0, 50, 50}));
    for (const char* mode : {"-g", "-q"}) {
        const QString out = QString(mode).mid(1) + ".vel";
        const RunResult result = run.Run({mode, "-o", out, "-l", "chip.lay", "-i", "chip.vel", "second.gds"});
        ASSERT_EQ(result.status, 0) << mode << result.out << result.err;
        const std::string written = run.Read(out.toStdString());
        EXPECT_FALSE(Has(written, "\nOPT\n")) << mode << written;
        EXPECT_FALSE(Has(written, "SUBDIV")) << mode << written;
        EXPECT_FALSE(Has(written, "GOAL")) << mode << written;
        EXPECT_TRUE(Has(written, bounds)) << mode << written;
        EXPECT_TRUE(Has(written, "FREQ Y AN SWEEP 1 2 0.5\n")) << mode << written;
        // What is left reads back whole.
        SProject back;
        back.SetProjectType(SProject::GeoFile);
        back.SetFileName(SString(run.Path(out.toStdString()).c_str()));
        ASSERT_TRUE(back.Read(0)) << mode << back.GetErrors().ErrorText().data();
        EXPECT_FALSE(back.GetOptimizationBlock()->IsPresent()) << mode;
        EXPECT_FALSE(back.GetSubdivisionBlock()->IsPresent()) << mode;
    }
    EXPECT_EQ(run.Read("chip.vel"), text);
}
