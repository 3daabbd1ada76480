#ifndef SNUMBERTEST_H
#define SNUMBERTEST_H

class SString;

// The trimmed text reads in full as a base 10 int.
bool IsInteger(const SString& text);
// The text reads in full as a double and isn't the not-a-number word.
bool IsDouble(const SString& text);

#endif
