// Paths into closed outlines: the cleaning of the centre line, the end rules,
// widths under magnification, mitred joins, and paths of width zero.

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "SGdsElement.h"
#include "SGdsPathConverter.h"
#include "SGdsStructure.h"
#include "SLine.h"
#include "test_expand_support.h"

using namespace expandtest;

namespace {

// The outline of a centre line, for a path element with no record behind it.
std::vector<SPoint> Outline(const std::vector<SPoint>& points, double width, int type = 1, double begin = 0,
                            double end = 0)
{
    SGdsElementPath path(nullptr);
    path.itsWidth = width;
    path.itsPathType = type;
    path.itsBeginExtension = begin;
    path.itsEndExtension = end;
    SGdsPolygonList list;
    SGdsPathConverter converter;
    EXPECT_TRUE(converter.ExpandPoints(list, path, points.data(), int(points.size())));
    if (list.isEmpty())
        return {};
    EXPECT_EQ(list.entries(), 1u);
    return std::vector<SPoint>(list.at(0)->begin(), list.at(0)->end());
}

void ExpectOutline(const std::vector<SPoint>& actual, const std::vector<SPoint>& expected)
{
    ASSERT_EQ(actual.size(), expected.size());
    for (size_t i = 0; i < actual.size(); ++i) {
        EXPECT_NEAR(actual[i].x(), expected[i].x(), 1e-9) << "vertex " << i;
        EXPECT_NEAR(actual[i].y(), expected[i].y(), 1e-9) << "vertex " << i;
    }
}

} // namespace

TEST(Line, OffsetPerpendicularAndIntersection)
{
    SLine rising(SPoint(0, 0), SPoint(1, 1));
    EXPECT_DOUBLE_EQ(rising.Offset(1).itsIntercept, std::sqrt(2.0));
    SPoint p;
    ASSERT_TRUE(rising.Intersect(rising.Perpendicular(SPoint(2, 0)), p));
    EXPECT_NEAR(p.x(), 1, 1e-12);
    EXPECT_NEAR(p.y(), 1, 1e-12);
    EXPECT_FALSE(rising.Intersect(rising.Offset(3), p));
    SLine vertical(SPoint(2, 0), SPoint(2 + 1e-12, 5));
    ASSERT_TRUE(vertical.itsVertical);
    EXPECT_EQ(vertical.Offset(-1).itsIntercept, 1.0);
    ASSERT_TRUE(vertical.Intersect(vertical.Perpendicular(SPoint(7, 3)), p));
    EXPECT_TRUE(p.exactlyEqual(SPoint(2, 3)));
    EXPECT_FALSE(vertical.Intersect(vertical.Offset(1), p));
    EXPECT_TRUE(SLine(SPoint(0, 4), SPoint(9, 4)).Perpendicular(SPoint(3, 3)).itsVertical);
}

TEST(PathConversion, DuplicatesAndPointsBetweenNeighboursGoTurnsStay)
{
    SGdsPathConverter converter;
    std::vector<SPoint> points = {{0, 0}, {0, 1e-10}, {5, 0}, {10, 0}, {10, 0}, {10, 5}, {10, 2}, {10, 8}};
    converter.RemoveRedundantPoints(points);
    ExpectOutline(points, {{0, 1e-10}, {10, 0}, {10, 5}, {10, 2}, {10, 8}});
    // Too few distinct points: no polygon, and no number used.
    int64_t before = SGdsPolygon::GetLastId();
    for (const std::vector<SPoint>& few : {std::vector<SPoint>{}, {{1, 1}}, {{2, 2}, {2, 2}, {2, 2 + 1e-11}}})
        EXPECT_TRUE(Outline(few, 2).empty());
    EXPECT_EQ(SGdsPolygon::GetLastId(), before);
}

TEST(PathConversion, StraightBentAndTurningBack)
{
    // Left side out, right side back, no closing point; a point between its
    // neighbours changes nothing.
    ExpectOutline(Outline({{0, 0}, {10, 0}}, 2), {{0, 1}, {10, 1}, {10, -1}, {0, -1}});
    ExpectOutline(Outline({{0, 0}, {4, 0}, {10, 0}}, 2), {{0, 1}, {10, 1}, {10, -1}, {0, -1}});
    // A horizontal segment meets a vertical one: the mitre corners lie
    // exactly hw * sqrt(2) from the bend.
    std::vector<SPoint> bend = Outline({{0, 0}, {10, 0}, {10, 10}}, 2);
    ExpectOutline(bend, {{0, 1}, {9, 1}, {9, 10}, {11, 10}, {11, -1}, {0, -1}});
    EXPECT_TRUE(bend[1].exactlyEqual(SPoint(9, 1)) && bend[4].exactlyEqual(SPoint(11, -1)));
    // No mitre limit: a sharp bend spikes.
    EXPECT_GT(SGdsPathConverter::Distance(Outline({{0, 0}, {10, 0}, {0, 1}}, 2)[4], SPoint(10, 0)), 10.0);
    // Out and back: the parallel join collapses onto the turning point.
    ExpectOutline(Outline({{0, 0}, {10, 0}, {0, 0}}, 2), {{0, 1}, {10, 0}, {0, -1}, {0, 1}, {10, 0}, {0, -1}});
}

TEST(PathConversion, EndRulesByStoredType)
{
    ExpectOutline(Outline({{0, 0}, {10, 0}}, 2, 1, 5, 5), {{0, 1}, {10, 1}, {10, -1}, {0, -1}});
    ExpectOutline(Outline({{0, 0}, {0, 10}}, 2, 3), {{-1, -1}, {-1, 11}, {1, 11}, {1, -1}});
    ExpectOutline(Outline({{0, 0}, {10, 0}}, 2, 4, 3, -2), {{-3, 1}, {8, 1}, {8, -1}, {-3, -1}});
}

TEST(PathConversion, ZeroWidthUnderEachMode)
{
    const std::vector<SPoint> open = {{0, 0}, {10, 0}, {10, 10}, {0, 10}};
    const std::vector<SPoint> closed = {{0, 0}, {10, 0}, {10, 10}, {0, 10}, {0, 0}};
    const std::vector<SPoint> back = {{0, 0}, {10, 0}, {10, 10}, {0, 10}, {10, 10}, {10, 0}};
    ExpectOutline(Outline(open, 0), open);
    ASSERT_TRUE(SetPathConversionMode(SString("no_boundary_path")));
    ExpectOutline(Outline({{0, 0}, {10, 0}}, 0), {{0, 0}, {10, 0}});
    ExpectOutline(Outline(open, 0), back);
    ASSERT_TRUE(SetPathConversionMode(SString("smart_path")));
    ExpectOutline(Outline(closed, 0), closed);
    ExpectOutline(Outline(open, 0), back);
    EXPECT_FALSE(SetPathConversionMode(SString("round_path")));
    ASSERT_TRUE(SetPathConversionMode(SString("boundary_path")));
    EXPECT_EQ(PathConversionMode, kPathBoundary);
}

TEST(PathConversion, LongPathsStayLinear)
{
    // A staircase of 100,000 points; with mitred joins the outline's area is
    // the centre line's length times the width.
    std::vector<SPoint> stairs;
    for (int i = 0; i < 100000; ++i)
        stairs.emplace_back((i + 1) / 2, i / 2);
    SGdsElementPath path(nullptr);
    path.itsWidth = 0.5;
    SGdsPolygonList list;
    SGdsPathConverter converter;
    ASSERT_TRUE(converter.ExpandPoints(list, path, stairs.data(), int(stairs.size())));
    EXPECT_EQ(list.at(0)->GetPointCount(), 200000);
    EXPECT_NEAR(Area(*list.at(0)), 99999 * 0.5, 1e-6);
    std::vector<SPoint> same(100000, SPoint(3, 4));
    converter.RemoveRedundantPoints(same);
    EXPECT_EQ(same.size(), 1u);
}

namespace {

// The bounding box of a path from (0, 0) to (100, 0) in "C", placed by "TOP".
SRect PlacedPath(long long width, int pathtype, const Placement& placement, long long begin = 0, long long end = 0)
{
    StreamWriter s = Library();
    s.Bgnstr("C").NoData(gdstest::PATH).Int2(gdstest::LAYER, {1}).Int2(gdstest::DATATYPE, {0});
    s.Int2(gdstest::PATHTYPE, {pathtype}).Int4(gdstest::WIDTH, {width});
    if (begin || end)
        s.Int4(gdstest::BGNEXTN, {begin}).Int4(gdstest::ENDTEXTN, {end});
    s.Xy({{0, 0}, {100, 0}}).Endel().Endstr().Bgnstr("TOP");
    Sref(s, "C", 0, 0, placement).Endstr().Endlib();
    Flattener f;
    EXPECT_TRUE(f.Load(s) && f.Expand("TOP"));
    return f.Count() == 1 ? f.At(0).GetBoundingBox() : SRect();
}

} // namespace

TEST(PathConversion, WidthsUnderMagnificationAndPlacement)
{
    Placement tripled;
    tripled.magnification = 3;
    EXPECT_NEAR(PlacedPath(10, 0, tripled).height(), 30, 1e-9);
    EXPECT_NEAR(PlacedPath(-10, 0, tripled).height(), 10, 1e-9);
    EXPECT_NEAR(PlacedPath(-10, 0, tripled).width(), 300, 1e-9);
    Placement turned;
    turned.angle = 90;
    SRect box = PlacedPath(4, 4, turned, 3, 5);
    EXPECT_NEAR(box.x1(), -2, 1e-9);
    EXPECT_NEAR(box.x2(), 2, 1e-9);
    EXPECT_NEAR(box.y1(), -3, 1e-9);
    EXPECT_NEAR(box.y2(), 105, 1e-9);
}

TEST(PathConversion, ElementsWithoutPointsEndTheWalk)
{
    for (int type : {gdstest::PATH, gdstest::BOX}) {
        StreamWriter s = Library();
        int datatype = type == gdstest::BOX ? gdstest::BOXTYPE : gdstest::DATATYPE;
        s.Bgnstr("TOP").NoData(type).Int2(gdstest::LAYER, {1}).Int2(datatype, {0});
        s.Endel().Endstr().Endlib();
        Flattener f;
        ASSERT_TRUE(f.Load(s));
        const SGdsElement* element =
            static_cast<const SGdsElement*>(f.Structures().FindStructure(SString("TOP"))->itsElements.at(0));
        std::string expected = std::string(type == gdstest::BOX ? "Box" : "Path") + " record " +
                               std::to_string(element->GetRecordNumber()) + " missing associated XY record\n";
        testing::internal::CaptureStdout();
        EXPECT_FALSE(f.Expand("TOP"));
        EXPECT_EQ(testing::internal::GetCapturedStdout(), expected);
    }
}
