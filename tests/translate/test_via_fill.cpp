// Via fill on the solver grid. Every outline here uses a half cell of 0.5, so one
// unit is one cell: the cell from (i, j) to (i + 1, j + 1) has the centre indices
// (2i + 1, 2j + 1). Results are checked against a point-in-polygon test of the
// test's own wherever the outline's vertices lie on cell boundaries.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <ostream>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "SPolygonData.h"
#include "SViaFill.h"

namespace {

const double kHalf = 0.5;
typedef std::pair<int, int> Centre;
typedef std::set<Centre> Cells;

std::vector<SPoint> Outline(std::initializer_list<std::pair<double, double>> points)
{
    std::vector<SPoint> outline;
    for (const auto& p : points)
        outline.emplace_back(p.first, p.second);
    return outline;
}

std::vector<SPoint> Rect(double x1, double y1, double x2, double y2)
{
    return Outline({{x1, y1}, {x2, y1}, {x2, y2}, {x1, y2}});
}

Cells Taken(const SViaFill& fill)
{
    Cells cells;
    for (const SViaSegment& segment : fill.Segments())
        for (const SViaCoordinates& c : segment)
            cells.insert(Centre(c.CenterX(), c.CenterY()));
    return cells;
}

size_t TakenWithRepeats(const SViaFill& fill)
{
    size_t n = 0;
    for (const SViaSegment& segment : fill.Segments())
        n += segment.Entries();
    return n;
}

std::vector<size_t> SegmentSizes(const SViaFill& fill)
{
    std::vector<size_t> sizes;
    for (const SViaSegment& segment : fill.Segments())
        sizes.push_back(segment.Entries());
    return sizes;
}

// Where the centre of a cell lies: 1 inside the outline, 0 on an edge, -1 outside.
int Where(const std::vector<SPoint>& outline, const Centre& cell)
{
    const double px = cell.first * kHalf, py = cell.second * kHalf;
    bool inside = false;
    for (size_t i = 0; i < outline.size(); ++i) {
        const SPoint& a = outline[i];
        const SPoint& b = outline[(i + 1) % outline.size()];
        const double cross = (b.x() - a.x()) * (py - a.y()) - (b.y() - a.y()) * (px - a.x());
        if (std::fabs(cross) < 1e-9 && px >= std::min(a.x(), b.x()) - 1e-9 && px <= std::max(a.x(), b.x()) + 1e-9 &&
            py >= std::min(a.y(), b.y()) - 1e-9 && py <= std::max(a.y(), b.y()) + 1e-9)
            return 0;
        if ((a.y() > py) != (b.y() > py) && px < a.x() + (py - a.y()) * (b.x() - a.x()) / (b.y() - a.y()))
            inside = !inside;
    }
    return inside ? 1 : -1;
}

double DistanceToBoundary(const std::vector<SPoint>& outline, const Centre& cell)
{
    const SPoint p(cell.first * kHalf, cell.second * kHalf);
    double best = std::numeric_limits<double>::infinity();
    for (size_t i = 0; i < outline.size(); ++i) {
        const SPoint& a = outline[i];
        const SPoint& b = outline[(i + 1) % outline.size()];
        const SPoint d = b - a;
        const double t = std::clamp(((p.x() - a.x()) * d.x() + (p.y() - a.y()) * d.y()) /
                                        (d.x() * d.x() + d.y() * d.y()),
                                    0.0, 1.0);
        best = std::min(best, (a + d * t).distanceTo(p));
    }
    return best;
}

bool InBounds(const std::vector<SPoint>& outline, const Centre& cell)
{
    const SRect b = SPolygonData::BoundsOf(outline);
    const double x = cell.first * kHalf, y = cell.second * kHalf;
    return b.x1() < x && x < b.x2() && b.y1() < y && y < b.y2();
}

// Every cell centre over the outline's bounds for which `keep(where)` holds.
template <class Keep>
Cells CellsWhere(const std::vector<SPoint>& outline, Keep keep)
{
    const SRect b = SPolygonData::BoundsOf(outline);
    Cells cells;
    for (int y = int(std::floor(b.y1())) * 2 - 1; y <= int(std::ceil(b.y2())) * 2 + 1; y += 2)
        for (int x = int(std::floor(b.x1())) * 2 - 1; x <= int(std::ceil(b.x2())) * 2 + 1; x += 2)
            if (keep(Centre(x, y)))
                cells.insert(Centre(x, y));
    return cells;
}

// Cells inside with a side on the outline: a neighbour across a side is outside.
Cells RingCells(const std::vector<SPoint>& outline)
{
    return CellsWhere(outline, [&](const Centre& c) {
        if (Where(outline, c) < 0)
            return false;
        for (Centre n : {Centre(c.first + 2, c.second), Centre(c.first - 2, c.second), Centre(c.first, c.second + 2),
                         Centre(c.first, c.second - 2)})
            if (Where(outline, n) < 0)
                return true;
        return false;
    });
}

bool Adjacent8(const SViaCoordinates& a, const SViaCoordinates& b)
{
    return std::max(std::abs(a.CenterX() - b.CenterX()), std::abs(a.CenterY() - b.CenterY())) == 2;
}

// --- the grid ------------------------------------------------------------------------

struct IndexCase
{
    double v;
    double h;
    int index;
    int centre;
};

TEST(ViaGrid, IndexRoundsToTheNearestBoundaryAndCenterIndexGivesTheHoldingCell)
{
    const IndexCase cases[] = {
        {0.0, 1.0, 0, 1},     {0.5, 1.0, 0, 1},    {0.99, 1.0, 0, 1},    {1.5, 1.0, 2, 1},
        {2.5, 1.0, 2, 3},     {3.2, 1.0, 4, 3},    {-0.5, 1.0, 0, -1},   {-1.5, 1.0, -2, -1},
        {-2.5, 1.0, -2, -3},  {-3.2, 1.0, -4, -3}, {5.0, 0.5, 10, 9},    {0.25, 0.1, 2, 3},
        // The guard keeps a value a hair above a boundary on it, and in the cell below.
        {2.0001, 1.0, 2, 1},  {1.0001, 1.0, 0, 1}, {-2.0001, 1.0, -2, -1},
    };
    for (const IndexCase& c : cases) {
        EXPECT_EQ(SViaFill::Index(c.v, c.h), c.index) << c.v << " / " << c.h;
        EXPECT_EQ(SViaFill::CenterIndex(c.v, c.h), c.centre) << c.v << " / " << c.h;
    }
}

// --- the rectangle of 4 by 2 cells ----------------------------------------------------

struct RectangleCase
{
    const char* name;
    int fill;
    std::vector<size_t> segmentSizes;
    Cells cells;
};

TEST(ViaFillRectangle, EachFillTakesItsCells)
{
    const Cells all = {{1, 1}, {3, 1}, {5, 1}, {7, 1}, {1, 3}, {3, 3}, {5, 3}, {7, 3}};
    const Cells corners = {{1, 1}, {7, 1}, {7, 3}, {1, 3}};
    const RectangleCase cases[] = {
        // The y extent is the smaller, so rows are walked.
        {"solid", SViaFill::Solid, {4, 4}, all},
        // The short sides lie wholly in the long ones and go: no cell is taken twice.
        {"ring", SViaFill::Ring, {4, 4}, all},
        {"bar", SViaFill::Bar, {4, 4}, all},
        // The first cell of each edge from its start: one corner each.
        {"vertices", SViaFill::Vertices, {1, 1, 1, 1}, corners},
        {"hidden", SViaFill::Hidden, {1, 1, 1, 1}, corners},
        // Four cells tie for the middle; the first of the row walk wins.
        {"center", SViaFill::Center, {1}, {{3, 1}}},
    };
    for (const RectangleCase& c : cases) {
        SViaFill fill(Rect(0, 0, 4, 2), kHalf, kHalf);
        ASSERT_TRUE(fill.Execute(c.fill)) << c.name;
        EXPECT_EQ(fill.GetFill(), c.fill);
        EXPECT_EQ(SegmentSizes(fill), c.segmentSizes) << c.name;
        EXPECT_EQ(Taken(fill), c.cells) << c.name;
        EXPECT_EQ(fill.CountCells(), int(c.cells.size())) << c.name;
    }
}

TEST(ViaFillRectangle, LegacyLaysOneRectanglePerSide)
{
    SViaFill fill(Rect(0, 0, 4, 2), kHalf, kHalf);
    ASSERT_TRUE(fill.Execute(SViaFill::Legacy));
    std::set<std::vector<int>> rectangles;
    for (const SViaSegment& segment : fill.Segments())
        for (const SViaCoordinates& c : segment)
            rectangles.insert({c.itsX1, c.itsX2, c.itsY1, c.itsY2});
    const std::set<std::vector<int>> expected = {{0, 8, 0, 2}, {6, 8, 0, 4}, {0, 8, 2, 4}, {0, 2, 0, 4}};
    EXPECT_EQ(rectangles, expected);
    EXPECT_EQ(fill.CountCells(), 4);
}

TEST(ViaFillRectangle, FillsOutsideTheTableGiveNothing)
{
    for (int code : {-1, 7, 12}) {
        SViaFill fill(Rect(0, 0, 4, 2), kHalf, kHalf);
        EXPECT_FALSE(fill.Execute(code)) << code;
        EXPECT_TRUE(fill.Segments().empty()) << code;
        EXPECT_EQ(fill.CountCells(), 0);
    }
}

TEST(ViaFillRectangle, RunningAgainReplacesTheCells)
{
    SViaFill fill(Rect(0, 0, 4, 2), kHalf, kHalf);
    ASSERT_TRUE(fill.Execute(SViaFill::Solid));
    ASSERT_TRUE(fill.Execute(SViaFill::Center));
    EXPECT_EQ(fill.CountCells(), 1);
}

// --- properties over many outlines -----------------------------------------------------

struct NamedOutline
{
    const char* name;
    std::vector<SPoint> points;
    // Every edge along an axis.
    bool straight;
};

void PrintTo(const NamedOutline& outline, std::ostream* os)
{
    *os << outline.name;
}

const std::vector<NamedOutline>& Outlines()
{
    static const std::vector<NamedOutline> outlines = {
        {"rectangle", Rect(0, 0, 4, 2), true},
        {"negative_offset", Rect(-7, -5, -2, -1), true},
        {"l_shape", Outline({{0, 0}, {4, 0}, {4, 2}, {2, 2}, {2, 4}, {0, 4}}), true},
        {"l_shape_clockwise", Outline({{0, 4}, {2, 4}, {2, 2}, {4, 2}, {4, 0}, {0, 0}}), true},
        {"u_shape", Outline({{0, 0}, {6, 0}, {6, 4}, {4, 4}, {4, 2}, {2, 2}, {2, 4}, {0, 4}}), true},
        {"triangle_45", Outline({{0, 0}, {6, 0}, {0, 6}}), false},
        {"triangle_half_slope", Outline({{0, 0}, {8, 0}, {8, 4}}), false},
        {"diamond", Outline({{4, 0}, {8, 4}, {4, 8}, {0, 4}}), false},
        {"offset_triangle", Outline({{-3, -9}, {5, -9}, {1, -3}}), false},
        {"closed_repeat", Outline({{1, 1}, {5, 1}, {5, 4}, {1, 4}, {1, 1}}), true},
    };
    return outlines;
}

class ViaFillOutline : public testing::TestWithParam<NamedOutline>
{
};

TEST_P(ViaFillOutline, SolidTakesEveryCellInsideAndNoneOutside)
{
    const NamedOutline& o = GetParam();
    SViaFill fill(o.points, kHalf, kHalf);
    ASSERT_TRUE(fill.Execute(SViaFill::Solid));
    const Cells taken = Taken(fill);
    EXPECT_EQ(TakenWithRepeats(fill), taken.size());
    for (const Centre& c : taken)
        EXPECT_GE(Where(o.points, c), 0) << c.first << "," << c.second;
    for (const Centre& c : CellsWhere(o.points, [&](const Centre& c) { return Where(o.points, c) > 0; }))
        EXPECT_EQ(taken.count(c), 1u) << c.first << "," << c.second;
    // Each segment is one straight run of neighbours.
    for (const SViaSegment& segment : fill.Segments()) {
        for (size_t i = 1; i < segment.Entries(); ++i) {
            const int dx = segment.At(i).CenterX() - segment.At(i - 1).CenterX();
            const int dy = segment.At(i).CenterY() - segment.At(i - 1).CenterY();
            EXPECT_TRUE((dx == 2 && dy == 0) || (dx == 0 && dy == 2)) << dx << "," << dy;
        }
    }
}

TEST_P(ViaFillOutline, RingTakesConnectedCellsAlongTheBoundary)
{
    const NamedOutline& o = GetParam();
    SViaFill fill(o.points, kHalf, kHalf);
    ASSERT_TRUE(fill.Execute(SViaFill::Ring));
    const Cells taken = Taken(fill);
    for (const Centre& c : taken) {
        EXPECT_GE(Where(o.points, c), 0) << c.first << "," << c.second;
        // A line moved in by at most half a cell crosses the cell.
        EXPECT_LT(DistanceToBoundary(o.points, c), 0.5 + std::sqrt(0.5)) << c.first << "," << c.second;
    }
    if (o.straight) {
        EXPECT_EQ(taken, RingCells(o.points));
    }
    for (const SViaSegment& segment : fill.Segments())
        for (size_t i = 1; i < segment.Entries(); ++i)
            EXPECT_TRUE(Adjacent8(segment.At(i - 1), segment.At(i)));

    SViaFill bar(o.points, kHalf, kHalf);
    ASSERT_TRUE(bar.Execute(SViaFill::Bar));
    EXPECT_EQ(Taken(bar), taken);
}

TEST_P(ViaFillOutline, LegacyStaircaseCoversTheRingOfAStraightOutline)
{
    const NamedOutline& o = GetParam();
    SViaFill fill(o.points, kHalf, kHalf);
    ASSERT_TRUE(fill.Execute(SViaFill::Legacy));
    Cells covered;
    for (const SViaSegment& segment : fill.Segments()) {
        for (const SViaCoordinates& r : segment) {
            ASSERT_TRUE(r.itsX1 < r.itsX2 && r.itsY1 < r.itsY2);
            ASSERT_TRUE(r.itsX1 % 2 == 0 && r.itsX2 % 2 == 0 && r.itsY1 % 2 == 0 && r.itsY2 % 2 == 0);
            for (int x = r.itsX1 + 1; x < r.itsX2; x += 2)
                for (int y = r.itsY1 + 1; y < r.itsY2; y += 2)
                    covered.insert(Centre(x, y));
        }
    }
    // Cells crossed by a slanted edge may hold their centre outside, but never lie
    // more than half a cell from the boundary, nor outside the bounds.
    for (const Centre& c : covered) {
        EXPECT_LE(DistanceToBoundary(o.points, c), std::sqrt(0.5) + 1e-9) << c.first << "," << c.second;
        EXPECT_TRUE(InBounds(o.points, c)) << c.first << "," << c.second;
    }
    if (o.straight) {
        EXPECT_EQ(covered, RingCells(o.points));
    }
}

TEST_P(ViaFillOutline, CenterTakesOneInsideCellNearestTheMiddle)
{
    const NamedOutline& o = GetParam();
    SViaFill fill(o.points, kHalf, kHalf);
    ASSERT_TRUE(fill.Execute(SViaFill::Center));
    ASSERT_EQ(fill.CountCells(), 1);
    const Centre chosen = *Taken(fill).begin();
    EXPECT_GE(Where(o.points, chosen), 0);
    const SRect b = SPolygonData::BoundsOf(o.points);
    auto distance = [&](const Centre& c) {
        const double dx = c.first - (b.x1() + b.x2()) / kHalf / 2, dy = c.second - (b.y1() + b.y2()) / kHalf / 2;
        return dx * dx + dy * dy;
    };
    for (const Centre& c : CellsWhere(o.points, [&](const Centre& c) { return Where(o.points, c) >= 0; }))
        EXPECT_LE(distance(chosen), distance(c)) << c.first << "," << c.second;
}

TEST_P(ViaFillOutline, VerticesTakesAtMostOneInsideCellPerEdge)
{
    const NamedOutline& o = GetParam();
    for (int code : {SViaFill::Vertices, SViaFill::Hidden}) {
        SViaFill fill(o.points, kHalf, kHalf);
        ASSERT_TRUE(fill.Execute(code));
        EXPECT_GE(fill.CountCells(), 1);
        EXPECT_LE(fill.CountCells(), int(o.points.size()));
        for (const SViaSegment& segment : fill.Segments())
            EXPECT_EQ(segment.Entries(), 1u);
        for (const Centre& c : Taken(fill))
            EXPECT_GE(Where(o.points, c), 0) << code << ": " << c.first << "," << c.second;
    }
}

INSTANTIATE_TEST_SUITE_P(Outlines, ViaFillOutline, testing::ValuesIn(Outlines()),
                         [](const testing::TestParamInfo<NamedOutline>& info) { return std::string(info.param.name); });

// --- slanted edges ------------------------------------------------------------------

TEST(ViaFillSlanted, A45DegreeEdgeGivesADiagonalRunFromItsStart)
{
    // The hypotenuse runs from (4, 0) to (0, 4), through cell corners.
    SViaFill fill(Outline({{0, 0}, {4, 0}, {0, 4}}), kHalf, kHalf);
    ASSERT_TRUE(fill.ExecuteEdge(1, 0, 0));
    ASSERT_EQ(fill.Segments().size(), 1u);
    const SViaSegment& run = fill.Segments()[0];
    ASSERT_EQ(run.Entries(), 4u);
    for (size_t i = 0; i < run.Entries(); ++i) {
        EXPECT_EQ(run.At(i).CenterX(), 7 - 2 * int(i));
        EXPECT_EQ(run.At(i).CenterY(), 1 + 2 * int(i));
    }
    ASSERT_TRUE(fill.ExecuteEdge(1, 1, 0));
    EXPECT_EQ(fill.Segments()[0].At(0).CenterX(), 1);
}

TEST(ViaFillSlanted, AShallowEdgeGivesTheSameStaircaseEitherWayRound)
{
    const std::vector<SPoint> ccw = Outline({{0, 0}, {8, 0}, {8, 4}});
    const std::vector<SPoint> cw = Outline({{8, 4}, {8, 0}, {0, 0}});
    SViaFill a(ccw, kHalf, kHalf);
    SViaFill b(cw, kHalf, kHalf);
    // The hypotenuse: edge 2 of the one, edge 2 of the other reversed.
    ASSERT_TRUE(a.ExecuteEdge(2, 0, 0));
    ASSERT_TRUE(b.ExecuteEdge(2, 0, 0));
    EXPECT_EQ(Taken(a), Taken(b));
    const SViaSegment& run = a.Segments()[0];
    ASSERT_GE(run.Entries(), 3u);
    EXPECT_LE(run.Entries(), 8u);
    // From the edge's start at (8, 4): the corner cell first.
    EXPECT_EQ(run.At(0).CenterX(), 15);
    EXPECT_EQ(run.At(0).CenterY(), 7);
    for (size_t i = 0; i < run.Entries(); ++i) {
        EXPECT_GE(Where(ccw, Centre(run.At(i).CenterX(), run.At(i).CenterY())), 0);
        if (i > 0) {
            EXPECT_TRUE(Adjacent8(run.At(i - 1), run.At(i)));
        }
    }
}

// --- one edge ------------------------------------------------------------------------

struct EdgeCase
{
    const char* name;
    int edge;
    int side;
    int mode;
    bool result;
    std::vector<std::vector<int>> rectangles; // x1, x2, y1, y2 in order
};

TEST(ViaFillEdge, WalksOneEdgeOfTheRectangle)
{
    const EdgeCase cases[] = {
        {"bottom", 0, 0, 0, true, {{0, 2, 0, 2}, {2, 4, 0, 2}, {4, 6, 0, 2}, {6, 8, 0, 2}}},
        {"bottom_from_its_end", 0, 1, 0, true, {{6, 8, 0, 2}, {4, 6, 0, 2}, {2, 4, 0, 2}, {0, 2, 0, 2}}},
        // Lower index to higher, whichever way the edge runs.
        {"left", 3, 0, 0, true, {{0, 2, 0, 2}, {0, 2, 2, 4}}},
        {"bottom_legacy", 0, 0, 12, true, {{0, 8, 0, 2}}},
        {"right_legacy", 1, 0, 12, true, {{6, 8, 0, 4}}},
        {"past_the_last", 4, 0, 0, false, {}},
        {"negative", -1, 0, 0, false, {}},
    };
    for (const EdgeCase& c : cases) {
        SViaFill fill(Rect(0, 0, 4, 2), kHalf, kHalf);
        EXPECT_EQ(fill.ExecuteEdge(c.edge, c.side, c.mode), c.result) << c.name;
        EXPECT_EQ(fill.GetFill(), c.mode == 12 ? SViaFill::Legacy : SViaFill::Ring);
        std::vector<std::vector<int>> rectangles;
        for (const SViaSegment& segment : fill.Segments())
            for (const SViaCoordinates& r : segment)
                rectangles.push_back({r.itsX1, r.itsX2, r.itsY1, r.itsY2});
        EXPECT_EQ(rectangles, c.rectangles) << c.name;
    }
}

TEST(ViaFillEdge, AnEdgeThatSnapsToOnePointTakesTheInsideCellNearestItsMiddle)
{
    // A chamfer far below a cell at the top right corner.
    const std::vector<SPoint> chamfered = Outline({{0, 0}, {4, 0}, {4, 1.99}, {3.99, 2}, {0, 2}});
    SViaFill edge(chamfered, kHalf, kHalf);
    ASSERT_TRUE(edge.ExecuteEdge(2, 0, 0));
    EXPECT_EQ(Taken(edge), Cells({{7, 3}}));
    // Within the whole ring that corner cell is taken already, and its segment goes.
    SViaFill ring(chamfered, kHalf, kHalf);
    ASSERT_TRUE(ring.Execute(SViaFill::Ring));
    EXPECT_EQ(ring.Segments().size(), 2u);
    EXPECT_EQ(ring.CountCells(), 8);
}

// --- vias smaller than the grid -------------------------------------------------------

struct SmallCase
{
    const char* name;
    std::vector<SPoint> points;
    Cells cells;
};

TEST(ViaFillSmall, AViaUnderACellTakesTheCellThatHoldsIt)
{
    const SmallCase cases[] = {
        {"quarter_cell_on_a_corner", Rect(0, 0, 0.5, 0.5), {{1, 1}}},
        {"quarter_cell_inside", Rect(0.1, 0.1, 0.6, 0.6), {{1, 1}}},
        // Across a boundary: the cell of its middle.
        {"quarter_cell_across", Rect(0.6, 0.6, 1.1, 1.1), {{1, 1}}},
        {"quarter_cell_negative", Rect(-2.4, -2.4, -1.9, -1.9), {{-5, -5}}},
        {"far_from_the_origin", Rect(1000.2, 500.3, 1000.7, 500.8), {{2001, 1001}}},
        {"tiny", Rect(0.2, 0.2, 0.21, 0.21), {{1, 1}}},
    };
    for (const SmallCase& c : cases) {
        for (int code = SViaFill::Legacy; code <= SViaFill::Hidden; ++code) {
            SViaFill fill(c.points, kHalf, kHalf);
            ASSERT_TRUE(fill.Execute(code)) << c.name << " " << code;
            EXPECT_EQ(Taken(fill), c.cells) << c.name << " " << code;
            EXPECT_EQ(fill.CountCells(), 1) << c.name << " " << code;
        }
    }
}

TEST(ViaFillSmall, AThinStripTakesTheRowItLiesIn)
{
    const std::vector<SPoint> strip = Rect(0, 0.2, 5, 0.5);
    SViaFill solid(strip, kHalf, kHalf);
    ASSERT_TRUE(solid.Execute(SViaFill::Solid));
    EXPECT_EQ(Taken(solid), Cells({{1, 1}, {3, 1}, {5, 1}, {7, 1}, {9, 1}}));
    EXPECT_EQ(solid.Segments().size(), 1u);
    SViaFill center(strip, kHalf, kHalf);
    ASSERT_TRUE(center.Execute(SViaFill::Center));
    EXPECT_EQ(Taken(center), Cells({{5, 1}}));
    // Upright, and below the origin.
    SViaFill column(Rect(-3.4, -2, -3.1, 1), kHalf, kHalf);
    ASSERT_TRUE(column.Execute(SViaFill::Solid));
    EXPECT_EQ(Taken(column), Cells({{-7, -3}, {-7, -1}, {-7, 1}}));
}

// --- outlines that aren't polygons ----------------------------------------------------

struct DegenerateCase
{
    const char* name;
    std::vector<SPoint> points;
    double halfCell;
    // -1: nothing; otherwise the most cells any fill may take, with at least one.
    int mostCells;
};

TEST(ViaFillDegenerate, NeverFailsAndTakesLittleOrNothing)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double inf = std::numeric_limits<double>::infinity();
    const DegenerateCase cases[] = {
        {"no_points", {}, kHalf, -1},
        {"one_point", Outline({{1.2, 0.7}}), kHalf, 1},
        {"one_point_repeated", Outline({{1.2, 0.7}, {1.2, 0.7}, {1.2, 0.7}, {1.2, 0.7}}), kHalf, 1},
        {"two_points", Outline({{0, 0.5}, {3, 0.5}}), kHalf, 4},
        {"collinear", Outline({{0, 0}, {1, 1}, {3, 3}}), kHalf, 8},
        {"zero_size_rectangle", Rect(2, 2, 2, 2), kHalf, 1},
        {"bow_tie", Outline({{0, 0}, {4, 4}, {4, 0}, {0, 4}}), kHalf, 16},
        {"folded_back", Outline({{0, 0}, {4, 0}, {4, 2}, {4, 0}}), kHalf, 8},
        {"long_sliver", Outline({{0, 0}, {1000, 0.0001}, {0, 0.0002}}), kHalf, 1100},
        {"nan", Outline({{0, 0}, {nan, 0}, {1, 1}}), kHalf, -1},
        {"infinite", Outline({{0, 0}, {inf, 0}, {1, 1}}), kHalf, -1},
        {"huge", Outline({{0, 0}, {1e30, 0}, {1, 1}}), kHalf, -1},
        {"more_cells_than_any_grid", Rect(0, 0, 1e6, 1e6), kHalf, -1},
        {"zero_half_cell", Rect(0, 0, 4, 2), 0.0, -1},
        {"negative_half_cell", Rect(0, 0, 4, 2), -0.5, -1},
        {"nan_half_cell", Rect(0, 0, 4, 2), nan, -1},
        {"half_cell_larger_than_anything", Rect(0, 0, 4, 2), 1e300, 1},
    };
    for (const DegenerateCase& c : cases) {
        for (int code = SViaFill::Legacy; code <= SViaFill::Hidden; ++code) {
            SViaFill fill(c.points, c.halfCell, c.halfCell);
            const bool result = fill.Execute(code);
            EXPECT_EQ(result, !fill.Segments().empty()) << c.name << " " << code;
            if (c.mostCells < 0) {
                EXPECT_FALSE(result) << c.name << " " << code;
                continue;
            }
            EXPECT_TRUE(result) << c.name << " " << code;
            EXPECT_GE(fill.CountCells(), 1) << c.name << " " << code;
            EXPECT_LE(fill.CountCells(), c.mostCells) << c.name << " " << code;
            for (size_t edge = 0; edge <= c.points.size(); ++edge)
                fill.ExecuteEdge(int(edge), 0, edge % 2 ? 12 : 0);
        }
    }
}

TEST(ViaFillDegenerate, RepeatedVerticesChangeNothing)
{
    SViaFill plain(Rect(0, 0, 4, 2), kHalf, kHalf);
    SViaFill repeated(Outline({{0, 0}, {0, 0}, {4, 0}, {4, 0}, {4, 2}, {0, 2}, {0, 0}}), kHalf, kHalf);
    for (int code : {SViaFill::Solid, SViaFill::Ring, SViaFill::Center}) {
        ASSERT_TRUE(plain.Execute(code));
        ASSERT_TRUE(repeated.Execute(code));
        EXPECT_EQ(Taken(repeated), Taken(plain)) << code;
    }
}

} // namespace
