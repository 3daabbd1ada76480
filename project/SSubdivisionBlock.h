#ifndef SSUBDIVISIONBLOCK_H
#define SSUBDIVISIONBLOCK_H

#include "SVerbatimBlock.h"

// Subdivision lines and the sub-projects they make.
// Kept as it stands in the file until its own reader and writer take over ReadBody and
// WriteBody.
class SSubdivisionBlock : public SVerbatimBlock {
  SCOLLECTABLE_DECLARE(SSubdivisionBlock)
  SCOLLECTABLE_COPYABLE(SSubdivisionBlock)
public:
  explicit SSubdivisionBlock(SProject* owner = nullptr) : SVerbatimBlock(owner, "SUBDIV") {}

  // Its file names follow the project's; nothing to do while the body is kept as read.
  void FileNameChanged(const SString& newName) override { (void)newName; }
};

#endif
