#include "SGdsInput.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {
const size_t kBufferSize = 1 << 20;
}

SGdsInput::~SGdsInput()
{
    Close();
}

bool SGdsInput::Open(const char* name)
{
    Close();
    int fd = ::open(name, O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        return false;
    struct stat info;
    if (fstat(fd, &info) != 0 || S_ISDIR(info.st_mode)) {
        ::close(fd);
        return false;
    }
    itsBuffer = static_cast<unsigned char*>(malloc(kBufferSize));
    if (!itsBuffer) {
        ::close(fd);
        return false;
    }
    itsFd = fd;
    itsCursor = itsFill = 0;
    itsEof = false;
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
        ssize_t got = ::read(itsFd, itsBuffer, kBufferSize);
        if (got > 0) {
            itsFill = size_t(got);
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
    Close();
}

bool SGdsOutput::Open(const char* name)
{
    Close();
    int fd = ::open(name, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    if (fd < 0)
        return false;
    itsBuffer = static_cast<unsigned char*>(malloc(kBufferSize));
    if (!itsBuffer) {
        ::close(fd);
        return false;
    }
    itsFd = fd;
    itsFill = 0;
    itsFailed = false;
    return true;
}

void SGdsOutput::Write(const unsigned char* data, size_t count)
{
    if (itsFd < 0)
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
    size_t done = 0;
    while (done < itsFill) {
        ssize_t put = ::write(itsFd, itsBuffer + done, itsFill - done);
        if (put < 0 && errno == EINTR)
            continue;
        if (put <= 0) {
            itsFailed = true;
            itsFill = 0;
            return false;
        }
        done += size_t(put);
    }
    itsFill = 0;
    return true;
}

bool SGdsOutput::Close()
{
    if (itsFd < 0)
        return !itsFailed;
    Flush();
    if (::close(itsFd) != 0)
        itsFailed = true;
    itsFd = -1;
    free(itsBuffer);
    itsBuffer = nullptr;
    return !itsFailed;
}
