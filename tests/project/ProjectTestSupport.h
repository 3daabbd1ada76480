#ifndef PROJECTTESTSUPPORT_H
#define PROJECTTESTSUPPORT_H

#include "SCommentedFile.h"
#include "SErrorMessages.h"
#include "SHeaderBlock.h"
#include "SInitializationFile.h"
#include "SProject.h"
#include "SProjectErrorEntry.h"
#include "SProjectErrorManager.h"
#include "SProjectFormat.h"

#include <QFile>
#include <QString>
#include <QTemporaryDir>
#include <QTextStream>
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

// A settings file made the process's for the life of the object.
class SettingsScope {
public:
  SettingsScope(const SString& path, const char* text) {
    QFile file(path.qstring());
    file.open(QIODevice::WriteOnly);
    file.write(text);
    file.close();
    setenv("VELORA_INI_FILE", path.data(), 1);
    SInitializationFile::DestroyGlobal();
    SInitializationFile::CreateGlobal();
  }
  ~SettingsScope() {
    SInitializationFile::DestroyGlobal();
    unsetenv("VELORA_INI_FILE");
  }
  SettingsScope(const SettingsScope&) = delete;
  SettingsScope& operator=(const SettingsScope&) = delete;
};

// A fixed clock, the message texts, the current write format, and a scratch directory.
class ProjectTest : public ::testing::Test {
protected:
  static constexpr time_t kClock = 1700000000;

  void SetUp() override {
    static bool loaded = false;
    if (!loaded) {
      SErrorMessages::Instance()->LoadFile(SString(GDS_SOURCE_DIR "/resource/strings_util.h"));
      SErrorMessages::Instance()->LoadFile(SString(GDS_SOURCE_DIR "/resource/strings_filelib.h"));
      loaded = true;
    }
    SHeaderBlock::SetFixedTime(kClock);
    SProjectFormat::SetWriteFormat(SProjectFormat::kCurrent);
    ASSERT_TRUE(itsDir.isValid());
  }
  void TearDown() override {
    SHeaderBlock::SetFixedTime(0);
    SProjectFormat::SetWriteFormat(SProjectFormat::kCurrent);
  }

  SString Path(const char* name) const { return SString(itsDir.filePath(QLatin1String(name))); }

  // Reads project text as if it were the file `name` in the scratch directory.
  bool ReadText(SProject& project, const std::string& text, const char* name = "test.vel", int type = 0) {
    project.SetFileName(Path(name));
    project.SetProjectType(type);
    QString copy = QString::fromStdString(text);
    QTextStream stream(&copy);
    SCommentedFile file(&stream);
    file.SetCommentEscape("<");
    file.NextLine();
    return project.ReadStream(file, 0);
  }

  static std::string WriteText(SProject& project) {
    SProjectStream out;
    EXPECT_TRUE(project.Write(out));
    return out.Text();
  }

  // Read, write, read the result into a fresh project, write again: both writes must agree.
  // (Making a project resets the write format, so the format is set after each.)
  std::string RoundTrip(const std::string& text, int format = SProjectFormat::kCurrent, int type = 0) {
    SProject first;
    SProjectFormat::SetWriteFormat(format);
    EXPECT_TRUE(ReadText(first, text, "test.vel", type)) << first.GetErrors().ErrorText().data();
    const std::string once = WriteText(first);
    SProject second;
    SProjectFormat::SetWriteFormat(format);
    EXPECT_TRUE(ReadText(second, once, "test.vel", type)) << second.GetErrors().ErrorText().data();
    EXPECT_EQ(once, WriteText(second));
    return once;
  }

  void WriteFile(const SString& path, const std::string& text) {
    QFile file(path.qstring());
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(text.data(), static_cast<qint64>(text.size()));
  }

  static std::string FileText(const SString& path) {
    QFile file(path.qstring());
    if (!file.open(QIODevice::ReadOnly)) return "<missing>";
    return file.readAll().toStdString();
  }

  static bool Contains(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

  QTemporaryDir itsDir;
};

// The covers, the box and two dielectric lines: the least a GEO block holds.
inline const char* const kTwoLevelStack =
    "TMET \"Lossless\" 0 SUP 0 0 0 0\n"
    "BMET \"Lossless\" 0 SUP 0 0 0 0\n"
    "BOX 1 160 160 32 32 20 0\n"
    "      0 1 1 0 0 0 0 \"Unnamed\"\n"
    "      0 1 1 0 0 0 0 \"Unnamed\"\n";

// One line of each kind of frequency entry, as they are written.
inline const char* const kEveryFrequencyEntry =
    "SWEEP 1 10 0.5\n"
    "SIMPLE 2 4 1\n"
    "STEP 3.5\n"
    "LSWEEP 1 2 11\n"
    "ESWEEP 1 100 3\n"
    "ABS_ENTRY UNK 9 0.25\n"
    "AWRFBS 1 2\n"
    "ABS_FMIN 1 3\n"
    "ABS_FMAX 2 4\n"
    "AUTO NET=amp S21 N=5 MAX=50 1 2 0.01\n"
    "FINDMIN S11 N=1 MAX=2 1 2 UNK\n"
    "FINDMAX S12 N=3 MAX=4 5 6 0.1\n"
    "LIST 1 2 3.25\n"
    "DC_FREQ AUTO\n"
    "DC_FREQ MAN 5\n"
    "FILE \"my freqs.eff\"\n";

// A project of one GEO block, and the reading and writing of such blocks.
class GeoTest : public ProjectTest {
protected:
  static std::string Project(const std::string& geoBody, int ftyp = 17) {
    return "FTYP VELPROJ " + std::to_string(ftyp) + "\nDIM\nLNG UM\nEND DIM\nGEO\n" + geoBody + "END GEO\n";
  }

  // The body of the GEO block of a written project.
  static std::string GeoBody(const std::string& text) {
    const size_t begin = text.find("\nGEO\n");
    const size_t end = text.find("END GEO\n");
    if (begin == std::string::npos || end == std::string::npos) return "<no GEO block>";
    return text.substr(begin + 5, end - begin - 5);
  }

  // Reads a body that must fail; gives the entries' message numbers and lines.
  std::vector<std::pair<int, int>> Failure(const std::string& body) {
    SProject project;
    EXPECT_FALSE(ReadText(project, Project(body))) << body;
    std::vector<std::pair<int, int>> found;
    const SProjectErrorManager& errors = project.GetErrors();
    for (size_t i = 0; i < errors.Count(); ++i)
      found.emplace_back(static_cast<int>(errors.Entry(i)->itsMessageId), errors.Entry(i)->itsLine);
    return found;
  }
};

#endif
