#ifndef SFREQUENCYBLOCK_H
#define SFREQUENCYBLOCK_H

#include "SFileBlock.h"
#include "SOrdered.h"

#include <vector>

class SFrequencyEntry;

// FREQ: the frequencies of an analysis in the older formats. The current format keeps them
// as sweeps, so the project never writes this block at format 21.
class SFrequencyBlock : public SFileBlock {
  SCOLLECTABLE_DECLARE(SFrequencyBlock)
public:
  explicit SFrequencyBlock(SProject* owner = nullptr) : SFileBlock(owner, "FREQ") {}
  SFrequencyBlock(const SFrequencyBlock& other);
  SFrequencyBlock& operator=(const SFrequencyBlock&) = delete;
  ~SFrequencyBlock() override { itsEntries.clearAndDestroy(); }
  SCollectable* newSpecies() const override { return new SFrequencyBlock(); }
  SCollectable* copy() const override { return new SFrequencyBlock(*this); }

  bool ReadFirstLine(SFile& file) override;
  bool ReadBody(SFile& file, SProjectErrorManager& errors) override;
  void WriteBody(SProjectStream& out) override;
  void ChangeUnits(const SDimensionBlock& newUnits) override;
  void ScaleToUnit(double oldFactor, double newFactor);

  // Takes ownership.
  void AddEntry(SFrequencyEntry* entry);
  const SOrdered& GetEntries() const { return itsEntries; }
  void ClearEntries() { itsEntries.clearAndDestroy(); }
  // Every frequency of every entry, sorted, without repeats.
  void GetAllFrequencies(std::vector<double>& out) const;
  size_t CountFrequencies() const;
  // An entry implied an adaptive sweep (AUTO, FINDMIN, FINDMAX).
  bool IsChanged() const { return itsChanged; }

private:
  // A word of the older form of a frequency unit ("GHZ", "MHz", ...) sets the project's unit.
  bool TakeUnit(const SString& token);

  SOrdered itsEntries;
  bool itsChanged = false;
};

#endif
