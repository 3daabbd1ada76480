#include "SGdsPolygon.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "SGdsDebug.h"
#include "SGdsPolygonList.h"

SCOLLECTABLE_DEFINE(SGdsPolygon, SID_GDSPOLYGON, &SCollectable::staticTypeInfo())

namespace {

int64_t theLastId = 0;

// Powers of ten that a double holds exactly.
const double kPowersOfTen[23] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                 1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

double RoundThroughText(double value)
{
    char text[64];
    snprintf(text, sizeof text, "%g", value);
    return strtod(text, nullptr);
}

} // namespace

SGdsPolygon::SGdsPolygon()
    : gdspolyid(++theLastId)
{
}

int64_t SGdsPolygon::GetLastId()
{
    return theLastId;
}

void SGdsPolygon::AddPoint(SGdsPolygonList& list, const SPoint& point, bool transform)
{
    SPoint placed = transform ? list.itsTransforms.Transform(point) : point;
    placed *= list.itsConversionFactor;
    list.AppendPoint(*this, placed);
    SGdsDebug& debug = GdsDebug();
    if (debug.GetLevel() > 4)
        debug.Print("  (%g, %g) -> (%g, %g)\n", point.x(), point.y(), placed.x(), placed.y());
}

SRect SGdsPolygon::GetBoundingBox() const
{
    if (itsPointCount == 0)
        return SRect();
    double left = itsPoints[0].x(), right = left;
    double top = itsPoints[0].y(), bottom = top;
    for (uint32_t i = 1; i < itsPointCount; ++i) {
        double x = itsPoints[i].x(), y = itsPoints[i].y();
        left = x < left ? x : left;
        right = x > right ? x : right;
        top = y < top ? y : top;
        bottom = y > bottom ? y : bottom;
    }
    return SRect(left, top, right, bottom);
}

void SGdsPolygon::RoundPoints()
{
    for (uint32_t i = 0; i < itsPointCount; ++i) {
        itsPoints[i].setX(RoundToSixDigits(itsPoints[i].x()));
        itsPoints[i].setY(RoundToSixDigits(itsPoints[i].y()));
    }
}

// The value that "%g" prints, read back, without the text: scale to six
// digits before the point with an exact power of ten, round, scale back. The
// scaled value carries an error below 1e-10, so only values within 1e-7 of a
// rounding tie, and magnitudes past the exact powers, take the text road.
double SGdsPolygon::RoundToSixDigits(double value)
{
    double magnitude = std::fabs(value);
    if (!(magnitude >= 1e-16 && magnitude < 1e21))
        return std::isfinite(value) && value != 0.0 ? RoundThroughText(value) : value;
    int binaryExponent;
    std::frexp(magnitude, &binaryExponent);
    // Never above floor(log10(magnitude)), and at most one below it.
    int exponent = int(std::floor((binaryExponent - 1) * 0.30102999566398114));
    double scaled = 0.0;
    for (int attempt = 0; attempt < 2; ++attempt) {
        int shift = 5 - exponent;
        scaled = shift >= 0 ? magnitude * kPowersOfTen[shift] : magnitude / kPowersOfTen[-shift];
        if (scaled < 1e6)
            break;
        ++exponent;
    }
    double whole = std::floor(scaled);
    double fraction = scaled - whole;
    if (std::fabs(fraction - 0.5) < 1e-7)
        return RoundThroughText(value);
    if (fraction > 0.5)
        whole += 1.0;
    int shift = 5 - exponent;
    double rounded = shift >= 0 ? whole / kPowersOfTen[shift] : whole * kPowersOfTen[-shift];
    return value < 0 ? -rounded : rounded;
}
