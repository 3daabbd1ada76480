#include "SSafeSave.h"

#include <QFile>
#include <QFileInfo>
#include <cerrno>
#include <cstdlib>
#include <mutex>
#include <set>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {
// Saves under way: a run that ends through exit() (a fatal error, a text form that breaks
// off) takes their temporary files along rather than leaving them beside the targets.
std::mutex gOpenLock;
std::set<SSafeSave*>* gOpen = nullptr;

void RemoveOpenTemporaries() {
  std::set<SSafeSave*> open;
  {
    std::lock_guard<std::mutex> lock(gOpenLock);
    if (gOpen) open.swap(*gOpen);
  }
  for (SSafeSave* save : open) save->Abort();
}

void Register(SSafeSave* save) {
  std::lock_guard<std::mutex> lock(gOpenLock);
  if (!gOpen) {
    gOpen = new std::set<SSafeSave*>;
    std::atexit(RemoveOpenTemporaries);
  }
  gOpen->insert(save);
}

void Unregister(SSafeSave* save) {
  std::lock_guard<std::mutex> lock(gOpenLock);
  if (gOpen) gOpen->erase(save);
}

// A link to the project stays a link: the file it points to is the one replaced.
SString ResolveLink(const SString& path) {
  const QFileInfo info(path.qstring());
  return info.isSymLink() ? SString(info.symLinkTarget()) : path;
}

// Makes the rename itself durable; a directory that can't be opened is no failure of the save.
void SyncDirectoryOf(const QByteArray& path) {
  const QByteArray directory = QFile::encodeName(QFileInfo(QFile::decodeName(path)).absolutePath());
  const int fd = ::open(directory.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (fd < 0) return;
  (void)::fsync(fd);
  ::close(fd);
}
}  // namespace

SSafeSave::SSafeSave(const SString& target) : itsTarget(ResolveLink(target)) {}

ssize_t SSafeSave::WriteSome(int fd, const char* data, size_t size) { return ::write(fd, data, size); }

bool SSafeSave::Fail(const char* what, int error) {
  itsErrorText = SString::format("%s: %s", what, std::strerror(error));
  return false;
}

bool SSafeSave::Commit(const char* data, size_t size) { return Begin() && Append(data, size) && Finish(); }

bool SSafeSave::Begin() {
  itsErrorText.clear();
  const QByteArray target = QFile::encodeName(itsTarget.qstring());

  itsMode = 0666;
  struct stat old;
  itsHadOld = ::stat(target.constData(), &old) == 0;
  if (itsHadOld) {
    if (S_ISDIR(old.st_mode)) {
      itsHadOld = false;  // no file that a failure would leave unchanged
      return Fail("it is a directory", EISDIR);
    }
    // Renaming needs only the directory's permission; a file its owner protected stays.
    if (::access(target.constData(), W_OK) != 0) return Fail("the file is write-protected", errno);
    itsMode = old.st_mode & 07777;
  }

  // O_EXCL refuses whatever already stands at a name, symbolic links included; another
  // run's temporary file is never touched.
  const SString base = itsTarget + SString::format(".saving-%ld", static_cast<long>(::getpid()));
  for (int attempt = 0; attempt < 100; ++attempt) {
    itsTemporary = attempt == 0 ? base : base + SString::format("-%d", attempt);
    const QByteArray name = QFile::encodeName(itsTemporary.qstring());
    itsFd = ::open(name.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, itsMode);
    if (itsFd >= 0 || errno != EEXIST) break;
  }
  if (itsFd < 0) return Fail("cannot create the temporary file", errno);
  Register(this);
  itsWritten = 0;
  itsWriteback = 0;
  return true;
}

void SSafeSave::Abort() {
  if (itsFd < 0) return;
  ::close(itsFd);
  itsFd = -1;
  Unregister(this);
  ::unlink(QFile::encodeName(itsTemporary.qstring()).constData());
}

bool SSafeSave::Append(const char* data, size_t size) {
  if (itsFd < 0) return false;
  size_t done = 0;
  while (done < size) {
    const ssize_t n = WriteSome(itsFd, data + done, size - done);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) {
      const int error = n < 0 ? errno : ENOSPC;
      Abort();
      return Fail("cannot write the temporary file", error);
    }
    done += static_cast<size_t>(n);
  }
  itsWritten += static_cast<off_t>(size);
  // The disk starts on what is written while the rest is being made, so that the flush
  // at the end waits for little. Only a hint: its failure changes nothing.
  const off_t kStep = off_t(8) << 20;
  if (itsWritten - itsWriteback >= kStep) {
    (void)::sync_file_range(itsFd, itsWriteback, itsWritten - itsWriteback, SYNC_FILE_RANGE_WRITE);
    itsWriteback = itsWritten;
  }
  return true;
}

bool SSafeSave::Finish() {
  if (itsFd < 0) return false;
  const QByteArray target = QFile::encodeName(itsTarget.qstring());
  const QByteArray temporary = QFile::encodeName(itsTemporary.qstring());
  const int fd = itsFd;
  itsFd = -1;
  Unregister(this);
  if (itsHadOld) (void)::fchmod(fd, itsMode);  // the umask may have narrowed it
  if (::fsync(fd) != 0) {
    const int error = errno;
    ::close(fd);
    ::unlink(temporary.constData());
    return Fail("cannot flush the temporary file", error);
  }
  if (::close(fd) != 0) {
    const int error = errno;
    ::unlink(temporary.constData());
    return Fail("cannot close the temporary file", error);
  }
  if (::rename(temporary.constData(), target.constData()) != 0) {
    const int error = errno;
    ::unlink(temporary.constData());
    return Fail("cannot replace the file", error);
  }
  SyncDirectoryOf(target);
  return true;
}
