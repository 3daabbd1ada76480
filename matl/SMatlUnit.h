#ifndef SMATLUNIT_H
#define SMATLUNIT_H

#include "SMatlMaterial.h"
#include "SMatlUtil.h"

// The units of a material file: for each dimension (SMatlUtil::Dimension) the current
// unit, which the values are in, and the file unit, which the file is to be written in.
// Reading a unit line sets both. A unit token tries each dimension not yet seen, in the
// order length, conductivity, resistivity, sheet resistance, temperature; the first that
// knows the token takes it and is seen from then on.
class SMatlUnit : public SMatlMaterial {
  SCOLLECTABLE_DECLARE(SMatlUnit)
public:
  SMatlUnit() {}
  SMatlUnit(const SMatlUnit& other) = default;

  int GetKind() const override { return UnitKind; }
  // "LUNIT", "CUNIT", "RUNIT", "SRUNIT" with the current units' names in double quotes,
  // then a blank line.
  bool Write(SProjectStream& out) const override;
  SMatlMaterial* Clone() const override { return new SMatlUnit(*this); }
  // The tokens after the keyword, at least one; false (with a trace) for a token no
  // dimension takes. The owner reports 20126.
  bool Read(SCommentedFile& file) override;
  bool IsEqual(const SMatlMaterial& other) const override;

  // One token, as a unit line's tokens are taken; false when no dimension takes it.
  bool TakeToken(const SString& token);

  int GetCurrent(int dimension) const { return itsCurrent[dimension]; }
  void SetCurrent(int dimension, int code) { itsCurrent[dimension] = code; }
  int GetFile(int dimension) const { return itsFile[dimension]; }
  void SetFile(int dimension, int code) { itsFile[dimension] = code; }
  bool IsSeen(int dimension) const { return itsSeen[dimension]; }
  void SetSeen(int dimension, bool on) { itsSeen[dimension] = on; }
  // The current unit's name.
  SString GetCurrentName(int dimension, bool longName = true) const;
  SString GetFileName(int dimension, bool longName = true) const;
  // The factor from the current to the file unit.
  double GetConversionFactor(int dimension) const;

private:
  int itsCurrent[SMatlUtil::DimensionCount] = {0, 0, 0, 0, 0};
  int itsFile[SMatlUtil::DimensionCount] = {0, 0, 0, 0, 0};
  bool itsSeen[SMatlUtil::DimensionCount] = {false, false, false, false, false};
};

#endif
