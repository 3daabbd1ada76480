#ifndef SVARSOURCE_H
#define SVARSOURCE_H

#include "SString.h"

#include <complex>

class SVarArgImplimentation;

// A named value that variable arguments bind to (a project's variable implements it).
class SVarSource {
public:
  virtual ~SVarSource() = default;
  virtual SString GetSourceName() const = 0;
  // The current value; evaluates the source's own equation if it has one. False with the words
  // in errorText.
  virtual bool GetSourceValue(std::complex<double>& value, SString& errorText) = 0;
  // Arguments register when bound and leave when destroyed, so a source knows who refers to it.
  // A source that dies first calls ReleaseSource on each argument still registered.
  virtual void RegisterArgument(SVarArgImplimentation*) {}
  virtual void UnregisterArgument(SVarArgImplimentation*) {}
};

#endif
