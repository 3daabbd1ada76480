#include "SStandardSweep.h"

#include "SFile.h"
#include "SProjectClassID.h"

#include <algorithm>
#include <cmath>

SCOLLECTABLE_DEFINE(SStandardSweep, SID_STANDARDSWEEP, &SBaseSweep::staticTypeInfo())

bool SStandardSweep::Read(SFile& file) {
  return ReadValue(file, itsStart) && ReadValue(file, itsStop) && ReadValue(file, itsStep);
}

void SStandardSweep::Write(SProjectStream& out) const {
  out << GetName() << ' ';
  WriteValue(out, itsStart);
  out << ' ';
  WriteValue(out, itsStop);
  out << ' ';
  WriteValue(out, itsStep);
  out << '\n';
}

void SStandardSweep::GetFrequencies(std::vector<double>& out) const {
  if (!itsStart.IsValid()) return;
  const double start = itsStart.GetValue();
  const double step = itsStep.IsValid() ? itsStep.GetValue() : 0.0;
  if (step <= 0.0 || !itsStop.IsValid() || !std::isfinite(step)) {
    out.push_back(start);
    return;
  }
  // Counted, not summed, so that rounding doesn't add or lose the last point.
  const double span = (itsStop.GetValue() - start) / step;
  const size_t count = span < 0 ? 0 : static_cast<size_t>(std::min(span + 1e-9, static_cast<double>(kMaxPoints)));
  for (size_t i = 0; i <= count && i < kMaxPoints; ++i) out.push_back(start + static_cast<double>(i) * step);
}

SString SStandardSweep::GetDescription() const {
  if (!HasLimits()) return UnsetText();
  SString text = SBaseSweep::GetDescription();
  if (itsStep.IsValid()) text += " step of " + NumberText(itsStep.GetValue());
  return text;
}

void SStandardSweep::Scale(double ratio) {
  SBaseSweep::Scale(ratio);
  ScaleValue(itsStep, ratio);
}
