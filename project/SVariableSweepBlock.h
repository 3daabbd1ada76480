#ifndef SVARIABLESWEEPBLOCK_H
#define SVARIABLESWEEPBLOCK_H

#include "SVerbatimBlock.h"

// Parameter sweeps, and the frequency sweeps of the current format.
// Kept as it stands in the file until its own reader and writer take over ReadBody and
// WriteBody.
class SVariableSweepBlock : public SVerbatimBlock {
  SCOLLECTABLE_DECLARE(SVariableSweepBlock)
  SCOLLECTABLE_COPYABLE(SVariableSweepBlock)
public:
  explicit SVariableSweepBlock(SProject* owner = nullptr) : SVerbatimBlock(owner, "VARSWP") {}
};

#endif
