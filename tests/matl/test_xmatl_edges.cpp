// Outcomes the format pins down: what is passed over, what a small element means, and the
// failure (number and line) of each kind of bad input.

#include "test_xmatl_support.h"

namespace {

class XmatlEdges : public XmatlTest {
protected:
  bool ReadText(SXmatl& xmatl, const std::string& text) { return xmatl.Read(WriteFile("edge.stf", text)); }
};

const char kStack[] =
    "<public><materials><dielectric name=\"Air\"><params axes=\"xyz\" erel=\"1\"/></dielectric></materials>\n"
    "<stackup><diel name=\"Air\" dielectric=\"Air\" thickness=\"10\">\n"
    "<metal_techlayer name=\"M\" layer_name=\"M1\" thickness=\"1\"/></diel></stackup></public>";

TEST_F(XmatlEdges, PrivencWithoutTheAllowFlagIsSkippedAndThePublicContentComplete) {
  SXmatl xmatl;
  ASSERT_TRUE(ReadText(xmatl, Document(std::string("<privenc><enc>00ff</enc><enc>not hex</enc></privenc>\n") + kStack)))
      << Reports();
  EXPECT_TRUE(xmatl.IsPrivencSeen());
  EXPECT_FALSE(xmatl.HasPrivate());
  ASSERT_EQ(xmatl.GetData().diels.size(), 1u);
  EXPECT_EQ(xmatl.GetData().diels[0].layers.size(), 1u);
  EXPECT_EQ(xmatl.GetData().dielectrics.size(), 1u);
  // No copy of the passed-over element is kept.
  EXPECT_EQ(WrittenText(xmatl).find("privenc"), std::string::npos);
}

TEST_F(XmatlEdges, IgnoredLayersLeaveNoTrace) {
  SXmatl with;
  ASSERT_TRUE(ReadText(with, Document(
                                 "<public><stackup><diel name=\"A\" dielectric=\"D\">\n"
                                 "<metal_techlayer ignore=\"true\" color_pattern=\"x\"><map gds_stream=\"-4\"/></metal_techlayer>\n"
                                 "</diel><vias><via_techlayer ignore=\"True\"/></vias></stackup></public>")))
      << Reports();
  SXmatl without;
  ASSERT_TRUE(ReadText(without, Document("<public><stackup><diel name=\"A\" dielectric=\"D\"/></stackup></public>")));
  EXPECT_TRUE(with.GetData().diels[0].layers.empty());
  EXPECT_TRUE(with.GetData().vias.empty());
  EXPECT_TRUE(with.IsSameXmatl(without));
  EXPECT_EQ(WrittenText(with), WrittenText(without));
}

TEST_F(XmatlEdges, APrivateChildSetsHasPrivateWithoutTheAttribute) {
  SXmatl xmatl;
  ASSERT_TRUE(ReadText(xmatl, Document("<private/>")));
  EXPECT_TRUE(xmatl.HasPrivate());
  SXmatl other;
  ASSERT_TRUE(ReadText(other, Document("", "version=\"1\" has_private=\"True\"")));
  EXPECT_TRUE(other.HasPrivate());
  SXmatl neither;
  ASSERT_TRUE(ReadText(neither, Document("", "version=\"1\" has_private=\"no\"")));
  EXPECT_FALSE(neither.HasPrivate());
}

TEST_F(XmatlEdges, AnEmptyPublicElementReads) {
  SXmatl xmatl;
  EXPECT_TRUE(ReadText(xmatl, Document("<public/>"))) << Reports();
  EXPECT_TRUE(ReadText(xmatl, Document("<public></public><unknown><deeper a=\"1\"/></unknown>"))) << Reports();
  EXPECT_TRUE(itsCapture->Entries().empty()) << Reports();
}

TEST_F(XmatlEdges, AMapWithOnlyAStreamHasDatatypeZero) {
  SXmatl xmatl;
  ASSERT_TRUE(ReadText(xmatl, Document("<public><stackup><diel name=\"A\" dielectric=\"D\">"
                                       "<metal_techlayer name=\"M\"><map gds_stream=\"7\"/></metal_techlayer>"
                                       "</diel></stackup></public>")));
  const SXmatlMap& map = xmatl.GetData().diels[0].layers[0].map;
  EXPECT_EQ(map.gdsStream, 7);
  EXPECT_EQ(map.gdsDatatype, 0);
  EXPECT_NE(WrittenText(xmatl).find("<map gds_stream=\"7\" gds_datatype=\"0\"/>"), std::string::npos);
  // Without any mapping the element is left out.
  xmatl.Data().diels[0].layers[0].map = SXmatlMap();
  EXPECT_EQ(WrittenText(xmatl).find("<map"), std::string::npos);
}

TEST_F(XmatlEdges, ADielMapListSplitsAtBlanksAndCommas) {
  SXmatl xmatl;
  ASSERT_TRUE(ReadText(xmatl, Document("<private><diel_map><dielmap name=\"m\" pub_diel=\"P\" "
                                       "priv_diel_list=\" a,b  c ,,d\"/></diel_map></private>")));
  ASSERT_EQ(xmatl.GetData().dielMaps.size(), 1u);
  EXPECT_EQ(xmatl.GetData().dielMaps[0].privateDiels, QStringList({"a", "b", "c", "d"}));
  EXPECT_NE(WrittenText(xmatl).find("priv_diel_list=\"a, b, c, d\""), std::string::npos);
}

TEST_F(XmatlEdges, AFileThatCantBeOpenedIs20504) {
  SXmatl xmatl;
  EXPECT_FALSE(xmatl.Read(Path("missing.stf")));
  EXPECT_EQ(Errors(), std::vector<int>({20504}));
  EXPECT_NE(FirstText().find("missing.stf"), std::string::npos) << FirstText();
  EXPECT_FALSE(xmatl.IsReadOk());
}

TEST_F(XmatlEdges, ARootOfAnotherNameIs20505WithTheParserError) {
  SXmatl xmatl;
  EXPECT_FALSE(ReadText(xmatl, "<?xml version=\"1.0\"?>\n\n<layout version=\"1\"/>\n"));
  EXPECT_EQ(Errors(), std::vector<int>({20505}));
  EXPECT_NE(FirstText().find("edge.stf, line 3"), std::string::npos) << FirstText();
  EXPECT_NE(FirstText().find("Not a proper velora technology material file"), std::string::npos) << FirstText();
}

// One bad element or attribute each: the number raised and the line it names.
TEST_F(XmatlEdges, EveryFailureNamesItsNumberAndLine) {
  const struct {
    const char* body;
    int number;
  } cases[] = {
      {"<source>\n<src value=\"v\"/></source>", 20506},
      {"<units\nlunit=\"furlong\"/>", 20507},
      {"<comments>\n<line>text<b/></line></comments>", 20508},
      {"<public><variables>\n<var name=\"a\" value=\"1\" units=\"HOURS\"/></variables></public>", 20544},
      {"<public><materials>\n<conductor condspec=\"cond\" cond=\"1\"/></materials></public>", 20518},
      {"<public><materials>\n<conductor name=\"c\" condspec=\"copper\"/></materials></public>", 20519},
      {"<public><materials>\n<conductor name=\"c\" condspec=\"cond\"/></materials></public>", 20520},
      {"<public><materials>\n<conductor name=\"c\" condspec=\"rsvy\" rsvy=\"x\"/></materials></public>", 20521},
      {"<public><materials>\n<conductor name=\"c\" condspec=\"shres\"/></materials></public>", 20522},
      {"<public><materials>\n<conductor name=\"c\" condspec=\"rpv\"/></materials></public>", 20523},
      {"<public><materials>\n<conductor name=\"c\" condspec=\"res\" rdc=\"\"/></materials></public>", 20575},
      {"<public><materials>\n<conductor name=\"c\" condspec=\"rdcrrf\" rdc=\"1\"/></materials></public>", 20576},
      {"<public><materials>\n<conductor name=\"c\" condspec=\"sense\"/></materials></public>", 20577},
      {"<public><materials>\n<conductor name=\"c\" condspec=\"general\" rdc=\"1\" rrf=\"1\" xdc=\"1\"/></materials></public>",
       20578},
      {"<public><materials>\n<dielectric/></materials></public>", 20536},
      {"<public><materials>\n<dielectric name=\"d\" anisotropic=\"maybe\"/></materials></public>", 20566},
      {"<public><materials><dielectric name=\"d\">\n<params axes=\"w\"/></dielectric></materials></public>", 20537},
      {"<public><materials><dielectric name=\"d\"><params axes=\"xyz\"/>\n<params axes=\"z\"/></dielectric></materials></public>",
       20537},
      {"<public><materials><dielectric name=\"d\">\n<params axes=\"x\" erel=\"e\"/></dielectric></materials></public>", 20538},
      {"<public><materials><dielectric name=\"d\">\n<params axes=\"x\" mrel=\"m\"/></dielectric></materials></public>", 20539},
      {"<public><materials><dielectric name=\"d\">\n<params axes=\"x\" tane=\"t\"/></dielectric></materials></public>", 20540},
      {"<public><materials><dielectric name=\"d\">\n<params axes=\"x\" tanm=\"t\"/></dielectric></materials></public>", 20541},
      {"<public><materials><dielectric name=\"d\">\n<params axes=\"x\" cond=\"c\"/></dielectric></materials></public>", 20542},
      {"<public><materials><dielectric name=\"d\" cond_res=\"rsvy\">\n<params axes=\"x\" rsvy=\"INF\"/></dielectric></materials></public>",
       20543},
      {"<public><mesh_defs>\n<mesh name=\"m\" type=\"metal\" xmin=\"0\"/></mesh_defs></public>", 20545},
      {"<public><mesh_defs>\n<mesh name=\"m\" type=\"via\" fill_type=\"staircase\"/></mesh_defs></public>", 20631},
      {"<public><mesh_defs>\n<mesh name=\"m\" type=\"via\" pads=\"yes\"/></mesh_defs></public>", 20630},
      {"<public><metal_model_defs>\n<metal_model name=\"m\" model_type=\"wire\"/></metal_model_defs></public>", 20546},
      {"<public><metal_model_defs>\n<via_model name=\"v\" volume_type=\"hollow\"/></metal_model_defs></public>", 20547},
      {"<private><bias_defs>\n<bias/></bias_defs></private>", 20548},
      {"<public><stackup>\n<top material=\"\"/></stackup></public>", 20582},
      {"<public><stackup>\n<bottom model=\"\"/></stackup></public>", 20583},
      {"<public><stackup>\n<diel dielectric=\"d\"/></stackup></public>", 20526},
      {"<public><stackup>\n<diel name=\"a\"/></stackup></public>", 20525},
      {"<public><stackup>\n<diel name=\"a\" dielectric=\"d\" is_conformal=\"1\"/></stackup></public>", 20527},
      {"<public><stackup>\n<diel name=\"a\" dielectric=\"d\" thickness=\"-1\"/></stackup></public>", 20528},
      {"<public><stackup>\n<diel name=\"a\" dielectric=\"d\" zpart=\"2.5\"/></stackup></public>", 20529},
      {"<public><stackup>\n<diel name=\"a\" dielectric=\"d\" measured_from=\"\"/></stackup></public>", 20530},
      {"<public><stackup>\n<diel name=\"a\" dielectric=\"d\" associated_cond=\"\"/></stackup></public>", 20531},
      {"<public><stackup>\n<diel name=\"a\" dielectric=\"d\" sidewall_thickness=\"s\"/></stackup></public>", 20532},
      {"<public><stackup>\n<diel name=\"a\" dielectric=\"d\" topwall_thickness=\"s\"/></stackup></public>", 20533},
      {"<public><stackup>\n<diel name=\"a\" dielectric=\"d\" bottomwall_thickness=\"s\"/></stackup></public>", 20565},
      {"<public><stackup><diel name=\"a\" dielectric=\"d\">\n<via_techlayer/></diel></stackup></public>", 20534},
      {"<private><stackup><diel name=\"a\" dielectric=\"d\">\n<other/></diel></stackup></private>", 20535},
      {"<public><stackup><diel name=\"a\" dielectric=\"d\">\n<metal_techlayer ignore=\"maybe\"/></diel></stackup></public>", 20579},
      {"<public><stackup><diel name=\"a\" dielectric=\"d\">\n<metal_techlayer/></diel></stackup></public>", 20580},
      {"<public><stackup><diel name=\"a\" dielectric=\"d\">\n<metal_techlayer name=\"m\" material=\"\"/></diel></stackup></public>",
       20581},
      {"<public><stackup><diel name=\"a\" dielectric=\"d\">\n<metal_techlayer name=\"m\" model=\"\"/></diel></stackup></public>",
       20582},
      {"<public><stackup><diel name=\"a\" dielectric=\"d\">\n<metal_techlayer name=\"m\" thickness=\"t\"/></diel></stackup></public>",
       20584},
      {"<public><stackup><diel name=\"a\" dielectric=\"d\">\n<metal_techlayer name=\"m\" color_pattern=\"-1\"/></diel></stackup></public>",
       20587},
      {"<public><stackup><diel name=\"a\" dielectric=\"d\">\n<metal_techlayer name=\"m\" direction=\"left\"/></diel></stackup></public>",
       20588},
      {"<public><stackup><diel name=\"a\" dielectric=\"d\"><metal_techlayer name=\"m\"><map/>\n<map/></metal_techlayer></diel></stackup></public>",
       20589},
      {"<public><stackup><diel name=\"a\" dielectric=\"d\"><metal_techlayer name=\"m\">\n<map gds_stream=\"-1\"/></metal_techlayer></diel></stackup></public>",
       20590},
      {"<public><stackup><diel name=\"a\" dielectric=\"d\"><metal_techlayer name=\"m\">\n<map gds_stream=\"1\" gds_datatype=\"d\"/></metal_techlayer></diel></stackup></public>",
       20591},
      {"<public><stackup><diel name=\"a\" dielectric=\"d\">\n<brick_techlayer name=\"b\"/></diel></stackup></public>", 20550},
      {"<public><stackup><vias>\n<via_techlayer ignore=\"no\"/></vias></stackup></public>", 20617},
      {"<public><stackup><vias>\n<via_techlayer from=\"a\" to=\"b\"/></vias></stackup></public>", 20618},
      {"<public><stackup><vias>\n<via_techlayer name=\"v\" material=\"\"/></vias></stackup></public>", 20583},
      {"<public><stackup><vias>\n<via_techlayer name=\"v\" model=\"\"/></vias></stackup></public>", 20620},
      {"<public><stackup><vias>\n<via_techlayer name=\"v\" color_pattern=\"p\" from=\"a\" to=\"b\"/></vias></stackup></public>",
       20624},
      {"<public><stackup><vias>\n<via_techlayer name=\"v\" to=\"b\"/></vias></stackup></public>", 20625},
      {"<public><stackup><vias>\n<via_techlayer name=\"v\" from=\"a\"/></vias></stackup></public>", 20626},
      {"<public><stackup><vias><via_techlayer name=\"v\" from=\"a\" to=\"b\"><map/>\n<map/></via_techlayer></vias></stackup></public>",
       20627},
      {"<public><stackup><vias><via_techlayer name=\"v\" from=\"a\" to=\"b\">\n<map gds_stream=\"s\"/></via_techlayer></vias></stackup></public>",
       20628},
      {"<public><stackup><vias><via_techlayer name=\"v\" from=\"a\" to=\"b\">\n<map gds_stream=\"1\" gds_datatype=\"-2\"/></via_techlayer></vias></stackup></public>",
       20629},
      {"<private><diel_map>\n<dielmap pub_diel=\"p\"/></diel_map></private>", 20515},
      {"<public>\n<unclosed></public>", 20552},
  };
  for (const auto& test : cases) {
    itsCapture->Clear();
    SXmatl xmatl;
    // The root takes line 2, the body begins on line 3 and its bad part is on line 4.
    EXPECT_FALSE(ReadText(xmatl, Document(test.body))) << test.body;
    EXPECT_EQ(Errors(), std::vector<int>({test.number})) << test.body << "\n" << Reports();
    EXPECT_NE(FirstText().find("edge.stf, line 4"), std::string::npos) << test.body << "\n" << FirstText();
  }
}

TEST_F(XmatlEdges, AMissingVersionIsNoTechnologyFile) {
  SXmatl xmatl;
  EXPECT_FALSE(ReadText(xmatl, Document("<public/>", "has_private=\"true\"")));
  EXPECT_EQ(Errors(), std::vector<int>({20505}));
}

TEST_F(XmatlEdges, TextThatIsNoXmlEndsTheReadWithItsLine) {
  const char* const texts[] = {"", "not xml at all", "<technology_file version=\"1\">\n<public>\n",
                               "<technology_file version=\"1\"/>\n<second/>"};
  for (const char* text : texts) {
    itsCapture->Clear();
    SXmatl xmatl;
    EXPECT_FALSE(ReadText(xmatl, text)) << text;
    ASSERT_EQ(Errors().size(), 1u) << text;
    EXPECT_TRUE(Errors()[0] == 20552 || Errors()[0] == 20505) << text << " " << Errors()[0];
    EXPECT_NE(FirstText().find("edge.stf, line "), std::string::npos) << FirstText();
  }
}

}  // namespace
