#include "SXtransList.h"

#include <cmath>
#include <cstring>

#include "SGdsPolygon.h"
#include "SXtrans.h"

namespace {

// Sets of two, so that two busy points that hash alike don't keep pushing
// each other out.
const size_t kTurnedSets = size_t(1) << 14;
// Points that never come back only pay for the lookups: when fewer than a
// quarter of a window's lookups hit, the next fifteen windows go without.
const unsigned kWindow = 4096;
const unsigned kBypass = 15 * kWindow;

// Far above the few units in the last place that an arc tangent, a root, a
// sine and a cosine leave on a placed point, relative to its size.
const double kPolarError = 1e-13;

// Cosine and sine of an angle in degrees, exact at right angles.
void CosSin(double degrees, double& c, double& s)
{
    double turn = std::fmod(degrees, 360.0);
    if (turn < 0.0)
        turn += 360.0;
    if (turn == 0.0) {
        c = 1.0, s = 0.0;
    } else if (turn == 90.0) {
        c = 0.0, s = 1.0;
    } else if (turn == 180.0) {
        c = -1.0, s = 0.0;
    } else if (turn == 270.0) {
        c = 0.0, s = -1.0;
    } else {
        const double radians = 3.14159265358979323846 * degrees / 180.0;
        c = std::cos(radians);
        s = std::sin(radians);
    }
}

uint64_t Bits(double value)
{
    uint64_t bits;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

} // namespace

SPoint SXtransList::Place(const SXtrans& entry, const SPoint& point) const
{
    SPoint prepared = entry.Prepare(point);
    if (itsBypass) {
        --itsBypass;
        SPoint turned = entry.Turn(prepared);
        return SPoint(turned.x() + entry.itsTranslation.x(), turned.y() + entry.itsTranslation.y());
    }
    if (++itsLookups == kWindow) {
        if (itsHits < kWindow / 4)
            itsBypass = kBypass;
        itsLookups = 0;
        itsHits = 0;
    }
    uint64_t key[4] = {Bits(prepared.x()), Bits(prepared.y()), Bits(entry.itsAngle), Bits(entry.itsMagnification)};
    // Coordinates on a grid leave the low bits of their doubles at zero, so
    // the bits are mixed through before any are taken.
    uint64_t hash = key[0] ^ (key[1] * 0x9E3779B97F4A7C15ULL) ^ (key[2] * 0xC2B2AE3D27D4EB4FULL) ^ (key[3] >> 7);
    hash ^= hash >> 33;
    hash *= 0xFF51AFD7ED558CCDULL;
    hash ^= hash >> 33;
    hash *= 0xC4CEB9FE1A85EC53ULL;
    hash ^= hash >> 33;
    if (itsTurned.empty())
        itsTurned.resize(2 * kTurnedSets);
    Turned* set = &itsTurned[2 * (hash & (kTurnedSets - 1))];
    Turned* slot = set;
    ++itsHits;
    if (!(set[0].used && std::memcmp(set[0].key, key, sizeof key) == 0)) {
        slot = set + 1;
        if (!(set[1].used && std::memcmp(set[1].key, key, sizeof key) == 0)) {
            --itsHits;
            // The older of the two makes room; the newer moves to the front.
            set[1] = set[0];
            slot = set;
            std::memcpy(slot->key, key, sizeof key);
            slot->used = true;
            slot->turned = entry.Turn(prepared);
        }
    }
    return SPoint(slot->turned.x() + entry.itsTranslation.x(), slot->turned.y() + entry.itsTranslation.y());
}

SPoint SXtransList::Transform(const SPoint& point) const
{
    SPoint p = point;
    SPoint angleAnchor;
    SPoint magnificationAnchor;
    bool angleSet = false;
    bool magnificationSet = false;
    for (size_t i = itsEntries.size(); i-- > 0;) {
        const SXtrans& entry = *itsEntries[i];
        p = Place(entry, p);
        if (magnificationSet) {
            magnificationAnchor = Place(entry, magnificationAnchor);
            p = magnificationAnchor + (p - magnificationAnchor) / entry.itsMagnification;
        }
        if (angleSet) {
            angleAnchor = Place(entry, angleAnchor);
            SXtrans unturn;
            unturn.itsAngle = -entry.itsAngle;
            p = Place(unturn, p - angleAnchor) + angleAnchor;
        }
        // An entry's own flags act only on the entries outside it.
        if (entry.itsAbsoluteAngle) {
            angleAnchor = entry.itsTranslation;
            angleSet = true;
        }
        if (entry.itsAbsoluteMagnification) {
            magnificationAnchor = entry.itsTranslation;
            magnificationSet = true;
        }
    }
    return p;
}

double SXtransList::GetMagnification() const
{
    double magnification = 1.0;
    for (size_t i = itsEntries.size(); i-- > 0;) {
        magnification *= itsEntries[i]->itsMagnification;
        if (itsEntries[i]->itsAbsoluteMagnification)
            break;
    }
    return magnification;
}

void SXtransList::Compose() const
{
    itsComposed = true;
    itsComposable = true;
    double a[4] = {1.0, 0.0, 0.0, 1.0};
    double b[2] = {0.0, 0.0};
    // Bounds on the size of the point after each placement (alpha * |point| +
    // beta) and on the error gathered so far.
    double alpha = 1.0, beta = 0.0;
    double errorScale = 0.0, errorBase = 0.0;
    for (size_t i = itsEntries.size(); i-- > 0;) {
        const SXtrans& entry = *itsEntries[i];
        if (entry.itsAbsoluteAngle || entry.itsAbsoluteMagnification) {
            itsComposable = false;
            return;
        }
        double c, s;
        CosSin(entry.itsAngle, c, s);
        const double mirror = entry.itsReflection ? -1.0 : 1.0;
        const double mag = entry.itsMagnification;
        const double m[4] = {mag * c, -mag * s * mirror, mag * s, mag * c * mirror};
        const double ox = entry.itsPreOffset.x(), oy = entry.itsPreOffset.y();
        const double tx = m[0] * ox + m[1] * oy + entry.itsTranslation.x();
        const double ty = m[2] * ox + m[3] * oy + entry.itsTranslation.y();
        const double na[4] = {m[0] * a[0] + m[1] * a[2], m[0] * a[1] + m[1] * a[3], m[2] * a[0] + m[3] * a[2],
                              m[2] * a[1] + m[3] * a[3]};
        const double nb[2] = {m[0] * b[0] + m[1] * b[1] + tx, m[2] * b[0] + m[3] * b[1] + ty};
        std::memcpy(a, na, sizeof a);
        std::memcpy(b, nb, sizeof b);
        const double gain = std::fabs(mag) * (std::fabs(c) + std::fabs(s));
        const double offset = std::fmax(std::fabs(ox), std::fabs(oy));
        const double translation = std::fmax(std::fabs(entry.itsTranslation.x()), std::fabs(entry.itsTranslation.y()));
        // The polar angle carries an error of a unit in its last place, which grows with
        // the angle: turns of thousands of degrees lose digits there.
        const double error = kPolarError * (1.0 + std::fabs(entry.itsAngle) * 0.017453292519943295);
        alpha = gain * alpha;
        beta = gain * (beta + offset) + translation;
        errorScale = gain * errorScale + error * alpha;
        errorBase = gain * errorBase + error * beta;
    }
    std::memcpy(itsMatrix, a, sizeof a);
    std::memcpy(itsShift, b, sizeof b);
    itsErrorScale = errorScale;
    itsErrorBase = errorBase;
}

SPoint SXtransList::PlaceRounded(const SPoint& point, double factor) const
{
    if (!itsComposed)
        Compose();
    double x = 0.0, y = 0.0;
    if (itsComposable) {
        const double px = point.x(), py = point.y();
        const double margin =
            (itsErrorScale * std::fmax(std::fabs(px), std::fabs(py)) + itsErrorBase) * std::fabs(factor);
        if (SGdsPolygon::RoundAwayFromTie((itsMatrix[0] * px + itsMatrix[1] * py + itsShift[0]) * factor, margin, x) &&
            SGdsPolygon::RoundAwayFromTie((itsMatrix[2] * px + itsMatrix[3] * py + itsShift[1]) * factor, margin, y)) {
            ++itsComposedPlacements;
            return SPoint(x, y);
        }
    }
    SPoint placed = Transform(point);
    placed *= factor;
    return SPoint(SGdsPolygon::RoundToSixDigits(placed.x()), SGdsPolygon::RoundToSixDigits(placed.y()));
}
