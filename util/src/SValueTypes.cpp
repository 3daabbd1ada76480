#include "SMargin.h"
#include "SPoint.h"
#include "SRect.h"
#include "STime.h"

#include <algorithm>
#include <cmath>

bool SPoint::NearlyEqual(double a, double b) {
  if (a == b) return true;
  const double tolerance = 1e-12;
  if (a == 0.0) return std::fabs(b) <= tolerance;
  if (b == 0.0) return std::fabs(a) <= tolerance;
  return std::fabs(a - b) <= tolerance * std::max(std::fabs(a), std::fabs(b));
}

double SPoint::distanceTo(const SPoint& other) const { return std::hypot(itsX - other.itsX, itsY - other.itsY); }

SString SPoint::text(int significantDigits) const {
  return SString::number(itsX, significantDigits) + " " + SString::number(itsY, significantDigits);
}

void SRect::setWidth(double width) {
  const double c = (itsX1 + itsX2) / 2.0;
  itsX1 = c - width / 2.0;
  itsX2 = c + width / 2.0;
}

void SRect::setHeight(double height) {
  const double c = (itsY1 + itsY2) / 2.0;
  itsY1 = c - height / 2.0;
  itsY2 = c + height / 2.0;
}

bool SRect::contains(const SPoint& p) const {
  const SRect n = normalized();
  return p.x() >= n.itsX1 && p.x() <= n.itsX2 && p.y() >= n.itsY1 && p.y() <= n.itsY2;
}

SRect SRect::normalized() const {
  return SRect(std::min(itsX1, itsX2), std::min(itsY1, itsY2), std::max(itsX1, itsX2), std::max(itsY1, itsY2));
}

SRect SRect::united(const SRect& other) const {
  if (other.width() == 0.0 && other.height() == 0.0) return *this;
  if (width() == 0.0 && height() == 0.0) return other;
  const SRect a = normalized();
  const SRect b = other.normalized();
  return SRect(std::min(a.itsX1, b.itsX1), std::min(a.itsY1, b.itsY1), std::max(a.itsX2, b.itsX2),
               std::max(a.itsY2, b.itsY2));
}

bool SRect::intersects(const SRect& other) const {
  const SRect a = normalized();
  const SRect b = other.normalized();
  return std::max(a.itsX1, b.itsX1) <= std::min(a.itsX2, b.itsX2) &&
         std::max(a.itsY1, b.itsY1) <= std::min(a.itsY2, b.itsY2);
}

SRect SRect::intersected(const SRect& other) const {
  if (!intersects(other)) return SRect();
  const SRect a = normalized();
  const SRect b = other.normalized();
  return SRect(std::max(a.itsX1, b.itsX1), std::max(a.itsY1, b.itsY1), std::min(a.itsX2, b.itsX2),
               std::min(a.itsY2, b.itsY2));
}

SRect SRect::united(const SPoint& p) const {
  if (isZero()) return SRect(p, p);
  const SRect a = normalized();
  return SRect(std::min(a.itsX1, p.x()), std::min(a.itsY1, p.y()), std::max(a.itsX2, p.x()),
               std::max(a.itsY2, p.y()));
}

SString SRect::text(int significantDigits) const {
  return SString::number(itsX1, significantDigits) + " " + SString::number(itsY1, significantDigits) + " " +
         SString::number(itsX2, significantDigits) + " " + SString::number(itsY2, significantDigits);
}

SMargin::SMargin() : itsValues{0.0, 0.0, 0.0, 0.0}, itsKinds{0, 0, 0, 0}, itsValid(false), itsRectSet(false) {}

void SMargin::setValues(double left, double right, double top, double bottom, int leftKind, int rightKind,
                        int topKind, int bottomKind) {
  setValue(Left, left, leftKind);
  setValue(Right, right, rightKind);
  setValue(Top, top, topKind);
  setValue(Bottom, bottom, bottomKind);
}

void SMargin::setValue(Side side, double value, int kind) {
  // NaN fails the comparison too and becomes 0 with it.
  itsValues[side] = value > 0.0 ? value : 0.0;
  itsKinds[side] = kind == Percent ? Percent : Absolute;
  itsValid = true;
}

void SMargin::setRect(const SRect& rect) {
  itsRect = rect;
  itsRectSet = true;
}

double SMargin::absolute(Side side) const {
  if (itsKinds[side] != Percent) return itsValues[side];
  const double extent = (side == Left || side == Right) ? std::fabs(itsRect.x2() - itsRect.x1())
                                                        : std::fabs(itsRect.y2() - itsRect.y1());
  return itsValues[side] * extent / 100.0;
}

STime::STime() { set(::time(nullptr)); }

STime::STime(time_t seconds) { set(seconds); }

void STime::set(time_t seconds) {
  itsSeconds = seconds;
  struct tm local = {};
  if (!localtime_r(&seconds, &local)) local = {};
  itsTime = local;
  itsDate = format("%m/%d/%Y");
  itsClock = format("%H:%M:%S");
}

SString STime::format(const char* fmt) const {
  char buffer[256];
  const size_t n = fmt ? strftime(buffer, sizeof buffer, fmt, &itsTime) : 0;
  return SString::fromUtf8(buffer, static_cast<int>(n));
}
