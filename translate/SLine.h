#ifndef SLINE_H
#define SLINE_H

#include "SCollectable.h"
#include "SPoint.h"

// An infinite straight line: y = slope * x + intercept, or for a vertical
// line x = intercept. Path outlines are built from offsets of these.
class SLine : public SCollectable
{
    SCOLLECTABLE_DECLARE(SLine)
    SCOLLECTABLE_COPYABLE(SLine)

public:
    SLine() = default;
    // Vertical when the two x differ by less than the tolerance.
    SLine(const SPoint& a, const SPoint& b, double tolerance = 1e-11);

    // The parallel line at distance d; positive d moves a sloped line up and
    // a vertical one to the right.
    virtual SLine Offset(double d) const;
    // The perpendicular through p.
    virtual SLine Perpendicular(const SPoint& p) const;
    // False for parallel lines, within this line's tolerance.
    virtual bool Intersect(const SLine& other, SPoint& point) const;

    double itsSlope = 0.0;
    // y at x = 0, or x for a vertical line.
    double itsIntercept = 0.0;
    bool itsVertical = false;
    double itsTolerance = 1e-11;
};

enum SLineClassID : ClassID { SID_LINE = 3151 };

#endif
