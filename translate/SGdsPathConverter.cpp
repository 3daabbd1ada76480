#include "SGdsPathConverter.h"

#include <cmath>

#include "SGdsDebug.h"
#include "SGdsElement.h"
#include "SGdsPolygon.h"
#include "SGdsPolygonList.h"
#include "SGdsRec.h"
#include "SLine.h"

int PathConversionMode = kPathBoundary;

bool SetPathConversionMode(const SString& argument)
{
    if (argument == "boundary_path")
        PathConversionMode = kPathBoundary;
    else if (argument == "no_boundary_path")
        PathConversionMode = kPathNoBoundary;
    else if (argument == "smart_path")
        PathConversionMode = kPathSmart;
    else
        return false;
    return true;
}

namespace {

const double kClose = 1e-9;

SPoint Rotate(const SPoint& p, double angle)
{
    double c = std::cos(angle), s = std::sin(angle);
    return SPoint(p.x() * c - p.y() * s, p.x() * s + p.y() * c);
}

// `to` moved by d along the left normal of the way from `from`: the vector
// is turned to point along +Y, its x replaced by -d, and turned back.
SPoint SidePoint(const SPoint& from, const SPoint& to, double d)
{
    SPoint v = to - from;
    double t = std::atan2(v.x(), v.y());
    SPoint turned = Rotate(v, t);
    turned.setX(-d);
    return Rotate(turned, -t) + from;
}

} // namespace

bool SGdsPathConverter::ExpandStructure(SGdsPolygonList& list, const SGdsElementPath& path)
{
    const SGdsRecXy* xy = path.itsXyRecord;
    if (!xy) {
        GdsError("Path record %d missing associated XY record\n", int(path.GetRecordNumber()));
        return false;
    }
    int count = xy->GetPointCount();
    itsPoints.resize(size_t(count));
    for (int i = 0; i < count; ++i)
        itsPoints[size_t(i)] = xy->GetPoint(i);
    return Convert(list, path);
}

bool SGdsPathConverter::ExpandPoints(SGdsPolygonList& list, const SGdsElementPath& path, const SPoint* points,
                                     int count)
{
    itsPoints.assign(points, points + (count > 0 ? count : 0));
    return Convert(list, path);
}

bool SGdsPathConverter::Convert(SGdsPolygonList& list, const SGdsElementPath& path)
{
    SGdsDebug& debug = GdsDebug();
    long record = long(path.GetRecordNumber());
    int count = int(itsPoints.size());
    if (count < 2 && debug.GetLevel() > 3)
        debug.Print("Path in record %ld contains only %d points - skip creating polygon\n", record, count);
    RemoveRedundantPoints(itsPoints);
    size_t n = itsPoints.size();
    if (n < 2) {
        if (debug.GetLevel() > 3)
            debug.Print("Path in record %ld contains only %d points after colinear removal - skip creating polygon\n",
                        record, count);
        return true;
    }
    if (path.itsWidth == 0.0)
        return ExpandZeroWidth(list, path, itsPoints);

    // An absolute (negative) width ignores every magnification.
    double half = path.itsWidth * 0.5;
    double halfWidth = half > 0 ? half * list.itsTransforms.GetMagnification() : -half;
    if (path.itsPathType == 3) {
        ExtendEnd(itsPoints[0], itsPoints[1], halfWidth);
        ExtendEnd(itsPoints[n - 1], itsPoints[n - 2], halfWidth);
    } else if (path.itsPathType == 4) {
        ExtendEnd(itsPoints[0], itsPoints[1], path.itsBeginExtension);
        ExtendEnd(itsPoints[n - 1], itsPoints[n - 2], path.itsEndExtension);
    }
    if (list.itsTransforms.Entries()) {
        for (SPoint& point : itsPoints)
            point = list.itsTransforms.Transform(point);
    }

    SGdsPolygon* polygon = list.NewPolygon();
    polygon->itsLayer = path.itsLayer;
    polygon->itsDatatype = path.itsDatatype;
    if (debug.GetLevel() > 3)
        debug.Print("Expanding GDS PATH to polygon: gdspolyid=%lld, record=%ld, (PATH)\n",
                    (long long)polygon->gdspolyid, record);
    list.ReservePoints(*polygon, 2 * n);
    const std::vector<SPoint>& p = itsPoints;
    // Out along the left side, back along the right.
    AddEndPoint(list, *polygon, p[0], p[1], true, halfWidth);
    for (size_t i = 1; i + 1 < n; ++i)
        AddJoinPoint(list, *polygon, p[i - 1], p[i], p[i + 1], halfWidth);
    AddEndPoint(list, *polygon, p[n - 2], p[n - 1], false, halfWidth);
    AddEndPoint(list, *polygon, p[n - 1], p[n - 2], true, halfWidth);
    for (size_t i = n - 2; i >= 1; --i)
        AddJoinPoint(list, *polygon, p[i + 1], p[i], p[i - 1], halfWidth);
    AddEndPoint(list, *polygon, p[1], p[0], false, halfWidth);
    return true;
}

bool SGdsPathConverter::ExpandZeroWidth(SGdsPolygonList& list, const SGdsElementPath& path,
                                        const std::vector<SPoint>& points)
{
    SGdsDebug& debug = GdsDebug();
    if (debug.GetLevel() > 4)
        debug.Print("PATH width is zero - converting to boundary.\n");
    SGdsPolygon* polygon = list.NewPolygon();
    polygon->itsLayer = path.itsLayer;
    polygon->itsDatatype = path.itsDatatype;
    if (debug.GetLevel() > 3)
        debug.Print("Expanding GDS PATH0 polygon: gdspolyid=%lld, record=%ld, (PATH0)\n",
                    (long long)polygon->gdspolyid, long(path.GetRecordNumber()));
    size_t n = points.size();
    bool back = PathConversionMode == kPathNoBoundary ||
                (PathConversionMode == kPathSmart && n > 0 && points.front() != points.back());
    list.ReservePoints(*polygon, back && n > 2 ? 2 * n - 2 : n);
    for (const SPoint& point : points)
        polygon->AddPoint(list, point, true);
    if (back) {
        for (size_t i = n - 2; i >= 1 && i < n; --i)
            polygon->AddPoint(list, points[i], true);
    }
    return true;
}

void SGdsPathConverter::RemoveRedundantPoints(std::vector<SPoint>& points) const
{
    // Both passes keep the order of the removals that one at a time would
    // make, but copy each point once, so that long paths stay linear.
    SGdsDebug& debug = GdsDebug();
    bool trace = debug.GetLevel() > 4;
    size_t n = points.size();
    if (n < 2)
        return;
    size_t kept = 0;
    for (size_t k = 1; k < n; ++k) {
        if (Distance(points[kept], points[k]) < kClose) {
            if (trace)
                debug.Print("Removing duplicate point: %d (%g, %g)\n", int(kept), points[kept].x(), points[kept].y());
        } else {
            ++kept;
        }
        points[kept] = points[k];
    }
    n = kept + 1;
    points.resize(n);
    if (n < 3)
        return;
    // points[0..kept] are final; the point at `pending` waits for its successor.
    kept = 0;
    size_t pending = 1;
    for (size_t k = 2; k < n; ++k) {
        const SPoint& a = points[kept];
        const SPoint& b = points[pending];
        const SPoint& c = points[k];
        if (std::fabs(Distance(a, b) + Distance(b, c) - Distance(a, c)) < kClose) {
            if (trace)
                debug.Print("Removing colinear point: %d (%g, %g)\n", int(kept + 1), b.x(), b.y());
        } else {
            points[++kept] = b;
        }
        pending = k;
    }
    points[++kept] = points[pending];
    points.resize(kept + 1);
}

double SGdsPathConverter::Distance(const SPoint& a, const SPoint& b)
{
    return std::hypot(std::fabs(a.x() - b.x()), std::fabs(a.y() - b.y()));
}

void SGdsPathConverter::ExtendEnd(SPoint& end, const SPoint& neighbour, double length)
{
    double distance = Distance(end, neighbour);
    if (distance < kClose)
        return;
    end += (end - neighbour) * (length / distance);
}

int SGdsPathConverter::Side(const SPoint& a, const SPoint& b)
{
    if (std::fabs(a.x() - b.x()) < kClose) {
        if (std::fabs(a.y() - b.y()) < kClose)
            return 1;
        return a.y() >= b.y() ? 1 : -1;
    }
    return b.x() > a.x() ? 1 : -1;
}

void SGdsPathConverter::AddEndPoint(SGdsPolygonList& list, SGdsPolygon& polygon, const SPoint& a, const SPoint& b,
                                    bool atFirst, double halfWidth) const
{
    SLine offset = SLine(a, b).Offset(Side(a, b) * halfWidth);
    SLine across = offset.Perpendicular(atFirst ? a : b);
    SPoint vertex = atFirst ? a : b;
    offset.Intersect(across, vertex);
    polygon.AddPoint(list, vertex, false);
}

void SGdsPathConverter::AddJoinPoint(SGdsPolygonList& list, SGdsPolygon& polygon, const SPoint& p0,
                                     const SPoint& p1, const SPoint& p2, double halfWidth) const
{
    SLine first = SLine(p0, p1).Offset(Side(p0, p1) * halfWidth);
    SLine second = SLine(p1, p2).Offset(Side(p1, p2) * halfWidth);
    SPoint vertex;
    if (!first.Intersect(second, vertex)) {
        SGdsDebug& debug = GdsDebug();
        if (debug.GetLevel() > 4)
            debug.Print("Intersection method failed, using alternate method\n");
        SPoint a = SidePoint(p0, p1, halfWidth);
        SPoint b = SidePoint(p2, p1, -halfWidth);
        vertex = (a + b) * 0.5;
    }
    polygon.AddPoint(list, vertex, false);
}
