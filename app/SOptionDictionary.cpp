#include "SOptionDictionary.h"

#include "SCmdOption.h"

SOptionDictionary::~SOptionDictionary()
{
    Clear();
}

void SOptionDictionary::Add(SCmdOption* option)
{
    if (!option)
        return;
    while (SCollectable* old = itsOptions.remove(option)) {
        if (old == option)
            break;
        delete old;
    }
    itsOptions.insert(option);
}

SCmdOption* SOptionDictionary::Find(const SString& name) const
{
    SCmdOption key(name);
    return static_cast<SCmdOption*>(itsOptions.find(&key));
}

void SOptionDictionary::Clear()
{
    itsOptions.clearAndDestroy();
}

SCmdOption* SOptionDictionary::at(size_t i) const
{
    if (i >= itsOptions.entries())
        return nullptr;
    return static_cast<SCmdOption*>(itsOptions.at(i));
}
