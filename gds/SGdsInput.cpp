#include "SGdsInput.h"

#include "SProgress.h"

#include <QFile>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {
const size_t kBufferSize = 1 << 20;
const size_t kSmallestBuffer = 4096;
}

SGdsInput::~SGdsInput()
{
    Close();
}

bool SGdsInput::Open(const SString& name)
{
    Close();
    int fd = ::open(QFile::encodeName(name.qstring()).constData(), O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        return false;
    struct stat info;
    if (fstat(fd, &info) != 0 || S_ISDIR(info.st_mode)) {
        ::close(fd);
        return false;
    }
    // A small file gets a buffer of its size: a megabyte for each of many small streams in
    // one process (the fuzz targets, the tests) is mapped and unmapped every time.
    itsSize = kBufferSize;
    if (S_ISREG(info.st_mode) && info.st_size >= 0 && size_t(info.st_size) < kBufferSize)
        itsSize = std::max(kSmallestBuffer, size_t(info.st_size) + 1);
    itsBuffer = static_cast<unsigned char*>(malloc(itsSize));
    if (!itsBuffer) {
        ::close(fd);
        return false;
    }
    itsFd = fd;
    itsCursor = itsFill = 0;
    itsEof = false;
    itsFileSize = S_ISREG(info.st_mode) && info.st_size > 0 ? uint64_t(info.st_size) : 0;
    itsBytesRead = 0;
    return true;
}

void SGdsInput::Close()
{
    if (itsFd >= 0)
        ::close(itsFd);
    itsFd = -1;
    free(itsBuffer);
    itsBuffer = nullptr;
    itsCursor = itsFill = 0;
    itsEof = true;
}

bool SGdsInput::Fill()
{
    if (itsEof || itsFd < 0)
        return false;
    itsCursor = itsFill = 0;
    for (;;) {
        ssize_t got = ::read(itsFd, itsBuffer, itsSize);
        if (got > 0) {
            itsFill = size_t(got);
            itsBytesRead += uint64_t(got);
            Progress().Update(itsBytesRead);
            return true;
        }
        if (got < 0 && errno == EINTR)
            continue;
        // A read error ends the input like the end of the file: the caller
        // then reports a short record.
        itsEof = true;
        return false;
    }
}

size_t SGdsInput::Read(unsigned char* dest, size_t count)
{
    size_t done = 0;
    while (done < count) {
        if (itsCursor == itsFill && !Fill())
            break;
        size_t take = itsFill - itsCursor;
        if (take > count - done)
            take = count - done;
        memcpy(dest + done, itsBuffer + itsCursor, take);
        itsCursor += take;
        done += take;
    }
    return done;
}

bool SGdsInput::AtEnd()
{
    return itsCursor == itsFill && !Fill();
}

SGdsOutput::~SGdsOutput()
{
    Discard();
}

bool SGdsOutput::Open(const SString& name)
{
    Discard();
    itsSave = new SSafeSave(name);
    itsFill = 0;
    itsFailed = false;
    itsBuffer = static_cast<unsigned char*>(malloc(kBufferSize));
    itsErrorText.clear();
    if (!itsBuffer || !itsSave->Begin())
        return Fail();
    return true;
}

void SGdsOutput::Write(const unsigned char* data, size_t count)
{
    if (!itsSave || itsFailed)
        return;
    while (count > 0) {
        if (itsFill == kBufferSize && !Flush())
            return;
        size_t take = kBufferSize - itsFill;
        if (take > count)
            take = count;
        memcpy(itsBuffer + itsFill, data, take);
        itsFill += take;
        data += take;
        count -= take;
    }
}

bool SGdsOutput::Flush()
{
    if (itsFill > 0 && !itsSave->Append(reinterpret_cast<const char*>(itsBuffer), itsFill))
        Fail();
    itsFill = 0;
    return !itsFailed;
}

bool SGdsOutput::Close()
{
    if (!itsSave)
        return !itsFailed;
    bool ok = !itsFailed && Flush() && itsSave->Finish();
    if (!ok)
        Fail();
    itsSave->Abort();
    delete itsSave;
    itsSave = nullptr;
    free(itsBuffer);
    itsBuffer = nullptr;
    return ok;
}

void SGdsOutput::Discard()
{
    if (itsSave)
        itsSave->Abort();
    delete itsSave;
    itsSave = nullptr;
    free(itsBuffer);
    itsBuffer = nullptr;
    itsFill = 0;
}

bool SGdsOutput::Fail()
{
    itsFailed = true;
    if (itsSave && itsErrorText.isEmpty())
        itsErrorText = itsSave->GetErrorText();
    return false;
}
