// Arbitrary bytes as a binary stream: header check, records, structure build,
// sizes, default structure.

#include "FuzzInput.h"
#include "SGdsFile.h"
#include "SGdsRecord.h"
#include "SGdsStructure.h"
#include "SGdsStructureList.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    FuzzSetup();
    AsciiInput = false;
    SGdsRecord::SetScale(1.0);
    std::string name = FuzzFile(data, size);
    if (name.empty())
        return 0;
    try {
        SGdsFile file(SString(name.c_str()));
        if (!file.CheckHeader() || !file.Read())
            return 0;
        SGdsStructureList list;
        if (file.BuildStructures(list)) {
            for (int mode = 0; mode < 3; ++mode)
                list.GetDefaultStructure(mode);
            SOrdered elements;
            if (!list.GetStructures().isEmpty())
                list.CollectElements(elements, *static_cast<SGdsStructure*>(list.GetStructures().first()));
        }
    } catch (int) {
        // A fatal program error, such as COLROW on an element that is no array.
    }
    return 0;
}
