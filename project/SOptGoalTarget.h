#ifndef SOPTGOALTARGET_H
#define SOPTGOALTARGET_H

#include "SCollectable.h"
#include "SProjectStream.h"
#include "SString.h"

class SFile;
class SProject;

// What a goal's response is held against: a number, another network's response, or the
// response of a data file. Responses are words kept as read.
class SOptGoalTarget : public SCollectable {
  SCOLLECTABLE_DECLARE(SOptGoalTarget)
public:
  ~SOptGoalTarget() override {}

  // The target that the file's next word opens ("VALUE=...", "NET=...", "FILE"), read with
  // the words it takes; null for another word or words that don't fit.
  static SOptGoalTarget* Create(SFile& file, const SProject* project);
  SOptGoalTarget* Clone() const { return static_cast<SOptGoalTarget*>(copy()); }
  // Reads the words behind the first word, which the file has passed.
  virtual bool Read(const SString& first, SFile& file, const SProject* project) = 0;
  virtual void Write(SProjectStream& out, const SProject* project) const = 0;
  // The target as lists show it.
  virtual SString GetText() const = 0;
  virtual const char* GetLabel() const = 0;
  bool Compare(const SOptGoalTarget& other) const;
};

class SOptValueTarget : public SOptGoalTarget {
  SCOLLECTABLE_DECLARE(SOptValueTarget)
  SCOLLECTABLE_COPYABLE(SOptValueTarget)
public:
  bool Read(const SString& first, SFile& file, const SProject* project) override;
  void Write(SProjectStream& out, const SProject* project) const override;
  SString GetText() const override;
  const char* GetLabel() const override { return "Value"; }

  double itsValue = 0.0;
};

class SOptResponseTarget : public SOptGoalTarget {
  SCOLLECTABLE_DECLARE(SOptResponseTarget)
  SCOLLECTABLE_COPYABLE(SOptResponseTarget)
public:
  bool Read(const SString& first, SFile& file, const SProject* project) override;
  void Write(SProjectStream& out, const SProject* project) const override;
  SString GetText() const override;
  const char* GetLabel() const override { return "Network"; }

  SString itsNetwork;
  SString itsResponse;
};

// The file name is absolute in memory and relative to the project in the file.
class SOptFileTarget : public SOptGoalTarget {
  SCOLLECTABLE_DECLARE(SOptFileTarget)
  SCOLLECTABLE_COPYABLE(SOptFileTarget)
public:
  bool Read(const SString& first, SFile& file, const SProject* project) override;
  void Write(SProjectStream& out, const SProject* project) const override;
  SString GetText() const override;
  const char* GetLabel() const override { return "File"; }

  SString itsFileName;
  SString itsResponse;
};

#endif
