#ifndef SFINDMAXSWEEP_H
#define SFINDMAXSWEEP_H

#include "SIFSEntry.h"

class SFindMaxSweep : public SIFSEntry {
  SCOLLECTABLE_DECLARE(SFindMaxSweep)
  SCOLLECTABLE_COPYABLE(SFindMaxSweep)
public:
  SString GetName() const override { return "FINDMAX"; }
};

#endif
