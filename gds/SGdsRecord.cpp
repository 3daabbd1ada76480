#include "SGdsRecord.h"

#include <cmath>
#include <cstring>

#include "SGdsDebug.h"
#include "SGdsInput.h"
#include "SProgress.h"

bool ShortFormat = false;
bool AsciiInput = false;
bool VerboseOutput = false;
bool ZeroBoxType = false;
bool ConvertBoxes = true;

namespace {

SGdsOutput* theOutputDevice = nullptr;
double theScale = 1.0;

// Dump state of the record being read; only one is read at a time.
int theDumpCount = 0;
int theDumpColumn = 0;

const char* const kRecordNames[] = {
    "HEADER", "BGNLIB", "LIBNAME", "UNITS", "ENDLIB", "BGNSTR", "STRNAME", "ENDSTR",
    "BOUNDARY", "PATH", "SREF", "AREF", "TEXT", "LAYER", "DATATYPE", "WIDTH", "XY",
    "ENDEL", "SNAME", "COLROW", "TEXTNODE", "NODE", "TEXTTYPE", "PRESENTATION",
    "SPACING", "STRING", "STRANS", "MAG", "ANGLE", "UINTEGER", "USTRING", "REFLIBS",
    "FONTS", "PATHTYPE", "GENERATIONS", "ATTRTABLE", "STYPTABLE", "STRTYPE", "ELFLAGS",
    "ELKEY", "LINKTYPE", "LINKKEYS", "NODETYPE", "POPATTR", "PROPVALUE", "BOX",
    "BOXTYPE", "PLEX", "BGNEXTN", "ENDTEXTN", "TAPENUM", "TAPECODE", "STRCLASS",
    "RESERVED", "FORMAT", "MASK", "ENDMASKS", "LIBDIRSIZE", "SRFNAME", "LIBSECUR"};

const char* const kDataTypeNames[] = {"NO_DATA", "BIT_ARRAY", "TWO_BYTE_INT", "FOUR_BYTE_INT",
                                      "FOUR_BYTE_REAL", "EIGHT_BYTE_REAL", "ASCII_STRING"};

bool Debug(int above) { return GdsDebug().GetLevel() > above; }

} // namespace

SGdsOutput* GetGdsOutputDevice() { return theOutputDevice; }
void SetGdsOutputDevice(SGdsOutput* device) { theOutputDevice = device; }

const char* GdsDataTypeName(int dataType)
{
    return dataType >= 0 && dataType <= 6 ? kDataTypeNames[dataType] : "UNKNOWN";
}

const char* GdsRecordName(int recordType)
{
    return recordType >= 0 && recordType <= 59 ? kRecordNames[recordType] : "UNKNOWN";
}

double SGdsRecord::GetScale() { return theScale; }
void SGdsRecord::SetScale(double scale) { theScale = scale; }

SGdsRecord::SGdsRecord(int64_t number, int64_t position)
    : itsNumberAndTypes((uint64_t(number) << 16) | 0xffff),
      itsPositionAndLength(uint64_t(position) << 16)
{
    theDumpCount = 0;
    theDumpColumn = 0;
}

size_t SGdsRecord::StorageSize()
const
{
    size_t data = size_t(GetDataLength());
    if (GetRecordType() == 6)
        data += 4; // room for the number of an unnamed structure
    return sizeof(SGdsRecord) + ((data + 7) & ~size_t(7));
}

bool SGdsRecord::ReadBytes(SGdsInput& file, unsigned char* buffer, int count)
{
    int got = AsciiInput ? ReadText(buffer, count, file) : int(file.Read(buffer, size_t(count)));
    if (theOutputDevice && got > 0)
        theOutputDevice->Write(buffer, size_t(got));
    if (got == count) {
        DumpBytes(buffer, count, false);
        return true;
    }
    DumpBytes(buffer, got, true);
    GdsError("Error in record %ld\n", long(GetRecordNumber()));
    GdsError("Unexpected end-of-file reached while reading record\n");
    return false;
}

bool SGdsRecord::ReadHeader(SGdsInput& file)
{
    if (Debug(2))
        GdsDebug().Print("--------\n");
    unsigned char header[4];
    if (!ReadBytes(file, header, 4))
        return false;
    int length = header[0] * 256 + header[1];
    int type = header[2];
    int dataType = header[3];
    itsPositionAndLength = (itsPositionAndLength & ~uint64_t(0xffff)) | uint64_t(length);
    itsNumberAndTypes = (itsNumberAndTypes & ~uint64_t(0xffff)) | (uint64_t(type) << 8) | uint64_t(dataType);
    long number = long(GetRecordNumber());
    if (length < 4) {
        GdsError("Error in record %ld\n", number);
        GdsError("Record length is less than 4 bytes\n");
        GdsError("Record Length = %d\n", length);
        return false;
    }
    if (type > 59) {
        GdsError("Error in record %ld\n", number);
        GdsError("Unknown record type encountered = %d\n", type);
        return false;
    }
    if (dataType > 6) {
        GdsError("Error in record %ld\n", number);
        GdsError("Unknown data type encountered = %d\n", dataType);
        return false;
    }
    return true;
}

bool SGdsRecord::ReadData(SGdsInput&)
{
    GdsError("INTERNAL ERROR: SGdsRecord::ReadData\n");
    return false;
}

void SGdsRecord::DumpEnd()
{
    if (GdsDebug().GetLevel() >= 3 || ShortFormat) {
        FILE* out = GdsDebug().Stream();
        Progress().ClearFor(out);
        fputc('\n', out);
        fflush(out);
    }
}

void SGdsRecord::DumpBytes(const unsigned char* bytes, int count, bool endLine)
{
    if (GdsDebug().GetLevel() < 3 && !ShortFormat)
        return;
    FILE* out = GdsDebug().Stream();
    Progress().ClearFor(out);
    int64_t position = GetPosition();
    if (theDumpCount == 0)
        fprintf(out, "%08llX  ", (unsigned long long)position);
    static const char kHex[] = "0123456789ABCDEF";
    for (int i = 0; i < count; ++i) {
        if (theDumpColumn > 15) {
            theDumpColumn = 0;
            fprintf(out, "\n%08llx  ", (unsigned long long)(position + theDumpCount));
        }
        ++theDumpCount;
        ++theDumpColumn;
        fputc(kHex[bytes[i] >> 4], out);
        fputc(kHex[bytes[i] & 15], out);
        if ((theDumpColumn & 1) == 0)
            fputc(' ', out);
    }
    if (endLine)
        fputc('\n', out);
    fflush(out);
}

void SGdsRecord::CopyHeader(const SGdsRecord& other)
{
    itsNumberAndTypes = other.itsNumberAndTypes;
    itsPositionAndLength = other.itsPositionAndLength;
}

int SGdsRecord::GetDataTypeNu() const
{
    GdsError("INTERNAL ERROR: SGdsRecord::GetDataTypeNu\n");
    return 99;
}

bool SGdsRecord::CheckHeader()
{
    int dataType = GetDataType();
    int length = GetLength();
    int expected = GetExpectedLength();
    if (dataType != GetDataTypeNu()) {
        GdsError("ERROR: Encountered a record with the wrong data type\n");
        GdsError("This record has a data type of %s\n", GdsDataTypeName(dataType));
        GdsError("The data type should be %s\n", GdsDataTypeName(GetDataTypeNu()));
    } else if (expected != -1 && expected != length) {
        GdsError("ERROR: Encountered a record with the wrong length\n");
        GdsError("This record has a length of %d\n", length);
        GdsError("The length should be %d\n", expected);
    } else {
        return true;
    }
    GdsError("Error encounted in record %ld\n", long(GetRecordNumber()));
    return false;
}

void SGdsRecord::Print()
{
    if (ShortFormat) {
        PrintShort();
        return;
    }
    PrintTag();
    SGdsDebug& debug = GdsDebug();
    if (debug.GetLevel() < 1)
        return;
    debug.Print("# record: %ld, type: %15s\n", long(GetRecordNumber()), GetName());
    if (debug.GetLevel() > 2) {
        debug.Print("Data type: %s\n", GdsDataTypeName(GetDataType()));
        debug.Print("Record Length: %d\n", GetLength());
    }
}

void SGdsRecord::PrintShort()
{
    if (Debug(0))
        GdsDebug().Print("%s\n\n", GetName());
}

void SGdsRecord::PrintTag()
{
    if (GdsDebug().GetTags())
        GdsDebug().Print("<%s> ", GetName());
}

bool SGdsRecord::Process(SGdsStructureList&)
{
    return true;
}

bool SGdsRecord::ReadRaw(SGdsInput& file)
{
    int count = GetDataLength();
    if (count > 0 && !ReadBytes(file, Data(), count))
        return false;
    DumpEnd();
    return true;
}

bool SGdsTypeBitArray::GetBit(int index) const
{
    if (index < 0 || index / 8 >= GetDataLength())
        return false;
    return (Data()[index / 8] >> (7 - index % 8)) & 1;
}

int64_t SGdsTypeByteInt::GetValue(int index) const
{
    if (index < 0 || index >= GetCount())
        return 0;
    const unsigned char* b = Data() + index * GetWidth();
    if (GetWidth() == 2)
        return int16_t(uint16_t((b[0] << 8) | b[1]));
    return int32_t((uint32_t(b[0]) << 24) | (uint32_t(b[1]) << 16) | (uint32_t(b[2]) << 8) | b[3]);
}

int32_t SGdsTypeFourByteInt::GetInt(int index) const
{
    if (index < 0 || index >= GetCount())
        return 0;
    const unsigned char* b = Data() + index * 4;
    return int32_t((uint32_t(b[0]) << 24) | (uint32_t(b[1]) << 16) | (uint32_t(b[2]) << 8) | b[3]);
}

SString SGdsTypeTimeStamp::DateText(int which) const
{
    static const char* const kMonths[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                          "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    int base = which * 6;
    int year = int(GetValue(base));
    int month = int(GetValue(base + 1));
    if (year < 1900)
        year += year > 59 ? 1900 : 2000;
    const char* name = month >= 1 && month <= 12 ? kMonths[month - 1] : "bad";
    return SString::format("%s %d, %d  %02d:%02d:%02d", name, int(GetValue(base + 2)), year,
                           int(GetValue(base + 3)), int(GetValue(base + 4)), int(GetValue(base + 5)));
}

int SGdsGenDatatype::GetValue() const
{
    return int(SGdsTypeByteInt::GetValue(0));
}

void SGdsGenDatatype::Print()
{
    SGdsRecord::Print();
    if (Debug(1) && !ShortFormat)
        GdsDebug().Print("%s is %d\n", GetName(), GetValue());
}

void SGdsGenDatatype::PrintShort()
{
    if (Debug(0))
        GdsDebug().Print("%s - %d\n\n", GetName(), GetValue());
}

void SGdsGenDatatype::PrintTag()
{
    if (GdsDebug().GetTags())
        GdsDebug().Print("<%s=%d> ", GetName(), GetValue());
}

double SGdsTypeEightByteReal::GetValue(int index) const
{
    if (index < 0 || index >= GetCount())
        return 0.0;
    return Decode(Data() + index * 8);
}

double SGdsTypeEightByteReal::Decode(const unsigned char* b)
{
    double mantissa = 0.0;
    double factor = 1.0;
    for (int i = 1; i < 8; ++i) {
        factor *= 0.00390625;
        mantissa += b[i] * factor;
    }
    double value = mantissa * pow(16.0, double(b[0] & 127) - 64.0);
    return (b[0] & 128) ? -value : value;
}

void SGdsTypeEightByteReal::Encode(double value, unsigned char* bytes)
{
    int sign = 0;
    if (value < 0) {
        sign = 128;
        value = -value;
    }
    int exponent = 0;
    // Not-a-number and infinities have no coding; they become zero rather
    // than loop for ever.
    if (!(value > 0.0) || std::isinf(value)) {
        value = 0.0;
    } else {
        exponent = 64;
        while (value >= 1.0) {
            value *= 0.0625;
            ++exponent;
        }
        while (value < 0.0625) {
            value *= 16.0;
            --exponent;
        }
    }
    // Exponents beyond the seven bits wrap like the arithmetic they come from.
    bytes[0] = static_cast<unsigned char>((exponent & 127) + sign);
    int digits[14];
    for (int i = 0; i < 14; ++i) {
        int digit = int(value * 16.0);
        digits[i] = digit;
        value = (value - digit * 0.0625) * 16.0;
    }
    for (int i = 0; i < 7; ++i)
        bytes[i + 1] = static_cast<unsigned char>((digits[2 * i] << 4) | digits[2 * i + 1]);
}

SString SGdsTypeAsciiString::GetText() const
{
    const char* text = reinterpret_cast<const char*>(Data());
    int length = int(strnlen(text, size_t(GetDataLength())));
    return SString(text, length);
}
