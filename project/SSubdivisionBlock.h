#ifndef SSUBDIVISIONBLOCK_H
#define SSUBDIVISIONBLOCK_H

#include "SFileBlock.h"
#include "SFileName.h"

#include <utility>
#include <vector>

class SSubdivisionLine;

// SUBDIV: the cut lines that split a circuit into sub-projects, the names of those
// projects and how their reference planes are set. Names are absolute in memory; in the
// file they are relative to the project, with its base name as "$BASENAME".
class SSubdivisionBlock : public SFileBlock {
  SCOLLECTABLE_DECLARE(SSubdivisionBlock)
public:
  enum RefPlaneMode { AutoRefPlane = 0, FixedRefPlane = 1, NoRefPlane = 2 };

  explicit SSubdivisionBlock(SProject* owner = nullptr) : SFileBlock(owner, "SUBDIV") {}
  SSubdivisionBlock(const SSubdivisionBlock& other);
  SSubdivisionBlock& operator=(const SSubdivisionBlock&) = delete;
  ~SSubdivisionBlock() override;
  SCollectable* newSpecies() const override { return new SSubdivisionBlock(); }
  SCollectable* copy() const override { return new SSubdivisionBlock(*this); }

  bool ReadBody(SFile& file, SProjectErrorManager& errors) override;
  // Nothing at all without lines.
  bool Write(SProjectStream& out) override;
  void WriteBody(SProjectStream& out) override;

  // Takes ownership of the lines; the old ones are destroyed.
  void SetLines(const std::vector<SSubdivisionLine*>& lines);
  size_t CountLines() const { return itsLines.size(); }
  SSubdivisionLine* GetLine(size_t i) const { return i < itsLines.size() ? itsLines[i] : nullptr; }
  const SFileName& GetMainName() const { return itsMainName; }
  void SetMainName(const SString& name) { itsMainName = name; }
  // Sub-project names by their index.
  const std::vector<std::pair<int, SString>>& GetSubprojectNames() const { return itsNames; }
  int GetRefPlaneMode() const { return itsRefPlaneMode; }
  double GetRefPlaneLength() const { return itsRefPlaneLength; }
  void SetRefPlane(int mode, double length) {
    itsRefPlaneMode = mode;
    itsRefPlaneLength = length;
  }

  // The largest distance between neighbouring lines, and from 0 to the first and from the
  // last to `total`, in project units.
  double GetMaxGap(double total) const;
  // A reference plane length in cells: half the largest gap, at most 0.2 wavelength at the
  // top frequency, at least 8.
  int SuggestRefPlane();
  // The reference plane length in cells of the cut direction; 0 in mode N.
  int GetRefPlaneCells();
  // "<stem>_s<n>.<ext>" of the main project for each of the parts the lines make.
  void MakeSubprojectNames();

private:
  // The box size and cell count across the lines (along X for V lines or none).
  bool GetCutAxis(double& size, int& cells);
  // A name read: "$BASENAME" expanded, made absolute against the project.
  SString NameFromFile(const SString& text) const;
  SString NameToFile(const SString& name) const;
  SString ProjectDirectory() const;
  SString ProjectBaseName() const;
  // The highest frequency of the project's sweeps, in hertz; 0 without any.
  double TopFrequency();

  SFileName itsMainName;
  std::vector<std::pair<int, SString>> itsNames;
  std::vector<SSubdivisionLine*> itsLines;
  int itsRefPlaneMode = AutoRefPlane;
  double itsRefPlaneLength = 0.0;
};

#endif
