#ifndef SINTERFACEBLOCK_H
#define SINTERFACEBLOCK_H

#include "SVerbatimBlock.h"

// Settings of the interfaces to other design tools.
// Kept as it stands in the file until its own reader and writer take over ReadBody and
// WriteBody.
class SInterfaceBlock : public SVerbatimBlock {
  SCOLLECTABLE_DECLARE(SInterfaceBlock)
  SCOLLECTABLE_COPYABLE(SInterfaceBlock)
public:
  explicit SInterfaceBlock(SProject* owner = nullptr) : SVerbatimBlock(owner, "INTERFACE") {}
};

#endif
