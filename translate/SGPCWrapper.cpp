#include "SGPCWrapper.h"

#include "SPolygonData.h"

#include <clipper.hpp>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

// Beyond this many units Clipper's arithmetic would lose exactness.
const double kMaxUnits = 1e15;
// The search for a slit starts beyond any distance that a layout holds.
const double kFar = 99999999.0;

// Points to Clipper's integers and back: one unit is the tolerance, unless the coordinates
// are so large that the scale must shrink to keep them exact.
struct SScale {
  double factor = 1.0;
  bool ok = true;
  // The clipper sweeps along y and keeps what a scan line crosses in a list searched from
  // its start: a layout wider than high goes in with x and y exchanged, so that the sweep
  // runs along its length and the list stays short.
  bool swap = false;

  SScale(double tolerance, const SGPCWrapper& a, const SGPCWrapper& b) : SScale(tolerance, {&a, &b}) {}
  SScale(double tolerance, const std::vector<const SGPCWrapper*>& parts) {
    double extent = 0.0;
    double x1 = 0, x2 = 0, y1 = 0, y2 = 0;
    bool first = true;
    for (const SGPCWrapper* w : parts)
      for (int c = 0; c < w->GetContourCount(); ++c)
        for (const SPoint& p : w->Contour(c)) {
          if (!std::isfinite(p.x()) || !std::isfinite(p.y())) ok = false;
          extent = std::max({extent, std::fabs(p.x()), std::fabs(p.y())});
          if (first) x1 = x2 = p.x(), y1 = y2 = p.y(), first = false;
          x1 = std::min(x1, p.x()), x2 = std::max(x2, p.x()), y1 = std::min(y1, p.y()), y2 = std::max(y2, p.y());
        }
    swap = x2 - x1 > y2 - y1;
    factor = tolerance > 0.0 && std::isfinite(tolerance) ? 1.0 / tolerance : 1e6;
    if (extent * factor > kMaxUnits) factor = kMaxUnits / extent;
  }

  ClipperLib::Path ToPath(const std::vector<SPoint>& points) const {
    ClipperLib::Path path;
    path.reserve(points.size());
    for (const SPoint& p : points) {
      const auto x = static_cast<ClipperLib::cInt>(std::llround(p.x() * factor));
      const auto y = static_cast<ClipperLib::cInt>(std::llround(p.y() * factor));
      path.emplace_back(swap ? y : x, swap ? x : y);
    }
    return path;
  }

  SPoint FromPoint(const ClipperLib::IntPoint& p) const {
    const double a = static_cast<double>(p.X) / factor, b = static_cast<double>(p.Y) / factor;
    return swap ? SPoint(b, a) : SPoint(a, b);
  }
};

// Two edges lie on one line and share a stretch longer than a point.
bool EdgesShareStretch(const SPoint& a1, const SPoint& a2, const SPoint& b1, const SPoint& b2, double tolerance) {
  const double dxa = a2.x() - a1.x(), dya = a2.y() - a1.y();
  const double dxb = b2.x() - b1.x(), dyb = b2.y() - b1.y();
  const bool verticalA = std::fabs(dxa) < tolerance;
  const bool verticalB = std::fabs(dxb) < tolerance;
  if (verticalA != verticalB) return false;
  bool alongX = true;
  if (verticalA) {
    if (std::fabs(a1.x() - b1.x()) >= tolerance) return false;
    alongX = false;
  } else {
    const double slopeA = dya / dxa, slopeB = dyb / dxb;
    if (std::fabs(slopeA - slopeB) >= tolerance) return false;
    const double interceptA = a1.y() - slopeA * a1.x(), interceptB = b1.y() - slopeB * b1.x();
    if (std::fabs(interceptA - interceptB) >= tolerance) return false;
    // A flat line is measured along x, any other along y.
    alongX = std::fabs(slopeA) < tolerance;
  }
  double lowA, highA, lowB, highB;
  if (alongX) {
    lowA = std::min(a1.x(), a2.x()), highA = std::max(a1.x(), a2.x());
    lowB = std::min(b1.x(), b2.x()), highB = std::max(b1.x(), b2.x());
  } else {
    lowA = std::min(a1.y(), a2.y()), highA = std::max(a1.y(), a2.y());
    lowB = std::min(b1.y(), b2.y()), highB = std::max(b1.y(), b2.y());
  }
  return std::min(highA, highB) - std::max(lowA, lowB) > tolerance;
}

// What the relation of two plain outlines is, worked out without the clipper when that is
// certain: -1 when they touch or come within the tolerance somewhere, which the clipper
// decides, else Overlap or Apart.
int QuickRelation(const std::vector<SPoint>& a, const std::vector<SPoint>& b, double t) {
  // Two rectangles along the axes, the usual case of a layout.
  auto rectangle = [](const std::vector<SPoint>& p, SRect& r) {
    if (p.size() != 4) return false;
    for (size_t i = 0; i < 4; ++i) {
      const SPoint& u = p[i];
      const SPoint& v = p[(i + 1) % 4];
      if (u.x() != v.x() && u.y() != v.y()) return false;
    }
    r = SPolygonData::BoundsOf(p);
    return r.width() > 0 && r.height() > 0;
  };
  SRect ra, rb;
  if (rectangle(a, ra) && rectangle(b, rb)) {
    const double ox = std::min(ra.x2(), rb.x2()) - std::max(ra.x1(), rb.x1());
    const double oy = std::min(ra.y2(), rb.y2()) - std::max(ra.y1(), rb.y1());
    if (ox > t && oy > t) return SGPCWrapper::Overlap;
    if (ox < -t || oy < -t) return SGPCWrapper::Apart;
    return -1;
  }
  if (a.size() < 3 || b.size() < 3 || a.size() * b.size() > 1024) return -1;
  auto cross = [](const SPoint& o, const SPoint& p, const SPoint& q) {
    return (p.x() - o.x()) * (q.y() - o.y()) - (p.y() - o.y()) * (q.x() - o.x());
  };
  // Squared, against the squared tolerance.
  auto distance = [](const SPoint& p, const SPoint& u, const SPoint& v) {
    const double dx = v.x() - u.x(), dy = v.y() - u.y();
    const double length = dx * dx + dy * dy;
    double k = length > 0 ? ((p.x() - u.x()) * dx + (p.y() - u.y()) * dy) / length : 0.0;
    k = std::max(0.0, std::min(1.0, k));
    const double ex = p.x() - (u.x() + k * dx), ey = p.y() - (u.y() + k * dy);
    return ex * ex + ey * ey;
  };
  auto inside = [](const std::vector<SPoint>& p, const SPoint& q) {
    bool in = false;
    for (size_t i = 0, j = p.size() - 1; i < p.size(); j = i++)
      if ((p[i].y() > q.y()) != (p[j].y() > q.y()) &&
          q.x() < (p[j].x() - p[i].x()) * (q.y() - p[i].y()) / (p[j].y() - p[i].y()) + p[i].x())
        in = !in;
    return in;
  };
  bool overlap = false;
  for (int pass = 0; pass < 2; ++pass) {
    const auto& p = pass == 0 ? a : b;
    const auto& q = pass == 0 ? b : a;
    for (const SPoint& v : p) {
      for (size_t j = 0; j < q.size(); ++j)
        if (!(distance(v, q[j], q[(j + 1) % q.size()]) > t * t)) return -1;
      overlap = overlap || inside(q, v);
    }
  }
  for (size_t i = 0; i < a.size() && !overlap; ++i) {
    const SPoint& a1 = a[i];
    const SPoint& a2 = a[(i + 1) % a.size()];
    for (size_t j = 0; j < b.size(); ++j) {
      const SPoint& b1 = b[j];
      const SPoint& b2 = b[(j + 1) % b.size()];
      const double d1 = cross(a1, a2, b1), d2 = cross(a1, a2, b2), d3 = cross(b1, b2, a1), d4 = cross(b1, b2, a2);
      if (d1 != 0 && d2 != 0 && d3 != 0 && d4 != 0 && (d1 > 0) != (d2 > 0) && (d3 > 0) != (d4 > 0)) {
        overlap = true;
        break;
      }
    }
  }
  return overlap ? SGPCWrapper::Overlap : SGPCWrapper::Apart;
}

} // namespace

struct SClipperAccess {
  static void TakePaths(SGPCWrapper& result, const ClipperLib::Paths& paths, const SScale& scale);
  // Runs the clipper into `result`.
  static int Run(ClipperLib::Clipper& clipper, ClipperLib::ClipType type, ClipperLib::PolyFillType fill,
                 const SScale& scale, SGPCWrapper& result) {
    ClipperLib::Paths paths;
    if (!clipper.Execute(type, paths, fill, fill)) return Failed(result);
    TakePaths(result, paths, scale);
    result.ComputeBoundingBox();
    return SGPCWrapper::ClipDone;
  }
  // Clipper throws on coordinates out of its range; the caller keeps what it had.
  static int Failed(SGPCWrapper& result) {
    result.itsContours.clear();
    result.itsHoles.clear();
    return SGPCWrapper::ClipFailed;
  }
};

void SClipperAccess::TakePaths(SGPCWrapper& result, const ClipperLib::Paths& paths, const SScale& scale) {
  // Paths rather than the tree of nesting: the tree costs a point-in-polygon test for every
  // pair of outlines, and a hole is told by its orientation alone.
  for (const ClipperLib::Path& path : paths) {
    if (path.size() < 3) continue;
    std::vector<SPoint> points;
    points.reserve(path.size());
    for (const ClipperLib::IntPoint& p : path) points.push_back(scale.FromPoint(p));
    result.itsContours.push_back(std::move(points));
    result.itsHoles.push_back(!ClipperLib::Orientation(path));
  }
}

bool IsClockwise(const std::vector<SPoint>& points) { return SPolygonData::SignedArea(points) > 0.0; }

SGPCWrapper::SGPCWrapper(const std::vector<SPoint>& points, SEnclosure* source, double tolerance)
    : itsSource(source), itsTolerance(tolerance) {
  AddContour(points, false);
}

int SGPCWrapper::GetHoleCount() const { return static_cast<int>(std::count(itsHoles.begin(), itsHoles.end(), true)); }

void SGPCWrapper::AddContour(std::vector<SPoint> points, bool hole) {
  itsContours.push_back(std::move(points));
  itsHoles.push_back(hole);
  ComputeBoundingBox();
}

void SGPCWrapper::ComputeBoundingBox() {
  bool first = true;
  for (const std::vector<SPoint>& contour : itsContours) {
    if (contour.empty()) continue;
    const SRect box = SPolygonData::BoundsOf(contour);
    itsBoundingBox = first ? box : itsBoundingBox.united(box);
    first = false;
  }
  if (first) itsBoundingBox = SRect();
}

bool SGPCWrapper::BoxesNear(const SGPCWrapper& other) const {
  const SRect& a = itsBoundingBox;
  const SRect& b = other.itsBoundingBox;
  const double t = itsTolerance;
  return !(a.x1() > b.x2() + t || b.x1() > a.x2() + t || a.y1() > b.y2() + t || b.y1() > a.y2() + t);
}

SGPCWrapper* SGPCWrapper::GetContour(int index) const {
  SGPCWrapper* wrapper = new SGPCWrapper(itsContours[static_cast<size_t>(index)], itsSource, itsTolerance);
  return wrapper;
}

int SGPCWrapper::Clip(int operation, const SGPCWrapper& other, SGPCWrapper& result) const {
  ClipperLib::ClipType type;
  switch (operation) {
  case Difference: type = ClipperLib::ctDifference; break;
  case Intersection: type = ClipperLib::ctIntersection; break;
  case Union: type = ClipperLib::ctUnion; break;
  default: return ClipFailed;
  }
  const SScale scale(itsTolerance, *this, other);
  if (!scale.ok) return ClipFailed;
  result.itsContours.clear();
  result.itsHoles.clear();
  try {
    ClipperLib::Clipper clipper;
    for (const auto& contour : itsContours)
      if (contour.size() >= 3) clipper.AddPath(scale.ToPath(contour), ClipperLib::ptSubject, true);
    for (const auto& contour : other.itsContours)
      if (contour.size() >= 3) clipper.AddPath(scale.ToPath(contour), ClipperLib::ptClip, true);
    return SClipperAccess::Run(clipper, type, ClipperLib::pftEvenOdd, scale, result);
  } catch (...) {
    return SClipperAccess::Failed(result);
  }
}

int SGPCWrapper::UnionAll(const std::vector<const SGPCWrapper*>& parts, SGPCWrapper& result) {
  result.itsContours.clear();
  result.itsHoles.clear();
  if (parts.empty()) return ClipDone;
  // The clipper's sweep keeps every outline that a scan line crosses in one list, and many
  // parts side by side make each step along it long: the union of a long row of parts would
  // grow with the square of their number. Halves that lie apart, united on their own, keep
  // that list short; the two results meet along one seam.
  const size_t kFewParts = 256;
  if (parts.size() > kFewParts) {
    SRect box = parts.front()->GetBoundingBox();
    for (const SGPCWrapper* part : parts) box = box.united(part->GetBoundingBox());
    const bool alongX = std::fabs(box.width()) >= std::fabs(box.height());
    std::vector<const SGPCWrapper*> sorted(parts);
    auto centre = [alongX](const SGPCWrapper* w) {
      const SRect& b = w->GetBoundingBox();
      return alongX ? b.x1() + b.x2() : b.y1() + b.y2();
    };
    const size_t half = sorted.size() / 2;
    std::nth_element(sorted.begin(), sorted.begin() + static_cast<long>(half), sorted.end(),
                     [&](const SGPCWrapper* a, const SGPCWrapper* b) { return centre(a) < centre(b); });
    SGPCWrapper low(parts.front()->itsTolerance), high(parts.front()->itsTolerance);
    if (UnionAll(std::vector<const SGPCWrapper*>(sorted.begin(), sorted.begin() + static_cast<long>(half)), low) !=
            ClipDone ||
        UnionAll(std::vector<const SGPCWrapper*>(sorted.begin() + static_cast<long>(half), sorted.end()), high) !=
            ClipDone)
      return ClipFailed;
    return UnionAll({&low, &high}, result);
  }
  const SScale scale(parts.front()->itsTolerance, parts);
  if (!scale.ok) return ClipFailed;
  try {
    ClipperLib::Clipper clipper;
    for (const SGPCWrapper* part : parts)
      for (size_t c = 0; c < part->itsContours.size(); ++c) {
        if (part->itsContours[c].size() < 3) continue;
        ClipperLib::Path path = scale.ToPath(part->itsContours[c]);
        // Outlines one way round and holes the other, so that overlaps add up under the
        // non-zero rule and a hole stays empty.
        if (ClipperLib::Orientation(path) == bool(part->itsHoles[c])) ClipperLib::ReversePath(path);
        clipper.AddPath(path, ClipperLib::ptSubject, true);
      }
    return SClipperAccess::Run(clipper, ClipperLib::ctUnion, ClipperLib::pftNonZero, scale, result);
  } catch (...) {
    return SClipperAccess::Failed(result);
  }
}

int SGPCWrapper::Relation(const SGPCWrapper& other) const {
  if (!BoxesNear(other)) return Apart;
  if (itsContours.size() == 1 && other.itsContours.size() == 1) {
    const int quick = QuickRelation(itsContours[0], other.itsContours[0], itsTolerance);
    if (quick >= 0) return quick;
  }
  SGPCWrapper common(1e-8);
  if (Clip(Intersection, other, common) == ClipDone && common.GetContourCount() > 0) return Overlap;
  for (const auto& a : itsContours) {
    for (size_t i = 0; i < a.size(); ++i) {
      const SPoint& a1 = a[i];
      const SPoint& a2 = a[(i + 1) % a.size()];
      for (const auto& b : other.itsContours)
        for (size_t j = 0; j < b.size(); ++j)
          if (EdgesShareStretch(a1, a2, b[j], b[(j + 1) % b.size()], itsTolerance)) return Touch;
    }
  }
  return Apart;
}

double SGPCWrapper::ProjectPoint(const SPoint& p1, const SPoint& p2, const SPoint& q, SPoint& out, double tolerance) {
  if (q.x() >= std::min(p1.x(), p2.x()) && q.x() <= std::max(p1.x(), p2.x())) {
    double y = p1.y();
    if (std::fabs(p2.y() - p1.y()) >= tolerance) y = p1.y() + (q.x() - p1.x()) * (p2.y() - p1.y()) / (p2.x() - p1.x());
    out = SPoint(q.x(), y);
    return std::fabs(y - q.y());
  }
  if (q.y() >= std::min(p1.y(), p2.y()) && q.y() <= std::max(p1.y(), p2.y())) {
    double x = p1.x();
    if (std::fabs(p2.x() - p1.x()) >= tolerance) x = p1.x() + (q.y() - p1.y()) * (p2.x() - p1.x()) / (p2.y() - p1.y());
    out = SPoint(x, q.y());
    return std::fabs(x - q.x());
  }
  out = SPoint(-1, -1);
  return -1;
}

bool SGPCWrapper::ConnectHoles() {
  if (GetHoleCount() == 0) return true;
  std::vector<std::vector<SPoint>> contours = itsContours;
  std::vector<bool> holes = itsHoles;
  while (std::count(holes.begin(), holes.end(), true) > 0) {
    // The nearest join of a hole's vertex to another contour's edge, measured along an axis;
    // contours within the hole's box can't take it.
    double best = kFar;
    size_t bi = 0, bv = 0, bj = 0, bk = 0;
    SPoint bp;
    bool found = false;
    for (size_t i = 0; i < contours.size(); ++i) {
      if (!holes[i]) continue;
      const SRect hole = SPolygonData::BoundsOf(contours[i]);
      for (size_t j = 0; j < contours.size(); ++j) {
        if (j == i) continue;
        const SRect box = SPolygonData::BoundsOf(contours[j]);
        if (box.x1() >= hole.x1() && box.x2() <= hole.x2() && box.y1() >= hole.y1() && box.y2() <= hole.y2()) continue;
        const auto& target = contours[j];
        for (size_t v = 0; v < contours[i].size(); ++v)
          for (size_t k = 0; k < target.size(); ++k) {
            SPoint at;
            const double d =
                ProjectPoint(target[k], target[(k + 1) % target.size()], contours[i][v], at, itsTolerance);
            if (d >= 0.0 && d < best) {
              best = d, bi = i, bv = v, bj = j, bk = k, bp = at;
              found = true;
            }
          }
      }
    }
    if (!found) return false;
    std::vector<SPoint> hole = contours[bi];
    const std::vector<SPoint>& target = contours[bj];
    size_t v = bv;
    const size_t n = hole.size();
    // The hole goes round against its new outline so that the slit closes it.
    if ((!holes[bj] && IsClockwise(target) == IsClockwise(hole)) ||
        (holes[bj] && IsClockwise(target) != IsClockwise(hole))) {
      std::reverse(hole.begin(), hole.end());
      v = n - v - 1;
    }
    std::vector<SPoint> joined;
    joined.reserve(target.size() + n + 3);
    joined.insert(joined.end(), target.begin(), target.begin() + static_cast<long>(bk) + 1);
    joined.push_back(bp);
    for (size_t step = 0; step < n; ++step) joined.push_back(hole[(v + step) % n]);
    joined.push_back(hole[v]);
    joined.push_back(bp);
    joined.insert(joined.end(), target.begin() + static_cast<long>(bk) + 1, target.end());
    contours[bj] = std::move(joined);
    // The last contour takes the place of the hole.
    if (bi + 1 != contours.size()) {
      contours[bi] = std::move(contours.back());
      holes[bi] = holes.back();
    }
    contours.pop_back();
    holes.pop_back();
  }
  itsContours = std::move(contours);
  itsHoles = std::move(holes);
  ComputeBoundingBox();
  return true;
}

double SGPCWrapper::Area() const {
  double area = 0.0;
  for (size_t i = 0; i < itsContours.size(); ++i) {
    const double a = std::fabs(SPolygonData::SignedArea(itsContours[i]));
    area += itsHoles[i] ? -a : a;
  }
  return area;
}
