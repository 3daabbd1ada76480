#include "SLinearSweep.h"

#include "SProjectClassID.h"

#include <algorithm>

SCOLLECTABLE_DEFINE(SLinearSweep, SID_LINEARSWEEP, &SNumberPointsSweep::staticTypeInfo())

void SLinearSweep::GetFrequencies(std::vector<double>& out) const {
  if (!HasLimits() || itsPoints < 1) return;
  const size_t n = std::min(static_cast<size_t>(itsPoints), kMaxPoints);
  const double start = itsStart.GetValue();
  const double stop = itsStop.GetValue();
  if (n == 1) {
    out.push_back(start);
    return;
  }
  for (size_t i = 0; i < n; ++i) out.push_back(start + (stop - start) * static_cast<double>(i) / static_cast<double>(n - 1));
}
