#ifndef MATLTESTSUPPORT_H
#define MATLTESTSUPPORT_H

#include "SCommentedFile.h"
#include "SEnclosure.h"
#include "SErrorMessages.h"
#include "SMatlInterface.h"
#include "SMatlMaterial.h"
#include "SMatlReporting.h"
#include "SProjectStream.h"

#include <QSet>
#include <QString>
#include <QTextStream>
#include <gtest/gtest.h>
#include <memory>

// An owner with as many dielectrics as a test wants.
class FakeOwner : public SEnclosure, public SMatlInterface {
public:
  int itsDielectrics = 2;
  SString itsFileName = "stack.matl";
  SProject* itsProject = nullptr;
  QSet<QString> itsColors;

  int GetNumDielectrics() const override { return itsDielectrics; }
  int GetNumDielectricsLessOne() const override { return itsDielectrics - 1; }
  int GetHighestDielectricLevel() const override { return itsDielectrics - 1; }
  SString GetInputFileName() const override { return itsFileName; }
  SProject* GetScratchProject() const override { return itsProject; }
  bool IsChecksOn() const override { return true; }
  bool IsColorLayerNameUnique(const SString& name) const override { return !itsColors.contains(name.qstring()); }
};

// Reads one line of a material file the way the owner does: ";" comments, the keyword taken.
class LineReader {
public:
  explicit LineReader(const QString& text) : itsText(text), itsStream(&itsText), itsFile(&itsStream, ";", "") {
    itsFile.NextLine();
    itsFile.GetUpperToken(itsKeyword);
  }
  SCommentedFile& File() { return itsFile; }
  const SString& Keyword() const { return itsKeyword; }

private:
  QString itsText;
  QTextStream itsStream;
  SCommentedFile itsFile;
  SString itsKeyword;
};

// Loads the shipped material messages and captures every report of a test.
class MatlTest : public ::testing::Test {
protected:
  void SetUp() override {
    SErrorMessages::Instance()->LoadFile(SString(GDS_SOURCE_DIR "/resource/strings_matl.h"));
    itsCapture.reset(new SMatlReportCapture);
  }
  void TearDown() override { itsCapture.reset(); }

  // A fresh entry of class T reads `line`; the result of Read.
  template <class T> bool Read(T& entry, const QString& line) {
    LineReader reader(line);
    entry.SetMatl(&itsOwner);
    return entry.Read(reader.File());
  }
  template <class T> std::string Written(const T& entry) {
    SProjectStream out;
    EXPECT_TRUE(entry.Write(out));
    return out.Text();
  }
  // Written, then read back by a new entry: equal content.
  template <class T> void ExpectRoundTrip(const T& entry) {
    const std::string text = Written(entry);
    T back;
    ASSERT_TRUE(Read(back, QString::fromStdString(text))) << text;
    EXPECT_TRUE(back.IsEqual(entry)) << text;
    EXPECT_EQ(Written(back), text);
  }
  std::vector<int> Errors() const { return itsCapture->Numbers(SMatlReporting::Error); }
  std::vector<int> Warnings() const { return itsCapture->Numbers(SMatlReporting::Warning); }
  std::string FirstText() const {
    return itsCapture->Entries().empty() ? std::string() : std::string(itsCapture->Entries()[0].text.data());
  }

  FakeOwner itsOwner;
  std::unique_ptr<SMatlReportCapture> itsCapture;
};

#endif
