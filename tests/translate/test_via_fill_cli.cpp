// The fill word and the covers that -J and -j give every via the translation writes:
// the via polygon and the template of its technology layer.

#include <gtest/gtest.h>

#include <QString>
#include <QStringList>

#include <ostream>
#include <string>
#include <vector>

#include "GdsRun.h"

using gdstest::GdsRun;
using gdstest::RunResult;
using gdstest::StreamWriter;

namespace {

struct ViaOptionCase
{
    const char* name;
    std::vector<std::string> options;
    const char* fillAndCovers;
};

void PrintTo(const ViaOptionCase& c, std::ostream* os)
{
    *os << c.name;
}

class ViaFillOption : public testing::TestWithParam<ViaOptionCase>
{
};

// Everything behind the level on each TOLEVEL line.
std::vector<std::string> ToLevelWords(const std::string& text)
{
    std::vector<std::string> words;
    for (const QString& line : QString::fromStdString(text).split('\n')) {
        QStringList fields = line.split(' ', Qt::SkipEmptyParts);
        if (fields.size() >= 2 && fields[0] == "TOLEVEL")
            words.push_back(QStringList(fields.mid(2)).join(' ').toStdString());
    }
    return words;
}

TEST_P(ViaFillOption, GivesTheWordAndCoversOnEveryVia)
{
    const ViaOptionCase& c = GetParam();
    GdsRun run;
    run.Write("chip.lay", "M1 metal_boundary 1 0 0 \"Gold\"\n"
                          "V1 via 3 0 0 \"Copper\" on gnd\n"
                          "S substrate 9 0 0 \"Box\"\n");
    StreamWriter s;
    s.Begin().Bgnstr("top");
    s.Boundary(9, 0, {{0, 0}, {100000, 0}, {100000, 80000}, {0, 80000}, {0, 0}});
    s.Boundary(1, 0, {{10000, 10000}, {60000, 10000}, {60000, 30000}, {10000, 30000}, {10000, 10000}});
    s.Boundary(3, 0, {{20000, 15000}, {24000, 15000}, {24000, 19000}, {20000, 19000}, {20000, 15000}});
    s.Endstr().Endlib();
    run.Write("chip.gds", s);
    QStringList arguments;
    for (const std::string& option : c.options)
        arguments << QString::fromStdString(option);
    arguments << "chip.gds";
    RunResult result = run.Run(arguments);
    ASSERT_EQ(result.status, 0) << result.out << result.err;
    const std::string text = run.Read("chip.vel");
    // One via polygon and the template of its technology layer.
    const std::vector<std::string> words = ToLevelWords(text);
    ASSERT_EQ(words.size(), 2u) << text;
    for (const std::string& w : words)
        EXPECT_EQ(w, c.fillAndCovers) << text;
}

INSTANTIATE_TEST_SUITE_P(
    Options, ViaFillOption,
    testing::Values(ViaOptionCase{"none", {}, "RING NOCOVERS"},
                    ViaOptionCase{"full", {"-J", "Full"}, "SOLID NOCOVERS"},
                    ViaOptionCase{"center", {"-J", "Center"}, "CENTER NOCOVERS"},
                    ViaOptionCase{"vertices_pads", {"-J", "Vertices", "-j"}, "VERTICES COVERS"},
                    ViaOptionCase{"bar", {"-J", "Bar"}, "BAR NOCOVERS"},
                    ViaOptionCase{"hidden", {"-J", "*Hidden"}, "HIDDEN NOCOVERS"},
                    ViaOptionCase{"unknown_text", {"-J", "xyz"}, "RING NOCOVERS"},
                    // The names are compared exactly: a lower-case name is unknown too.
                    ViaOptionCase{"lower_case_full", {"-J", "full"}, "RING NOCOVERS"},
                    ViaOptionCase{"pads_only", {"-j"}, "RING COVERS"},
                    ViaOptionCase{"full_pads", {"-j", "-J", "Full"}, "SOLID COVERS"}),
    [](const testing::TestParamInfo<ViaOptionCase>& info) { return std::string(info.param.name); });

} // namespace
