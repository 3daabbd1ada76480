// Placements, the transform stack and the walk through a hierarchy: where
// points land, what arrays, cycles and undefined references do, and that no
// input overflows the stack or takes the process down.

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>

#include "SGdsArena.h"
#include "SGdsElement.h"
#include "SGdsRec.h"
#include "SGdsRecordList.h"
#include "SGdsPolygon.h"
#include "SGdsStructure.h"
#include "SXtrans.h"
#include "SXtransList.h"
#include "test_expand_support.h"

using namespace expandtest;

namespace {

void ExpectNear(const SPoint& actual, double x, double y)
{
    EXPECT_NEAR(actual.x(), x, 1e-9);
    EXPECT_NEAR(actual.y(), y, 1e-9);
}

// "C": the closed unit square on layer 1; "TOP": what the caller adds.
StreamWriter WithCell()
{
    StreamWriter s = Library();
    s.Bgnstr("C").Boundary(1, 0, StreamWriter::Rect(0, 0, 1, 1)).Endstr();
    return s;
}

std::string Expand(Flattener& f, const StreamWriter& s, const std::string& top, bool* ok = nullptr)
{
    EXPECT_TRUE(f.Load(s));
    testing::internal::CaptureStdout();
    bool result = f.Expand(top);
    if (ok)
        *ok = result;
    return testing::internal::GetCapturedStdout();
}

} // namespace

TEST(Xtrans, ReflectionBeforeRotationAndTheOriginOnTheTranslation)
{
    SXtrans t;
    t.itsReflection = true;
    t.itsAngle = 90;
    ExpectNear(t.Transform(SPoint(1, 1)), 1, 1);
    t.itsPreOffset = SPoint(0, 1);
    ExpectNear(t.Transform(SPoint(0, 0)), 1, 0);
    t.itsPreOffset = SPoint();
    t.itsAngle = 33.3;
    t.itsMagnification = 2.5;
    t.itsTranslation = SPoint(3.125, -4.75);
    EXPECT_TRUE(t.Transform(SPoint(0, 0)).exactlyEqual(SPoint(3.125, -4.75)));
    EXPECT_EQ(t.GetMagnification(), 2.5);
    t.itsAbsoluteMagnification = true;
    EXPECT_EQ(t.GetMagnification(), 1.0);
    testing::internal::CaptureStdout();
    t.Dump();
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "Angle=33.300000, Mag=2.500000 (3.125,-4.75)\nRef=set, Abs_ang=not set Abs_mag=set\n");
}

TEST(XtransList, AbsoluteFlagsTakeOuterRotationAndMagnificationOut)
{
    SXtrans parent, child;
    SXtransList list;
    EXPECT_TRUE(list.Transform(SPoint(0.1, 0.2)).exactlyEqual(SPoint(0.1, 0.2)));
    list.Push(&parent);
    list.Push(&child);
    parent.itsAngle = 90;
    parent.itsMagnification = 2;
    child.itsTranslation = SPoint(5, 0);
    ExpectNear(list.Transform(SPoint(1, 0)), 0, 12);
    // The origin still moves with the parent; the axes and the size stay.
    child.itsAbsoluteAngle = true;
    ExpectNear(list.Transform(SPoint(1, 0)), 2, 10);
    child.itsAbsoluteMagnification = true;
    ExpectNear(list.Transform(SPoint(1, 0)), 1, 10);
    EXPECT_EQ(list.GetMagnification(), 1.0);
    // On the outermost entry the flags have nothing to act on.
    SPoint plain = list.Transform(SPoint(2, 1));
    parent.itsAbsoluteAngle = parent.itsAbsoluteMagnification = true;
    EXPECT_TRUE(list.Transform(SPoint(2, 1)).exactlyEqual(plain));
    child.itsAbsoluteMagnification = false;
    child.itsMagnification = 3;
    EXPECT_EQ(list.GetMagnification(), 6.0);
    list.Pop();
    list.Pop();
    list.Pop();
    EXPECT_EQ(list.Entries(), 0u);
}

TEST(XtransList, RepeatedPlacementsGiveTheSameBitsAsEachTransformInTurn)
{
    std::mt19937 random(7);
    std::uniform_real_distribution<double> coordinate(-1000, 1000);
    std::vector<SXtrans> entries(3);
    SXtransList list;
    for (SXtrans& entry : entries)
        list.Push(&entry);
    std::vector<SPoint> points = {SPoint(0.0, 0.0), SPoint(-0.0, 0.0), SPoint(-5, 0.0), SPoint(-5, -0.0)};
    for (int i = 0; i < 200; ++i)
        points.emplace_back(coordinate(random), coordinate(random));
    for (int round = 0; round < 40; ++round) {
        // Arrays change only translations and offsets between cells.
        for (size_t k = 0; k < entries.size(); ++k) {
            entries[k].itsTranslation = SPoint(coordinate(random), coordinate(random));
            if (round % 4 == 0) {
                entries[k].itsAngle = double(int(coordinate(random)));
                entries[k].itsMagnification = round % 8 ? 1.0 : 0.5 + double(k);
                entries[k].itsReflection = (round / 4 + k) % 2 == 1;
                entries[k].itsPreOffset = round % 3 ? SPoint() : SPoint(1.5, -2.5);
            }
        }
        for (const SPoint& p : points) {
            SPoint expected = p;
            for (size_t k = entries.size(); k-- > 0;)
                expected = entries[k].Transform(expected);
            SPoint placed = list.Transform(p);
            ASSERT_TRUE(placed.exactlyEqual(expected) && std::signbit(placed.x()) == std::signbit(expected.x()));
        }
    }
}

// The composed placement must round to six digits exactly as the polar turns
// do, ties and zeros included, while taking the short road where it can.
TEST(XtransList, ComposedPlacementRoundsAsTheTurnsDo)
{
    std::mt19937 random(11);
    // Turns of millions of degrees, right or not, lose digits in the polar angle.
    const double angles[] = {0, 90, 180, 270, -90, 450, 30, 45, 12.5, 36000090, -7200045.5};
    const double magnifications[] = {1, 1, 0.5, 2, 3.7};
    const double factors[] = {1, 1, 1e-3, 1e3, 0.3048};
    std::uniform_int_distribution<int> pick(0, 1000);
    // Seven-digit values on a 0.005 grid: about one in ten lies on a six-digit tie.
    std::uniform_int_distribution<long> grid(-400000, 400000);
    std::vector<SXtrans> entries(3);
    size_t placed = 0;
    SXtransList list;
    for (int round = 0; round < 300; ++round) {
        list.Clear();
        const size_t depth = 1 + size_t(pick(random)) % entries.size();
        for (size_t k = 0; k < depth; ++k) {
            SXtrans& entry = entries[k];
            entry = SXtrans();
            entry.itsAngle = angles[size_t(pick(random)) % 11];
            entry.itsMagnification = magnifications[size_t(pick(random)) % 5];
            entry.itsReflection = pick(random) % 2 == 1;
            entry.itsTranslation = SPoint(grid(random) * 0.005, grid(random) * 0.005);
            if (pick(random) % 3 == 0)
                entry.itsPreOffset = SPoint(grid(random) * 0.005, grid(random) * 0.005);
            list.Push(&entry);
        }
        const double factor = factors[size_t(pick(random)) % 5];
        for (int i = 0; i < 200; ++i, ++placed) {
            SPoint p(grid(random) * 0.005, grid(random) * 0.005);
            if (i % 50 == 0)
                p = SPoint(0.0, p.y());
            SPoint slow = list.Transform(p);
            slow *= factor;
            const SPoint fast = list.PlaceRounded(p, factor);
            ASSERT_EQ(fast.x(), SGdsPolygon::RoundToSixDigits(slow.x()))
                << "round " << round << " point " << p.x() << "," << p.y() << " turned " << slow.x();
            ASSERT_EQ(fast.y(), SGdsPolygon::RoundToSixDigits(slow.y()));
        }
    }
    // Most points take the matrix; ties and zeros the turns.
    EXPECT_GT(list.GetComposedPlacements(), placed / 2);
    EXPECT_LT(list.GetComposedPlacements(), placed);
    // An absolute angle can't be composed: the turns place every point.
    SXtrans turn;
    turn.itsAngle = 90;
    turn.itsAbsoluteAngle = true;
    SXtrans outer;
    outer.itsAngle = 30;
    SXtransList nested;
    nested.Push(&outer);
    nested.Push(&turn);
    const SPoint p(3.5, -1.25);
    const SPoint turned = nested.Transform(p);
    const SPoint rounded = nested.PlaceRounded(p, 1.0);
    EXPECT_EQ(rounded.x(), SGdsPolygon::RoundToSixDigits(turned.x()));
    EXPECT_EQ(rounded.y(), SGdsPolygon::RoundToSixDigits(turned.y()));
    EXPECT_EQ(nested.GetComposedPlacements(), 0u);
}

TEST(PolygonRounding, OnlyValuesAwayFromTiesAndZeroRoundDirectly)
{
    double rounded = 0.0;
    EXPECT_FALSE(SGdsPolygon::RoundAwayFromTie(1234.565, 0.0, rounded));
    EXPECT_FALSE(SGdsPolygon::RoundAwayFromTie(-0.0012345650000001, 0.0, rounded));
    EXPECT_FALSE(SGdsPolygon::RoundAwayFromTie(0.0, 1e-12, rounded));
    EXPECT_FALSE(SGdsPolygon::RoundAwayFromTie(3e-14, 1e-12, rounded));
    EXPECT_FALSE(SGdsPolygon::RoundAwayFromTie(556.2305004, 1e-6, rounded));
    for (double value : {556.23, -410.35375, 1234.566, 556.2305004, 0.30000000000000004, -7.77777777e-9}) {
        ASSERT_TRUE(SGdsPolygon::RoundAwayFromTie(value, 1e-10 * std::fabs(value), rounded)) << value;
        EXPECT_EQ(rounded, SGdsPolygon::RoundToSixDigits(value)) << value;
    }
}

TEST(Expand, NestedAbsolutePlacementAndTheConversionFactor)
{
    StreamWriter s = WithCell();
    Placement child, parent;
    child.absoluteAngle = child.absoluteMagnification = true;
    parent.angle = 90;
    parent.magnification = 2;
    s.Bgnstr("MID");
    Sref(s, "C", 5, 0, child).Endstr().Bgnstr("TOP");
    Sref(s, "MID", 0, 0, parent).Endstr().Endlib();
    Flattener f;
    ASSERT_EQ(Expand(f, s, "TOP"), "");
    ASSERT_EQ(f.Count(), 1u);
    // The square stays upright and unit-sized where the parent sends (5, 0);
    // the stream's closing point stays.
    const double expected[5][2] = {{0, 10}, {1, 10}, {1, 11}, {0, 11}, {0, 10}};
    ASSERT_EQ(f.At(0).GetPointCount(), 5);
    for (int i = 0; i < 5; ++i)
        ExpectNear(f.At(0).GetPoint(i), expected[i][0], expected[i][1]);
    ASSERT_TRUE(f.Expand("TOP", 2.5));
    ExpectNear(f.At(0).GetPoint(2), 2.5, 27.5);
    EXPECT_EQ(f.Polygons().itsTransforms.Entries(), 0u);
}

namespace {

// 3 columns 5 apart and 2 rows 7 apart at (10, 20), turned by angle.
std::vector<std::vector<SPoint>> ArrayCells(int method, double angle)
{
    SettingsScope settings(ArefMethod(method));
    StreamWriter s = WithCell();
    Placement p;
    p.angle = angle;
    s.Bgnstr("TOP");
    Aref(s, "C", 3, 2, {{10, 20}, {25, 20}, {10, 34}}, p);
    // No columns or no rows: nothing, and no message.
    Aref(s, "C", 0, 3, {{0, 0}, {0, 0}, {0, 30}});
    Aref(s, "C", 3, 0, {{0, 0}, {30, 0}, {0, 0}}).Endstr().Endlib();
    Flattener f;
    EXPECT_EQ(Expand(f, s, "TOP"), "");
    std::vector<std::vector<SPoint>> cells;
    for (size_t i = 0; i < f.Count(); ++i)
        cells.push_back(f.PointsOf(i));
    return cells;
}

} // namespace

TEST(Expand, ArrayMethodsAgreeUnturnedAndTheSecondTurnsTheLattice)
{
    std::vector<std::vector<SPoint>> third = ArrayCells(3, 0);
    ASSERT_EQ(third.size(), 6u);
    for (int method : {1, 2}) {
        std::vector<std::vector<SPoint>> other = ArrayCells(method, 0);
        ASSERT_EQ(other.size(), 6u);
        for (size_t k = 0; k < 6; ++k)
            for (size_t n = 0; n < 5; ++n)
                ExpectNear(other[k][n], third[k][n].x(), third[k][n].y());
    }
    std::vector<std::vector<SPoint>> second = ArrayCells(2, 90);
    third = ArrayCells(3, 90);
    ASSERT_EQ(second.size(), 6u);
    ASSERT_EQ(third.size(), 6u);
    // Columns outside, rows inside; method 3 keeps the lattice in the
    // parent, method 2 turns (5i, 7j) to (-7j, 5i).
    for (int i = 0; i < 3; ++i) {
        for (int j = 0; j < 2; ++j) {
            ExpectNear(third[size_t(2 * i + j)][0], 10 + 5 * i, 20 + 7 * j);
            ExpectNear(third[size_t(2 * i + j)][1], 10 + 5 * i, 21 + 7 * j);
            ExpectNear(second[size_t(2 * i + j)][0], 10 - 7 * j, 20 + 5 * i);
        }
    }
}

TEST(Expand, InvalidArrayMethodSkipsTheArrayOnly)
{
    for (int method : {0, 7}) {
        SettingsScope settings(ArefMethod(method));
        StreamWriter s = WithCell();
        s.Bgnstr("TOP");
        Aref(s, "C", 2, 2, {{0, 0}, {20, 0}, {0, 20}});
        s.Boundary(2, 0, StreamWriter::Rect(0, 0, 3, 3)).Endstr().Endlib();
        Flattener f;
        EXPECT_EQ(Expand(f, s, "TOP"), "Invalid value for velora.ini's ArefMethod = " + std::to_string(method) +
                                           ", valid values are 1, 2 or 3\n");
        ASSERT_EQ(f.Count(), 1u);
        EXPECT_EQ(f.At(0).itsLayer, 2);
    }
}

TEST(Expand, NestingIsACycleButPlacingTwiceSideBySideIsNot)
{
    StreamWriter s = WithCell();
    s.Bgnstr("A").Boundary(1, 0, StreamWriter::Rect(0, 0, 1, 1));
    Sref(s, "B", 10, 0).Endstr().Bgnstr("B");
    Aref(s, "A", 2, 2, {{0, 0}, {2, 0}, {0, 2}}).Endstr().Bgnstr("TWICE");
    Sref(s, "C", 0, 0);
    Sref(s, "C", 100, 0).Endstr().Bgnstr("TOP");
    Sref(s, "TWICE", 0, 0);
    Sref(s, "A", 0, 0).Endstr().Endlib();
    Flattener f;
    // A cycle the walk never reaches is never reported.
    EXPECT_EQ(Expand(f, s, "TWICE"), "");
    ASSERT_EQ(f.Count(), 2u);
    ExpectNear(f.At(1).GetPoint(0), 100, 0);
    bool ok = true;
    EXPECT_EQ(Expand(f, s, "TOP", &ok), "GDSII file contains a circular reference for structure = A\n");
    EXPECT_FALSE(ok);
    // What was made stays; no flag or placement is left behind.
    EXPECT_EQ(f.Count(), 3u);
    for (const char* name : {"TOP", "A", "B"})
        EXPECT_FALSE(f.Structures().FindStructure(SString(name))->itsExpanding) << name;
    EXPECT_EQ(f.Polygons().itsTransforms.Entries(), 0u);
}

TEST(Expand, UndefinedReferencesWarnAndTheWalkGoesOn)
{
    StreamWriter s = Library();
    s.Bgnstr("TOP");
    for (int i = 0; i < 30; ++i)
        Sref(s, "MISSING", i, 0);
    s.Boundary(1, 0, StreamWriter::Rect(0, 0, 1, 1)).Endstr().Endlib();
    Flattener f;
    std::string expected;
    for (int i = 0; i < 25; ++i)
        expected += "Structure MISSING is referenced, but not defined in the GDSII file\n";
    expected += "WARNING: Maximum number of warnings exceeded, further warnings will not be printed\n";
    EXPECT_EQ(Expand(f, s, "TOP"), expected);
    EXPECT_EQ(f.Count(), 1u);
}

TEST(Expand, PolygonNumbersFollowTheWalkAndRepeatedArraysGetNewOnes)
{
    StreamWriter s = WithCell();
    s.Bgnstr("R");
    Aref(s, "C", 2, 1, {{0, 0}, {20, 0}, {0, 10}}).Endstr().Bgnstr("TOP");
    Sref(s, "R", 0, 0);
    Sref(s, "R", 0, 100).Endstr().Endlib();
    Flattener f;
    int64_t before = SGdsPolygon::GetLastId();
    EXPECT_EQ(Expand(f, s, "TOP"), "");
    ASSERT_EQ(f.Count(), 4u);
    for (size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(f.At(i).gdspolyid, before + 1 + int64_t(i));
        ExpectNear(f.At(i).GetPoint(2), 1 + 10 * (i % 2), 1 + 100 * (i / 2));
    }
}

// Each level places the next one a step to the right, so the leaf lands as
// far right as the hierarchy is deep; closed into a ring, the same depth is
// reported as a cycle.
class DeepHierarchy : public testing::TestWithParam<int>
{
};

TEST_P(DeepHierarchy, IsWalkedWithoutTheProgramStack)
{
    int depth = GetParam();
    for (bool ring : {false, true}) {
        StreamWriter s = Library();
        for (int level = 0; level < depth; ++level) {
            s.Bgnstr("L" + std::to_string(level));
            Sref(s, "L" + std::to_string(ring ? (level + 1) % depth : level + 1), 1, 0).Endstr();
        }
        s.Bgnstr("L" + std::to_string(depth)).Boundary(1, 0, {{0, 0}, {1, 0}, {0, 1}}).Endstr().Endlib();
        Flattener f;
        bool ok = false;
        std::string out = Expand(f, s, "L0", &ok);
        EXPECT_EQ(ok, !ring);
        EXPECT_EQ(out, ring ? "GDSII file contains a circular reference for structure = L0\n" : "");
        ASSERT_EQ(f.Count(), ring ? 0u : 1u);
        if (!ring) {
            EXPECT_NEAR(f.At(0).GetPoint(0).x(), depth, 1e-6);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Levels, DeepHierarchy, testing::Values(10000, 200000));

namespace {

// The largest array a stream can state.
StreamWriter HugeArray(const std::string& cell, bool withBoundary)
{
    StreamWriter s = Library();
    s.Bgnstr("C");
    if (withBoundary)
        s.Boundary(1, 0, StreamWriter::Rect(0, 0, 1, 1));
    s.Endstr().Bgnstr("TOP");
    Aref(s, cell, 32767, 32767, {{0, 0}, {32767 * 2, 0}, {0, 32767 * 2}});
    return s.Endstr().Endlib();
}

} // namespace

TEST(ExpandLimits, ArrayTooLargeForMemoryIsRefusedBeforeAnyPolygonWithItsCount)
{
    Flattener f;
    bool ok = true;
    std::string out = Expand(f, HugeArray("C", true), "TOP", &ok);
    EXPECT_FALSE(ok);
    EXPECT_EQ(out, "ERROR: Structure TOP flattens to 1073676289 polygons, too large for this machine's memory\n");
    EXPECT_EQ(f.Count(), 0u);
}

TEST(ExpandLimits, HugeArraysOfNothingEndQuickly)
{
    Flattener f;
    EXPECT_EQ(Expand(f, HugeArray("C", false), "TOP"), "");
    Flattener g;
    std::string out = Expand(g, HugeArray("MISSING", true), "TOP");
    EXPECT_NE(out.find("WARNING: Maximum number of warnings exceeded"), std::string::npos);
    EXPECT_EQ(f.Count() + g.Count(), 0u);
}

TEST(ExpandLimits, MemoryLimitReachedDuringTheWalk)
{
    // Enough for the polygons by count, not for the blocks that hold them.
    StreamWriter s = WithCell();
    s.Bgnstr("TOP");
    Aref(s, "C", 100, 100, {{0, 0}, {200, 0}, {0, 200}}).Endstr().Endlib();
    Flattener f;
    ASSERT_TRUE(f.Load(s));
    size_t needed = 10000 * (sizeof(SGdsPolygon) + 5 * sizeof(SPoint));
    SGdsPolygonList small(&f.Structures());
    small.SetMemoryLimit(needed + needed / 10);
    std::new_handler saved = std::set_new_handler(nullptr);
    EXPECT_THROW(ExpandStructure(f.Structures(), small, SString("TOP")), std::bad_alloc);
    std::set_new_handler(saved);
    EXPECT_GT(small.entries(), 0u);
    EXPECT_LT(small.entries(), 10000u);
    EXPECT_LE(small.GetMemoryUsed(), small.GetMemoryLimit());
}

TEST(ExpandRecords, SpentOnTheWayTheyGiveTheSamePolygonsAndKeepWhatOthersStillRead)
{
    // BEFORE and AFTER lie around TOP in the stream, so that record chunks hold points of
    // both; TOP places them last, when its own shapes are done with.
    StreamWriter s = Library();
    s.Bgnstr("BEFORE").Boundary(2, 0, StreamWriter::Rect(0, 0, 3, 1)).Endstr();
    s.Bgnstr("TOP");
    for (int i = 0; i < 3000; ++i)
        s.Boundary(1 + i % 3, 0, StreamWriter::Rect(i, -i, i + 1 + i % 7, 5 - i));
    s.Path(4, 0, 2, {{0, 0}, {50, 0}, {50, 40}}, 2);
    s.Sref("BEFORE", 7, 7).Aref("AFTER", 3, 2, {{0, 0}, {30, 0}, {0, 20}}).Endstr();
    s.Bgnstr("AFTER").Boundary(3, 0, StreamWriter::Rect(1, 1, 4, 9)).Endstr().Endlib();

    Flattener kept, spent;
    ASSERT_TRUE(kept.Load(s, true));
    ASSERT_TRUE(kept.Expand("TOP"));
    ASSERT_TRUE(spent.Load(s, true));
    const SGdsStructureList& list = spent.Structures();
    const SGdsRecXy* before =
        static_cast<SGdsElement*>(list.FindStructure("BEFORE")->GetElements().at(0))->itsXyRecord;
    const SGdsRecXy* after = static_cast<SGdsElement*>(list.FindStructure("AFTER")->GetElements().at(0))->itsXyRecord;
    ASSERT_TRUE(spent.Expand("TOP", 1.0, false, true));

    ASSERT_EQ(spent.Count(), kept.Count());
    EXPECT_EQ(spent.Count(), 3000u + 1 + 1 + 6);
    for (size_t i = 0; i < kept.Count(); ++i) {
        ASSERT_EQ(spent.At(i).itsLayer, kept.At(i).itsLayer) << i;
        ASSERT_EQ(spent.PointsOf(i), kept.PointsOf(i)) << i;
    }
    // TOP's chunks went to the polygons; those that BEFORE's and AFTER's points lie in
    // stayed.
    size_t given = 0;
    for (const SGdsArena::Chunk& chunk : spent.Records().GetArena().GetChunks())
        given += chunk.data ? 0 : 1;
    const SGdsArena::ChunkIndex index(spent.Records().GetArena());
    const bool beforeStayed = index.Find(before) != SGdsArena::ChunkIndex::kNone;
    const bool afterStayed = index.Find(after) != SGdsArena::ChunkIndex::kNone;
    EXPECT_GE(given, 2u);
    EXPECT_TRUE(beforeStayed);
    EXPECT_TRUE(afterStayed);
}

TEST(ExpandRecords, AGivenChunkIsFilledBeforeFreshMemory)
{
    SGdsArena from, to;
    // Enough for chunks from the heap and mapped ones.
    std::vector<void*> blocks;
    for (int i = 0; i < 200; ++i)
        blocks.push_back(from.Allocate(4096));
    ASSERT_GE(from.GetChunks().size(), 3u);
    const SGdsArena::Chunk last = from.GetChunks().back();
    from.GiveChunk(from.GetChunks().size() - 1, to);
    EXPECT_EQ(from.GetChunks().back().data, nullptr);
    // The first room the other arena asks for lies in the chunk given.
    unsigned char* room = static_cast<unsigned char*>(to.Allocate(64));
    EXPECT_EQ(room, last.data);
    // Room larger than the given chunk comes from elsewhere.
    unsigned char* big = static_cast<unsigned char*>(to.Allocate(last.capacity + 8));
    EXPECT_TRUE(big < last.data || big >= last.data + last.capacity);
    // Asked for after the gift, room of the giver comes from a new chunk.
    unsigned char* again = static_cast<unsigned char*>(from.Allocate(16));
    EXPECT_TRUE(again < last.data || again >= last.data + last.capacity);
}

TEST(PolygonList, PointsStayContiguousWhenPolygonsGrowOutOfTurn)
{
    SGdsPolygonList list;
    SGdsPolygon* first = list.NewPolygon();
    SGdsPolygon* second = list.NewPolygon();
    for (int i = 0; i < 100000; ++i) {
        first->AddPoint(list, SPoint(i, -i), false);
        second->AddPoint(list, SPoint(-i, i), false);
    }
    for (int i = 0; i < 100000; i += 997)
        EXPECT_TRUE(first->GetPoint(i).exactlyEqual(SPoint(i, -i)) && second->GetPoint(i).exactlyEqual(SPoint(-i, i)));
    EXPECT_EQ(list.GetBoundingBox().x1(), -99999.0);
    list.clearAndDestroy();
    EXPECT_EQ(list.entries() + list.GetMemoryUsed(), 0u);
}

TEST(PolygonRounding, SixDigitsAsPrintingAndReadingBack)
{
    auto expectSame = [](double value) {
        char text[64];
        snprintf(text, sizeof text, "%g", value);
        double slow = strtod(text, nullptr), fast = SGdsPolygon::RoundToSixDigits(value);
        bool same = fast == slow && std::signbit(fast) == std::signbit(slow);
        EXPECT_TRUE(same || (std::isnan(fast) && std::isnan(slow)))
            << std::hexfloat << value;
    };
    std::mt19937_64 random(12345);
    std::uniform_real_distribution<double> unit(-1.0, 1.0);
    std::uniform_int_distribution<int> exponent(-20, 24);
    std::uniform_int_distribution<long long> integer(-2000000000LL, 2000000000LL);
    for (int i = 0; i < 300000; ++i) {
        // Any magnitude, coordinates in common database units, and seven
        // digits ending in 5, which sit on the rounding edge.
        expectSame(unit(random) * std::pow(10.0, exponent(random)));
        long long dbu = integer(random);
        expectSame(dbu * 0.001);
        expectSame(dbu * 0.0005);
        expectSame(double(dbu % 10000000 * 10 + 5) * std::pow(10.0, exponent(random) - 8));
    }
    for (double value : {0.0, -0.0, 999999.5, 9999995.0, 1234565.0, 0.1234565, 1e-300, -5e-324, 1e300, 2.5e-16,
                         9.999995e20, HUGE_VAL, std::nan("")})
        expectSame(value);
    // The doubles on and next to ties, at every scale the fast roads take: those a few
    // units in the last place away are decided by the exact value.
    std::uniform_int_distribution<int> six(100000, 999999);
    for (int i = 0; i < 20000; ++i) {
        const double tie = (six(random) + 0.5) * std::pow(10.0, exponent(random) - 10);
        double below = tie, above = tie;
        for (int step = 0; step < 4; ++step) {
            expectSame(below);
            expectSame(-above);
            below = std::nextafter(below, 0.0);
            above = std::nextafter(above, HUGE_VAL);
        }
    }
    SGdsPolygonList list;
    SGdsPolygon* polygon = list.NewPolygon();
    polygon->AddPoint(list, SPoint(1.23456789, 0.1 + 0.2), false);
    polygon->RoundPoints();
    EXPECT_TRUE(polygon->GetPoint(0).exactlyEqual(SPoint(1.23457, 0.3)));
}
