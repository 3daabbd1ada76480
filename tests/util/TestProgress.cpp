#include "SProgress.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

// A progress line drawing into memory instead of a terminal.
class ProgressTest : public ::testing::Test {
protected:
  void SetUp() override {
    itsOut = open_memstream(&itsBuffer, &itsSize);
    ASSERT_NE(itsOut, nullptr);
  }
  void TearDown() override {
    itsProgress.Disable();
    fclose(itsOut);
    free(itsBuffer);
  }
  // Drawn at once and at every call, unless a test says otherwise.
  void Enable(bool stdoutShared = false) {
    itsProgress.Enable(itsOut, stdoutShared, "gds");
    itsProgress.SetTiming(0, 0);
  }
  std::string Written() {
    fflush(itsOut);
    return std::string(itsBuffer, itsSize);
  }
  static std::string Blanks(size_t count) { return "\r" + std::string(count, ' ') + "\r"; }

  SProgress itsProgress;
  FILE* itsOut = nullptr;
  char* itsBuffer = nullptr;
  size_t itsSize = 0;
};

}  // namespace

TEST_F(ProgressTest, LineShowsShareOrCountOfThePhase) {
  struct Case {
    const char* phase;
    uint64_t total;
    uint64_t done;
    const char* shown;
  } const cases[] = {
      {"reading", 200, 50, "gds: reading 25%"},
      {"reading", 3, 3, "gds: reading 100%"},
      {"adding to project", 3, 2, "gds: adding to project 66%"},
      {"flattening", 0, 1234567, "gds: flattening 1234567 polygons"},
      // An estimate that the count passed no longer makes a share.
      {"flattening", 10, 11, "gds: flattening 11 polygons"},
  };
  Enable();
  for (const Case& c : cases) {
    itsProgress.Begin(c.phase, c.total, "polygons");
    char text[128];
    itsProgress.Format(c.done, text, sizeof text);
    EXPECT_STREQ(text, c.shown);
  }
}

TEST_F(ProgressTest, ShorterLineCoversTheLongerOne) {
  Enable();
  itsProgress.Begin("flattening", 0, "polygons");
  itsProgress.Update(1000);
  itsProgress.Begin("reading", 10, "bytes");
  itsProgress.Update(1);
  EXPECT_EQ(Written(), "\rgds: flattening 1000 polygons\rgds: reading 10%" + std::string(13, ' '));
  // The blanks are on the terminal too: a clear covers them.
  itsProgress.End();
  EXPECT_EQ(Written().substr(Written().size() - 31), Blanks(29));
}

TEST_F(ProgressTest, UpdatesDrawOnlyWhenDueAndChanged) {
  struct Case {
    double delay, interval;
    uint64_t total, first, second;
    const char* drawn;
  } const cases[] = {
      {0, 0, 200, 50, 100, "\rgds: reading 25%\rgds: reading 50%"},
      {3600, 0, 200, 50, 100, ""},
      {0, 3600, 200, 50, 100, "\rgds: reading 25%"},
      {0, 0, 1000, 500, 501, "\rgds: reading 50%"},
  };
  for (const Case& c : cases) {
    const size_t before = Written().size();
    SProgress progress;
    progress.Enable(itsOut, false, "gds");
    progress.SetTiming(c.delay, c.interval);
    progress.Begin("reading", c.total, "bytes");
    progress.Update(c.first);
    progress.Update(c.second);
    EXPECT_EQ(Written().substr(before), c.drawn) << "delay " << c.delay << ", interval " << c.interval;
    progress.Disable();
  }
}

TEST_F(ProgressTest, TicksLookAtTheClockOnlyEveryStride) {
  Enable();
  itsProgress.Begin("flattening", 0, "polygons");
  for (unsigned i = 1; i < SProgress::kTickStride; ++i) itsProgress.Tick(i);
  EXPECT_EQ(Written(), "");
  itsProgress.Tick(SProgress::kTickStride);
  EXPECT_EQ(Written(), "\rgds: flattening 4096 polygons");
}

TEST_F(ProgressTest, MessagesFindTheLineCleared) {
  for (bool shared : {false, true}) {
    const size_t before = Written().size();
    SProgress progress;
    progress.Enable(itsOut, shared, "gds");
    progress.SetTiming(0, 0);
    progress.Begin("reading", 200, "bytes");
    progress.ClearFor(itsOut);  // nothing shown: nothing to clear
    progress.Update(50);
    const std::string drawn = "\rgds: reading 25%", cleared = drawn + Blanks(16);
    // Standard output crosses the line only when it shows on the same terminal.
    progress.ClearFor(stdout);
    EXPECT_EQ(Written().substr(before), shared ? cleared : drawn);
    progress.ClearFor(itsOut);
    EXPECT_EQ(Written().substr(before), cleared);
    // The line comes back with the next update.
    progress.Update(100);
    EXPECT_EQ(Written().substr(before), cleared + "\rgds: reading 50%");
    progress.Disable();
  }
}

TEST_F(ProgressTest, NothingWhenDisabled) {
  Enable();
  itsProgress.Begin("reading", 200, "bytes");
  itsProgress.Update(50);
  itsProgress.Disable();
  const std::string cleared = "\rgds: reading 25%" + Blanks(16);
  EXPECT_EQ(Written(), cleared);
  EXPECT_FALSE(itsProgress.IsEnabled());
  itsProgress.Begin("reading", 200, "bytes");
  itsProgress.Update(100);
  for (unsigned i = 0; i < 2 * SProgress::kTickStride; ++i) itsProgress.Tick(i);
  itsProgress.ClearFor(itsOut);
  itsProgress.End();
  EXPECT_EQ(Written(), cleared);
}

// The end of a phase clears the line, however its scope is left.
TEST_F(ProgressTest, PhaseScopeClearsTheProcessLine) {
  Progress().Enable(itsOut, false, "gds");
  Progress().SetTiming(0, 0);
  {
    SProgressPhase phase("writing project", 4, "polygons");
    Progress().Update(1);
  }
  Progress().Update(2);  // outside any phase
  Progress().Disable();
  Progress().SetTiming(1, 0.2);
  EXPECT_EQ(Written(), "\rgds: writing project 25%" + Blanks(24));
}
