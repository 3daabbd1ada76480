#ifndef FUZZPROCESSFILE_H
#define FUZZPROCESSFILE_H

// One check for material and technology files: the bytes read as a process, set into a new
// project, written, and read back as the same process. `Compare(again, first)` gives the
// differences that count; `mustWrite` says whether a file read must also be writable.

#include <QStringList>

#include <string>

#include "FuzzInput.h"
#include "SMatlReporting.h"
#include "SXtranProject.h"

template <class Process, class Compare>
int FuzzProcessFile(const uint8_t* data, size_t size, bool mustWrite, Compare compare)
{
    FuzzSetup();
    SMatlReporting::Instance().SetMode(0);
    std::string name = FuzzFile(data, size);
    if (name.empty())
        return 0;
    try {
        Process process;
        if (!process.Read(SString(name.c_str())))
            return 0;
        SXtranProject project;
        project.InitNew();
        process.SetIntoProject(project);

        std::string written = FuzzScratchFile();
        if (written.empty())
            return 0;
        if (!process.Write(SString(written.c_str()))) {
            if (mustWrite)
                FuzzBroken("a file that was read can't be written", FuzzFileContent(name));
            return 0;
        }
        Process again;
        if (!again.Read(SString(written.c_str())))
            FuzzBroken("the written file does not read back", FuzzFileContent(written));
        const QStringList differences = compare(again, process);
        if (!differences.isEmpty())
            FuzzBroken("the written file reads back as another process",
                       differences.join("\n").toStdString() + "\n----\n" + FuzzFileContent(written));
    } catch (int) {
        // A fatal program error.
    }
    return 0;
}

#endif
