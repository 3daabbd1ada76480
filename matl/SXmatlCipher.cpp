#include "SXmatlCipher.h"

#include <QCryptographicHash>
#include <QFile>

#include <openssl/evp.h>

#include <memory>

namespace {

const EVP_CIPHER* Cipher(QAESEncryption::Aes level, QAESEncryption::Mode mode) {
  switch (level) {
  case QAESEncryption::AES_128:
    return mode == QAESEncryption::ECB   ? EVP_aes_128_ecb()
           : mode == QAESEncryption::CBC ? EVP_aes_128_cbc()
           : mode == QAESEncryption::OFB ? EVP_aes_128_ofb()
                                         : EVP_aes_128_cfb128();
  case QAESEncryption::AES_192:
    return mode == QAESEncryption::ECB   ? EVP_aes_192_ecb()
           : mode == QAESEncryption::CBC ? EVP_aes_192_cbc()
           : mode == QAESEncryption::OFB ? EVP_aes_192_ofb()
                                         : EVP_aes_192_cfb128();
  default:
    return mode == QAESEncryption::ECB   ? EVP_aes_256_ecb()
           : mode == QAESEncryption::CBC ? EVP_aes_256_cbc()
           : mode == QAESEncryption::OFB ? EVP_aes_256_ofb()
                                         : EVP_aes_256_cfb128();
  }
}

} // namespace

QAESEncryption::QAESEncryption(Aes level, Mode mode, Padding padding)
    : itsLevel(level), itsMode(mode), itsPadding(padding) {}

QByteArray QAESEncryption::pad(const QByteArray& raw) const {
  const int rest = raw.size() % kBlockSize;
  if (rest == 0 && itsPadding != PKCS7) return raw;
  QByteArray padded = raw;
  const int count = kBlockSize - rest;
  switch (itsPadding) {
  case ISO:
    padded.append(char(0x80));
    padded.append(QByteArray(count - 1, '\0'));
    break;
  case PKCS7:
    padded.append(QByteArray(count, char(count)));
    break;
  default:
    padded.append(QByteArray(count, '\0'));
    break;
  }
  return padded;
}

QByteArray QAESEncryption::removePadding(const QByteArray& raw) const {
  QByteArray data = raw;
  switch (itsPadding) {
  case ISO: {
    // Zeros, then the 0x80 that starts the padding; a text without it had none.
    int end = data.size();
    while (end > 0 && data.at(end - 1) == '\0') --end;
    if (end > 0 && static_cast<unsigned char>(data.at(end - 1)) == 0x80 && data.size() - end < kBlockSize)
      data.truncate(end - 1);
    break;
  }
  case PKCS7: {
    const int count = data.isEmpty() ? 0 : static_cast<unsigned char>(data.at(data.size() - 1));
    if (count > 0 && count <= kBlockSize && count <= data.size()) data.chop(count);
    break;
  }
  default:
    while (!data.isEmpty() && data.at(data.size() - 1) == '\0') data.chop(1);
    break;
  }
  return data;
}

QByteArray QAESEncryption::Run(const QByteArray& data, const QByteArray& key, const QByteArray& iv,
                               bool encrypt) const {
  const EVP_CIPHER* cipher = Cipher(itsLevel, itsMode);
  if (key.size() != EVP_CIPHER_key_length(cipher)) return QByteArray();
  if (EVP_CIPHER_iv_length(cipher) > 0 && iv.size() != EVP_CIPHER_iv_length(cipher)) return QByteArray();
  std::unique_ptr<EVP_CIPHER_CTX, void (*)(EVP_CIPHER_CTX*)> context(EVP_CIPHER_CTX_new(), EVP_CIPHER_CTX_free);
  if (!context) return QByteArray();
  const auto* keyBytes = reinterpret_cast<const unsigned char*>(key.constData());
  const auto* ivBytes = reinterpret_cast<const unsigned char*>(iv.constData());
  if (EVP_CipherInit_ex(context.get(), cipher, nullptr, keyBytes, ivBytes, encrypt ? 1 : 0) != 1)
    return QByteArray();
  // The padding is ours, done before and undone after.
  EVP_CIPHER_CTX_set_padding(context.get(), 0);
  QByteArray out(data.size() + EVP_CIPHER_block_size(cipher), '\0');
  int written = 0;
  int last = 0;
  auto* outBytes = reinterpret_cast<unsigned char*>(out.data());
  if (EVP_CipherUpdate(context.get(), outBytes, &written, reinterpret_cast<const unsigned char*>(data.constData()),
                       data.size()) != 1 ||
      EVP_CipherFinal_ex(context.get(), outBytes + written, &last) != 1)
    return QByteArray();
  out.truncate(written + last);
  return out;
}

QByteArray QAESEncryption::encode(const QByteArray& raw, const QByteArray& key, const QByteArray& iv) const {
  return Run(pad(raw), key, iv, true);
}

QByteArray QAESEncryption::decode(const QByteArray& raw, const QByteArray& key, const QByteArray& iv) const {
  return Run(raw, key, iv, false);
}

namespace SXmatlCipher {

bool ReadKeyText(const SString& keyFile, SString& keyText) {
  QFile file(keyFile.qstring());
  if (!file.open(QIODevice::ReadOnly)) return false;
  QByteArray line = file.readLine();
  while (line.endsWith('\n') || line.endsWith('\r')) line.chop(1);
  if (line.isEmpty()) return false;
  keyText = SString(QString::fromUtf8(line));
  return true;
}

QByteArray Key(const SString& keyText) {
  return QCryptographicHash::hash(keyText.qstring().toLocal8Bit(), QCryptographicHash::Sha256);
}

const QByteArray& InitialVector() {
  // Any fixed 16 bytes serve, as long as both directions use them.
  static const QByteArray vector = QByteArray::fromHex("5e1f0a9c3b7d42e8a6c1f0d2947b3e65");
  return vector;
}

QByteArray EncryptData(const QByteArray& plain, const SString& keyText) {
  return QAESEncryption(QAESEncryption::AES_256, QAESEncryption::CFB, QAESEncryption::ISO)
      .encode(plain, Key(keyText), InitialVector());
}

bool DecryptData(const QByteArray& cipher, const SString& keyText, QByteArray& plain) {
  if (keyText.isEmpty() || cipher.isEmpty()) return false;
  QAESEncryption aes(QAESEncryption::AES_256, QAESEncryption::CFB, QAESEncryption::ISO);
  const QByteArray data = aes.decode(cipher, Key(keyText), InitialVector());
  if (data.isEmpty()) return false;
  plain = aes.removePadding(data);
  return true;
}

QStringList ToHexChunks(const QByteArray& cipher) {
  QStringList chunks;
  for (int at = 0; at < cipher.size(); at += kChunkBytes)
    chunks.append(QString::fromLatin1(cipher.mid(at, kChunkBytes).toHex()));
  return chunks;
}

QByteArray FromHexChunks(const QStringList& chunks) {
  QByteArray bytes;
  for (const QString& chunk : chunks) bytes.append(QByteArray::fromHex(chunk.trimmed().toLatin1()));
  return bytes;
}

} // namespace SXmatlCipher
