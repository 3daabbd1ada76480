#ifndef SFREQUENCYENTRY_H
#define SFREQUENCYENTRY_H

#include "SCollectable.h"
#include "SProjectStream.h"
#include "SString.h"
#include "SValid.h"

#include <vector>

class SFile;

// One line of a FREQ block: a sweep, a list or a single frequency, in the project's
// frequency unit. Each class reads the rest of its line behind the keyword and writes the
// whole line; the factory makes the class of a keyword.
class SFrequencyEntry : public SCollectable {
  SCOLLECTABLE_DECLARE(SFrequencyEntry)
public:
  // Expansion stops here, whatever a line asks for.
  static constexpr size_t kMaxPoints = 1000000;

  ~SFrequencyEntry() override {}

  virtual SString GetName() const = 0;
  // Reads the values behind the keyword; false for a missing or malformed one.
  virtual bool Read(SFile& file) = 0;
  virtual void Write(SProjectStream& out) const = 0;
  virtual void GetFrequencies(std::vector<double>& out) const = 0;
  virtual SString GetDescription() const = 0;
  virtual void Scale(double ratio) = 0;
  SFrequencyEntry* Clone() const { return static_cast<SFrequencyEntry*>(copy()); }

  // In a sweep set: the entry takes part ("FREQ Y"), and it runs adaptively ("AY").
  bool IsSelected() const { return itsSelected; }
  void SetSelected(bool on) { itsSelected = on; }
  bool IsAdaptive() const { return itsAdaptive; }
  void SetAdaptive(bool on) { itsAdaptive = on; }
  // Same class and same written line.
  bool Compare(const SFrequencyEntry& other) const;

  // Null for a word that names no entry.
  static SFrequencyEntry* Create(const SString& keyword);
  // An unset value, written "UNK".
  static bool ReadValue(SFile& file, SDoubleValid& value);
  static void WriteValue(SProjectStream& out, const SDoubleValid& value);

protected:
  bool itsSelected = true;
  bool itsAdaptive = false;

  // For the descriptions and unit changes of the entries.
  static SString NumberText(double value);
  static void ScaleValue(SDoubleValid& value, double ratio);
  static const char* UnsetText() { return "Please double click to set up this sweep."; }
};

#endif
