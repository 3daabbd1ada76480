#ifndef SOPTIMIZATIONGOALENTRY_H
#define SOPTIMIZATIONGOALENTRY_H

#include "SCollectable.h"
#include "SOptGoalTarget.h"
#include "SProjectStream.h"
#include "SString.h"

#include <memory>

class SFile;
class SProject;

// One goal line: a network's response held against a target, with a weight.
class SOptimizationGoalEntry : public SCollectable {
  SCOLLECTABLE_DECLARE(SOptimizationGoalEntry)
public:
  enum Operator { Equal = 0, Greater = 1, Less = 2 };

  explicit SOptimizationGoalEntry(SProject* project = nullptr) : itsProject(project) {}
  SOptimizationGoalEntry(const SOptimizationGoalEntry& other);
  SOptimizationGoalEntry& operator=(const SOptimizationGoalEntry&) = delete;
  SCollectable* newSpecies() const override { return new SOptimizationGoalEntry(); }
  SCollectable* copy() const override { return new SOptimizationGoalEntry(*this); }

  // The line from "NET=" on (the file stands there): network, response, operator, target,
  // and the weight when there is one. False for a line that doesn't fit.
  bool Read(SFile& file);
  // From "NET=" to the weight, without a line feed.
  void Write(SProjectStream& out) const;
  // The network, response, operator, target and weight as lists show them.
  SString GetText() const;
  static const char* OperatorText(int op);

  SOptGoalTarget* GetTarget() const { return itsTarget.get(); }
  // Takes ownership.
  void SetTarget(SOptGoalTarget* target) { itsTarget.reset(target); }

  bool itsEnabled = true;
  SProject* itsProject = nullptr;
  SString itsResponse;
  double itsWeight = 1.0;
  SString itsNetwork;
  int itsOperator = Equal;

private:
  std::unique_ptr<SOptGoalTarget> itsTarget;
};

#endif
