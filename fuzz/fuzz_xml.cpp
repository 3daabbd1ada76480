// Arbitrary bytes as an XML document: the tolerant read, a write, and a second read of what
// was written, which must write the same text again.
//
// The first write need not give the input back: the reader keeps a document's layout but not
// every spelling of it. Entities and quotes are written in one form (x=1 and x='1' become
// x="1", ' in text becomes &apos;), an end tag takes the indentation of its start tag, an
// element without attributes or children is written with an end tag, blanks at the end of a
// line after markup go, lines behind the root are not part of the document, end tags that
// close nothing are dropped, and elements and comments left open are closed. A file that
// the tree wrote itself has none of these, so from there on nothing may change.

#include <string>

#include "FuzzInput.h"
#include "SXMLFile.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    FuzzSetup();
    std::string name = FuzzFile(data, size);
    if (name.empty())
        return 0;
    try {
        SXMLFile file{SString(name.c_str())};
        SString error;
        // Nesting too deep stops the read with an error; there is no whole tree to write.
        if (!file.Read(error))
            return 0;
        file.GetRoot()->FindDeep("Iris");

        std::string written = FuzzScratchFile();
        if (written.empty())
            return 0;
        file.SetFile(SString(written.c_str()), file.GetRoot()->GetName());
        if (!file.Write())
            return 0;
        const std::string first = FuzzFileContent(written);
        if (first != file.Text().qstring().toUtf8().toStdString())
            FuzzBroken("the written file is not the text of the tree", first);

        SXMLFile again{SString(written.c_str())};
        if (!again.Read(error))
            FuzzBroken("the written file does not read back", first + "----\n" + error.data());
        const std::string second = again.Text().qstring().toUtf8().toStdString();
        if (second != first)
            FuzzBroken("the written file reads back as another", first + "----\n" + second);
    } catch (int) {
        // A fatal program error.
    }
    return 0;
}
