#ifndef SSUBDIVISIONLINE_H
#define SSUBDIVISIONLINE_H

#include "SEnclosure.h"

// A cut line of SUBDIV, in project units: a V line stands at an X position, an H line at a
// Y position. It moves with the layout.
class SSubdivisionLine : public SEnclosure {
  SCOLLECTABLE_DECLARE(SSubdivisionLine)
public:
  enum Direction { Vertical = 0, Horizontal = 1 };

  SSubdivisionLine() {}
  SSubdivisionLine(double position, int direction, int id) : itsPosition(position), itsDirection(direction) {
    SetId(id);
  }
  SSubdivisionLine* Clone() const;

  double GetPosition() const { return itsPosition; }
  void SetPosition(double position) { itsPosition = position; }
  int GetDirection() const { return itsDirection; }
  bool IsVertical() const { return itsDirection == Vertical; }
  // Adds the component across the line.
  void Shift(double dx, double dy) { itsPosition += IsVertical() ? dx : dy; }
  void Scale(double factor) { itsPosition *= factor; }

private:
  double itsPosition = 0.0;
  int itsDirection = Vertical;
};

#endif
