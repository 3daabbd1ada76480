#ifndef SMARGIN_H
#define SMARGIN_H

#include "SRect.h"

// Four margins, each absolute (kind 0) or per cent of the extent (kind 1). The
// extent is the rectangle that per cent values refer to.
class SMargin {
public:
  enum Side { Left = 0, Right = 1, Top = 2, Bottom = 3 };
  enum Kind { Absolute = 0, Percent = 1 };

  SMargin();

  // Negative values become 0. Marks the margin valid.
  void setValues(double left, double right, double top, double bottom, int leftKind = Absolute,
                 int rightKind = Absolute, int topKind = Absolute, int bottomKind = Absolute);
  void setValue(Side side, double value, int kind);
  void setRect(const SRect& rect);
  void invalidate() { itsValid = false; }

  bool valid() const { return itsValid; }
  bool hasRect() const { return itsRectSet; }
  const SRect& rect() const { return itsRect; }
  double value(Side side) const { return itsValues[side]; }
  int kind(Side side) const { return itsKinds[side]; }
  bool isPercent(Side side) const { return itsKinds[side] == Percent; }

  // The margin in length: left and right per cent of |x2 - x1|, top and bottom of |y2 - y1|.
  double absolute(Side side) const;
  double left() const { return absolute(Left); }
  double right() const { return absolute(Right); }
  double top() const { return absolute(Top); }
  double bottom() const { return absolute(Bottom); }

private:
  double itsValues[4];
  int itsKinds[4];
  SRect itsRect;
  bool itsValid;
  bool itsRectSet;
};

#endif
