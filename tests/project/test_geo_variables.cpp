// Variables of the layout: VALVAR, VCNSTR and GEOVAR in GEO, bound, evaluated, applied.
#include "ProjectTestSupport.h"

#include "SCircuit.h"
#include "SGeoVar.h"
#include "SGeometryBlock.h"
#include "SLevel.h"
#include "SMetalPolygon.h"
#include "SVariable.h"

#include <vector>

namespace {

const char* const kBox =
    "TMET \"Lossless\" 0 SUP 0 0 0 0\n"
    "BMET \"Lossless\" 0 SUP 0 0 0 0\n"
    "BOX 1 100 100 20 20 20 0\n"
    "      50 1 1 0 0 0 0 \"Air\"\n"
    "      10 9.8 1 0 0 0 0 \"Alumina\"\n";

// Two rectangles 10 apart: id 1 from x 0 to 10, id 2 from x 20 to 30.
const char* const kPolygons =
    "LORGN 0 100 U\n"
    "NUM 2\n"
    "0 5 -1 N 1 1 1 100 100 0 0 0 Y\n"
    "0 0\n10 0\n10 5\n0 5\n0 0\nEND\n"
    "0 5 -1 N 2 1 1 100 100 0 0 0 Y\n"
    "20 0\n30 0\n30 5\n20 5\n20 0\nEND\n";

// The gap between the rectangles as a dimension parameter: REF1 is vertex 1 of polygon 1,
// REF2 vertex 0 of polygon 2, and the whole of polygon 2 moves with REF2.
std::string GapParameter(const std::string& name = "W", const std::string& extra = "") {
  return "GEOVAR " + name +
         " STD XDIR 1\n"
         "POS 15 -2\n"
         "NOM 10\n"
         "REF1 POLY 1 1\n1\n"
         "REF2 POLY 2 1\n0\n" +
         extra +
         "PS1 0\n"
         "PS2 1\n"
         "POLY 2 0\n"
         "END\n";
}

class GeoVariablesTest : public GeoTest {
protected:
  static std::string Body(const std::string& variables) { return std::string(kBox) + variables + kPolygons; }

  // Reads the body; the project stays for inspection.
  SCircuit* Read(SProject& project, const std::string& variables) {
    EXPECT_TRUE(ReadText(project, Project(Body(variables)))) << project.GetErrors().ErrorText().data();
    return project.GetGeometryBlock()->GetCircuit();
  }

  static SPoint Vertex(SCircuit* circuit, int polygon, int vertex) {
    std::vector<SEnclosure*> shapes;
    circuit->CollectPolygons(shapes);
    return static_cast<SMetalPolygon*>(shapes[static_cast<size_t>(polygon)])->GetVertex(vertex);
  }

  static std::string Warnings(const SProject& project) { return project.GetErrors().ErrorText().data(); }
};

TEST_F(GeoVariablesTest, EveryVariableLineReadsAndWritesBackAsItStands) {
  const std::string variables =
      "VALVAR W LNG 10 \"width of the gap\"\n"
      "VCNSTR EM W 5 20 0.5\n"
      "VCNSTR TUNE W 8 12 ON 0.25 LOG\n" +
      GapParameter() +
      "VALVAR L LNG \"W*2\" \"\"\n"
      "VALVAR S NONE <HIDDEN> \"kept secret\"\n";
  const std::string body = Body(variables);
  EXPECT_EQ(GeoBody(RoundTrip(Project(body))), body);
}

TEST_F(GeoVariablesTest, ReadingNormalisesUnitsConstraintsAndDefaults) {
  // UNLS reads as NONE; a constraint that is off or at its default is not written; a name
  // with a blank can't stand in an equation and is repaired; a parameter without its VALVAR
  // gets one, with a description of its own.
  const std::string variables =
      "VALVAR \"two words\" NONE 3 \"blank in the name\"\n"
      "VALVAR U UNLS 2 \"no unit\"\n"
      "VCNSTR OPT U 1 2 OFF\n"
      "VCNSTR EM U 0 UNDEF 0\n" +
      GapParameter();
  const std::string written = GeoBody(RoundTrip(Project(Body(variables))));
  EXPECT_EQ(written, std::string(kBox) + "VALVAR two_words NONE 3 \"blank in the name\"\n" +
                         "VALVAR U NONE 2 \"no unit\"\n" +
                         "VALVAR W LNG 10 \"Dim. Param. W\"\n" + GapParameter() + kPolygons);
}

TEST_F(GeoVariablesTest, AParameterIsBoundToItsVariableAndTakesTheNominal) {
  SProject project;
  SCircuit* circuit = Read(project, GapParameter());
  ASSERT_NE(circuit, nullptr);
  SVariable* w = circuit->FindVariable("W");
  ASSERT_NE(w, nullptr);
  EXPECT_EQ(w->GetUnitType(), SValueVar::Length);
  EXPECT_DOUBLE_EQ(w->GetValue(), 10.0);
  std::vector<SGeoVar*> geoVars;
  w->GetGeoVars(geoVars);
  ASSERT_EQ(geoVars.size(), 1u);
  double nominal = 0;
  ASSERT_TRUE(geoVars[0]->ComputeNominal(*circuit, nominal));
  EXPECT_DOUBLE_EQ(nominal, 10.0);
  // A value within the nominal tolerance is the same; one beyond it isn't.
  EXPECT_TRUE(w->TrySetNominal(10.0 * (1 + 1e-7)));
  EXPECT_FALSE(w->TrySetNominal(10.1));
  EXPECT_TRUE(w->IsSameValue(10.0));
  EXPECT_FALSE(w->IsSameValue(10.5));
}

TEST_F(GeoVariablesTest, AnEquationMovesThePointsOfItsParameter) {
  SProject project;
  SCircuit* circuit = Read(project, "VALVAR W LNG \"G+2\" \"\"\nVALVAR G LNG 10 \"\"\n" + GapParameter());
  ASSERT_NE(circuit, nullptr);
  EXPECT_DOUBLE_EQ(circuit->FindVariable("W")->GetValue(), 12.0);
  // Polygon 2 as a whole moved right by 2; polygon 1 stayed.
  EXPECT_EQ(Vertex(circuit, 1, 0), SPoint(22, 0));
  EXPECT_EQ(Vertex(circuit, 1, 2), SPoint(32, 5));
  EXPECT_EQ(Vertex(circuit, 0, 1), SPoint(10, 0));
  std::vector<SGeoVar*> geoVars;
  circuit->FindVariable("W")->GetGeoVars(geoVars);
  EXPECT_DOUBLE_EQ(geoVars[0]->GetNominal(), 12.0);
}

TEST_F(GeoVariablesTest, SymmetricAndScaledParametersMoveBothSides) {
  // SYM: each side moves by half the change, away from the middle.
  SProject symmetric;
  SCircuit* circuit = Read(symmetric, "VALVAR W LNG \"7*2\" \"\"\n"
                                      "GEOVAR W SYM XDIR 1 NSCD\nPOS 0 0\nNOM 10\n"
                                      "REF1 POLY 1 1\n1\nREF2 POLY 2 1\n0\n"
                                      "PS1 1\nPOLY 1 0\nPS2 1\nPOLY 2 0\nEND\n");
  ASSERT_NE(circuit, nullptr);
  EXPECT_EQ(Vertex(circuit, 0, 1), SPoint(8, 0));
  EXPECT_EQ(Vertex(circuit, 0, 0), SPoint(-2, 0));
  EXPECT_EQ(Vertex(circuit, 1, 0), SPoint(22, 0));

  // SCUNI about REF1: polygon 2 stretches along x by (4 + 10) / 10 from x = 10.
  SProject scaled;
  circuit = Read(scaled, "VALVAR W LNG \"7*2\" \"\"\n"
                         "GEOVAR W ANC XDIR 1 SCUNI\nPOS 0 0\nNOM 10\n"
                         "REF1 POLY 1 1\n1\nREF2 POLY 2 1\n0\n"
                         "PS1 0\nPS2 1\nPOLY 2 0\nEND\n");
  ASSERT_NE(circuit, nullptr);
  EXPECT_EQ(Vertex(circuit, 1, 0), SPoint(24, 0));
  EXPECT_EQ(Vertex(circuit, 1, 1), SPoint(38, 0));
  EXPECT_EQ(Vertex(circuit, 1, 2), SPoint(38, 5));
}

TEST_F(GeoVariablesTest, BrokenParametersNameTheirMessageAndLine) {
  // The GEOVAR line is line 11 of the project: FTYP, DIM, LNG, END DIM, GEO, five box lines.
  const std::string head = "GEOVAR W STD XDIR 1\n";
  const struct {
    const char* what;
    std::string lines;
    int message;
    int line;
  } cases[] = {
      {"unknown word", head + "POS 0 0\nWHAT 1\nEND\n", 6024, 13},
      {"kind", "GEOVAR W LONG XDIR 1\nEND\n", 6032, 11},
      {"direction", "GEOVAR W STD ZDIR 1\nEND\n", 6033, 11},
      {"scale mode", "GEOVAR W ANC XDIR 1 SCALED\nEND\n", 6037, 11},
      {"nominal", head + "NOM wide\nEND\n", 6133, 12},
      {"point count", head + "PS1 many\nEND\n", 6002, 12},
      {"handle word", head + "REF1 PORT 1 1\n0\nEND\n", 6024, 12},
      {"handle id", head + "REF1 POLY x 1\n0\nEND\n", 6068, 12},
      {"handle count", head + "REF1 POLY 1 -1\nEND\n", 6065, 12},
      {"handle index", head + "REF1 POLY 1 1\nfirst\nEND\n", 6132, 13},
      {"equation", head + "EQN\nEND\n", 6035, 12},
      {"missing polygon", GapParameter().replace(GapParameter().find("POLY 2 0"), 8, "POLY 9 0"), 6028, 11},
      {"missing vertex", GapParameter().replace(GapParameter().find("REF1 POLY 1 1\n1"), 15, "REF1 POLY 1 1\n7"), 6028,
       11},
  };
  for (const auto& c : cases) {
    SProject project;
    EXPECT_FALSE(ReadText(project, Project(Body(c.lines)))) << c.what;
    const SProjectErrorManager& errors = project.GetErrors();
    ASSERT_GE(errors.Count(), 1u) << c.what;
    EXPECT_EQ(errors.Entry(0)->itsMessageId, c.message) << c.what;
    EXPECT_EQ(errors.Entry(0)->itsLine, c.line) << c.what;
  }
  SProject unit;
  EXPECT_FALSE(ReadText(unit, Project(Body("VALVAR W MILES 3 \"\"\n"))));
  EXPECT_EQ(unit.GetErrors().Entry(0)->itsMessageId, 6036);
  SProject kind;
  EXPECT_FALSE(ReadText(kind, Project(Body("VALVAR W LNG 3 \"\"\nVCNSTR SOME W 1 2\n"))));
  EXPECT_EQ(kind.GetErrors().Entry(0)->itsMessageId, 6024);
  EXPECT_EQ(kind.GetErrors().Entry(0)->itsLine, 12);
}

TEST_F(GeoVariablesTest, ACircleStopsEvaluationAndAFailureStopsOnlyItsVariable) {
  SProject circle;
  SCircuit* circuit = Read(circle, "VALVAR A LNG \"B+1\" \"\"\nVALVAR B LNG \"C*2\" \"\"\n"
                                   "VALVAR C LNG \"A\" \"\"\nVALVAR D LNG 4 \"\"\n");
  ASSERT_NE(circuit, nullptr);
  EXPECT_TRUE(circuit->HasCircularDefinition());
  EXPECT_EQ(circuit->GetErrorText(), SString("Equations have circular definition"));
  EXPECT_NE(Warnings(circle).find("Equations have circular definition"), std::string::npos) << Warnings(circle);
  EXPECT_DOUBLE_EQ(circuit->FindVariable("A")->GetValue(), 0.0);

  // A plain value is never part of a circle, and a failing equation leaves the others.
  SProject failure;
  circuit = Read(failure, "VALVAR X LNG \"1/Z\" \"\"\nVALVAR Z LNG 0 \"\"\nVALVAR Y LNG \"Z+5\" \"\"\n"
                          "VALVAR V LNG \"Y*2\" \"\"\n");
  ASSERT_NE(circuit, nullptr);
  EXPECT_FALSE(circuit->HasCircularDefinition());
  EXPECT_EQ(circuit->GetErrorText(), SString("Divide by zero in variable X"));
  EXPECT_DOUBLE_EQ(circuit->FindVariable("Y")->GetValue(), 5.0);
  EXPECT_DOUBLE_EQ(circuit->FindVariable("V")->GetValue(), 10.0);
  // The equation itself survives for the next write.
  EXPECT_NE(WriteText(failure).find("VALVAR X LNG \"1/Z\""), std::string::npos);
}

TEST_F(GeoVariablesTest, DependenceFollowsTheEquations) {
  SProject project;
  SCircuit* circuit = Read(project, "VALVAR F LNG \"freq*2\" \"\"\nVALVAR G LNG \"F+1\" \"\"\n"
                                    "VALVAR K LNG \"2*PI\" \"\"\nVALVAR N LNG 3 \"\"\n");
  ASSERT_NE(circuit, nullptr);
  const struct {
    const char* name;
    bool dependent, frequency;
  } cases[] = {{"F", true, true}, {"G", true, true}, {"K", false, false}, {"N", false, false}};
  for (const auto& c : cases) {
    SVariable* variable = circuit->FindVariable(c.name);
    ASSERT_NE(variable, nullptr) << c.name;
    EXPECT_EQ(variable->IsDependent(), c.dependent) << c.name;
    EXPECT_EQ(variable->IsFrequencyDependent(), c.frequency) << c.name;
  }
  EXPECT_NEAR(circuit->FindVariable("K")->GetValue(), 6.283185307179586, 1e-15);
}

TEST_F(GeoVariablesTest, NamesAnEquationCannotUseAreRepairedAndMadeUnique) {
  SProject project;
  SCircuit* circuit =
      Read(project, "VALVAR freq LNG 1 \"\"\nVALVAR _freq LNG 2 \"\"\nVALVAR 1A LNG 3 \"\"\n" + GapParameter("PI"));
  ASSERT_NE(circuit, nullptr);
  std::vector<SVariable*> variables;
  circuit->GetVariables(variables);
  std::vector<std::string> names;
  for (const SVariable* variable : variables) names.push_back(variable->GetName().data());
  EXPECT_EQ(names, (std::vector<std::string>{"_freq_1", "_freq", "_1A", "_PI"}));
  // The parameter follows its variable's new name.
  EXPECT_NE(WriteText(project).find("GEOVAR _PI STD XDIR 1\n"), std::string::npos);
}

}  // namespace

namespace {

std::string SourceFile(const char* path) {
  QFile file(QString(GDS_SOURCE_DIR "/tests/project/") + path);
  if (!file.open(QIODevice::ReadOnly)) return "<missing>";
  return file.readAll().toStdString();
}

// A project as a designer keeps it: variables of every kind with their constraints, a
// dimension parameter and a dimension, frequencies in the older block, parallel subsection
// lengths and an element. It is read where it lies, beside the table its equation names.
TEST_F(GeoVariablesTest, ADesignersProjectComesBackAsTheCurrentFormatHoldsIt) {
  SProject project;
  project.SetFileName(SString(GDS_SOURCE_DIR "/tests/project/data/designer.vel"));
  project.SetProjectType(SProject::GeoFile);
  ASSERT_TRUE(project.Read(0)) << project.GetErrors().ErrorText().data();
  // One warning, for the parallel subsections; the table exists, every equation works out.
  const SProjectErrorManager& errors = project.GetErrors();
  ASSERT_EQ(errors.Count(), 1u) << errors.ErrorText().data();
  EXPECT_EQ(errors.Entry(0)->itsMessageId, 6041);
  SCircuit* circuit = project.GetGeometryBlock()->GetCircuit();
  EXPECT_TRUE(circuit->GetErrorText().isEmpty()) << circuit->GetErrorText().data();
  EXPECT_DOUBLE_EQ(circuit->FindVariable("Len")->GetValue(), 21.5);
  EXPECT_DOUBLE_EQ(circuit->FindVariable("Eps")->GetValue(), 9.9);
  EXPECT_TRUE(circuit->FindVariable("Fq")->IsFrequencyDependent());

  const std::string written = WriteText(project);
  EXPECT_EQ(written, SourceFile("expected/designer.vel"));
  // What the current format holds reads back to itself.
  SProject again;
  EXPECT_TRUE(ReadText(again, written, "designer.vel")) << again.GetErrors().ErrorText().data();
  EXPECT_EQ(WriteText(again), written);
}

}  // namespace
