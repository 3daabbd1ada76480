#ifndef SOPTIMIZATIONGOAL_H
#define SOPTIMIZATIONGOAL_H

#include "SCollectable.h"
#include "SOrdered.h"
#include "SProjectStream.h"

class SFile;
class SFrequencyEntry;
class SOptimizationGoalEntry;
class SProject;
class SProjectErrorManager;

// One goal of OPT: the frequencies it is judged at and its goal lines.
class SOptimizationGoal : public SCollectable {
  SCOLLECTABLE_DECLARE(SOptimizationGoal)
public:
  explicit SOptimizationGoal(SProject* project = nullptr) : itsProject(project) {}
  SOptimizationGoal(const SOptimizationGoal& other);
  SOptimizationGoal& operator=(const SOptimizationGoal&) = delete;
  ~SOptimizationGoal() override;
  SCollectable* newSpecies() const override { return new SOptimizationGoal(); }
  SCollectable* copy() const override { return new SOptimizationGoal(*this); }

  // A word that opens a goal: ENABLED, GOAL, FREQ or a frequency entry's keyword.
  static bool StartsGoal(const SString& word);
  // Onto the next line with a word, unless the file stands on one: its first word and the
  // whole line. False at the end of the file.
  static bool PeekLine(SFile& file, SString& word, SString& line);
  // A line without its word that is a goal line: it holds "NET=" and a name.
  static bool IsGoalLine(const SString& line);
  // From the goal's first line to the line behind it: its END, which it takes, or the first
  // line of the next goal or of anything else, which it leaves. A goal line that doesn't
  // fit is dropped with a warning. False for a frequency line it can't read.
  bool Read(SFile& file, SProjectErrorManager& errors);
  // Below format 21 one frequency line and one goal line, without their words.
  void Write(SProjectStream& out, int format) const;

  SProject* GetProject() const { return itsProject; }
  void SetProject(SProject* project);
  bool IsEnabled() const { return itsEnabled; }
  void SetEnabled(bool on) { itsEnabled = on; }
  // Take ownership.
  void AddEntry(SFrequencyEntry* entry);
  void AddGoalEntry(SOptimizationGoalEntry* entry);
  const SOrdered& GetEntries() const { return itsEntries; }
  size_t CountGoalEntries() const { return itsGoalEntries.entries(); }
  SOptimizationGoalEntry* GetGoalEntry(size_t i) const;

private:
  bool ReadEntry(SFile& file, bool selected);
  // Behind the word GOAL, if any: an optional Y or N, then the entry.
  bool ReadGoalLine(SFile& file, SProjectErrorManager& errors);
  void WriteEntry(SProjectStream& out, const SFrequencyEntry& entry, int format) const;

  SProject* itsProject = nullptr;
  SOrdered itsEntries;
  SOrdered itsGoalEntries;
  bool itsEnabled = true;
};

#endif
