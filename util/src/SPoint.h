#ifndef SPOINT_H
#define SPOINT_H

#include "SString.h"

// A point of two doubles. Equality is tolerant: a relative 1e-12 per axis, and
// against an exact zero the other may be at most 1e-12 in magnitude.
class SPoint {
public:
  SPoint() : itsX(0.0), itsY(0.0) {}
  SPoint(double x, double y) : itsX(x), itsY(y) {}

  double x() const { return itsX; }
  double y() const { return itsY; }
  void setX(double x) { itsX = x; }
  void setY(double y) { itsY = y; }
  double& rx() { return itsX; }
  double& ry() { return itsY; }

  static bool NearlyEqual(double a, double b);
  bool operator==(const SPoint& other) const { return NearlyEqual(itsX, other.itsX) && NearlyEqual(itsY, other.itsY); }
  bool operator!=(const SPoint& other) const { return !(*this == other); }
  bool exactlyEqual(const SPoint& other) const { return itsX == other.itsX && itsY == other.itsY; }

  SPoint operator+(const SPoint& other) const { return SPoint(itsX + other.itsX, itsY + other.itsY); }
  SPoint operator-(const SPoint& other) const { return SPoint(itsX - other.itsX, itsY - other.itsY); }
  SPoint operator-() const { return SPoint(-itsX, -itsY); }
  SPoint operator*(double factor) const { return SPoint(itsX * factor, itsY * factor); }
  SPoint operator/(double divisor) const { return SPoint(itsX / divisor, itsY / divisor); }
  SPoint& operator+=(const SPoint& other) {
    itsX += other.itsX;
    itsY += other.itsY;
    return *this;
  }
  SPoint& operator-=(const SPoint& other) {
    itsX -= other.itsX;
    itsY -= other.itsY;
    return *this;
  }
  SPoint& operator*=(double factor) {
    itsX *= factor;
    itsY *= factor;
    return *this;
  }
  double distanceTo(const SPoint& other) const;

  // "x y"
  SString text(int significantDigits = 6) const;

private:
  double itsX;
  double itsY;
};

#endif
