// Structures built while the stream is read, as the program builds them, against
// structures built from all the records once read: the same structures, the same
// messages in the same order, and only the records that shapes take their points from
// kept.

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "RecordReader.h"
#include "SGdsElement.h"
#include "SGdsStructure.h"
#include "StreamWriter.h"

using namespace gdstest;

namespace {

std::string Number(double value)
{
    // %a keeps every bit, the sign of a zero included.
    char text[64];
    snprintf(text, sizeof text, "%a", value);
    return text;
}

std::string Point(const SPoint& point)
{
    return "(" + Number(point.x()) + "," + Number(point.y()) + ")";
}

// Everything a structure list holds that the expansion reads, one line per element.
std::string Describe(SGdsStructureList& list)
{
    std::string text;
    const SOrdered& structures = list.GetStructures();
    for (size_t s = 0; s < structures.entries(); ++s) {
        SGdsStructure* structure = static_cast<SGdsStructure*>(structures.at(s));
        text += "structure " + std::string(structure->data()) + "\n";
        const SOrdered& elements = structure->GetElements();
        for (size_t e = 0; e < elements.entries(); ++e) {
            SGdsElement* element = static_cast<SGdsElement*>(elements.at(e));
            text += std::string(element->GetName()) + " " + element->GetRecordName() + " " +
                    std::to_string(element->GetRecordNumber()) + " " + std::to_string(element->itsLayer) + "/" +
                    std::to_string(element->itsDatatype);
            if (const SGdsRecXy* xy = element->itsXyRecord)
                for (int i = 0; i < xy->GetPointCount(); ++i)
                    text += " " + Point(xy->GetPoint(i));
            if (element->IsPath()) {
                auto* path = static_cast<SGdsElementPath*>(element);
                text += " type " + std::to_string(path->itsPathType) + " width " + Number(path->itsWidth) + " " +
                        Number(path->itsBeginExtension) + " " + Number(path->itsEndExtension);
            }
            if (element->IsReference()) {
                auto* reference = static_cast<SGdsElementSref*>(element);
                const SXtrans& t = reference->itsTransform;
                text += " to " + std::string(reference->itsStructureName.data()) + " at " + Point(t.itsTranslation) +
                        " angle " + Number(t.itsAngle) + " mag " + Number(t.itsMagnification) +
                        (t.itsReflection ? " mirrored" : "");
                if (element->GetName()[0] == 'A') {
                    auto* array = static_cast<SGdsElementAref*>(element);
                    text += " " + std::to_string(array->itsColumns) + "x" + std::to_string(array->itsRows) + " " +
                            Point(array->itsReferencePoint) + Point(array->itsColumnPoint) + Point(array->itsRowPoint);
                }
            }
            text += "\n";
        }
    }
    return text;
}

struct Outcome
{
    bool read = false;
    bool built = false;
    std::string structures;
    std::string said;
};

// Reads and builds one way, with what was printed on the way.
Outcome ReadAndBuild(const StreamWriter& stream, bool whileReading)
{
    RecordReader reader;
    Outcome outcome;
    testing::internal::CaptureStdout();
    outcome.read = reader.Load(stream, whileReading);
    if (outcome.read)
        outcome.built = reader.Build();
    outcome.said = testing::internal::GetCapturedStdout();
    if (outcome.built)
        outcome.structures = Describe(reader.List());
    return outcome;
}

void ExpectBothWaysAlike(const StreamWriter& stream, const Outcome& first)
{
    const Outcome second = ReadAndBuild(stream, true);
    EXPECT_EQ(second.read, first.read);
    EXPECT_EQ(second.built, first.built);
    EXPECT_EQ(second.structures, first.structures);
    EXPECT_EQ(second.said, first.said);
}

// Paths of every kind, references and arrays turned and mirrored, a box, a text and
// properties, over two structures.
StreamWriter EveryKind()
{
    StreamWriter s;
    s.Begin().Bgnstr("LEAF").Boundary(1, 2, StreamWriter::Rect(0, 0, 10, 5));
    s.NoData(PATH).Int2(LAYER, {7}).Int2(DATATYPE, {3}).Int2(PATHTYPE, {4}).Int4(WIDTH, {-2500});
    s.Int4(BGNEXTN, {-500}).Int4(ENDTEXTN, {750}).Xy({{0, 0}, {1000, 0}, {1000, 300}}).Endel();
    s.Path(2, 0, 0, {{5, 5}, {5, 5}}, 0).Box(9, 6, StreamWriter::Rect(0, 0, 1, 1));
    s.NoData(TEXT).Int2(LAYER, {5}).Int2(TEXTTYPE, {0}).Xy({{1, 1}}).String(STRING, "label").Endel();
    s.Boundary(3, 0, StreamWriter::Rect(-7, -7, 7, 7));
    s.Int2(PROPATTR, {1}).String(PROPVALUE, "p");
    s.Endstr();
    s.Bgnstr("TOP").Sref("LEAF", 100, -200);
    s.NoData(SREF).String(SNAME, "LEAF").BitArray(STRANS, 0x80, 0x00).Real(MAG, {3}).Real(ANGLE, {30});
    s.Xy({{-5, 7}}).Endel();
    s.NoData(AREF).String(SNAME, "LEAF").BitArray(STRANS, 0x00, 0x00).Real(ANGLE, {90}).Int2(COLROW, {4, 3});
    s.Xy({{0, 0}, {0, 400}, {-300, 0}}).Endel();
    s.Endstr().Endlib();
    return s;
}

} // namespace

TEST(BuildingWhileReading, GivesTheStructuresAndMessagesOfBuildingAfterwards)
{
    const StreamWriter stream = EveryKind();
    const Outcome afterwards = ReadAndBuild(stream, false);
    ASSERT_TRUE(afterwards.built);
    EXPECT_NE(afterwards.structures.find("Path PATH"), std::string::npos);
    EXPECT_NE(afterwards.structures.find("ARef AREF"), std::string::npos);
    ExpectBothWaysAlike(stream, afterwards);
}

TEST(BuildingWhileReading, ALaterUnitScalesWhatWasBuiltBeforeIt)
{
    // Widths and reference points are scaled when their record is applied; after the
    // reading, that is by the last unit of the stream, which is what building on the way
    // must give as well.
    for (const double later : {0.5, -0.25, 0.0, 0.001}) {
        StreamWriter s;
        s.Begin().Bgnstr("LEAF").Boundary(1, 0, StreamWriter::Rect(0, 0, 3, 3)).Endstr();
        s.Bgnstr("TOP").Path(1, 0, 1234, {{0, 0}, {10, 0}}, 2).Sref("LEAF", 5, -9);
        s.Aref("LEAF", 2, 2, {{1, 1}, {21, 1}, {1, 31}}).Endstr();
        s.Units(later, 1e-9).Bgnstr("AFTER").Path(3, 0, 77, {{0, 0}, {0, 4}}).Endstr().Endlib();
        const Outcome afterwards = ReadAndBuild(s, false);
        ASSERT_TRUE(afterwards.built) << later;
        const Outcome onTheWay = ReadAndBuild(s, true);
        EXPECT_EQ(onTheWay.structures, afterwards.structures) << later;
        EXPECT_EQ(onTheWay.said, afterwards.said) << later;
        // The first path's width under the last unit, not the first.
        EXPECT_NE(onTheWay.structures.find("width " + Number(later * 1234)), std::string::npos) << onTheWay.structures;
    }
}

TEST(BuildingWhileReading, WhatTheBuildingSaysComesAfterAllTheReadingSays)
{
    // A warning of the reading (an odd release) first and another (a unit that is not
    // positive) last, and three hundred of the building (bad path types) between them:
    // read first, the building's warnings come after both and run into the cap of 25.
    StreamWriter s;
    s.Header(7).Bgnlib().Libname().Units().Bgnstr("TOP");
    // More than the cap lets out, and more than are kept while waiting.
    for (int i = 0; i < 300; ++i)
        s.Path(1, 0, 10, {{0, i}, {10, i}}, 7);
    s.Endstr().Units(-1, 1e-9).Endlib();
    const Outcome afterwards = ReadAndBuild(s, false);
    ASSERT_TRUE(afterwards.built);
    const size_t release = afterwards.said.find("Unknown release number 7");
    const size_t unit = afterwards.said.find("units must be positive");
    const size_t pathtype = afterwards.said.find("Pathtype is invalid");
    const size_t cap = afterwards.said.find("Maximum number of warnings exceeded");
    ASSERT_NE(release, std::string::npos);
    ASSERT_NE(unit, std::string::npos);
    ASSERT_NE(pathtype, std::string::npos);
    ASSERT_NE(cap, std::string::npos);
    EXPECT_LT(release, unit);
    EXPECT_LT(unit, pathtype);
    EXPECT_LT(pathtype, cap);
    ExpectBothWaysAlike(s, afterwards);
}

TEST(BuildingWhileReading, AFailedBuildIsToldOnlyOnceTheStreamIsRead)
{
    // BGNSTR inside an element ends the building; the reading goes on to a warning of its
    // own, which comes first.
    StreamWriter s;
    s.Begin().Bgnstr("TOP").NoData(BOUNDARY).Int2(LAYER, {1}).Int2(DATATYPE, {0});
    s.Bgnstr("INNER").Endstr().Units(0, 0).Endlib();
    const Outcome afterwards = ReadAndBuild(s, false);
    ASSERT_TRUE(afterwards.read);
    EXPECT_FALSE(afterwards.built);
    const size_t unit = afterwards.said.find("units must be positive");
    const size_t error = afterwards.said.find("Found BGNSTR before ENDEL");
    ASSERT_NE(unit, std::string::npos);
    ASSERT_NE(error, std::string::npos);
    EXPECT_LT(unit, error);
    ExpectBothWaysAlike(s, afterwards);
}

TEST(BuildingWhileReading, AStreamThatCanNotBeReadSaysNothingOfItsBuilding)
{
    // The same failed build, but the stream stops before ENDLIB: the reading fails, and a
    // building that never ran after it says nothing.
    StreamWriter s;
    s.Begin().Bgnstr("TOP").NoData(BOUNDARY).Int2(LAYER, {1});
    s.Bgnstr("INNER").Endstr();
    const Outcome afterwards = ReadAndBuild(s, false);
    EXPECT_FALSE(afterwards.read);
    EXPECT_EQ(afterwards.said.find("Found BGNSTR"), std::string::npos);
    ExpectBothWaysAlike(s, afterwards);
    // Nor does a later stream find the held messages.
    const Outcome next = ReadAndBuild(EveryKind(), true);
    EXPECT_TRUE(next.built);
    EXPECT_EQ(next.said.find("Found BGNSTR"), std::string::npos);
}

TEST(BuildingWhileReading, KeepsOnlyThePointsOfShapes)
{
    // Of all the records only the XY of the boundaries, paths and the box stay; those of
    // references and texts were used up or never needed.
    RecordReader reader;
    ASSERT_TRUE(reader.Load(EveryKind(), true));
    ASSERT_TRUE(reader.Build());
    EXPECT_EQ(reader.Count(), 5);
    EXPECT_NE(reader.Find(XY), nullptr);
    EXPECT_EQ(reader.Find(BOUNDARY), nullptr);
    EXPECT_EQ(reader.Find(LAYER), nullptr);
    // Each shape's points are those it was given.
    SGdsStructure* leaf = reader.List().FindStructure("LEAF");
    ASSERT_NE(leaf, nullptr);
    auto* box = static_cast<SGdsElement*>(leaf->GetElements().at(3));
    ASSERT_NE(box->itsXyRecord, nullptr);
    EXPECT_EQ(box->itsXyRecord->GetPoint(2), SPoint(0.001, 0.001));
}
