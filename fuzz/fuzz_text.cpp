// Arbitrary bytes as the text form of a stream, with the records it makes
// read and built like a binary stream.

#include "FuzzInput.h"
#include "SGdsFile.h"
#include "SGdsRecord.h"
#include "SGdsStructureList.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    FuzzSetup();
    AsciiInput = true;
    SGdsRecord::SetScale(1.0);
    std::string name = FuzzFile(data, size);
    if (name.empty())
        return 0;
    try {
        SGdsFile file(SString(name.c_str()));
        if (!file.Read())
            return 0;
        SGdsStructureList list;
        if (file.BuildStructures(list))
            list.GetDefaultStructure(2);
    } catch (int) {
        // The text reader refused the input with its message.
    }
    return 0;
}
