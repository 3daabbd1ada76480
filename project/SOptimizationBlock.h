#ifndef SOPTIMIZATIONBLOCK_H
#define SOPTIMIZATIONBLOCK_H

#include "SFileBlock.h"
#include "SOptimizationVariable.h"
#include "SOrdered.h"
#include "SValid.h"
#include "SVariableSpecification.h"

class SOptimizationGoal;
class SValueVarDouble;

// OPT: the goals of an optimisation and its iteration limit. Below format 21 the block
// also holds the bounds of the variables (VARS); from 21 on they stand in the VCNSTR lines
// of the variables, and a VARS list read moves its bounds there.
class SOptimizationBlock : public SFileBlock {
  SCOLLECTABLE_DECLARE(SOptimizationBlock)
public:
  explicit SOptimizationBlock(SProject* owner = nullptr) : SFileBlock(owner, "OPT") {}
  SOptimizationBlock(const SOptimizationBlock& other);
  SOptimizationBlock& operator=(const SOptimizationBlock&) = delete;
  ~SOptimizationBlock() override { itsGoals.clearAndDestroy(); }
  SCollectable* newSpecies() const override { return new SOptimizationBlock(); }
  SCollectable* copy() const override { return new SOptimizationBlock(*this); }

  bool ReadBody(SFile& file, SProjectErrorManager& errors) override;
  void WriteBody(SProjectStream& out) override;
  // The goals' frequencies follow a new frequency unit.
  void ChangeUnits(const SDimensionBlock& newUnits) override;
  // No goals: message 7212.
  bool Validate(SProjectErrorManager& errors) override;
  void RenameVariable(const SString& oldName, const SString& newName) override;

  size_t CountGoals() const { return itsGoals.entries(); }
  SOptimizationGoal* GetGoal(size_t i) const;
  // Takes ownership; the goal is bound to the block's project.
  void AddGoal(SOptimizationGoal* goal);
  // Destroys the goal.
  void RemoveGoal(size_t i);
  void MoveGoal(size_t from, size_t to);
  // Puts `goal` in place of the goal at `i`, which is destroyed.
  void ReplaceGoal(size_t i, SOptimizationGoal* goal);

  int GetMaxIterations() const { return itsMaxIterations; }
  void SetMaxIterations(int count) { itsMaxIterations = count; }
  SOptimizationVariableSpec& GetVariables() { return itsVariables; }
  const SVariableSpecification& GetBestValues() const { return itsBestValues; }
  const SDoubleValid& GetError() const { return itsError; }
  void SetError(double error) { itsError = SDoubleValid(error); }
  // Clears the value each variable last reached.
  void ResetValues();

  // <results directory>/opt.sid; empty for a project without a file name.
  SString GetOptValuesPath() const;
  // The best values and the error of the values file, in the project's length unit; a
  // file that can't be opened leaves the list empty.
  bool ReadOptValues();
  bool WriteOptValues(const SVariableSpecification& values);
  bool RemoveOptValues();

private:
  // The VARS list up to its END, which it takes, or to a line that isn't a variable's,
  // which it leaves.
  bool ReadVariables(SFile& file, SProjectErrorManager& errors);
  // A VARS list read gives its bounds to the project's variables of the same names.
  void MoveBoundsToProject();
  // The project's value of that name: a layout variable or a named value of VAR.
  SValueVarDouble* FindProjectValue(const SString& name) const;
  // The list to write below format 21: the list read, with the bounds the project's
  // variables hold now, and the project's variables bounded since.
  void CollectVariables(SOptimizationVariableSpec& list) const;

  SOrdered itsGoals;
  SOptimizationVariableSpec itsVariables;
  SVariableSpecification itsBestValues;
  int itsMaxIterations = 100;
  SDoubleValid itsError{0.0, false};
};

#endif
