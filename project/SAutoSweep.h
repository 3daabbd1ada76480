#ifndef SAUTOSWEEP_H
#define SAUTOSWEEP_H

#include "SIFSEntry.h"

class SAutoSweep : public SIFSEntry {
  SCOLLECTABLE_DECLARE(SAutoSweep)
  SCOLLECTABLE_COPYABLE(SAutoSweep)
public:
  SString GetName() const override { return "AUTO"; }
};

#endif
