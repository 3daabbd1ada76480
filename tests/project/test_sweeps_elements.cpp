// Frequency sweeps through reads and writes of every format, parallel subsection lengths that
// become options, the older metal forms, and metal and brick elements in GEO.
#include "ProjectTestSupport.h"

#include "SCircuit.h"
#include "SControlBlock.h"
#include "SFrequencyBlock.h"
#include "SFrequencyEntry.h"
#include "SVariableSweep.h"
#include "SVariableSweepBlock.h"
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
  // The square that uses Copper goes first, so that nothing refers to the type any more.
  std::vector<SEnclosure*> shapes;
  circuit->CollectPolygons(shapes);
  ASSERT_FALSE(shapes.empty());
  SBaseEnclosure* copperSquare = shapes[0];
  ASSERT_TRUE(copperSquare->GetOwner()->RemoveChild(copperSquare));
  delete copperSquare;
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

// ---- frequency sweeps

namespace {

const std::string kEntries = kEveryFrequencyEntry;

const std::string kSweepProject = "FTYP VELPROJ 16\nVER 16.54\nDIM\nFREQ MHZ\nEND DIM\nCONTROL\nVARSWP\nEND CONTROL\n"
                                  "FREQ\n" + kEntries + "END FREQ\n"
                                  "VARSWP\n"
                                  "SWEEP 1 2 0.5\n"
                                  "ABS 5 6\n"
                                  "VAR W YN 1 2 5\n"
                                  "VAR \"gap x\" N 0.5 UNDEF UNDEF\n"
                                  "END\n"
                                  "END VARSWP\n";

std::string Expected(const char* name) {
  QFile file(QString(GDS_SOURCE_DIR "/tests/project/expected/") + name);
  if (!file.open(QIODevice::ReadOnly)) return "<missing>";
  return file.readAll().toStdString();
}

}  // namespace

TEST_F(SweepsTest, EveryFrequencyEntrySurvivesTheCurrentAndTheFormerFormat) {
  const std::string current = RoundTrip(kSweepProject);
  EXPECT_EQ(current, Expected("sweeps_current.vel"));
  const std::string former = RoundTrip(kSweepProject, 20);
  EXPECT_EQ(former, Expected("sweeps_former.vel"));
  // Each form read gives the other back.
  SProject fromCurrent;
  ASSERT_TRUE(ReadText(fromCurrent, current));
  SProjectFormat::SetWriteFormat(20);
  EXPECT_EQ(WriteText(fromCurrent), former);
  SProject fromFormer;
  ASSERT_TRUE(ReadText(fromFormer, former));
  EXPECT_EQ(WriteText(fromFormer), current);
  // The write below 21 leaves the project as it was.
  SProjectFormat::SetWriteFormat(20);
  WriteText(fromFormer);
  SProjectFormat::SetWriteFormat(SProjectFormat::kCurrent);
  EXPECT_EQ(WriteText(fromFormer), current);
  EXPECT_FALSE(fromFormer.GetFrequencyBlock()->IsPresent());
}

namespace {
// The sweep block of a VARSWP body read in a project of its own.
struct SReadSweeps {
  SProject project;
  SVariableSweepBlock* block = nullptr;
  SVariableSweep* Set(size_t i) const { return block->Get(i); }
  const SFrequencyEntry* Entry(size_t set, size_t i) const {
    return static_cast<const SFrequencyEntry*>(Set(set)->GetEntries().at(i));
  }
};
}  // namespace

TEST_F(SweepsTest, SweepSetsReadInEveryForm) {
  const struct {
    const char* form;
    const char* body;
    size_t sets;
    size_t entries;
    const char* variables;
  } rows[] = {
      {"current", "SWPVARS ON\nENABLED N\nOVRCONTROL\nSIMPLE\nSPEED 2\nEND OVRCONTROL\nFREQ N AY STEP 3\n"
                  "FREQ Y LSWEEP 1 2 3\nVAR W YS 1 2\nEND\nENABLED Y\nEND\n", 2, 2, "W:1:4"},
      {"11 to 20", "SWEEP 1 2 0.5\nABS 5 6\nVAR W YC 1 2\nVAR L YE 1 UNDEF 4\nEND\n", 1, 2, "W:1:3 L:1:2"},
      {"5 to 10", "STEP 1\nW YN 1 2 5\nL YG 2\nSTEP 2\nW YL 1 2 3\n", 2, 1, "W:1:1 L:1:5"},
      {"3 and 4", "ABS 1 2\nABS 3 4\nY\nW Y 1 2 0.5\nABS 1 2\nN\nW N 1 2 0.5\n", 2, 2, "W:1:0"},
      {"0 to 2", "SWEEP 1 2 1\nW Y 0 1 UNDEF\n", 1, 1, "W:1:0"},
      {"empty set", "ENABLED Y\nEND\n", 1, 0, ""},
  };
  for (const auto& row : rows) {
    SReadSweeps read;
    ASSERT_TRUE(ReadText(read.project, std::string("FTYP VELPROJ 17\nVARSWP\n") + row.body + "END VARSWP\n"))
        << row.form << "\n" << read.project.GetErrors().ErrorText().data();
    read.block = read.project.GetVariableSweepBlock();
    ASSERT_EQ(read.block->Count(), row.sets) << row.form;
    EXPECT_EQ(read.Set(0)->GetEntries().entries(), row.entries) << row.form;
    std::string variables;
    const SSweptVariableSpecification& list = read.Set(0)->GetVariables();
    for (size_t i = 0; i < list.Count(); ++i)
      variables += (i ? " " : "") + std::string(list.Get(i)->data()) + ":" + std::to_string(list.Get(i)->itsInUse) +
                   ":" + std::to_string(list.Get(i)->itsType);
    EXPECT_EQ(variables, row.variables) << row.form;
  }

  SReadSweeps current;
  ASSERT_TRUE(ReadText(current.project, std::string("FTYP VELPROJ 17\nVARSWP\n") + rows[0].body + "END VARSWP\n"));
  current.block = current.project.GetVariableSweepBlock();
  EXPECT_TRUE(current.block->GetEnabled());
  EXPECT_FALSE(current.Set(0)->IsEnabled());
  EXPECT_TRUE(current.Set(1)->IsEnabled());
  ASSERT_NE(current.Set(0)->GetOverrideControl(), nullptr);
  EXPECT_EQ(current.Set(0)->GetOverrideControl()->itsSpeed, 2);
  EXPECT_FALSE(current.Entry(0, 0)->IsSelected());
  EXPECT_TRUE(current.Entry(0, 0)->IsAdaptive());
  EXPECT_TRUE(current.Entry(0, 1)->IsSelected());
  EXPECT_FALSE(current.Entry(0, 1)->IsAdaptive());
  EXPECT_EQ(current.Set(0)->GetVariables().GetKind(), SSweptVariableSpecification::SensitivitySweep);
  EXPECT_TRUE(current.block->IsEnabled());
  // Written as read, the override control and the empty set included.
  const std::string text = WriteText(current.project);
  EXPECT_TRUE(Contains(text, "VARSWP\nSWPVARS ON\nENABLED N\nOVRCONTROL\nSIMPLE\nOPTIONS \nSPEED 2\n")) << text;
  EXPECT_TRUE(Contains(text, "END OVRCONTROL\nFREQ N AY STEP 3\nFREQ Y AN LSWEEP 1 2 3\nVAR W YS 1 2\nEND\n"
                             "ENABLED Y\nEND\nEND VARSWP\n"))
      << text;

  SReadSweeps off;
  ASSERT_TRUE(ReadText(off.project, "FTYP VELPROJ 17\nVARSWP\nSWPVARS OFF\nSTEP 1\nW Y 1 2 1\nEND VARSWP\n"));
  EXPECT_FALSE(off.project.GetVariableSweepBlock()->IsEnabled());
}

TEST_F(SweepsTest, EveryVariableTypeKeepsItsLineAndUndefinedLimits) {
  const std::string lines = "VAR a Y 1 2 0.25\n"
                            "VAR b YN 1 2 3\n"
                            "VAR c YE 1 100 4\n"
                            "VAR d YC 0.5 1.5\n"
                            "VAR e YS UNDEF 1.5\n"
                            "VAR f YG 7\n"
                            "VAR g YL 1 2.5 4\n"
                            "VAR h N UNDEF UNDEF UNDEF\n";
  const std::string body = "ENABLED Y\nFREQ Y AN STEP 1\n" + lines + "END\n";
  const std::string text = RoundTrip("FTYP VELPROJ 17\nVARSWP\n" + body + "END VARSWP\n");
  EXPECT_TRUE(Contains(text, "VARSWP\n" + body + "END VARSWP\n")) << text;
  SReadSweeps read;
  ASSERT_TRUE(ReadText(read.project, text));
  const SSweptVariableSpecification& list = read.project.GetVariableSweepBlock()->Get(0)->GetVariables();
  EXPECT_EQ(list.GetKind(), SSweptVariableSpecification::MixedSweep);
  EXPECT_FALSE(list.Find("e")->itsStart.IsValid());
  EXPECT_EQ(list.Find("g")->itsValues, (std::vector<double>{1, 2.5, 4}));
  EXPECT_EQ(std::string(list.Find("b")->GetListText("mm").data()), "Lin: 1 to 2 mm");
  EXPECT_EQ(std::string(list.Find("e")->GetListText("mm").data()), "Please double click to set up this sweep.");
  EXPECT_EQ(std::string(list.Find("d")->GetListText("mm").data()), "Corner: min=0.5 max=1.5 nom=Undefined mm");

  // Older formats: the set's shape by format, and below 9 the later types go unused.
  const struct {
    int format;
    const char* body;
  } older[] = {
      {11, "STEP 1\nVAR a Y 1 2 0.25\nVAR f YG 7\nEND\n"},
      {9, "STEP 1\na Y 1 2 0.25\nf YG 7\n"},
      {8, "STEP 1\na Y 1 2 0.25\nf N 7 UNDEF UNDEF\n"},
      {4, "STEP 1\nN\na Y 1 2 0.25\nf N 7 UNDEF UNDEF\n"},
      {2, "STEP 1\na Y 1 2 0.25\nf N 7 UNDEF UNDEF\n"},
  };
  for (const auto& row : older) {
    const std::string written = RoundTrip(
        "FTYP VELPROJ 17\nVARSWP\nENABLED Y\nFREQ Y AN STEP 1\nVAR a Y 1 2 0.25\nVAR f YG 7\nEND\n"
        "ENABLED Y\nFREQ Y AN STEP 9\nEND\nEND VARSWP\n",
        row.format);
    EXPECT_TRUE(Contains(written, std::string("VARSWP\n") + row.body + "END VARSWP\n")) << row.format << "\n" << written;
    // The set that moves nothing gives its frequency to FREQ.
    if (row.format >= 2) {
      EXPECT_TRUE(Contains(written, "FREQ\nSTEP 9\nEND FREQ\n")) << row.format << "\n" << written;
    }
  }
}

TEST_F(SweepsTest, FrequencyOptionsGiveTheFrequenciesToTheParameterSetsOnce) {
  const struct {
    const char* options;
    const char* parameterSet;
  } rows[] = {
      {"", "VARSWP\nSTEP 2\nVAR W Y 1 2 1\nEND\nEND VARSWP\n"},
      {"AdditionalFreqs", "VARSWP\nSTEP 2\nSTEP 1\nVAR W Y 1 2 1\nEND\nEND VARSWP\n"},
      {"ReplaceFreqs -a", "VARSWP\nSTEP 1\nSTEP 2\nVAR W Y 1 2 1\nEND\nEND VARSWP\n"},
  };
  for (const auto& row : rows) {
    const std::string text = std::string("FTYP VELPROJ 16\nCONTROL\nABS\nOPTIONS ") + row.options +
                             "\nEND CONTROL\nFREQ\nSTEP 1\nSTEP 2\nEND FREQ\nVARSWP\nSTEP 2\nVAR W Y 1 2 1\nEND\n"
                             "END VARSWP\n";
    const std::string written = RoundTrip(text, 20);
    EXPECT_TRUE(Contains(written, "FREQ\nSTEP 1\nSTEP 2\nEND FREQ\n")) << row.options << "\n" << written;
    EXPECT_TRUE(Contains(written, row.parameterSet)) << row.options << "\n" << written;
    EXPECT_FALSE(Contains(written, "Freqs")) << written;
  }
}

TEST_F(SweepsTest, AnUnreadableSweepSetStopsTheReadWith7137) {
  SProject project;
  EXPECT_FALSE(ReadText(project, "FTYP VELPROJ 17\nVARSWP\nENABLED Y\nFREQ Y AN STEP 1\nVAR W Q 1 2\nEND\n"
                                 "END VARSWP\n"));
  ASSERT_EQ(Messages(project, 7137).size(), 1u);
  EXPECT_EQ(Messages(project, 7137)[0], "Unreadable sweep set at line 5.");
  SProject badEntry;
  EXPECT_FALSE(ReadText(badEntry, "FTYP VELPROJ 17\nVARSWP\nFREQ Y AN LSWEEP x\nEND\nEND VARSWP\n"));
  EXPECT_EQ(Messages(badEntry, 7137).size(), 1u);
  // A block with no set fails the check.
  SProjectErrorManager errors;
  EXPECT_FALSE(SVariableSweepBlock().Validate(errors));
  EXPECT_TRUE(errors.Contains(7212));
}

TEST_F(SweepsTest, ASweepSetStartsWithTheProjectsValuesAndSkipsUnknownNames) {
  SReadSweeps read;
  ASSERT_TRUE(ReadText(read.project, "FTYP VELPROJ 16\nVAR\nW = 2\nL = 3\nEND VAR\nVARSWP\nSTEP 1\nW Y 1 2 1\n"
                                     "Q Y 1 2 1\nEND VARSWP\n"))
      << read.project.GetErrors().ErrorText().data();
  const SSweptVariableSpecification& list = read.project.GetVariableSweepBlock()->Get(0)->GetVariables();
  ASSERT_EQ(list.Count(), 2u);
  EXPECT_TRUE(list.Find("W")->itsInUse);
  EXPECT_FALSE(list.Find("L")->itsInUse);
  EXPECT_EQ(std::string(list.Find("L")->GetListText("mil").data()), "Fixed: 3 mil");
  EXPECT_EQ(Messages(read.project, 7350), (std::vector<std::string>{"Variable not used by the sweep: Q"}));
  EXPECT_EQ(read.project.GetErrors().GetSeverity(), SProjectErrorManager::Warning);
}
