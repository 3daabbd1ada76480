// Reading and writing layer files: every refusal with its place, the level
// rules, the lookups and the default names.

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "SErrorMessages.h"
#include "SGdsLayerFile.h"
#include "SOrdered.h"
#include "SSortedVector.h"

namespace {

class LayerFile : public testing::Test
{
protected:
    std::string Path(const char* name = "test.lay") const { return itsDir.filePath(name).toStdString(); }

    std::string Load(const char* name) const
    {
        QFile file(QString::fromStdString(Path(name)));
        return file.open(QIODevice::ReadOnly) ? file.readAll().toStdString() : "<missing>";
    }

    // Reads the text as a layer file: empty, or the error text.
    std::string Read(const std::string& text)
    {
        QFile out(QString::fromStdString(Path()));
        out.open(QIODevice::WriteOnly | QIODevice::Truncate);
        out.write(text.data(), qint64(text.size()));
        out.close();
        return file.Read(SString(Path().c_str())) ? "" : file.GetErrorText().data();
    }

    SGdsLayerMapping* Only()
    {
        EXPECT_EQ(file.Entries(), 1u);
        return static_cast<SGdsLayerMapping*>(file.At(0));
    }

    // "name=technology layer" of each mapping in the list, sorted.
    static std::vector<std::string> Names(const SOrdered& list)
    {
        std::vector<std::string> names;
        for (SCollectable* item : list) {
            auto* m = static_cast<SLayerMapping*>(item);
            names.push_back(std::string(m->itsName.data()) + "=" + m->itsTechLayerName.data());
        }
        std::sort(names.begin(), names.end());
        return names;
    }

    QTemporaryDir itsDir;
    SGdsLayerFile file;
};

using Strings = std::vector<std::string>;

} // namespace

TEST_F(LayerFile, EveryRefusalNamesTheFileAndTheLine)
{
    const char* const cases[][2] = {
        {"\"\" metal_boundary 1 0 1 M", "Name token read failed"},
        {"name", "Purpose token read failed"},
        {"name metal 1 0 1 M", "Invalid purpose string (\"metal\")"},
        {"name via x 0 1 M", "StreamLayerNumber token read failed\n"},
        {"name via 1 1.5 1 M", "DataTypeNumber token read failed\n"},
        {"name via 1 0", "GeoNumber token read failed"},
        {"name via 1 0 level M", "Invalid GeoNumber string"},
        {"name via 1 0 -1 M", "Invalid GeoNumber string"},
        {"name via 1 0 1", "MapName token read failed"},
        {"name via 1 0 1 M maybe", "Invalid mapped value (\"maybe\")"},
        {"name via 1 0 1 M on 2x", "Invalid ToGeoNumber string"},
        {"name boundary 1 0 1 M on 2", "GeoNumber is not the same as the ToGeoNumber"},
        {"name boundary 1 0 1 M on gnd", "GeoNumber is not the same as the ToGeoNumber"},
        {"name hole_boundary 1 0 top M", "GeoNumber may not be TOP"},
        {"name via 1 0 top M", "Invalid GeoNumber string, value may not be TOP"},
        {"name via 1 0 2 M on 2", "GeoNumber is the same as the ToGeoNumber"},
        {"name via 1 0 gnd M on ground", "GeoNumber is the same as the ToGeoNumber"},
        {"name via 1 0 top M on TOP", "GeoNumber is the same as the ToGeoNumber"},
    };
    for (const auto& bad : cases) {
        // Comment and blank lines count in the line number.
        EXPECT_EQ(Read("# layers\n\ngood metal_boundary 1 0 1 M\n" + std::string(bad[0]) + "\n"),
                  Path() + ":4: " + bad[1])
            << bad[0];
    }

    SErrorMessages* messages = SErrorMessages::Instance();
    ASSERT_TRUE(messages->LoadFile(SString(GDS_SOURCE_DIR "/resource/strings_gds.h")));
    ASSERT_TRUE(messages->LoadFile(SString(GDS_SOURCE_DIR "/resource/strings_util.h")));
    EXPECT_FALSE(file.Read(SString(Path("none.lay").c_str())));
    EXPECT_EQ(std::string(file.GetErrorText().data()), "Unable to open the layer file " + Path("none.lay"));
    EXPECT_FALSE(file.Write(SString(Path("no/dir.lay").c_str())));
    EXPECT_EQ(std::string(file.GetErrorText().data()), "Unable to write the file " + Path("no/dir.lay"));
    messages->ClearAll();
}

TEST_F(LayerFile, WordsFieldsAndDefaults)
{
    EXPECT_EQ(Read("# nothing here\n\n   \n"), "");
    EXPECT_EQ(file.Entries(), 0u);

    ASSERT_EQ(Read("m BOUNDARY 7 3 2 \"Copper  \" # the comment\n"), "");
    SGdsLayerMapping* m = Only();
    EXPECT_EQ(m->itsPurpose, kPurposeMetal);
    EXPECT_EQ(m->itsStreamLayer * 10 + m->itsStreamDatatype, 73);
    EXPECT_EQ(m->itsGeoNumber.GetValue() * 10 + m->itsToGeoNumber.GetValue(), 22);
    EXPECT_EQ(m->itsMapName, SString("Copper"));
    EXPECT_TRUE(m->itsMapped);
    EXPECT_EQ(m->itsTechLayerName, SString("Stream7:3"));
    EXPECT_EQ(m->itsLevelCount, 3u);

    const char* words[] = {"metal_boundary", "boundary", "brick_boundary", "via", "WALL_PORT",
                           "substrate", "hole_boundary", "undefined_boundary"};
    const int purposes[] = {0, 0, 1, 2, 3, 4, 5, 6};
    for (int i = 0; i < 8; ++i) {
        ASSERT_EQ(Read(std::string("x ") + words[i] + " 1 0 1 M\n"), "") << words[i];
        EXPECT_EQ(Only()->itsPurpose, purposes[i]) << words[i];
    }
}

TEST_F(LayerFile, ViaLevels)
{
    // Levels, then: ground, from, kind of the far end, far level (-1: none).
    struct { const char* levels; bool ground; int from, kind, to; } const cases[] = {
        {"3 M", false, 3, kLevelNumber, 2},       {"0 M", false, 0, kLevelTop, -1},
        {"gnd M", true, -1, kLevelAboveGround, -1}, {"5 M on top", false, 5, kLevelTop, -1},
        {"top M on 5", false, 5, kLevelTop, -1},    {"TOP M on GND", true, -1, kLevelTop, -1},
        {"2 M on 6", false, 2, kLevelNumber, 6},    {"4 M on gnd", false, 4, kLevelGround, -1},
    };
    for (const auto& via : cases) {
        ASSERT_EQ(Read(std::string("v via 1 0 ") + via.levels + "\n"), "") << via.levels;
        SGdsLayerMapping* m = Only();
        EXPECT_EQ(m->itsGround, via.ground) << via.levels;
        EXPECT_EQ(m->itsGeoNumber.IsValid() ? m->itsGeoNumber.GetValue() : -1, via.from) << via.levels;
        EXPECT_EQ(m->itsToLevelKind, via.kind) << via.levels;
        EXPECT_EQ(m->itsToGeoNumber.IsValid() ? m->itsToGeoNumber.GetValue() : -1, via.to) << via.levels;
    }
}

TEST_F(LayerFile, LookupsAndDefaultNamesOfSharedPairs)
{
    ASSERT_EQ(Read("m metal_boundary 5 0 2 M\n"
                   "v via 5 0 3 M\n"
                   "g brick_boundary 5 0 gnd M off\n"
                   "t via 5 0 0 M\n"
                   "u via 5 0 gnd M\n"
                   "h hole_boundary 5 0 7 M off\n"
                   "s substrate 5 0 1 M\n"
                   "n metal_boundary 5 0 4 M on 4 Named\n"
                   "alone metal_boundary 6 0 1 M off\n"),
              "");
    SOrdered list;
    file.GetByPurpose(list, kPurposeMetal);
    EXPECT_EQ(Names(list), (Strings{"alone=Stream6:0", "m=Stream5:0_2_m", "n=Named"}));
    // The highest level is 7, so the level above ground is 7.
    list.clear();
    file.GetMappings(list, 5, 0);
    EXPECT_EQ(Names(list), (Strings{"m=Stream5:0_2_m", "n=Named", "s=Stream5:0_1_p", "t=Stream5:0_0_T_v",
                                    "u=Stream5:0_G_7_v", "v=Stream5:0_3_2_v"}));
    list.clear();
    file.GetMappings(list, 5, 0, kPurposeBrick);
    EXPECT_TRUE(list.isEmpty());
    file.GetMappings(list, 6, 0);
    file.GetMappings(list, 4, 0);
    EXPECT_TRUE(list.isEmpty());
    EXPECT_EQ(file.Find(6, 0), nullptr);
    file.GetByPurpose(list, kPurposeHole);
    EXPECT_EQ(Names(list), Strings{"h=Stream5:0_7_h"});
    list.clear();
    file.GetMapped(list);
    EXPECT_EQ(list.entries(), 6u);
}

TEST_F(LayerFile, WrittenFileReadsBackUnchanged)
{
    ASSERT_EQ(Read("\"two words\" via 9 1 gnd \"Via metal\" on\n"
                   "top via 3 0 top \"\" off 2 \"Top via\"\n"
                   "g BOUNDARY 1 2 GND gold\n"
                   "p wall_port 2 0 4 M OFF 4\n"
                   "d via 2 1 5 M\n"),
              "");
    ASSERT_TRUE(file.Write(SString(Path("written.lay").c_str())));
    EXPECT_EQ(Load("written.lay"), "g metal_boundary 1 2 gnd \"gold\" on gnd \"Stream1:2\"\n"
                                   "p wall_port 2 0 4 \"M\" off 4 \"Stream2:0\"\n"
                                   "d via 2 1 5 \"M\" on 4 \"Stream2:1\"\n"
                                   "top via 3 0 2 \"Unknown\" off TOP \"Top via\"\n"
                                   "\"two words\" via 9 1 gnd \"Via metal\" on \"\" \"Stream9:1\"\n");
    SGdsLayerFile again;
    ASSERT_TRUE(again.Read(SString(Path("written.lay").c_str()))) << again.GetErrorText().data();
    ASSERT_TRUE(again.Write(SString(Path("rewritten.lay").c_str())));
    EXPECT_EQ(Load("rewritten.lay"), Load("written.lay"));
}

TEST_F(LayerFile, VeryLongLinesEndInAResult)
{
    ASSERT_EQ(Read(std::string(100000, 'n') + " via 1 0 2 M\n"), "");
    EXPECT_EQ(Only()->itsName.length(), 100000);
    EXPECT_EQ(Read(std::string(100000, '7') + "\n"), Path() + ":1: Purpose token read failed");
    std::string tokens;
    for (int i = 0; i < 50000; ++i)
        tokens += "1 ";
    EXPECT_EQ(Read(tokens + "\n"), Path() + ":1: Invalid purpose string (\"1\")");
    ASSERT_EQ(Read("q metal_boundary 1 0 1 \"" + std::string(100000, ' ') + "\"\n"), "");
    EXPECT_EQ(Only()->itsMapName, SString("Unknown"));
}

TEST_F(LayerFile, ManyLinesOfAPairKeepTheOrderOfInsertingThemOneByOne)
{
    // Among equal pairs the sorted vector puts each insert before whichever equal one its
    // search meets first; a file read in one go must give the lookups that same order.
    std::mt19937 random(7);
    auto names = [](const std::vector<SCollectable*>& list) {
        std::string text;
        for (SCollectable* item : list)
            text += std::string(static_cast<SLayerMapping*>(item)->itsName.data()) + " ";
        return text;
    };
    for (int round = 0; round < 30; ++round) {
        const int lines = 1 + int(random() % 300);
        const int layers = 1 + int(random() % 5);
        std::string text;
        SSortedVector oneByOne;
        for (int i = 0; i < lines; ++i) {
            int layer = int(random() % layers);
            int datatype = int(random() % 2);
            text += "n" + std::to_string(i) + " via " + std::to_string(layer) + " " + std::to_string(datatype) + " 2 M\n";
            auto* mapping = new SGdsLayerMapping(layer, datatype);
            mapping->itsName = SString::format("n%d", i);
            oneByOne.insert(mapping);
        }
        ASSERT_EQ(Read(text), "");
        std::vector<SCollectable*> expected(oneByOne.begin(), oneByOne.end());
        EXPECT_EQ(names(std::vector<SCollectable*>(file.GetAll().begin(), file.GetAll().end())), names(expected));
        for (int layer = 0; layer < layers; ++layer) {
            SOrdered found;
            file.GetMappings(found, layer, 1);
            std::vector<SCollectable*> run;
            for (SCollectable* item : expected) {
                if (static_cast<SGdsLayerMapping*>(item)->itsStreamLayer == layer &&
                    static_cast<SGdsLayerMapping*>(item)->itsStreamDatatype == 1)
                    run.push_back(item);
            }
            EXPECT_EQ(names(std::vector<SCollectable*>(found.begin(), found.end())), names(run));
        }
        oneByOne.clearAndDestroy();

        // Keys changed in place and sorted anew: as if each were inserted again in turn.
        for (size_t i = 0; i < file.Entries(); ++i)
            static_cast<SGdsLayerMapping*>(file.At(i))->itsStreamDatatype = 0;
        SSortedVector again;
        for (SCollectable* item : file.GetAll())
            again.insert(item);
        file.Rebuild();
        EXPECT_EQ(names(std::vector<SCollectable*>(file.GetAll().begin(), file.GetAll().end())),
                  names(std::vector<SCollectable*>(again.begin(), again.end())));
        // Lookups see the keys as they are now, the pair looked up last before included.
        for (int layer = layers - 1; layer >= 0; --layer) {
            SOrdered found;
            file.GetMappings(found, layer, 1);
            EXPECT_TRUE(found.isEmpty());
            file.GetMappings(found, layer, 0);
            std::vector<SCollectable*> run;
            for (SCollectable* item : again)
                if (static_cast<SGdsLayerMapping*>(item)->itsStreamLayer == layer)
                    run.push_back(item);
            EXPECT_EQ(names(std::vector<SCollectable*>(found.begin(), found.end())), names(run));
        }
        again.clear();
    }
}
