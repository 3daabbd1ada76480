// Arbitrary bytes as a binary stream: header check, records, structure build,
// sizes, default structure. The structures are built both ways the reader can: while
// the stream is read, as the program does, and from all records afterwards; both must
// give the same structures and the same answer.

#include <string>

#include "FuzzInput.h"
#include "SGdsDebug.h"
#include "SGdsElement.h"
#include "SGdsFile.h"
#include "SGdsRecord.h"
#include "SGdsStructure.h"
#include "SGdsStructureList.h"

namespace {

struct SBuilt
{
    bool read = false;
    bool built = false;
    std::string shape;
};

// Names, element kinds and the chosen structures of a list.
std::string Shape(SGdsStructureList& list)
{
    std::string text;
    const SOrdered& structures = list.GetStructures();
    for (size_t s = 0; s < structures.entries(); ++s) {
        const SGdsStructure* structure = static_cast<const SGdsStructure*>(structures.at(s));
        text += std::string(structure->data()) + ":";
        const SOrdered& elements = structure->GetElements();
        for (size_t e = 0; e < elements.entries(); ++e)
            text += static_cast<const SGdsElement*>(elements.at(e))->GetName()[0];
        text += "\n";
    }
    for (int mode = 0; mode < 3; ++mode)
        text += std::string(list.GetDefaultStructure(mode).data()) + "\n";
    return text;
}

SBuilt Build(const std::string& name, bool whileReading)
{
    SBuilt result;
    SGdsRecord::SetScale(1.0);
    WarningsEnabled = true;
    WarningCount = 0;
    SGdsFile file(SString(name.c_str()));
    if (!file.CheckHeader())
        return result;
    SGdsStructureList list;
    result.read = file.Read(whileReading ? &list : nullptr);
    if (!result.read)
        return result;
    result.built = file.BuildStructures(list);
    if (result.built) {
        result.shape = Shape(list);
        SOrdered elements;
        if (!list.GetStructures().isEmpty())
            list.CollectElements(elements, *static_cast<SGdsStructure*>(list.GetStructures().first()));
    }
    return result;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    FuzzSetup();
    AsciiInput = false;
    std::string name = FuzzFile(data, size);
    if (name.empty())
        return 0;
    SBuilt afterwards, onTheWay;
    try {
        afterwards = Build(name, false);
    } catch (int) {
        // A fatal program error, such as COLROW on an element that is no array: the other
        // way must come to it as well.
        afterwards.shape = "fatal";
    }
    try {
        onTheWay = Build(name, true);
    } catch (int) {
        onTheWay.shape = "fatal";
    }
    if (afterwards.read != onTheWay.read || afterwards.built != onTheWay.built || afterwards.shape != onTheWay.shape)
        FuzzBroken("structures built while reading differ from those built afterwards",
                   "afterwards:\n" + afterwards.shape + "\non the way:\n" + onTheWay.shape);
    return 0;
}
