#ifndef SIBAWR64TRACE_H
#define SIBAWR64TRACE_H

#include "SCollectable.h"
#include "SProjectStream.h"
#include "SString.h"

class SFile;

// A trace of the host tool's project (AWR64TRACE): its name, metal and layer, two values.
class SIBAWR64Trace : public SCollectable {
  SCOLLECTABLE_DECLARE(SIBAWR64Trace)
  SCOLLECTABLE_COPYABLE(SIBAWR64Trace)
public:
  bool Read(SFile& file);
  void Write(SProjectStream& out) const;

  SString itsName;
  SString itsMetalName;
  SString itsLayerName;
  SString itsValues[2];
};

#endif
