#include "ProjectTestSupport.h"

#include "SControlBlock.h"
#include "SDimensionBlock.h"
#include "SFrequencyBlock.h"
#include "SFindMaxSweep.h"
#include "SFrequencyEntry.h"
#include "SStandardSweep.h"
#include "SVariableSweep.h"
#include "SVariableSweepBlock.h"

#include <vector>

namespace {
// A FREQ block read becomes the first sweep set.
const SOrdered& FrequencyEntries(SProject& project) {
  static const SOrdered none;
  SVariableSweep* sweep = project.GetVariableSweepBlock()->Get(0);
  return sweep != nullptr ? sweep->GetEntries() : none;
}
}  // namespace

TEST_F(ProjectTest, ControlLinesReadAsTheyAreMeant) {
  SProject project;
  ASSERT_TRUE(ReadText(project, "FTYP VELPROJ 17\nCONTROL\nVARSWP\nSPEED 7\nRES_ABS Y 0.01\n"
                                "EDGECHECK N 2 TECHLAY\nCFMAX Q\nCACHE_ABS 0\nMCONSIST REPLACE\n"
                                "OPTIONS -a ReplaceFreqs b AdditionalFreqs -a\nEND CONTROL\n"));
  SControlBlock* control = project.GetControlBlock();
  EXPECT_EQ(control->itsAnalysisType, SControlBlock::Parameter);
  EXPECT_EQ(control->GetAnalysisTypeName(), SString("Parameter"));
  EXPECT_EQ(control->itsSpeed, 7);
  EXPECT_EQ(control->itsResolutionMode, SControlBlock::ManualResolution);
  EXPECT_DOUBLE_EQ(control->itsResolution.GetValue(), 0.01);
  EXPECT_FALSE(control->itsEdgeChecking);
  EXPECT_EQ(control->itsEdgeCheckType, 1);
  EXPECT_EQ(control->itsEdgeLevels.GetValue(), 2);
  EXPECT_EQ(control->itsFMaxControl, SControlBlock::FMaxBoth);
  EXPECT_FALSE(control->itsFMax.IsValid());
  EXPECT_EQ(control->itsCachingLevel, 0);
  EXPECT_EQ(control->itsConsistency, SControlBlock::Replace);
  // The frequency options are used up by the read; repeats go.
  EXPECT_EQ(control->GetOptionsText(), SString("-a b"));
  EXPECT_FALSE(control->itsTargetFrequencies.IsValid() && control->itsTargetFrequencies.GetValue() != 300);
  const std::string text = WriteText(project);
  EXPECT_TRUE(Contains(text, "CONTROL\nVARSWP\nOPTIONS -a b\nSPEED 7\nMCONSIST REPLACE\nSUBSPLAM N\n"
                             "EDGECHECK N 2 TECHLAY\nCFMAX B\nCEPSY N\nRES_ABS Y 0.01\nCACHE_ABS 0\n"
                             "TARG_ABS 300\nQ_ACC N\nEND CONTROL\n"))
      << text;
  EXPECT_EQ(SString(SControlBlock::AnalysisTypeName(9)), SString("Unknown"));
}

TEST_F(ProjectTest, ControlLinesFollowTheWriteFormat) {
  SProject project;
  ASSERT_TRUE(ReadText(project, "FTYP VELPROJ 17\nCONTROL\nAWR_ABS\nFILENAME freqs.eff\nDET_ABS_RES Y\nFCAL 2\n"
                                "Q_ACC Y\nCFMAX L 3.123456789012\nEND CONTROL\n"));
  std::string text = WriteText(project);
  EXPECT_TRUE(Contains(text, "CONTROL\nAWR_ABS\nOPTIONS \nSPEED 0\n"));
  EXPECT_FALSE(Contains(text, "FILENAME"));
  EXPECT_TRUE(Contains(text, "CFMAX L 3.123456789\n"));
  EXPECT_TRUE(Contains(text, "Q_ACC Y\nDET_ABS_RES Y\nFCAL 2\nEND CONTROL\n"));
  const struct {
    int format;
    const char* present;
    const char* absent;
  } rows[] = {{20, "FILENAME freqs.eff\n", "RES_FREQS"}, {18, "Q_ACC Y\nFCAL 2\n", "DET_ABS_RES"},
              {5, "Q_ACC Y\nEND", "FCAL"},              {4, "CACHE_ABS 1\nTARG_ABS 300\nEND", "Q_ACC"},
              {3, "CFMAX N 3.123456789\n", "CACHE_ABS"}, {2, "CONTROL\nSIMPLE\n", "RES_ABS"}};
  for (const auto& row : rows) {
    SProjectFormat::SetWriteFormat(row.format);
    text = WriteText(project);
    EXPECT_TRUE(Contains(text, row.present)) << row.format << "\n" << text;
    EXPECT_FALSE(Contains(text, row.absent)) << row.format << "\n" << text;
  }
}

TEST_F(ProjectTest, EveryFrequencyEntryRoundTripsInTheFormerFormat) {
  const std::string entries = kEveryFrequencyEntry;
  const std::string text = RoundTrip("FTYP VELPROJ 17\nFREQ\n" + entries + "END FREQ\n", 20);
  EXPECT_TRUE(Contains(text, "FREQ\n" + entries + "END FREQ\n")) << text;

  SProject project;
  ASSERT_TRUE(ReadText(project, "FTYP VELPROJ 17\nFREQ\n" + entries + "END FREQ\n"));
  EXPECT_TRUE(project.GetFrequencyBlock()->IsChanged());
  // The current format keeps no FREQ block, also when one was read.
  EXPECT_FALSE(Contains(WriteText(project), "\nFREQ\n"));
  EXPECT_FALSE(project.GetFrequencyBlock()->IsPresent());
}

TEST_F(ProjectTest, FrequencyUnitsInTheFrequencyBlock) {
  SProject older;
  ASSERT_TRUE(ReadText(older, "FTYP VELPROJ 17\nFREQ MHz\nSTEP 1\nEND FREQ\n"));
  EXPECT_EQ(older.GetDimensionBlock()->GetUnitName(SDimensionBlock::Frequency), SString("MHZ"));
  SProject unitLine;
  ASSERT_TRUE(ReadText(unitLine, "FTYP VELPROJ 17\nFREQ\nFREQUNIT KHZ\nkhz\nSTEP 1\nEND FREQ\n"));
  EXPECT_EQ(unitLine.GetDimensionBlock()->GetUnitName(SDimensionBlock::Frequency), SString("KHZ"));
  EXPECT_EQ(FrequencyEntries(unitLine).entries(), 1u);
}

TEST_F(ProjectTest, SweepsExpandToTheirFrequencies) {
  SProject project;
  ASSERT_TRUE(ReadText(project, "FTYP VELPROJ 17\nFREQ\nSWEEP 1 2 0.25\nLSWEEP 0 1 3\nESWEEP 1 100 3\n"
                                "SWEEP 7 9 0\nSTEP 2\nLIST 0.5 1\nLSWEEP 0 1 2000000000\nEND FREQ\n"));
  const SOrdered& entries = FrequencyEntries(project);
  const auto frequencies = [&entries](size_t i) {
    std::vector<double> out;
    static_cast<const SFrequencyEntry*>(entries.at(i))->GetFrequencies(out);
    return out;
  };
  EXPECT_EQ(frequencies(0), (std::vector<double>{1, 1.25, 1.5, 1.75, 2}));
  EXPECT_EQ(frequencies(1), (std::vector<double>{0, 0.5, 1}));
  const std::vector<double> exponential = frequencies(2);
  ASSERT_EQ(exponential.size(), 3u);
  EXPECT_NEAR(exponential[1], 10.0, 1e-12);
  EXPECT_EQ(frequencies(3), (std::vector<double>{7}));
  EXPECT_EQ(frequencies(6).size(), SFrequencyEntry::kMaxPoints);
  // All frequencies of a block, sorted and without repeats.
  SProject listed;
  ASSERT_TRUE(ReadText(listed, "FTYP VELPROJ 17\nFREQ\nSWEEP 1 2 0.25\nLIST 2 0.5 1\nSTEP 1.5\nEND FREQ\n"));
  std::vector<double> all;
  SFrequencyBlock block;
  for (const SCollectable* entry : FrequencyEntries(listed))
    block.AddEntry(static_cast<const SFrequencyEntry*>(entry)->Clone());
  block.GetAllFrequencies(all);
  EXPECT_EQ(all, (std::vector<double>{0.5, 1, 1.25, 1.5, 1.75, 2}));
  EXPECT_EQ(block.CountFrequencies(), 6u);

  EXPECT_EQ(static_cast<const SFrequencyEntry*>(entries.at(0))->GetDescription(), SString("1 to 2 step of 0.25"));
  SStandardSweep unset;
  EXPECT_EQ(unset.GetDescription(), SString("Please double click to set up this sweep."));
  SFindMaxSweep search;
  int first = 0, second = 0;
  search.itsParameter = "S21";
  search.GetPorts(first, second);
  EXPECT_EQ(first * 10 + second, 21);
  search.itsParameter = "S0";
  search.GetPorts(first, second);
  EXPECT_EQ(first * 10 + second, 11);
}
