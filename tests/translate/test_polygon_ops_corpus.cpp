// -H on real streams: for each level and technology layer, the polygons that come out cover
// exactly the area that the flattened polygons going in covered together, and none of them
// overlaps another. The areas are worked out by Boost.Polygon on integers, independently of
// the clipper that the merge uses.

#include <gtest/gtest.h>

#include <boost/polygon/polygon.hpp>

#include <QFile>
#include <QJsonObject>

#include <cmath>
#include <map>
#include <string>
#include <vector>

#include "Corpus.h"
#include "GdsRun.h"
#include "SCircuit.h"
#include "SGeoClassID.h"
#include "SGeometryBlock.h"
#include "SMetalPolygon.h"
#include "SProject.h"
#include "STechLayer.h"

using gdstest::CorpusFiles;
using gdstest::CorpusOracle;
using gdstest::CorpusStream;
using gdstest::CorpusTestName;
using gdstest::GdsRun;
using gdstest::RunResult;

namespace {

namespace bp = boost::polygon;
typedef bp::polygon_data<int> SIntPolygon;
typedef bp::polygon_set_data<int> SIntPolygonSet;

// The streams up to this many flat shapes. The sanitizer build, unoptimised, checks the merge's
// memory on the smaller ones; the release build checks the areas of all.
#if defined(__SANITIZE_ADDRESS__)
const double kMostShapes = 1e5;
#else
const double kMostShapes = 1e6;
#endif

struct SGroup
{
    std::vector<std::vector<SPoint>> polygons;
    double perimeter = 0.0;
};

// Polygons by level and technology layer, metal only: vias are never merged.
std::map<std::string, SGroup> Groups(const std::string& path, bool& read)
{
    std::map<std::string, SGroup> groups;
    SProject project;
    project.SetProjectType(SProject::SecondSolverProject);
    project.SetTemplateRead(true);
    project.SetFileName(SString(path.c_str()));
    read = project.Read(0);
    SCircuit* circuit = read ? project.GetGeometryBlock()->GetCircuit() : nullptr;
    if (!circuit)
        return groups;
    std::vector<SEnclosure*> shapes;
    circuit->CollectPolygons(shapes, SCircuit::MetalPolygons);
    for (SEnclosure* shape : shapes) {
        const SMetalPolygon* polygon = static_cast<const SMetalPolygon*>(shape);
        const STechLayer* layer = polygon->GetTechLayer();
        SGroup& group = groups[std::to_string(polygon->GetLevelIndex()) + " " +
                               (layer ? layer->GetName().data() : std::string("-"))];
        group.polygons.push_back(polygon->GetVertices());
        const auto& points = group.polygons.back();
        for (size_t i = 0; i < points.size(); ++i) {
            const SPoint& a = points[i];
            const SPoint& b = points[(i + 1) % points.size()];
            group.perimeter += std::hypot(b.x() - a.x(), b.y() - a.y());
        }
    }
    return groups;
}

SIntPolygon ToInt(const std::vector<SPoint>& points, double scale)
{
    std::vector<bp::point_data<int>> corners;
    corners.reserve(points.size());
    for (const SPoint& p : points)
        corners.emplace_back(int(std::lround(p.x() * scale)), int(std::lround(p.y() * scale)));
    SIntPolygon polygon;
    polygon.set(corners.begin(), corners.end());
    return polygon;
}

// In square units of the scaled grid.
double UnionArea(const std::vector<std::vector<SPoint>>& polygons, double scale)
{
    SIntPolygonSet set;
    for (const auto& points : polygons)
        if (points.size() >= 3)
            set.insert(ToInt(points, scale));
    return double(bp::area(set));
}

double Extent(const std::map<std::string, SGroup>& groups)
{
    double extent = 1.0;
    for (const auto& group : groups)
        for (const auto& points : group.second.polygons)
            for (const SPoint& p : points)
                extent = std::max({extent, std::fabs(p.x()), std::fabs(p.y())});
    return extent;
}

class MergedCorpus : public testing::TestWithParam<std::string>
{
};

} // namespace

TEST_P(MergedCorpus, EachLayerKeepsItsAreaAndNothingOverlaps)
{
    const QJsonObject oracle = CorpusOracle(GetParam());
    if (oracle.isEmpty())
        GTEST_SKIP() << "no corpus";
    if (oracle.value("gzip_compressed").toBool())
        GTEST_SKIP() << "compressed stream";
    const QString best = oracle.value("best").toString();
    if (best.isEmpty())
        GTEST_SKIP() << "no structure holds a shape";
    const QJsonObject totals = oracle.value("flat").toObject().value(best).toObject().value("totals").toObject();
    if (totals.value("boundary").toDouble() + totals.value("box").toDouble() + totals.value("path").toDouble() >
        kMostShapes)
        GTEST_SKIP() << "more shapes than this build checks";

    GdsRun run;
    const QString stream = CorpusStream(GetParam());
    const QStringList common = {"-p", best, "-l", "chip.lay"};
    ASSERT_EQ(run.Run(common + QStringList{"-L", stream}).status, 0);
    RunResult plain = run.Run(common + QStringList{"-o", "plain.vel", stream}, QString(), 600000);
    ASSERT_EQ(plain.status, 0) << plain.out << plain.err;
    RunResult merged = run.Run(common + QStringList{"-H", "-o", "merged.vel", stream}, QString(), 600000);
    ASSERT_TRUE(merged.finished) << "the merge crashed or hung";
    ASSERT_EQ(merged.status, 0) << merged.out << merged.err;

    bool read = false;
    const std::map<std::string, SGroup> before = Groups(run.Path("plain.vel"), read);
    ASSERT_TRUE(read);
    const std::map<std::string, SGroup> after = Groups(run.Path("merged.vel"), read);
    ASSERT_TRUE(read);
    // Integers of at most about 1e9: a grid as fine as the coordinates allow, 0.1 nm at most.
    const double scale = std::min(1e4, 1e9 / Extent(before));
    for (const auto& entry : before) {
        SCOPED_TRACE(entry.first);
        auto found = after.find(entry.first);
        ASSERT_NE(found, after.end()) << "a layer lost all its polygons";
        const double input = UnionArea(entry.second.polygons, scale);
        const double output = UnionArea(found->second.polygons, scale);
        double sum = 0.0;
        for (const auto& points : found->second.polygons)
            sum += UnionArea({points}, scale);
        // Each point is rounded to the grid: an outline may gain or lose a strip of half a
        // grid step along it, on top of the relative bound of the flattening's corpus test.
        const double bound = 1e-6 * input + 2.0 * scale * (entry.second.perimeter + found->second.perimeter) + 1.0;
        EXPECT_NEAR(output, input, bound) << "merged area against the union of the flat polygons";
        EXPECT_NEAR(sum, output, bound) << "polygons of one layer overlap";
    }
    EXPECT_EQ(after.size(), before.size());
}

INSTANTIATE_TEST_SUITE_P(Corpus, MergedCorpus, testing::ValuesIn(CorpusFiles()), CorpusTestName);
