#include "SApplicationManager.h"

#include <cstdio>
#include <cstdlib>
#include <ctime>

#include "SErrorMessages.h"
#include "SInitializationFile.h"
#include "STraceCmd.h"
#include "SVeloraError.h"

namespace {
SApplicationManager* theManager = nullptr;
}

SApplicationManager::SApplicationManager()
{
    theManager = this;
    VeloraSetExitStatusHook(VeloraCloseTraceAtExit);
    VeloraInstallMemoryHandler();
    SInitializationFile::CreateGlobal();
    // Number formats of every file read and written must not follow the
    // user's locale.
    setenv("LC_ALL", "C", 1);
}

SApplicationManager::~SApplicationManager()
{
    if (theManager == this)
        theManager = nullptr;
}

SApplicationManager* SApplicationManager::Instance()
{
    return theManager;
}

void SApplicationManager::DumpCommandLine(int argc, char** argv)
{
    SInitializationFile* settings = SInitializationFile::GetGlobal();
    if (!settings || !settings->GetBool("velora", "DumpCommands", false))
        return;
    const char* home = getenv("HOME");
    if (!home)
        return;
    SString name = SString::fromUtf8(home) + "/velora_cmds.txt";
    FILE* file = fopen(name.data(), "a");
    if (!file)
        return;
    char stamp[64];
    time_t now = time(nullptr);
    strftime(stamp, sizeof stamp, "%H:%M %d-%b-%Y", localtime(&now));
    fprintf(file, "%s   ", stamp);
    for (int i = 0; i < argc; ++i)
        fprintf(file, "%s ", argv[i]);
    fputc('\n', file);
    fclose(file);
}

bool SApplicationManager::LoadStringFiles()
{
    SErrorMessages::LoadStringFiles();
    return true;
}

void SApplicationManager::CreateTrace()
{
    STraceCmd::CreateTrace();
}
