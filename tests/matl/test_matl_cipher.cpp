// The cipher of enciphered private parts, against values that the openssl command line gives
// for the same key, vector and padded text:
//   printf 'velora pass phrase' | openssl dgst -sha256
//   openssl enc -aes-256-cfb -K <that digest> -iv 5e1f0a9c3b7d42e8a6c1f0d2947b3e65 -in <padded text>

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

#include "SXmatlCipher.h"

namespace {

const char* const kPhrase = "velora pass phrase";

QByteArray Hex(const char* text) { return QByteArray::fromHex(text); }

} // namespace

TEST(Cipher, KeyIsTheDigestOfThePassPhrase) {
  EXPECT_EQ(SXmatlCipher::Key(kPhrase).toHex(), "a9d90c380ed9d5728eac19c4e48e499f0c1d8620ede3c53be1d480973182496f");
  EXPECT_EQ(SXmatlCipher::InitialVector().toHex(), "5e1f0a9c3b7d42e8a6c1f0d2947b3e65");
}

TEST(Cipher, CipherTextEqualsTheCommandLinesOne) {
  struct SCase {
    QByteArray plain;
    const char* cipher;
  };
  const SCase cases[] = {
      // 25 bytes: padded with 0x80 and six zeros.
      {"<privenc>secret</privenc>", "331de68bd7d8d7211d8e13d7dc0ca35633198705cb91fa86c225902273cf04e9"},
      // A whole block gets no padding.
      {"0123456789abcdef", "3f5ca6d195888f751bc417d6cd0db20c"},
  };
  for (const SCase& c : cases) {
    SCOPED_TRACE(c.plain.toStdString());
    const QByteArray cipher = SXmatlCipher::EncryptData(c.plain, kPhrase);
    EXPECT_EQ(cipher.toHex(), QByteArray(c.cipher));
    QByteArray back;
    ASSERT_TRUE(SXmatlCipher::DecryptData(cipher, kPhrase, back));
    EXPECT_EQ(back, c.plain);
  }
}

TEST(Cipher, AnotherKeyGivesOtherText) {
  const QByteArray plain = "<privenc><materials/></privenc>";
  QByteArray back;
  ASSERT_TRUE(SXmatlCipher::DecryptData(SXmatlCipher::EncryptData(plain, kPhrase), "another phrase", back));
  EXPECT_NE(back, plain);
  EXPECT_FALSE(SXmatlCipher::DecryptData(SXmatlCipher::EncryptData(plain, kPhrase), "", back));
  EXPECT_FALSE(SXmatlCipher::DecryptData(QByteArray(), kPhrase, back));
}

TEST(Cipher, PaddingComesOffOnlyWhereItWasPut) {
  QAESEncryption aes(QAESEncryption::AES_256, QAESEncryption::CFB, QAESEncryption::ISO);
  EXPECT_EQ(aes.pad("abc").toHex(), "61626380000000000000000000000000");
  EXPECT_EQ(aes.removePadding(aes.pad("abc")), QByteArray("abc"));
  // A text that ends in zeros without the 0x80 before them had no padding.
  EXPECT_EQ(aes.removePadding(Hex("616263000000")), Hex("616263000000"));
  EXPECT_EQ(aes.removePadding(Hex("00112233445566778899aabbccddeeff")), Hex("00112233445566778899aabbccddeeff"));
  // Wrong key or vector sizes give nothing rather than a wrong cipher.
  EXPECT_TRUE(aes.encode("abc", "short", SXmatlCipher::InitialVector()).isEmpty());
  EXPECT_TRUE(aes.encode("abc", SXmatlCipher::Key(kPhrase), "short").isEmpty());
}

TEST(Cipher, CipherTextTravelsInChunksOf128Bytes) {
  QByteArray cipher;
  for (int i = 0; i < 300; ++i) cipher.append(char(i * 7));
  const QStringList chunks = SXmatlCipher::ToHexChunks(cipher);
  ASSERT_EQ(chunks.size(), 3);
  EXPECT_EQ(chunks[0].size(), 256);
  EXPECT_EQ(chunks[2].size(), 2 * (300 - 256));
  EXPECT_EQ(chunks[0], chunks[0].toLower());
  EXPECT_EQ(SXmatlCipher::FromHexChunks(chunks), cipher);
}

TEST(Cipher, KeyTextIsTheKeyFilesFirstLine) {
  QTemporaryDir dir;
  const QString path = dir.filePath("key.txt");
  QFile file(path);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.write("pass phrase \xc3\xa9\r\nsecond line\n");
  file.close();
  SString text;
  ASSERT_TRUE(SXmatlCipher::ReadKeyText(SString(path), text));
  EXPECT_EQ(text.qstring(), QString::fromUtf8("pass phrase \xc3\xa9"));
  EXPECT_FALSE(SXmatlCipher::ReadKeyText(SString(dir.filePath("none.txt")), text));
  QFile empty(dir.filePath("empty.txt"));
  ASSERT_TRUE(empty.open(QIODevice::WriteOnly));
  empty.write("\nsecond\n");
  empty.close();
  EXPECT_FALSE(SXmatlCipher::ReadKeyText(SString(dir.filePath("empty.txt")), text));
}
