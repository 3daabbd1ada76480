#ifndef SVIAFILL_H
#define SVIAFILL_H

#include "SPoint.h"
#include "SViaSegment.h"

#include <memory>
#include <vector>

// Which cells of the solver grid under a via outline hold via posts, for a
// fill code. Indices count half cells: even ones lie on cell boundaries, odd
// ones are cell centres. Coordinates are in the outline's own length unit.
//
// The outline is snapped by rounding each vertex to the nearest even index
// (Index below). A cell is inside when its centre lies inside the snapped
// outline by the even-odd rule or on one of its edges; since the snapped
// vertices are even and centres odd, only a slanted edge can pass through a
// centre, and such a half-covered cell counts as inside.
class SViaFill
{
public:
    enum Fill { Legacy = 0, Ring = 1, Solid = 2, Vertices = 3, Center = 4, Bar = 5, Hidden = 6 };

    // `points` is the outline, open or closed; the half cells are in the same unit.
    SViaFill(const std::vector<SPoint>& points, double halfCellX, double halfCellY);
    ~SViaFill();
    SViaFill(const SViaFill&) = delete;
    SViaFill& operator=(const SViaFill&) = delete;

    // All of the outline; true when at least one segment exists. Fill codes
    // outside 0 to 6, bad half cells, and points that aren't finite or lie
    // beyond the grid's reach give nothing.
    bool Execute(int fill);
    // One edge, from vertex `edgeIndex` to the next: the walk that Execute
    // makes for that edge, with fill 0 for mode 12 and fill 1 otherwise. A
    // nonzero `side` runs the segment from the edge's end instead of its start.
    bool ExecuteEdge(int edgeIndex, int side, int mode);
    // Different rectangles over all segments.
    int CountCells() const;

    const std::vector<SViaSegment>& Segments() const { return itsSegments; }
    int GetFill() const { return itsFill; }

    // The even index nearest to v, for half cell h, with a guard of 0.0002.
    static int Index(double v, double h);
    // The odd index of the cell that holds v.
    static int CenterIndex(double v, double h);

    struct Grid;

private:
    bool BuildOutline();
    bool OutlineIsTiny() const;
    void FillSolid();
    void FillCenter();
    void FillEdges();
    SViaSegment WalkEdge(size_t edge) const;
    void WalkStraight(int fixed, int from, int to, bool vertical, SViaSegment& segment) const;
    void WalkSlanted(int xa, int ya, int xb, int yb, SViaSegment& segment) const;
    void NearestToMiddle(int xa, int ya, int xb, int yb, SViaSegment& segment) const;
    SViaSegment Staircase(const SPoint& a, const SPoint& b) const;
    void ExecuteSmall();
    void ExecuteTiny();
    void KeepMiddleCell();
    void RemoveCoveredSegments();
    SPoint Inward(const SPoint& a, const SPoint& b) const;
    SPoint ToIndexSpace(const SPoint& p) const { return SPoint(p.x() / itsHalfCellX, p.y() / itsHalfCellY); }

    double itsHalfCellX;
    double itsHalfCellY;
    double itsToleranceX;
    double itsToleranceY;
    std::unique_ptr<Grid> itsSnapped;
    // Closed: the last point repeats the first.
    std::unique_ptr<std::vector<SPoint>> itsOutline;
    std::vector<SViaSegment> itsSegments;
    std::vector<SPoint> itsPoints;
    int itsFill = 0;
    // +1 for a counter-clockwise outline, -1 for a clockwise one.
    int itsOrientation = 1;
};

#endif
