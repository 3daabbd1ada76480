#ifndef STRANSLATORBLOCK_H
#define STRANSLATORBLOCK_H

#include "SVerbatimBlock.h"

// Settings of the translators that made or update the project.
// Kept as it stands in the file until its own reader and writer take over ReadBody and
// WriteBody.
class STranslatorBlock : public SVerbatimBlock {
  SCOLLECTABLE_DECLARE(STranslatorBlock)
  SCOLLECTABLE_COPYABLE(STranslatorBlock)
public:
  explicit STranslatorBlock(SProject* owner = nullptr) : SVerbatimBlock(owner, "TRANSLATOR") {}
};

#endif
