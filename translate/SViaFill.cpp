#include "SViaFill.h"

#include "SPolygonData.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <unordered_map>
#include <unordered_set>

namespace {

const double kGuard = 0.0002;
// Indices stay far inside 32 bits, so that the product of two fits in 64.
const double kMaxIndex = 536870912.0;
// No via spans this many cells of a solver grid; past it a walk would take
// unbounded time and memory (a solid fill holds some 50 bytes a cell).
const double kMaxCells = 4194304.0;
// A via smaller than the grid is walked on finer grids up to this size, and along
// its edges beyond it, so that a long sliver can't blow up the finer walk.
const double kMaxFineCells = 1048576.0;
const int kMaxFineSteps = 24;
// An outline below this part of one cell is walked along its edges.
const double kTinyArea = 0.001;
// A staircase leaves out a cell that its edge crosses for less than this, in half cells.
const double kGraze = 0.05;

struct GridPoint
{
    int x;
    int y;
};

// x = num / den with den > 0: where an edge crosses a row of odd y.
struct Crossing
{
    int64_t num;
    int64_t den;
};

bool Less(const Crossing& a, const Crossing& b)
{
    return static_cast<__int128>(a.num) * b.den < static_cast<__int128>(b.num) * a.den;
}

bool Adjacent8(int ax, int ay, int bx, int by)
{
    return std::max(std::abs(ax - bx), std::abs(ay - by)) == 2;
}

bool Adjacent4(const SViaCoordinates& a, const SViaCoordinates& b)
{
    return std::abs(a.CenterX() - b.CenterX()) + std::abs(a.CenterY() - b.CenterY()) == 2;
}

// Twice the signed area in index units, relative to the first point against cancellation.
double IndexArea2(const std::vector<SPoint>& outline, double hx, double hy)
{
    if (outline.size() < 3)
        return 0.0;
    const double ox = outline[0].x(), oy = outline[0].y();
    double sum = 0.0;
    for (size_t i = 0; i + 1 < outline.size(); ++i) {
        const double ax = (outline[i].x() - ox) / hx, ay = (outline[i].y() - oy) / hy;
        const double bx = (outline[i + 1].x() - ox) / hx, by = (outline[i + 1].y() - oy) / hy;
        sum += ax * by - bx * ay;
    }
    return sum;
}

double CellsOver(const SRect& b, double hx, double hy)
{
    return (b.width() / (2.0 * hx) + 2.0) * (b.height() / (2.0 * hy) + 2.0);
}

// The cells that the segment p-q in index space crosses, from p to q, as odd
// centre indices, each with the length of the segment inside it. A pass exactly
// through a cell corner steps diagonally.
template <class Visit>
void Traverse(const SPoint& p, const SPoint& q, Visit visit)
{
    // A walk shorter than the boundary tolerance stays in one cell.
    const double dx = std::fabs(q.x() - p.x()) < 1e-9 ? 0.0 : q.x() - p.x();
    const double dy = std::fabs(q.y() - p.y()) < 1e-9 ? 0.0 : q.y() - p.y();
    // A point on a boundary belongs to the cell the walk goes into, or came from.
    auto cellOf = [](double v, bool lowerOnBoundary) -> long long {
        const double c = v / 2.0, r = std::round(c);
        if (std::fabs(c - r) < 1e-9)
            return static_cast<long long>(r) - (lowerOnBoundary ? 1 : 0);
        return static_cast<long long>(std::floor(c));
    };
    long long i = cellOf(p.x(), dx < 0), j = cellOf(p.y(), dy < 0);
    long long ie = dx == 0 ? i : cellOf(q.x(), dx > 0), je = dy == 0 ? j : cellOf(q.y(), dy > 0);
    if ((ie - i) * (dx < 0 ? -1 : 1) < 0)
        ie = i;
    if ((je - j) * (dy < 0 ? -1 : 1) < 0)
        je = j;
    long long nx = std::llabs(ie - i), ny = std::llabs(je - j);
    const int sx = dx > 0 ? 1 : -1, sy = dy > 0 ? 1 : -1;
    const double inf = std::numeric_limits<double>::infinity();
    double tMaxX = dx != 0 ? ((i + (dx > 0 ? 1 : 0)) * 2.0 - p.x()) / dx : inf;
    double tMaxY = dy != 0 ? ((j + (dy > 0 ? 1 : 0)) * 2.0 - p.y()) / dy : inf;
    const double tDeltaX = dx != 0 ? 2.0 / std::fabs(dx) : inf;
    const double tDeltaY = dy != 0 ? 2.0 / std::fabs(dy) : inf;
    const double length = std::hypot(dx, dy);
    double tPrevious = 0.0;
    while (nx > 0 || ny > 0) {
        bool stepX = ny == 0 || (nx > 0 && tMaxX < tMaxY - 1e-9);
        bool stepY = nx == 0 || (ny > 0 && tMaxY < tMaxX - 1e-9);
        if (!stepX && !stepY)
            stepX = stepY = true;
        const double tExit = std::min(1.0, std::max(tPrevious, stepX ? tMaxX : tMaxY));
        visit(static_cast<int>(2 * i + 1), static_cast<int>(2 * j + 1), (tExit - tPrevious) * length);
        tPrevious = tExit;
        if (stepX) {
            i += sx;
            tMaxX += tDeltaX;
            --nx;
        }
        if (stepY) {
            j += sy;
            tMaxY += tDeltaY;
            --ny;
        }
    }
    visit(static_cast<int>(2 * i + 1), static_cast<int>(2 * j + 1), (1.0 - tPrevious) * length);
}

// A rectangle as one sortable value.
typedef std::pair<uint64_t, uint64_t> RectKey;

RectKey KeyOf(const SViaCoordinates& c)
{
    return RectKey((uint64_t(uint32_t(c.itsX1)) << 32) | uint32_t(c.itsX2),
                   (uint64_t(uint32_t(c.itsY1)) << 32) | uint32_t(c.itsY2));
}

} // namespace

// An outline snapped to the even indices, with the crossings of each row of
// cell centres kept once computed, so that a walk over n cells costs about n
// lookups rather than n times the number of edges.
struct SViaFill::Grid
{
    Grid(const std::vector<SPoint>& points, double hx, double hy);

    // x and y odd: a cell centre.
    bool Inside(int x, int y) const;
    // The order of FillSolid: columns when the x extent is the smaller, else rows.
    template <class Visit>
    void Walk(Visit visit) const;

    std::vector<GridPoint> itsVertices;
    int itsMinX = 0;
    int itsMaxX = 0;
    int itsMinY = 0;
    int itsMaxY = 0;
    // Fewer than three vertices or no area: the via is smaller than the grid.
    bool itsEmpty = true;
    mutable std::unordered_map<int, std::vector<Crossing>> itsRows;
};

SViaFill::Grid::Grid(const std::vector<SPoint>& points, double hx, double hy)
{
    for (const SPoint& p : points) {
        const GridPoint g{SViaFill::Index(p.x(), hx), SViaFill::Index(p.y(), hy)};
        if (itsVertices.empty() || g.x != itsVertices.back().x || g.y != itsVertices.back().y)
            itsVertices.push_back(g);
    }
    while (itsVertices.size() > 1 && itsVertices.back().x == itsVertices.front().x &&
           itsVertices.back().y == itsVertices.front().y)
        itsVertices.pop_back();
    if (itsVertices.empty())
        return;
    itsMinX = itsMaxX = itsVertices[0].x;
    itsMinY = itsMaxY = itsVertices[0].y;
    __int128 area2 = 0;
    const GridPoint o = itsVertices[0];
    for (size_t i = 0; i < itsVertices.size(); ++i) {
        const GridPoint& a = itsVertices[i];
        const GridPoint& b = itsVertices[(i + 1) % itsVertices.size()];
        area2 += static_cast<__int128>(int64_t(a.x) - o.x) * (int64_t(b.y) - o.y) -
                 static_cast<__int128>(int64_t(b.x) - o.x) * (int64_t(a.y) - o.y);
        itsMinX = std::min(itsMinX, a.x);
        itsMaxX = std::max(itsMaxX, a.x);
        itsMinY = std::min(itsMinY, a.y);
        itsMaxY = std::max(itsMaxY, a.y);
    }
    itsEmpty = itsVertices.size() < 3 || area2 == 0;
}

bool SViaFill::Grid::Inside(int x, int y) const
{
    auto found = itsRows.find(y);
    if (found == itsRows.end()) {
        std::vector<Crossing> row;
        const size_t n = itsVertices.size();
        for (size_t i = 0; n >= 3 && i < n; ++i) {
            const GridPoint& a = itsVertices[i];
            const GridPoint& b = itsVertices[(i + 1) % n];
            // y is odd and vertices even, so a row never passes through a vertex.
            if ((a.y < y) == (b.y < y))
                continue;
            int64_t den = int64_t(b.y) - a.y;
            int64_t num = int64_t(a.x) * den + (int64_t(y) - a.y) * (int64_t(b.x) - a.x);
            if (den < 0) {
                den = -den;
                num = -num;
            }
            row.push_back(Crossing{num, den});
        }
        std::sort(row.begin(), row.end(), Less);
        found = itsRows.emplace(y, std::move(row)).first;
    }
    const std::vector<Crossing>& row = found->second;
    const Crossing p{x, 1};
    const size_t before = size_t(std::lower_bound(row.begin(), row.end(), p, Less) - row.begin());
    const bool onEdge = before < row.size() && !Less(p, row[before]);
    return onEdge || (before % 2) == 1;
}

template <class Visit>
void SViaFill::Grid::Walk(Visit visit) const
{
    if (itsMaxX - itsMinX < itsMaxY - itsMinY) {
        for (int x = itsMinX + 1; x < itsMaxX; x += 2)
            for (int y = itsMinY + 1; y < itsMaxY; y += 2)
                visit(x, y, y == itsMinY + 1);
    } else {
        for (int y = itsMinY + 1; y < itsMaxY; y += 2)
            for (int x = itsMinX + 1; x < itsMaxX; x += 2)
                visit(x, y, x == itsMinX + 1);
    }
}

SViaFill::SViaFill(const std::vector<SPoint>& points, double halfCellX, double halfCellY)
    : itsHalfCellX(halfCellX), itsHalfCellY(halfCellY), itsToleranceX(halfCellX * 1e-9),
      itsToleranceY(halfCellY * 1e-9), itsPoints(points)
{
}

SViaFill::~SViaFill() = default;

int SViaFill::Index(double v, double h)
{
    const double q = v / h;
    if (!(std::fabs(q) <= kMaxIndex))
        return 0;
    if (q >= 0)
        return (static_cast<int>(q - kGuard) + 1) & ~1;
    return -((static_cast<int>(std::fabs(q + kGuard) - kGuard) + 1) & ~1);
}

int SViaFill::CenterIndex(double v, double h)
{
    const double q = v / h;
    if (!(std::fabs(q) <= kMaxIndex))
        return 1;
    if (q >= 0)
        return static_cast<int>(q - kGuard) | 1;
    return -(static_cast<int>(std::fabs(q + kGuard) - kGuard) | 1);
}

bool SViaFill::BuildOutline()
{
    itsOutline.reset();
    itsSnapped.reset();
    const double hx = itsHalfCellX, hy = itsHalfCellY;
    if (!(std::isfinite(hx) && hx > 0 && std::isfinite(hy) && hy > 0) || itsPoints.empty())
        return false;
    for (const SPoint& p : itsPoints) {
        if (!(std::fabs(p.x() / hx) <= kMaxIndex && std::fabs(p.y() / hy) <= kMaxIndex))
            return false;
    }
    if (!(CellsOver(SPolygonData::BoundsOf(itsPoints), hx, hy) <= kMaxCells))
        return false;
    auto outline = std::make_unique<std::vector<SPoint>>(itsPoints);
    const SPoint first = outline->front();
    const SPoint last = outline->back();
    if (outline->size() > 1 && std::fabs(last.x() - first.x()) <= itsToleranceX &&
        std::fabs(last.y() - first.y()) <= itsToleranceY)
        outline->back() = first;
    else
        outline->push_back(first);
    itsOrientation = IndexArea2(*outline, hx, hy) < 0 ? -1 : 1;
    itsSnapped = std::make_unique<Grid>(*outline, hx, hy);
    itsOutline = std::move(outline);
    return true;
}

bool SViaFill::OutlineIsTiny() const
{
    // Four square indices make one cell.
    return std::fabs(IndexArea2(*itsOutline, itsHalfCellX, itsHalfCellY)) / 8.0 < kTinyArea;
}

bool SViaFill::Execute(int fill)
{
    itsFill = fill;
    itsSegments.clear();
    if (!BuildOutline() || fill < Legacy || fill > Hidden)
        return false;
    if (OutlineIsTiny())
        ExecuteTiny();
    else if (itsSnapped->itsEmpty)
        ExecuteSmall();
    else if (fill == Solid)
        FillSolid();
    else if (fill == Center)
        FillCenter();
    else
        FillEdges();
    // A sliver whose snapped outline holds no cell centre is as good as smaller than the grid.
    if (itsSegments.empty() && (fill == Solid || fill == Center))
        ExecuteSmall();
    if (fill == Center)
        KeepMiddleCell();
    RemoveCoveredSegments();
    return !itsSegments.empty();
}

bool SViaFill::ExecuteEdge(int edgeIndex, int side, int mode)
{
    itsFill = mode == 12 ? Legacy : Ring;
    itsSegments.clear();
    if (!BuildOutline() || edgeIndex < 0 || size_t(edgeIndex) + 1 >= itsOutline->size())
        return false;
    SViaSegment segment = WalkEdge(size_t(edgeIndex));
    if (side != 0)
        segment.Reverse();
    if (!segment.IsEmpty())
        itsSegments.push_back(std::move(segment));
    return !itsSegments.empty();
}

int SViaFill::CountCells() const
{
    std::vector<RectKey> keys;
    for (const SViaSegment& segment : itsSegments)
        for (const SViaCoordinates& cell : segment)
            keys.push_back(KeyOf(cell));
    std::sort(keys.begin(), keys.end());
    return int(std::unique(keys.begin(), keys.end()) - keys.begin());
}

void SViaFill::FillSolid()
{
    const Grid& grid = *itsSnapped;
    SViaSegment run;
    auto close = [&]() {
        if (!run.IsEmpty())
            itsSegments.push_back(std::move(run));
        run = SViaSegment();
    };
    grid.Walk([&](int x, int y, bool newLine) {
        if (newLine)
            close();
        if (grid.Inside(x, y))
            run.Append(SViaCoordinates::Cell(x, y));
        else
            close();
    });
    close();
}

void SViaFill::FillCenter()
{
    const Grid& grid = *itsSnapped;
    const int64_t cx = (int64_t(grid.itsMinX) + grid.itsMaxX) / 2;
    const int64_t cy = (int64_t(grid.itsMinY) + grid.itsMaxY) / 2;
    int64_t best = std::numeric_limits<int64_t>::max();
    SViaCoordinates cell;
    grid.Walk([&](int x, int y, bool) {
        const int64_t d = (x - cx) * (x - cx) + (y - cy) * (y - cy);
        if (d < best && grid.Inside(x, y)) {
            best = d;
            cell = SViaCoordinates::Cell(x, y);
        }
    });
    if (best == std::numeric_limits<int64_t>::max())
        return;
    SViaSegment segment;
    segment.Append(cell);
    itsSegments.push_back(segment);
}

void SViaFill::FillEdges()
{
    for (size_t edge = 0; edge + 1 < itsOutline->size(); ++edge) {
        SViaSegment segment = WalkEdge(edge);
        if (!segment.IsEmpty())
            itsSegments.push_back(std::move(segment));
    }
}

SPoint SViaFill::Inward(const SPoint& a, const SPoint& b) const
{
    const double ex = b.x() - a.x(), ey = b.y() - a.y();
    const double length = std::hypot(ex, ey);
    if (!(length > 0))
        return SPoint();
    return SPoint(-ey / length, ex / length) * double(itsOrientation);
}

SViaSegment SViaFill::WalkEdge(size_t edge) const
{
    const SPoint& a = (*itsOutline)[edge];
    const SPoint& b = (*itsOutline)[edge + 1];
    if (itsFill == Legacy || itsSnapped->itsEmpty)
        return Staircase(a, b);
    const int xa = Index(a.x(), itsHalfCellX), ya = Index(a.y(), itsHalfCellY);
    const int xb = Index(b.x(), itsHalfCellX), yb = Index(b.y(), itsHalfCellY);
    SViaSegment segment;
    if (xa == xb && ya != yb)
        WalkStraight(xa, ya, yb, true, segment);
    else if (ya == yb && xa != xb)
        WalkStraight(ya, xa, xb, false, segment);
    else if (xa != xb)
        WalkSlanted(xa, ya, xb, yb, segment);
    if (segment.IsEmpty())
        NearestToMiddle(xa, ya, xb, yb, segment);
    if (segment.IsEmpty()) {
        const SPoint p = (a + b) * 0.5 + Inward(a, b) * (0.001 * std::min(itsHalfCellX, itsHalfCellY));
        segment.Append(SViaCoordinates::Cell(CenterIndex(p.x(), itsHalfCellX), CenterIndex(p.y(), itsHalfCellY)));
    }
    return segment;
}

// An axis-parallel edge at index `fixed`, running from `from` to `to` along the other axis.
void SViaFill::WalkStraight(int fixed, int from, int to, bool vertical, SViaSegment& segment) const
{
    auto cell = [vertical](int across, int along) {
        return vertical ? GridPoint{across, along} : GridPoint{along, across};
    };
    auto inside = [&](int across, int along) {
        const GridPoint g = cell(across, along);
        return itsSnapped->Inside(g.x, g.y);
    };
    auto take = [&](int across, int along) {
        const GridPoint g = cell(across, along);
        segment.Append(SViaCoordinates::Cell(g.x, g.y));
    };
    // The mean of two even indices, moved to a cell centre when it falls on a boundary.
    int middle = from + (to - from) / 2;
    if ((middle & 1) == 0)
        middle -= 1;
    const int across = inside(fixed + 1, middle) ? fixed + 1 : fixed - 1;
    if (itsFill == Ring || itsFill == Bar) {
        for (int along = std::min(from, to) + 1; along < std::max(from, to); along += 2) {
            if (inside(across, along))
                take(across, along);
        }
        return;
    }
    const int step = to > from ? 2 : -2;
    for (int along = from + step / 2; step > 0 ? along < to : along > to; along += step) {
        if (inside(across, along)) {
            take(across, along);
            return;
        }
    }
}

// A line parallel to the edge, moved inwards until the cells it crosses make an
// unbroken staircase as long as the edge. Fill 3 keeps the one cell nearest the
// edge's start, by the larger of its index distances, and stops at the corner cell.
void SViaFill::WalkSlanted(int xa, int ya, int xb, int yb, SViaSegment& segment) const
{
    if (itsFill == Hidden)
        return;
    const double hx = itsHalfCellX, hy = itsHalfCellY;
    const double smaller = std::min(hx, hy), larger = std::max(hx, hy);
    const int steps = int(std::min(1000.0, std::ceil(10.0 * larger / smaller)));
    const double step = larger / steps;
    const SPoint normal = Inward(SPoint(xa * hx, ya * hy), SPoint(xb * hx, yb * hy));
    const SPoint normalIndex(normal.x() / hx, normal.y() / hy);
    const int loX = std::min(xa, xb), hiX = std::max(xa, xb), loY = std::min(ya, yb), hiY = std::max(ya, yb);
    const size_t expected = size_t(std::max(hiX - loX, hiY - loY) / 2);
    auto fromStart = [xa, ya](const GridPoint& c) { return std::max(std::abs(c.x - xa), std::abs(c.y - ya)); };

    std::vector<GridPoint> best, cells;
    long long previous = -1;
    bool noted = false;
    GridPoint vertexCell{0, 0};
    for (int k = 0; k <= steps; ++k) {
        const SPoint offset = normalIndex * (k * step);
        cells.clear();
        Traverse(SPoint(xa, ya) + offset, SPoint(xb, yb) + offset, [&](int x, int y, double) {
            if (x < loX || x > hiX || y < loY || y > hiY || !itsSnapped->Inside(x, y))
                return;
            // Drop a cell that the staircase doesn't need to stay connected.
            while (cells.size() >= 2 && Adjacent8(cells[cells.size() - 2].x, cells[cells.size() - 2].y, x, y))
                cells.pop_back();
            cells.push_back(GridPoint{x, y});
        });
        if (itsFill == Vertices) {
            for (const GridPoint& c : cells) {
                if (!noted || fromStart(c) < fromStart(vertexCell)) {
                    vertexCell = c;
                    noted = true;
                }
            }
            if (noted && fromStart(vertexCell) == 1)
                break;
            continue;
        }
        bool unbroken = cells.size() == expected;
        for (size_t i = 1; unbroken && i < cells.size(); ++i)
            unbroken = Adjacent8(cells[i - 1].x, cells[i - 1].y, cells[i].x, cells[i].y);
        if (unbroken) {
            best = cells;
            break;
        }
        if (previous >= 0 && (long long)cells.size() < previous)
            break;
        if (cells.size() > best.size())
            best = cells;
        previous = (long long)cells.size();
    }
    if (itsFill == Vertices) {
        if (noted)
            segment.Append(SViaCoordinates::Cell(vertexCell.x, vertexCell.y));
        return;
    }
    for (const GridPoint& c : best)
        segment.Append(SViaCoordinates::Cell(c.x, c.y));
}

// The inside cell nearest the edge's middle, within the edge's bounds widened by
// one cell. The window grows from the middle, and a find counts once no cell
// outside the window can be as near, so a long edge costs about its nearness.
void SViaFill::NearestToMiddle(int xa, int ya, int xb, int yb, SViaSegment& segment) const
{
    const int loX = std::min(xa, xb) - 1, hiX = std::max(xa, xb) + 1;
    const int loY = std::min(ya, yb) - 1, hiY = std::max(ya, yb) + 1;
    const double mx = (double(xa) + xb) / 2.0, my = (double(ya) + yb) / 2.0;
    const int cx = int(mx) | 1, cy = int(my) | 1;
    const double smaller = std::min(itsHalfCellX, itsHalfCellY);
    for (long long radius = 2;; radius *= 2) {
        const int x1 = int(std::max<long long>(loX, cx - radius)), x2 = int(std::min<long long>(hiX, cx + radius));
        const int y1 = int(std::max<long long>(loY, cy - radius)), y2 = int(std::min<long long>(hiY, cy + radius));
        const bool whole = x1 == loX && x2 == hiX && y1 == loY && y2 == hiY;
        double best = std::numeric_limits<double>::infinity();
        GridPoint found{0, 0};
        for (int y = y1 + ((y1 & 1) == 0); y <= y2; y += 2) {
            for (int x = x1 + ((x1 & 1) == 0); x <= x2; x += 2) {
                const double dx = (x - mx) * itsHalfCellX, dy = (y - my) * itsHalfCellY;
                const double d = dx * dx + dy * dy;
                if (d < best && itsSnapped->Inside(x, y)) {
                    best = d;
                    found = GridPoint{x, y};
                }
            }
        }
        const double reach = (radius - 1) * smaller;
        if (best < reach * reach || (whole && std::isfinite(best))) {
            segment.Append(SViaCoordinates::Cell(found.x, found.y));
            return;
        }
        if (whole)
            return;
    }
}

// Fill 0: the cells crossed by the edge moved a hair inwards, joined into one
// rectangle per row, or per column for a steep edge.
SViaSegment SViaFill::Staircase(const SPoint& a, const SPoint& b) const
{
    SViaSegment segment;
    if (std::fabs(b.x() - a.x()) <= itsToleranceX && std::fabs(b.y() - a.y()) <= itsToleranceY)
        return segment;
    const SPoint nudge = Inward(a, b) * (0.001 * std::min(itsHalfCellX, itsHalfCellY));
    const SPoint p = ToIndexSpace(a + nudge), q = ToIndexSpace(b + nudge);
    const bool rows = std::fabs(q.x() - p.x()) >= std::fabs(q.y() - p.y());
    bool open = false;
    SViaCoordinates step;
    Traverse(p, q, [&](int x, int y, double crossed) {
        // The moved end of an edge at an acute corner may graze a cell outside.
        if (crossed < kGraze)
            return;
        if (open && rows && y - 1 == step.itsY1 && (x - 1 == step.itsX2 || x + 1 == step.itsX1)) {
            step.itsX1 = std::min(step.itsX1, x - 1);
            step.itsX2 = std::max(step.itsX2, x + 1);
            return;
        }
        if (open && !rows && x - 1 == step.itsX1 && (y - 1 == step.itsY2 || y + 1 == step.itsY1)) {
            step.itsY1 = std::min(step.itsY1, y - 1);
            step.itsY2 = std::max(step.itsY2, y + 1);
            return;
        }
        if (open)
            segment.Append(step);
        step = SViaCoordinates::Cell(x, y);
        open = true;
    });
    if (open)
        segment.Append(step);
    return segment;
}

// The cells that the outline's edges cross, once each.
void SViaFill::ExecuteTiny()
{
    std::unordered_set<SViaCoordinates, SViaCoordinatesHash> taken;
    SViaSegment segment;
    const std::vector<SPoint>& outline = *itsOutline;
    for (size_t i = 0; i + 1 < outline.size(); ++i) {
        Traverse(ToIndexSpace(outline[i]), ToIndexSpace(outline[i + 1]), [&](int x, int y, double) {
            const SViaCoordinates cell = SViaCoordinates::Cell(x, y);
            if (taken.insert(cell).second)
                segment.Append(cell);
        });
    }
    if (!segment.IsEmpty())
        itsSegments.push_back(segment);
}

void SViaFill::ExecuteSmall()
{
    const std::vector<SPoint>& outline = *itsOutline;
    const SRect bounds = SPolygonData::BoundsOf(outline);
    std::vector<SPoint> shifted;
    shifted.reserve(outline.size());
    for (const SPoint& p : outline)
        shifted.push_back(p - SPoint(bounds.x1(), bounds.y1()));
    std::unique_ptr<Grid> fine;
    int factor = 2;
    for (int i = 0; i < kMaxFineSteps; ++i, factor *= 2) {
        const double fx = itsHalfCellX / factor, fy = itsHalfCellY / factor;
        if (!(CellsOver(bounds, fx, fy) <= kMaxFineCells)) {
            ExecuteTiny();
            return;
        }
        auto grid = std::make_unique<Grid>(shifted, fx, fy);
        if (!grid->itsEmpty) {
            fine = std::move(grid);
            break;
        }
    }
    const double midX = (bounds.x1() + bounds.x2()) / 2.0, midY = (bounds.y1() + bounds.y2()) / 2.0;
    if (fine) {
        // Under one cell across, the fine cells all fall in coarse cell 1: move it onto
        // the cell that holds the middle.
        const int shiftX = bounds.width() < 2.0 * itsHalfCellX ? CenterIndex(midX, itsHalfCellX) - 1
                                                             : Index(bounds.x1(), itsHalfCellX);
        const int shiftY = bounds.height() < 2.0 * itsHalfCellY ? CenterIndex(midY, itsHalfCellY) - 1
                                                             : Index(bounds.y1(), itsHalfCellY);
        std::unordered_set<SViaCoordinates, SViaCoordinatesHash> taken;
        SViaSegment run;
        fine->Walk([&](int x, int y, bool) {
            if (!fine->Inside(x, y))
                return;
            const SViaCoordinates cell = SViaCoordinates::Cell(((x / factor) | 1) + shiftX, ((y / factor) | 1) + shiftY);
            if (!taken.insert(cell).second)
                return;
            if (!run.IsEmpty() && !Adjacent4(run.Last(), cell)) {
                itsSegments.push_back(std::move(run));
                run = SViaSegment();
            }
            run.Append(cell);
        });
        if (!run.IsEmpty())
            itsSegments.push_back(run);
    }
    if (itsSegments.empty()) {
        SViaSegment segment;
        segment.Append(SViaCoordinates::Cell(CenterIndex(midX, itsHalfCellX), CenterIndex(midY, itsHalfCellY)));
        itsSegments.push_back(segment);
    }
}

// Fill 4 by another road than FillCenter: the cell nearest the middle of the bounds.
void SViaFill::KeepMiddleCell()
{
    if (CountCells() <= 1)
        return;
    const SRect bounds = SPolygonData::BoundsOf(*itsOutline);
    const double mx = (bounds.x1() + bounds.x2()) / 2.0 / itsHalfCellX;
    const double my = (bounds.y1() + bounds.y2()) / 2.0 / itsHalfCellY;
    double best = std::numeric_limits<double>::infinity();
    SViaCoordinates kept;
    for (const SViaSegment& segment : itsSegments) {
        for (const SViaCoordinates& cell : segment) {
            const double dx = cell.CenterX() - mx, dy = cell.CenterY() - my;
            if (dx * dx + dy * dy < best) {
                best = dx * dx + dy * dy;
                kept = cell;
            }
        }
    }
    itsSegments.assign(1, SViaSegment());
    itsSegments[0].Append(kept);
}

// A segment goes when each of its cells stands in another segment still kept;
// the earlier of two equal segments goes, so that one of them stays. Sorting
// beats hashing here by far on a solid fill of millions of cells.
void SViaFill::RemoveCoveredSegments()
{
    struct Entry
    {
        RectKey key;
        uint32_t segment;
    };
    std::vector<Entry> entries;
    for (size_t i = 0; i < itsSegments.size(); ++i)
        for (const SViaCoordinates& cell : itsSegments[i])
            entries.push_back(Entry{KeyOf(cell), uint32_t(i)});
    std::sort(entries.begin(), entries.end(), [](const Entry& a, const Entry& b) {
        return a.key != b.key ? a.key < b.key : a.segment < b.segment;
    });
    entries.erase(std::unique(entries.begin(), entries.end(),
                              [](const Entry& a, const Entry& b) { return a.key == b.key && a.segment == b.segment; }),
                  entries.end());
    // Per cell, the number of segments holding it; per segment, its cells.
    std::vector<int> holders;
    std::vector<std::vector<uint32_t>> cellsOf(itsSegments.size());
    bool shared = false;
    for (size_t i = 0; i < entries.size(); ++i) {
        if (i == 0 || entries[i].key != entries[i - 1].key)
            holders.push_back(0);
        shared = shared || holders.back() > 0;
        ++holders.back();
        cellsOf[entries[i].segment].push_back(uint32_t(holders.size() - 1));
    }
    if (!shared)
        return;
    std::vector<SViaSegment> kept;
    for (size_t i = 0; i < itsSegments.size(); ++i) {
        bool covered = true;
        for (uint32_t cell : cellsOf[i])
            covered = covered && holders[cell] >= 2;
        if (!covered) {
            kept.push_back(std::move(itsSegments[i]));
            continue;
        }
        for (uint32_t cell : cellsOf[i])
            --holders[cell];
    }
    itsSegments = std::move(kept);
}
