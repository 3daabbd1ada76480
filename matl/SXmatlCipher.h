#ifndef SXMATLCIPHER_H
#define SXMATLCIPHER_H

#include "SString.h"

#include <QByteArray>
#include <QStringList>

// AES over OpenSSL's EVP interface, for the enciphered private part of a technology file.
// Only what that part uses: a 256-bit key, CFB mode, and ISO padding (0x80, then zeros up to
// the block size; data whose length is a multiple of the block gets none).
class QAESEncryption {
public:
  enum Aes { AES_128 = 0, AES_192 = 1, AES_256 = 2 };
  enum Mode { ECB = 0, CBC = 1, CFB = 2, OFB = 3 };
  enum Padding { ZERO = 0, PKCS7 = 1, ISO = 2 };
  static const int kBlockSize = 16;

  QAESEncryption(Aes level = AES_256, Mode mode = CFB, Padding padding = ISO);

  // Pads, then enciphers; empty when the key or vector has the wrong size.
  QByteArray encode(const QByteArray& raw, const QByteArray& key, const QByteArray& iv) const;
  // Deciphers; the padding stays (removePadding takes it off).
  QByteArray decode(const QByteArray& raw, const QByteArray& key, const QByteArray& iv) const;
  QByteArray removePadding(const QByteArray& raw) const;
  // The data as encode enciphers it.
  QByteArray pad(const QByteArray& raw) const;

private:
  QByteArray Run(const QByteArray& data, const QByteArray& key, const QByteArray& iv, bool encrypt) const;

  Aes itsLevel;
  Mode itsMode;
  Padding itsPadding;
};

namespace SXmatlCipher {

// The bytes of a cipher text in each "enc" element.
const int kChunkBytes = 128;

// The first line of the key file, as UTF-8; false when the file can't be read or the line
// is empty.
bool ReadKeyText(const SString& keyFile, SString& keyText);
// The key: the SHA-256 digest of the pass phrase in the local 8-bit encoding.
QByteArray Key(const SString& keyText);
// The program's one initialisation vector, the same for both directions.
const QByteArray& InitialVector();
QByteArray EncryptData(const QByteArray& plain, const SString& keyText);
// False for an empty key text or cipher text; the padding is removed.
bool DecryptData(const QByteArray& cipher, const SString& keyText, QByteArray& plain);
// Lower-case hexadecimal, one string for each 128 bytes, in order.
QStringList ToHexChunks(const QByteArray& cipher);
// The bytes again; hexadecimal digits are read as QByteArray::fromHex reads them.
QByteArray FromHexChunks(const QStringList& chunks);

} // namespace SXmatlCipher

#endif
