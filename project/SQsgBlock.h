#ifndef SQSGBLOCK_H
#define SQSGBLOCK_H

#include "SFileBlock.h"

// QSG: how the quick-start guide of the layout editor last set up the project. Written only
// when it was read from a file, so that a project made here doesn't gain the block.
class SQsgBlock : public SFileBlock {
  SCOLLECTABLE_DECLARE(SQsgBlock)
  SCOLLECTABLE_COPYABLE(SQsgBlock)
public:
  enum Item { Import = 0, ExtraMetal, Units, Align, Ref, ViewRes, Metals, Used, ItemCount };

  explicit SQsgBlock(SProject* owner = nullptr);

  bool ReadBody(SFile& file, SProjectErrorManager& errors) override;
  bool Write(SProjectStream& out) override;
  void WriteBody(SProjectStream& out) override;
  void SetDefaults() override;

  bool Get(int item) const { return item >= 0 && item < ItemCount && itsItems[item]; }
  void Set(int item, bool on) {
    if (item >= 0 && item < ItemCount) itsItems[item] = on;
  }
  bool WasRead() const { return itsWasRead; }

private:
  void ResetItems();

  bool itsWasRead = false;
  bool itsItems[ItemCount];
};

#endif
