// Arbitrary bytes as a material file: reading, setting a read file into a new project, and
// the written file, which must read back as the same process.

#include "FuzzProcessFile.h"
#include "SMatl.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    return FuzzProcessFile<SMatl>(data, size, false, [](const SMatl& again, const SMatl& first) {
        QStringList differences;
        again.IsSameContent(first, &differences);
        // Colors are read and never written.
        differences.removeAll("Color entries: Color entry values do not match.");
        return differences;
    });
}
