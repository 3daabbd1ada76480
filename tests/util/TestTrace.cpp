#include "TestPrint.h"
#include "STraceCmd.h"
#include "SVeloraTrace.h"

#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {
class TraceTest : public ::testing::Test {
protected:
  void TearDown() override {
    STraceCmd::CloseTrace();
    qunsetenv("VELORA_TRACE");
  }
  QByteArray ReadAll(const SString& path) {
    QFile file(path.qstring());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
  }
  QTemporaryDir itsDir;
};
}  // namespace

TEST_F(TraceTest, SilentWithoutATrace) {
  EXPECT_EQ(STraceCmd::Instance(), nullptr);
  EXPECT_FALSE(VeloraTraceTest(0, TRACE_GENERAL));
  VeloraTrace(0, TRACE_GENERAL, "nothing %d", 1);  // no trace, no effect
}

TEST_F(TraceTest, LevelsDecideWhatIsKept) {
  STraceCmd* trace = STraceCmd::CreateTrace();
  ASSERT_NE(trace, nullptr);
  EXPECT_TRUE(VeloraTraceTest(0, TRACE_INIT));
  EXPECT_FALSE(VeloraTraceTest(1, TRACE_INIT));
  VeloraTrace(1, TRACE_INIT, "dropped");
  EXPECT_EQ(trace->EventCount(), 0u);
  trace->SetLevel(TRACE_ERRORS, 3);
  VeloraTrace(3, TRACE_ERRORS, "kept %s", "line");
  VeloraTrace(4, TRACE_ERRORS, "too deep");
  // An unknown category counts as the default one, at level 0.
  VeloraTrace(0, 999, "unknown category");
  ASSERT_EQ(trace->EventCount(), 2u);
  EXPECT_TRUE(trace->Event(0)->GetText().qstring().contains(
      QRegularExpression(QStringLiteral("^\\d\\d:\\d\\d:\\d\\d kept line$"))));
  EXPECT_EQ(trace->Event(1)->GetCategory(), 0);
  EXPECT_LT(trace->Event(0)->GetSequence(), trace->Event(1)->GetSequence());
}

TEST_F(TraceTest, OldestEventsGo) {
  STraceCmd* trace = STraceCmd::CreateTrace();
  trace->SetAllLevels(1);
  for (int i = 1; i <= 5001; ++i) VeloraTrace(1, TRACE_GENERAL, "event %d", i);
  ASSERT_EQ(trace->EventCount(), 5000u);
  EXPECT_TRUE(trace->Event(0)->GetText().endsWith(SString(" event 2")));
  EXPECT_TRUE(trace->Event(4999)->GetText().endsWith(SString(" event 5001")));
}

TEST_F(TraceTest, TimeInTheFileName) {
  const SString name = STraceCmd::ExpandFileName(SString("/tmp/trace##.txt"));
  EXPECT_TRUE(name.qstring().contains(QRegularExpression(QStringLiteral("^/tmp/trace\\d{12}\\.txt$"))));
  EXPECT_EQ(STraceCmd::ExpandFileName(SString("plain.txt")), SString("plain.txt"));
}

TEST_F(TraceTest, EnvironmentLevelGoesToFileAndOutput) {
  const QByteArray home = qgetenv("HOME");
  qputenv("VELORA_TRACE", "2");
  qputenv("HOME", itsDir.path().toUtf8());
  testing::internal::CaptureStdout();
  STraceCmd* trace = STraceCmd::CreateTrace();
  qputenv("HOME", home);
  VeloraTrace(3, TRACE_GENERAL, "too detailed");
  VeloraTrace(2, TRACE_GENERAL, "shown %d", 2);
  const std::string out = testing::internal::GetCapturedStdout();
  EXPECT_NE(out.find("VELORA_TRACE set to 2\n"), std::string::npos);
  EXPECT_NE(out.find(" shown 2\n"), std::string::npos);
  EXPECT_EQ(out.find("too detailed"), std::string::npos);
  EXPECT_EQ(trace->GetFileName(), SString(itsDir.filePath("trace.txt")));
  const QByteArray file = ReadAll(trace->GetFileName());
  EXPECT_TRUE(file.startsWith("Velora Tracefile : "));
  EXPECT_TRUE(file.contains("\nProgram : "));
  EXPECT_TRUE(file.contains("\nVelora Directory : "));
  EXPECT_TRUE(file.contains(" shown 2\n"));
  EXPECT_FALSE(file.contains("too detailed"));
}

TEST_F(TraceTest, ClosingWritesKeptEventsAndTheBackTrace) {
  STraceCmd* trace = STraceCmd::CreateTrace();
  const SString path(itsDir.filePath("t##.txt"));
  trace->SetFileName(path);
  trace->SetAllLevels(1);
  VeloraTrace(1, TRACE_GENERAL, "before close");
  EXPECT_FALSE(trace->IsFileOpen());
  trace->SetUseFunctionStack(true);
  trace->PushFunction("outer");
  trace->PushFunction("inner");
  trace->Close();
  const SString opened = trace->GetOpenedFileName();
  EXPECT_FALSE(opened.contains(SString("##")));
  const QByteArray file = ReadAll(opened);
  EXPECT_TRUE(file.contains(" before close\n"));
  EXPECT_TRUE(file.endsWith("BACK TRACE:\ninner\nouter\n"));
}

TEST_F(TraceTest, NoEventsNoFile) {
  STraceCmd* trace = STraceCmd::CreateTrace();
  trace->SetFileName(SString(itsDir.filePath("never.txt")));
  VeloraTrace(1, TRACE_GENERAL, "not kept at level 0");
  STraceCmd::CloseTrace();
  EXPECT_FALSE(QFile::exists(itsDir.filePath("never.txt")));
  EXPECT_FALSE(VeloraTraceTest(0, TRACE_GENERAL));
}
