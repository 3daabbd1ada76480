#ifndef SDIMENSIONBLOCK_H
#define SDIMENSIONBLOCK_H

#include "SFileBlock.h"
#include "SPoint.h"
#include "SSize.h"
#include "SUnit.h"

// DIM: the unit of every family of values in the file. Numbers elsewhere in a project are
// in these units ("project units"); the factors lead to metres, hertz, ohms, henries,
// farads, radians and siemens.
class SDimensionBlock : public SFileBlock {
  SCOLLECTABLE_DECLARE(SDimensionBlock)
  SCOLLECTABLE_COPYABLE(SDimensionBlock)
public:
  enum Family {
    Length = 0,
    Frequency = 1,
    Resistance = 2,
    Inductance = 3,
    Capacitance = 4,
    Angle = 5,
    Conductance = 6,
    Current = 7,
    Voltage = 8,
    PerLength = 9,
    DecibelPerLength = 10,
    Conductivity = 11,
    Resistivity = 12,
    SheetResistance = 13,
    NoUnit = 14,
    Time = 15,
    FamilyCount = 16
  };

  explicit SDimensionBlock(SProject* owner = nullptr);

  bool ReadBody(SFile& file, SProjectErrorManager& errors) override;
  void WriteBody(SProjectStream& out) override;
  void SetDefaults() override;

  // False, and nothing changes, when the family doesn't know the unit. Long length names
  // ("millimeter", ...) are stored under their keyword.
  bool SetUnit(int family, const SString& name);
  SString GetUnitName(int family) const;
  SString GetUnitDisplay(int family) const;
  // The display name in parentheses.
  SString GetUnitBracket(int family) const;
  // From the project unit to the base unit; 1 for families without a factor.
  double GetFactor(int family) const;
  double ToBase(int family, double value) const { return value * GetFactor(family); }
  double FromBase(int family, double value) const { return value / GetFactor(family); }

  // Values as the write format holds them: from format 15 on unchanged; below it feet are
  // written as inches and milli-, giga- and tera-ohms as ohms.
  double ToFileLength(double value) const;
  SPoint ToFilePoint(const SPoint& point) const;
  SSize ToFileSize(const SSize& size) const;
  double ToFileResistance(double value) const;
  // The unit keyword the write format holds for a family.
  SString FileUnitName(int family) const;

  // The family of a DIM keyword (prefix test), or -1.
  static int FamilyOfKeyword(const SString& token);
  static const char* FamilyKeyword(int family);
  static SString DefaultUnit(int family);
  // Factor of a unit keyword within a family; 0 when the family doesn't know it.
  static double UnitFactor(int family, const SString& name);

private:
  // The keyword a family knows a unit by, or empty.
  static SString Canonical(int family, const SString& name);

  SUnit itsUnits[FamilyCount];
};

#endif
