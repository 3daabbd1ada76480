#include "SBaseSweep.h"

#include "SProjectClassID.h"

SCOLLECTABLE_DEFINE(SBaseSweep, SID_BASESWEEP, &SFrequencyEntry::staticTypeInfo())

void SBaseSweep::Scale(double ratio) {
  ScaleValue(itsStart, ratio);
  ScaleValue(itsStop, ratio);
}

SString SBaseSweep::GetDescription() const {
  if (!HasLimits()) return UnsetText();
  return NumberText(itsStart.GetValue()) + " to " + NumberText(itsStop.GetValue());
}
