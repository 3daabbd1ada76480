#include "SGdsCmdLineOptions.h"

#include "SCmdOption.h"

void SGdsCmdLineOptions::DefineOptions()
{
    static const char* const Flags[] = {
        "F", "v", "V", "d", "A", "L", "H", "h", "g", "q", "y", "S", "e", "U",
        "r", "W", "R", "1", "j", "Q",
    };
    static const char* const Values[] = {
        "D", "T", "t", "s", "p", "o", "l", "c", "i", "M", "z", "b", "B", "P",
        "G", "k", "C", "f", "J", "x", "m",
    };
    for (const char* name : Flags)
        AddOption(new SCmdOption(SString(name)));
    for (const char* name : Values)
        AddOption(new SCmdOptionArgumentNextArgv(SString(name)));
}
