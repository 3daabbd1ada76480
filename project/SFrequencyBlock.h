#ifndef SFREQUENCYBLOCK_H
#define SFREQUENCYBLOCK_H

#include "SFileBlock.h"
#include "SOrdered.h"

#include <vector>

class SFrequencyEntry;
class SVariableSweepBlock;

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

  // Read: the block's entries become a sweep set of their own at the head of `sweeps`, and
  // the block is no longer present. The options ReplaceFreqs and AdditionalFreqs of CONTROL
  // also give them to the sets that move variables.
  void MoveToSweeps(SVariableSweepBlock& sweeps, bool replace, bool additional);

  // For the time of a write below format 21: the block holds the entries of the sweep sets
  // that move no variable, and is present when there are any; then it is as it was.
  class SFromSweeps {
  public:
    SFromSweeps(SFrequencyBlock& block, const SVariableSweepBlock& sweeps);
    ~SFromSweeps();
    SFromSweeps(const SFromSweeps&) = delete;
    SFromSweeps& operator=(const SFromSweeps&) = delete;

  private:
    SFrequencyBlock& itsBlock;
    SOrdered itsSaved;
    bool itsWasPresent;
    bool itsSwapped = false;
  };

private:
  // A word of the older form of a frequency unit ("GHZ", "MHz", ...) sets the project's unit.
  bool TakeUnit(const SString& token);

  SOrdered itsEntries;
  bool itsChanged = false;
};

#endif
