// Flattened geometry checked against computations that share nothing with
// the walk: the corpus oracle's counts and areas per layer, and generated
// hierarchies placed with plain affine matrices.

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "Corpus.h"
#include "test_expand_support.h"

using namespace expandtest;
using namespace gdstest;

namespace {

// Larger flattenings belong to the bench, not to every test run.
const double kMostShapes = 600000;

// A contour that meets itself has as many areas as ways to resolve it, and
// the oracle's reader resolves such contours its own way.
bool TouchesItself(const SGdsPolygon& polygon)
{
    std::vector<std::pair<double, double>> points;
    for (const SPoint& p : polygon)
        points.emplace_back(p.x(), p.y());
    if (points.size() > 1 && points.front() == points.back())
        points.pop_back();
    std::sort(points.begin(), points.end());
    return std::adjacent_find(points.begin(), points.end()) != points.end();
}

struct LayerSum
{
    size_t count = 0;
    double area = 0.0;
    bool selfTouching = false;
};

// The corpus stream's bytes as the test readers take them.
bool ReadCorpusStream(const std::string& name, StreamWriter& stream)
{
    QFile file(CorpusStream(name));
    if (!file.open(QIODevice::ReadOnly))
        return false;
    QByteArray bytes = file.readAll();
    stream.Raw(gdstest::Bytes(bytes.begin(), bytes.end()));
    return true;
}

class CorpusFlattening : public testing::TestWithParam<std::string>
{
};

} // namespace

// Placing through one matrix and rounding at once must give every real layout
// the very points that the turns of each placement and rounding afterwards give.
TEST_P(CorpusFlattening, RoundingWhilePlacingGivesTheSamePoints)
{
    QJsonObject oracle = CorpusOracle(GetParam());
    if (oracle.isEmpty())
        GTEST_SKIP() << "no corpus at " << CorpusDir().toStdString();
    const QString best = oracle.value("best").toString();
    if (oracle.value("gzip_compressed").toBool() || best.isEmpty())
        GTEST_SKIP() << "compressed stream or no shapes";
    QJsonObject totals = oracle.value("flat").toObject().value(best).toObject().value("totals").toObject();
    if (totals.value("boundary").toDouble() + totals.value("box").toDouble() + totals.value("path").toDouble() >
        kMostShapes)
        GTEST_SKIP() << "more shapes than a test run flattens";
    StreamWriter stream;
    ASSERT_TRUE(ReadCorpusStream(GetParam(), stream));
    Flattener turned, composed;
    ASSERT_TRUE(turned.Load(stream));
    ASSERT_TRUE(composed.Load(stream));
    testing::internal::CaptureStdout();
    const bool expanded = turned.Expand(best.toStdString()) && composed.Expand(best.toStdString(), 1.0, true);
    testing::internal::GetCapturedStdout();
    ASSERT_TRUE(expanded);
    ASSERT_EQ(turned.Count(), composed.Count());
    for (size_t i = 0; i < turned.Count(); ++i) {
        // As a project takes them: rounding what isn't rounded yet (paths are made from
        // placed points).
        turned.Polygons().at(i)->RoundPoints();
        composed.Polygons().at(i)->RoundPoints();
        const std::vector<SPoint> expected = turned.PointsOf(i), actual = composed.PointsOf(i);
        ASSERT_EQ(expected.size(), actual.size()) << "polygon " << i;
        for (size_t k = 0; k < expected.size(); ++k)
            ASSERT_TRUE(expected[k].exactlyEqual(actual[k]) &&
                        std::signbit(expected[k].x()) == std::signbit(actual[k].x()) &&
                        std::signbit(expected[k].y()) == std::signbit(actual[k].y()))
                << "polygon " << i << " point " << k << ": " << expected[k].x() << "," << expected[k].y() << " against "
                << actual[k].x() << "," << actual[k].y();
    }
}

TEST_P(CorpusFlattening, CountsAndAreasPerLayerMatchTheOracle)
{
    QJsonObject oracle = CorpusOracle(GetParam());
    if (oracle.isEmpty())
        GTEST_SKIP() << "no corpus at " << CorpusDir().toStdString();
    if (oracle.value("gzip_compressed").toBool())
        GTEST_SKIP() << "compressed stream";
    StreamWriter stream;
    ASSERT_TRUE(ReadCorpusStream(GetParam(), stream));
    Flattener f;
    ASSERT_TRUE(f.Load(stream));

    QJsonObject flat = oracle.value("flat").toObject();
    for (const QString& cell : flat.keys()) {
        QJsonObject layers = flat.value(cell).toObject().value("layers").toObject();
        QJsonObject totals = flat.value(cell).toObject().value("totals").toObject();
        if (totals.value("boundary").toDouble() + totals.value("box").toDouble() + totals.value("path").toDouble() >
            kMostShapes)
            continue;
        SCOPED_TRACE(cell.toStdString());
        testing::internal::CaptureStdout();
        bool expanded = f.Expand(cell.toStdString());
        testing::internal::GetCapturedStdout();
        ASSERT_TRUE(expanded);
        std::map<std::string, LayerSum> sums;
        for (size_t i = 0; i < f.Count(); ++i) {
            const SGdsPolygon& polygon = f.At(i);
            LayerSum& sum = sums[std::to_string(polygon.itsLayer) + "/" + std::to_string(polygon.itsDatatype)];
            ++sum.count;
            sum.area += Area(polygon);
            sum.selfTouching = sum.selfTouching || TouchesItself(polygon);
        }
        for (const QString& key : layers.keys()) {
            SCOPED_TRACE(key.toStdString());
            QJsonObject layer = layers.value(key).toObject();
            size_t shapes = size_t(layer.value("boundary").toDouble() + layer.value("box").toDouble());
            size_t paths = size_t(layer.value("path").toDouble());
            LayerSum ours = sums[key.toStdString()];
            sums.erase(key.toStdString());
            // A path whose points all fall together makes no polygon, and
            // the readers outline paths by rules of their own.
            EXPECT_GE(ours.count, shapes);
            EXPECT_LE(ours.count, shapes + paths);
            // Cells the oracle's reader refused have counts only.
            if (paths == 0 && !ours.selfTouching && layer.contains("area_boundary_box")) {
                double area = layer.value("area_boundary_box").toDouble();
                EXPECT_NEAR(ours.area, area, 1e-6 * area + 1e-9);
            }
        }
        for (const auto& extra : sums)
            EXPECT_EQ(extra.second.count, 0u) << "layer " << extra.first << " is not in the oracle";
    }
}

INSTANTIATE_TEST_SUITE_P(Corpus, CorpusFlattening, testing::ValuesIn(CorpusFiles()), CorpusTestName);

namespace {

// x' = a x + b y + e, y' = c x + d y + f.
struct Affine
{
    double a = 1, b = 0, c = 0, d = 1, e = 0, f = 0;

    SPoint operator()(const SPoint& p) const { return SPoint(a * p.x() + b * p.y() + e, c * p.x() + d * p.y() + f); }
    Affine operator*(const Affine& o) const
    {
        return Affine{a * o.a + b * o.c, a * o.b + b * o.d, c * o.a + d * o.c, c * o.b + d * o.d,
                      a * o.e + b * o.f + e, c * o.e + d * o.f + f};
    }
    static Affine Placing(const Placement& p, const SPoint& at)
    {
        double t = p.angle * 3.14159265358979323846 / 180.0, m = p.magnification;
        double flip = p.reflection ? -1.0 : 1.0;
        double c = std::cos(t), s = std::sin(t);
        return Affine{m * c, -m * s * flip, m * s, m * c * flip, at.x(), at.y()};
    }
};

struct Reference
{
    int child;
    Placement placement;
    long long x, y;
    int columns = 0; // 0 for an SREF
    int rows = 0;
    long long columnX = 0, columnY = 0, rowX = 0, rowY = 0;
};

struct Cell
{
    std::vector<std::pair<int, Points>> shapes; // layer and closed outline, database units
    std::vector<Reference> references;
};

const double kUnit = 0.001; // user units per database unit

// Cells place only cells after them, so the tree ends.
std::vector<Cell> RandomHierarchy(unsigned seed)
{
    std::mt19937 random(seed);
    auto pick = [&](int low, int high) { return std::uniform_int_distribution<int>(low, high)(random); };
    const double angles[] = {0, 90, 180, 270, 30, 45, 137.5};
    const double magnifications[] = {1, 1, 2, 0.5, 1.5};
    std::vector<Cell> cells(5);
    for (int i = 0; i < 5; ++i) {
        for (int k = pick(1, 3); k > 0; --k) {
            long long x = pick(-5000, 5000), y = pick(-5000, 5000), w = pick(100, 3000), h = pick(100, 3000);
            cells[size_t(i)].shapes.push_back(
                {pick(1, 3), {{x, y}, {x + w, y + pick(0, 500)}, {x + w, y + h}, {x, y + h}, {x, y}}});
        }
        for (int k = i < 4 ? pick(1, 2) : 0; k > 0; --k) {
            Reference r;
            r.child = pick(i + 1, 4);
            r.placement.angle = angles[pick(0, 6)];
            r.placement.magnification = magnifications[pick(0, 4)];
            r.placement.reflection = pick(0, 1) == 1;
            r.x = pick(-20000, 20000);
            r.y = pick(-20000, 20000);
            if (pick(0, 1)) {
                // A lattice that may be skewed.
                r.columns = pick(1, 3);
                r.rows = pick(1, 3);
                r.columnX = r.x + pick(5000, 12000) * r.columns;
                r.columnY = r.y + pick(-2000, 2000) * r.columns;
                r.rowX = r.x + pick(-2000, 2000) * r.rows;
                r.rowY = r.y + pick(5000, 12000) * r.rows;
            }
            cells[size_t(i)].references.push_back(r);
        }
    }
    return cells;
}

StreamWriter Write(const std::vector<Cell>& cells)
{
    StreamWriter s;
    s.Header().Bgnlib().Libname().Units(kUnit, 1e-9);
    for (size_t i = 0; i < cells.size(); ++i) {
        s.Bgnstr("S" + std::to_string(i));
        for (const auto& shape : cells[i].shapes)
            s.Boundary(shape.first, 0, shape.second);
        for (const Reference& r : cells[i].references) {
            std::string name = "S" + std::to_string(r.child);
            if (r.columns == 0)
                Sref(s, name, r.x, r.y, r.placement);
            else
                Aref(s, name, r.columns, r.rows, {{r.x, r.y}, {r.columnX, r.columnY}, {r.rowX, r.rowY}}, r.placement);
        }
        s.Endstr();
    }
    return s.Endlib();
}

// The flat outlines in the order of the walk: file order, columns outside rows.
void Flatten(const std::vector<Cell>& cells, int index, const Affine& placed,
             std::vector<std::pair<int, std::vector<SPoint>>>& out)
{
    for (const auto& shape : cells[size_t(index)].shapes) {
        std::vector<SPoint> points;
        for (const auto& p : shape.second)
            points.push_back(placed(SPoint(p.first * kUnit, p.second * kUnit)));
        out.push_back({shape.first, points});
    }
    for (const Reference& r : cells[size_t(index)].references) {
        SPoint at(r.x * kUnit, r.y * kUnit);
        if (r.columns == 0) {
            Flatten(cells, r.child, placed * Affine::Placing(r.placement, at), out);
            continue;
        }
        SPoint columnStep = (SPoint(r.columnX * kUnit, r.columnY * kUnit) - at) / r.columns;
        SPoint rowStep = (SPoint(r.rowX * kUnit, r.rowY * kUnit) - at) / r.rows;
        for (int i = 0; i < r.columns; ++i)
            for (int j = 0; j < r.rows; ++j)
                Flatten(cells, r.child, placed * Affine::Placing(r.placement, at + columnStep * i + rowStep * j), out);
    }
}

class GeneratedHierarchy : public testing::TestWithParam<unsigned>
{
};

} // namespace

TEST_P(GeneratedHierarchy, EveryFlatPointAndLayerAreaMatchThePlacementMatrices)
{
    std::vector<Cell> cells = RandomHierarchy(GetParam());
    std::vector<std::pair<int, std::vector<SPoint>>> expected;
    Flatten(cells, 0, Affine(), expected);
    Flattener f;
    ASSERT_TRUE(f.Load(Write(cells)));
    ASSERT_TRUE(f.Expand("S0"));
    ASSERT_EQ(f.Count(), expected.size());
    std::map<int, double> area, expectedArea;
    for (size_t k = 0; k < expected.size(); ++k) {
        const SGdsPolygon& polygon = f.At(k);
        ASSERT_EQ(polygon.itsLayer, expected[k].first);
        ASSERT_EQ(size_t(polygon.GetPointCount()), expected[k].second.size());
        double twice = 0.0;
        for (size_t n = 0; n < expected[k].second.size(); ++n) {
            const SPoint& p = expected[k].second[n];
            const SPoint& q = expected[k].second[(n + 1) % expected[k].second.size()];
            twice += p.x() * q.y() - q.x() * p.y();
            EXPECT_NEAR(polygon.GetPoint(int(n)).x(), p.x(), 1e-7) << "polygon " << k;
            EXPECT_NEAR(polygon.GetPoint(int(n)).y(), p.y(), 1e-7) << "polygon " << k;
        }
        area[polygon.itsLayer] += Area(polygon);
        expectedArea[polygon.itsLayer] += std::fabs(twice) / 2;
    }
    for (const auto& layer : expectedArea)
        EXPECT_NEAR(area[layer.first], layer.second, 1e-9 * layer.second) << "layer " << layer.first;
}

INSTANTIATE_TEST_SUITE_P(Seeds, GeneratedHierarchy, testing::Range(1u, 41u));
