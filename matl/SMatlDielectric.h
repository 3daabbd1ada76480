#ifndef SMATLDIELECTRIC_H
#define SMATLDIELECTRIC_H

#include "SLevel.h"
#include "SMatlMaterial.h"

// A "DIEL" line: one dielectric layer of the stack, with the values a project level takes.
// Thickness is in the file's length unit, the conductivity in the unit of its loss type.
class SMatlDielectric : public SMatlMaterial, public SLevelData {
  SCOLLECTABLE_DECLARE(SMatlDielectric)
public:
  SMatlDielectric();
  SMatlDielectric(const SMatlDielectric& other);

  int GetKind() const override { return DielectricKind; }
  bool Write(SProjectStream& out) const override;
  SMatlMaterial* Clone() const override { return new SMatlDielectric(*this); }
  bool Read(SCommentedFile& file) override;
  bool IsEqual(const SMatlMaterial& other) const override;
  void Scale(int dimension, double factor) override;
  SString GetName() const override { return itsName; }

  // The level number: unset (-1) until a caller gives one; the owner then gives the place
  // in its list.
  bool HasLevel() const { return itsLevelNumber >= 0; }
  int GetLevel() const { return itsLevelNumber; }
  void SetLevel(int level) { itsLevelNumber = level; }
  int GetLossTypeCode() const { return GetLossType().GetCode(); }
  // Set by the technology file: the conductivity is written with 4 significant digits.
  bool IsTruncateConductivity() const { return itsTruncate; }
  void SetTruncateConductivity(bool on) { itsTruncate = on; }

private:
  int itsLevelNumber = -1;
  bool itsTruncate = false;
};

#endif
