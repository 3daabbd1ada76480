#include "SXtrans.h"

#include <cmath>

#include "SGdsDebug.h"

namespace {
const double kPi = 3.14159265358979323846;
}

SCOLLECTABLE_DEFINE(SXtrans, SID_XTRANS, &SCollectable::staticTypeInfo())

SPoint SXtrans::Transform(const SPoint& point) const
{
    SPoint turned = Turn(Prepare(point));
    return SPoint(turned.x() + itsTranslation.x(), turned.y() + itsTranslation.y());
}

SPoint SXtrans::Prepare(const SPoint& point) const
{
    double x = point.x() + itsPreOffset.x();
    double y = point.y() + itsPreOffset.y();
    return SPoint(x, itsReflection ? -y : y);
}

SPoint SXtrans::Turn(const SPoint& prepared) const
{
    double x = prepared.x(), y = prepared.y();
    double r = 0.0;
    double t = 0.0;
    if (x != 0.0 || y != 0.0) {
        t = std::atan2(y, x);
        r = std::sqrt(x * x + y * y);
    }
    t += kPi * itsAngle / 180.0;
    return SPoint(itsMagnification * r * std::cos(t), itsMagnification * r * std::sin(t));
}

double SXtrans::GetMagnification() const
{
    return itsAbsoluteMagnification ? 1.0 : itsMagnification;
}

const char* SXtrans::FlagText(bool flag) const
{
    return flag ? "set" : "not set";
}

void SXtrans::Dump() const
{
    SGdsDebug& debug = GdsDebug();
    debug.Print("Angle=%f, Mag=%f (%g,%g)\n", itsAngle, itsMagnification, itsTranslation.x(), itsTranslation.y());
    debug.Print("Ref=%s, Abs_ang=%s Abs_mag=%s\n", FlagText(itsReflection), FlagText(itsAbsoluteAngle),
                FlagText(itsAbsoluteMagnification));
}
