#ifndef SPROJECTFILE_H
#define SPROJECTFILE_H

#include "SCommentedFile.h"

#include <QtGlobal>
#include <vector>

// The commented file a project is read from, with a second way through its lines: straight
// from the file's bytes, for a reader that can tell plain lines apart itself. The token
// reader spends most of a large read on the polygon lines; a read that drops them passes
// over them this way.
class SProjectFile : public SCommentedFile {
public:
  // Where raw reading stands: the byte offset of the next line and the lines counted before it.
  struct Mark {
    qint64 offset = 0;
    long long lines = 0;
  };

  // "!" comments, "&" continuations and the "!<" escape of project files.
  SProjectFile();

  // Raw reading from the line after the current one. False when the text comes from no
  // seekable device (text in memory, a pipe).
  bool BeginRaw();
  // The next physical line without its line feed; false at the end of the file, and for a
  // line longer than the reader takes whole.
  bool RawLine(const char*& begin, const char*& end);
  Mark RawMark() const { return itsMark; }
  // Back to the token reader: the next NextLine reads the line at `mark`. False when the
  // file can't be positioned there.
  bool EndRaw(const Mark& mark);

private:
  bool Refill();

  std::vector<char> itsBuffer;
  size_t itsBegin = 0;
  size_t itsEnd = 0;
  bool itsDeviceEnd = false;
  Mark itsMark;
};

#endif
