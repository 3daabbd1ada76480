#ifndef SVARIABLESWEEP_H
#define SVARIABLESWEEP_H

#include "SCollectable.h"
#include "SOrdered.h"
#include "SProjectStream.h"
#include "SSweptVariable.h"

#include <memory>

class SControlBlock;
class SFile;
class SFrequencyEntry;
class SProject;
class SProjectErrorManager;

// One sweep set of VARSWP: frequency entries, the variables it moves, and optionally a
// CONTROL block of its own that overrides the project's for this set.
class SVariableSweep : public SCollectable {
  SCOLLECTABLE_DECLARE(SVariableSweep)
public:
  explicit SVariableSweep(SProject* project = nullptr);
  SVariableSweep(const SVariableSweep& other);
  SVariableSweep& operator=(const SVariableSweep&) = delete;
  ~SVariableSweep() override;
  SCollectable* newSpecies() const override { return new SVariableSweep(); }
  SCollectable* copy() const override { return new SVariableSweep(*this); }

  // A word that opens a set: FREQ, ENABLED, OVRCONTROL or a frequency entry's keyword.
  static bool StartsSet(const SString& word);
  // From the set's first line to the line behind it: its END, which it takes, or the first
  // line of the next set or of the block's end, which it leaves. False for a line it can't
  // read; the caller reports.
  bool Read(SFile& file, SProjectErrorManager& errors);
  // In the form of the write format; below 21 a set without a variable in use writes
  // nothing, since its frequencies go to the FREQ block.
  void Write(SProjectStream& out, int format) const;

  bool IsEnabled() const { return itsEnabled; }
  void SetEnabled(bool on) { itsEnabled = on; }
  SProject* GetProject() const { return itsProject; }
  void SetProject(SProject* project) { itsProject = project; }
  // Takes ownership.
  void AddEntry(SFrequencyEntry* entry);
  const SOrdered& GetEntries() const { return itsEntries; }
  // Takes the entries out without destroying them; the set is left without any.
  void TakeEntries(SOrdered& into);
  SSweptVariableSpecification& GetVariables() { return itsVariables; }
  const SSweptVariableSpecification& GetVariables() const { return itsVariables; }
  bool HasVariableInUse() const { return itsVariables.HasVariableInUse(); }
  SControlBlock* GetOverrideControl() const { return itsOverride.get(); }
  // Takes ownership; null removes it.
  void SetOverrideControl(SControlBlock* control);
  // The project's named values (the circuit's and the VAR block's), none in use; false when
  // the project has no list of them, and then every name read is taken.
  bool StartWithProjectVariables();

private:
  bool ReadEntry(SFile& file, bool selected, bool adaptive);
  bool ReadOverrideControl(SFile& file, SProjectErrorManager& errors);
  void WriteVariables(SProjectStream& out, int format, const char* prefix) const;

  SSweptVariableSpecification itsVariables;
  SOrdered itsEntries;
  SProject* itsProject = nullptr;
  bool itsEnabled = true;
  std::unique_ptr<SControlBlock> itsOverride;
};

#endif
