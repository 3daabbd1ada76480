#include "ProjectTestSupport.h"

#include "SCircuit.h"

#include "S3dOptionsBlock.h"
#include "SControlBlock.h"
#include "SDimensionBlock.h"
#include "SFrequencyBlock.h"
#include "SVariableSweep.h"
#include "SVariableSweepBlock.h"
#include "SGeometryBlock.h"
#include "SInfoBlock.h"
#include "SParameterBlock.h"
#include "SQsgBlock.h"
#include "SSMDBlock.h"
#include "SVariablePair.h"

namespace {

// Every keyword of the header, unit, parameter, control, QSG, 3D and component blocks, and
// the blocks whose own readers are still to come, kept as they stand.
const char* const kFullProject = R"(FTYP VELPROJ 17 ! Velora Project File
VER 17.52
HEADER
DAT 01/02/2020 10:11:12
BUILT_BY_CREATED "my tool" 3.1 01/02/2020 10:11:12
BUILT_BY_SAVED xgeom 16.54
MDATE 03/04/2021 05:06:07
HDATE 02/03/2020 04:05:06
EXF
ANN   three leading blanks stay
ANN second note
END HEADER
DIM
ANG RAD
CAP FF
CON S
CDVY SCM
FREQ MHZ
IND PH
LNG UM
RES KOH
RSVY OHMM
SRES MOSQ
END DIM
VAR
W = 10
"long name" = "W*2" false
VALVAR H LNG 5 "height"
END VAR
CONTROL
STD
OPTIONS -d1 Zfoo
PUSH
INHERIT
FORCERUN
SPEED 2
MCONSIST NO_REPLACE
SUBSPLAM Y 25
EDGECHECK Y 3 TECHLAY
CFMAX Y 12.5
CEPSY Y 3.2
RES_ABS N 0.01
RES_FREQS Y 1 2.5 3
CACHE_ABS 2
TARG_ABS 150
Q_ACC Y
DET_ABS_RES Y
FCAL 7.5
END CONTROL
GEO
TMET "Lossless" 0 SUP 0 0 0 0
BMET "Lossless" 0 SUP 0 0 0 0
BOX 1 160 160 32 32 20 0
      50 1 1 0 0 0 0 "Air"
      10 9.8 1 0 0 0 0 "Alumina"
NUM 1
0 5 -1 N 1 1 1 100 100 0 0 0 Y
10 10
20 10
20 20
10 20
10 10
END
END GEO
SUBDIV
LINE 1 10 V
END SUBDIV
OPT
MAX 100
VARS
END
END OPT
VARSWP
SWEEP 1 10 1
END VARSWP
FILEOUT
TS D Y $BASENAME.s2p
END FILEOUT
QSG
IMPORT YES
EXTRA_METAL NO
UNITS YES
ALIGN NO
REF YES
VIEW_RES NO
METALS YES
USED NO
END QSG
INTERFACE
LAYOUT on
END INTERFACE
TRANSLATOR
GDS one two
END TRANSLATOR
3DOPTIONS
GLOBAL 2.5
LAYERS
1
2
END
END 3DOPTIONS
SMDFILES
1 "parts/cap one.s2p"
2 "parts/ind.s2p"
END SMDFILES
)";

}  // namespace

TEST_F(ProjectTest, NewProjectWritesItsBlocksAndReadsBackTheSame) {
  SProject project;
  project.GetHeaderBlock()->SetDefaults();
  project.GetDimensionBlock()->SetDefaults();
  project.GetControlBlock()->SetDefaults();
  project.GetQsgBlock()->SetDefaults();
  project.GetGeometryBlock()->SetDefaults();
  const SProjectDate now = SProjectDate::FromSeconds(kClock);
  const std::string stamp = now.Text().data();
  const std::string expected = "FTYP VELPROJ 17 ! Velora Project File\n"
                               "VER 17.52\n"
                               "HEADER\n"
                               "DAT " + stamp + "\n"
                               "BUILT_BY_CREATED gds 17.52.1 " + stamp + "\n"
                               "BUILT_BY_SAVED gds 17.52.1\n"
                               "MDATE " + stamp + "\n"
                               "HDATE " + stamp + "\n"
                               "END HEADER\n"
                               "DIM\nANG DEG\nCAP PF\nCON /OH\nFREQ GHZ\nIND NH\nLNG MIL\nRES OH\nEND DIM\n"
                               "CONTROL\nABS\nOPTIONS \nSPEED 0\nSUBSPLAM N\nEDGECHECK N\nCFMAX B\nCEPSY N\n"
                               "RES_ABS N\nCACHE_ABS 1\nTARG_ABS 300\nQ_ACC N\nEND CONTROL\n"
                               "GEO\nTMET \"Lossless\" 0 SUP 0 0 0 0\nBMET \"Lossless\" 0 SUP 0 0 0 0\n"
                               "BOX 1 160 160 32 32 20 0\n      0 1 1 0 0 0 0 \"Unnamed\"\n"
                               "      0 1 1 0 0 0 0 \"Unnamed\"\nLORGN 0 160 U\nNUM 0\nEND GEO\n";
  const std::string written = WriteText(project);
  EXPECT_EQ(written, expected);
  // A QSG block made here isn't written; read from a file it is.
  EXPECT_TRUE(project.GetQsgBlock()->IsPresent());
  EXPECT_EQ(RoundTrip(written), expected);
}

TEST_F(ProjectTest, EveryKeywordSurvivesAReadAndTwoWrites) {
  const std::string once = RoundTrip(kFullProject);
  const std::string stamp = SProjectDate::FromSeconds(kClock).Text().data();
  // The header: the time of writing, the creator kept, the saving program replaced.
  EXPECT_TRUE(Contains(once, "HEADER\nDAT " + stamp + "\nBUILT_BY_CREATED \"my tool\" 3.1 01/02/2020 10:11:12\n"
                             "BUILT_BY_SAVED gds 17.52.1\nMDATE 03/04/2021 05:06:07\nHDATE 02/03/2020 04:05:06\n"
                             "EXF\nANN   three leading blanks stay\nANN second note\nEND HEADER\n"));
  EXPECT_TRUE(Contains(once, "DIM\nANG RAD\nCAP FF\nCON S\nCDVY SCM\nFREQ MHZ\nIND PH\nLNG UM\nRES KOH\nRSVY OHMM\n"
                             "SRES MOSQ\nEND DIM\n"));
  EXPECT_TRUE(Contains(once, "VAR\nW = 10\n\"long name\" = \"W*2\" false\nVALVAR H LNG 5 \"height\"\nEND VAR\n"));
  EXPECT_TRUE(Contains(once, "CONTROL\nSTD\nOPTIONS -d1 Zfoo\nPUSH\nINHERIT\nFORCERUN\nSPEED 2\n"
                             "MCONSIST NO_REPLACE\nSUBSPLAM Y 25\nEDGECHECK Y 3 TECHLAY\nCFMAX Y 12.5\nCEPSY Y 3.2\n"
                             "RES_ABS N 0.01\nRES_FREQS Y 1 2.5 3\nCACHE_ABS 2\nTARG_ABS 150\nQ_ACC Y\n"
                             "DET_ABS_RES Y\nFCAL 7.5\nEND CONTROL\n"));
  EXPECT_TRUE(Contains(once, "QSG\nIMPORT YES\nEXTRA_METAL NO\nUNITS YES\nALIGN NO\nREF YES\nVIEW_RES NO\n"
                             "METALS YES\nUSED NO\nEND QSG\n"));
  EXPECT_TRUE(Contains(once, "3DOPTIONS\nGLOBAL 2.5\nLAYERS\n1\n2\nEND\nEND 3DOPTIONS\n"));
  EXPECT_TRUE(Contains(once, "SMDFILES\n1 \"parts/cap one.s2p\"\n2 \"parts/ind.s2p\"\nEND SMDFILES\n"));
  EXPECT_TRUE(Contains(once, "END CONTROL\nGEO\nTMET \"Lossless\" 0 SUP 0 0 0 0\nBMET \"Lossless\" 0 SUP 0 0 0 0\n"
                             "BOX 1 160 160 32 32 20 0\n      50 1 1 0 0 0 0 \"Air\"\n"
                             "      10 9.8 1 0 0 0 0 \"Alumina\"\nLORGN 0 160 U\nNUM 1\n"));
  // Blocks still without their own reader come back line for line, in the write order.
  EXPECT_TRUE(Contains(once, "10 10\nEND\nEND GEO\nSUBDIV\nREFPLANE A 0\nLINE 1 10 V \nEND SUBDIV\n"
                             "OPT\nMAX 100\nEND OPT\nVARSWP\nENABLED Y\nFREQ Y AN SWEEP 1 10 1\n"
                             // A sweep set starts with the project's values, none in use.
                             "VAR W N UNDEF UNDEF UNDEF\nVAR \"long name\" N UNDEF UNDEF UNDEF\n"
                             "VAR H N UNDEF UNDEF UNDEF\nEND\nEND VARSWP\n"
                             "FILEOUT\nTS D Y $BASENAME.s2p\nEND FILEOUT\nQSG\n"));
  // A geometry project keeps its interface lines as they came; a translator line that is
  // no export record is passed over.
  EXPECT_TRUE(Contains(once, "END QSG\nINTERFACE\nLAYOUT on\nEND INTERFACE\nTRANSLATOR\nEND TRANSLATOR\n"
                             "3DOPTIONS\n"));
}

TEST_F(ProjectTest, ReadValuesLandInTheBlocks) {
  SProject project;
  ASSERT_TRUE(ReadText(project, kFullProject));
  EXPECT_TRUE(project.IsLoaded());
  EXPECT_EQ(project.GetFileVersion(), 17);
  EXPECT_EQ(project.GetVersionText(), SString("17.52"));
  SHeaderBlock* header = project.GetHeaderBlock();
  EXPECT_EQ(header->GetCreatedProgram(), SString("my tool"));
  EXPECT_EQ(header->GetSavedProgram(), SString("xgeom"));
  EXPECT_TRUE(header->IsFromExternal());
  EXPECT_EQ(header->GetAnnotations().value(0), QString("  three leading blanks stay"));
  SDimensionBlock* units = project.GetDimensionBlock();
  EXPECT_EQ(units->GetUnitName(SDimensionBlock::Length), SString("UM"));
  EXPECT_DOUBLE_EQ(units->GetFactor(SDimensionBlock::Frequency), 1e6);
  SControlBlock* control = project.GetControlBlock();
  EXPECT_EQ(control->itsAnalysisType, SControlBlock::Combination);
  EXPECT_EQ(control->itsEdgeLevels.GetValue(), 3);
  EXPECT_EQ(control->itsEdgeCheckType, 1);
  EXPECT_EQ(control->itsFMaxControl, SControlBlock::FMaxYes);
  EXPECT_EQ(control->itsResolutionMode, SControlBlock::ResolutionList);
  // The highest frequency is CFMAX in hertz.
  EXPECT_DOUBLE_EQ(project.GetHighestFrequency(), 12.5e6);
  EXPECT_EQ(project.GetParameterBlock()->GetSpecification().Find("long name")->Value().GetText(), SString("\"W*2\""));
  EXPECT_TRUE(project.GetQsgBlock()->Get(SQsgBlock::Import));
  EXPECT_FALSE(project.GetQsgBlock()->Get(SQsgBlock::Used));
  EXPECT_DOUBLE_EQ(project.Get3dOptionsBlock()->GetScale(1), 2.0);
  EXPECT_DOUBLE_EQ(project.Get3dOptionsBlock()->GetScale(7), 1.0);
  // Component files are absolute in memory.
  EXPECT_EQ(project.GetSMDBlock()->GetFile(1), Path("parts/cap one.s2p"));
  EXPECT_EQ(project.GetGeometryBlock()->GetCircuit()->CountPolygons(), 1);
}

TEST_F(ProjectTest, OlderFormsReadAndWriteInTheCurrentForm) {
  const char* const older = "FTYP VELPROJ 12 ! comment text is dropped\n"
                            "VER 14.52\n"
                            "HEADER\n"
                            "VER 9.0\n"
                            "DAT 01/02/2003 01:02:03 ! trailing comment\n"
                            "BUILT_BY_CREATED tool!x 1.0\n"
                            "BUILD_INFO whatever\n"
                            "END\n"
                            "DIM\n"
                            "FREQ GHZ\n"
                            "LNG MM\n"
                            "END\n"
                            "FREQ\n"
                            "FRE 1 5 &\n"
                            "   1\n"
                            "ABS 2 8\n"
                            "END FREQ\n"
                            "stray words between blocks\n"
                            "CONTROL\n"
                            "!< SIMPLE\n"
                            "OPTIONS Zhh2 -x\n"
                            "ENABLEQ\n"
                            "QUADFREQ 3\n"
                            "MCONSIST IGNORE\n"
                            "END\n";
  SProject project;
  ASSERT_TRUE(ReadText(project, older)) << project.GetErrors().ErrorText().data();
  EXPECT_EQ(project.GetFileVersion(), 12);
  EXPECT_EQ(project.GetHeaderBlock()->GetVersionText(), SString("9.0"));
  // The comment handling is off for the names of a built-by line.
  EXPECT_EQ(project.GetHeaderBlock()->GetCreatedProgram(), SString("tool!x"));
  ASSERT_NE(project.GetVariableSweepBlock()->Get(0), nullptr);
  EXPECT_EQ(project.GetVariableSweepBlock()->Get(0)->GetEntries().entries(), 2u);
  SControlBlock* control = project.GetControlBlock();
  EXPECT_EQ(control->itsAnalysisType, SControlBlock::Frequency);
  // The legacy rules drop the old speed option and quad, each with a warning.
  EXPECT_FALSE(control->HasOption("Zhh2"));
  EXPECT_FALSE(control->itsQuadEnabled);
  EXPECT_TRUE(project.GetErrors().Contains(7255)) << project.GetErrors().ErrorText().data();
  EXPECT_TRUE(project.GetErrors().Contains(7250));

  const std::string current = RoundTrip(older);
  EXPECT_TRUE(Contains(current, "BUILT_BY_CREATED tool!x 1.0\n"));
  EXPECT_FALSE(Contains(current, "FREQ\n"));
  EXPECT_TRUE(Contains(current, "CONTROL\nSIMPLE\nOPTIONS -x\nSPEED 0\n"));

  // The same project in the format before the current one keeps its frequencies.
  const std::string previous = RoundTrip(older, 20);
  EXPECT_TRUE(Contains(previous, "FTYP VELORAPRJ 16 ! Velora Netlist Project File\nVER 16.54\n"));
  EXPECT_TRUE(Contains(previous, "FREQ\nSWEEP 1 5 1\nABS_ENTRY 2 8\nEND FREQ\n"));
}

TEST_F(ProjectTest, FormatTableGovernsTheFirstLinesAndFormatConditions) {
  SProject project;
  project.GetHeaderBlock()->SetDefaults();
  project.GetControlBlock()->SetDefaults();
  project.GetControlBlock()->itsEdgeCheckType = 1;
  project.Get3dOptionsBlock()->SetDefaults();
  struct {
    int index;
    const char* start;
  } rows[] = {{2, "FTYP VELORAPRJ 0 ! Velora Netlist Project File\nVER 7.0a\n"},
              {11, "FTYP VELORAPRJ 8 ! Velora Netlist Project File\nVER 13.0\n"},
              {16, "FTYP VELORAPRJ 17 ! Velora Netlist Project File\nVER 17.52\n"},
              {20, "FTYP VELORAPRJ 16 ! Velora Netlist Project File\nVER 16.54\n"}};
  for (const auto& row : rows) {
    SProjectFormat::SetWriteFormat(row.index);
    const std::string text = WriteText(project);
    EXPECT_EQ(text.rfind(row.start, 0), 0u) << row.index << "\n" << text;
  }
  SProjectFormat::SetWriteFormat(2);
  std::string text = WriteText(project);
  // Below format 3 adaptive becomes a frequency sweep and the ABS lines go.
  EXPECT_TRUE(Contains(text, "CONTROL\nSIMPLE\n"));
  EXPECT_FALSE(Contains(text, "RES_ABS"));
  EXPECT_FALSE(Contains(text, "CACHE_ABS"));
  EXPECT_FALSE(Contains(text, "3DOPTIONS"));
  EXPECT_TRUE(Contains(text, "CFMAX N\n"));
  SProjectFormat::SetWriteFormat(18);
  text = WriteText(project);
  EXPECT_TRUE(Contains(text, "EDGECHECK N\n"));
  EXPECT_TRUE(Contains(text, "3DOPTIONS\nGLOBAL 1\nEND 3DOPTIONS\n"));
  SProjectFormat::SetWriteFormat(19);
  EXPECT_TRUE(Contains(WriteText(project), "EDGECHECK N 1 TECHLAY\n"));
  // Below format 2 only the geometry body stands in the file.
  SProjectFormat::SetWriteFormat(1);
  project.GetGeometryBlock()->SetDefaults();
  const std::string single = WriteText(project);
  EXPECT_EQ(single.substr(0, 9), "VER 6.0c\n");
  EXPECT_TRUE(Contains(single, "\nBOX 1 160 160 32 32 20 0\n"));
  EXPECT_FALSE(Contains(single, "GEO"));
}

TEST_F(ProjectTest, SmallBlocksWriteTheirShortForms) {
  SProject project;
  S3dOptionsBlock* options = project.Get3dOptionsBlock();
  options->SetDefaults();
  options->SetScales({1.5});
  SProjectStream out;
  options->Write(out);
  EXPECT_EQ(out.Text(), "3DOPTIONS\nGLOBAL 1\nALL 1 1.5\nEND 3DOPTIONS\n");

  // A QSG value counts as yes only when it is exactly "YES".
  const std::string qsg = "FTYP VELPROJ 17\nQSG\nIMPORT yes\nIMPORTANT YES\nUSED NO\nEND QSG\n";
  SProject second;
  ASSERT_TRUE(ReadText(second, qsg));
  EXPECT_TRUE(second.GetQsgBlock()->Get(SQsgBlock::Import));
  SProject third;
  ASSERT_TRUE(ReadText(third, "FTYP VELPROJ 17\nQSG\nIMPORT yes\nEND QSG\n"));
  EXPECT_FALSE(third.GetQsgBlock()->Get(SQsgBlock::Import));

  // Parameters below format 9: every entry as name = value, without a flag.
  SProject fourth;
  ASSERT_TRUE(ReadText(fourth, "FTYP VELORAPRJ 17\nVAR\nA = 1 false\nVALVAR B LNG 2 \"\"\nEND VAR\n"));
  SProjectFormat::SetWriteFormat(8);
  EXPECT_TRUE(Contains(WriteText(fourth), "VAR\nA = 1\nB = 2\nEND VAR\n"));
}

TEST_F(ProjectTest, SavedFileReadsBackFromDiskWithItsDataDirectory) {
  const SString path = Path("chip.vel");
  SProject project;
  ASSERT_TRUE(ReadText(project, kFullProject));
  project.SetFileName(path, true);
  ASSERT_TRUE(project.Save()) << project.GetErrors().ErrorText().data();
  EXPECT_TRUE(QFileInfo(Path("veldata/chip").qstring()).isDir());
  EXPECT_TRUE(QDir(itsDir.path()).entryList(QStringList{"*.saving*"}).isEmpty());

  SProject reread(path);
  reread.SetProjectType(0);
  ASSERT_TRUE(reread.Read(0)) << reread.GetErrors().ErrorText().data();
  EXPECT_EQ(WriteText(reread), FileText(path));
  SString date;
  EXPECT_TRUE(reread.GetProjectDate(date));
  EXPECT_EQ(date, SProjectDate::FromSeconds(kClock).Text());
  EXPECT_EQ(reread.GetProjectType(), SProject::GeometryProject);

  // As a template, the file serves once and is never the place of saving.
  SProject model(path);
  model.SetTemplateRead(true);
  model.SetProjectType(5);
  ASSERT_TRUE(model.Read(1));
  EXPECT_TRUE(model.GetFileName().isEmpty());
  EXPECT_FALSE(model.Save());
  EXPECT_TRUE(model.GetErrors().Contains(7048));
}

TEST_F(ProjectTest, RunSummaryFileWritesOnlyWhatItHas) {
  const SString path = Path("info.log");
  WriteFile(Path("runnum"), "3");
  SInfoBlock info;
  info.itsDate = "01/02/2024 10:00:00";
  info.itsRun.Set(4);
  info.itsMemory[0].Set(12.5);
  info.itsMemory[1].Set(30);
  info.itsSubsections[0].Set(800);
  info.itsIterations.Set(2);
  info.itsNames = QStringList{"a", "b"};
  ASSERT_TRUE(info.WriteFile(path));
  const std::string text = "FTYPE RESULTSINFO\nDATE 01/02/2024 10:00:00\nRUN 4\nMEM 12.5 30\nSUBS 800\nITER 2\n"
                           "NAMES a b \nEND\n";
  EXPECT_EQ(FileText(path), text);
  EXPECT_FALSE(QFileInfo::exists(Path("runnum").qstring()));

  SInfoBlock back;
  SProjectErrorManager errors;
  ASSERT_TRUE(back.ReadFile(path, errors)) << errors.ErrorText().data();
  EXPECT_EQ(back.itsRun.GetValue(), 4);
  EXPECT_FALSE(back.itsSubsections[1].IsValid());
  EXPECT_FALSE(back.itsFMax.IsValid());
  ASSERT_TRUE(back.WriteFile(path));
  EXPECT_EQ(FileText(path), text);

  WriteFile(path, "FTYPE RESULTSINFO\nRUN many\nEND\n");
  EXPECT_FALSE(back.ReadFile(path, errors));
  EXPECT_TRUE(errors.Contains(7132));
}
