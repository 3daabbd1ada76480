#ifndef SGDSINPUT_H
#define SGDSINPUT_H

#include <cstddef>
#include <cstdint>

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
    bool Open(const char* name);
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

private:
    bool Fill();

    int itsFd = -1;
    unsigned char* itsBuffer = nullptr;
    size_t itsCursor = 0;
    size_t itsFill = 0;
    bool itsEof = false;
};

// The -G copy: every byte that leaves the input is appended here.
class SGdsOutput
{
public:
    SGdsOutput() = default;
    ~SGdsOutput();
    SGdsOutput(const SGdsOutput&) = delete;
    SGdsOutput& operator=(const SGdsOutput&) = delete;

    bool Open(const char* name);
    void Write(const unsigned char* data, size_t count);
    // False when any write failed.
    bool Close();

private:
    bool Flush();

    int itsFd = -1;
    unsigned char* itsBuffer = nullptr;
    size_t itsFill = 0;
    bool itsFailed = false;
};

#endif
