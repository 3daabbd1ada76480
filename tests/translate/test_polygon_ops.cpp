// -H on a project: which polygons merge, which are cut back, which stay, and that the area
// of what comes out is the area that went in, checked cell by cell without the clipper.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

#include "SCircuit.h"
#include "SCircuitPolygonOps.h"
#include "SDimension.h"
#include "SGPCWrapper.h"
#include "SGeoClassID.h"
#include "SLevel.h"
#include "SMetalPolygon.h"
#include "SMetalType.h"
#include "SPort.h"
#include "STechLayer.h"
#include "SViaPolygon.h"
#include "SXtranProject.h"

namespace {

struct SBox
{
    double x1, y1, x2, y2;
};

std::vector<SPoint> Corners(const SBox& b)
{
    return {SPoint(b.x1, b.y1), SPoint(b.x2, b.y1), SPoint(b.x2, b.y2), SPoint(b.x1, b.y2)};
}

double Area(const std::vector<SPoint>& points)
{
    double sum = 0.0;
    for (size_t i = 0; i < points.size(); ++i) {
        const SPoint& a = points[i];
        const SPoint& b = points[(i + 1) % points.size()];
        sum += a.x() * b.y() - a.y() * b.x();
    }
    return std::fabs(sum) / 2.0;
}

// Even-odd: a slit's two edges cancel.
bool Inside(const std::vector<SPoint>& points, const SPoint& q)
{
    bool in = false;
    for (size_t i = 0, j = points.size() - 1; i < points.size(); j = i++) {
        const SPoint& a = points[i];
        const SPoint& b = points[j];
        if ((a.y() > q.y()) != (b.y() > q.y()) && q.x() < (b.x() - a.x()) * (q.y() - a.y()) / (b.y() - a.y()) + a.x())
            in = !in;
    }
    return in;
}

class Merge : public testing::Test
{
protected:
    void SetUp() override
    {
        project.InitNew();
        project.SetCells(256, 256);
        gold = project.GetMetalType("Gold", false);
        gold->SetModel(SMetalTypeData::Normal);
        gold->itsCondIsInf = false;
        gold->itsConductivity.SetValue(4.1e7);
        gold->itsThickness.SetValue(1.0);
        resistor = project.GetMetalType("Resistor", false);
        resistor->SetModel(SMetalTypeData::Resistor);
        resistor->itsRdc.SetValue(50);
    }

    SMetalPolygon* Metal(const SBox& b, SMetalType* type, STechLayer* layer = nullptr)
    {
        std::vector<SPoint> points = Corners(b);
        points.push_back(points.front());
        return project.AddMetalPolygon(points.data(), int(points.size()), 0, type, 0, layer);
    }

    std::vector<SMetalPolygon*> Polygons(int kind = SCircuit::MetalPolygons) const
    {
        std::vector<SEnclosure*> shapes;
        project.GetCircuit()->CollectPolygons(shapes, kind);
        std::vector<SMetalPolygon*> list;
        for (SEnclosure* shape : shapes)
            list.push_back(static_cast<SMetalPolygon*>(shape));
        return list;
    }

    std::vector<SMetalPolygon*> OfType(const SMetalType* type) const
    {
        std::vector<SMetalPolygon*> list;
        for (SMetalPolygon* p : Polygons())
            if (p->GetType() == type)
                list.push_back(p);
        return list;
    }

    void MergeAll()
    {
        SCircuitPolygonOps operations(&project);
        EXPECT_TRUE(operations.MergeAll());
    }

    SXtranProject project;
    SMetalType* gold = nullptr;
    SMetalType* resistor = nullptr;
};

} // namespace

TEST_F(Merge, ASharedStretchOfEdgeMergesACornerDoesNot)
{
    SMetalPolygon* a = Metal({0, 0, 10, 10}, gold);
    Metal({10, 2, 20, 8}, gold);
    SMetalPolygon* c = Metal({20, 8, 30, 18}, gold);
    const long long idC = c->GetId();
    const long long highest = project.GetCircuit()->GetHighestPolygonId();
    (void)a;
    MergeAll();
    const std::vector<SMetalPolygon*> after = Polygons();
    ASSERT_EQ(after.size(), 2u);
    // The corner-touching square stays as it was, with its id; the merged one is new.
    int kept = 0;
    for (SMetalPolygon* p : after) {
        if (p->GetId() == idC) {
            ++kept;
            EXPECT_DOUBLE_EQ(Area(p->GetVertices()), 100);
        } else {
            EXPECT_GT(p->GetId(), highest);
            EXPECT_DOUBLE_EQ(Area(p->GetVertices()), 160);
        }
    }
    EXPECT_EQ(kept, 1);
}

TEST_F(Merge, TheLowerResistanceKeepsTheOverlapAndTheOtherIsCutIntoPieces)
{
    SMetalPolygon* g = Metal({0, 0, 10, 10}, gold);
    const long long idG = g->GetId();
    Metal({-5, 3, 15, 7}, resistor);
    Metal({2, 2, 4, 4}, resistor);  // wholly covered: vanishes
    MergeAll();
    const std::vector<SMetalPolygon*> golds = OfType(gold);
    ASSERT_EQ(golds.size(), 1u);
    EXPECT_EQ(golds[0]->GetId(), idG);
    EXPECT_DOUBLE_EQ(Area(golds[0]->GetVertices()), 100);
    std::vector<SMetalPolygon*> pieces = OfType(resistor);
    ASSERT_EQ(pieces.size(), 2u);
    for (SMetalPolygon* p : pieces)
        EXPECT_DOUBLE_EQ(Area(p->GetVertices()), 20);
}

TEST_F(Merge, DifferentTechnologyLayersAndViasStayApart)
{
    SCircuit& circuit = *project.GetCircuit();
    int counter = 0;
    STechLayer* m1 = STechLayer::Create(circuit, STechLayer::Metal, "M1", 0, 1, counter, 1, false);
    STechLayer* m2 = STechLayer::Create(circuit, STechLayer::Metal, "M2", 0, 1, counter, 1, false);
    Metal({0, 0, 10, 10}, gold, m1);
    Metal({5, 5, 15, 15}, resistor, m2);
    const SPoint via[5] = {SPoint(1, 1), SPoint(9, 1), SPoint(9, 9), SPoint(1, 9), SPoint(1, 1)};
    project.AddViaPolygon(via, 5, 0, 1, 0, nullptr, 0, nullptr);
    project.AddViaPolygon(via, 5, 0, 1, 0, nullptr, 0, nullptr);
    MergeAll();
    EXPECT_EQ(OfType(gold).size(), 1u);
    EXPECT_EQ(OfType(resistor).size(), 1u);
    EXPECT_DOUBLE_EQ(Area(OfType(resistor)[0]->GetVertices()), 100);
    std::vector<SEnclosure*> vias;
    circuit.CollectPolygons(vias, SCircuit::ViaPolygons);
    EXPECT_EQ(vias.size(), 2u);
}

TEST_F(Merge, AFrameOfFourBarsBecomesOneOutlineWithASlit)
{
    Metal({0, 0, 10, 2}, gold);
    Metal({0, 8, 10, 10}, gold);
    Metal({0, 2, 2, 8}, gold);
    Metal({8, 2, 10, 8}, gold);
    MergeAll();
    const std::vector<SMetalPolygon*> after = Polygons();
    ASSERT_EQ(after.size(), 1u);
    const std::vector<SPoint>& points = after[0]->GetVertices();
    // Outside, the slit's point, the hole round, its first vertex again, the point again.
    ASSERT_EQ(points.size(), 4u + 4u + 3u);
    EXPECT_DOUBLE_EQ(Area(points), 64);
    int repeated = 0;
    for (size_t i = 0; i < points.size(); ++i)
        for (size_t j = i + 1; j < points.size(); ++j)
            repeated += points[i].exactlyEqual(points[j]);
    EXPECT_EQ(repeated, 2);
    EXPECT_FALSE(Inside(points, SPoint(5, 5)));
    EXPECT_TRUE(Inside(points, SPoint(1, 5)));
}

TEST_F(Merge, APortedPolygonIsNeverMergedAndALonePolygonStays)
{
    SMetalPolygon* ported = Metal({0, 0, 10, 10}, gold);
    new SPort(ported, 0);
    Metal({5, 0, 15, 10}, gold);
    SMetalPolygon* alone = Metal({100, 100, 110, 110}, gold);
    const long long ids[2] = {ported->GetId(), alone->GetId()};
    MergeAll();
    const std::vector<SMetalPolygon*> after = Polygons();
    ASSERT_EQ(after.size(), 3u);
    for (long long id : ids)
        EXPECT_EQ(std::count_if(after.begin(), after.end(), [id](SMetalPolygon* p) { return p->GetId() == id; }), 1);
}

TEST_F(Merge, APolygonThatADimensionNamesKeepsItsIdentity)
{
    SMetalPolygon* named = Metal({0, 0, 10, 10}, gold);
    Metal({5, 0, 15, 10}, gold);
    // Inside a polygon of lower resistance it would otherwise vanish.
    SMetalPolygon* inner = Metal({20, 2, 22, 4}, resistor);
    Metal({18, 0, 30, 10}, gold);
    SDimension* dimension = new SDimension;
    dimension->Reference(0).SetPolygonId(named->GetId());
    dimension->Reference(1).SetPolygonId(inner->GetId());
    project.GetCircuit()->AddObject(dimension);
    const long long ids[2] = {named->GetId(), inner->GetId()};
    MergeAll();
    const std::vector<SMetalPolygon*> after = Polygons();
    for (long long id : ids)
        EXPECT_EQ(std::count_if(after.begin(), after.end(), [id](SMetalPolygon* p) { return p->GetId() == id; }), 1);
    EXPECT_EQ(after.size(), 4u);
}

TEST_F(Merge, DegeneratePolygonsStayAsTheyAre)
{
    const SPoint line[3] = {SPoint(0, 0), SPoint(10, 0), SPoint(0, 0)};
    project.AddMetalPolygon(line, 3, 0, gold, 0, nullptr);
    const SPoint flat[5] = {SPoint(0, 0), SPoint(5, 0), SPoint(10, 0), SPoint(5, 0), SPoint(0, 0)};
    project.AddMetalPolygon(flat, 5, 0, gold, 0, nullptr);
    const SPoint bow[5] = {SPoint(0, 0), SPoint(10, 10), SPoint(10, 0), SPoint(0, 10), SPoint(0, 0)};
    project.AddMetalPolygon(bow, 5, 0, gold, 0, nullptr);
    std::vector<std::pair<long long, std::vector<SPoint>>> before;
    for (SMetalPolygon* p : Polygons())
        before.emplace_back(p->GetId(), p->GetVertices());
    MergeAll();
    std::vector<std::pair<long long, std::vector<SPoint>>> after;
    for (SMetalPolygon* p : Polygons())
        after.emplace_back(p->GetId(), p->GetVertices());
    EXPECT_EQ(after, before);
}

// Random rectangles of two metals: every cell of the grid that any input covered is covered by
// exactly one polygon afterwards, of the better metal where gold covered it, and no other cell.
TEST_F(Merge, AreaIsKeptAndNothingOverlapsCellByCell)
{
    std::mt19937 random(7);
    std::uniform_int_distribution<int> corner(0, 28), size(1, 8);
    std::vector<std::pair<SBox, bool>> input;
    for (int i = 0; i < 60; ++i) {
        const double x = corner(random), y = corner(random);
        const SBox box{x, y, x + size(random), y + size(random)};
        const bool isGold = i % 3 == 0;
        input.emplace_back(box, isGold);
        Metal(box, isGold ? gold : resistor);
    }
    MergeAll();
    const std::vector<SMetalPolygon*> after = Polygons();
    for (int cx = -1; cx < 40; ++cx)
        for (int cy = -1; cy < 40; ++cy) {
            const SPoint centre(cx + 0.5, cy + 0.5);
            bool covered = false, goldCovered = false;
            for (const auto& entry : input) {
                const SBox& b = entry.first;
                if (centre.x() > b.x1 && centre.x() < b.x2 && centre.y() > b.y1 && centre.y() < b.y2) {
                    covered = true;
                    goldCovered = goldCovered || entry.second;
                }
            }
            int holders = 0;
            const SMetalPolygon* holder = nullptr;
            for (const SMetalPolygon* p : after)
                if (Inside(p->GetVertices(), centre)) {
                    ++holders;
                    holder = p;
                }
            ASSERT_EQ(holders, covered ? 1 : 0) << "cell " << cx << "," << cy;
            if (holder) {
                EXPECT_EQ(holder->GetType(), goldCovered ? gold : resistor) << "cell " << cx << "," << cy;
            }
        }
}

TEST(GPCWrapper, RelationsAndProjection)
{
    SGPCWrapper a(Corners({0, 0, 10, 10}), nullptr, 1e-6);
    SGPCWrapper overlap(Corners({5, 5, 15, 15}), nullptr, 1e-6);
    SGPCWrapper touch(Corners({10, 2, 20, 8}), nullptr, 1e-6);
    SGPCWrapper corner(Corners({10, 10, 20, 20}), nullptr, 1e-6);
    SGPCWrapper far(Corners({50, 50, 60, 60}), nullptr, 1e-6);
    EXPECT_EQ(a.Relation(overlap), SGPCWrapper::Overlap);
    EXPECT_EQ(a.Relation(touch), SGPCWrapper::Touch);
    EXPECT_EQ(a.Relation(corner), SGPCWrapper::Apart);
    EXPECT_EQ(a.Relation(far), SGPCWrapper::Apart);
    EXPECT_FALSE(a.BoxesNear(far));

    SGPCWrapper sum;
    ASSERT_EQ(a.Clip(SGPCWrapper::Union, overlap, sum), SGPCWrapper::ClipDone);
    EXPECT_DOUBLE_EQ(sum.Area(), 175);
    SGPCWrapper rest;
    ASSERT_EQ(overlap.Clip(SGPCWrapper::Difference, a, rest), SGPCWrapper::ClipDone);
    EXPECT_DOUBLE_EQ(rest.Area(), 75);
    // A point that the clipper can't take fails the clip, which then changes nothing.
    SGPCWrapper bad({SPoint(0, 0), SPoint(NAN, 1), SPoint(1, 1)}, nullptr, 1e-6);
    EXPECT_EQ(a.Clip(SGPCWrapper::Union, bad, rest), SGPCWrapper::ClipFailed);

    SPoint out;
    EXPECT_DOUBLE_EQ(SGPCWrapper::ProjectPoint(SPoint(0, 0), SPoint(10, 0), SPoint(4, 3), out, 1e-9), 3);
    EXPECT_TRUE(out.exactlyEqual(SPoint(4, 0)));
    EXPECT_DOUBLE_EQ(SGPCWrapper::ProjectPoint(SPoint(0, 0), SPoint(0, 10), SPoint(3, 4), out, 1e-9), 3);
    EXPECT_DOUBLE_EQ(SGPCWrapper::ProjectPoint(SPoint(0, 0), SPoint(1, 1), SPoint(5, 5), out, 1e-9), -1);
    EXPECT_TRUE(IsClockwise({SPoint(0, 0), SPoint(1, 0), SPoint(1, 1)}));
}
