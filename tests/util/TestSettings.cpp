#include "TestPrint.h"
#include "SInitializationFile.h"
#include "SVarRWCString.h"
#include "SVeloraDirectoryInstance.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <unistd.h>

namespace {
// Sets an environment variable for the life of the object.
class SEnvScope {
public:
  SEnvScope(const char* name, const QByteArray& value) : itsName(name), itsHad(qEnvironmentVariableIsSet(name)) {
    itsOld = qgetenv(name);
    qputenv(name, value);
  }
  ~SEnvScope() {
    if (itsHad)
      qputenv(itsName, itsOld);
    else
      qunsetenv(itsName);
  }

private:
  const char* itsName;
  bool itsHad;
  QByteArray itsOld;
};

class SettingsTest : public ::testing::Test {
protected:
  SString Write(const char* name, const QByteArray& content) {
    const QString path = itsDir.filePath(QString::fromLatin1(name));
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(content);
    return SString(path);
  }
  QByteArray ReadBack(const SString& path) {
    QFile file(path.qstring());
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return file.readAll();
  }
  QTemporaryDir itsDir;
};

const QByteArray kSample =
    "; settings of the suite\n"
    "[Velora]   ; main section\n"
    "Foo=1 ; comment\n"
    "Quoted=\"a;b\" ; c\n"
    "Empty=\n"
    "Flag=Yes\n"
    "Number=1\n"
    "Ratio= 2.5e-3\n"
    "Bad=12abc\n"
    "\n"
    "; a comment line\n"
    "[INI]\n"
    "List=one\t\"two words\"  three\n";
}  // namespace

TEST_F(SettingsTest, ValuesCommentsAndQuotes) {
  SInitializationFile ini(Write("a.ini", kSample));
  ASSERT_TRUE(ini.Read());
  EXPECT_EQ(ini.GetValue("Velora", "Foo"), SString("1"));
  EXPECT_EQ(ini.GetValue("Velora", "Quoted"), SString("\"a;b\""));
  EXPECT_EQ(ini.GetValue("Velora", "Empty", "dflt"), SString("dflt"));
  EXPECT_FALSE(ini.HasKey("Velora", "Empty"));
  EXPECT_TRUE(ini.HasKey("Velora", "Foo"));
  EXPECT_EQ(ini.GetValue("Velora", "Missing", "x"), SString("x"));
  EXPECT_EQ(ini.GetValue("Nowhere", "Foo", "y"), SString("y"));
  EXPECT_TRUE(ini.HasSection("Velora"));
  EXPECT_FALSE(ini.HasSection("Nowhere"));
}

TEST_F(SettingsTest, TypedLookupsFallBackToTheirDefaults) {
  SInitializationFile ini(Write("a.ini", kSample));
  ASSERT_TRUE(ini.Read());
  EXPECT_TRUE(ini.GetBool("Velora", "Flag", false));
  // "1" is no boolean word: the default answers.
  EXPECT_FALSE(ini.GetBool("Velora", "Number", false));
  EXPECT_TRUE(ini.GetBool("Velora", "Number", true));
  EXPECT_EQ(ini.GetInt("Velora", "Number", 7), 1);
  EXPECT_EQ(ini.GetInt("Velora", "Bad", 7), 7);
  EXPECT_EQ(ini.GetInt("Velora", "Ratio", 7), 7);
  EXPECT_DOUBLE_EQ(ini.GetDouble("Velora", "Ratio", 1.0), 2.5e-3);
  EXPECT_DOUBLE_EQ(ini.GetDouble("Velora", "Bad", 1.0), 1.0);
  EXPECT_EQ(ini.GetList("INI", "List"), QStringList({"one", "two words", "three"}));
  EXPECT_TRUE(ini.GetList("INI", "Nothing").isEmpty());
}

TEST_F(SettingsTest, CaseMattersOnlyWithoutTheIgnoreFlag) {
  const SString path = Write("a.ini", kSample);
  SInitializationFile exact(path);
  ASSERT_TRUE(exact.Read());
  EXPECT_EQ(exact.GetValue("velora", "foo", "none"), SString("none"));
  SInitializationFile loose(path, SString(), true);
  ASSERT_TRUE(loose.Read());
  EXPECT_EQ(loose.GetValue("VELORA", "FOO", "none"), SString("1"));
}

TEST_F(SettingsTest, ReadAndWriteKeepCommentsBlankLinesAndOrder) {
  const SString path = Write("a.ini", kSample);
  SInitializationFile ini(path);
  ASSERT_TRUE(ini.Read());
  ASSERT_TRUE(ini.Write());
  // Only the blank after "Ratio=" goes; everything else stands as it was.
  QByteArray expected = kSample;
  expected.replace("Ratio= 2.5e-3", "Ratio=2.5e-3");
  EXPECT_EQ(ReadBack(path), expected);

  ini.SetValue("INI", "CheckDate", "off");
  ini.SetValue("New", "Key", "v");
  ASSERT_TRUE(ini.Write(true));
  const SString temporary = ini.GetTemporaryName();
  ASSERT_FALSE(temporary.isEmpty());
  SInitializationFile again(temporary);
  ASSERT_TRUE(again.Read());
  EXPECT_EQ(again.GetValue("New", "Key"), SString("v"));
  EXPECT_EQ(again.GetValue("Velora", "Quoted"), SString("\"a;b\""));
}

TEST_F(SettingsTest, TemporaryFileGoesWithTheObject) {
  SString temporary;
  {
    SInitializationFile ini(Write("a.ini", kSample));
    ASSERT_TRUE(ini.Read());
    ASSERT_TRUE(ini.Write(true));
    temporary = ini.GetTemporaryName();
    EXPECT_TRUE(QFile::exists(temporary.qstring()));
  }
  EXPECT_FALSE(QFile::exists(temporary.qstring()));
}

TEST_F(SettingsTest, MalformedSectionLineIsDropped) {
  SInitializationFile ini(Write("m.ini", "[One]\na=1\n[Two\nb=2\n[Three]\nc=3\n"));
  EXPECT_TRUE(ini.Read());
  EXPECT_EQ(ini.GetError(), SInitializationFile::BadSection);
  EXPECT_EQ(ini.GetValue("One", "b"), SString("2"));
  EXPECT_EQ(ini.GetValue("Three", "c"), SString("3"));
  EXPECT_EQ(ini.GetSection("Two"), nullptr);
}

TEST_F(SettingsTest, RepeatedSectionContinues) {
  SInitializationFile ini(Write("r.ini", "[A] ;first\nx=1\n[B]\ny=2\n[A] ;second\nz=3\n"));
  ASSERT_TRUE(ini.Read());
  EXPECT_EQ(ini.GetSections().entries(), 2u);
  EXPECT_EQ(ini.GetValue("A", "z"), SString("3"));
  EXPECT_EQ(ini.GetSection("A")->itsComment, SString(";first;second"));
}

TEST_F(SettingsTest, MissingEmptyAndBinaryFilesGiveDefaults) {
  SInitializationFile missing(SString(itsDir.filePath("nope.ini")));
  EXPECT_FALSE(missing.Read());
  EXPECT_EQ(missing.GetError(), SInitializationFile::FileNotFound);
  EXPECT_EQ(missing.GetInt("A", "b", 4), 4);
  SInitializationFile noDirectory(SString(itsDir.filePath("no/such/dir/x.ini")));
  EXPECT_FALSE(noDirectory.Read());
  EXPECT_EQ(noDirectory.GetError(), SInitializationFile::DirectoryMissing);

  SInitializationFile empty(Write("e.ini", ""));
  EXPECT_TRUE(empty.Read());
  EXPECT_TRUE(empty.GetBool("A", "b", true));

  QByteArray junk;
  unsigned seed = 99;
  for (int i = 0; i < 50000; ++i) {
    seed = seed * 1664525u + 1013904223u;
    junk += static_cast<char>(seed >> 24);
  }
  SInitializationFile binary(Write("j.ini", junk));
  binary.Read();
  EXPECT_DOUBLE_EQ(binary.GetDouble("Velora", "PolyMergeEpsilonCoef", 1e6), 1e6);
  EXPECT_TRUE(binary.Write(true));
}

TEST_F(SettingsTest, LongNamesAndValuesAreKeptWhole) {
  const QByteArray name(600, 'k');
  const QByteArray value(1000, 'v');
  SInitializationFile ini(Write("l.ini", "[S]\n" + name + "=" + value + "\n"));
  ASSERT_TRUE(ini.Read());
  EXPECT_EQ(ini.GetValue("S", SString(name.constData())).length(), 1000);
}

TEST_F(SettingsTest, ReloadWhenAsked) {
  const SString path = Write("c.ini", "[INI]\nCheckDate=on\n[A]\nk=1\n");
  SInitializationFile ini(path);
  ASSERT_TRUE(ini.Read());
  EXPECT_EQ(ini.GetValue("A", "k"), SString("1"));
  usleep(20000);
  Write("c.ini", "[INI]\nCheckDate=on\n[A]\nk=2\n");
  EXPECT_TRUE(ini.IsChanged());
  EXPECT_EQ(ini.GetValue("A", "k"), SString("2"));
}

TEST_F(SettingsTest, GlobalFileWithUserOverride) {
  EXPECT_EQ(SInitializationFile::GetGlobal(), nullptr);
  const SString main = Write("main.ini", "[Velora]\nShared=main\nOnlyMain=kept\n");
  const SString user = Write("user.ini", "[VELORA]\nshared=user\nOnlyUser=added\n");
  SEnvScope iniFile("VELORA_INI_FILE", main.toUtf8());
  SEnvScope userFile("VELORA_USER_INI_FILE", user.toUtf8());
  SInitializationFile* global = SInitializationFile::CreateGlobal();
  ASSERT_EQ(SInitializationFile::GetGlobal(), global);
  EXPECT_EQ(global->GetValue("velora", "SHARED"), SString("user"));
  EXPECT_EQ(global->GetValue("Velora", "OnlyMain"), SString("kept"));
  EXPECT_EQ(global->GetValue("Velora", "OnlyUser"), SString("added"));
  SInitializationFile::DestroyGlobal();
  EXPECT_EQ(SInitializationFile::GetGlobal(), nullptr);

  // Without any file every lookup answers with its default.
  SEnvScope noMain("VELORA_INI_FILE", itsDir.filePath("none.ini").toUtf8());
  SEnvScope noUser("VELORA_USER_INI_FILE", itsDir.filePath("none2.ini").toUtf8());
  SInitializationFile* bare = SInitializationFile::CreateGlobal();
  EXPECT_EQ(bare->GetInt("Velora", "X", 3), 3);
  SInitializationFile::DestroyGlobal();
}

TEST_F(SettingsTest, ErrorTextsComeFromTheMessages) {
  SInitializationFile missing(SString(itsDir.filePath("nope.ini")));
  missing.Read();
  EXPECT_FALSE(missing.GetErrorText().isEmpty());
}

TEST_F(SettingsTest, DirectorySearchOrderAndLogs) {
  QDir(itsDir.path()).mkpath("reg");
  QDir(itsDir.path()).mkpath("env");
  QDir(itsDir.path()).mkpath("top/bin/x86_64");
  Write("env/velora.ver", "1\n");
  Write("top/velora.ver", "1\n");
  const QByteArray reg = itsDir.filePath("reg").toUtf8();
  const QByteArray env = itsDir.filePath("env").toUtf8() + "/";
  const QByteArray program = itsDir.filePath("top/bin/x86_64/gds").toUtf8();
  SEnvScope a("REG_VELORA_DIR", reg);
  SEnvScope b("VELORA_DIR", env);
  SEnvScope c("REG_VELORA_APPDATA_DIR", "");
  SEnvScope d("VELORA_APPDATA_DIR", "");
  SEnvScope e("VELORA_RESOURCE_DIR", itsDir.filePath("no-such").toUtf8());
  {
    SVeloraDirectoryInstance found(program.constData());
    EXPECT_TRUE(found.IsValid());
    EXPECT_EQ(found.GetInstallDir(), SString(itsDir.filePath("env")));
    EXPECT_TRUE(found.GetInstallLog().contains(SString("REG_VELORA_DIR directory test failed.\n")));
    EXPECT_TRUE(found.GetInstallLog().contains(SString("Velora dir determined using $VELORA_DIR\n")));
    EXPECT_EQ(found.GetAppDataDir(), found.GetInstallDir());
    EXPECT_EQ(found.GetResourceDir(), SString(itsDir.filePath("env/resource")));
    EXPECT_TRUE(found.GetResourceLog().contains(
        SString("$VELORA_RESOURCE_DIR resource directory does not exist, using default\n")));
    EXPECT_TRUE(qEnvironmentVariableIsSet("QT_LOGGING_RULES"));
  }
  {
    SEnvScope noEnv("VELORA_DIR", itsDir.filePath("reg").toUtf8());
    SVeloraDirectoryInstance fromPath(program.constData());
    EXPECT_EQ(fromPath.GetInstallDir(), SString(itsDir.filePath("top")));
    EXPECT_TRUE(fromPath.GetInstallLog().contains(SString("Environment directory test failed.\n")));
    SVeloraDirectoryInstance nothing(nullptr);
    EXPECT_FALSE(nothing.IsValid());
    EXPECT_TRUE(nothing.GetInstallDir().isEmpty());
    EXPECT_TRUE(nothing.GetFailure().contains(SString("A valid Velora install directory could not be found.\n")));
    EXPECT_TRUE(nothing.GetFailure().contains(SString("The variable VELORA_APPDATA_DIR must be defined.\n")));
  }
}

TEST_F(SettingsTest, VariableExpansion) {
  QDir(itsDir.path()).mkpath("v");
  Write("v/velora.ver", "1\n");
  const QString top = itsDir.filePath("v");
  SEnvScope install("VELORA_DIR", top.toUtf8());
  SEnvScope reg("REG_VELORA_DIR", "");
  SEnvScope home("HOME", "/home/tester/");
  SEnvScope homex("HOMEx", "other");
  SEnvScope loop("SELFREF", "$SELFREF$SELFREF");
  ASSERT_EQ(SVeloraDirectoryInstance::Instance(), nullptr);
  SVeloraDirectoryInstance::CreateGlobal("");
  EXPECT_EQ(SVarRWCString("$VELORA_DIR/bin").Expand(), SString(top + "/bin"));
  EXPECT_EQ(GetInstallDir(), SString(top));
  EXPECT_EQ(SVarRWCString("${HOME}x").Expand(), SString("/home/tester/x"));
  EXPECT_EQ(SVarRWCString("$HOMEx").Expand(), SString("other"));
  EXPECT_EQ(SVarRWCString("$SUSER_DIR/trace.txt").Expand(), SString("/home/tester/trace.txt"));
  EXPECT_EQ(SVarRWCString("a$UNSET_NAME_XYZ.b").Expand(), SString("a.b"));
  EXPECT_EQ(SVarRWCString("cost $5 and ${ bad").Expand(), SString("cost $5 and ${ bad"));
  EXPECT_EQ(SVarRWCString("$$").Expand(), SString::number(static_cast<long long>(getpid())));
  EXPECT_EQ(SVarRWCString("$VELORA_ARCH").Expand(), SString("x86_64"));
  // A name that refers to itself ends after a bounded number of rounds.
  EXPECT_GT(SVarRWCString("$SELFREF").Expand().length(), 0);
  SVeloraDirectoryInstance::ReleaseGlobal();
  EXPECT_TRUE(GetInstallDir().isEmpty());
}

TEST(SVeloraDirectoryInstanceDeathTest, SecondCreationIsFatal) {
  EXPECT_EXIT(
      {
        SVeloraDirectoryInstance::CreateGlobal("");
        SVeloraDirectoryInstance::CreateGlobal("");
      },
      ::testing::ExitedWithCode(1), "VL1006");
}
