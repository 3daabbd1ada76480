#include "SLine.h"

#include <cmath>

SCOLLECTABLE_DEFINE(SLine, SID_LINE, &SCollectable::staticTypeInfo())

SLine::SLine(const SPoint& a, const SPoint& b, double tolerance)
    : itsTolerance(tolerance)
{
    if (std::fabs(a.x() - b.x()) < itsTolerance) {
        itsVertical = true;
        itsIntercept = a.x();
        itsSlope = 0.0;
        return;
    }
    itsSlope = (a.y() - b.y()) / (a.x() - b.x());
    itsIntercept = a.y() - itsSlope * a.x();
}

SLine SLine::Offset(double d) const
{
    SLine line(*this);
    if (itsVertical)
        line.itsIntercept = itsIntercept + d;
    else
        line.itsIntercept = itsIntercept + d * std::sqrt(itsSlope * itsSlope + 1.0);
    return line;
}

SLine SLine::Perpendicular(const SPoint& p) const
{
    SLine line;
    line.itsTolerance = itsTolerance;
    if (itsVertical) {
        line.itsIntercept = p.y();
    } else if (std::fabs(itsSlope) < itsTolerance) {
        line.itsVertical = true;
        line.itsIntercept = p.x();
    } else {
        line.itsSlope = -1.0 / itsSlope;
        line.itsIntercept = p.y() + p.x() / itsSlope;
    }
    return line;
}

bool SLine::Intersect(const SLine& other, SPoint& point) const
{
    if (itsVertical && other.itsVertical)
        return false;
    if (itsVertical) {
        point = SPoint(itsIntercept, other.itsSlope * itsIntercept + other.itsIntercept);
        return true;
    }
    if (other.itsVertical) {
        point = SPoint(other.itsIntercept, itsSlope * other.itsIntercept + itsIntercept);
        return true;
    }
    if (std::fabs(itsSlope - other.itsSlope) < itsTolerance)
        return false;
    double x = (other.itsIntercept - itsIntercept) / (itsSlope - other.itsSlope);
    point = SPoint(x, itsIntercept + itsSlope * x);
    return true;
}
