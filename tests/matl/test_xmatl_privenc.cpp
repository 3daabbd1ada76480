// The enciphered private part: written with a key file, read only when allowed, and the
// failures of a missing pass phrase or a text that doesn't decipher.

#include "test_xmatl_support.h"

#include "SXmatlCipher.h"

namespace {

const char* const kEveryElement = GDS_SOURCE_DIR "/tests/matl/data/every_element.stf";

class XmatlPrivenc : public XmatlTest {
protected:
  // The file of every element written with its private part enciphered under `phrase`.
  std::string Enciphered(const char* phrase) {
    SXmatl xmatl;
    EXPECT_TRUE(xmatl.Read(kEveryElement)) << Reports();
    xmatl.SetEncryptOnWrite(true);
    xmatl.SetKeyFile(WriteFile("write.key", std::string(phrase) + "\nsecond line is no part of it\n"));
    EXPECT_TRUE(xmatl.Write(Path("enc.stf"))) << Reports();
    return ReadText(Path("enc.stf"));
  }
  bool ReadAllowed(SXmatl& xmatl, const std::string& text, const char* phrase) {
    xmatl.SetAllowDecrypt(true);
    xmatl.SetKeyFile(phrase ? WriteFile("read.key", std::string(phrase) + "\n") : SString());
    return xmatl.Read(WriteFile("in.stf", text));
  }
};

TEST_F(XmatlPrivenc, EncipheredPrivatePartReadsBackWithTheKey) {
  const std::string text = Enciphered("open sesame");
  EXPECT_EQ(text.find("<private>"), std::string::npos);
  EXPECT_EQ(text.find("Secret"), std::string::npos);
  EXPECT_NE(text.find("<privenc>"), std::string::npos);
  EXPECT_NE(text.find("<enc>"), std::string::npos);

  SXmatl original;
  ASSERT_TRUE(original.Read(kEveryElement));
  SXmatl again;
  ASSERT_TRUE(ReadAllowed(again, text, "open sesame")) << Reports();
  EXPECT_TRUE(again.IsPrivencSeen());
  EXPECT_TRUE(again.HasPrivate());
  EXPECT_EQ(again.GetKeyText(), SString("open sesame"));
  QStringList differences;
  EXPECT_TRUE(again.IsSameXmatl(original, &differences)) << differences.join("\n").toStdString();
}

TEST_F(XmatlPrivenc, WithoutTheAllowFlagThePrivatePartIsPassedOver) {
  SXmatl xmatl;
  ASSERT_TRUE(xmatl.Read(WriteFile("in.stf", Enciphered("k")))) << Reports();
  EXPECT_TRUE(xmatl.IsPrivencSeen());
  EXPECT_EQ(xmatl.GetData().FindConductor("Secret"), nullptr);
  EXPECT_EQ(xmatl.GetData().diels.size(), 3u);
  EXPECT_EQ(xmatl.GetData().conductors.size(), 10u);
}

TEST_F(XmatlPrivenc, EachChunkHoldsAtMost128BytesInLowerCaseHex) {
  const std::string text = Enciphered("k");
  size_t at = 0;
  int chunks = 0;
  while ((at = text.find("<enc>", at)) != std::string::npos) {
    const size_t end = text.find("</enc>", at);
    const std::string hex = text.substr(at + 5, end - at - 5);
    EXPECT_LE(hex.size(), 256u);
    EXPECT_EQ(hex.find_first_not_of("0123456789abcdef"), std::string::npos) << hex;
    at = end;
    ++chunks;
  }
  EXPECT_GT(chunks, 1);
}

TEST_F(XmatlPrivenc, AKeyThatCantBeReadFailsTheWrite) {
  SXmatl xmatl;
  ASSERT_TRUE(xmatl.Read(kEveryElement));
  xmatl.SetEncryptOnWrite(true);
  xmatl.SetKeyFile(Path("no.key"));
  EXPECT_FALSE(xmatl.Write(Path("out.stf")));
  EXPECT_EQ(Errors(), std::vector<int>({20643}));
  EXPECT_FALSE(QFile::exists(Path("out.stf").qstring()));
  // Without a key file the part is written plain.
  xmatl.SetKeyFile(SString());
  ASSERT_TRUE(xmatl.Write(Path("out.stf")));
  EXPECT_NE(ReadText(Path("out.stf")).find("<private>"), std::string::npos);
}

TEST_F(XmatlPrivenc, ReadingFailsCleanlyWithoutThePassPhraseOrTheRightText) {
  const std::string text = Enciphered("right");
  const struct {
    std::string text;
    const char* phrase;
    int number;
  } cases[] = {
      // No key file and no key text: nothing to decipher with.
      {text, nullptr, 20555},
      // A wrong pass phrase deciphers to no XML, or to no "privenc" document.
      {text, "wrong", 0},
      // A lone digit is a nibble of its own: the text no longer deciphers.
      {std::string(text).replace(text.find("<enc>") + 5, 0, "a"), "right", 0},
      {Document("<privenc/>"), "right", 20556},
  };
  for (const auto& test : cases) {
    itsCapture->Clear();
    SXmatl xmatl;
    EXPECT_FALSE(ReadAllowed(xmatl, test.text, test.phrase));
    ASSERT_FALSE(Errors().empty());
    if (test.number) {
      EXPECT_EQ(Errors()[0], test.number) << Reports();
    }
    EXPECT_NE(FirstText().find("in.stf"), std::string::npos) << FirstText();
  }
}

TEST_F(XmatlPrivenc, TheDecipheredDocumentMustBeAPrivencWithValidBlocks) {
  const SString phrase("p");
  auto document = [&](const std::string& inner) {
    const QStringList chunks = SXmatlCipher::ToHexChunks(SXmatlCipher::EncryptData(QByteArray::fromStdString(inner), phrase));
    std::string body = "<privenc>";
    for (const QString& chunk : chunks) body += "<enc>" + chunk.toStdString() + "</enc>";
    return Document(body + "</privenc>");
  };
  SXmatl good;
  ASSERT_TRUE(ReadAllowed(good, document("<privenc><bias_defs><bias name=\"b\"/></bias_defs></privenc>"), "p"))
      << Reports();
  ASSERT_EQ(good.GetData().biases.size(), 1u);
  EXPECT_TRUE(good.GetData().biases[0].isPrivate);

  itsCapture->Clear();
  SXmatl wrongRoot;
  EXPECT_FALSE(ReadAllowed(wrongRoot, document("<private/>"), "p"));
  EXPECT_EQ(Errors(), std::vector<int>({20556}));

  // A failing block of the part is told after the failure itself.
  const struct {
    const char* inner;
    std::vector<int> numbers;
  } blocks[] = {{"<privenc><materials><conductor/></materials></privenc>", {20518, 20510}},
                {"<privenc><stackup><diel/></stackup></privenc>", {20526, 20513}},
                {"<privenc><diel_map><dielmap/></diel_map></privenc>", {20515, 20515}}};
  for (const auto& block : blocks) {
    itsCapture->Clear();
    SXmatl xmatl;
    EXPECT_FALSE(ReadAllowed(xmatl, document(block.inner), "p")) << block.inner;
    EXPECT_EQ(Errors(), block.numbers) << block.inner << "\n" << Reports();
  }
}

}  // namespace
