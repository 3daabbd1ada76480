#ifndef SINFOBLOCK_H
#define SINFOBLOCK_H

#include "SFileBlock.h"
#include "SValid.h"

#include <QStringList>

// "info.log" of a project's data directory: the summary of the analysis engine's last run.
// It isn't one of a project's blocks but reads and writes the same way, opening with
// "FTYPE RESULTSINFO" and closing with a bare END. Every line is there only with a value.
class SInfoBlock : public SFileBlock {
  SCOLLECTABLE_DECLARE(SInfoBlock)
  SCOLLECTABLE_COPYABLE(SInfoBlock)
public:
  explicit SInfoBlock(SProject* owner = nullptr) : SFileBlock(owner, "FTYPE") {}

  bool ReadFirstLine(SFile& file) override;
  bool ReadBody(SFile& file, SProjectErrorManager& errors) override;
  bool Write(SProjectStream& out) override;
  void WriteFirstLine(SProjectStream& out) override;
  void WriteBody(SProjectStream& out) override;

  // The file of a data directory; writing also removes the older "runnum" beside it.
  bool ReadFile(const SString& path, SProjectErrorManager& errors);
  bool WriteFile(const SString& path);

  SString itsDate;
  SIntValid itsRun;
  // In the project's frequency unit.
  SDoubleValid itsFMax;
  // Pairs: the second value is optional.
  SDoubleValid itsMemory[2];
  SDoubleValid itsSubsections[2];
  SDoubleValid itsBand[2];
  SDoubleValid itsEms;
  SDoubleValid itsTime;
  SIntValid itsIterations;
  SIntValid itsCombinations;
  QStringList itsNames;
};

#endif
