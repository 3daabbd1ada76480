// Optimisation goals and their variables, the values file of an optimisation, and the cut
// lines of a subdivision: read with the full read set, written in every form.
#include "ProjectTestSupport.h"

#include "SDimensionBlock.h"
#include "SOptimizationBlock.h"
#include "SOptimizationGoal.h"
#include "SOptimizationGoalEntry.h"
#include "SParameterBlock.h"
#include "SProjectErrorEntry.h"
#include "SSubdivisionBlock.h"
#include "SSubdivisionLine.h"
#include "SVariablePair.h"

#include <QDir>

#include <cstring>
#include <string>
#include <utility>
#include <vector>

namespace {

std::string Expected(const char* name) {
  QFile file(QString(GDS_SOURCE_DIR "/tests/project/expected/") + name);
  if (!file.open(QIODevice::ReadOnly)) return "<missing>";
  return file.readAll().toStdString();
}

// From "<name>\n" to "END <name>\n" of a written project.
std::string Block(const std::string& text, const std::string& name) {
  const size_t begin = text.find("\n" + name + "\n");
  const size_t end = text.find("END " + name + "\n");
  if (begin == std::string::npos || end == std::string::npos) return "<no " + name + " block>";
  return text.substr(begin + 1, end + 5 + name.size() - begin - 1);
}

using Messages = std::vector<std::pair<int, int>>;

// Message number and line of each entry.
Messages Found(const SProject& project) {
  Messages found;
  const SProjectErrorManager& errors = project.GetErrors();
  for (size_t i = 0; i < errors.Count(); ++i)
    found.emplace_back(static_cast<int>(errors.Entry(i)->itsMessageId), errors.Entry(i)->itsLine);
  return found;
}

// Every line form of OPT and SUBDIV, with the bounds of the variables still in OPT.
const char* const kProject = R"(FTYP VELORAPRJ 17
DIM
FREQ GHZ
LNG UM
END DIM
VAR
W = 10
L = 20
END VAR
CONTROL
OPTIMIZE
END CONTROL
SUBDIV
MAIN $BASENAME_main.vel
refplane F 12.5
NAME 2 parts/$BASENAME_s2.vel
NAME 1 "with blank.vel"
LINE 1 40 V
line 2 100.5 h
COLOR red
END SUBDIV
OPT
MAX 50
ENABLED N
FREQ N SWEEP 1 10 0.5
FREQ Y AN STEP 5
GOAL Y NET=GEO DB[S11] < VALUE=-20 2.5
GOAL N NET=amp MAG[S21] > NET=ref MAG[S21]
GOAL NET=GEO ANG[S21] = FILE "data file.s2p" S21 0.5
END
SWEEP 1 2 0.5
NET=GEO DB[S22] < VALUE=-15
VARS
VAR W Y 5 15 0.5
L N UNDEF 30 UNDEF
VAR GONE Y 1 2 3
END
END OPT
)";

class OptSubdivTest : public ProjectTest {
protected:
  // Reads `text` with the full read set; fails the test when the read does.
  void Read(SProject& project, const std::string& text) {
    ASSERT_TRUE(ReadText(project, text, "chip.vel")) << project.GetErrors().ErrorText().data();
  }
  Messages ReadMessages(const std::string& text, bool succeeds) {
    SProject project;
    EXPECT_EQ(ReadText(project, text, "chip.vel"), succeeds) << text;
    return Found(project);
  }
};

}  // namespace

// ---- whole blocks

TEST_F(OptSubdivTest, EveryLineFormIsWrittenBackInTheCurrentAndTheFormerFormat) {
  SProject first;
  Read(first, kProject);
  const std::string current = WriteText(first);
  EXPECT_EQ(current, Expected("optsub_current.vel"));
  SProjectFormat::SetWriteFormat(20);
  const std::string former = WriteText(first);
  EXPECT_EQ(former, Expected("optsub_former.vel"));
  // Each form read again gives itself back; the former holds one goal line of each goal.
  SProject fromFormer;
  Read(fromFormer, former);
  SProjectFormat::SetWriteFormat(20);
  EXPECT_EQ(WriteText(fromFormer), former);
  // The current form holds bounds only for the project's variables in use.
  SProject fromCurrent;
  Read(fromCurrent, current);
  SProjectFormat::SetWriteFormat(SProjectFormat::kCurrent);
  EXPECT_EQ(WriteText(fromCurrent), current);
  std::string fewer = former;
  for (const std::string line : {"VAR L N UNDEF 30 UNDEF\n", "VAR GONE Y 1 2 3\n"})
    if (fewer.find(line) != std::string::npos) fewer.erase(fewer.find(line), line.size());
  SProjectFormat::SetWriteFormat(20);
  EXPECT_EQ(WriteText(fromCurrent), fewer);
}

TEST_F(OptSubdivTest, TheReadBlocksHoldWhatTheLinesSay) {
  SProject project;
  Read(project, kProject);
  SOptimizationBlock* opt = project.GetOptimizationBlock();
  EXPECT_EQ(opt->GetMaxIterations(), 50);
  ASSERT_EQ(opt->CountGoals(), 2u);
  const SOptimizationGoal* goal = opt->GetGoal(0);
  EXPECT_FALSE(goal->IsEnabled());
  ASSERT_EQ(goal->GetEntries().entries(), 2u);
  ASSERT_EQ(goal->CountGoalEntries(), 3u);
  const SOptimizationGoalEntry* entry = goal->GetGoalEntry(0);
  EXPECT_EQ(entry->GetText(), "chip DB[S11] < -20 weight=2.5");
  EXPECT_EQ(goal->GetGoalEntry(1)->GetText(), "amp MAG[S21] > ref MAG[S21] weight=1");
  EXPECT_FALSE(goal->GetGoalEntry(1)->itsEnabled);
  EXPECT_EQ(std::string(goal->GetGoalEntry(2)->GetTarget()->GetLabel()), "File");
  EXPECT_EQ(goal->GetGoalEntry(2)->GetTarget()->GetText(), Path("data file.s2p") + " S21");
  EXPECT_TRUE(opt->GetGoal(1)->IsEnabled());
  // The bounds went to the named values; granularity too, in an optimisation.
  const SValueVarDouble& w = project.GetParameterBlock()->GetSpecification().Find("W")->Value();
  EXPECT_TRUE(w.OptConstraints().IsEnabled());
  EXPECT_EQ(w.OptConstraints().itsMinimum.GetValue(), 5.0);
  EXPECT_EQ(w.OptConstraints().itsMaximum.GetValue(), 15.0);
  EXPECT_EQ(w.EMConstraints().itsGranularity.GetValue(), 0.5);
  const SValueVarDouble& l = project.GetParameterBlock()->GetSpecification().Find("L")->Value();
  EXPECT_FALSE(l.OptConstraints().IsEnabled());
  EXPECT_FALSE(l.OptConstraints().itsMinimum.IsValid());

  SSubdivisionBlock* subdiv = project.GetSubdivisionBlock();
  EXPECT_EQ(subdiv->GetMainName(), Path("chip_main.vel"));
  EXPECT_EQ(subdiv->GetRefPlaneMode(), SSubdivisionBlock::FixedRefPlane);
  EXPECT_EQ(subdiv->GetRefPlaneLength(), 12.5);
  ASSERT_EQ(subdiv->CountLines(), 2u);
  EXPECT_TRUE(subdiv->GetLine(0)->IsVertical());
  EXPECT_EQ(subdiv->GetLine(1)->GetPosition(), 100.5);
  EXPECT_EQ(subdiv->GetLine(1)->GetId(), 2);
  const auto names = subdiv->GetSubprojectNames();
  ASSERT_EQ(names.size(), 2u);
  EXPECT_EQ(names[0], std::make_pair(1, Path("with blank.vel")));
  EXPECT_EQ(names[1], std::make_pair(2, Path("parts/chip_s2.vel")));
}

TEST_F(OptSubdivTest, OlderFormatsWriteTheGoalsAndVariablesOfTheirTime) {
  const std::string text =
      "FTYP VELORAPRJ 17\nVAR\nW = 10\nEND VAR\nCONTROL\nOPTIMIZE\nEND CONTROL\n"
      "OPT\nMAX 7\nFREQ Y SWEEP 1 2 0.5\nGOAL Y NET=GEO S11 = VALUE=1 2\nGOAL Y NET=GEO S22 = VALUE=3\nEND\n"
      "ENABLED Y\nFREQ Y LSWEEP 1 2 3\nEND\nVARS\nW Y 1 UNDEF 0.25\nEND\nEND OPT\n";
  const struct {
    int format;
    const char* body;
  } rows[] = {
      {4, "MAX 7\nSIMPLE 1 2 0.5\nNET=GEO S11 = VALUE=1 2\nLSWEEP 1 2 3\nVARS\nW Y 1 UNDEF 0.25\n"},
      {10, "MAX 7\nSWEEP 1 2 0.5\nNET=GEO S11 = VALUE=1 2\nLSWEEP 1 2 3\nVARS\nW Y 1 UNDEF 0.25\n"},
      {11, "MAX 7\nSWEEP 1 2 0.5\nNET=GEO S11 = VALUE=1 2\nLSWEEP 1 2 3\nVARS\nVAR W Y 1 UNDEF 0.25\nEND\n"},
      {21, "MAX 7\nENABLED Y\nFREQ Y SWEEP 1 2 0.5\nGOAL Y NET=GEO S11 = VALUE=1 2\nGOAL Y NET=GEO S22 = VALUE=3 1\n"
           "END\nENABLED Y\nFREQ Y LSWEEP 1 2 3\nEND\n"},
  };
  for (const auto& row : rows) {
    const std::string written = RoundTrip(text, row.format);
    EXPECT_EQ(Block(written, "OPT"), "OPT\n" + std::string(row.body) + "END OPT\n") << row.format;
  }
}

// ---- edge cases

TEST_F(OptSubdivTest, SubdivisionEdgeCases) {
  const std::string head = "FTYP VELORAPRJ 17\nSUBDIV\n";
  const struct {
    const char* body;
    const char* written;
  } rows[] = {
      // No lines: no block at all.
      {"MAIN x.vel\nREFPLANE F 3\n", "<no SUBDIV block>"},
      {"LINE 4 1e-3 H\nREFPLANE N\n", "SUBDIV\nREFPLANE N 0\nLINE 4 0.001 H \nEND SUBDIV\n"},
      {"LINE 4 7 v\nNAME 3 .\n", "SUBDIV\nREFPLANE A 0\nNAME 3 $BASENAME_net\nLINE 4 7 V \nEND SUBDIV\n"},
      {"MAIN ../up.vel\nLINE 1 7 V\n", nullptr},
  };
  for (const auto& row : rows) {
    SProject project;
    Read(project, head + row.body + "END SUBDIV\n");
    const std::string block = Block(WriteText(project), "SUBDIV");
    if (row.written != nullptr) {
      EXPECT_EQ(block, row.written) << row.body;
      continue;
    }
    // A name outside the project's directory stays as it stands.
    const std::string up = QDir::cleanPath(QDir(Path("").qstring()).absoluteFilePath("../up.vel")).toStdString();
    EXPECT_EQ(block, "SUBDIV\nMAIN " + up + "\nREFPLANE A 0\nLINE 1 7 V \nEND SUBDIV\n");
  }
}

TEST_F(OptSubdivTest, SubdivisionFailuresGiveTheirMessagesAndLines) {
  const std::string head = "FTYP VELORAPRJ 17\nSUBDIV\nLINE 1 5 V\n";
  const struct {
    const char* bad;
    bool succeeds;
    Messages messages;
    size_t lines;
  } rows[] = {
      // A bad index or a missing name ends the entries; the lines behind them go.
      {"NAME x a.vel\nLINE 2 6 V\n", true, {{7192, 4}}, 1},
      {"NAME -1 a.vel\n", true, {{7192, 4}}, 1},
      {"LINE 1.5 6 V\nLINE 3 6 V\n", true, {{7192, 4}}, 1},
      {"NAME 1\nLINE 3 6 V\n", true, {{7195, 4}}, 1},
      {"MAIN\n", true, {{7195, 4}}, 1},
      // A bad direction drops its line only.
      {"LINE 2 6 X\nLINE 3 6 H\n", true, {{7194, 4}}, 2},
      {"REFPLANE Q 1\n", true, {{7194, 4}}, 1},
      // A bad length fails the read.
      {"REFPLANE F\n", false, {{7203, 4}}, 1},
      {"REFPLANE A wide\n", false, {{7203, 4}}, 1},
      {"LINE 2 far V\n", false, {{7203, 4}}, 1},
  };
  for (const auto& row : rows) {
    SProject project;
    const std::string text = head + row.bad + "END SUBDIV\nVAR\nW = 1\nEND VAR\n";
    EXPECT_EQ(ReadText(project, text, "chip.vel"), row.succeeds) << row.bad;
    EXPECT_EQ(Found(project), row.messages) << row.bad;
    if (!row.succeeds) continue;
    EXPECT_EQ(project.GetSubdivisionBlock()->CountLines(), row.lines) << row.bad;
    // The blocks behind are read.
    EXPECT_TRUE(project.GetParameterBlock()->IsPresent()) << row.bad;
  }
}

TEST_F(OptSubdivTest, OptimisationFailuresGiveTheirMessagesAndLines) {
  const std::string head = "FTYP VELORAPRJ 17\nOPT\nMAX 5\n";
  const struct {
    const char* body;
    bool succeeds;
    Messages messages;
    size_t goals;
    size_t goalLines;
  } rows[] = {
      // An unreadable frequency line makes the goal unreadable and ends the read.
      {"FREQ Y SWEEP 1 x 2\nGOAL Y NET=GEO S11 = VALUE=1\n", false, {{7136, 4}}, 0, 0},
      {"FREQ\n", false, {{7136, 4}}, 0, 0},
      // A goal line that doesn't fit is dropped with a warning.
      {"ENABLED Y\nGOAL Y NET=GEO S11 ~ VALUE=1\nGOAL Y NET=GEO S11 = VALUE=1\nEND\n", true, {{7136, 5}}, 1, 1},
      {"ENABLED Y\nGOAL Y NET=GEO S11 = VALUE=x\nEND\n", true, {{7136, 5}}, 1, 0},
      {"ENABLED Y\nGOAL Y NET=GEO S11 = LIMIT 1\nEND\n", true, {{7136, 5}}, 1, 0},
      {"ENABLED Y\nGOAL Y NET=GEO S11 = VALUE=1 heavy\nEND\n", true, {{7136, 5}}, 1, 0},
      {"ENABLED Y\nGOAL Y NET= S11 = VALUE=1\nEND\n", true, {{7136, 5}}, 1, 0},
      // Lines the block can't take are unknown content, which a file of this version may not hold.
      {"VARS\nVAR W X 1 2 3\nEND\n", false, {{7284, 5}}, 0, 0},
      {"MAX many\n", false, {{7284, 4}}, 0, 0},
      {"COLOR red\n", false, {{7284, 4}}, 0, 0},
  };
  for (const auto& row : rows) {
    SProject project;
    EXPECT_EQ(ReadText(project, head + row.body + "END OPT\n", "chip.vel"), row.succeeds) << row.body;
    EXPECT_EQ(Found(project), row.messages) << row.body;
    if (!row.succeeds) continue;
    SOptimizationBlock* opt = project.GetOptimizationBlock();
    ASSERT_EQ(opt->CountGoals(), row.goals) << row.body;
    EXPECT_EQ(opt->GetGoal(0)->CountGoalEntries(), row.goalLines) << row.body;
  }
}

TEST_F(OptSubdivTest, AnOptimisationWithoutGoalsFailsValidation) {
  SProject project;
  Read(project, "FTYP VELORAPRJ 17\nVAR\nW = 1\nEND VAR\nOPT\nMAX 5\nEND OPT\n");
  EXPECT_FALSE(project.GetOptimizationBlock()->Validate(project.GetErrors()));
  ASSERT_FALSE(Found(project).empty());
  EXPECT_EQ(Found(project).back(), std::make_pair(7212, -1));
}

TEST_F(OptSubdivTest, ARepairedVariableNameFollowsIntoTheOptimisation) {
  const std::string text =
      "FTYP VELPROJ 17\nDIM\nLNG UM\nEND DIM\nGEO\nVALVAR 1A LNG 3 \"\"\n" + std::string(kTwoLevelStack) +
      "NUM 0\nEND GEO\nOPT\nMAX 5\nVARS\nVAR 1A Y 1 5 UNDEF\nEND\nEND OPT\n";
  const std::string written = RoundTrip(text, 20);
  EXPECT_TRUE(Contains(Block(written, "OPT"), "VAR _1A Y 1 5 UNDEF\n")) << written;
  EXPECT_TRUE(Contains(RoundTrip(text), "VCNSTR OPT _1A 1 5 ON")) << RoundTrip(text);
}

TEST_F(OptSubdivTest, GoalFrequenciesFollowANewFrequencyUnit) {
  SProject project;
  Read(project, "FTYP VELORAPRJ 17\nDIM\nFREQ GHZ\nEND DIM\nOPT\nMAX 5\nFREQ Y SWEEP 1 10 0.5\n"
                "GOAL Y NET=GEO S11 = VALUE=1 1\nEND\nEND OPT\n");
  SDimensionBlock megahertz;
  megahertz.SetDefaults();
  megahertz.SetUnit(SDimensionBlock::Frequency, "MHZ");
  project.SetUnits(megahertz, true);
  EXPECT_TRUE(Contains(Block(WriteText(project), "OPT"), "FREQ Y SWEEP 1000 10000 500\n"));
}

// ---- values file

TEST_F(OptSubdivTest, TheValuesFileIsReadInTheProjectsLengthUnit) {
  const struct {
    const char* unit;
    double factor;
  } rows[] = {{"UM", 1.0}, {"MM", 1000.0}, {"NM", 0.001}};
  for (const auto& row : rows) {
    SProject project;
    Read(project, "FTYP VELORAPRJ 17\nDIM\nLNG UM\nEND DIM\nOPT\nMAX 5\nVARS\nVAR W Y 1 5 UNDEF\nEND\nEND OPT\n");
    SOptimizationBlock* opt = project.GetOptimizationBlock();
    ASSERT_TRUE(QDir().mkpath(project.GetDataDirectory().qstring()));
    WriteFile(opt->GetOptValuesPath(), std::string("FTYPE OPTVALUES ! best so far <\nLUNIT ") + row.unit +
                                           "\nERROR 0.125\nPARAMS\nW = 2.5\nQ = &\n4\nEND\n");
    ASSERT_TRUE(opt->ReadOptValues()) << row.unit;
    double w = 0.0, q = 0.0;
    ASSERT_TRUE(opt->GetBestValues().GetValue("W", w));
    ASSERT_TRUE(opt->GetBestValues().GetValue("Q", q));
    EXPECT_DOUBLE_EQ(w, 2.5 * row.factor) << row.unit;
    EXPECT_DOUBLE_EQ(q, 4 * row.factor) << row.unit;
    EXPECT_EQ(opt->GetError().GetValue(), 0.125);
    EXPECT_DOUBLE_EQ(opt->GetVariables().Find("W")->itsCurrent.GetValue(), 2.5 * row.factor);
    opt->ResetValues();
    EXPECT_FALSE(opt->GetVariables().Find("W")->itsCurrent.IsValid());
  }
}

TEST_F(OptSubdivTest, ValuesWrittenAreReadBackAndRemoved) {
  SProject project;
  Read(project, "FTYP VELORAPRJ 17\nOPT\nMAX 5\nEND OPT\n");
  SOptimizationBlock* opt = project.GetOptimizationBlock();
  EXPECT_FALSE(opt->ReadOptValues());
  EXPECT_EQ(opt->GetBestValues().Count(), 0u);
  SVariableSpecification values;
  values.AddValue("W", 1.25);
  values.AddValue("long name", -3);
  opt->SetError(0.5);
  ASSERT_TRUE(opt->WriteOptValues(values));
  EXPECT_EQ(FileText(opt->GetOptValuesPath()),
            "FTYPE OPTVALUES\nLUNIT MIL\nERROR 0.5\nPARAMS\nW = 1.25\n\"long name\" = -3\nEND\n");
  ASSERT_TRUE(opt->ReadOptValues());
  EXPECT_EQ(opt->GetBestValues().compareTo(&values), 0);
  EXPECT_TRUE(opt->RemoveOptValues());
  EXPECT_FALSE(opt->ReadOptValues());
  EXPECT_EQ(opt->GetBestValues().Count(), 0u);
}

// ---- reference planes

namespace {
// A box of 1600 by 1600 in 160 by 160 cells of 10, air of 100 above alumina-like 50, and
// a top frequency of 100 GHz.
std::string CutProject(const std::string& lines, bool metal) {
  std::string text =
      "FTYP VELPROJ 17\nDIM\nFREQ GHZ\nLNG UM\nEND DIM\nFREQ\nSTEP 100\nSWEEP 1 10 1\nEND FREQ\nGEO\n"
      "TMET \"Lossless\" 0 SUP 0 0 0 0\nBMET \"Lossless\" 0 SUP 0 0 0 0\n"
      "BOX 1 1600 1600 320 320 20 0\n      100 1 1 0 0 0 0 \"Air\"\n      50 9 1 0 0 0 0 \"Sub\"\n";
  text += metal ? "NUM 1\n0 5 -1 N 1 1 1 100 100 0 0 0 Y\n0 0\n10 0\n10 10\n0 10\n0 0\nEND\n" : "NUM 0\n";
  return text + "END GEO\nSUBDIV\n" + lines + "END SUBDIV\n";
}
}  // namespace

TEST_F(OptSubdivTest, TheSuggestedReferencePlaneIsHalfTheGapUpToAFifthOfAWavelength) {
  const struct {
    const char* lines;
    bool metal;
    double gap;
    int cells;
  } rows[] = {
      // Half of 150 cells is 75; 0.2 wavelength in eps 19/3 is 23 cells.
      {"LINE 1 100 V\n", true, 1500, 23},
      // Without metal every level is above, and the effective eps is 1: 59 cells.
      {"LINE 1 100 V\n", false, 1500, 59},
      // Half of a gap of 6 cells is 3: never below 8.
      {"LINE 1 800 H\nLINE 2 740 H\nLINE 3 860 H\nLINE 4 920 H\nLINE 5 980 H\nLINE 6 1040 H\nLINE 7 1100 H\n"
       "LINE 8 1160 H\nLINE 9 1220 H\nLINE 10 1280 H\nLINE 11 1340 H\nLINE 12 1400 H\nLINE 13 1460 H\nLINE 14 1540 H\n"
       "LINE 15 680 H\nLINE 16 620 H\nLINE 17 560 H\nLINE 18 500 H\nLINE 19 440 H\nLINE 20 380 H\nLINE 21 320 H\n"
       "LINE 22 260 H\nLINE 23 200 H\nLINE 24 140 H\nLINE 25 80 H\n",
       true, 80, 8},
  };
  for (const auto& row : rows) {
    SProject project;
    Read(project, CutProject(row.lines, row.metal));
    SSubdivisionBlock* subdiv = project.GetSubdivisionBlock();
    EXPECT_DOUBLE_EQ(subdiv->GetMaxGap(1600), row.gap) << row.lines;
    EXPECT_EQ(subdiv->SuggestRefPlane(), row.cells) << row.lines;
  }
}

TEST_F(OptSubdivTest, ReferencePlaneCellsAndSubprojectNames) {
  SProject project;
  Read(project, CutProject("MAIN $BASENAME.vel\nREFPLANE F 34\nLINE 1 100 V\nLINE 2 900 V\n", true));
  SSubdivisionBlock* subdiv = project.GetSubdivisionBlock();
  EXPECT_EQ(subdiv->GetRefPlaneCells(), 3);
  subdiv->SetRefPlane(SSubdivisionBlock::NoRefPlane, 34);
  EXPECT_EQ(subdiv->GetRefPlaneCells(), 0);
  subdiv->MakeSubprojectNames();
  const auto names = subdiv->GetSubprojectNames();
  ASSERT_EQ(names.size(), 3u);
  EXPECT_EQ(names[2], std::make_pair(3, Path("chip_s3.vel")));
  EXPECT_TRUE(Contains(Block(WriteText(project), "SUBDIV"), "NAME 1 $BASENAME_s1.vel\nNAME 2 $BASENAME_s2.vel\n"));
  // A line moves with the layout across its direction.
  SSubdivisionLine* line = subdiv->GetLine(0);
  line->Shift(5, 7);
  line->Scale(2);
  EXPECT_EQ(line->GetPosition(), 210);
}
