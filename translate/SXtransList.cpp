#include "SXtransList.h"

#include <cstring>

#include "SXtrans.h"

namespace {

// Sets of two, so that two busy points that hash alike don't keep pushing
// each other out.
const size_t kTurnedSets = size_t(1) << 14;
// Points that never come back only pay for the lookups: when fewer than a
// quarter of a window's lookups hit, the next fifteen windows go without.
const unsigned kWindow = 4096;
const unsigned kBypass = 15 * kWindow;

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
