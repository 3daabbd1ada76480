#ifndef SVARRWCSTRING_H
#define SVARRWCSTRING_H

#include "SString.h"

// A text in which "$NAME", "${NAME}" and "$$" can be expanded.
class SVarRWCString : public SString {
public:
  SVarRWCString() {}
  SVarRWCString(const char* latin1) : SString(latin1) {}
  SVarRWCString(const QString& text) : SString(text) {}
  SVarRWCString(const SString& text) : SString(text) {}
  using SString::operator=;

  // The text with its variables replaced; unknown names give nothing, other "$" stay.
  SString Expand() const;
  // Expands in place.
  SVarRWCString& ExpandInPlace();

  // The value of one name: the directory names, then the user's "Variables" settings,
  // then the environment. Empty when unknown.
  static SString Value(const SString& name);
  // The architecture directory name of this platform.
  static SString Architecture();
};

#endif
