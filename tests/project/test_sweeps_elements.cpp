// Frequency sweeps through reads and writes of every format, parallel subsection lengths that
// become options, the older metal forms, and metal and brick elements in GEO.
#include "ProjectTestSupport.h"

#include "SCircuit.h"
#include "SControlBlock.h"
#include "SGeometryBlock.h"
#include "SProjectErrorEntry.h"

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
