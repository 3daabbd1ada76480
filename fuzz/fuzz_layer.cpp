// Arbitrary bytes as a layer file: every word and level form of a mapping line, the
// lookups by layer and datatype, and the written file, which must read back as itself.
// Mappings of one pair may come back in another order: where a read puts one among
// equal pairs is the sorted list's own rule, kept as the program has always had it.

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "FuzzInput.h"
#include "SGdsLayerFile.h"
#include "SGdsLayerMapping.h"
#include "SOrdered.h"

namespace {

// The lines of a written file, in an order of their own.
std::vector<std::string> Lines(const std::string& text)
{
    std::vector<std::string> lines;
    size_t start = 0;
    while (start < text.size()) {
        size_t end = text.find('\n', start);
        if (end == std::string::npos)
            end = text.size();
        lines.push_back(text.substr(start, end - start));
        start = end + 1;
    }
    std::sort(lines.begin(), lines.end());
    return lines;
}

// Names are written between quotes as they are. A backslash at the end of one escapes the
// closing quote when the file is read back, and a quoted name may run over line ends, which
// read back otherwise. Until the writer escapes them, files with such names are not
// compared, so that the fuzzer looks further.
bool WrittenAsRead(const SLayerFile& file)
{
    for (size_t i = 0; i < file.Entries(); ++i) {
        const SLayerMapping* mapping = file.At(i);
        for (const SString* name : {&mapping->itsName, &mapping->itsMapName, &mapping->itsTechLayerName})
            if (name->contains('\\') || name->contains('\n') || name->contains('\r'))
                return false;
    }
    return true;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    FuzzSetup();
    std::string name = FuzzFile(data, size);
    if (name.empty())
        return 0;
    try {
        SGdsLayerFile file;
        if (!file.Read(SString(name.c_str())))
            return 0;
        for (size_t i = 0; i < file.Entries(); ++i) {
            const SGdsLayerMapping* mapping = static_cast<const SGdsLayerMapping*>(file.At(i));
            SOrdered same;
            file.GetMappings(same, mapping->itsStreamLayer, mapping->itsStreamDatatype);
            SGdsLayerMapping* found = file.FindGds(mapping->itsStreamLayer, mapping->itsStreamDatatype);
            if (mapping->itsMapped && (!found || same.isEmpty()))
                FuzzBroken("a mapping that is on is not found by its pair", std::to_string(i));
        }

        if (!WrittenAsRead(file))
            return 0;
        std::string written = FuzzScratchFile();
        if (written.empty() || !file.Write(SString(written.c_str())))
            return 0;
        std::string first = FuzzFileContent(written);
        SGdsLayerFile again;
        if (!again.Read(SString(written.c_str())))
            FuzzBroken("the written file does not read back", first + "----\n" + again.GetErrorText().data());
        if (again.Entries() != file.Entries())
            FuzzBroken("the written file reads back with another count", first);
        written = FuzzScratchFile();
        if (written.empty() || !again.Write(SString(written.c_str())))
            return 0;
        std::string second = FuzzFileContent(written);
        if (Lines(second) != Lines(first))
            FuzzBroken("the written file reads back as another", first + "----\n" + second);
    } catch (int) {
        // A fatal program error.
    }
    return 0;
}
