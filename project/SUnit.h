#ifndef SUNIT_H
#define SUNIT_H

#include "SCollectableString.h"

// One unit of a unit family: its keyword (the collectable text), the name shown to a
// user, and its factor to the family's base unit (metres, hertz, ohms, henries, farads,
// radians, siemens, ...).
class SUnit : public SCollectableString {
  SCOLLECTABLE_DECLARE(SUnit)
  SCOLLECTABLE_COPYABLE(SUnit)
public:
  SUnit() {}
  SUnit(const SString& keyword, const SString& display, double factor)
      : SCollectableString(keyword), itsDisplay(display), itsFactor(factor) {}

  const SString& GetKeyword() const { return *this; }
  const SString& GetDisplay() const { return itsDisplay; }
  double GetFactor() const { return itsFactor; }
  bool HasFactor() const { return itsFactor != 0.0; }

private:
  SString itsDisplay;
  // 0 when the unit has no fixed factor.
  double itsFactor = 0.0;
};

#endif
