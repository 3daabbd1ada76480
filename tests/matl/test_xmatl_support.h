#ifndef TEST_XMATL_SUPPORT_H
#define TEST_XMATL_SUPPORT_H

#include "MatlTestSupport.h"

#include "SXmatl.h"

#include <QFile>
#include <QTemporaryDir>

// Technology files written into a scratch directory, read with every report captured.
class XmatlTest : public MatlTest {
protected:
  void SetUp() override {
    MatlTest::SetUp();
    SErrorMessages::Instance()->LoadFile(SString(GDS_SOURCE_DIR "/resource/strings_filelib.h"));
  }
  SString Path(const char* name) const { return SString(itsDir.filePath(name)); }
  SString WriteFile(const char* name, const std::string& text) const {
    QFile file(itsDir.filePath(name));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(text.data(), qint64(text.size()));
    return SString(itsDir.filePath(name));
  }
  static std::string ReadText(const SString& path) {
    QFile file(path.qstring());
    if (!file.open(QIODevice::ReadOnly)) return "<missing " + std::string(path.data()) + ">";
    return file.readAll().toStdString();
  }
  // A document of the given public content (and anything after it).
  static std::string Document(const std::string& body, const std::string& root = "version=\"1\"") {
    return "<?xml version=\"1.0\"?>\n<technology_file " + root + ">\n" + body + "\n</technology_file>\n";
  }
  std::string Reports() const {
    std::string all;
    for (const auto& entry : itsCapture->Entries()) all += std::string(entry.text.data()) + "\n";
    return all;
  }
  std::string WrittenText(SXmatl& xmatl) {
    QByteArray text;
    EXPECT_TRUE(xmatl.WriteText(text)) << Reports();
    return text.toStdString();
  }
  QTemporaryDir itsDir;
};

#endif
