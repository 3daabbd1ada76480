// Real layouts translated end to end: the project of each corpus stream holds, level by
// level, what an independent reader counts on the stream layer of that number.

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <map>
#include <string>
#include <vector>

#include "Corpus.h"
#include "GdsRun.h"
#include "SCircuit.h"
#include "SGeometryBlock.h"
#include "SMetalPolygon.h"
#include "SProject.h"

using namespace gdstest;

namespace {

// The one larger corpus layout (8.5 million shapes from a 0.5 MB stream, a 1.3 GB project)
// takes over two minutes and 4 GB here; it passes, but every run shouldn't pay for it.
const double kMostShapes = 1e6;

struct LevelSum
{
    size_t count = 0;
    double area = 0.0;
    double perimeter = 0.0;
    bool selfTouching = false;
};

double Perimeter(const std::vector<SPoint>& points)
{
    double length = 0.0;
    for (size_t i = 0; i < points.size(); ++i) {
        const SPoint d = points[(i + 1) % points.size()] - points[i];
        length += std::hypot(d.x(), d.y());
    }
    return length;
}

// A contour through one point twice has as many areas as ways to resolve it.
bool TouchesItself(const std::vector<SPoint>& points)
{
    std::vector<std::pair<double, double>> sorted;
    for (const SPoint& p : points)
        sorted.emplace_back(p.x(), p.y());
    std::sort(sorted.begin(), sorted.end());
    return std::adjacent_find(sorted.begin(), sorted.end()) != sorted.end();
}

class CorpusTranslation : public testing::TestWithParam<std::string>
{
};

} // namespace

// Paths are compared by count only: their outlines follow this program's path rules,
// which differ from KLayout's (round ends of pathtype 1, and paths of zero width or of one
// point), so their areas can't be summed against the oracle's.
TEST_P(CorpusTranslation, PolygonsPerLevelMatchTheOracle)
{
    const QJsonObject oracle = CorpusOracle(GetParam());
    if (oracle.isEmpty())
        GTEST_SKIP() << "no corpus at " << CorpusDir().toStdString();
    if (oracle.value("gzip_compressed").toBool())
        GTEST_SKIP() << "compressed stream";
    const QString best = oracle.value("best").toString();
    if (best.isEmpty())
        GTEST_SKIP() << "no structure holds a shape";
    const QJsonObject flat = oracle.value("flat").toObject().value(best).toObject();
    const QJsonObject totals = flat.value("totals").toObject();
    if (totals.value("boundary").toDouble() + totals.value("box").toDouble() + totals.value("path").toDouble() >
        kMostShapes)
        GTEST_SKIP() << "more than a million shapes";

    GdsRun run;
    ASSERT_TRUE(QFile::copy(CorpusStream(GetParam()), run.Dir() + "/chip.gds"));
    // A fresh layer file maps stream layer n to level n.
    RunResult result = run.Run({"-W", "-p", best, "chip.gds"});
    ASSERT_EQ(result.status, 0) << result.out;

    SProject project;
    project.SetProjectType(SProject::SecondSolverProject);
    project.SetTemplateRead(true);
    project.SetFileName(SString(run.Path("chip.vel").c_str()));
    ASSERT_TRUE(project.Read(0)) << project.GetErrors().ErrorText().data();
    const SCircuit* circuit = project.GetGeometryBlock()->GetCircuit();
    ASSERT_NE(circuit, nullptr);
    std::vector<SEnclosure*> shapes;
    circuit->CollectPolygons(shapes);
    std::map<int, LevelSum> ours;
    for (SEnclosure* shape : shapes) {
        const SMetalPolygon* metal = static_cast<const SMetalPolygon*>(shape);
        LevelSum& sum = ours[metal->GetLevelIndex()];
        ++sum.count;
        sum.area += std::fabs(metal->Area());
        sum.perimeter += Perimeter(metal->GetVertices());
        sum.selfTouching = sum.selfTouching || TouchesItself(metal->GetVertices());
    }

    struct Expected
    {
        size_t shapes = 0;
        size_t paths = 0;
        double area = 0.0;
        bool areaKnown = true;
    };
    std::map<int, Expected> expected;
    const QJsonObject layers = flat.value("layers").toObject();
    for (const QString& key : layers.keys()) {
        const QJsonObject layer = layers.value(key).toObject();
        Expected& e = expected[key.section('/', 0, 0).toInt()];
        e.shapes += size_t(layer.value("boundary").toDouble() + layer.value("box").toDouble());
        e.paths += size_t(layer.value("path").toDouble());
        e.area += layer.value("area_boundary_box").toDouble();
        e.areaKnown = e.areaKnown && layer.contains("area_boundary_box");
    }
    // Every coordinate keeps six significant digits, so a vertex moves by up to half a unit
    // of the sixth digit of the largest coordinate, and an edge sideways by that times
    // the square root of two: an area change of up to that times the perimeter.
    double largest = 0.0;
    for (const QJsonValue v : flat.value("bbox").toArray())
        largest = std::max(largest, std::fabs(v.toDouble()));
    const double step = largest > 0 ? 0.5 * std::pow(10.0, std::floor(std::log10(largest)) - 5) : 0.0;
    for (const auto& entry : expected) {
        SCOPED_TRACE("level " + std::to_string(entry.first));
        const Expected& e = entry.second;
        const LevelSum& sum = ours[entry.first];
        // A path whose points all fall together makes no polygon.
        EXPECT_GE(sum.count, e.shapes);
        EXPECT_LE(sum.count, e.shapes + e.paths);
        if (e.paths == 0 && e.areaKnown && !sum.selfTouching) {
            const double rounding = sum.perimeter * step * std::sqrt(2.0);
            EXPECT_NEAR(sum.area, e.area, std::max(1e-5 * e.area, rounding) + 1e-9);
        }
        ours.erase(entry.first);
    }
    for (const auto& extra : ours)
        EXPECT_EQ(extra.second.count, 0u) << "level " << extra.first << " has no stream layer in the oracle";
}

INSTANTIATE_TEST_SUITE_P(Corpus, CorpusTranslation, testing::ValuesIn(CorpusFiles()), CorpusTestName);
