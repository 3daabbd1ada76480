#include "SGdsFile.h"

#include <cstdio>

#include "SGdsDebug.h"
#include "SGdsInput.h"
#include "SGdsRec.h"
#include "SGdsStructureList.h"
#include "SProgress.h"

SGdsFile::SGdsFile(const SString& fileName)
    : itsFileName(fileName)
{
}

SGdsFile::~SGdsFile()
{
    if (GetGdsOutputDevice() == itsOutput)
        SetGdsOutputDevice(nullptr);
    delete itsOutput;
    delete itsInput;
}

bool SGdsFile::CheckHeader()
{
    SGdsInput input;
    if (!input.Open(itsFileName)) {
        GdsError("Can not read GDSII file %s\n", itsFileName.data());
        return false;
    }
    unsigned char bytes[4];
    size_t got = input.Read(bytes, 4);
    if (got == 0) {
        GdsError("Gds file %s is empty\n", itsFileName.data());
        return false;
    }
    if (got < 4) {
        GdsError("File %s is not in GDSII format\n", itsFileName.data());
        return false;
    }
    static const unsigned char kHeader[4] = {0x00, 0x06, 0x00, 0x02};
    if (bytes[0] != kHeader[0] || bytes[1] != kHeader[1] || bytes[2] != kHeader[2] || bytes[3] != kHeader[3]) {
        GdsError("File %s is not in GDSII format\n", itsFileName.data());
        GdsError("All GDS files must begin with a HEADER record.\n");
        GdsError("A HEADER record begins with:   \"%02X%02X %02X%02X\".\n", kHeader[0], kHeader[1], kHeader[2],
                 kHeader[3]);
        GdsError("The gds file read begins with: \"%02X%02X %02X%02X\".\n", bytes[0], bytes[1], bytes[2], bytes[3]);
        return false;
    }
    return true;
}

bool SGdsFile::Read(SGdsStructureList* buildInto)
{
    if (!itsOutputName.isEmpty()) {
        itsOutput = new SGdsOutput;
        if (!itsOutput->Open(itsOutputName)) {
            GdsError("Can not write to GDSII file %s\n", itsOutputName.data());
            delete itsOutput;
            itsOutput = nullptr;
            return false;
        }
        SetGdsOutputDevice(itsOutput);
    }
    itsInput = new SGdsInput;
    bool ok = itsInput->Open(itsFileName);
    if (!ok) {
        GdsError("Can not read GDSII file %s\n", itsFileName.data());
        // No copy of a stream that was never read.
        if (itsOutput)
            itsOutput->Discard();
    } else {
        ResetTextReader();
        SGdsRecStrname::ResetNoNameCount();
        if (VerboseOutput)
            GdsVerbose("Reading gds file - %s\n", itsFileName.data());
        if (buildInto) {
            itsBuilt = buildInto;
            itsBuildOk = true;
            itsEndingRecord = nullptr;
            // The building's messages wait for the reading's.
            HoldMessages(true);
            TraceBuilding();
            HoldMessages(false);
        }
        {
            SProgressPhase phase("reading", itsInput->GetFileSize(), "bytes");
            for (;;) {
                SGdsRecord* record = nullptr;
                if (!ReadRecord(record, !buildInto)) {
                    ok = false;
                    break;
                }
                if (buildInto && itsBuildOk && !itsEndingRecord) {
                    if (record->EndsTheRun(*buildInto)) {
                        // Its end comes when the building would have come to it.
                        itsEndingRecord = record;
                    } else {
                        HoldMessages(true);
                        itsBuildOk = ProcessRecord(*record, *buildInto);
                        HoldMessages(false);
                    }
                }
                // Uncommitted, the room is taken by the next record.
                if (buildInto && (buildInto->itsKeptRecord == record || itsEndingRecord == record))
                    itsRecords.Commit(record);
                if (record->GetRecordType() == kGdsEndlib)
                    break;
            }
        }
        // What was built under a unit that a later UNITS record replaced is scaled anew.
        if (ok && buildInto && itsBuildOk && !itsEndingRecord)
            buildInto->Rescale();
        if (ok && VerboseOutput)
            GdsVerbose("Read %ld records\n", long(itsRecordCount));
    }
    if (itsOutput) {
        SetGdsOutputDevice(nullptr);
        if (!itsOutput->Close()) {
            GdsError("Can not write to GDSII file %s\n", itsOutputName.data());
            ok = false;
        }
        delete itsOutput;
        itsOutput = nullptr;
    }
    delete itsInput;
    itsInput = nullptr;
    // A stream that could not be read was never built, as far as anyone is told.
    if (!ok && itsBuilt) {
        ReleaseMessages(false);
        itsBuilt = nullptr;
    }
    return ok;
}

SGdsRecord* SGdsFile::CreateRecord(const SGdsRecord& header)
{
    size_t size = header.StorageSize();
    return CreateGdsRecord(itsRecords.Reserve(size), header);
}

bool SGdsFile::ReadRecord(SGdsRecord*& result)
{
    return ReadRecord(result, true);
}

bool SGdsFile::ReadRecord(SGdsRecord*& result, bool commit)
{
    ++itsRecordCount;
    // Under -A the text reader may hold the rest of the last line.
    if (itsInput->AtEnd() && !(AsciiInput && TextInputPending()))
        return false;
    SGdsRecord header(itsRecordCount, itsPosition);
    if (!header.ReadHeader(*itsInput))
        return false;
    SGdsRecord* record = CreateRecord(header);
    if (!record->CheckHeader())
        return false;
    if (!record->ReadData(*itsInput))
        return false;
    if (commit)
        itsRecords.Commit(record);
    record->CheckValue();
    record->Print();
    itsPosition += record->GetLength();
    result = record;
    return true;
}

void SGdsFile::TraceBuilding()
{
    SGdsDebug& debug = GdsDebug();
    if (debug.GetLevel() > 3)
        debug.Print("\nCREATING STRUCTURES AND ELEMENTS\n");
}

bool SGdsFile::ProcessRecord(SGdsRecord& record, SGdsStructureList& list)
{
    SGdsDebug& debug = GdsDebug();
    if (debug.GetLevel() > 3)
        debug.Print("Processing record=%ld, %s\n", long(record.GetRecordNumber()), record.GetName());
    return record.Process(list);
}

bool SGdsFile::BuildStructures(SGdsStructureList& list)
{
    if (itsBuilt == &list) {
        ReleaseMessages(true);
        if (itsBuildOk && itsEndingRecord)
            return ProcessRecord(*itsEndingRecord, list);
        return itsBuildOk;
    }
    TraceBuilding();
    SGdsRecordList::Iterator it(itsRecords);
    while (SGdsRecord* record = it.next())
        if (!ProcessRecord(*record, list))
            return false;
    return true;
}
