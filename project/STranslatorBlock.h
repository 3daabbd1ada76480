#ifndef STRANSLATORBLOCK_H
#define STRANSLATORBLOCK_H

#include "SFileBlock.h"
#include "STranslatorExport.h"

// TRANSLATOR: the options of the last export to DXF, GDSII and Gerber. Only the records
// that a file held (or that were set present) are written, and nothing below format 11.
class STranslatorBlock : public SFileBlock {
  SCOLLECTABLE_DECLARE(STranslatorBlock)
  SCOLLECTABLE_COPYABLE(STranslatorBlock)
public:
  explicit STranslatorBlock(SProject* owner = nullptr);

  // A record that can't be read is message 7140 and ends the read.
  bool ReadBody(SFile& file, SProjectErrorManager& errors) override;
  bool Write(SProjectStream& out) override;
  void WriteBody(SProjectStream& out) override;
  void SetDefaults() override;

  STranslatorExport& GetExport(int kind) { return itsExports[kind < 0 || kind > 2 ? 0 : kind]; }
  const STranslatorExport& GetExport(int kind) const { return itsExports[kind < 0 || kind > 2 ? 0 : kind]; }
  // The layout editor's saved export options, for all three records; the DXF record's
  // general keys then stand for the other two as well.
  void LoadSavedOptions();

private:
  STranslatorExport itsExports[3];
};

#endif
