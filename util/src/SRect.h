#ifndef SRECT_H
#define SRECT_H

#include "SPoint.h"
#include "SString.h"

// A rectangle by its corners (x1, y1) and (x2, y2): left, top, right, bottom.
// The all-zero rectangle is the empty one.
class SRect {
public:
  SRect() : itsX1(0.0), itsY1(0.0), itsX2(0.0), itsY2(0.0) {}
  SRect(double x1, double y1, double x2, double y2) : itsX1(x1), itsY1(y1), itsX2(x2), itsY2(y2) {}
  SRect(const SPoint& p1, const SPoint& p2) : itsX1(p1.x()), itsY1(p1.y()), itsX2(p2.x()), itsY2(p2.y()) {}

  double x1() const { return itsX1; }
  double y1() const { return itsY1; }
  double x2() const { return itsX2; }
  double y2() const { return itsY2; }
  double left() const { return itsX1; }
  double top() const { return itsY1; }
  double right() const { return itsX2; }
  double bottom() const { return itsY2; }
  void setX1(double v) { itsX1 = v; }
  void setY1(double v) { itsY1 = v; }
  void setX2(double v) { itsX2 = v; }
  void setY2(double v) { itsY2 = v; }
  void set(double x1, double y1, double x2, double y2) {
    itsX1 = x1;
    itsY1 = y1;
    itsX2 = x2;
    itsY2 = y2;
  }
  SPoint p1() const { return SPoint(itsX1, itsY1); }
  SPoint p2() const { return SPoint(itsX2, itsY2); }

  double width() const { return itsX2 - itsX1; }
  double height() const { return itsY2 - itsY1; }
  SPoint center() const { return SPoint((itsX1 + itsX2) / 2.0, (itsY1 + itsY2) / 2.0); }
  // Keeps the centre.
  void setWidth(double width);
  void setHeight(double height);

  bool isZero() const { return itsX1 == 0.0 && itsY1 == 0.0 && itsX2 == 0.0 && itsY2 == 0.0; }
  // No width and no height.
  bool isEmpty() const { return itsX1 == itsX2 && itsY1 == itsY2; }
  bool contains(const SPoint& p) const;
  // Corners ordered so that x1 <= x2 and y1 <= y2.
  SRect normalized() const;
  void clear() { set(0.0, 0.0, 0.0, 0.0); }

  // An empty side yields the other one.
  SRect united(const SRect& other) const;
  // Rectangles that don't overlap yield the all-zero rectangle.
  SRect intersected(const SRect& other) const;
  bool intersects(const SRect& other) const;
  // The all-zero rectangle yields the point's own degenerate rectangle.
  SRect united(const SPoint& p) const;
  SRect& operator|=(const SRect& other) { return *this = united(other); }
  SRect& operator|=(const SPoint& p) { return *this = united(p); }
  SRect& operator&=(const SRect& other) { return *this = intersected(other); }
  SRect translated(const SPoint& delta) const {
    return SRect(itsX1 + delta.x(), itsY1 + delta.y(), itsX2 + delta.x(), itsY2 + delta.y());
  }

  bool operator==(const SRect& o) const {
    return itsX1 == o.itsX1 && itsY1 == o.itsY1 && itsX2 == o.itsX2 && itsY2 == o.itsY2;
  }
  bool operator!=(const SRect& o) const { return !(*this == o); }

  // "x1 y1 x2 y2"
  SString text(int significantDigits = 6) const;

private:
  double itsX1;
  double itsY1;
  double itsX2;
  double itsY2;
};

#endif
