#ifndef SJXYBLOCK_H
#define SJXYBLOCK_H

#include "SVerbatimBlock.h"

// Current density data of the analysis engine; only carried along.
// Kept as it stands in the file until its own reader and writer take over ReadBody and
// WriteBody.
class SJXYBlock : public SVerbatimBlock {
  SCOLLECTABLE_DECLARE(SJXYBlock)
  SCOLLECTABLE_COPYABLE(SJXYBlock)
public:
  explicit SJXYBlock(SProject* owner = nullptr) : SVerbatimBlock(owner, "JXY") {}
};

#endif
