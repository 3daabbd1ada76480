// Updates of a project that holds translator, interface and output file blocks: the
// translator's read set keeps them, and a block it can't read fails the update.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "GdsRun.h"

using gdstest::GdsRun;
using gdstest::RunResult;
using gdstest::StreamWriter;

namespace {

// One rectangle per entry, in microns on a stream of 1 nm database units.
StreamWriter Stream(const std::vector<std::vector<double>>& rectangles)
{
    StreamWriter s;
    s.Header().Bgnlib().Libname().Units(0.001, 1e-9).Bgnstr("top");
    auto dbu = [](double v) { return static_cast<long long>(v * 1000 + 0.5); };
    for (const std::vector<double>& r : rectangles)
        s.Boundary(1, 0,
                   {{dbu(r[0]), dbu(r[1])}, {dbu(r[2]), dbu(r[1])}, {dbu(r[2]), dbu(r[3])},
                    {dbu(r[0]), dbu(r[3])}, {dbu(r[0]), dbu(r[1])}});
    s.Endstr().Endlib();
    return s;
}

const char* const kLayers = "M1 metal_boundary 1 0 0 \"Gold\"\n";

const std::string kTranslator = "TRANSLATOR\nGERBEREXPORT\nUseTLs true\nSepObj false\nSepMat true\n"
                                "DivideMulti false\nCircles true\nCircleType manual\nCircleSize 1.5\n"
                                "KeepMetals true\nKeepVias true\nKeepViaPads true\nKeepBricks false\n"
                                "KeepEdgeVias true\nKeepParent true\nConvertParent false\n"
                                "AllEdgeViasAsVia false\nGbrWholeDigits 3\nGbrDecimalDigits 4\n"
                                "GbrFilenamePrefix artwork_\nGbrFilenameExt gbr\nGbrJobPrefix job\n"
                                "GbrFilenameType custom\nGbrJobFilenameType project\nGbrUnits inch\nEND\n"
                                "END TRANSLATOR\n";
const std::string kInterface = "INTERFACE\nCDSDATE 2024-03-05\nLAYOUT from   the host \"tool\"\nEND INTERFACE\n";
const std::string kFileOut = "FILEOUT\nFOLDER sub/$BASENAME\nTS D Y $BASENAME.s2p IC 15\nTOUCH2 D Y out.ts\n"
                             "END FILEOUT\n";

// A project made from one rectangle, with the blocks appended.
std::string MakeProject(GdsRun& run, const std::string& blocks)
{
    run.Write("chip.lay", kLayers);
    run.Write("first.gds", Stream({{0, 0, 100, 100}}));
    const RunResult made = run.Run({"-o", "chip.vel", "-l", "chip.lay", "-s", "300,200", "first.gds"});
    EXPECT_EQ(made.status, 0) << made.out << made.err;
    const std::string text = run.Read("chip.vel") + blocks;
    run.Write("chip.vel", text);
    run.Write("second.gds", Stream({{0, 0, 50, 50}}));
    return text;
}

TEST(TranslatorBlocks, UpdatesKeepTheTranslatorInterfaceAndOutputFileBlocks)
{
    GdsRun run;
    const std::string text = MakeProject(run, kTranslator + kInterface + kFileOut);
    for (const char* mode : {"-g", "-q"}) {
        const RunResult result = run.Run({mode, "-o", "out.vel", "-l", "chip.lay", "-i", "chip.vel", "second.gds"});
        ASSERT_EQ(result.status, 0) << mode << result.out << result.err;
        const std::string out = run.Read("out.vel");
        // In the write order: output files, interface, translator.
        const size_t fileOut = out.find(kFileOut);
        const size_t interface = out.find(kInterface);
        const size_t translator = out.find(kTranslator);
        EXPECT_NE(fileOut, std::string::npos) << mode << out;
        EXPECT_NE(interface, std::string::npos) << mode << out;
        EXPECT_NE(translator, std::string::npos) << mode << out;
        EXPECT_LT(fileOut, interface) << mode;
        EXPECT_LT(interface, translator) << mode;
    }
    EXPECT_EQ(run.Read("chip.vel"), text);
}

TEST(TranslatorBlocks, ABlockThatCantBeReadFailsTheUpdateWithItsLine)
{
    const struct
    {
        std::string block;
        const char* message;
    } cases[] = {
        {"TRANSLATOR\nDXFEXPORT\nCircles often\nEND\nEND TRANSLATOR\n", "Project: Unreadable line: Circles often"},
        {"FILEOUT\nTS D Y a.s2p\nTOUCH\nEND FILEOUT\n", "Unreadable line: TOUCH"},
    };
    for (const auto& c : cases) {
        GdsRun run;
        const std::string text = MakeProject(run, c.block);
        // The line of the failure: the project's own lines, then the block's third.
        int line = 1;
        for (char ch : text.substr(0, text.size() - c.block.size()))
            line += ch == '\n';
        line += 2;
        const RunResult result = run.Run({"-q", "-o", "chip.vel", "-l", "chip.lay", "-i", "chip.vel", "second.gds"});
        EXPECT_NE(result.status, 0) << result.out << result.err;
        const std::string both = result.out + result.err;
        EXPECT_NE(both.find(":" + std::to_string(line) + ": " + c.message), std::string::npos) << line << "\n" << both;
        EXPECT_EQ(run.Read("chip.vel"), text);
    }
}

}  // namespace
