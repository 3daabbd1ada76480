#ifndef SOPTIONDICTIONARY_H
#define SOPTIONDICTIONARY_H

#include "SSortedVector.h"

class SCmdOption;
class SString;

// The known options, kept in matching order (longer names first, then
// case-sensitive text order). Owns its options.
class SOptionDictionary
{
public:
    SOptionDictionary() = default;
    ~SOptionDictionary();
    SOptionDictionary(const SOptionDictionary&) = delete;
    SOptionDictionary& operator=(const SOptionDictionary&) = delete;

    // Takes ownership; an option of the same name is replaced and deleted.
    void Add(SCmdOption* option);
    SCmdOption* Find(const SString& name) const;
    void Clear();

    size_t entries() const { return itsOptions.entries(); }
    // The option at position `i` in matching order.
    SCmdOption* at(size_t i) const;

private:
    SSortedVector itsOptions;
};

#endif
