#ifndef SGDSFILE_H
#define SGDSFILE_H

#include <cstdint>

#include "SGdsRecordList.h"
#include "SString.h"

class SGdsInput;
class SGdsOutput;
class SGdsRecord;
class SGdsStructureList;

// Reads a stream, binary or in its text form, into the record list, and
// copies it to the -G file on the way.
class SGdsFile
{
public:
    explicit SGdsFile(const SString& fileName);
    ~SGdsFile();
    SGdsFile(const SGdsFile&) = delete;
    SGdsFile& operator=(const SGdsFile&) = delete;

    void SetOutputName(const SString& name) { itsOutputName = name; }
    // The first four bytes must start a HEADER record; not used for text.
    bool CheckHeader();
    bool Read();
    bool ReadRecord(SGdsRecord*& record);
    bool BuildStructures(SGdsStructureList& list);

    const SGdsRecordList& GetRecords() const { return itsRecords; }
    int64_t GetRecordCount() const { return itsRecordCount; }

private:
    SGdsRecord* CreateRecord(const SGdsRecord& header);

    SString itsFileName;
    SGdsRecordList itsRecords;
    SGdsInput* itsInput = nullptr;
    int64_t itsRecordCount = 0;
    // 64 bits, so that offsets past 2 GiB print as they are.
    int64_t itsPosition = 0;
    SString itsOutputName;
    SGdsOutput* itsOutput = nullptr;
};

#endif
