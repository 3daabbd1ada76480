#ifndef SGPCWRAPPER_H
#define SGPCWRAPPER_H

#include "SCollectable.h"
#include "SPoint.h"
#include "SRect.h"

#include <vector>

class SEnclosure;

// A polygon with holes for the clipper: contours of points, each with a hole flag, the
// project polygon it came from and the tolerance of its arithmetic. The clipping itself is
// Clipper's, on integer coordinates: points are scaled so that the tolerance is one unit,
// which makes points closer than the tolerance one point, as the tolerance of the
// operations promises.
class SGPCWrapper : public SCollectable {
public:
  enum Operation { Difference = 0, Intersection = 1, Union = 3 };
  // Clip's results.
  enum { ClipDone = 0, ClipFailed = 12 };
  enum Relations { Overlap = 0, Touch = 1, Apart = 2 };

  explicit SGPCWrapper(double tolerance = 1e-6) : itsTolerance(tolerance) {}
  // One contour, not a hole, holding the points in their order.
  SGPCWrapper(const std::vector<SPoint>& points, SEnclosure* source, double tolerance);

  int GetContourCount() const { return static_cast<int>(itsContours.size()); }
  int GetHoleCount() const;
  bool IsHole(int index) const { return itsHoles[static_cast<size_t>(index)]; }
  void AddContour(std::vector<SPoint> points, bool hole);
  void ComputeBoundingBox();
  const SRect& GetBoundingBox() const { return itsBoundingBox; }
  // False when, on either axis, one box begins more than the tolerance beyond the other's end.
  bool BoxesNear(const SGPCWrapper& other) const;
  std::vector<SPoint> GetContourPoints(int index) const { return itsContours[static_cast<size_t>(index)]; }
  const std::vector<SPoint>& Contour(int index) const { return itsContours[static_cast<size_t>(index)]; }
  // A new wrapper holding that contour alone (not a hole), with this one's source and tolerance.
  SGPCWrapper* GetContour(int index) const;

  // This (subject) with `other` (clip) into `result`, whose contours are replaced: Difference,
  // Intersection or Union. ClipFailed when the clipper failed; `result` is then not to be used.
  int Clip(int operation, const SGPCWrapper& other, SGPCWrapper& result) const;
  // The union of all of them into `result` in one call of the clipper, with the first's
  // tolerance; ClipFailed as for Clip.
  static int UnionAll(const std::vector<const SGPCWrapper*>& parts, SGPCWrapper& result);
  // Overlap when the areas share some, Touch when two edges share a stretch, else Apart.
  int Relation(const SGPCWrapper& other) const;
  // Joins each hole to a neighbour by a slit, two coincident edges, so that every contour
  // is a plain outline. False when a hole can't be joined (then the contours are as before).
  bool ConnectHoles();

  // The distance from q to the edge p1 p2, measured along x when q.x lies over the edge,
  // else along y when q.y lies beside it, with the point reached in `out`; -1 when neither.
  static double ProjectPoint(const SPoint& p1, const SPoint& p2, const SPoint& q, SPoint& out, double tolerance);
  // The sum of the area of the outlines less that of the holes.
  double Area() const;

  SEnclosure* itsSource = nullptr;
  SRect itsBoundingBox;
  double itsTolerance = 1e-6;

private:
  friend struct SClipperAccess;
  std::vector<std::vector<SPoint>> itsContours;
  std::vector<bool> itsHoles;
};

// With the points taken cyclically, the sum of x(i) y(i+1) - y(i) x(i+1) is above 0.
bool IsClockwise(const std::vector<SPoint>& points);

#endif
