// A whole material file: both passes of reading, where each line goes, the written file,
// and a file read back being the same process.

#include "MatlTestSupport.h"

#include "SMatl.h"
#include "SMatlColor.h"
#include "SMatlDielectric.h"
#include "SMatlMetalDrawLayer.h"
#include "SMatlMetalMaterial.h"
#include "SMatlTechLayer.h"
#include "SMatlVariable.h"
#include "SMatlViaDrawLayer.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

namespace {

const char* const kEveryLine = GDS_SOURCE_DIR "/tests/matl/data/every_line.matl";
const char* const kExpected = GDS_SOURCE_DIR "/tests/matl/expected/every_line.matl";

std::string ReadText(const QString& path) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) return "<missing " + path.toStdString() + ">";
  return file.readAll().toStdString();
}

// The second header line names the file read, which differs from run to run.
std::string WithoutSource(std::string text) {
  const std::string marker = "; Translated from ";
  const size_t at = text.find(marker);
  if (at != std::string::npos) text.replace(at, text.find('\n', at) - at, marker + "<source>");
  return text;
}

class MatlFile : public MatlTest {
protected:
  QString Path(const char* name) const { return itsDir.filePath(name); }
  void WriteFile(const char* name, const std::string& text) const {
    QFile file(Path(name));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(text.data(), qint64(text.size()));
  }
  bool Has(int kind, int number) const { return itsCapture->Has(kind, number); }
  std::vector<int> Numbers(int kind) const { return itsCapture->Numbers(kind); }
  void ClearReports() { itsCapture->Clear(); }
  SString LastText(int kind) const {
    SString text;
    for (const auto& entry : itsCapture->Entries())
      if (entry.kind == kind) text = entry.text;
    return text;
  }
  // Everything reported, for failure messages.
  std::string Reports() const {
    std::string all;
    for (const auto& entry : itsCapture->Entries()) all += std::string(entry.text.data()) + "\n";
    return all;
  }
  QTemporaryDir itsDir;
};

} // namespace

TEST_F(MatlFile, EveryLineKindGoesToItsList) {
  SMatl matl;
  ASSERT_TRUE(matl.Read(kEveryLine)) << Reports();
  EXPECT_EQ(matl.GetDielectrics().size(), 3u);
  EXPECT_EQ(matl.GetMetalDrawLayers().size(), 3u);
  EXPECT_EQ(matl.GetViaDrawLayers().size(), 2u);
  EXPECT_EQ(matl.GetMetalMaterials().size(), 2u);
  EXPECT_EQ(matl.GetViaMaterials().size(), 1u);
  EXPECT_EQ(matl.GetColors().size(), 1u);
  // The second GDSLAYER of "Top" is dropped with a warning.
  EXPECT_EQ(matl.GetTechLayers().size(), 3u);
  EXPECT_TRUE(Has(SMatlReporting::Warning, 20058));
  EXPECT_EQ(matl.GetTechLayerFastOpts().size(), 2u);
  EXPECT_EQ(matl.GetBrickDielectrics().size(), 1u);
  EXPECT_TRUE(matl.IsUnitsGiven());
  EXPECT_EQ(matl.GetHighestDielectricLevel(), 2);

  // Variables go to the front, so the later line comes first.
  ASSERT_EQ(matl.GetVariables().size(), 2u);
  EXPECT_EQ(matl.GetVariables()[0]->GetName(), "w");
  EXPECT_EQ(matl.GetVariables()[1]->GetName(), "tox");

  // Comments lose their leaders; the header lines a writer adds and the unit lines are no
  // comments, and "MAXLEVELS" is only a comparison label, so a comment here.
  EXPECT_EQ(matl.GetComments().GetLines(),
            (QList<SString>{"A process with every kind of line", "written by hand", "MAXLEVELS 3"}));

  // Dielectrics take their place as level; "GND" is the last one.
  EXPECT_EQ(matl.FindDielectric(1)->GetLevelName(), "Oxide");
  EXPECT_EQ(matl.FindDielectric("Silicon")->GetLevel(), 2);
  const SMatlMetalDrawLayer* plane = matl.FindMetalDrawLayer("Plane");
  ASSERT_NE(plane, nullptr);
  EXPECT_TRUE(plane->IsOnGround());
  EXPECT_EQ(plane->GetLevelNumber(), 2);
  // Lookups compare names as they stand.
  EXPECT_EQ(matl.FindMetalDrawLayer("top"), nullptr);
  EXPECT_NE(matl.FindMetalMaterial("Gold"), nullptr);
  EXPECT_NE(matl.FindViaMaterial("Plug"), nullptr);
  EXPECT_NE(matl.FindColor("Top"), nullptr);
}

TEST_F(MatlFile, WrittenFileIsTheExpectedTextAndReadsBackTheSame) {
  SMatl matl;
  ASSERT_TRUE(matl.Read(kEveryLine)) << Reports();
  ASSERT_TRUE(matl.Write(SString(Path("first.matl"))));
  const std::string first = ReadText(Path("first.matl"));
  EXPECT_EQ(WithoutSource(first), WithoutSource(ReadText(kExpected)));
  // Colors and bricks are read and never written.
  EXPECT_EQ(first.find("COLOR"), std::string::npos);
  EXPECT_EQ(first.find("BRICK"), std::string::npos);
  // The color gave its pattern to the layer of its name before writing.
  EXPECT_EQ(matl.FindMetalDrawLayer("Top")->GetPattern(), 11);

  SMatl again;
  ASSERT_TRUE(again.Read(SString(Path("first.matl")))) << Reports();
  QStringList differences;
  // The colors were not written, so only they differ.
  EXPECT_FALSE(again.IsSameContent(matl, &differences));
  EXPECT_EQ(differences, QStringList{"Color entries: Color entry values do not match."});
  // The header lines did not come back as comments.
  EXPECT_EQ(again.GetComments().GetLines(), matl.GetComments().GetLines());

  ASSERT_TRUE(again.Write(SString(Path("second.matl"))));
  EXPECT_EQ(WithoutSource(ReadText(Path("second.matl"))), WithoutSource(first));
  SMatl third;
  ASSERT_TRUE(third.Read(SString(Path("second.matl"))));
  EXPECT_TRUE(third.IsSameContent(again, &differences)) << differences.join("\n").toStdString();
}

TEST_F(MatlFile, ComparisonNamesWhatDiffers) {
  WriteFile("a.matl", "DIEL 1 1 1 0 0 0 A\nDIEL 1 1 1 0 0 0 B\nMETAL M1 0 0 0 0 0 1 Cu 0 Normal 5e7 1\n"
                      "MATERIAL Gold 0 0 0 0 1 Normal 4e7 1\n");
  WriteFile("b.matl", "DIEL 1 1 1 0 0 0 A\nMETAL M1 0 0 0 0 0 1 Cu 0 Normal 5e7 2\n"
                      "MATERIAL Gold 0 0 0 0 1 Normal 4e7 1\nVIA V 0 0 0 0 0 1 W 0 1 Volume 5e7 1\n");
  SMatl a, b;
  ASSERT_TRUE(a.Read(SString(Path("a.matl"))));
  ASSERT_TRUE(b.Read(SString(Path("b.matl"))));
  QStringList differences;
  EXPECT_FALSE(a.IsSameContent(b, &differences));
  EXPECT_EQ(differences, (QStringList{"MAXLEVELS: Max Dielectric level values do not match.",
                                      "Metal Drawing Layers entries: Metal Drawing Layers entry values do not match.",
                                      "Via Drawing Layers entries: Via Drawing Layers entry values do not match.",
                                      "Dielectric entries: Dielectric entry values do not match."}));
  EXPECT_TRUE(a.IsSameContent(a));
}

TEST_F(MatlFile, EveryTokenHoldingUnitIsAUnitLine) {
  // "UNIT" anywhere in the first token makes a unit line; "MM" is a length, "C" only a
  // temperature once the four before it had their turn.
  WriteFile("u.matl", "UNIT mm\nXUNITS C\nDIEL 1 1 1 0 0 0 A\n");
  SMatl matl;
  ASSERT_TRUE(matl.Read(SString(Path("u.matl")))) << Reports();
  EXPECT_TRUE(matl.GetComments().GetLines().isEmpty());
  EXPECT_EQ(matl.GetUnits().GetCurrentName(SMatlUtil::Length, false), "mm");
  EXPECT_TRUE(matl.GetUnits().IsSeen(SMatlUtil::Temperature));

  WriteFile("bad.matl", "DIEL 1 1 1 0 0 0 A\nLUNIT furlongs\n");
  SMatl bad;
  EXPECT_FALSE(bad.Read(SString(Path("bad.matl"))));
  EXPECT_FALSE(bad.IsReadOk());
  ASSERT_TRUE(Has(SMatlReporting::Error, 20126));
  const SString text = LastText(SMatlReporting::Error);
  EXPECT_TRUE(text.contains("bad.matl, line 2")) << text.data();
  // A file that failed isn't written.
  EXPECT_FALSE(bad.Write(SString(Path("never.matl"))));
  EXPECT_FALSE(QFile::exists(Path("never.matl")));
}

TEST_F(MatlFile, DuplicatesWarnAndAreDropped) {
  WriteFile("d.matl", "DIEL 1 1 1 0 0 0 A\n"
                      "METAL M1 0 0 0 0 0 1 Cu 0 Normal 5e7 1\nMETAL M1 0 0 0 0 0 2 Au 0 Normal 4e7 1\n"
                      "VIA V1 0 0 0 0 0 1 W 0 1 Volume 5e7 1\nVIA V1 0 0 0 0 0 1 W 0 1 Volume 5e7 2\n"
                      "GDSLAYER M1 1 0\nGDSLAYER M1 2 0\nDXFLAYER M1 m1\n"
                      "VAR a = 1\nVAR a = 2\n");
  SMatl matl;
  ASSERT_TRUE(matl.Read(SString(Path("d.matl")))) << Reports();
  ASSERT_EQ(matl.GetMetalDrawLayers().size(), 1u);
  EXPECT_EQ(matl.GetMetalDrawLayers()[0]->GetMetalName(), "Cu");
  EXPECT_EQ(matl.GetViaDrawLayers().size(), 1u);
  // A second GDSLAYER of a name is dropped; a DXFLAYER of that name stays.
  ASSERT_EQ(matl.GetTechLayers().size(), 2u);
  EXPECT_EQ(matl.GetTechLayers()[0]->GetLayer().GetStream(), 1);
  EXPECT_EQ(matl.GetTechLayers()[1]->GetSubKind(), SMatlTechLayer::Dxf);
  ASSERT_EQ(matl.GetVariables().size(), 1u);
  EXPECT_EQ(matl.GetVariables()[0]->GetValueText(), "1");
  EXPECT_TRUE(Has(SMatlReporting::Warning, 20058));
  EXPECT_TRUE(Has(SMatlReporting::Warning, 20108));
}

TEST_F(MatlFile, ABadLineStopsTheReadWithItsFileAndLine) {
  struct SCase {
    const char* line;
    int message;
  };
  const SCase cases[] = {
      {"DIEL 1 x 1 0 0 0 A", 20008},
      {"METAL M1 0 0 0 0 0 1 Cu 0 Normal 5e7 -1", 20041},
      {"VIA V1 0 0 0 0 0 1 W 0 x Volume 5e7 1", 20163},
      {"GDSLAYER M1 -1 0", 20132},
  };
  for (const SCase& c : cases) {
    SCOPED_TRACE(c.line);
    ClearReports();
    WriteFile("e.matl", std::string("; first\nDIEL 1 1 1 0 0 0 Top\n") + c.line + "\nDIEL 1 1 1 0 0 0 Never\n");
    SMatl matl;
    EXPECT_FALSE(matl.Read(SString(Path("e.matl"))));
    EXPECT_TRUE(Has(SMatlReporting::Error, c.message)) << Reports();
    EXPECT_TRUE(LastText(SMatlReporting::Error).contains("e.matl, line 3")) << Reports();
    // Reading stopped at the bad line.
    EXPECT_EQ(matl.FindDielectric("Never"), nullptr);
  }
}

TEST_F(MatlFile, AFileThatCantBeOpenedIsFalseWithoutAMessage) {
  SMatl matl(SString(Path("absent.matl")));
  EXPECT_FALSE(matl.IsReadOk());
  EXPECT_TRUE(Numbers(SMatlReporting::Error).empty());
}

TEST_F(MatlFile, UnitsChangedBeforeWritingScaleTheValues) {
  WriteFile("mm.matl", "LUNIT mm\nDIEL 2 1 1 0 0 0 A\nMETAL M1 0 0 0 0 0 1 Cu 0 Normal 5e7 0.5\n");
  SMatl matl;
  ASSERT_TRUE(matl.Read(SString(Path("mm.matl"))));
  matl.Units().SetCurrent(SMatlUtil::Length, SMatlUtil::UnitCode(SMatlUtil::Length, "UM"));
  ASSERT_TRUE(matl.Write(SString(Path("um.matl"))));
  EXPECT_TRUE(LastText(SMatlReporting::Note).contains("Changing length units from \"mm\" to \"um\".") ||
              Reports().find("Changing length units from \"mm\" to \"um\".") != std::string::npos)
      << Reports();
  SMatl um;
  ASSERT_TRUE(um.Read(SString(Path("um.matl"))));
  EXPECT_DOUBLE_EQ(um.FindDielectric("A")->GetThickness(), 2000);
  EXPECT_DOUBLE_EQ(um.FindMetalDrawLayer("M1")->itsThickness.GetValue(), 500);
}

TEST_F(MatlFile, ACommentWithAnOddQuoteIsWrittenSoThatItTakesNoLineAlong) {
  // In the file read, the open quote runs on into the next line, as in every token file.
  WriteFile("q.matl", "; say \"hello\nDIEL 1 1 1 0 0 0 A\n# and \"more\n\nDIEL 2 1 1 0 0 0 B\nDIEL 3 1 1 0 0 0 C\n");
  SMatl matl;
  ASSERT_TRUE(matl.Read(SString(Path("q.matl")))) << Reports();
  EXPECT_NE(matl.FindDielectric("C"), nullptr);
  ASSERT_TRUE(matl.Write(SString(Path("q2.matl"))));
  SMatl again;
  ASSERT_TRUE(again.Read(SString(Path("q2.matl")))) << Reports();
  EXPECT_TRUE(again.IsSameContent(matl));
  EXPECT_EQ(again.GetComments().GetCount(), matl.GetComments().GetCount());
}

TEST_F(MatlFile, GroundIsTheLastLevelWhereverTheLineStands) {
  // "GND" before the last dielectric still means the last level.
  WriteFile("g.matl", "DIEL 1 1 1 0 0 0 A\nMETAL P 0 0 0 0 0 1 Cu GND Normal INF 0\nDIEL 2 1 1 0 0 0 B\n");
  SMatl matl;
  ASSERT_TRUE(matl.Read(SString(Path("g.matl")))) << Reports();
  EXPECT_EQ(matl.FindMetalDrawLayer("P")->GetLevelNumber(), 1);
  ASSERT_TRUE(matl.Write(SString(Path("g2.matl"))));
  SMatl again;
  ASSERT_TRUE(again.Read(SString(Path("g2.matl")))) << Reports();
  EXPECT_TRUE(again.IsSameContent(matl));
}

TEST_F(MatlFile, VariablesThatCouldNotBeWrittenBackAreRefused) {
  for (const char* line : {"VAR \"a b\" = 1", "VAR a\"b = 1", "VAR a = b\"c"}) {
    SCOPED_TRACE(line);
    ClearReports();
    WriteFile("v.matl", std::string(line) + "\nDIEL 1 1 1 0 0 0 A\n");
    SMatl matl;
    EXPECT_FALSE(matl.Read(SString(Path("v.matl"))));
    // An open quote runs on into the next line, as in every token file: the line named is
    // where the logical line ends.
    EXPECT_TRUE(LastText(SMatlReporting::Error).contains("v.matl, line ")) << Reports();
  }
  // A number keeps every digit it needs to read back the same.
  WriteFile("n.matl", "VAR big = 1555555555555555555555555555555555555555555555555555555555555\nDIEL 1 1 1 0 0 0 A\n");
  SMatl matl;
  ASSERT_TRUE(matl.Read(SString(Path("n.matl")))) << Reports();
  ASSERT_TRUE(matl.Write(SString(Path("n2.matl"))));
  SMatl again;
  ASSERT_TRUE(again.Read(SString(Path("n2.matl")))) << Reports();
  EXPECT_TRUE(again.IsSameContent(matl));
}
