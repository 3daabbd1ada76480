#ifndef SVARIABLENAME_H
#define SVARIABLENAME_H

#include "SString.h"

#include <functional>

// The rules for names of variables: a name can't be a word of the expression language and
// must be an identifier, since equations refer to variables by name.
class SVariableName {
public:
  enum { Reserved = -1, BadFirstCharacter = -2 };

  // False when the name is usable. Otherwise `code` is Reserved, BadFirstCharacter, or the
  // index of the first character outside [a-zA-Z0-9_].
  static bool IsReservedOrInvalid(const SString& name, int& code);
  // Makes the name usable: "_" in front of a reserved word or a bad first character, "_"
  // for each bad character. True when the name changed.
  static bool Repair(SString& name);
  // While `taken` says the name is used: a name ending in "_<number>" counts up, any other
  // gets "_1". True when the name changed.
  static bool MakeUnique(SString& name, const std::function<bool(const SString&)>& taken);
};

#endif
