// Frequency sweeps through reads and writes of every format, parallel subsection lengths that
// become options, the older metal forms, and metal and brick elements in GEO.
#include "ProjectTestSupport.h"

#include "SCircuit.h"
#include "SControlBlock.h"
#include "SGeometryBlock.h"
#include "SMetalType.h"
#include "SProjectErrorEntry.h"

#include <iostream>
#include <string>

namespace {

const std::string kStack = std::string(kTwoLevelStack) + "LORGN 0 160 U\n";

class SweepsTest : public GeoTest {
protected:
  // The message texts of the entries with number `id`.
  static std::vector<std::string> Messages(const SProject& project, int id) {
    std::vector<std::string> texts;
    const SProjectErrorManager& errors = project.GetErrors();
    for (size_t i = 0; i < errors.Count(); ++i)
      if (static_cast<int>(errors.Entry(i)->itsMessageId) == id) texts.push_back(errors.Entry(i)->itsText.data());
    return texts;
  }
};

}  // namespace

// ---- parallel subsection lengths

TEST_F(SweepsTest, ParallelSubsectionLengthsBecomeOptionsWithOneWarning) {
  const struct {
    const char* lines;
    int type;
    const char* options;
    const char* help;
  } rows[] = {
      {"PSB1 BOTTOM 4\nPSB1 RIGHT 0.123456789\nPSB1 LEFT 2.5\nPSB1 TOP -1e-05\n", SProject::GeoFile,
       "-x Zpsubleft2.5 Zpsubtop-1e-05 Zpsubright0.123457 Zpsubbot4",
       "See <a href=\"qthelp://main_help/doc/CircuitParallelSubs.html\"> help </a>"},
      {"PSB1 LEFT 2.5\n", SProject::NetFile, "-x Zpsubleft2.5",
       "See \"qthelp://main_help/doc/CircuitParallelSubs.html\""},
      {"PSB1 LEFT 1e-13\n", SProject::GeoFile, "-x", nullptr},
      {"", SProject::GeoFile, "-x", nullptr},
  };
  for (const auto& row : rows) {
    SProject project;
    const std::string text = "FTYP VELPROJ 17\nCONTROL\nABS\nOPTIONS -x\nEND CONTROL\nGEO\n" + std::string(row.lines) + kStack + "NUM 0\nEND GEO\n";
    ASSERT_TRUE(ReadText(project, text, "test.vel", row.type)) << project.GetErrors().ErrorText().data();
    EXPECT_EQ(std::string(project.GetControlBlock()->GetOptionsText().data()), row.options) << row.lines;
    const std::vector<std::string> warnings = Messages(project, 6041);
    if (row.help == nullptr) {
      EXPECT_TRUE(warnings.empty()) << row.lines;
      continue;
    }
    ASSERT_EQ(warnings.size(), 1u) << row.lines;
    EXPECT_TRUE(Contains(warnings[0], row.help)) << warnings[0];
    EXPECT_EQ(project.GetErrors().GetSeverity(), SProjectErrorManager::Warning);
  }
}

TEST_F(SweepsTest, ParallelSubsectionOptionsAreWrittenOnceInEveryFormat) {
  const std::string text = "FTYP VELPROJ 17\nGEO\nPSB1 LEFT 2.5\n" + kStack + "NUM 0\nEND GEO\n";
  const std::string current = RoundTrip(text);
  EXPECT_TRUE(Contains(current, "OPTIONS Zpsubleft2.5\n")) << current;
  EXPECT_FALSE(Contains(current, "PSB1"));
  // Below the current format the line stays, and reading it again adds no second option.
  const std::string former = RoundTrip(text, 20);
  EXPECT_TRUE(Contains(former, "OPTIONS Zpsubleft2.5\n")) << former;
  EXPECT_TRUE(Contains(former, "PSB1 LEFT 2.5\n")) << former;
}

// ---- older metal forms

TEST_F(SweepsTest, AWriteBelowFormat15GivesTheOlderFormsAndLeavesTheProjectAsItWas) {
  const std::string geo =
      "TMET \"Lossless\" 0 SUP 0 0 0 0\n"
      "BMET \"Lossless\" 0 SUP 0 0 0 0\n"
      "MET \"Copper\" 3 NOR 58000000 1.5 0.5 \n"
      "MET \"Thick\" 4 TMM 1 2 0.5 3\n"
      "MET \"Rough\" 5 RUF THK 2 0.5 0.25 0.125 4 \n"
      "MET \"Plate\" 6 NOR 2 0.5 0.5  SRVY\n"
      "MET \"Via\" 7 VOL 5 0.5\n"
      "BOX 1 10 10 32 32 20 0\n"
      "      0 1 1 0 0 0 0 \"Unnamed\"\n"
      "      0 1 1 0 0 0 0 \"Unnamed\"\n"
      "TECHLAY METAL M1 <UNSPECIFIED> 5 0 \n"
      "0 0 0 T 0 2 2 50 50 0 0 0 Y\n"
      "END\n"
      "END\n"
      "LORGN 0 10 U\n"
      "NUM 3\n"
      "0 5 0 T 7 2 2 50 50 0 0 0 Y\n"
      "TLAYNAM M1 INH\n"
      "0 0\n1 0\n1 0.5\n0 0.5\n0 0\n"
      "END\n"
      "VIA POLYGON\n"
      "0 5 4 N 8 1 1 100 100 0 0 0 Y\n"
      "TOLEVEL 1 RING COVERS\n"
      "2 2\n3 2\n3 3\n2 3\n2 2\n"
      "END\n"
      "BRI POLY\n"
      "1 5 0 N 9 1 1 100 100 0.5 0.25 0 Y\n"
      "4 4\n5 4\n5 5\n4 5\n4 4\n"
      "END\n";
  const std::string text = "FTYP VELPROJ 17\nDIM\nLNG FT\nCDVY SM\nSRES OHSQ\nEND DIM\nGEO\n" + geo + "END GEO\n";
  SProject project;
  ASSERT_TRUE(ReadText(project, text)) << project.GetErrors().ErrorText().data();
  const std::string current = WriteText(project);
  EXPECT_EQ(GeoBody(current), geo);

  SProjectFormat::SetWriteFormat(14);
  const std::string older = WriteText(project);
  // Inches for feet: every length of the layout, of the polygons and of the types grows by 12;
  // the layers and the polygons' references to them go, and the sheet resistance becomes S/m.
  const std::string expected =
      "TMET \"Lossless\" 0 SUP 0 0 0 0\n"
      "BMET \"Lossless\" 0 SUP 0 0 0 0\n"
      "MET \"Copper\" 3 NOR 58000000 18 0.5 \n"
      "MET \"Thick\" 4 TMM 1 24 0.5 3\n"
      "MET \"Rough\" 5 RUF THK 2 0.5 3 1.5 48 \n"
      "MET \"Plate\" 6 NOR 3.280839895 6 0.5 \n"
      "MET \"Via\" 7 VOL 5 6\n"
      "BOX 1 120 120 32 32 20 0\n"
      "      0 1 1 0 0 0 0 \"Unnamed\"\n"
      "      0 1 1 0 0 0 0 \"Unnamed\"\n"
      "LORGN 0 120 U\n"
      "NUM 3\n"
      "0 5 0 T 7 2 2 50 50 0 0 0 Y\n"
      "0 0\n12 0\n12 6\n0 6\n0 0\n"
      "END\n"
      "VIA POLYGON\n"
      "0 5 4 N 8 1 1 100 100 0 0 0 Y\n"
      "TOLEVEL 1 RING COVERS\n"
      "24 24\n36 24\n36 36\n24 36\n24 24\n"
      "END\n"
      "BRI POLY\n"
      "1 5 0 N 9 1 1 100 100 6 3 0 Y\n"
      "48 48\n60 48\n60 60\n48 60\n48 48\n"
      "END\n";
  EXPECT_EQ(GeoBody(older), expected);
  EXPECT_TRUE(Contains(older, "LNG IN\n")) << older;

  SProjectFormat::SetWriteFormat(SProjectFormat::kCurrent);
  EXPECT_EQ(WriteText(project), current);
}

// ---- metal and brick elements

TEST_F(SweepsTest, ElementsAreKeptWordForWordInTheirPlaceAmongThePolygons) {
  const std::string types =
      "TMET \"Lossless\" 0 SUP 0 0 0 0\n"
      "BMET \"Lossless\" 0 SUP 0 0 0 0\n"
      "MET \"Copper\" 3 NOR 58000000 1.5 0.5 \n"
      "MET \"Gold\" 4 RES 2\n"
      "BRI \"Oxide\" 2 3.9 0.001 0 \n";
  const std::string square = "0 0\n10 0\n10 10\n0 10\n0 0\nEND\n";
  const std::string polygons =
      "NUM 4\n"
      "0 5 0 N 1 1 1 100 100 0 0 0 Y\n" + square +
      "MET ELM SPIRAL  \"inductor one\" 2.5\n"
      "TURNS 3.5 WIDTH=2\n"
      "MAT \"Gold\"\n"
      "0 0 1 N 20 1 1 100 100 0 0 0 Y extra words\n"
      "MAT All\n"
      "0  0 -1 T 21 1 1 100 100 0 0 0 N\n"
      "END\n"
      "0 5 1 N 2 1 1 100 100 0 0 0 Y\n" + square +
      "BRI ELM BLOCK 1 2\n"
      "MAT \"Oxide\"\n"
      "1 0 1 N 22 1 1 100 100 0 0 0 Y\n"
      "END\n";
  const std::string stack = kTwoLevelStack;
  const std::string body = types + stack.substr(stack.find("BOX")) + "LORGN 0 160 U\n" + polygons;
  EXPECT_EQ(GeoBody(RoundTrip(Project(body))), body);
  EXPECT_EQ(GeoBody(RoundTrip(Project(body), 14)), body);

  SProject project;
  ASSERT_TRUE(ReadText(project, Project(body))) << project.GetErrors().ErrorText().data();
  SCircuit* circuit = project.GetGeometryBlock()->GetCircuit();
  EXPECT_EQ(circuit->CountPolygons(), 4);
  // The element's polygon ids are taken.
  EXPECT_EQ(circuit->GetNextPolygonId(), 23);
  // A type that only an element uses is still written, and the element follows its number.
  SMetalType* copper = circuit->FindMetalType("Copper");
  ASSERT_NE(copper, nullptr);
  circuit->RemoveChild(copper);
  delete copper;
  const std::string text = GeoBody(WriteText(project));
  EXPECT_TRUE(Contains(text, "MET \"Gold\" 4 RES 2\n")) << text;
  EXPECT_TRUE(Contains(text, "MAT \"Gold\"\n0 0 0 N 20 1 1 100 100 0 0 0 Y extra words\n")) << text;
  EXPECT_TRUE(Contains(text, "MAT \"Oxide\"\n1 0 1 N 22")) << text;
}

TEST_F(SweepsTest, BrokenElementsFailWithTheirLine) {
  const std::string stack = std::string(kTwoLevelStack) + "NUM 1\n";
  // The entry carries the detail's number where there is one; the element starts on line 12.
  const struct {
    std::string polygons;
    int message;
    int line;
  } rows[] = {
      {"MET ELM SPIRAL\nMAT A\n0 0 -1 N 20 1 1 100 100 0 0 0 Y\n", 6022, 15},
      {"MET ELM SPIRAL\nMAT A\n0 0 -1 N 20 1 1 100 100 0 0 0 Y\nEND GEO\n", 6022, 15},
      {"MET ELM SPIRAL\nEND\n", 6059, 13},
      {"MET ELM SPIRAL\nMAT A\nx 0 -1 N 20 1 1\nEND\n", 6059, 14},
      {"MET ELM SPIRAL\nMAT A\n0 0 q N 20 1 1\nEND\n", 6066, 14},
      {"MET ELM SPIRAL\nMAT A\n0 0 -1 N -3 1 1\nEND\n", 6068, 14},
      {"MET ELM SPIRAL\nMAT A\n0\nEND\n", 6065, 14},
      {"MET ELM SPIRAL\nMAT A\n0 0 7 N 20 1 1 100 100 0 0 0 Y\nEND\n", 6121, 12},
      {"MET ELM SPIRAL\nMAT A\n5 0 -1 N 20 1 1 100 100 0 0 0 Y\nEND\n", 6059, 12},
  };
  for (const auto& row : rows) {
    const auto found = Failure(stack + row.polygons);
    ASSERT_FALSE(found.empty()) << row.polygons;
    EXPECT_EQ(found[0], std::make_pair(row.message, row.line)) << row.polygons;
  }
}
