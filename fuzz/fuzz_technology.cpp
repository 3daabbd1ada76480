// Arbitrary bytes as a technology file: reading, setting a read file into a new project, and
// the written file, which must read back as the same process.

#include <cstdio>
#include <cstdlib>
#include <string>

#include "FuzzInput.h"
#include "SMatlReporting.h"
#include "SXmatl.h"
#include "SXtranProject.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    FuzzSetup();
    SMatlReporting::Instance().SetMode(0);
    std::string name = FuzzFile(data, size);
    if (name.empty())
        return 0;
    try {
        SXmatl xmatl;
        if (!xmatl.Read(SString(name.c_str())))
            return 0;
        SXtranProject project;
        project.InitNew();
        xmatl.SetIntoProject(project);

        std::string written = FuzzScratchFile();
        if (written.empty())
            return 0;
        if (!xmatl.Write(SString(written.c_str())))
            FuzzBroken("a file that was read can't be written", FuzzFileContent(name));
        SXmatl again;
        if (!again.Read(SString(written.c_str())))
            FuzzBroken("the written file does not read back", FuzzFileContent(written));
        QStringList differences;
        if (!again.IsSameXmatl(xmatl, &differences))
            FuzzBroken("the written file reads back as another process",
                       differences.join("\n").toStdString() + "\n----\n" + FuzzFileContent(written));
    } catch (int) {
        // A fatal program error.
    }
    return 0;
}
