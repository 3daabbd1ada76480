// Metal, via and brick type lines of the GEO block: each read from one line and written back.
#include "ProjectTestSupport.h"

#include "SBrickType.h"
#include "SCircuit.h"
#include "SDimensionBlock.h"
#include "SFileBlock.h"
#include "SMaterialTypeIO.h"
#include "SMetalType.h"
#include "SProjectErrorEntry.h"
#include "SProjectErrorManager.h"
#include "SProjectStream.h"
#include "SViaMetalType.h"

#include <memory>
#include <string>
#include <vector>

namespace {

class TypesTest : public ProjectTest {
protected:
  void SetUp() override {
    ProjectTest::SetUp();
    Fresh();
  }

  // A new project's circuit, with its built-in types, and no errors yet.
  void Fresh() {
    itsOwned.reset(new SCircuit);
    itsOwned->InitNew();
    itsErrors.Clear();
  }

  // Reads lines as the GEO loop does: the keyword decides which reader gets the line.
  bool Read(const std::string& lines) {
    QString copy = QString::fromStdString(lines);
    QTextStream stream(&copy);
    SCommentedFile file(&stream);
    while (file.NextLine()) {
      SString keyword;
      if (!file.GetToken(keyword)) continue;
      using M = SFileBlock;
      bool ok = false;
      if (M::Match(keyword, "TME") || M::Match(keyword, "BME") || M::Match(keyword, "TOP") ||
          M::Match(keyword, "TON") || M::Match(keyword, "BOT") || M::Match(keyword, "BON"))
        ok = SMaterialTypeIO::ReadCoverLine(file, Circuit(), keyword, itsErrors);
      else if (M::Match(keyword, "MET") || M::Match(keyword, "RES") || M::Match(keyword, "REN"))
        ok = SMaterialTypeIO::ReadMetalLine(file, Circuit(), keyword, itsErrors);
      else
        ok = SMaterialTypeIO::ReadBrickLine(file, Circuit(), keyword, itsErrors);
      if (!ok) return false;
    }
    return SMaterialTypeIO::ResolveCovers(Circuit(), itsErrors);
  }

  // The type lines of the circuit, with the block's ten digits.
  std::string Types(int format = SProjectFormat::kCurrent) {
    SProjectStream out;
    SProjectDigits digits(out, 10);
    SMaterialTypeIO::NumberAndWriteTypes(out, Circuit(), format);
    return out.Text();
  }

  std::string Covers(int format = SProjectFormat::kCurrent) {
    SProjectStream out;
    SProjectDigits digits(out, 10);
    SMaterialTypeIO::WriteCovers(out, Circuit(), format);
    return out.Text();
  }

  // The message number and line of the one error a failing read left.
  std::pair<int, int> Failure(const std::string& lines) {
    EXPECT_FALSE(Read(lines)) << lines;
    if (itsErrors.Count() != 1) return {-static_cast<int>(itsErrors.Count()), 0};
    EXPECT_EQ(itsErrors.Entry(0)->itsSeverity, 3);
    return {static_cast<int>(itsErrors.Entry(0)->itsMessageId), itsErrors.Entry(0)->itsLine};
  }

  SCircuit& Circuit() { return *itsOwned; }

  std::unique_ptr<SCircuit> itsOwned;
  SProjectErrorManager itsErrors;
};

// Reads one type line into a new circuit, writes its type lines.
class LineTest : public TypesTest {
protected:
  std::string Again(const std::string& line, int format = SProjectFormat::kCurrent) {
    EXPECT_TRUE(Read(line)) << line << itsErrors.ErrorText().data();
    return Types(format);
  }
};

// Current forms come back byte for byte; older ones and the default loss word in the current form.
TEST_F(LineTest, LinesWriteBackInTheCurrentForm) {
  const struct {
    const char* in;
    const char* out;
  } lines[] = {
      {"MET \"Copper\" 3 NOR 58000000 1.5 0.5 \n", nullptr},
      {"MET \"Copper\" 3 NOR INF 0 0.5 \n", nullptr},
      {"MET \"Rho\" 1 NOR 1.7e-08 2 0.25  RSVY\n", nullptr},
      {"MET \"Cu\" 0 NOR 5 1 0.5 CDVY\n", "MET \"Cu\" 0 NOR 5 1 0.5 \n"},
      {"MET \"Thick\" 2 TMM 41000000 3 0.5 4\n", nullptr},
      {"MET \"Thick\" 2 TMM INF 3 0.5 2 SRVY\n", nullptr},
      {"MET \"Down\" 2 TMM 41000000 3 0.5 2 CDVY TDWN\n", nullptr},
      {"MET \"R\" 0 RES 50\n", nullptr},
      {"MET \"N\" 0 NAT 0.1 0.002\n", nullptr},
      {"MET \"General metal\" 4 SUP 0.1 0.002 3 1e-12\n", nullptr},
      {"MET \"S\" 0 SEN 12.5\n", nullptr},
      {"MET \"Rough\" 5 RUF THK 58000000 0.5 1.2 0.8 2 \n", nullptr},
      {"MET \"Rough\" 5 RUF THN INF 0.5 1.2 0.8 2 \n", nullptr},
      {"MET \"Rough\" 5 RUF THK 58000000 0.5 1.2 0.8 2 RSVY TDWN\n", nullptr},
      // RR on two sheets: one roughness on both faces; one sheet is thin; no conductivity is copper.
      {"MET \"Old\" 1 ROG 0.5 1.5 2 3 RR INF\n", "MET \"Old\" 1 RUF THK INF 0.5 1.5 1.5 3 \n"},
      {"MET \"Old\" 1 ROG 0.5 1.5 1 3 SR\n", "MET \"Old\" 1 RUF THN 58000000 0.5 0 1.5 3 \n"},
      {"MET \"Eq\" 1 NOR \"sigma*2\" \"t+1\" 0.5 \n", nullptr},
      {"MET \"Plug\" 1 VOL INF SOLID 0\n", nullptr},
      {"MET \"Tube\" 1 VOL 58000000 0.5\n", nullptr},
      {"MET \"Tube\" 1 VOL 2e-08 0.5 RSVY\n", nullptr},
      {"MET \"Skin\" 2 SFC 0.01 0.002 0\n", nullptr},
      {"MET \"Array\" 3 ARR INF  100\n", nullptr},
      {"MET \"Array\" 3 ARR 58000000  50 CDVY 2.5\n", nullptr},
      {"MET \"Array\" 3 ARR 0.5  50 RPV 1\n", nullptr},
      {"BRI \"Oxide\" 2 3.9 0.001 0 \n", nullptr},
      {"BRI \"Oxide\" 2 3.9 0.001 0 CDVY\n", "BRI \"Oxide\" 2 3.9 0.001 0 \n"},
      {"BRI \"Lossy\" 2 3.9 0.001 1e-05  RSVY\n", nullptr},
      {"BRA \"Sapphire\" 4 9.4 0.0001 0 9.4 0.0001 0 11.6 0.0002 0 \n", nullptr},
      {"PRI 2 3.9 0.001 0\nPRN Silicon dioxide\n", "BRI \"Silicon dioxide\" 2 3.9 0.001 0 \n"},
      {"PRA 3 1 0 0 2 0 0 3 0 0\nPRN \"Stack\"\n", "BRA \"Stack\" 3 1 0 0 2 0 0 3 0 0 \n"},
  };
  for (const auto& line : lines) {
    SCOPED_TRACE(line.in);
    Fresh();
    EXPECT_EQ(Again(line.in), line.out != nullptr ? line.out : line.in);
  }
}

TEST_F(LineTest, ArrayLinkedToAPlanarMetalTakesItsLossType) {
  const std::string lines = "MET \"Sheet\" 1 NOR 20 1 0.5  SRVY\n"
                            "MET \"Array\" 3 ARR 58000000  50 CDVY 1 \"Sheet\"\n";
  EXPECT_EQ(Again(lines), lines);
  SViaMetalType* via = Circuit().FindViaMetalType("Array");
  ASSERT_NE(via, nullptr);
  EXPECT_EQ(via->itsLinkedMetal, Circuit().FindMetalType("Sheet"));
  EXPECT_EQ(via->GetElectricalLossType(), SElectricalLossType::SheetResistance);
  EXPECT_EQ(via->GetLossType().GetCode(), SElectricalLossType::Conductivity);
}

TEST_F(LineTest, MagneticBrickKeepsItsPermeabilityOutsideTheBlock) {
  const char* const brl = "BRL \"Ferrite\" 1 4 0.01 0 12 0.1 4 0.01 0 12 0.1 5 0.02 0 13 0.2 \n";
  EXPECT_EQ(Again(brl), "BRA \"Ferrite\" 1 4 0.01 0 4 0.01 0 5 0.02 0 \n");
  SProjectStream out;
  Circuit().FindBrickType("Ferrite")->WriteMagnetic(out);
  EXPECT_EQ(out.Text(), brl);
}

// Below 19 no downward thick metal, below 12 the ROG form, below 10 no rough model, below 11
// no via metal, below 4 no thick metal.
TEST_F(LineTest, OlderFormatsWriteTheModelsTheyKnow) {
  ASSERT_TRUE(Read("MET \"Rough\" 5 RUF THK 58000000 0.5 1.2 0.8 2 \n"
                   "MET \"Thin\" 5 RUF THN 58000000 0.5 1.2 0.8 2 \n"
                   "MET \"Down\" 2 TMM 41000000 3 0.5 2 CDVY TDWN\n"
                   "MET \"Up\" 2 TMM 41000000 3 0.5 3\n"
                   "MET \"Via\" 1 VOL INF SOLID 0\n"));
  const std::string via = "MET \"Via\" 1 VOL INF SOLID 0\n";
  const std::string down = "MET \"Down\" 2 NOR 41000000 3 0.5 \n";
  const std::string up = "MET \"Up\" 2 TMM 41000000 3 0.5 3\n";
  EXPECT_EQ(Types(18), "MET \"Rough\" 5 RUF THK 58000000 0.5 1.2 0.8 2 \n"
                       "MET \"Thin\" 5 RUF THN 58000000 0.5 1.2 0.8 2 \n" + down + up + via);
  EXPECT_EQ(Types(11), "MET \"Rough\" 5 ROG 0.5 0.8 2 2 SR 58000000 \n"
                       "MET \"Thin\" 5 ROG 0.5 0.8 1 2 SR 58000000 \n" + down + up + via);
  EXPECT_EQ(Types(9), "MET \"Rough\" 5 TMM 58000000 2 0.5 2\n"
                      "MET \"Thin\" 5 NOR 58000000 2 0.5 \n" + down + up);
  EXPECT_EQ(Types(3), "MET \"Rough\" 5 NOR 58000000 2 0.5 \n"
                      "MET \"Thin\" 5 NOR 58000000 2 0.5 \n" + down + "MET \"Up\" 2 NOR 41000000 3 0.5 \n");
}

// Older formats hold conductivity in S/m, whatever the loss type and unit.
TEST_F(LineTest, OlderFormatsConvertLossesToConductivity) {
  ASSERT_TRUE(Read("MET \"Rho\" 1 NOR 2e-06 1 0.5  RSVY\n"
                   "MET \"Sheet\" 1 NOR 0.02 1 0.5  SRVY\n"
                   "BRI \"Res\" 2 4 0 0.5  RSVY\n"));
  SProject project;
  project.GetDimensionBlock()->SetDefaults();
  Circuit().SetProject(&project);
  ASSERT_NE(Circuit().GetDimensions(), nullptr);
  const std::string older = Types(14);
  // 2e-6 ohm cm (the default resistivity unit); sheet resistance 0.02 ohm/sq over 1 mil (the default length unit).
  EXPECT_TRUE(Contains(older, "MET \"Rho\" 1 NOR 50000000 1 0.5 \n")) << older;
  EXPECT_TRUE(Contains(older, "MET \"Sheet\" 1 NOR 1968503.937 1 0.5 \n")) << older;
  EXPECT_TRUE(Contains(older, "BRI \"Res\" 2 4 0 200 \n")) << older;
  EXPECT_TRUE(Contains(Types(), "MET \"Rho\" 1 NOR 2e-06 1 0.5  RSVY\n"));
}

// The words name the built-ins, whatever the line's name; built-ins never get MET lines.
TEST_F(TypesTest, BuiltInMetalsAreNamedByTheirWords) {
  ASSERT_TRUE(Read("MET \"anything\" 0 WGLOAD\nMET \"x\" 0 FREESPACE 376.7303136 0 0 0\n"));
  EXPECT_EQ(Circuit().FindMetalType("WG Load")->GetDefinition(), SMetalTypeData::WGLoad);
  EXPECT_DOUBLE_EQ(Circuit().FindMetalType("Free Space")->itsRdc.GetValue(), 376.7303136);
  EXPECT_EQ(Circuit().FindMetalType("anything"), nullptr);
  EXPECT_EQ(Types(), "");
}

TEST_F(TypesTest, CoversReadAndWriteInTheirOwnLines) {
  EXPECT_EQ(Covers(), "TMET \"Lossless\" 0 SUP 0 0 0 0\nBMET \"Lossless\" 0 SUP 0 0 0 0\n");
  const char* const covers = "TMET \"Free Space\" 0 FREESPACE 376.7303136 0 0 0\nBMET \"Gold\" 2 NOR 41000000 0 0.5 \n";
  ASSERT_TRUE(Read(covers));
  EXPECT_EQ(Circuit().GetTopMetal(), Circuit().FindMetalType("Free Space"));
  EXPECT_EQ(Circuit().GetBottomMetal(), Circuit().FindMetalType("Gold"));
  EXPECT_EQ(Covers(), covers);
  // "Gold" serves only as a cover: no MET line.
  EXPECT_EQ(Types(), "");
}

// TOP and BOT give a model; TON and BON the pattern and the name that goes with it.
TEST_F(TypesTest, OldestCoverLinesNameTheirModels) {
  ASSERT_TRUE(Read("TOP 0.1 0.2 0.3 0.4\nTON 3 Top metal\nBOT 0 0 0 0\nBON 1\n"));
  EXPECT_EQ(Circuit().GetBottomMetal(), Circuit().GetLosslessMetal());
  EXPECT_EQ(Covers(), "TMET \"Top metal\" 3 SUP 0.1 0.2 0.3 0.4\nBMET \"Lossless\" 0 SUP 0 0 0 0\n");
  Fresh();
  ASSERT_TRUE(Read("TOP 5 0 0 0\nBOTTOM 0 0 0 7\n"));
  EXPECT_EQ(Covers(), "TMET \"Top Cover\" 0 SUP 5 0 0 0\nBMET \"Bottom Plane\" 0 SUP 0 0 0 7\n");
}

TEST_F(TypesTest, OldestNamelessMetalsTakeTheirNameFromREN) {
  ASSERT_TRUE(Read("MET 0.5 0.1 0 0\nREN 4 Strip\nRES 20\n"));
  EXPECT_EQ(Types(), "MET \"Strip\" 4 SUP 0.5 0.1 0 0\nMET \"Unnamed 1\" 0 RES 20\n");
}

TEST_F(TypesTest, EveryReaderErrorHasItsNumberAndLine) {
  const struct {
    const char* text;
    int message;
  } cases[] = {
      {"MET\n", 6090}, {"MET \"A\"\n", 6090}, {"MET \"A\" -1 NOR INF 0 0.5\n", 6090}, {"MET \"A\" 0\n", 6157},
      {"MET \"A\" 0 INF 0 0.5\n", 6187}, {"MET \"A\" 0 nor INF 0 0.5\n", 6187}, {"MET \"A\" 0 NOR\n", 6155},
      {"MET \"A\" 0 NOR INF\n", 6156}, {"MET \"A\" 0 NOR INF 1\n", 6083}, {"MET \"A\" 0 TMM INF 1 0.5\n", 6089},
      {"MET \"A\" 0 RES\n", 6092}, {"MET \"A\" 0 NAT 1\n", 6093}, {"MET \"A\" 0 SUP 1 2 3\n", 6095},
      {"MET \"A\" 0 SUP 1 2\n", 6094}, {"MET \"A\" 0 SEN\n", 6094}, {"MET \"A\" 0 RUF THK INF 0.5 1\n", 6184},
      {"MET \"A\" 0 RUF THK INF 0.5 1 1\n", 6156}, {"MET \"A\" 0 ROG 0.5\n", 6184}, {"MET \"A\" 0 VOL\n", 6155},
      {"MET \"A\" 0 VOL INF SOLID\n", 6156}, {"MET \"A\" 0 ARR INF\n", 6083}, {"MET \"A\" 0 SFC 1 2\n", 6094},
      {"TMET \"A\" 0\n", 6157}, {"TMET \"A\"\n", 6090}, {"BMET \"A\" 0 VOL INF 0\n", 6187}, {"TON\n", 6090},
      {"TOP 1 2\n", 6094}, {"BRI \"B\" 0 1 0\n", 6088}, {"BRA \"B\" 0 1 0 0 2 0 0 3\n", 6086},
      {"BRL \"B\" 0 1 0 0 1\n", 6087}, {"BRI \"B\"\n", 6090}, {"PRN Name\n", 6082}, {"REN 1 Name\n", 6186},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    Fresh();
    // A good line first, so that the line number counts.
    EXPECT_EQ(Failure(std::string("TMET \"Lossless\" 0 SUP 0 0 0 0\n") + c.text), std::make_pair(c.message, 2));
  }
  // A name line out of place is an invalid line, with the reason.
  Fresh();
  EXPECT_EQ(Failure("PRN Name\n").first, 6082);
  const std::string text = itsErrors.ErrorText().data();
  EXPECT_TRUE(Contains(text, "Invalid line.")) << text;
  EXPECT_TRUE(Contains(text, "brick name line")) << text;
}

TEST_F(TypesTest, ALineOfAKnownNameUpdatesThatType) {
  ASSERT_TRUE(Read("MET \"Cu\" 0 NOR INF 0 0.5\nMET \"Cu\" 2 RES 7\nBRI \"B\" 0 2 0 0\nBRI \"B\" 1 3 0 0\n"));
  std::vector<SMetalType*> metals;
  std::vector<SBrickType*> bricks;
  Circuit().CollectObjects(metals);
  Circuit().CollectObjects(bricks);
  EXPECT_EQ(metals.size(), 4u);
  EXPECT_EQ(bricks.size(), 2u);
  EXPECT_EQ(Types(), "MET \"Cu\" 2 RES 7\nBRI \"B\" 1 3 0 0 \n");
}

}  // namespace
