#ifndef GDS_TESTS_RECORDREADER_H
#define GDS_TESTS_RECORDREADER_H

// Reads a stream made by StreamWriter through SGdsFile, the way the program
// does, and hands out its records and structures.

#include <QTemporaryDir>

#include <memory>
#include <string>

#include "SGdsDebug.h"
#include "SGdsFile.h"
#include "SGdsRec.h"
#include "SGdsRecordList.h"
#include "SGdsStructureList.h"
#include "StreamWriter.h"

namespace gdstest {

class RecordReader
{
public:
    RecordReader()
    {
        // Process-wide state that an earlier stream may have changed.
        SGdsRecord::SetScale(1.0);
        GdsDebug().SetLevel(0);
        GdsDebug().SetTags(false);
        ShortFormat = false;
        AsciiInput = false;
        VerboseOutput = false;
        ZeroBoxType = false;
        ConvertBoxes = true;
        WarningsEnabled = true;
        WarningCount = 0;
    }

    // False when the reader refused the stream. `buildWhileReading` builds the structures
    // on the way, as the program does; Build then gives that result.
    bool Load(const StreamWriter& stream, bool buildWhileReading = false)
    {
        std::string path = (itsDir.path() + "/stream.gds").toStdString();
        stream.Save(path);
        itsFile.reset(new SGdsFile(SString(path.c_str())));
        itsList.reset(buildWhileReading ? new SGdsStructureList : nullptr);
        return itsFile->Read(itsList.get());
    }

    // Structures built from the loaded records; false when the build failed.
    bool Build()
    {
        if (!itsList)
            itsList.reset(new SGdsStructureList);
        return itsFile->BuildStructures(*itsList);
    }

    SGdsStructureList& List() { return *itsList; }

    // The n-th record of a type, null when there are fewer.
    template <class T = SGdsRecord> T* Find(int type, int n = 0) const
    {
        SGdsRecordList::Iterator it(itsFile->GetRecords());
        while (SGdsRecord* record = it.next()) {
            if (record->GetRecordType() == type && n-- == 0)
                return static_cast<T*>(record);
        }
        return nullptr;
    }

    int64_t Count() const { return itsFile->GetRecords().entries(); }
    SGdsRecordList& Records() { return itsFile->GetRecords(); }

private:
    QTemporaryDir itsDir;
    std::unique_ptr<SGdsFile> itsFile;
    std::unique_ptr<SGdsStructureList> itsList;
};

} // namespace gdstest

#endif
