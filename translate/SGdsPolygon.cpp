#include "SGdsPolygon.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "SBrickPolygon.h"
#include "SGdsDebug.h"
#include "SGdsLayerFile.h"
#include "SGdsPolygonList.h"
#include "SMetalPolygon.h"
#include "SNumberFormat.h"
#include "SOrdered.h"
#include "SPolygonEdge.h"
#include "SViaPolygon.h"
#include "SXtranProject.h"

SCOLLECTABLE_DEFINE(SGdsPolygon, SID_GDSPOLYGON, &SCollectable::staticTypeInfo())

namespace {

int64_t theLastId = 0;
int64_t theLastFileId = 0;

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
    : gdspolyid(++theLastId), itsPointCapacity(0), itsRounded(1)
{
}

int64_t SGdsPolygon::GetLastId()
{
    return theLastId;
}

int64_t SGdsPolygon::TakeFileId()
{
    return ++theLastFileId;
}

void SGdsPolygon::SkipFileIds(int64_t id)
{
    if (id > theLastFileId)
        theLastFileId = id;
}

bool SGdsPolygon::AddToCircuit(SXtranProject& project, const SGdsLayerFile& layerFile, SOrdered& scratch)
{
    RoundPoints();
    scratch.clear();
    layerFile.GetMappings(scratch, itsLayer, itsDatatype);
    SGdsDebug& debug = GdsDebug();
    const bool trace = debug.GetLevel() > 3;
    const int id = int(gdspolyid);
    if (scratch.isEmpty()) {
        if (trace)
            debug.Print("gdspolyid=%d, Skipping polygon: Layer = %d, Datatype = %d - no mapping\n", id, itsLayer,
                        itsDatatype);
        return true;
    }
    const int ground = project.GetGroundLevel();
    const int count = int(itsPointCount);
    for (size_t i = 0; i < scratch.entries(); ++i) {
        const SLayerMapping* mapping = static_cast<const SLayerMapping*>(scratch.at(i));
        if (trace) {
            if (mapping->itsGround)
                debug.Print("gdspolyid=%d, Processing Layer = %d, Datatype = %d, Geolayer = GND\n", id, itsLayer,
                            itsDatatype);
            else
                debug.Print("gdspolyid=%d, Processing Layer = %d, Datatype = %d, Geolayer = %d\n", id, itsLayer,
                            itsDatatype, mapping->itsGeoNumber.GetValue());
        }
        const int level = mapping->itsGround ? ground : mapping->itsGeoNumber.GetValue();
        if (mapping->itsPurpose != kPurposeMetal && mapping->itsPurpose != kPurposeBrick &&
            mapping->itsPurpose != kPurposeVia) {
            if (trace)
                debug.Print("  gdspolyid=%d, Skipped polygon, purpose = %s\n", id,
                            SLayerMapping::PurposeWord(mapping->itsPurpose));
            continue;
        }
        // A level the circuit doesn't have can't take the polygon (a via to a level
        // past the count, say): the polygon is left out rather than the run ended.
        if (!project.FindLevel(level)) {
            if (trace)
                debug.Print("  gdspolyid=%d, Skip adding polygon to SCircuit\n", id);
            continue;
        }
        const int64_t fileid = TakeFileId();
        SEnclosure* made = nullptr;
        switch (mapping->itsPurpose) {
        case kPurposeMetal:
            if (trace)
                debug.Print("  gdspolyid=%d, Adding metal polygon\n", id);
            made = project.AddMetalPolygon(itsPoints, count, level, mapping->itsMetalType, fileid,
                                           mapping->itsTechLayer);
            break;
        case kPurposeBrick:
            if (trace)
                debug.Print("  Adding brick polygon gdspolyid=%d\n", id);
            made = project.AddBrickPolygon(itsPoints, count, level, mapping->itsBrickType, fileid,
                                           mapping->itsTechLayer);
            break;
        default: {
            const int to = mapping->itsToGeoNumber.IsValid() ? mapping->itsToGeoNumber.GetValue() : 0;
            if (project.itsSimpleVias) {
                if (trace)
                    debug.Print("  Adding simple via gdspolyid=%d\n", id);
                made = project.AddSimpleVia(itsPoints, count, level, to, mapping->itsToLevelKind,
                                            mapping->itsViaType, fileid, mapping->itsTechLayer);
            } else {
                if (trace)
                    debug.Print("  gdspolyid=%d, Adding via polygon\n", id);
                made = project.AddViaPolygon(itsPoints, count, level, to, mapping->itsToLevelKind,
                                             mapping->itsViaType, fileid, mapping->itsTechLayer);
            }
            break;
        }
        }
        if (trace) {
            debug.Print("  Mapping gdspolyid=%d, to fileid=%d,\n", id, int(fileid));
            if (!made)
                debug.Print("  gdspolyid=%d, Skip adding polygon to SCircuit\n", id);
        }
    }
    return true;
}

bool SGdsPolygon::FindPortEdges(SXtranProject& project, const SGdsLayerFile& layerFile,
                                std::vector<SPolygonEdge>& edges)
{
    SOrdered mappings;
    layerFile.GetMappings(mappings, itsLayer, itsDatatype, kPurposePort);
    if (mappings.isEmpty() || itsPointCount == 0)
        return true;
    bool found = false;
    const SRect rect = project.MapRect(GetBoundingBox());
    for (size_t i = 0; i < mappings.entries(); ++i) {
        const SLayerMapping* mapping = static_cast<const SLayerMapping*>(mappings.at(i));
        const int level = mapping->itsGround ? project.GetGroundLevel() : mapping->itsGeoNumber.GetValue();
        SMetalPolygon* polygon = nullptr;
        int edge = 0;
        if (project.FindEdgeInRect(rect, level, polygon, edge)) {
            edges.emplace_back(polygon, edge);
            found = true;
        }
    }
    return found;
}

bool SGdsPolygon::GetSubstrateBox(const SGdsLayerFile& layerFile, SRect& rect)
{
    SOrdered mappings;
    layerFile.GetMappings(mappings, itsLayer, itsDatatype, kPurposeSubstrate);
    if (mappings.isEmpty())
        return false;
    rect = GetBoundingBox();
    return true;
}

uint64_t SGdsPolygon::GetMaxLevel(const SGdsLayerFile& layerFile, SOrdered& scratch) const
{
    scratch.clear();
    layerFile.GetMappings(scratch, itsLayer, itsDatatype);
    uint64_t level = 0;
    for (size_t i = 0; i < scratch.entries(); ++i) {
        const SLayerMapping* mapping = static_cast<const SLayerMapping*>(scratch.at(i));
        if (mapping->itsPurpose == kPurposeMetal || mapping->itsPurpose == kPurposeBrick ||
            mapping->itsPurpose == kPurposeVia || mapping->itsPurpose == kPurposeHole)
            level = mapping->itsMaxLevel > level ? mapping->itsMaxLevel : level;
    }
    return level;
}

void SGdsPolygon::Translate(const SPoint& delta)
{
    itsRounded = 0;
    for (uint32_t i = 0; i < itsPointCount; ++i)
        itsPoints[i] += delta;
}

bool SGdsPolygon::IsInside(const SRect& rect) const
{
    for (uint32_t i = 0; i < itsPointCount; ++i) {
        const SPoint& p = itsPoints[i];
        if (p.x() < rect.x1() || p.x() > rect.x2() || p.y() < rect.y1() || p.y() > rect.y2())
            return false;
    }
    return true;
}

bool SGdsPolygon::IsFirstPointInside(const SRect& rect) const
{
    if (itsPointCount == 0)
        return false;
    const SPoint& p = itsPoints[0];
    return p.x() >= rect.x1() && p.x() <= rect.x2() && p.y() >= rect.y1() && p.y() <= rect.y2();
}

void SGdsPolygon::AddPoint(SGdsPolygonList& list, const SPoint& point, bool transform)
{
    SGdsDebug& debug = GdsDebug();
    SPoint placed;
    // The trace shows points before rounding.
    if (transform && list.RoundsWhilePlacing() && debug.GetLevel() == 0) {
        placed = list.itsTransforms.PlaceRounded(point, list.itsConversionFactor);
    } else {
        placed = transform ? list.itsTransforms.Transform(point) : point;
        placed *= list.itsConversionFactor;
        itsRounded = 0;
    }
    list.AppendPoint(*this, placed);
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
    if (itsRounded)
        return;
    itsRounded = 1;
    // Manhattan outlines repeat each coordinate of the previous point but one, and the
    // last point repeats the first: a value equal to the last one seen in its axis
    // takes the last result. Compared by bits, so that -0 stays -0.
    auto bits = [](double v) {
        uint64_t b;
        std::memcpy(&b, &v, sizeof b);
        return b;
    };
    uint64_t lastX = 0, lastY = 0;
    double roundedX = 0.0, roundedY = 0.0;
    for (uint32_t i = 0; i < itsPointCount; ++i) {
        const double x = itsPoints[i].x(), y = itsPoints[i].y();
        if (i == 0 || bits(x) != lastX) {
            lastX = bits(x);
            roundedX = RoundToSixDigits(x);
        }
        if (i == 0 || bits(y) != lastY) {
            lastY = bits(y);
            roundedY = RoundToSixDigits(y);
        }
        itsPoints[i].setX(roundedX);
        itsPoints[i].setY(roundedY);
    }
}

namespace {

// The magnitude times the power of ten that puts six digits before the point,
// and that power; false for magnitudes past the exact powers.
bool ScaleToSixDigits(double magnitude, double& scaled, int& shift)
{
    if (!(magnitude >= 1e-16 && magnitude < 1e21))
        return false;
    // The exponent frexp gives, from the bits: every magnitude here is a normal number.
    uint64_t bits;
    std::memcpy(&bits, &magnitude, sizeof bits);
    const int binaryExponent = int((bits >> 52) & 0x7ff) - 1022;
    // Never above floor(log10(magnitude)), and at most one below it.
    const double estimate = (binaryExponent - 1) * 0.30102999566398114;
    int exponent = int(estimate);
    exponent -= estimate < exponent;
    for (int attempt = 0; attempt < 2; ++attempt) {
        shift = 5 - exponent;
        scaled = shift >= 0 ? magnitude * kPowersOfTen[shift] : magnitude / kPowersOfTen[-shift];
        if (scaled < 1e6)
            break;
        ++exponent;
    }
    return true;
}

} // namespace

// The value that "%g" prints, read back, without the text: scale to six
// digits before the point with an exact power of ten, round, scale back. The
// scaled value carries an error below 1e-10, so values within 2e-7 of a
// rounding tie are decided on the exact value, and only magnitudes past the
// exact powers take the text road.
double SGdsPolygon::RoundToSixDigits(double value)
{
    double rounded;
    if (RoundAwayFromTie(value, 0.0, rounded))
        return rounded;
    // Near a tie the exact value decides, as printing does, a tie itself going to the even
    // digit; only what 128 bits can't hold takes the text road.
    const double magnitude = std::fabs(value);
    double scaled;
    int shift;
    if (std::isfinite(value) && value != 0.0 && ScaleToSixDigits(magnitude, scaled, shift)) {
        double whole = double(int64_t(scaled));
        const int side = SNumberFormat::CompareWithTie(magnitude, shift, uint64_t(whole));
        if (side != 2) {
            if (side > 0 || (side == 0 && std::fmod(whole, 2.0) != 0.0))
                whole += 1.0;
            rounded = shift >= 0 ? whole / kPowersOfTen[shift] : whole * kPowersOfTen[-shift];
            return value < 0 ? -rounded : rounded;
        }
    }
    return std::isfinite(value) && value != 0.0 ? RoundThroughText(value) : value;
}

bool SGdsPolygon::RoundAwayFromTie(double value, double margin, double& rounded)
{
    double magnitude = std::fabs(value);
    double scaled;
    int shift;
    if (magnitude <= margin || !ScaleToSixDigits(magnitude, scaled, shift))
        return false;
    double scaledMargin = shift >= 0 ? margin * kPowersOfTen[shift] : margin / kPowersOfTen[-shift];
    // Positive and below 1e6: truncation is the floor.
    double whole = double(int64_t(scaled));
    double fraction = scaled - whole;
    if (std::fabs(fraction - 0.5) < 2e-7 + scaledMargin)
        return false;
    if (fraction > 0.5)
        whole += 1.0;
    rounded = shift >= 0 ? whole / kPowersOfTen[shift] : whole * kPowersOfTen[-shift];
    if (value < 0)
        rounded = -rounded;
    return true;
}
