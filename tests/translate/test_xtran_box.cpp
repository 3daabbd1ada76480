// The box a translation sizes round its polygons, where it puts them, and the ports it
// attaches to the walls, through the project's own operations.

#include <gtest/gtest.h>

#include <vector>

#include "SCircuit.h"
#include "SLevel.h"
#include "SMetalPolygon.h"
#include "SPort.h"
#include "SRefPlane.h"
#include "SViaPolygon.h"
#include "SXtranProject.h"

namespace {

// A new project of 256 by 256 cells, as a translation makes one.
class NewProject : public testing::Test
{
protected:
    void SetUp() override
    {
        project.InitNew();
        project.SetCells(256, 256);
    }

    SMetalPolygon* Rect(double x1, double y1, double x2, double y2, int level = 0)
    {
        const SPoint points[5] = {SPoint(x1, y1), SPoint(x2, y1), SPoint(x2, y2), SPoint(x1, y2), SPoint(x1, y1)};
        return project.AddMetalPolygon(points, 5, level, nullptr, 0, nullptr);
    }

    SSize Box() const { return project.GetCircuit()->GetBoxSize(); }
    int CellsX() const { return project.GetCircuit()->GetNumCellsX(); }

    SXtranProject project;
};

TEST_F(NewProject, NormalSizeGivesRoundCellsAndAQuarterOnEachSide)
{
    Rect(0, 0, 100, 40);
    EXPECT_EQ(project.SizeBox(true), 0);
    // 150 over 256 cells is 0.586, rounded to 0.6.
    EXPECT_NEAR(Box().width(), 153.6, 1e-9);
    EXPECT_NEAR(Box().height(), 61.44, 1e-9);
    EXPECT_EQ(CellsX(), 256);
    const SRect placed = project.GetBoundingBox(true);
    EXPECT_NEAR(placed.x1(), 25.0, 1e-9);
    EXPECT_NEAR(placed.y1(), 10.0, 1e-9);
    EXPECT_EQ(project.GetDelta(), SPoint(25, 10));
}

TEST_F(NewProject, MinSizeAndMinTranslationTouchTheCircuitOnAllSides)
{
    Rect(-30, 12.5, 70, 52.5);
    Rect(0, 0, 10, 10);
    project.SetSizeMode("min");
    project.SetTranslationMode("min");
    project.SizeBox(true);
    EXPECT_EQ(project.GetBoundingBox(true), SRect(0, 0, Box().width(), Box().height()));
    EXPECT_DOUBLE_EQ(Box().width(), 100.0);
    EXPECT_DOUBLE_EQ(Box().height(), 52.5);
    // The far side at 70 is more than half the extent: 70, halved above 50.
    EXPECT_EQ(CellsX(), 35);
}

TEST_F(NewProject, MarginsWidenTheBoxAndShiftTheCircuit)
{
    Rect(0, 0, 200, 100);
    project.SetSizeMode("min");
    project.SetTranslationMode("min");
    SMargin margin;
    margin.setValues(10, 10, 5, 5);
    project.SetMargin(margin);
    project.SizeBox(true);
    EXPECT_DOUBLE_EQ(Box().width(), 220.0);
    EXPECT_DOUBLE_EQ(Box().height(), 110.0);
    // Left and bottom margins move the circuit; the flip later puts the bottom one below.
    EXPECT_EQ(project.GetBoundingBox(true).p1(), SPoint(10, 5));

    // Per cent of the circuit's extent.
    margin.setValues(10, 0, 0, 0, SMargin::Percent);
    project.SetMargin(margin);
    project.SizeBox(true);
    EXPECT_DOUBLE_EQ(Box().width(), 220.0);
    EXPECT_DOUBLE_EQ(Box().height(), 100.0);
    EXPECT_DOUBLE_EQ(project.GetBoundingBox(true).x1(), 20.0);
}

TEST_F(NewProject, CellSizeRoundsOnlyBoxesOfMoreThanFiveCells)
{
    Rect(0, 0, 100, 100);
    project.itsCellSizeSet = true;
    project.itsCellSize = SSize(1, 1);
    project.SizeBox(true);
    EXPECT_DOUBLE_EQ(Box().width(), 154.0);
    EXPECT_EQ(CellsX(), 154);

    SXtranProject small;
    small.InitNew();
    const SPoint points[4] = {SPoint(0, 0), SPoint(3, 0), SPoint(3, 3), SPoint(0, 3)};
    small.AddMetalPolygon(points, 4, 0, nullptr, 0, nullptr);
    small.SetSizeMode("custom");
    small.SetCustomSize(4.4, 4.4);
    small.itsCellSizeSet = true;
    small.itsCellSize = SSize(1, 1);
    small.SizeBox(true);
    EXPECT_DOUBLE_EQ(small.GetCircuit()->GetBoxSize().width(), 4.4);
    EXPECT_EQ(small.GetCircuit()->GetNumCellsX(), 44);
}

TEST_F(NewProject, OtherSizeModes)
{
    Rect(10, 10, 60, 30);
    project.SetSizeMode("test");
    project.SetTranslationMode("none");
    project.SizeBox(true);
    EXPECT_DOUBLE_EQ(Box().width(), 100.0);
    EXPECT_EQ(CellsX(), 100);
    EXPECT_EQ(project.GetBoundingBox(true).p1(), SPoint(10, 10));

    // A given rectangle of no height falls back to the normal size and says so.
    project.SetSizeMode(SXtranProject::SizeRect);
    project.SetCustomRect(SRect(0, 0, 50, 0));
    EXPECT_EQ(project.SizeBox(true), 1);

    // Max reaches from the origin to the far corner.
    project.SetSizeMode("max");
    project.SetTranslationMode("center");
    project.SizeBox(true);
    const SRect placed = project.GetBoundingBox(true);
    EXPECT_NEAR(placed.x1() + placed.x2(), Box().width(), 1e-9);
    EXPECT_NEAR(placed.y1() + placed.y2(), Box().height(), 1e-9);
}

TEST_F(NewProject, ModeTextsAreExactWords)
{
    const struct
    {
        const char* text;
        int size;
        int move;
    } cases[] = {{"max", 0, 2},   {"min", 1, 1},       {"normal", 2, 2}, {"test", 3, 2},
                 {"custom", 5, 4}, {"center", 2, 5},   {"none", 2, 0},   {"Min", 2, 2},
                 {"", 2, 2},       {"minimum", 2, 2}};
    for (const auto& c : cases) {
        project.SetSizeMode(c.text);
        project.SetTranslationMode(c.text);
        EXPECT_EQ(project.GetSizeMode(), c.size) << c.text;
        EXPECT_EQ(project.GetTranslationMode(), c.move) << c.text;
    }
}

TEST(NiceNumbers, CellCountsAndBoxSizes)
{
    SXtranProject project;
    EXPECT_EQ(project.NiceCellCount(100, 0), 50);
    EXPECT_EQ(project.NiceCellCount(100, 60), 40);
    EXPECT_EQ(project.NiceCellCount(-5, -20), 15);
    EXPECT_EQ(project.NiceCellCount(0.0037, 0), 37);
    EXPECT_EQ(project.NiceCellCount(0, 0), 1);
    const struct
    {
        double extent;
        int cells;
        double size;
    } boxes[] = {{150, 256, 153.6}, {15, 10, 15}, {35, 10, 36}, {47, 10, 48}, {62, 10, 60}, {87, 10, 90}};
    for (const auto& b : boxes) {
        double size = 0;
        project.NiceBoxSize(size, b.cells, b.extent);
        EXPECT_NEAR(size, b.size, 1e-9) << b.extent;
    }
}

TEST_F(NewProject, AddedPolygonsAreOpenAndNumbered)
{
    SMetalPolygon* square = Rect(0, 0, 10, 10);
    ASSERT_NE(square, nullptr);
    EXPECT_EQ(square->GetNumberOfVertices(), 4);
    EXPECT_EQ(square->GetId(), 1);
    EXPECT_EQ(square->GetLevelIndex(), 0);

    // Fewer than two distinct points make nothing.
    const SPoint dot[2] = {SPoint(5, 5), SPoint(5, 5)};
    EXPECT_EQ(project.AddMetalPolygon(dot, 2, 0, nullptr, 0, nullptr), nullptr);
    EXPECT_EQ(project.itsPolygonCount, 1);

    const SPoint line[2] = {SPoint(0, 0), SPoint(4, 0)};
    SMetalPolygon* given = project.AddMetalPolygon(line, 2, 1, nullptr, 40, nullptr);
    ASSERT_NE(given, nullptr);
    EXPECT_EQ(given->GetId(), 40);
    EXPECT_EQ(Rect(0, 0, 1, 1)->GetId(), 41);

    EXPECT_EQ(project.GetNewPolygonCount(), 3u);
}

TEST_F(NewProject, SimpleViasAreTheirBoundingRectangles)
{
    const SPoint octagon[8] = {SPoint(1, 0), SPoint(2, 0), SPoint(3, 1), SPoint(3, 2),
                               SPoint(2, 3), SPoint(1, 3), SPoint(0, 2), SPoint(0, 1)};
    SViaPolygon* via = project.AddSimpleVia(octagon, 8, 0, 1, 2, nullptr, 0, nullptr);
    ASSERT_NE(via, nullptr);
    EXPECT_EQ(via->GetVertices(),
              (std::vector<SPoint>{SPoint(0, 0), SPoint(0, 3), SPoint(3, 3), SPoint(3, 0)}));
    const SPoint same[3] = {SPoint(1, 1), SPoint(1, 1), SPoint(1, 1)};
    EXPECT_EQ(project.AddSimpleVia(same, 3, 0, 1, 2, nullptr, 0, nullptr), nullptr);
    EXPECT_EQ(project.AddSimpleVia(same, 0, 0, 1, 2, nullptr, 0, nullptr), nullptr);
    // A line has a box of one dimension, which is still a via.
    const SPoint line[2] = {SPoint(0, 0), SPoint(5, 0)};
    EXPECT_NE(project.AddSimpleVia(line, 2, 0, 1, 2, nullptr, 0, nullptr), nullptr);
}

TEST_F(NewProject, InvertFlipsNewPolygonsInTheBoxAndMapRectFollows)
{
    SMetalPolygon* old = Rect(0, 0, 5, 5);
    project.SetSizeMode("test");
    project.SetTranslationMode("none");
    project.SizeBox(true);
    SMetalPolygon* added = Rect(10, 20, 30, 25);
    project.Invert(true);
    EXPECT_TRUE(project.IsInverted());
    EXPECT_EQ(added->GetBoundingRect(), SRect(10, 75, 30, 80));
    EXPECT_EQ(old->GetBoundingRect(), SRect(0, 95, 5, 100));
    EXPECT_EQ(project.MapRect(SRect(10, 20, 30, 25)), SRect(10, 75, 30, 80));
}

// A box of 100 by 100 holds the polygons of the port tests.
class PortProject : public NewProject
{
protected:
    void SetUp() override
    {
        NewProject::SetUp();
        project.SetSizeMode("test");
        project.SetTranslationMode("none");
        project.SizeBox(true);
    }
};

TEST_F(PortProject, FindEdgeInRectWantsAnEdgeAcrossTheWholeRectangle)
{
    SMetalPolygon* strip = Rect(0, 40, 60, 50);
    SMetalPolygon* found = nullptr;
    int edge = -1;
    // A thin rectangle across the left end.
    ASSERT_TRUE(project.FindEdgeInRect(SRect(-1, 42, 1, 48), 0, found, edge));
    EXPECT_EQ(found, strip);
    EXPECT_EQ(edge, 3);
    ASSERT_TRUE(project.FindEdgeInRect(SRect(59, 41, 61, 49), 0, found, edge));
    EXPECT_EQ(edge, 1);
    // Reaching past the edge's end, on another level, or across nothing: no edge.
    EXPECT_FALSE(project.FindEdgeInRect(SRect(-1, 35, 1, 45), 0, found, edge));
    EXPECT_FALSE(project.FindEdgeInRect(SRect(-1, 42, 1, 48), 1, found, edge));
    EXPECT_FALSE(project.FindEdgeInRect(SRect(30, 0, 31, 1), 0, found, edge));
}

TEST_F(PortProject, ExtendToWallReachesTheWallThePolygonFaces)
{
    // An L whose left edge has a straight run of two segments.
    const SPoint shape[6] = {SPoint(30, 40), SPoint(70, 40), SPoint(70, 60),
                             SPoint(50, 60), SPoint(30, 60), SPoint(30, 50)};
    SMetalPolygon* polygon = project.AddMetalPolygon(shape, 6, 0, nullptr, 0, nullptr);
    SMetalPolygon* extension = nullptr;
    int edge = -1;
    ASSERT_TRUE(project.ExtendToWall(polygon, 5, extension, edge, 90));
    ASSERT_NE(extension, nullptr);
    EXPECT_EQ(extension->GetId(), 90);
    EXPECT_EQ(edge, 2);
    // The whole run from (30,60) to (30,40), joined to x = 0.
    EXPECT_EQ(extension->GetVertices(),
              (std::vector<SPoint>{SPoint(30, 60), SPoint(30, 40), SPoint(0, 40), SPoint(0, 60)}));
    EXPECT_EQ(project.GetEdgeSide(extension, edge), SXtranProject::SideLeft);
    EXPECT_DOUBLE_EQ(project.GetCircuit()->GetRefPlane(SBoxSide::Left)->GetLength(), 30.0);

    // The right edge goes to the right wall, the upper one to y = 0, the lower to y = H.
    ASSERT_TRUE(project.ExtendToWall(polygon, 1, extension, edge, 0));
    EXPECT_EQ(project.GetEdgeSide(extension, edge), SXtranProject::SideRight);
    ASSERT_TRUE(project.ExtendToWall(polygon, 0, extension, edge, 0));
    EXPECT_EQ(project.GetEdgeSide(extension, edge), SXtranProject::SideTop);
    ASSERT_TRUE(project.ExtendToWall(polygon, 2, extension, edge, 0));
    EXPECT_EQ(project.GetEdgeSide(extension, edge), SXtranProject::SideBottom);
    EXPECT_DOUBLE_EQ(project.GetCircuit()->GetRefPlane(SBoxSide::Bottom)->GetLength(), 40.0);
    // A plane the side has already keeps its length.
    ASSERT_TRUE(project.ExtendToWall(polygon, 5, extension, edge, 0));
    EXPECT_DOUBLE_EQ(project.GetCircuit()->GetRefPlane(SBoxSide::Left)->GetLength(), 30.0);

    const SPoint slanted[3] = {SPoint(10, 10), SPoint(20, 15), SPoint(10, 20)};
    SMetalPolygon* triangle = project.AddMetalPolygon(slanted, 3, 0, nullptr, 0, nullptr);
    EXPECT_FALSE(project.ExtendToWall(triangle, 0, extension, edge, 0));
}

TEST_F(PortProject, PortsAreNumberedByTypeSideLevelAndPlace)
{
    project.GetCircuit()->SetNumberOfLevels(3);
    SMetalPolygon* left = Rect(0, 60, 10, 70);
    SMetalPolygon* leftHigh = Rect(0, 20, 10, 30);
    SMetalPolygon* right = Rect(90, 10, 100, 20);
    SMetalPolygon* top = Rect(40, 0, 50, 10);
    SMetalPolygon* deeper = Rect(0, 5, 10, 15, 1);
    project.AddPort(right, 1);
    project.AddPort(top, 0);
    project.AddPort(left, 3);
    project.AddPort(deeper, 3);
    project.AddPort(leftHigh, 3);
    project.RenumberPorts(false);
    auto number = [](SMetalPolygon* polygon) { return static_cast<SPort*>(polygon->GetChild(0))->GetNumber(); };
    EXPECT_EQ(number(leftHigh), 1);
    EXPECT_EQ(number(left), 2);
    EXPECT_EQ(number(deeper), 3);
    EXPECT_EQ(number(right), 4);
    EXPECT_EQ(number(top), 5);
}

TEST_F(NewProject, RemovingTheDrawingKeepsLevelsTypesAndFixesPlanes)
{
    project.GetCircuit()->SetNumberOfLevels(3);
    Rect(0, 0, 10, 10);
    Rect(0, 0, 10, 10, 2);
    SRefPlane* plane = project.GetCircuit()->GetRefPlane(SBoxSide::Left);
    SMetalPolygon* anchor = Rect(12, 0, 20, 10, 1);
    plane->Link().SetPolygon(anchor);
    plane->Link().AddItem(0);
    ASSERT_TRUE(project.RemoveDimensions());
    ASSERT_TRUE(project.RemovePolygons());
    ASSERT_TRUE(project.ReleaseReferencePlanes());
    EXPECT_EQ(project.GetCircuit()->CountPolygons(), 0);
    EXPECT_EQ(project.GetCircuit()->GetNumberOfLevels(), 3);
    EXPECT_FALSE(plane->IsLinked());
    EXPECT_DOUBLE_EQ(plane->GetLength(), 12.0);
    EXPECT_EQ(project.GetBoundingBox(false), SRect());
}

} // namespace
