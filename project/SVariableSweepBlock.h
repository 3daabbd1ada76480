#ifndef SVARIABLESWEEPBLOCK_H
#define SVARIABLESWEEPBLOCK_H

#include "SFileBlock.h"
#include "SOrdered.h"

class SVariableSweep;

// VARSWP: the parameter sweeps, and in the current format also the plain frequency sweeps,
// which are sets that move no variable. Below format 21 those go to the FREQ block instead
// (SProject::WriteFile), and the block writes only the sets that move a variable.
class SVariableSweepBlock : public SFileBlock {
  SCOLLECTABLE_DECLARE(SVariableSweepBlock)
public:
  explicit SVariableSweepBlock(SProject* owner = nullptr) : SFileBlock(owner, "VARSWP") {}
  SVariableSweepBlock(const SVariableSweepBlock& other);
  SVariableSweepBlock& operator=(const SVariableSweepBlock&) = delete;
  ~SVariableSweepBlock() override { itsSweeps.clearAndDestroy(); }
  SCollectable* newSpecies() const override { return new SVariableSweepBlock(); }
  SCollectable* copy() const override { return new SVariableSweepBlock(*this); }

  bool ReadBody(SFile& file, SProjectErrorManager& errors) override;
  // Nothing at all below format 21 when no set moves a variable.
  bool Write(SProjectStream& out) override;
  void WriteBody(SProjectStream& out) override;
  void ChangeUnits(const SDimensionBlock& newUnits) override;
  // An empty list: message 7212.
  bool Validate(SProjectErrorManager& errors) override;

  size_t Count() const { return itsSweeps.entries(); }
  SVariableSweep* Get(size_t i) const;
  // Takes ownership; the set is bound to the block's project.
  void Add(SVariableSweep* sweep);
  void Insert(size_t i, SVariableSweep* sweep);
  // Destroys the set.
  void Remove(size_t i);
  // Puts `sweep` in place of the set at `i`, which is destroyed.
  void Replace(size_t i, SVariableSweep* sweep);
  void Move(size_t from, size_t to);
  void SetAllEnabled(bool on);
  bool GetEnabled() const { return itsEnabled; }
  void SetEnabled(bool on) { itsEnabled = on; }
  // The block is switched on and some set moves a variable.
  bool IsEnabled() const;
  void RenameVariable(const SString& oldName, const SString& newName) override;

private:
  SOrdered itsSweeps;
  // SWPVARS ON.
  bool itsEnabled = false;
};

#endif
