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
    // With a structure list, the structures are built while the stream is read, and only
    // the records elements take their points from are kept: a large stream is then never
    // held whole. What the building says is held back until BuildStructures, so that a run
    // says what it said when the reading came first.
    bool Read(SGdsStructureList* buildInto = nullptr);
    bool ReadRecord(SGdsRecord*& record);
    // Builds from the records read; after a Read that built into this list, gives out what
    // the building said and its result.
    bool BuildStructures(SGdsStructureList& list);

    const SGdsRecordList& GetRecords() const { return itsRecords; }
    SGdsRecordList& GetRecords() { return itsRecords; }
    int64_t GetRecordCount() const { return itsRecordCount; }

private:
    SGdsRecord* CreateRecord(const SGdsRecord& header);
    bool ReadRecord(SGdsRecord*& record, bool commit);
    void TraceBuilding();
    bool ProcessRecord(SGdsRecord& record, SGdsStructureList& list);

    SString itsFileName;
    SGdsRecordList itsRecords;
    SGdsInput* itsInput = nullptr;
    int64_t itsRecordCount = 0;
    // 64 bits, so that offsets past 2 GiB print as they are.
    int64_t itsPosition = 0;
    SString itsOutputName;
    SGdsOutput* itsOutput = nullptr;
    // The list built during Read, and whether that building succeeded.
    SGdsStructureList* itsBuilt = nullptr;
    bool itsBuildOk = true;
    // The record that ends the run once the building reaches it, left for BuildStructures.
    SGdsRecord* itsEndingRecord = nullptr;
};

#endif
