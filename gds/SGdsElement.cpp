#include "SGdsElement.h"

#include "SGdsDebug.h"
#include "SGdsRecord.h"
#include "SGdsStructure.h"
#include "SGdsStructureList.h"

SGdsElement::SGdsElement(const SGdsRecord* record)
    : itsRecordTag(record ? uint64_t(record->GetRecordNumber()) << 8 | uint64_t(record->GetRecordType() & 0xff)
                          : ~uint64_t(0))
{
}

const char* SGdsElement::GetRecordName() const
{
    return (itsRecordTag & 0xff) == 0xff ? "UNKNOWN" : GdsRecordName(int(itsRecordTag & 0xff));
}

int64_t SGdsElement::GetRecordNumber() const
{
    return (itsRecordTag & 0xff) == 0xff ? -1 : int64_t(itsRecordTag >> 8);
}

bool SGdsElement::CollectElements(SOrdered& elements, SGdsStructureList&)
{
    elements.append(this);
    return true;
}

int64_t SGdsElement::GetSize(SGdsStructureList&)
{
    return 1;
}

bool SGdsElementSref::CollectElements(SOrdered& elements, SGdsStructureList& list)
{
    if (itsCollecting) {
        GdsError("GDSII file contains a circular reference for structure = %s\n", itsStructureName.data());
        return false;
    }
    itsCollecting = true;
    bool ok = list.CollectElements(elements, itsStructureName);
    itsCollecting = false;
    return ok;
}

int64_t SGdsElementSref::GetSize(SGdsStructureList& list)
{
    return list.GetSize(itsStructureName);
}

int64_t SGdsElementAref::GetSize(SGdsStructureList& list)
{
    return SaturatedMultiply(list.GetSize(itsStructureName), SaturatedMultiply(itsColumns, itsRows));
}
