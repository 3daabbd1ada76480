#ifndef SFINDMINSWEEP_H
#define SFINDMINSWEEP_H

#include "SIFSEntry.h"

class SFindMinSweep : public SIFSEntry {
  SCOLLECTABLE_DECLARE(SFindMinSweep)
  SCOLLECTABLE_COPYABLE(SFindMinSweep)
public:
  SString GetName() const override { return "FINDMIN"; }
};

#endif
