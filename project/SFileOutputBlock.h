#ifndef SFILEOUTPUTBLOCK_H
#define SFILEOUTPUTBLOCK_H

#include "SVerbatimBlock.h"

// Result files the analysis writes, and their variable list.
// Kept as it stands in the file until its own reader and writer take over ReadBody and
// WriteBody.
class SFileOutputBlock : public SVerbatimBlock {
  SCOLLECTABLE_DECLARE(SFileOutputBlock)
  SCOLLECTABLE_COPYABLE(SFileOutputBlock)
public:
  explicit SFileOutputBlock(SProject* owner = nullptr) : SVerbatimBlock(owner, "FILEOUT") {}

  // Its file names follow the project's; nothing to do while the body is kept as read.
  void FileNameChanged(const SString& newName) override { (void)newName; }
};

#endif
