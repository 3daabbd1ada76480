#ifndef SVERBATIMBLOCK_H
#define SVERBATIMBLOCK_H

#include "SFileBlock.h"

#include <QStringList>

// A block kept as it stands in the file: the tokens behind its name on the first line and
// each body line as read (comments and continuations resolved), written back unchanged.
// The blocks whose own readers are still to come derive from it, so that a project read and
// written again keeps them; a block with a real reader overrides ReadBody and WriteBody.
class SVerbatimBlock : public SFileBlock {
  SCOLLECTABLE_DECLARE(SVerbatimBlock)
public:
  SVerbatimBlock(SProject* owner, const SString& name) : SFileBlock(owner, name) {}

  bool ReadFirstLine(SFile& file) override;
  // Takes lines up to the one that reads "END <name>"; an inner "END" of another kind
  // is body text.
  bool ReadBody(SFile& file, SProjectErrorManager& errors) override;
  void WriteFirstLine(SProjectStream& out) override;
  void WriteBody(SProjectStream& out) override;

  const SString& GetFirstLineRest() const { return itsFirstLineRest; }
  const QStringList& GetLines() const { return itsLines; }
  void SetLines(const QStringList& lines) { itsLines = lines; }
  void Clear();

protected:
  SString itsFirstLineRest;
  QStringList itsLines;
};

#endif
