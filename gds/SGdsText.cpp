// The text form of a stream read back into bytes (-A): hexadecimal pairs and
// typed numbers on lines that begin with a digit; all other lines are
// comments, which is what lets a -S dump be read again.

#include <cmath>
#include <cstdlib>
#include <cstring>

#include "SGdsDebug.h"
#include "SGdsInput.h"
#include "SGdsRecord.h"

namespace {

char itsTextLine[256];
int itsTextCursor = 0;
bool itsTextLineOpen = false;
int itsTextLineCount = 0;
// The piece in the buffer was cut at its size rather than ended by a newline
// or by the end of the input.
bool itsTextLineCut = false;

void (*theTextFailure)() = nullptr;

[[noreturn]] void Fail()
{
    if (theTextFailure)
        theTextFailure();
    // The copy of what was read so far stays, as for a binary stream that breaks off.
    if (SGdsOutput* output = GetGdsOutputDevice())
        output->Close();
    exit(1);
}

bool IsBlank(char c)
{
    return c == ' ' || c == '\t' || c == ',' || c == '\r' || c == '(' || c == ')';
}

int HexValue(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

// Reads up to 255 bytes of one line; false at the end of the input.
bool ReadPiece(SGdsInput& input)
{
    int length = 0;
    int c = 0;
    while (length < 255 && (c = input.Get()) >= 0) {
        itsTextLine[length++] = char(c);
        if (c == '\n')
            break;
    }
    itsTextLine[length] = '\0';
    itsTextCursor = 0;
    itsTextLineCut = length == 255 && itsTextLine[254] != '\n';
    return length > 0;
}

void SkipBlanks()
{
    while (IsBlank(itsTextLine[itsTextCursor]))
        ++itsTextCursor;
}

// The next character of the line; the terminating zero is not passed.
char Take()
{
    char c = itsTextLine[itsTextCursor];
    if (c != '\0')
        ++itsTextCursor;
    return c;
}

void StoreInteger(unsigned char* out, int width, double value, double scale)
{
    // Rounds half up, and below zero one further down: -1 stays -1 and
    // -100 stays -100. Values beyond any width (or a zero scale) store 0.
    double x = value / scale + 0.5;
    long long t = 0;
    if (std::isfinite(x) && std::fabs(x) < 9.0e18) {
        t = (long long)x;
        if (x < 0)
            --t;
    }
    unsigned long long bits = (unsigned long long)t;
    for (int i = width - 1; i >= 0; --i) {
        out[i] = static_cast<unsigned char>(bits & 0xff);
        bits >>= 8;
    }
}

} // namespace

void ResetTextReader()
{
    itsTextCursor = 0;
    itsTextLineOpen = false;
    itsTextLineCount = 0;
    itsTextLine[0] = '\0';
}

bool TextInputPending()
{
    if (!itsTextLineOpen)
        return false;
    for (int i = itsTextCursor; itsTextLine[i] != '\0' && itsTextLine[i] != '\n'; ++i) {
        if (!IsBlank(itsTextLine[i]))
            return true;
    }
    return false;
}

void SetTextFailureHandler(void (*handler)())
{
    theTextFailure = handler;
}

int ReadText(unsigned char* buffer, int count, SGdsInput& input)
{
    if (count <= 0)
        return 0;
    int delivered = 0;
    for (;;) {
        if (!itsTextLineOpen) {
            for (;;) {
                if (!ReadPiece(input))
                    return delivered;
                ++itsTextLineCount;
                if (itsTextLine[0] >= '0' && itsTextLine[0] <= '9')
                    break;
            }
            // The address in front of the data is not used.
            while (itsTextLine[itsTextCursor] != '\0' && itsTextLine[itsTextCursor] != ' ' &&
                   itsTextLine[itsTextCursor] != '\t' && itsTextLine[itsTextCursor] != '\n')
                ++itsTextCursor;
            itsTextLineOpen = true;
        }
        SkipBlanks();
        char c = Take();
        if (c == '\n' || (c == '\0' && itsTextLineCut)) {
            itsTextLineOpen = false;
            if (delivered < count)
                continue;
            return delivered;
        }
        int width = c == 'I' ? 2 : c == 'L' ? 4 : c == 'R' ? 8 : 1;
        if (delivered == count && width == 1) {
            // Behind a typed item that filled the request: the pair is read
            // by the next call.
            if (c != '\0')
                --itsTextCursor;
            return delivered;
        }
        SkipBlanks();
        if (width == 1) {
            char second = Take();
            while (IsBlank(second))
                second = Take();
            if (second == '\n') {
                GdsError("Uneven number of hex digits on line %d\n", itsTextLineCount);
                Fail();
            }
            int high = HexValue(c);
            int low = HexValue(second);
            if (high < 0 || low < 0) {
                char bad = high < 0 ? c : second;
                GdsError("Bad character %c (%o) on line %d\n", bad, (unsigned)(unsigned char)bad, itsTextLineCount);
                Fail();
            }
            buffer[delivered++] = static_cast<unsigned char>(high * 16 + low);
            SkipBlanks();
            if (delivered == count)
                return delivered;
            continue;
        }
        if (count - delivered < width) {
            GdsError("Overrun of buffer on line %d\n", itsTextLineCount);
            Fail();
        }
        char conversion = Take();
        double scale;
        if (conversion == '=') {
            scale = SGdsRecord::GetScale();
        } else if (conversion == ':') {
            scale = 1.0;
        } else {
            GdsError("Conversion character must be = or :, it is %c, on line %d\n", conversion, itsTextLineCount);
            Fail();
        }
        SkipBlanks();
        char number[256];
        int length = 0;
        while (strchr("0123456789+-.", itsTextLine[itsTextCursor]) && itsTextLine[itsTextCursor] != '\0')
            number[length++] = itsTextLine[itsTextCursor++];
        number[length] = '\0';
        if (width == 8) {
            SGdsTypeEightByteReal::Encode(strtod(number, nullptr) / scale, buffer + delivered);
        } else {
            StoreInteger(buffer + delivered, width, double(strtoll(number, nullptr, 10)), scale);
        }
        delivered += width;
        SkipBlanks();
    }
}
