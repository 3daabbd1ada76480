#ifndef SCIRCUITBLOCK_H
#define SCIRCUITBLOCK_H

#include "SVerbatimBlock.h"

// The network of a netlist project; only carried along.
// Kept as it stands in the file until its own reader and writer take over ReadBody and
// WriteBody.
class SCircuitBlock : public SVerbatimBlock {
  SCOLLECTABLE_DECLARE(SCircuitBlock)
  SCOLLECTABLE_COPYABLE(SCircuitBlock)
public:
  explicit SCircuitBlock(SProject* owner = nullptr) : SVerbatimBlock(owner, "CKT") {}
};

#endif
