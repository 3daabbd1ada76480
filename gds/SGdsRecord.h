#ifndef SGDSRECORD_H
#define SGDSRECORD_H

#include <cstdint>

#include "SCollectable.h"
#include "SString.h"

class SGdsInput;
class SGdsOutput;
class SGdsStructureList;

// Flags the record classes read while a stream is read; they have no path to
// the options, so the application sets them once the command line is parsed.
extern bool ShortFormat;    // -S
extern bool AsciiInput;     // -A
extern bool VerboseOutput;  // -v
extern bool ZeroBoxType;    // -Q
extern bool ConvertBoxes;   // cleared by -x box

// The -G copy, or null.
SGdsOutput* GetGdsOutputDevice();
void SetGdsOutputDevice(SGdsOutput* device);

// Fills buffer from the text form of a stream; returns the bytes delivered.
// Malformed text ends the process with status 1.
int ReadText(unsigned char* buffer, int count, SGdsInput& input);
void ResetTextReader();
// The open line of the text form still holds items.
bool TextInputPending();
// Replaces the exit on malformed text, for harnesses that must survive it.
void SetTextFailureHandler(void (*handler)());

enum { kGdsNoData = 0, kGdsBitArray, kGdsTwoByteInt, kGdsFourByteInt, kGdsFourByteReal,
       kGdsEightByteReal, kGdsAsciiString };

const char* GdsDataTypeName(int dataType);
const char* GdsRecordName(int recordType);

// One record of a stream. Records live in the arena of SGdsRecordList: the
// header is packed into two words and the data follows the object directly,
// as the raw big-endian bytes of the stream. Every class has the size of this
// one, so a million-record stream costs little more than the stream itself.
class SGdsRecord : public SCollectable
{
public:
    SGdsRecord() = default;
    SGdsRecord(int64_t number, int64_t position);

    // Header fields.
    int64_t GetRecordNumber() const { return int64_t(itsNumberAndTypes >> 16); }
    int GetRecordType() const { int t = int((itsNumberAndTypes >> 8) & 0xff); return t == 0xff ? -1 : t; }
    int GetDataType() const { int t = int(itsNumberAndTypes & 0xff); return t == 0xff ? -1 : t; }
    int GetLength() const { return int(itsPositionAndLength & 0xffff); }
    int64_t GetPosition() const { return int64_t(itsPositionAndLength >> 16); }
    const char* GetName() const { return GdsRecordName(GetRecordType()); }

    // Bytes of data behind the header as stored, and the arena size of the record.
    int GetDataLength() const { return GetLength() - 4; }
    size_t StorageSize() const;
    const unsigned char* Data() const { return reinterpret_cast<const unsigned char*>(this) + sizeof(SGdsRecord); }
    unsigned char* Data() { return reinterpret_cast<unsigned char*>(this) + sizeof(SGdsRecord); }

    bool ReadHeader(SGdsInput& file);
    // The single route by which stream bytes are read: binary or text form,
    // copied to -G, shown in the dump.
    bool ReadBytes(SGdsInput& file, unsigned char* buffer, int count);

    virtual bool ReadData(SGdsInput& file);
    virtual void DumpEnd();
    virtual void DumpBytes(const unsigned char* bytes, int count, bool endLine);
    virtual void CopyHeader(const SGdsRecord& other);
    virtual int GetDataTypeNu() const;
    // -1 for any length; the length includes the four header bytes.
    virtual int GetExpectedLength() const { return 0; }
    virtual bool CheckValue() { return true; }
    virtual bool CheckHeader();
    virtual void Print();
    virtual void PrintShort();
    virtual void PrintTag();
    virtual bool Process(SGdsStructureList& list);
    // True when Process would end the process as a program error; a build on the way
    // leaves such a record for after the reading.
    virtual bool EndsTheRun(const SGdsStructureList&) const { return false; }

    static double GetScale();
    static void SetScale(double scale);

protected:
    // The data bytes into the room behind the header, then the end of the dump line.
    bool ReadRaw(SGdsInput& file);

    // record number << 16 | record type << 8 | data type; 0xff marks "none".
    uint64_t itsNumberAndTypes = (uint64_t(0xffff));
    // position << 16 | length.
    uint64_t itsPositionAndLength = 0;
};

class SGdsTypeNoData : public SGdsRecord
{
public:
    bool ReadData(SGdsInput& file) override { return ReadRaw(file); }
    int GetDataTypeNu() const override { return kGdsNoData; }
    int GetExpectedLength() const override { return 4; }
};

class SGdsTypeBitArray : public SGdsRecord
{
public:
    bool ReadData(SGdsInput& file) override { return ReadRaw(file); }
    int GetDataTypeNu() const override { return kGdsBitArray; }
    bool GetBit(int index) const;
    static const char* BitText(bool value) { return value ? "set" : "not set"; }
};

// Integers of either width; values are decoded from the raw bytes when asked.
class SGdsTypeByteInt : public SGdsRecord
{
public:
    bool ReadData(SGdsInput& file) override { return ReadRaw(file); }
    virtual int GetWidth() const = 0;
    int GetCount() const { return GetDataLength() / GetWidth(); }
    int64_t GetValue(int index) const;
};

class SGdsTypeTwoByteInt : public SGdsTypeByteInt
{
public:
    int GetWidth() const override { return 2; }
    int GetDataTypeNu() const override { return kGdsTwoByteInt; }
};

class SGdsTypeFourByteInt : public SGdsTypeByteInt
{
public:
    int GetWidth() const override { return 4; }
    int GetDataTypeNu() const override { return kGdsFourByteInt; }
    int32_t GetInt(int index) const;
};

class SGdsTypeTimeStamp : public SGdsTypeTwoByteInt
{
public:
    int GetExpectedLength() const override { return 28; }
    // which 0: last modification, 1: last access.
    SString DateText(int which) const;
};

class SGdsGenDatatype : public SGdsTypeTwoByteInt
{
public:
    int GetExpectedLength() const override { return 6; }
    virtual int GetValue() const;
    void Print() override;
    void PrintShort() override;
    void PrintTag() override;
};

class SGdsTypeEightByteReal : public SGdsRecord
{
public:
    bool ReadData(SGdsInput& file) override { return ReadRaw(file); }
    int GetDataTypeNu() const override { return kGdsEightByteReal; }
    int GetCount() const { return GetDataLength() / 8; }
    double GetValue(int index) const;

    // Excess-64, base-16 reals of the stream.
    static double Decode(const unsigned char* bytes);
    static void Encode(double value, unsigned char* bytes);
};

class SGdsTypeAsciiString : public SGdsRecord
{
public:
    bool ReadData(SGdsInput& file) override { return ReadRaw(file); }
    int GetDataTypeNu() const override { return kGdsAsciiString; }
    int GetExpectedLength() const override { return -1; }
    // Text up to the first zero byte.
    SString GetText() const;
};

#endif
