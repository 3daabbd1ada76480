#ifndef SSAFESAVE_H
#define SSAFESAVE_H

#include "SString.h"

#include <cstddef>
#include <string>
#include <sys/types.h>

// Replaces a file only when its new content is complete: the text goes to a temporary file
// beside the target (same directory, so the final rename is atomic), is flushed to disk, and
// only then renamed over the old file. Any failure removes the temporary file and leaves
// the old one as it was. Every run has a temporary file of its own, so that two runs saving
// one target at once each rename a whole file, and the last rename wins.
class SSafeSave {
public:
  explicit SSafeSave(const SString& target);
  virtual ~SSafeSave() {
    if (itsFd >= 0) Abort();
  }
  SSafeSave(const SSafeSave&) = delete;
  SSafeSave& operator=(const SSafeSave&) = delete;

  bool Commit(const char* data, size_t size);
  bool Commit(const std::string& text) { return Commit(text.data(), text.size()); }

  // The same in pieces, for text too large to hold at once: Begin, any number of Append,
  // then Finish; Abort (or a failed step) removes the temporary file.
  bool Begin();
  bool Append(const char* data, size_t size);
  bool Finish();
  void Abort();

  const SString& GetTarget() const { return itsTarget; }
  // "<target>.saving-<pid>[-n]", known once Begin has made it; a run killed while saving
  // leaves it behind beside the untouched target.
  const SString& GetTemporaryName() const { return itsTemporary; }
  // Whether a file stood at the target when the save began: only then is there a previous
  // file that a failure leaves unchanged.
  bool HadOld() const { return itsHadOld; }
  // Why the last Commit failed, in the system's words.
  const SString& GetErrorText() const { return itsErrorText; }

protected:
  // One write(2); a seam for tests that need a device which fills up.
  virtual ssize_t WriteSome(int fd, const char* data, size_t size);

private:
  bool Fail(const char* what, int error);

  SString itsTarget;
  SString itsTemporary;
  SString itsErrorText;
  int itsFd = -1;
  // Bytes written, and how far the disk has been asked to take them.
  off_t itsWritten = 0;
  off_t itsWriteback = 0;
  bool itsHadOld = false;
  mode_t itsMode = 0666;
};

#endif
