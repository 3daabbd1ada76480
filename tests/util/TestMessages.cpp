#include "TestPrint.h"
#include "SCommentedFile.h"
#include "SErrorMessages.h"
#include "SRunTimeException.h"
#include "SVeloraError.h"
#include "SVeloraFileName.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <cstring>
#include <string>

namespace {
std::string gCaptured;
int gLastKind = 0;
void Capture(const char* text, int kind) {
  gCaptured += text;
  gCaptured += "\n";
  gLastKind = kind;
}

// Captures the report sink and starts from empty message tables.
class MessagesTest : public ::testing::Test {
protected:
  void SetUp() override {
    SErrorMessages::Instance()->ClearAll();
    gCaptured.clear();
    gLastKind = 0;
    VeloraSetErrorSink(Capture);
  }
  void TearDown() override {
    VeloraSetErrorSink(nullptr);
    SErrorMessages::Instance()->ClearAll();
  }
  SString Write(const char* name, const QByteArray& content) {
    const QString path = itsDir.filePath(QString::fromLatin1(name));
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(content);
    return SString(path);
  }
  SString Text(int number) {
    const SString* text = SErrorMessages::Instance()->FindMessage(number);
    return text ? *text : SString("<none>");
  }
  QTemporaryDir itsDir;
};
}  // namespace

TEST_F(MessagesTest, DefinitionsAreWorkedLeftToRightWithKnownNames) {
  SErrorMessages* messages = SErrorMessages::Instance();
  ASSERT_TRUE(messages->LoadFile(Write("d.h",
                                       "#define B (A+2)\n"
                                       "#define A 5\n"
                                       "#define C (A+10-1)\n"
                                       "#define A 6 // replaces\n"
                                       "string B \"two\"\n"
                                       "string C \"fourteen\"\n"
                                       "string UNKNOWN \"zero\"\n")));
  EXPECT_EQ(messages->Definition("B"), 2);
  EXPECT_EQ(messages->Definition("C"), 14);
  EXPECT_EQ(messages->Definition("A"), 6);
  EXPECT_EQ(Text(2), SString("two"));
  EXPECT_EQ(Text(14), SString("fourteen"));
  EXPECT_EQ(Text(0), SString("zero"));
}

TEST_F(MessagesTest, StringEscapesIncludesAndDuplicates) {
  Write("inner.h", "string 11 \"inner\"\n");
  ASSERT_TRUE(SErrorMessages::Instance()->LoadFile(Write("outer.h",
                                                         "string 10 \"a\\tb\\\"c\"\n"
                                                         "string 12 \"line\\none\\x\"\n"
                                                         "string 13 ends in quote\\\n"
                                                         "#include \"inner.h\"\n"
                                                         "#include \"outer.h\"\n"
                                                         "something else entirely\n"
                                                         "string 11 \"replaced\"\n")));
  EXPECT_EQ(Text(10), SString("a\tb\"c"));
  EXPECT_EQ(Text(12), SString("line\nonex"));
  EXPECT_EQ(Text(13), SString("ends in quote\""));
  EXPECT_EQ(Text(11), SString("replaced"));
}

TEST_F(MessagesTest, UnreadableFilesNeverStopAnything) {
  EXPECT_FALSE(SErrorMessages::Instance()->LoadFile(SString(itsDir.filePath("missing.h"))));
  EXPECT_TRUE(SErrorMessages::Instance()->LoadFile(Write("empty.h", "")));
  QByteArray junk;
  unsigned seed = 3;
  for (int i = 0; i < 30000; ++i) {
    seed = seed * 1664525u + 1013904223u;
    junk += static_cast<char>(seed >> 24);
  }
  EXPECT_TRUE(SErrorMessages::Instance()->LoadFile(Write("junk.h", junk)));
  EXPECT_TRUE(SErrorMessages::Instance()->LoadFile(Write("bad.h", "string\n#define\n#define X (\nstring 5 \"open\n#include\n")));
}

TEST_F(MessagesTest, ReportsJoinHeadingNumberTextAndDetail) {
  SErrorMessages* messages = SErrorMessages::Instance();
  messages->SetMessage(5900, "Error ");
  messages->SetMessage(5600, "Warning ");
  messages->SetMessage(100, "Something failed");
  messages->SetMessage(101, "value %d in %s");
  VeloraErrorReport(100, 101, 42, "here");
  EXPECT_EQ(gCaptured, "Error 100:\nSomething failed\nvalue 42 in here\n");
  EXPECT_EQ(gLastKind, 1);
  gCaptured.clear();
  VeloraWarningReport(100, 101, 7, "there");
  EXPECT_EQ(gCaptured, "Warning 100:\nSomething failed\nvalue 7 in there\n");
  EXPECT_EQ(gLastKind, 2);
  gCaptured.clear();
  VeloraErrorReport(4321, 101, 1, "x");
  EXPECT_NE(gCaptured.find("Message Resource Not Found- 4321"), std::string::npos);
  // A long text is cut.
  gCaptured.clear();
  messages->SetMessage(102, "%s");
  const std::string big(5000, 'z');
  VeloraErrorReport(100, 102, big.c_str());
  EXPECT_LE(gCaptured.size(), 1025u);
  VeloraEnableErrorSink(false);
  gCaptured.clear();
  VeloraErrorReport(100, 101, 1, "x");
  EXPECT_TRUE(gCaptured.empty());
  VeloraEnableErrorSink(true);
}

TEST_F(MessagesTest, MissingTextsFallBackToFixedWords) {
  SString text;
  VeloraFormatMessage(text, 777);
  EXPECT_TRUE(text.contains(SString("String Number : 777")));
  char buffer[16];
  VeloraGetMessage(777, buffer, sizeof buffer);
  EXPECT_EQ(strlen(buffer), 15u);
  SErrorMessages::Instance()->SetMessage(9, "nine %n");
  VeloraFormatMessage(text, 9);  // a file can't make the formatter write
  EXPECT_EQ(text, SString("nine %n"));
}

TEST_F(MessagesTest, ShippedMessageFilesHoldTheNumbersInUse) {
  SErrorMessages* messages = SErrorMessages::Instance();
  const QString resource = QStringLiteral(GDS_SOURCE_DIR "/resource/");
  for (const char* name : {"strings_util.h", "strings_filelib.h", "strings_gds.h", "strings_matl.h"})
    ASSERT_TRUE(messages->LoadFile(SString(resource + QLatin1String(name)))) << name;
  for (int number : {5001, 5002, 5003, 5005, 5006, 5008, 5044, 5318, 5412, 5600, 5602, 5670, 5681, 5690, 5691, 5692,
                     5693, 5694, 5695, 5696, 5740, 5760, 5770, 5795, 5850, 5855, 5860, 5861, 5862, 5863, 5868, 5900,
                     5910, 5911, 5914, 5915, 5930, 5931, 7041, 7071, 7132, 7141, 7284, 7361, 7732, 7769, 20000, 20193,
                     20504, 20668, 6002, 6218})
    EXPECT_TRUE(messages->HasMessage(number)) << number;
  // Texts convert only strings and ints, never write through an argument.
  const QRegularExpression conversion(QStringLiteral("%[^%sd]"));
  SHashDictionaryConstIterator it(*messages);
  while (it.next()) {
    const SString* text = static_cast<const SString*>(static_cast<const SCollectableString*>(it.value()));
    EXPECT_FALSE(text->qstring().contains(conversion)) << text->data();
  }
  SCommentedFile file(SString(itsDir.filePath("nothing")));
  SString rest;
  file.SetLine("first second third");
  file.GetToken(rest);
  file.ReportBadLine();
  EXPECT_NE(gCaptured.find("5910:"), std::string::npos);
  EXPECT_NE(gCaptured.find("second third"), std::string::npos);
}

TEST_F(MessagesTest, FileTypeMismatchIsReportedInModeOne) {
  SErrorMessages* messages = SErrorMessages::Instance();
  messages->SetMessage(5900, "Error ");
  messages->SetMessage(5600, "Warning ");
  messages->SetMessage(5914, "Type mismatch");
  messages->SetMessage(5915, "wanted %s found %s");
  SVeloraFileName name(SString("chip.gds"), SVeloraFileName::FT_VEL, SVeloraFileName::ReportMismatch);
  EXPECT_EQ(name.GetFileType(), SVeloraFileName::FT_GDS);
  EXPECT_NE(gCaptured.find("wanted vel found gds"), std::string::npos);
  gCaptured.clear();
  SVeloraFileName unknown(SString("chip.zzz"), SVeloraFileName::FT_VEL, SVeloraFileName::ReportMismatch);
  EXPECT_TRUE(gCaptured.empty());
}

TEST_F(MessagesTest, FileFailureReportUsesTheKindTable) {
  SErrorMessages* messages = SErrorMessages::Instance();
  messages->SetMessage(5900, "Error ");
  messages->SetMessage(5600, "Warning ");
  messages->SetMessage(5860, "Access");
  messages->SetMessage(5001, "cannot read");
  messages->SetMessage(5861, "file %s: %s");
  messages->SetMessage(5863, "file %s");
  messages->SetMessage(5862, "check it");
  VeloraFileFailureReport(4, "a.txt", "denied", true);
  EXPECT_EQ(gCaptured, "Warning 5860:\nAccess\ncannot read\nfile a.txt: denied\ncheck it\n");
  gCaptured.clear();
  VeloraFileFailureReport(4, "a.txt", nullptr, false);
  EXPECT_EQ(gCaptured, "Error 5860:\nAccess\ncannot read\nfile a.txt\ncheck it\n");
}

TEST(SRunTimeException, HoldsNumberAndCutText) {
  const std::string big(2000, 'q');
  try {
    throw SRunTimeException(12, "%s", big.c_str());
  } catch (const SRunTimeException& e) {
    EXPECT_EQ(e.MessageNumber(), 12);
    EXPECT_EQ(strlen(e.what()), 511u);
  }
  SFileReadException read(3, "line %d", 9);
  EXPECT_STREQ(read.Text(), "line 9");
}

namespace {
void ExitHook() { fprintf(stderr, "first hook\n"); }
void StatusHook(int status) { fprintf(stderr, "status hook %d\n", status); }
}  // namespace

TEST(VeloraErrorDeathTest, FatalErrorPrintsTheIdAndExitsWithOne) {
  EXPECT_EXIT(VeloraFatalError("VL1003", "list.cpp", 12, "index %d", 9), ::testing::ExitedWithCode(1),
              "Velora Internal Error: #VL1003, Bad index\n File: list.cpp, Line: 12\nindex 9");
  EXPECT_EXIT(VeloraFatalError("XX9999", "a.cpp", 1), ::testing::ExitedWithCode(1),
              "Error System Error - Message Key Not Found- XX9999");
  EXPECT_EXIT(
      {
        VeloraSetExitHook(ExitHook);
        VeloraSetExitStatusHook(StatusHook);
        VeloraExit(3);
      },
      ::testing::ExitedWithCode(3), "first hook\nstatus hook 3");
}

#if !defined(__SANITIZE_ADDRESS__)
TEST(VeloraErrorDeathTest, MemoryExhaustionIsFatal) {
  EXPECT_EXIT(
      {
        VeloraInstallMemoryHandler();
        volatile size_t huge = static_cast<size_t>(1) << 62;
        char* p = new char[huge];
        p[0] = 1;
      },
      ::testing::ExitedWithCode(1), "VL1020, Unable to allocate memory(.|\n)*Memory Alloc Error:\nMemory allocation failure");
}
#endif
