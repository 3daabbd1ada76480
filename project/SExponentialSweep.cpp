#include "SExponentialSweep.h"

#include "SProjectClassID.h"

#include <algorithm>
#include <cmath>

SCOLLECTABLE_DEFINE(SExponentialSweep, SID_EXPONENTIALSWEEP, &SNumberPointsSweep::staticTypeInfo())

void SExponentialSweep::GetFrequencies(std::vector<double>& out) const {
  if (!HasLimits() || itsPoints < 1) return;
  const size_t n = std::min(static_cast<size_t>(itsPoints), kMaxPoints);
  const double start = itsStart.GetValue();
  const double stop = itsStop.GetValue();
  if (n == 1 || start <= 0.0 || stop <= 0.0) {
    out.push_back(start);
    return;
  }
  const double ratio = std::log(stop / start);
  for (size_t i = 0; i < n; ++i)
    out.push_back(start * std::exp(ratio * static_cast<double>(i) / static_cast<double>(n - 1)));
}
