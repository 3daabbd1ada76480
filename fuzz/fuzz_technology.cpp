// Arbitrary bytes as a technology file: reading, setting a read file into a new project, and
// the written file, which must read back as the same process.

#include "FuzzProcessFile.h"
#include "SXmatl.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    return FuzzProcessFile<SXmatl>(data, size, true, [](const SXmatl& again, const SXmatl& first) {
        QStringList differences;
        if (!again.IsSameXmatl(first, &differences) && differences.isEmpty())
            differences.append("the comparison named no difference");
        return differences;
    });
}
