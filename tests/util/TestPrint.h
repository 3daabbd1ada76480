#ifndef TESTPRINT_H
#define TESTPRINT_H

#include "SString.h"

#include <ostream>

// Lets failed expectations show the text of an SString.
inline void PrintTo(const SString& text, std::ostream* os) { *os << '"' << text.data() << '"'; }

#endif
