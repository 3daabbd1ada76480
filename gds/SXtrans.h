#ifndef SXTRANS_H
#define SXTRANS_H

#include "SCollectable.h"
#include "SPoint.h"

// One placement of a reference. Lengths in user units, the angle in degrees
// counter-clockwise. Plain data with no owning members: elements, which hold
// one each, live in an arena.
class SXtrans final : public SCollectable
{
    SCOLLECTABLE_DECLARE(SXtrans)
    SCOLLECTABLE_COPYABLE(SXtrans)

public:
    // Offset, reflection over the X axis, magnification and rotation together,
    // then translation. The rotation goes through the polar form rather than a
    // matrix, so that placed points come out exactly as they always have.
    virtual SPoint Transform(const SPoint& point) const;
    // The two halves of Transform before the translation: the point after
    // the offset and the reflection, and that point magnified and turned
    // about the origin. Placing many points under one rotation can reuse
    // the second.
    SPoint Prepare(const SPoint& point) const;
    SPoint Turn(const SPoint& prepared) const;
    // 1.0 under an absolute magnification: the outer references keep theirs.
    virtual double GetMagnification() const;
    // "set" or "not set".
    virtual const char* FlagText(bool flag) const;
    // Writes the placement to the debug stream; callers test the level.
    virtual void Dump() const;

    bool itsReflection = false;
    bool itsAbsoluteMagnification = false;
    bool itsAbsoluteAngle = false;
    double itsAngle = 0.0;
    double itsMagnification = 1.0;
    SPoint itsTranslation;
    // Added before everything else; only arrays stepping in the cell's own
    // axes set it.
    SPoint itsPreOffset;
};

// Class numbers of the stream library.
enum SGdsClassID : ClassID { SID_XTRANS = 1101 };

#endif
