#ifndef SGDSINPUT_H
#define SGDSINPUT_H

#include <cstddef>
#include <cstdint>

#include "SSafeSave.h"

// A file read through one large buffer. Records are small, so reading them
// straight from the file system would cost a system call each.
class SGdsInput
{
public:
    SGdsInput() = default;
    ~SGdsInput();
    SGdsInput(const SGdsInput&) = delete;
    SGdsInput& operator=(const SGdsInput&) = delete;

    // Fails on a missing, unreadable or non-regular file.
    bool Open(const SString& name);
    void Close();
    bool IsOpen() const { return itsFd >= 0; }

    // Copies up to count bytes; fewer only at the end of the file.
    size_t Read(unsigned char* dest, size_t count);
    // One byte, or -1 at the end.
    int Get()
    {
        if (itsCursor == itsFill && !Fill())
            return -1;
        return itsBuffer[itsCursor++];
    }
    bool AtEnd();
    // Bytes of a regular file, 0 for anything else.
    uint64_t GetFileSize() const { return itsFileSize; }

private:
    bool Fill();

    int itsFd = -1;
    unsigned char* itsBuffer = nullptr;
    size_t itsSize = 0;
    size_t itsCursor = 0;
    size_t itsFill = 0;
    bool itsEof = false;
    uint64_t itsFileSize = 0;
    // Told to the progress line at each buffer filled.
    uint64_t itsBytesRead = 0;
};

// The -G copy: every byte that leaves the input is appended here. It is saved like every
// file the program writes: it replaces a file of that name only once it is complete.
class SGdsOutput
{
public:
    SGdsOutput() = default;
    ~SGdsOutput();
    SGdsOutput(const SGdsOutput&) = delete;
    SGdsOutput& operator=(const SGdsOutput&) = delete;

    bool Open(const SString& name);
    void Write(const unsigned char* data, size_t count);
    // Puts the copy in place; false when any write failed, and then nothing is written.
    bool Close();
    // Drops the copy: the file of that name stays as it was.
    void Discard();
    // Why the copy could not be written, in the system's words.
    const char* GetErrorText() const { return itsErrorText.data(); }

private:
    bool Flush();
    bool Fail();

    SSafeSave* itsSave = nullptr;
    unsigned char* itsBuffer = nullptr;
    size_t itsFill = 0;
    bool itsFailed = false;
    SString itsErrorText;
};

#endif
