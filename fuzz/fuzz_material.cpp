// Arbitrary bytes as a material file: reading, setting a read file into a new project, and
// the written file, which must read back as the same process.

#include <cstdio>
#include <cstdlib>
#include <string>

#include "FuzzInput.h"
#include "SMatl.h"
#include "SMatlMetalDrawLayer.h"
#include "SMatlMetalMaterial.h"
#include "SMatlReporting.h"
#include "SXtranProject.h"

namespace {

// A line may end before the thickness (the rest of a line is optional), which leaves 0; the
// metal types that need a thickness are written with that 0 and refused when read again.
bool NeedsThickness(const SMatlMetalData& metal)
{
    const int type = metal.GetMetalType();
    const bool needed = type == SMatlMetalData::ThickMetalModel || type == SMatlMetalData::RoughMetal ||
                        (type == SMatlMetalData::Normal && !metal.IsConductivityInfinite());
    return needed && metal.itsThickness.GetValue() <= 0.0;
}

bool WrittenAsRead(const SMatl& matl)
{
    for (const SMatlMetalDrawLayer* metal : matl.GetMetalDrawLayers())
        if (NeedsThickness(*metal))
            return false;
    for (const SMatlMetalMaterial* metal : matl.GetMetalMaterials())
        if (NeedsThickness(*metal))
            return false;
    return true;
}

} // namespace

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

        if (!WrittenAsRead(matl))
            return 0;
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
