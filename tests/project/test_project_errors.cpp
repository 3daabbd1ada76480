#include "ProjectTestSupport.h"

#include "SCircuitBlock.h"
#include "SControlBlock.h"
#include "SDimensionBlock.h"
#include "SInitializationFile.h"
#include "SProjectErrorManager.h"
#include "SSubdivisionBlock.h"

#include <QTextStream>
#include <cstdlib>

namespace {

struct Expected {
  int message;
  int severity;
  int line;
};

void ExpectEntry(const SProject& project, size_t index, Expected expected) {
  const SProjectErrorEntry* entry = project.GetErrors().Entry(index);
  ASSERT_NE(entry, nullptr) << "no entry " << index;
  EXPECT_EQ(static_cast<int>(entry->itsMessageId), expected.message) << entry->itsText.data();
  EXPECT_EQ(entry->itsSeverity, expected.severity) << entry->itsText.data();
  EXPECT_EQ(entry->itsLine, expected.line) << entry->itsText.data();
}

}  // namespace

TEST_F(ProjectTest, FilesThatCannotBeReadAsProjects) {
  SProject missing(Path("missing.vel"));
  EXPECT_FALSE(missing.Read(0));
  ExpectEntry(missing, 0, {7041, 3, -1});

  WriteFile(Path("empty.vel"), "");
  SProject empty(Path("empty.vel"));
  EXPECT_FALSE(empty.Read(0));
  ExpectEntry(empty, 0, {7041, 3, -1});

  SProject noFtyp;
  EXPECT_FALSE(ReadText(noFtyp, "\n! only a comment\nHEADER\nEND HEADER\n"));
  ExpectEntry(noFtyp, 0, {7047, 3, 3});

  SProject wrongMagic;
  EXPECT_FALSE(ReadText(wrongMagic, "FTYP SIDATA 3\n"));
  ExpectEntry(wrongMagic, 0, {7047, 3, 1});

  // A backup file without FTYP reads; a missing number counts as 1, silently.
  SProject backup;
  EXPECT_TRUE(ReadText(backup, "CONTROL\nSIMPLE\nEND CONTROL\n", "test.bck"));
  SProject noNumber;
  EXPECT_TRUE(ReadText(noNumber, "FTYP VELPROJ\n"));
  EXPECT_EQ(noNumber.GetFileVersion(), 1);
  EXPECT_EQ(noNumber.GetErrors().Count(), 0u);

  SProject result;
  EXPECT_FALSE(ReadText(result, "FTYP VELPROJ 17\n", "test.s2p"));
  ExpectEntry(result, 0, {7144, 3, -1});
  EXPECT_TRUE(Contains(result.GetErrors().Entry(0)->itsText.data(), "s2p"));
  SProject unknown;
  EXPECT_FALSE(ReadText(unknown, "FTYP VELPROJ 17\n", "test.xyz"));
  ExpectEntry(unknown, 0, {7145, 3, -1});

  SProject odd;
  EXPECT_TRUE(ReadText(odd, "FTYP VELPROJ 7\n"));
  ExpectEntry(odd, 0, {7361, 1, 1});
}

TEST_F(ProjectTest, UnknownKeywordsAreJudgedByTheFileGeneration) {
  const std::string body = "HEADER\nDAT 01/01/2020 00:00:00\nCOLOR red\nEND HEADER\nCONTROL\nSIMPLE\nEND CONTROL\n";
  // Our own generation: the read stops at the first failing block.
  SProject own;
  EXPECT_FALSE(ReadText(own, "FTYP VELPROJ 17\nVER 17.52\n" + body));
  ExpectEntry(own, 0, {7284, 3, 5});
  EXPECT_FALSE(own.GetControlBlock()->IsPresent());
  EXPECT_FALSE(own.IsLoaded());

  // A newer file: reported, passed over, and the read goes on.
  WriteFile(Path("newer.vel"), "FTYP VELPROJ 99\n" + body);
  SProject newer(Path("newer.vel"));
  newer.SetProjectType(0);
  EXPECT_TRUE(newer.Read(0));
  ExpectEntry(newer, 0, {7049, 1, -1});
  ExpectEntry(newer, 1, {7283, 1, 4});
  EXPECT_EQ(newer.GetControlBlock()->itsAnalysisType, SControlBlock::Frequency);

  {
    SettingsScope settings(Path("velora.ini"), "[Velora]\nStopOnInVersionUnknowns=false\nStopOnPostVersionUnknowns=true\n");
    SProject tolerated;
    EXPECT_TRUE(ReadText(tolerated, "FTYP VELPROJ 17\n" + body));
    ExpectEntry(tolerated, 0, {7283, 1, 4});
    SProject stopped;
    EXPECT_FALSE(ReadText(stopped, "FTYP VELPROJ 99\n" + body));
    ExpectEntry(stopped, 0, {7284, 3, 4});
  }
}

TEST_F(ProjectTest, BlockFrameErrors) {
  SProject wrongEnd;
  EXPECT_FALSE(ReadText(wrongEnd, "FTYP VELPROJ 17\nHEADER\nEND DIM\nCONTROL\nEND CONTROL\n"));
  ExpectEntry(wrongEnd, 0, {7142, 3, 3});
  EXPECT_TRUE(Contains(wrongEnd.GetErrors().Entry(0)->itsText.data(), "DIM"));

  // A bare END closes any block; an END of a line of text is no block end.
  SProject bare;
  EXPECT_TRUE(ReadText(bare, "FTYP VELPROJ 17\nHEADER\nEND\nCONTROL\nSTD\nEND\n"));
  EXPECT_EQ(bare.GetControlBlock()->itsAnalysisType, SControlBlock::Combination);

  // Called on the wrong line, and at the end of the file.
  SProject project;
  QString text = "DIM\n";
  QTextStream stream(&text);
  SCommentedFile file(&stream);
  file.NextLine();
  EXPECT_FALSE(project.GetHeaderBlock()->Read(file, project.GetErrors()));
  ExpectEntry(project, 0, {7141, 3, 1});
  file.SkipLine();
  EXPECT_FALSE(project.GetHeaderBlock()->Read(file, project.GetErrors()));
  ExpectEntry(project, 1, {7143, 3, 1});
}

TEST_F(ProjectTest, ValueErrorsCarryTheirLineNumbers) {
  SProject speed;
  EXPECT_FALSE(ReadText(speed, "FTYP VELPROJ 17\n! comment line\nCONTROL\nSPEED &\nfast\nEND CONTROL\n"));
  ExpectEntry(speed, 0, {7132, 3, 5});
  EXPECT_TRUE(Contains(speed.GetErrors().Entry(0)->itsText.data(), "SPEED fast"));

  SProject consist;
  EXPECT_FALSE(ReadText(consist, "FTYP VELPROJ 17\nCONTROL\nMCONSIST MAYBE\nEND CONTROL\n"));
  ExpectEntry(consist, 0, {7132, 3, 3});

  SProject sweep;
  EXPECT_FALSE(ReadText(sweep, "FTYP VELPROJ 17\nFREQ\nSWEEP 1 x 2\nEND FREQ\n"));
  ExpectEntry(sweep, 0, {7132, 3, 3});

  SProject component;
  EXPECT_FALSE(ReadText(component, "FTYP VELPROJ 17\nSMDFILES\n1 \"a.s2p\"\none \"b.s2p\"\nEND SMDFILES\n"));
  ExpectEntry(component, 0, {7316, 3, 4});

  SProject layers;
  EXPECT_FALSE(ReadText(layers, "FTYP VELPROJ 17\n3DOPTIONS\nALL 2000000000 1\nEND 3DOPTIONS\n"));
  ExpectEntry(layers, 0, {7132, 3, 3});
}

TEST_F(ProjectTest, UnitProblemsAreWarnings) {
  SProject project;
  ASSERT_TRUE(ReadText(project, "FTYP VELPROJ 17\nDIM\nLNG UM\nFREQ GIGA\nWEIGHT KG\nCAP FF\nEND DIM\nCONTROL\nEND CONTROL\n"));
  ExpectEntry(project, 0, {7139, 1, 4});
  ExpectEntry(project, 1, {7138, 1, 5});
  SDimensionBlock* units = project.GetDimensionBlock();
  EXPECT_EQ(units->GetUnitName(SDimensionBlock::Length), SString("UM"));
  EXPECT_EQ(units->GetUnitName(SDimensionBlock::Frequency), SString("GHZ"));
  // The rest of the block after an unknown keyword is passed over.
  EXPECT_EQ(units->GetUnitName(SDimensionBlock::Capacitance), SString("PF"));
  EXPECT_TRUE(project.GetControlBlock()->IsPresent());

  // The oldest files end DIM without END, at the next block.
  SProject oldest;
  ASSERT_TRUE(ReadText(oldest, "FTYP VELPROJ 0\nDIM\nLNG MM\nCONTROL\nSTD\nEND CONTROL\n"));
  EXPECT_EQ(oldest.GetErrors().Count(), 0u) << oldest.GetErrors().ErrorText().data();
  EXPECT_EQ(oldest.GetDimensionBlock()->GetUnitName(SDimensionBlock::Length), SString("MM"));
  EXPECT_EQ(oldest.GetControlBlock()->itsAnalysisType, SControlBlock::Combination);
}

TEST_F(ProjectTest, SkippedContentAndTextBetweenBlocks) {
  const std::string text = "FTYP VELPROJ 17\nnoise before\nSUBDIV\nXDIR 1\nEND SUBDIV\nmore noise\n"
                           "CONTROL\nSTD\nEND CONTROL\nCKT\nNET x\nEND CKT\n";
  SProject project;
  ASSERT_TRUE(ReadText(project, text, "test.vel", 5));
  EXPECT_EQ(project.GetErrors().Count(), 0u);
  EXPECT_FALSE(project.GetSubdivisionBlock()->IsPresent());
  EXPECT_FALSE(project.GetCircuitBlock()->IsPresent());
  EXPECT_EQ(project.GetControlBlock()->itsAnalysisType, SControlBlock::Combination);
  const std::string written = WriteText(project);
  EXPECT_FALSE(Contains(written, "SUBDIV"));
  EXPECT_FALSE(Contains(written, "CKT"));
  EXPECT_FALSE(Contains(written, "noise"));
  // Missing blocks take their defaults after a read.
  EXPECT_TRUE(project.GetHeaderBlock()->IsPresent());
}

TEST_F(ProjectTest, ValidateNeedsControlAndAGeometryOrNetwork) {
  SProject nothing;
  ASSERT_TRUE(ReadText(nothing, "FTYP VELPROJ 17\nDIM\nEND DIM\n"));
  nothing.GetControlBlock()->SetPresent(false);
  EXPECT_FALSE(nothing.Validate());
  ExpectEntry(nothing, 0, {7211, 3, -1});
  ExpectEntry(nothing, 1, {7212, 3, -1});

  SProject fine;
  ASSERT_TRUE(ReadText(fine, "FTYP VELPROJ 17\nCONTROL\nEND CONTROL\nGEO\nBOX 1 10 10 20 20 20 0\n 1 1 1 0 0 0 0\n 1 1 1 0 0 0 0\nNUM 0\nEND GEO\n"));
  EXPECT_TRUE(fine.Validate());

  SProject missingPart;
  ASSERT_TRUE(ReadText(missingPart, "FTYP VELPROJ 17\nCONTROL\nEND CONTROL\nGEO\nBOX 1 10 10 20 20 20 0\n 1 1 1 0 0 0 0\n 1 1 1 0 0 0 0\nNUM 0\nEND GEO\nSMDFILES\n1 nowhere.s2p\nEND SMDFILES\n"));
  EXPECT_FALSE(missingPart.Validate());
  ExpectEntry(missingPart, 0, {7213, 3, -1});
}

// Found when a user was told "Line 6: ..." of a project read for an update and could not
// tell which file was meant.
TEST_F(ProjectTest, ReadErrorsNameTheFileAndTheLine) {
  const std::string text =
      "FTYP VELPROJ 17\nGEO\nBOX 1 10 10 20 20 20 0\n 1 1 1 0 0 0 0\n 1 1 1 0 0 0 0\nBOGUS\nNUM 0\nEND GEO\n";
  const SString path = Path("broken.vel");
  WriteFile(path, text);
  // Read as a translation reads the project it updates: as a template, not bound to the file.
  SProject update;
  update.SetProjectType(SProject::SecondSolverProject);
  update.SetTemplateRead(true);
  update.SetFileName(path);
  EXPECT_FALSE(update.Read(0));
  EXPECT_TRUE(update.GetFileName().isEmpty());
  const std::string told = update.GetErrors().ErrorText().data();
  EXPECT_TRUE(Contains(told, "Filename: " + std::string(path.data()) + "\n")) << told;
  EXPECT_TRUE(Contains(told, std::string(path.data()) + ":6: Unknown keyword in the geometry block.\n")) << told;

  // Text in memory has no file to name.
  QString copy = QString::fromStdString(text);
  QTextStream stream(&copy);
  SCommentedFile file(&stream);
  file.NextLine();
  SProject memory;
  memory.SetProjectType(SProject::SecondSolverProject);
  EXPECT_FALSE(memory.ReadStream(file, 0));
  EXPECT_TRUE(Contains(memory.GetErrors().ErrorText().data(), "Line 6: Unknown keyword in the geometry block.\n"));
}

TEST_F(ProjectTest, ErrorManagerCollectsAndReports) {
  SProjectErrorManager errors;
  EXPECT_EQ(errors.ErrorText(), SString("No errors.\n"));
  errors.SetFileName(SFileName("a.vel"));
  errors.AddError(SProjectErrorManager::Warning, 4, 7139, "LNG", "XX");
  errors.AddErrorAtFront(SProjectErrorManager::Warning, -1, 7049, "Project");
  errors.AddPrefixedError(SProjectErrorManager::Error, 9, 7140, 7138, "ZZ");
  EXPECT_EQ(errors.GetSeverity(), 3);
  EXPECT_EQ(errors.ErrorText(),
            SString("Filename: a.vel\n"
                    "This Project file was written by a newer program; some content may be lost.\n"
                    "a.vel:4: Unknown unit LNG XX.\n"
                    "a.vel:9: Project\nUnknown dimension keyword ZZ.\n"));
  errors.ClearLines();
  EXPECT_EQ(errors.Entry(1)->itsLine, -1);
  errors.Report();
  EXPECT_EQ(errors.Count(), 0u);
  EXPECT_EQ(errors.GetSeverity(), 0);
}
