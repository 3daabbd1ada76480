// Arbitrary bytes as a material file: reading, setting a read file into a new project, and
// the written file, which must read back as the same process.

#include <cstdio>
#include <cstdlib>
#include <string>

#include "FuzzInput.h"
#include "SMatl.h"
#include "SMatlReporting.h"
#include "SXtranProject.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    FuzzSetup();
    SMatlReporting::Instance().SetMode(0);
    std::string name = FuzzFile(data, size);
    if (name.empty())
        return 0;
    try {
        SMatl matl;
        if (!matl.Read(SString(name.c_str())))
            return 0;
        SXtranProject project;
        project.InitNew();
        matl.SetIntoProject(project);

        std::string written = FuzzScratchFile();
        if (written.empty() || !matl.Write(SString(written.c_str())))
            return 0;
        SMatl again;
        if (!again.Read(SString(written.c_str())))
            FuzzBroken("the written file does not read back", FuzzFileContent(written));
        QStringList differences;
        again.IsSameContent(matl, &differences);
        // Colors are read and never written.
        differences.removeAll("Color entries: Color entry values do not match.");
        if (!differences.isEmpty())
            FuzzBroken("the written file reads back as another process",
                   differences.join("\n").toStdString() + "\n----\n" + FuzzFileContent(written));
    } catch (int) {
        // A fatal program error.
    }
    return 0;
}
