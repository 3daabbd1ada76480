#include "SProjectFile.h"

#include <QIODevice>
#include <QTextStream>

#include <cstring>

namespace {
const size_t kChunk = size_t(4) << 20;
// A longer line goes back to the token reader, which takes lines of any length.
const size_t kLongestLine = size_t(64) << 20;
}  // namespace

SProjectFile::SProjectFile() { SetCommentEscape("<"); }

bool SProjectFile::BeginRaw() {
  QIODevice* device = itsStream != nullptr ? itsStream->device() : nullptr;
  if (device == nullptr || device->isSequential() || !IsOk()) return false;
  // The text stream reads ahead; its position is that of the text handed out so far.
  const qint64 offset = itsStream->pos();
  if (offset < 0 || !device->seek(offset)) return false;
  itsMark.offset = offset;
  itsMark.lines = itsLineCount;
  itsBegin = itsEnd = 0;
  itsDeviceEnd = false;
  if (itsBuffer.empty()) itsBuffer.resize(kChunk);
  return true;
}

bool SProjectFile::Refill() {
  if (itsBegin > 0) {
    std::memmove(itsBuffer.data(), itsBuffer.data() + itsBegin, itsEnd - itsBegin);
    itsEnd -= itsBegin;
    itsBegin = 0;
  }
  if (itsEnd == itsBuffer.size()) {
    if (itsBuffer.size() >= kLongestLine) return false;
    itsBuffer.resize(itsBuffer.size() * 2);
  }
  const qint64 n = itsStream->device()->read(itsBuffer.data() + itsEnd, static_cast<qint64>(itsBuffer.size() - itsEnd));
  if (n <= 0)
    itsDeviceEnd = true;
  else
    itsEnd += static_cast<size_t>(n);
  return true;
}

bool SProjectFile::RawLine(const char*& begin, const char*& end) {
  for (;;) {
    const char* first = itsBuffer.data() + itsBegin;
    const size_t available = itsEnd - itsBegin;
    const char* feed = available > 0 ? static_cast<const char*>(std::memchr(first, '\n', available)) : nullptr;
    if (feed != nullptr || (itsDeviceEnd && available > 0)) {
      // The last line of a file may lack its line feed.
      const char* stop = feed != nullptr ? feed : first + available;
      const size_t taken = static_cast<size_t>(stop - first) + (feed != nullptr ? 1 : 0);
      begin = first;
      end = stop;
      itsBegin += taken;
      itsMark.offset += static_cast<qint64>(taken);
      ++itsMark.lines;
      return true;
    }
    if (itsDeviceEnd || !Refill()) return false;
  }
}

bool SProjectFile::EndRaw(const Mark& mark) {
  itsBegin = itsEnd = 0;
  DropTokens();
  itsLine.clear();
  itsLineCount = mark.lines;
  itsMark = mark;
  return itsStream->seek(mark.offset);
}
