#include "ProjectTestSupport.h"

#include "SCircuit.h"
#include "SControlBlock.h"
#include "SDimensionBlock.h"
#include "SGeometryBlock.h"
#include "SLevel.h"
#include "SMetalPolygon.h"
#include "SProjectOperations.h"
#include "SSafeSave.h"

#include <QDir>
#include <QFileInfo>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>
#include <sys/stat.h>
#include <unistd.h>

namespace {

const char* const kOldProject = "FTYP VELPROJ 17 ! Velora Project File\nVER 17.52\nCONTROL\nSTD\nEND CONTROL\n";

// A disk that fills up after the first half of the text.
class SFullDeviceSave : public SSafeSave {
public:
  using SSafeSave::SSafeSave;
  size_t itsWritten = 0;

protected:
  ssize_t WriteSome(int fd, const char* data, size_t size) override {
    if (itsWritten > 0) {
      errno = ENOSPC;
      return -1;
    }
    const ssize_t n = SSafeSave::WriteSome(fd, data, size / 2 + 1);
    if (n > 0) itsWritten += static_cast<size_t>(n);
    return n;
  }
};

}  // namespace

// What the temporary files of saves left beside the target.
QStringList Leftovers(const QString& directory) {
  return QDir(directory).entryList(QStringList{"*.saving*"}, QDir::AllEntries | QDir::NoDotAndDotDot | QDir::System);
}

TEST_F(ProjectTest, SavingReplacesTheFileOnlyWhenTheNewTextIsComplete) {
  const SString path = Path("chip.vel");
  WriteFile(path, kOldProject);
  ASSERT_EQ(::chmod(path.data(), 0640), 0);

  SProject project(path);
  project.SetProjectType(0);
  ASSERT_TRUE(project.Read(0));
  project.GetControlBlock()->itsSpeed = 2;
  ASSERT_TRUE(project.Save()) << project.GetErrors().ErrorText().data();
  EXPECT_TRUE(Contains(FileText(path), "SPEED 2\n"));
  EXPECT_TRUE(Leftovers(itsDir.path()).isEmpty());
  struct stat info;
  ASSERT_EQ(::stat(path.data(), &info), 0);
  EXPECT_EQ(info.st_mode & 0777, 0640u);

  // Another run's temporary file, and a link standing at this run's own name, are left as
  // they are: this save takes a name of its own beside them.
  const SString elsewhere = Path("elsewhere.txt");
  WriteFile(elsewhere, "keep me");
  const SString own = path + SString::format(".saving-%ld", static_cast<long>(::getpid()));
  ASSERT_EQ(::symlink(elsewhere.data(), own.data()), 0);
  WriteFile(path + ".saving-1", "another run's half");
  project.GetControlBlock()->itsSpeed = 1;
  ASSERT_TRUE(project.Save());
  EXPECT_TRUE(Contains(FileText(path), "SPEED 1\n"));
  EXPECT_EQ(FileText(elsewhere), "keep me");
  EXPECT_EQ(FileText(path + ".saving-1"), "another run's half");
  EXPECT_TRUE(QFileInfo(own.qstring()).isSymLink());
}

TEST_F(ProjectTest, AFailedSaveLeavesTheOldProjectIntact) {
  const SString path = Path("chip.vel");
  WriteFile(path, kOldProject);
  SProject project;
  ASSERT_TRUE(ReadText(project, kOldProject, "chip.vel"));
  project.GetControlBlock()->itsSpeed = 2;

  // The file can't take the new text's place: the target is a directory, which is no
  // previous file either.
  const SString folder = Path("folder.vel");
  ASSERT_TRUE(QDir().mkpath((folder + "/inside").qstring()));
  EXPECT_FALSE(project.Save(folder));
  EXPECT_TRUE(project.GetErrors().Contains(7048));
  EXPECT_FALSE(Contains(project.GetErrors().ErrorText().data(), "previous file"));
  EXPECT_TRUE(QFileInfo((folder + "/inside").qstring()).isDir());
  EXPECT_TRUE(Leftovers(itsDir.path()).isEmpty());
  EXPECT_EQ(FileText(path), kOldProject);

  // Nothing stood there: the message doesn't speak of a previous file.
  project.GetErrors().Clear();
  EXPECT_FALSE(project.Save(Path("missing/chip.vel")));
  EXPECT_TRUE(project.GetErrors().Contains(7048));
  EXPECT_FALSE(Contains(project.GetErrors().ErrorText().data(), "previous file"));
}

TEST_F(ProjectTest, AWriteProtectedProjectIsNotReplaced) {
  if (::geteuid() == 0) GTEST_SKIP() << "root may write any file";
  const SString path = Path("chip.vel");
  WriteFile(path, kOldProject);
  ASSERT_EQ(::chmod(path.data(), 0444), 0);
  SProject project;
  ASSERT_TRUE(ReadText(project, kOldProject, "chip.vel"));
  project.GetControlBlock()->itsSpeed = 2;
  EXPECT_FALSE(project.Save(path));
  EXPECT_TRUE(Contains(project.GetErrors().ErrorText().data(), "write-protected"));
  EXPECT_EQ(FileText(path), kOldProject);
  EXPECT_TRUE(Leftovers(itsDir.path()).isEmpty());
}

TEST_F(ProjectTest, ADeviceThatFillsUpMidwayChangesNothing) {
  const SString path = Path("chip.vel");
  WriteFile(path, kOldProject);
  const std::string text(100000, 'x');
  SFullDeviceSave save(path);
  EXPECT_FALSE(save.Commit(text));
  EXPECT_GT(save.itsWritten, 0u);
  EXPECT_TRUE(Contains(save.GetErrorText().data(), "No space left"));
  EXPECT_EQ(FileText(path), kOldProject);
  EXPECT_FALSE(QFileInfo::exists(save.GetTemporaryName().qstring()));

  SSafeSave good(path);
  EXPECT_TRUE(good.Commit(text));
  EXPECT_EQ(FileText(path), text);
}

TEST_F(ProjectTest, CompanionDirectoryNames) {
  SProject project(Path("a/chip.vel"));
  EXPECT_EQ(project.GetDataDirectory(), Path("a/veldata/chip"));
  EXPECT_EQ(project.GetSubsectionFile(), Path("a/veldata/chip/sub/subsections.vel"));
  EXPECT_EQ(project.GetDocumentationDirectory(), Path("a/veldata/chip/doc"));
  EXPECT_EQ(project.GetAutosaveFile(), Path("a/veldata/chip/autosave.sgrx"));
  EXPECT_EQ(project.GetFileMappingFile(), Path("a/veldata/chip/filenames.map"));
  EXPECT_EQ(project.GetLockFile(), Path("a/veldata/chip/lock.lck"));
  SProject bare("chip");
  EXPECT_EQ(SString(bare.GetFileName()), SString("chip.vel"));
  EXPECT_EQ(bare.GetDataDirectory(), SString("veldata/chip"));
}

TEST_F(ProjectTest, LockFilesHaveOneHolder) {
  const SString path = Path("chip.vel");
  WriteFile(path, kOldProject);
  SProject first(path);
  SProject second(path);
  EXPECT_EQ(first.CheckLock(), SProject::NoLock);
  ASSERT_TRUE(first.Lock());
  EXPECT_EQ(first.CheckLock(), SProject::LockedBySelf);
  EXPECT_EQ(second.CheckLock(), SProject::LockRefused);
  EXPECT_FALSE(second.Lock());
  SString time, user;
  EXPECT_TRUE(SProject::ReadLockFile(first.GetLockFile(), time, user));
  EXPECT_FALSE(time.isEmpty());
  EXPECT_FALSE(user.contains(QLatin1Char('\n')));
  EXPECT_FALSE(second.Unlock());
  EXPECT_TRUE(first.Unlock());
  EXPECT_EQ(second.CheckLock(), SProject::NoLock);
  EXPECT_FALSE(SProject::ReadLockFile(first.GetLockFile(), time, user));
  EXPECT_EQ(time, SString("Error"));
  EXPECT_EQ(user, SString("Error"));
}

TEST_F(ProjectTest, CleaningRemovesStoredResultsOnly) {
  const SString path = Path("chip.vel");
  SProjectOperations missing(path);
  EXPECT_FALSE(missing.Clean(true));
  EXPECT_EQ(missing.GetStatus(), SProjectOperations::NoProjectFile);

  WriteFile(path, kOldProject);
  const SString data = Path("veldata/chip");
  for (const char* directory : {"sub", "doc", "solver"}) ASSERT_TRUE(QDir().mkpath((data + "/" + directory).qstring()));
  for (const char* file : {"log_errors", "runnum", "VEL0001", "autosave.sgrx", "keep.txt", "sub/subsections.vel",
                           "solver/mesher", "example.tag"})
    WriteFile(data + "/" + file, "x");

  WriteFile(data + "/lock.lck", "LOCK TIME: now\nUSER: someone\n");
  SProjectOperations locked(path);
  EXPECT_FALSE(locked.Clean(true));
  EXPECT_EQ(locked.GetStatus(), SProjectOperations::Locked);
  QFile::remove((data + "/lock.lck").qstring());

  setenv("VELORA_DIR", itsDir.path().toUtf8().constData(), 1);
  SProjectOperations installed(path);
  EXPECT_FALSE(installed.Clean(true));
  EXPECT_EQ(installed.GetStatus(), SProjectOperations::InsideInstallation);
  unsetenv("VELORA_DIR");

  SProjectOperations operations(path);
  EXPECT_TRUE(operations.Clean(true));
  const QStringList left = QDir(data.qstring()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
  EXPECT_EQ(left, (QStringList{"example.tag", "keep.txt"}));
  EXPECT_EQ(FileText(path), kOldProject);
}

TEST_F(ProjectTest, SavingThroughALinkReplacesTheFileItPointsTo) {
  const SString real = Path("real.vel");
  const SString link = Path("link.vel");
  WriteFile(real, kOldProject);
  ASSERT_EQ(::symlink(real.data(), link.data()), 0);
  SSafeSave save(link);
  ASSERT_TRUE(save.Commit(std::string("new text\n")));
  EXPECT_TRUE(QFileInfo(link.qstring()).isSymLink());
  EXPECT_EQ(FileText(real), "new text\n");
}

// A layout too large to hold as text in one piece goes out as it is made; the file is the
// text a write in memory gives, and a device that fails between pieces changes nothing.
TEST_F(ProjectTest, LargeProjectsAreStreamedToTheirFile) {
  SProject project;
  project.GetDimensionBlock()->SetDefaults();
  project.GetGeometryBlock()->SetDefaults();
  SCircuit* circuit = project.GetGeometryBlock()->GetCircuit();
  for (int i = 0; i < 30000; ++i) {
    SMetalPolygon* polygon = new SMetalPolygon;
    polygon->SetId(i + 1);
    const double x = i % 100 * 1.25, y = i / 100 * 0.5;
    polygon->SetVertices({SPoint(x, y), SPoint(x + 1, y), SPoint(x + 1, y + 0.25)});
    circuit->GetLevel(i % 2)->AddChild(polygon);
  }
  const std::string whole = WriteText(project);
  ASSERT_GT(whole.size(), 2u << 20);
  const SString path = Path("big.vel");
  ASSERT_TRUE(project.Save(path));
  EXPECT_TRUE(FileText(path) == whole);

  SProjectStream pieces;
  SFullDeviceSave full(path);
  ASSERT_TRUE(full.Begin());
  pieces.SetSink([&full](const char* data, size_t size) { return full.Append(data, size); }, 1 << 16);
  EXPECT_TRUE(project.Write(pieces));
  EXPECT_FALSE(pieces.Flush());
  EXPECT_TRUE(pieces.Failed());
  EXPECT_FALSE(full.Finish());
  EXPECT_TRUE(FileText(path) == whole);
  EXPECT_FALSE(QFileInfo::exists(full.GetTemporaryName().qstring()));
}

// Polygons are formatted by two threads in batches: the file must still hold them level by
// level, each level's in the order they were added, and each polygon whole.
TEST_F(ProjectTest, PolygonsWrittenInBatchesKeepTheirOrder) {
  SProject project;
  project.GetDimensionBlock()->SetDefaults();
  project.GetGeometryBlock()->SetDefaults();
  SCircuit* circuit = project.GetGeometryBlock()->GetCircuit();
  const int count = 40001;
  std::vector<long long> expected[2];
  for (int i = 0; i < count; ++i) {
    SMetalPolygon* polygon = new SMetalPolygon;
    const long long id = (i * 7919LL) % count + 1;
    polygon->SetId(id);
    const double x = i % 100 * 1.25, y = i / 100 * 0.5;
    polygon->SetVertices({SPoint(x, y), SPoint(x + 1, y), SPoint(x + 1, y + 0.25)});
    const int level = i % 3 == 0 ? 1 : 0;
    circuit->GetLevel(level)->AddChild(polygon);
    expected[level].push_back(id);
  }
  const std::string text = WriteText(project);
  // Each polygon: its line with level, point count and id, three points and the closing one.
  std::vector<long long> written;
  size_t at = text.find("\nNUM ");
  ASSERT_NE(at, std::string::npos);
  at = text.find('\n', at + 1) + 1;
  while (written.size() < size_t(count)) {
    int level = -1, points = 0;
    long long id = 0;
    char fill = 0;
    ASSERT_EQ(std::sscanf(text.c_str() + at, "%d %d %*d %c %lld", &level, &points, &fill, &id), 4)
        << "after " << written.size() << " polygons: " << text.substr(at, 60);
    EXPECT_EQ(points, 4);
    EXPECT_EQ(level, written.size() < expected[0].size() ? 0 : 1);
    written.push_back(id);
    for (int line = 0; line < 1 + points + 1; ++line) at = text.find('\n', at) + 1;
  }
  std::vector<long long> all = expected[0];
  all.insert(all.end(), expected[1].begin(), expected[1].end());
  EXPECT_TRUE(written == all);
}
