#include "SFileNameCodec.h"

#include <QTextCodec>

namespace {

const ushort kEscape = 0xDC00;

// Length of the valid UTF-8 sequence at text, or 0 when it isn't one.
int SequenceLength(const unsigned char* text, int left) {
  const unsigned char lead = text[0];
  int length;
  uint value;
  if (lead < 0x80) return 1;
  if (lead >= 0xC2 && lead <= 0xDF) {
    length = 2;
    value = lead & 0x1F;
  } else if (lead >= 0xE0 && lead <= 0xEF) {
    length = 3;
    value = lead & 0x0F;
  } else if (lead >= 0xF0 && lead <= 0xF4) {
    length = 4;
    value = lead & 0x07;
  } else {
    return 0;
  }
  if (left < length) return 0;
  for (int i = 1; i < length; ++i) {
    if ((text[i] & 0xC0) != 0x80) return 0;
    value = value << 6 | (text[i] & 0x3F);
  }
  // Overlong forms, surrogates and values past the last code point stay bytes.
  if ((length == 3 && value < 0x800) || (length == 4 && (value < 0x10000 || value > 0x10FFFF))) return 0;
  if (value >= 0xD800 && value <= 0xDFFF) return 0;
  return length;
}

class SFileNameCodec : public QTextCodec {
public:
  QByteArray name() const override { return "UTF-8-escaped-bytes"; }
  int mibEnum() const override { return -4000; }

protected:
  QString convertToUnicode(const char* in, int length, ConverterState*) const override {
    QString out;
    out.reserve(length);
    const auto* text = reinterpret_cast<const unsigned char*>(in);
    int at = 0;
    while (at < length) {
      const int n = SequenceLength(text + at, length - at);
      if (n == 0) {
        out += QChar(ushort(kEscape + text[at]));
        ++at;
      } else {
        out += QString::fromUtf8(in + at, n);
        at += n;
      }
    }
    return out;
  }

  QByteArray convertFromUnicode(const QChar* in, int length, ConverterState*) const override {
    QByteArray out;
    out.reserve(length);
    int start = 0;
    auto flush = [&](int end) {
      if (end > start) out += QString(in + start, end - start).toUtf8();
    };
    for (int i = 0; i < length; ++i) {
      const ushort code = in[i].unicode();
      if (code >= kEscape + 0x80 && code <= kEscape + 0xFF) {
        flush(i);
        out += char(code - kEscape);
        start = i + 1;
      }
    }
    flush(length);
    return out;
  }
};

}  // namespace

void SInstallFileNameCodec() {
  // Qt keeps every codec made for the life of the process.
  static SFileNameCodec* codec = new SFileNameCodec;
  QTextCodec::setCodecForLocale(codec);
}
