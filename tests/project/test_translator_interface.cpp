#include "ProjectTestSupport.h"

#include "SBaseOutputFile.h"
#include "SFileOutputBlock.h"
#include "SIBAWR64MeshOption.h"
#include "SIBMetal.h"
#include "SInterfaceBlock.h"
#include "STranslatorBlock.h"

#include <QCoreApplication>
#include <QSettings>

namespace {

std::string Expected(const char* name) {
  QFile file(QString(GDS_SOURCE_DIR "/tests/project/expected/") + name);
  if (!file.open(QIODevice::ReadOnly)) return "<missing>";
  return file.readAll().toStdString();
}

std::string Netlist(const std::string& blocks) { return "FTYP VELORAPRJ 17\nVER 17.52\n" + blocks; }

// A body of a block as written, between its first line and its END line.
std::string Body(const std::string& text, const std::string& block) {
  const size_t begin = text.find("\n" + block + "\n");
  const size_t end = text.find("END " + block + "\n");
  if (begin == std::string::npos || end == std::string::npos) return "<no " + block + " block>";
  return text.substr(begin + block.size() + 2, end - begin - block.size() - 2);
}

const char* const kTranslator = R"(TRANSLATOR
a line that is no record
GDSEXPORT
UseTLs false
SepObj true
SepMat false
DivideMulti true
Circles true
CircleType manual
CircleSize 2.5
KeepMetals false
KeepVias true
KeepViaPads false
KeepBricks true
KeepEdgeVias false
KeepParent false
ConvertParent true
AllEdgeViasAsVia true
NewerKey 3
GbrUnits inch
END
GERBEREXPORT
DivideMulti true
CircleType round
GbrWholeDigits 2
GbrDecimalDigits 5
GbrFilenamePrefix art
GbrFilenameExt gtx
GbrJobPrefix myjob
GbrFilenameType project
GbrJobFilenameType default
GbrUnits inch
END
END TRANSLATOR
)";

const char* const kInterface = R"(INTERFACE
MESHDFAWR mesh1 1 2 3 4 1
METFPAWR "top metal" 3 #FF8000
METFPAWR bottom 4
LAYFPAWR 1 10 20 1 ""
LAYFPAWR 2 0 0 "" 1
CDSDATE Tue Mar 5 10:11:12 2024
CDSORIGIN 1.5 -2
CDSMARGINS 1 2 3 4
CDSEXTRAMARGINS 0.5 0.5 0 0
ADSDATE 2024-03-05
ADSORIGIN 0 0
ADSMARGINS 5 5 5 5
ADSEXTRAMARGINS 1 1 1 1
CDSSHIELD shield1
CDSSHIELD "shield two"
CDSCAPMETAL M1
CDSFASTSOLVERMESHOPTIONS MESHSIZE 2 um MESHMULTIPILER 1.5 EDGEMESH 0.1 ARCSEGMENT 16 SHIELDMESHSIZE 4 um SHIELDMESHMULTIPLIER 2
CDSFASTSOLVERMODELOPTIONS EQUIVCCT RLCK
CDSFASTSOLVEROPTIONS MULTITHREAD Yes NUMBEROFTHREADS 4 REUSERESULTS No USENUMBEROFPOINTS Yes NUMBEROFPOINTS 101 NUMBEROFADAPTIVE 3 CONVERGENCETOLERANCE 0.01
CDSFASTSOLVERCFGOPTIONS TOPMETAL M9 BOTTOMMETAL M1 DCPOINT 0.001 WRITEMERGEFILE No ISAMOMCAP Yes USELINEVIAS No
CDSFASTSOLVEROPTIONSADDLOPTIONS -fast -v 2
AWR64SIMPROGTYPE Remote
LAYERMAP METAL M1 metal1 31
LAYERMAP VIA V1 via1 51
AWR64PROJECT proj1 1.0
BEGIN
AWR64OPTION <OPTION Name="Mesh" Value="High" />
AWR64MATL Copper cu MT_RealCond 5.8e7 0
AWR64MATL Air air MT_Dielectric 1 0 1 0
AWR64TRACE "T1" "Copper" "L1" 0.5 1e-3
AWR64LAYER "L1" "stack" dielectric NoTrace 10 1 N
AWR64ELAYER "L2" conductor T1 0.1 0 Y
AWR64MESHI 1 MD_Low MDec_High Y N Y
AWR64PORT 1 "P1" "net a" 1 Left 2D Wave 0 50 Y N
END

END INTERFACE
)";

const char* const kFileOut = R"(FILEOUT
FOLDER $BASENAME_results
TS D Y $BASENAME.s2p IC 15 S MA R 50
SC D Y $BASENAME.sc NC
TOUCH D Y $BASENAME.tch
TOUCH2 D Y $BASENAME.ts
CADENCE D Y $BASENAME.cds
DATA_BANK D Y $BASENAME.db
CSV D Y $BASENAME.csv
MDIF D Y $BASENAME.mdf
EBMDIF D Y $BASENAME.emdf
GNU D Y $BASENAME.gnu
SPICE D Y $BASENAME.lib
PSPICE D Y $BASENAME.plib
PIMODEL D Y $BASENAME.pi
TSPICE D Y $BASENAME.tsp
NCLINE D Y $BASENAME.ncl
BBEXTRACT D Y $BASENAME.bb
INDMODEL D Y $BASENAME.ind
END FILEOUT
)";

class TranslatorInterfaceTest : public ProjectTest {
protected:
  // The message numbers and lines of a read that must fail.
  std::vector<std::pair<int, int>> Failure(const std::string& text) {
    SProject project;
    EXPECT_FALSE(ReadText(project, text)) << text;
    std::vector<std::pair<int, int>> found;
    for (size_t i = 0; i < project.GetErrors().Count(); ++i)
      found.emplace_back(static_cast<int>(project.GetErrors().Entry(i)->itsMessageId),
                         project.GetErrors().Entry(i)->itsLine);
    return found;
  }
};

// ---- TRANSLATOR

TEST_F(TranslatorInterfaceTest, ExportRecordsComeBackWithEveryKeyInOrder) {
  EXPECT_EQ(RoundTrip(Netlist(kTranslator)), Expected("translator.vel"));
  SProject project;
  ASSERT_TRUE(ReadText(project, Netlist(kTranslator)));
  STranslatorBlock* block = project.GetTranslatorBlock();
  // Only the records the file held are present; the DXF record keeps its defaults.
  EXPECT_FALSE(block->GetExport(STranslatorExport::Dxf).IsPresent());
  const STranslatorExport& gds = block->GetExport(STranslatorExport::Gds);
  const STranslatorExport& gerber = block->GetExport(STranslatorExport::Gerber);
  EXPECT_TRUE(gds.IsPresent());
  EXPECT_FALSE(gds.GetBool(STranslatorExport::UseTLs));
  EXPECT_EQ(gds.GetInt(STranslatorExport::CircleType), 0);
  EXPECT_DOUBLE_EQ(gds.GetNumber(STranslatorExport::CircleSize), 2.5);
  // A Gerber key in another record is passed over.
  EXPECT_EQ(gds.GetInt(STranslatorExport::GbrUnits), 0);
  EXPECT_EQ(gerber.GetInt(STranslatorExport::GbrUnits), 1);
  EXPECT_EQ(gerber.GetInt(STranslatorExport::GbrFilenameType), 1);
  // Bad words keep 0.
  EXPECT_EQ(gerber.GetInt(STranslatorExport::CircleType), 0);
  EXPECT_EQ(gerber.GetInt(STranslatorExport::GbrJobFilenameType), 0);
  EXPECT_EQ(gerber.GetText(STranslatorExport::GbrJobPrefix), SString("myjob"));
  EXPECT_TRUE(gerber.GetBool(STranslatorExport::UseTLs));
}

TEST_F(TranslatorInterfaceTest, OnlyAGdsRecordWritesBackOnlyThatRecord) {
  const std::string text = RoundTrip(Netlist("TRANSLATOR\nGDSEXPORT\nCircles true\nEND\nEND TRANSLATOR\n"));
  const std::string body = Body(text, "TRANSLATOR");
  EXPECT_EQ(body.rfind("GDSEXPORT\n", 0), 0u) << body;
  EXPECT_EQ(body.find("DXFEXPORT"), std::string::npos);
  EXPECT_EQ(body.find("GERBEREXPORT"), std::string::npos);
  EXPECT_NE(body.find("Circles true\nCircleType inscribed\nCircleSize 0\n"), std::string::npos);
  // Older formats don't know the block.
  SProject project;
  ASSERT_TRUE(ReadText(project, text));
  SProjectFormat::SetWriteFormat(10);
  EXPECT_EQ(WriteText(project).find("TRANSLATOR"), std::string::npos);
}

TEST_F(TranslatorInterfaceTest, AnUnreadableRecordStopsTheReadWithItsLine) {
  const struct {
    const char* body;
    int line;
  } cases[] = {
      {"GDSEXPORT\nUseTLs yes\nEND\n", 5},
      {"DXFEXPORT\nGbrWholeDigits x\nCircleSize 1\nEND\nGERBEREXPORT\nGbrWholeDigits 2.5\nEND\n", 9},
      {"GERBEREXPORT\nCircleSize wide\nEND\n", 5},
      {"DXFEXPORT\nKeepVias\nEND\n", 5},
      // The record's own END is missing.
      {"GDSEXPORT\nUseTLs true\n", 6},
  };
  for (const auto& c : cases) {
    const std::string text = Netlist(std::string("TRANSLATOR\n") + c.body + "END TRANSLATOR\n");
    EXPECT_EQ(Failure(text), (std::vector<std::pair<int, int>>{{7140, c.line}})) << c.body;
  }
}

TEST_F(TranslatorInterfaceTest, AnOptionsFileUsesTheSameKeys) {
  const SString path = Path("export.opt");
  WriteFile(path, "Circles=true\nCircleType=manual\nGbrUnits=inch\nGbrFilenamePrefix=top_\nOther=1\n");
  STranslatorExport gerber(STranslatorExport::Gerber);
  ASSERT_TRUE(gerber.ReadOptionsFile(path));
  EXPECT_TRUE(gerber.GetBool(STranslatorExport::Circles));
  EXPECT_EQ(gerber.GetInt(STranslatorExport::CircleType), 0);
  EXPECT_EQ(gerber.GetInt(STranslatorExport::GbrUnits), 1);
  EXPECT_EQ(gerber.GetText(STranslatorExport::GbrFilenamePrefix), SString("top_"));
  WriteFile(path, "Circles=maybe\n");
  EXPECT_FALSE(gerber.ReadOptionsFile(path));
  EXPECT_FALSE(gerber.ReadOptionsFile(Path("missing.opt")));
}

TEST_F(TranslatorInterfaceTest, RecordsStartFromTheEditorsSavedOptions) {
  QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, itsDir.path());
  QCoreApplication::setOrganizationName("GdsTest");
  {
    QSettings settings("GdsTest", "planform");
    settings.beginGroup("/settings/TransBlock/ExportOptions");
    settings.setValue("SepObj", "false");
    settings.setValue("GbrUnits", "inch");
  }
  SProject project;
  const bool read = ReadText(project, Netlist("TRANSLATOR\nGDSEXPORT\nCircles true\nEND\nEND TRANSLATOR\n"));
  QCoreApplication::setOrganizationName(QString());
  ASSERT_TRUE(read);
  STranslatorBlock* block = project.GetTranslatorBlock();
  for (int kind = 0; kind < 3; ++kind) EXPECT_FALSE(block->GetExport(kind).GetBool(STranslatorExport::SepObj)) << kind;
  EXPECT_TRUE(block->GetExport(STranslatorExport::Gds).GetBool(STranslatorExport::Circles));
  EXPECT_EQ(block->GetExport(STranslatorExport::Gerber).GetInt(STranslatorExport::GbrUnits), 1);
}

// ---- INTERFACE

TEST_F(TranslatorInterfaceTest, ANetlistProjectReadsEveryInterfaceLineIntoFields) {
  EXPECT_EQ(RoundTrip(Netlist(kInterface)), Expected("interface.vel"));
  SProject project;
  ASSERT_TRUE(ReadText(project, Netlist(kInterface)));
  SInterfaceBlock* block = project.GetInterfaceBlock();
  EXPECT_FALSE(block->IsVerbatim());
  ASSERT_EQ(block->itsMetals.entries(), 2u);
  EXPECT_EQ(static_cast<SIBMetal*>(block->itsMetals.at(0))->itsColour, SString("#FF8000"));
  EXPECT_EQ(static_cast<SIBMetal*>(block->itsMetals.at(1))->itsColour, SString("#000000"));
  EXPECT_DOUBLE_EQ(block->itsCadence.margins[3], 4.0);
  EXPECT_EQ(block->itsShieldNames, QStringList({"shield1", "shield two"}));
  ASSERT_EQ(block->itsAwr64Meshes.entries(), 1u);
  const SIBAWR64MeshOption* mesh = static_cast<SIBAWR64MeshOption*>(block->itsAwr64Meshes.at(0));
  EXPECT_EQ(mesh->itsDensity, SIBAWR64MeshOption::Low);
  EXPECT_EQ(mesh->itsRange[1], 10);
}

TEST_F(TranslatorInterfaceTest, InterfaceLinesAreWrittenFromTheFormatThatKnowsThem) {
  SProject project;
  ASSERT_TRUE(ReadText(project, Netlist(kInterface)));
  const struct {
    int format;
    const char* present;
    const char* absent;
  } cases[] = {
      {3, nullptr, "MESHDFAWR"},
      {4, "LAYFPAWR 2 0 0 \"\" 1\n", "CDSDATE"},
      {5, "CDSMARGINS 1 2 3 4\n", "CDSEXTRAMARGINS"},
      {7, "ADSEXTRAMARGINS 1 1 1 1\n", "CDSFASTSOLVER"},
      {16, "CDSFASTSOLVERMESHOPTIONS MESHSIZE 2 um MESHMULTIPILER 1.5 EDGEMESH 0.1 ARCSEGMENT 16\n", "CDSSHIELD"},
      {17, "NUMBEROFPOINTS 101 NUMBEROFADAPTIVE 3 CONVERGENCETOLERANCE 0.01\n", "CDSSHIELD"},
      {18, "CDSSHIELD \"shield two\"\n", "CDSCAPMETAL"},
      {19, "WRITEMERGEFILE No ISAMOMCAP Yes USELINEVIAS No\n", "AWR64SIMPROGTYPE"},
      {20, "AWR64SIMPROGTYPE Remote\n", "LAYERMAP"},
  };
  for (const auto& c : cases) {
    SProjectFormat::SetWriteFormat(c.format);
    const std::string body = Body(WriteText(project), "INTERFACE");
    if (c.present) {
      EXPECT_NE(body.find(c.present), std::string::npos) << c.format << "\n" << body;
    }
    EXPECT_EQ(body.find(c.absent), std::string::npos) << c.format << "\n" << body;
  }
}

TEST_F(TranslatorInterfaceTest, GeometryProjectsGetTheirInterfaceLinesBackWordForWord) {
  const std::string body = "MESHDFAWR   mesh1 1 2\nWHATEVER the host tool wrote \"quoted\"\nEND\nAWR64PORT bad\n";
  const std::string text = std::string("FTYP VELPROJ 17\nVER 17.52\nGEO\n") + kTwoLevelStack +
                           "NUM 0\nEND GEO\nINTERFACE\n" + body + "END INTERFACE\n";
  // The full read set and the translator's.
  for (int type : {0, 5}) {
    const std::string once = RoundTrip(text, SProjectFormat::kCurrent, type);
    EXPECT_EQ(Body(once, "INTERFACE"), body) << type;
  }
}

TEST_F(TranslatorInterfaceTest, AnInterfaceLineWithAnUnknownWordIsReportedWithItsLine) {
  const char* const lines[] = {"CDSFASTSOLVEROPTIONS MULTITHREAD yes", "LAYERMAP WIRE M1 metal1 31", "CDSORIGIN 1",
                               "NOSUCHLINE 3", "METFPAWR top 3 orange", "AWR64MESHI 1 MD_Low MDec_High Y N Y"};
  for (const char* line : lines) {
    const std::string text = Netlist(std::string("INTERFACE\nCDSDATE today\n") + line + "\nEND INTERFACE\n");
    EXPECT_EQ(Failure(text), (std::vector<std::pair<int, int>>{{7284, 5}})) << line;
  }
  // Inside the section of the host tool's project.
  const char* const section[] = {"AWR64MESHI 1 MD_Huge MDec_High Y N Y", "AWR64PORT 1 \"P1\" \"n\" 1 Left 4D Wave 0 Y N",
                                 "AWR64LAYER \"L1\" dielectric NoTrace 10 1 maybe", "AWR64MATL Cu cu MT_Gold 1",
                                 "AWR64OPTION Name=Mesh", "LAYFPAWR 1 2 3"};
  for (const char* line : section) {
    const std::string text = Netlist(std::string("INTERFACE\nAWR64PROJECT p 1\nBEGIN\n") + line + "\nEND\nEND INTERFACE\n");
    EXPECT_EQ(Failure(text), (std::vector<std::pair<int, int>>{{7284, 6}})) << line;
  }
  // A file newer than the program only warns, and the line is passed over.
  SProject project;
  ASSERT_TRUE(ReadText(project, "FTYP VELORAPRJ 99\nINTERFACE\nNOSUCHLINE 3\nCDSSHIELD s\nEND INTERFACE\n"));
  EXPECT_TRUE(project.GetErrors().Contains(7283));
  EXPECT_EQ(project.GetInterfaceBlock()->itsShieldNames, QStringList({"s"}));
}

// ---- FILEOUT

TEST_F(TranslatorInterfaceTest, EveryOutputFileKindComesBackAsItsLine) {
  EXPECT_EQ(RoundTrip(Netlist(kFileOut)), Expected("fileout.vel"));
  SProject project;
  ASSERT_TRUE(ReadText(project, Netlist(kFileOut)));
  SFileOutputBlock* block = project.GetFileOutputBlock();
  EXPECT_EQ(block->GetFolder(), Path("test_results"));
  std::vector<int> kinds;
  for (size_t i = 0; i < block->Count(); ++i) kinds.push_back(block->Get(i)->GetKind());
  // TOUCH2 isn't taken for TOUCH, nor TSPICE for TS.
  EXPECT_EQ(kinds, (std::vector<int>{0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 11, 11, 11, 12, 12, 13, 14}));
  // Kinds older formats don't know are left out.
  const struct {
    int format;
    std::vector<const char*> absent;
  } cases[] = {{3, {"\nMDIF", "EBMDIF", "CADENCE", "BBEXTRACT"}}, {4, {"CADENCE", "BBEXTRACT"}}};
  for (const auto& c : cases) {
    SProjectFormat::SetWriteFormat(c.format);
    const std::string body = Body(WriteText(project), "FILEOUT");
    for (const char* word : c.absent) EXPECT_EQ(body.find(word), std::string::npos) << c.format << " " << word;
    EXPECT_NE(body.find("INDMODEL"), std::string::npos);
  }
}

TEST_F(TranslatorInterfaceTest, TheFolderIsWrittenAgainstTheProjectsName) {
  const struct {
    std::string read;
    const char* written;
  } cases[] = {
      {"$BASENAME_output", nullptr},
      {"", nullptr},
      {"test_output", nullptr},
      // Only a folder named as the project, or as its default, is written with the variable.
      {"$BASENAME_results", "test_results"},
      {"results", "results"},
      {"sub/$BASENAME", "sub/$BASENAME"},
      {"sub/test_output", "sub/$BASENAME_output"},
      {"../elsewhere/$BASENAME", "../elsewhere/test"},
      {"\"with blank\"", "\"with blank\""},
      {Path("absolute").data(), "absolute"},
  };
  for (const auto& c : cases) {
    const std::string body =
        Body(RoundTrip(Netlist("FILEOUT\nFOLDER " + c.read + "\nTS D Y a.s2p\nEND FILEOUT\n")), "FILEOUT");
    const std::string expected = c.written ? std::string("FOLDER ") + c.written + "\nTS D Y a.s2p\n" : "TS D Y a.s2p\n";
    EXPECT_EQ(body, expected) << c.read;
  }
}

TEST_F(TranslatorInterfaceTest, AFolderNamedAfterTheProjectFollowsANewName) {
  SProject project;
  ASSERT_TRUE(ReadText(project, Netlist("FILEOUT\nFOLDER sub/$BASENAME\nEND FILEOUT\n")));
  EXPECT_EQ(project.GetFileOutputBlock()->GetFolder(), Path("sub/test"));
  project.SetFileName(Path("other.vel"));
  EXPECT_EQ(project.GetFileOutputBlock()->GetFolder(), Path("sub/other"));
  EXPECT_NE(WriteText(project).find("FOLDER sub/$BASENAME\n"), std::string::npos);
  // Another folder stays where it is.
  SProject another;
  ASSERT_TRUE(ReadText(another, Netlist("FILEOUT\nFOLDER $BASENAME_results\nEND FILEOUT\n"), "third.vel"));
  another.SetFileName(Path("fourth.vel"));
  EXPECT_EQ(another.GetFileOutputBlock()->GetFolder(), Path("third_results"));
}

TEST_F(TranslatorInterfaceTest, AnUnreadableOutputFileIsReportedWithItsLine) {
  SProject project;
  EXPECT_FALSE(ReadText(project, Netlist("FILEOUT\nTS D Y a.s2p\nTOUCH2\nEND FILEOUT\n")));
  ASSERT_EQ(project.GetErrors().Count(), 1u);
  const SProjectErrorEntry* entry = project.GetErrors().Entry(0);
  EXPECT_EQ(entry->itsMessageId, 7132u);
  EXPECT_EQ(entry->itsLine, 5);
  EXPECT_NE(entry->itsText.qstring().indexOf("TOUCH2"), -1) << entry->itsText.data();
  // A word in the wrong case is no output file.
  EXPECT_EQ(Failure(Netlist("FILEOUT\nts D Y a.s2p\nEND FILEOUT\n")), (std::vector<std::pair<int, int>>{{7284, 4}}));
}

TEST_F(TranslatorInterfaceTest, OutputFilesOfTheOldestFilesMayFollowABlockWord) {
  const std::string text = "FTYP VELORAPRJ 0\nFILEOUT TS D Y a.s2p\nEND TOUCH D Y b.tch\nEND FILEOUT\n";
  SProject project;
  ASSERT_TRUE(ReadText(project, text)) << project.GetErrors().ErrorText().data();
  EXPECT_EQ(Body(WriteText(project), "FILEOUT"), "TS D Y a.s2p\nTOUCH D Y b.tch\n");
}

TEST_F(TranslatorInterfaceTest, RepairedVariableNamesFollowIntoTheOutputFiles) {
  const std::string text = std::string("FTYP VELPROJ 17\nDIM\nLNG UM\nEND DIM\nGEO\n") + kTwoLevelStack +
                           "VALVAR freq LNG 1 \"\"\nVALVAR W LNG 2 \"\"\nNUM 0\nEND GEO\n"
                           "FILEOUT\nTS D Y $BASENAME_${freq}_$W.s2p NAME $freq\nEND FILEOUT\n";
  SProject project;
  ASSERT_TRUE(ReadText(project, text)) << project.GetErrors().ErrorText().data();
  EXPECT_EQ(Body(WriteText(project), "FILEOUT"), "TS D Y $BASENAME_${_freq}_$W.s2p NAME $_freq\n");
  EXPECT_EQ(project.GetFileOutputBlock()->GetVariableNames(), QStringList({"_freq", "W"}));
}

}  // namespace
