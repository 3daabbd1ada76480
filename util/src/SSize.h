#ifndef SSIZE_H
#define SSIZE_H

#include "SString.h"

#include <cmath>

class SSize {
public:
  SSize() : itsWidth(0.0), itsHeight(0.0) {}
  SSize(double width, double height) : itsWidth(width), itsHeight(height) {}

  double width() const { return itsWidth; }
  double height() const { return itsHeight; }
  void setWidth(double width) { itsWidth = width; }
  void setHeight(double height) { itsHeight = height; }
  bool operator==(const SSize& other) const { return itsWidth == other.itsWidth && itsHeight == other.itsHeight; }
  bool operator!=(const SSize& other) const { return !(*this == other); }
  // Scales by the magnitude of the factor, so a size never turns negative by it.
  SSize& scale(double factor) {
    itsWidth *= std::fabs(factor);
    itsHeight *= std::fabs(factor);
    return *this;
  }
  SSize scaled(double factor) const { return SSize(*this).scale(factor); }

  // "width height"
  SString text(int significantDigits = 6) const {
    return SString::number(itsWidth, significantDigits) + " " + SString::number(itsHeight, significantDigits);
  }

private:
  double itsWidth;
  double itsHeight;
};

#endif
