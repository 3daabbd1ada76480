#include "ProjectTestSupport.h"

#include <QDir>

namespace {
const char* const kHeaderOnly = "FTYP VELPROJ 17\nHEADER\nEND HEADER\n";

class SolverFileTest : public ProjectTest {
protected:
  // The solver kind of a project read beside `solverFile`; null leaves the file out.
  int KindBeside(const char* solverFile) {
    const SString data = Path("veldata/test");
    EXPECT_TRUE(QDir().mkpath(data.qstring()));
    QFile::remove((data + "/EmSolver.xml").qstring());
    if (solverFile) WriteFile(data + "/EmSolver.xml", solverFile);
    SProject project;
    EXPECT_TRUE(ReadText(project, kHeaderOnly));
    return project.GetHeaderBlock()->GetSolverKind();
  }
};
}  // namespace

TEST_F(SolverFileTest, SecondSolverWritesTheFileAndAReadFindsIt) {
  SProject project;
  ASSERT_TRUE(ReadText(project, kHeaderOnly));
  SHeaderBlock* header = project.GetHeaderBlock();
  const SString name = header->SolverFileName();
  EXPECT_EQ(name, Path("veldata/test/EmSolver.xml"));

  // Without the data directory the file can't be written, and nothing else happens.
  header->SetSolverKind(1);
  EXPECT_FALSE(QFile::exists(name.qstring()));

  ASSERT_TRUE(QDir().mkpath(Path("veldata/test").qstring()));
  header->SetSolverKind(1);
  EXPECT_EQ(FileText(name), "<?xml version=\"1.0\" standalone=\"yes\"?>\n<EmSolver>\n<Iris></Iris>\n</EmSolver>\n");
  EXPECT_EQ(QDir(Path("veldata/test").qstring()).entryList(QDir::Files), QStringList{"EmSolver.xml"});

  SProject again;
  ASSERT_TRUE(ReadText(again, kHeaderOnly));
  EXPECT_EQ(again.GetHeaderBlock()->GetSolverKind(), 1);

  again.GetHeaderBlock()->SetSolverKind(0);
  EXPECT_FALSE(QFile::exists(name.qstring()));
  SProject third;
  ASSERT_TRUE(ReadText(third, kHeaderOnly));
  EXPECT_EQ(third.GetHeaderBlock()->GetSolverKind(), 0);
}

TEST_F(SolverFileTest, KindFollowsWhatTheFileHolds) {
  const struct {
    const char* file;
    int kind;
  } rows[] = {
      {nullptr, 0},
      // As the stream writer of earlier versions left it.
      {"<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<EmSolver>\n    <Iris/>\n</EmSolver>\n", 1},
      {"<emsolver><iris x=\"1\"/></emsolver>\n", 1},
      {"<EmSolver>\n  <Iris>\n", 1},
      {"<EmSolver>\n  <Other/>\n</EmSolver>\n", 0},
      {"<Other>\n  <Iris/>\n</Other>\n", 0},
      {"", 0},
      {"not xml at all\n", 0},
  };
  for (const auto& row : rows) EXPECT_EQ(KindBeside(row.file), row.kind) << (row.file ? row.file : "no file");

  // Nesting too deep to read counts as no solver file.
  std::string deep = "<EmSolver>";
  for (int i = 0; i < 300; ++i) deep += "<x>";
  EXPECT_EQ(KindBeside((deep + "<Iris/>\n").c_str()), 0);
}
