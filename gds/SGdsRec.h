#ifndef SGDSREC_H
#define SGDSREC_H

// The concrete record classes, one for each record type of the stream that
// the translator reads; the rest are skip records.

#include "SGdsRecord.h"
#include "SPoint.h"

class SGdsElementSref;

enum {
    kGdsHeader = 0, kGdsBgnlib = 1, kGdsLibname = 2, kGdsUnits = 3, kGdsEndlib = 4,
    kGdsBgnstr = 5, kGdsStrname = 6, kGdsEndstr = 7, kGdsBoundary = 8, kGdsPath = 9,
    kGdsSref = 10, kGdsAref = 11, kGdsText = 12, kGdsLayer = 13, kGdsDatatype = 14,
    kGdsWidth = 15, kGdsXy = 16, kGdsEndel = 17, kGdsSname = 18, kGdsColrow = 19,
    kGdsStrans = 26, kGdsMag = 27, kGdsAngle = 28, kGdsPathtype = 33, kGdsBox = 45,
    kGdsBoxtype = 46, kGdsBgnextn = 48, kGdsEndtextn = 49, kGdsLastRecordType = 59
};

class SGdsRecHeader : public SGdsTypeTwoByteInt
{
public:
    int GetExpectedLength() const override { return 6; }
    bool CheckValue() override;
    void Print() override;
    // The release as text, "UNKNOWN" for a version not in the table.
    const char* GetRelease() const;
};

class SGdsRecBgnlib : public SGdsTypeTimeStamp
{
public:
    void Print() override;
};

class SGdsRecLibname : public SGdsTypeAsciiString
{
public:
    void Print() override;
    bool Process(SGdsStructureList& list) override;
};

class SGdsRecUnits : public SGdsTypeEightByteReal
{
public:
    int GetExpectedLength() const override { return 20; }
    bool CheckValue() override;
    void Print() override;
    void PrintTag() override;
    bool Process(SGdsStructureList& list) override;

    double GetUserUnit() const { return GetCount() > 0 ? GetValue(0) : 0.0; }
    double GetMeterUnit() const { return GetCount() > 1 ? GetValue(1) : 0.0; }
    // The name and size in metres of the user unit, "units" and 1.0 when
    // it is none of the known ones.
    void GetUnit(SString& name, double& value) const;
};

class SGdsRecEndlib : public SGdsTypeNoData
{
public:
    void Print() override;
    void PrintTag() override;
};

class SGdsRecBgnstr : public SGdsTypeTimeStamp
{
public:
    void Print() override;
    bool Process(SGdsStructureList& list) override;
};

class SGdsRecStrname : public SGdsTypeAsciiString
{
public:
    // An empty name becomes "NoName_%d", numbered over the stream.
    bool ReadData(SGdsInput& file) override;
    void Print() override;
    void PrintShort() override;
    void PrintTag() override;
    bool Process(SGdsStructureList& list) override;
    SString GetStructureName() const;
    static void ResetNoNameCount();
};

class SGdsRecEndstr : public SGdsTypeNoData
{
public:
    void Print() override;
    void PrintTag() override;
    bool Process(SGdsStructureList& list) override;
};

class SGdsRecBoundary : public SGdsTypeNoData
{
public:
    void Print() override;
    bool Process(SGdsStructureList& list) override;
};

class SGdsRecBox : public SGdsRecBoundary
{
public:
    bool Process(SGdsStructureList& list) override;
};

class SGdsRecPath : public SGdsTypeNoData
{
public:
    void Print() override;
    bool Process(SGdsStructureList& list) override;
};

class SGdsRecSref : public SGdsTypeNoData
{
public:
    void Print() override;
    bool Process(SGdsStructureList& list) override;
};

class SGdsRecAref : public SGdsRecSref
{
public:
    void Print() override;
    bool Process(SGdsStructureList& list) override;
};

class SGdsRecLayer : public SGdsTypeTwoByteInt
{
public:
    int GetExpectedLength() const override { return 6; }
    void Print() override;
    void PrintShort() override;
    void PrintTag() override;
    bool Process(SGdsStructureList& list) override;
};

class SGdsRecDatatype : public SGdsGenDatatype
{
public:
    bool Process(SGdsStructureList& list) override;
};

class SGdsRecBoxtype : public SGdsGenDatatype
{
public:
    // 0 under -Q, which makes every box a datatype 0 shape.
    int GetValue() const override;
    bool Process(SGdsStructureList& list) override;
};

// WIDTH, BGNEXTN and ENDTEXTN: one length of a path, in user units once scaled.
class SGdsTypeScaledLength : public SGdsTypeFourByteInt
{
public:
    int GetExpectedLength() const override { return 8; }
    double GetScaledValue() const { return GetScale() * double(GetInt(0)); }
    void Print() override;
    void PrintShort() override;
protected:
    virtual const char* LongText() const = 0;
};

class SGdsRecWidth : public SGdsTypeScaledLength
{
public:
    bool Process(SGdsStructureList& list) override;
protected:
    const char* LongText() const override { return "Width is %f\n"; }
};

class SGdsRecBgnextn : public SGdsTypeScaledLength
{
public:
    bool Process(SGdsStructureList& list) override;
protected:
    const char* LongText() const override { return "Begin path extension is %f\n"; }
};

class SGdsRecEndtextn : public SGdsTypeScaledLength
{
public:
    bool Process(SGdsStructureList& list) override;
protected:
    const char* LongText() const override { return "End path extension is %f\n"; }
};

class SGdsRecXy : public SGdsTypeFourByteInt
{
public:
    int GetExpectedLength() const override { return -1; }
    double GetX(int index) const;
    double GetY(int index) const;
    SPoint GetPoint(int index) const;
    int GetPointCount() const { return GetCount() / 2; }
    void Print() override;
    void PrintShort() override;
    bool Process(SGdsStructureList& list) override;

private:
    void NotePoints(SGdsElementSref& reference, SGdsStructureList& list) const;
};

class SGdsRecEndel : public SGdsTypeNoData
{
public:
    void Print() override;
    void PrintTag() override;
    bool Process(SGdsStructureList& list) override;
};

class SGdsRecSname : public SGdsTypeAsciiString
{
public:
    void Print() override;
    void PrintShort() override;
    void PrintTag() override;
    bool Process(SGdsStructureList& list) override;
};

class SGdsRecColrow : public SGdsTypeTwoByteInt
{
public:
    int GetExpectedLength() const override { return 8; }
    int GetColumns() const { return int(GetValue(0)); }
    int GetRows() const { return int(GetValue(1)); }
    bool CheckValue() override;
    void Print() override;
    void PrintTag() override;
    bool Process(SGdsStructureList& list) override;
    bool EndsTheRun(const SGdsStructureList& list) const override;
};

class SGdsRecStrans : public SGdsTypeBitArray
{
public:
    int GetExpectedLength() const override { return 6; }
    bool IsReflection() const { return GetBit(0); }
    bool IsAbsoluteMagnification() const { return GetBit(13); }
    bool IsAbsoluteAngle() const { return GetBit(14); }
    void Print() override;
    bool Process(SGdsStructureList& list) override;
};

class SGdsRecMag : public SGdsTypeEightByteReal
{
public:
    int GetExpectedLength() const override { return 12; }
    void Print() override;
    void PrintShort() override;
    void PrintTag() override;
    bool Process(SGdsStructureList& list) override;
};

class SGdsRecAngle : public SGdsTypeEightByteReal
{
public:
    int GetExpectedLength() const override { return 12; }
    void Print() override;
    void PrintShort() override;
    void PrintTag() override;
    bool Process(SGdsStructureList& list) override;
};

class SGdsRecPathtype : public SGdsTypeTwoByteInt
{
public:
    int GetExpectedLength() const override { return 6; }
    void Print() override;
    void PrintShort() override;
    bool Process(SGdsStructureList& list) override;
    // The internal path type of a stream value; warns about unknown ones.
    int GetPathType() const;
    // 1 when the settings say pathtype 1 means flush ends, else 3.
    static int DefaultPathType();
};

// Records the translator does not use: any data type, any length.
class SGdsRecSkip : public SGdsRecord
{
public:
    bool ReadData(SGdsInput& file) override { return ReadRaw(file); }
    int GetDataTypeNu() const override { return GetDataType(); }
    int GetExpectedLength() const override { return -1; }
    void Print() override;
    void PrintTag() override;
    virtual const char* GetDescription() const;
};

class SGdsRecDiscontinued : public SGdsRecSkip
{
public:
    const char* GetDescription() const override { return "Record discontinued"; }
};

// Makes the record of a header in place; the memory holds at least
// sizeof(SGdsRecord).
SGdsRecord* CreateGdsRecord(void* memory, const SGdsRecord& header);

#endif
