#include "SApplicationManager.h"

#include <cstdio>
#include <cstdlib>
#include <ctime>

namespace {
SApplicationManager* theManager = nullptr;
}

SApplicationManager::SApplicationManager()
{
    theManager = this;
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

void SApplicationManager::DumpCommandLine(int, char**)
{
}

bool SApplicationManager::LoadStringFiles()
{
    return true;
}

void SApplicationManager::CreateTrace()
{
}
