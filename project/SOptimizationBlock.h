#ifndef SOPTIMIZATIONBLOCK_H
#define SOPTIMIZATIONBLOCK_H

#include "SVerbatimBlock.h"

// Optimisation goals and their variable sets.
// Kept as it stands in the file until its own reader and writer take over ReadBody and
// WriteBody.
class SOptimizationBlock : public SVerbatimBlock {
  SCOLLECTABLE_DECLARE(SOptimizationBlock)
  SCOLLECTABLE_COPYABLE(SOptimizationBlock)
public:
  explicit SOptimizationBlock(SProject* owner = nullptr) : SVerbatimBlock(owner, "OPT") {}
};

#endif
