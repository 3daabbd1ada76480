#ifndef SRESPONSEBLOCK_H
#define SRESPONSEBLOCK_H

#include "SVerbatimBlock.h"

// Response data of the analysis engine; only carried along.
// Kept as it stands in the file until its own reader and writer take over ReadBody and
// WriteBody.
class SResponseBlock : public SVerbatimBlock {
  SCOLLECTABLE_DECLARE(SResponseBlock)
  SCOLLECTABLE_COPYABLE(SResponseBlock)
public:
  explicit SResponseBlock(SProject* owner = nullptr) : SVerbatimBlock(owner, "SID") {}
};

#endif
