#ifndef SXTRANS_H
#define SXTRANS_H

#include "SPoint.h"

// One placement of a reference: where, how turned and scaled, and whether
// mirrored. Angle in degrees; translation in user units.
struct SXtrans
{
    SPoint itsTranslation;
    double itsAngle = 0.0;
    double itsMagnification = 1.0;
    bool itsReflection = false;
    bool itsAbsoluteMagnification = false;
    bool itsAbsoluteAngle = false;
};

#endif
