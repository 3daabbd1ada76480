#include "ProjectTestSupport.h"

#include "SParameterBlock.h"
#include "SValueVar.h"
#include "SValvarLine.h"
#include "SVariableConstraints.h"
#include "SVariableName.h"
#include "SVariablePair.h"
#include "SVariableSpecContainer.h"
#include "SVariableSpecification.h"

#include <QDir>
#include <memory>

namespace {

// Project text read as a file would be, one line at a time.
class TextFile {
public:
  explicit TextFile(const std::string& text) : itsText(QString::fromStdString(text)), itsStream(&itsText), itsFile(&itsStream) {
    itsFile.SetCommentEscape("<");
    itsFile.NextLine();
  }
  SCommentedFile& File() { return itsFile; }

private:
  QString itsText;
  QTextStream itsStream;
  SCommentedFile itsFile;
};

// The VAR block of a written project.
std::string VarBlock(const std::string& text) {
  const size_t begin = text.find("VAR\n");
  const size_t end = text.find("END VAR\n");
  if (begin == std::string::npos || end == std::string::npos) return "<no VAR block>";
  return text.substr(begin, end + 8 - begin);
}

std::string Written(const std::function<void(SProjectStream&)>& write) {
  SProjectStream out;
  write(out);
  return out.Text();
}

}  // namespace

TEST(ValueTextTest, TextsBecomeNumbersOrEquations) {
  struct Case {
    const char* text;
    bool equation;
    double number;
    const char* shown;
  } cases[] = {
      {"=1.5", false, 1.5, "1.5"},  {"", false, 0.0, "0"},           {"  = 7 ", false, 7.0, "7"},
      {"2.5e3", false, 2500, "2500"}, {"W*2", true, 0.0, "W*2"},        {"==3", true, 0.0, "=3"},
      {"1.5 mm", true, 0.0, "1.5 mm"}, {"0.1234567890123456", false, 0.1234567890123456, "0.123456789012346"},
  };
  for (const Case& c : cases) {
    SValueVarDouble value(42.0);
    value.SetFromText(c.text);
    EXPECT_EQ(value.HasEquation(), c.equation) << c.text;
    // Without a project an equation is only held.
    EXPECT_EQ(value.IsHeld(), c.equation) << c.text;
    if (!c.equation) {
      EXPECT_DOUBLE_EQ(value.GetValue(), c.number) << c.text;
    }
    EXPECT_EQ(value.GetText(), SString(c.shown)) << c.text;
  }
}

TEST(ValueTextTest, ValueTokensUndoEscapedQuotesAndKeepHiddenValues) {
  TextFile file("<HIDDEN> \"TABLE1(\\\"a b.txt\\\", freq)\" 3.25");
  SValueVarDouble value(5.0);
  ASSERT_TRUE(value.ReadValueToken(file.File()));
  EXPECT_TRUE(value.IsValueHidden());
  EXPECT_TRUE(value.IsStored());
  EXPECT_DOUBLE_EQ(value.GetValue(), 5.0);
  ASSERT_TRUE(value.ReadValueToken(file.File()));
  EXPECT_EQ(value.GetEquation(), SString("TABLE1(\"a b.txt\", freq)"));
  EXPECT_EQ(value.GetFileNames(), QStringList{"a b.txt"});
  ASSERT_TRUE(value.ReadValueToken(file.File()));
  EXPECT_FALSE(value.HasEquation());
  EXPECT_DOUBLE_EQ(value.GetValue(), 3.25);
  EXPECT_FALSE(value.ReadValueToken(file.File()));
}

TEST(ValueTextTest, ListTextsCutRoundAndHide) {
  SValueVarDouble number(2.71828);
  EXPECT_EQ(number.GetListText(false, 0, 3, false), SString("2.72"));
  EXPECT_EQ(number.GetListText(false, 0, 3, true), SString("3"));
  SValueVarDouble equation;
  equation.SetFromText("width_of_line*2");
  EXPECT_EQ(equation.GetListText(true, 8, 6, false), SString("width..."));
  EXPECT_EQ(equation.GetListText(false, 8, 6, false), SString("width_of_line*2"));
  equation.SetValueHidden(true);
  EXPECT_EQ(equation.GetListText(false, 8, 6, false), SString("<Hidden>"));
  EXPECT_EQ(equation.GetListText(true, 8, 6, false), SString("-"));
}

TEST(ValueTextTest, ScalingTouchesOnlyNumbersOfTheKind) {
  SValueVarDouble length(2.0);
  length.SetUnitKind(SValueVar::Length);
  length.SetWithScale(SValueVar::Frequency, 10.0);
  EXPECT_DOUBLE_EQ(length.GetValue(), 2.0);
  length.SetWithScale(SValueVar::Length, 10.0);
  EXPECT_DOUBLE_EQ(length.GetValue(), 20.0);
}

TEST_F(ProjectTest, EquationsCompileAgainstTheProjectAndOtherwiseWait) {
  SProject project;
  SValueVarDouble value;
  value.SetFromText("2*3");
  EXPECT_TRUE(value.IsHeld());
  EXPECT_EQ(value.GetCalculation(), nullptr);
  value.SetProject(&project);
  ASSERT_TRUE(value.CompileHeldText());
  ASSERT_NE(value.GetCalculation(), nullptr);
  EXPECT_FALSE(value.IsDependent());
  SString reason;
  ASSERT_TRUE(value.Evaluate(reason)) << reason.data();
  EXPECT_DOUBLE_EQ(value.GetValue(), 6.0);

  // A failed compile keeps the old equation and says why.
  EXPECT_FALSE(value.SetEquation("1+", &reason));
  EXPECT_FALSE(reason.isEmpty());
  EXPECT_EQ(value.GetEquation(), SString("2*3"));

  // Text naming a variable the project can't give is held, not lost.
  value.SetFromText("W*2");
  EXPECT_TRUE(value.IsHeld());
  EXPECT_EQ(value.GetText(), SString("W*2"));

  // Scaling works an equation out and scales the number.
  SValueVarDouble length;
  length.SetProject(&project);
  length.SetUnitKind(SValueVar::Length);
  length.SetFromText("1.5*2");
  length.SetWithScale(SValueVar::Length, 10.0);
  EXPECT_FALSE(length.HasEquation());
  EXPECT_DOUBLE_EQ(length.GetValue(), 30.0);

  // Copies carry their own compiled equation.
  SValueVarDouble copy;
  copy.SetProject(&project);
  copy.SetFromText("4/2");
  SValueVarDouble second(copy);
  copy.SetNumber(1.0);
  ASSERT_NE(second.GetCalculation(), nullptr);
  ASSERT_TRUE(second.Evaluate(reason));
  EXPECT_DOUBLE_EQ(second.GetValue(), 2.0);
}

TEST(ValueTextTest, DependenceOfHeldAndCompiledEquations) {
  const std::pair<const char*, bool> cases[] = {
      {"2+3", false}, {"freq*2", true}, {"W+1", true}, {"1.5", false}, {"sqrt(4)", false}};
  for (const auto& c : cases) {
    SValueVarDouble value;
    value.SetFromText(c.first);
    EXPECT_EQ(value.IsDependent(), c.second) << c.first;
    SVariableSpecification list;
    EXPECT_EQ(list.Add("P", c.first)->itsFirstKind, c.second ? 2 : 3) << c.first;
  }
}

TEST(UnitKeywordTest, KeywordsReadInAnyCaseAndUnlsIsNone) {
  const std::pair<const char*, int> cases[] = {{"LNG", 0}, {"freq", 1}, {"Res", 2},  {"IND", 3},  {"CAP", 4},
                                               {"CDVY", 5}, {"RSVY", 6}, {"SRES", 7}, {"OPS", 8},  {"SPM", 9},
                                               {"PHPM", 10}, {"rrf", 11}, {"NONE", 12}, {"UNLS", 12}, {"LENGTH", -1},
                                               {"", -1}};
  for (const auto& c : cases) EXPECT_EQ(SValueVar::UnitKindOf(c.first), c.second) << c.first;
  for (int kind = 0; kind < SValueVar::UnitKindCount; ++kind)
    EXPECT_EQ(SValueVar::UnitKindOf(SValueVar::UnitKeyword(kind)), kind);
  EXPECT_STREQ(SValueVar::UnitKeyword(99), "NONE");
}

TEST_F(ProjectTest, ValvarLinesReadAndWriteBack) {
  struct Case {
    const char* line;
    const char* written;
  } cases[] = {
      {"W LNG 10 \"width\"", "VALVAR W LNG 10 \"width\"\n"},
      {"W UNLS 10", "VALVAR W NONE 10 \"\"\n"},
      {"\"a b\" cap \"L*2\" \"say \\\"hi\\\"\"", "VALVAR \"a b\" CAP \"L*2\" \"say \\\"hi\\\"\"\n"},
      {"S RES <HIDDEN> \"secret\"", "VALVAR S RES <HIDDEN> \"secret\"\n"},
      {"P FREQ 0.1234567890123456789 \"\"", "VALVAR P FREQ 0.123456789012346 \"\"\n"},
  };
  for (const Case& c : cases) {
    TextFile file(c.line);
    SString name;
    SValueVarDouble value;
    SProjectErrorManager errors;
    ASSERT_TRUE(SValvarLine::Read(file.File(), name, value, nullptr, errors)) << c.line;
    EXPECT_TRUE(value.IsStored());
    EXPECT_EQ(errors.Count(), 0u);
    EXPECT_EQ(Written([&](SProjectStream& out) { SValvarLine::Write(out, name, value, nullptr); }), c.written);
  }
}

TEST_F(ProjectTest, AnUnknownUnitKeywordIsError6036) {
  TextFile file("W METRES 10 \"width\"");
  SString name;
  SValueVarDouble value;
  SProjectErrorManager errors;
  EXPECT_FALSE(SValvarLine::Read(file.File(), name, value, nullptr, errors));
  ASSERT_EQ(errors.Count(), 1u);
  EXPECT_EQ(errors.Entry(0)->itsMessageId, 6036u);
  EXPECT_EQ(errors.GetSeverity(), SProjectErrorManager::Error);
}

TEST_F(ProjectTest, EquationFileNamesAreAbsoluteInMemoryAndRelativeInTheFile) {
  WriteFile(Path("data.txt"), "1 2\n");
  SProject project(Path("chip.vel"));
  TextFile file(R"x(T NONE "TABLE1(\"data.txt\", freq) + TABLE2(\"gone.txt\", 1)" "")x");
  SString name;
  SValueVarDouble value;
  SProjectErrorManager errors;
  ASSERT_TRUE(SValvarLine::Read(file.File(), name, value, &project, errors));
  const QString dir = QDir(itsDir.path()).absolutePath();
  EXPECT_EQ(value.GetFileNames(), (QStringList{dir + "/data.txt", dir + "/gone.txt"}));
  // Only the missing file is named, as a warning.
  ASSERT_EQ(errors.Count(), 1u);
  EXPECT_EQ(errors.Entry(0)->itsMessageId, 5318u);
  EXPECT_EQ(errors.GetSeverity(), SProjectErrorManager::Warning);
  EXPECT_TRUE(errors.Entry(0)->itsText.contains("gone.txt"));
  EXPECT_EQ(Written([&](SProjectStream& out) { SValvarLine::Write(out, name, value, &project); }),
            "VALVAR T NONE \"TABLE1(\\\"data.txt\\\", freq) + TABLE2(\\\"gone.txt\\\", 1)\" \"\"\n");
  // Older formats have no equations on the line: the number stands for it.
  SProjectFormat::SetWriteFormat(8);
  EXPECT_EQ(Written([&](SProjectStream& out) { SValvarLine::Write(out, name, value, &project); }),
            "VALVAR T NONE 0 \"\"\n");
}

TEST(NameRuleTest, ReservedAndInvalidNames) {
  const std::pair<const char*, int> invalid[] = {{"freq", -1}, {"FREQ", -1}, {"Sqrt", -1}, {"atan2", -1}, {"srvy", -1},
                                                 {"1A", -2},   {"-x", -2},   {"", -2},     {"A-B", 1},    {"ab c", 2}};
  for (const auto& c : invalid) {
    int code = 0;
    EXPECT_TRUE(SVariableName::IsReservedOrInvalid(c.first, code)) << c.first;
    EXPECT_EQ(code, c.second) << c.first;
  }
  for (const char* name : {"W", "_freq", "freq2", "A_B", "x9"}) {
    int code = 5;
    EXPECT_FALSE(SVariableName::IsReservedOrInvalid(name, code)) << name;
  }
}

TEST(NameRuleTest, RepairAndUniqueNames) {
  const std::pair<const char*, const char*> repairs[] = {
      {"freq", "_freq"}, {"Pi", "_Pi"}, {"A-B", "A_B"}, {"1A", "_1A"}, {"-x y", "__x_y"}, {"W", "W"}};
  for (const auto& c : repairs) {
    SString name(c.first);
    EXPECT_EQ(SVariableName::Repair(name), std::string(c.first) != c.second) << c.first;
    EXPECT_EQ(name, SString(c.second)) << c.first;
  }
  struct Unique {
    const char* name;
    QStringList taken;
    const char* result;
  } uniques[] = {{"X", {"X"}, "X_1"}, {"X_3", {"X_3"}, "X_4"}, {"X", {"X", "X_1"}, "X_2"}, {"Y", {"X"}, "Y"}};
  for (const Unique& c : uniques) {
    SString name(c.name);
    SVariableName::MakeUnique(name, [&](const SString& n) { return c.taken.contains(n.qstring()); });
    EXPECT_EQ(name, SString(c.result)) << c.name;
  }
}

TEST(ConstraintTest, DefaultsAndTheirTexts) {
  SValueVarDouble value;
  EXPECT_FALSE(value.EMConstraints().ShouldWrite());
  EXPECT_FALSE(value.OptConstraints().ShouldWrite());
  EXPECT_FALSE(value.TuningConstraints().ShouldWrite());
  EXPECT_EQ(value.EMConstraints().GetText(), SString("EM,0,UNDEF,I,OFF,AUTO"));
  EXPECT_EQ(value.OptConstraints().GetText(), SString("OPT,UNDEF,UNDEF,O,OFF"));
  EXPECT_EQ(value.TuningConstraints().GetText(), SString("TUNE,UNDEF,UNDEF,T,OFF,UNDEF,LIN"));
  EXPECT_EQ(Written([&](SProjectStream& out) { SValvarLine::Write(out, "W", value, nullptr); }),
            "VALVAR W NONE 0 \"\"\n");
}

TEST(ConstraintTest, ConstraintLinesReadAndWriteBack) {
  struct Case {
    const char* rest;
    const char* written;
  } cases[] = {
      {"OPT W 1 2 OFF", ""},
      {"OPT W 1 2 on", ""},
      {"OPT W 1 2 ON", "VCNSTR OPT W 1 2 ON \n"},
      {"TUNE W 1 5 ON 0.5 LOG", "VCNSTR TUNE W 1 5 ON 0.5 LOG\n"},
      {"TUNE W 1 5 ON 0.5 lin", "VCNSTR TUNE W 1 5 ON 0.5 LOG\n"},
      {"TUNE W 1 5 ON x LIN", "VCNSTR TUNE W 1 5 ON x LIN\n"},
      {"EM W 0 10 AUTO", ""},
      {"EM W 0 10 0", ""},
      {"EM W 0 NONE 0.25", "VCNSTR EM W 0 NONE 0.25\n"},
      {"em W -1 UNDEF fine", "VCNSTR EM W -1 UNDEF fine\n"},
  };
  for (const Case& c : cases) {
    SValueVarDouble value;
    TextFile file(c.rest);
    const auto result = SValvarLine::ReadConstraint(file.File(), [&](const SString& name) {
      return name == "W" ? &value : nullptr;
    });
    EXPECT_EQ(result, SValvarLine::ConstraintRead) << c.rest;
    EXPECT_EQ(Written([&](SProjectStream& out) {
                value.EMConstraints().Write(out, "W");
                value.TuningConstraints().Write(out, "W");
                value.OptConstraints().Write(out, "W");
              }),
              c.written)
        << c.rest;
  }
  SValueVarDouble value;
  TextFile unknownName("OPT Q 1 2 ON");
  EXPECT_EQ(SValvarLine::ReadConstraint(unknownName.File(), [&](const SString&) { return nullptr; }),
            SValvarLine::ConstraintSkipped);
  TextFile unknownKind("SIZE W 1 2");
  EXPECT_EQ(SValvarLine::ReadConstraint(unknownKind.File(), [&](const SString&) { return &value; }),
            SValvarLine::ConstraintUnknownKind);
}

// Every line form of a parameter list, read and written back.
const char* const kVarProject = R"(FTYP VELORAPRJ 17
VAR
W = 10
"long name" = L*2 false
X =
Y = =1.5 true
ENDS = 3
VALVAR H LNG 5 "height"
VALVAR U UNLS 2.5 ""
VALVAR E IND "W*2" "an equation"
VALVAR S RES <HIDDEN> "secret"
VCNSTR OPT H 1 2 OFF
VCNSTR OPT W 1 2 ON
VCNSTR TUNE H 1 9 ON 0.5 LOG
VCNSTR EM H 0 10 0.25
VCNSTR EM NOBODY 0 1 2
END VAR
)";

TEST_F(ProjectTest, AParameterListKeepsEveryEntry) {
  const std::string current = VarBlock(RoundTrip(kVarProject));
  EXPECT_EQ(current,
            "VAR\n"
            "VALVAR W NONE 10 \"\"\n"
            "VCNSTR OPT W 1 2 ON \n"
            "\"long name\" = L*2 false\n"
            "X = 0\n"
            "Y = 1.5\n"
            "ENDS = 3\n"
            "VALVAR H LNG 5 \"height\"\n"
            "VCNSTR EM H 0 10 0.25\n"
            "VCNSTR TUNE H 1 9 ON 0.5 LOG\n"
            "VALVAR U NONE 2.5 \"\"\n"
            "VALVAR E IND \"W*2\" \"an equation\"\n"
            "VALVAR S RES <HIDDEN> \"secret\"\n"
            "END VAR\n");
  // Before the named-value lines every entry is "name = value", still with the flag.
  EXPECT_EQ(VarBlock(RoundTrip(kVarProject, 20)),
            "VAR\nW = 10\n\"long name\" = L*2 false\nX = 0\nY = 1.5\nENDS = 3\nH = 5\nU = 2.5\nE = W*2\nS = 0\n"
            "END VAR\n");
}

TEST_F(ProjectTest, ParameterListEntriesLandInTheList) {
  SProject project;
  ASSERT_TRUE(ReadText(project, kVarProject));
  EXPECT_EQ(project.GetErrors().Count(), 0u) << project.GetErrors().ErrorText().data();
  const SVariableSpecification& list = project.GetParameterBlock()->GetSpecification();
  ASSERT_EQ(list.Count(), 9u);
  EXPECT_FALSE(list.Find("long name")->IsInUse());
  EXPECT_EQ(list.Find("long name")->Value().GetEquation(), SString("L*2"));
  double value = 0;
  ASSERT_TRUE(list.GetValue("Y", value));
  EXPECT_DOUBLE_EQ(value, 1.5);
  EXPECT_EQ(list.Find("H")->Value().GetUnitKind(), SValueVar::Length);
  EXPECT_EQ(list.Find("H")->Value().GetDescription(), SString("height"));
  EXPECT_DOUBLE_EQ(list.Find("H")->Value().TuningConstraints().itsStep.GetValue(), 0.5);
  EXPECT_EQ(list.Find("H")->Value().GetProject(), &project);
  EXPECT_EQ(list.Find("NOBODY"), nullptr);
}

TEST_F(ProjectTest, ParameterListErrorsNameTheirLines) {
  SProject project;
  ASSERT_TRUE(ReadText(project, "FTYP VELORAPRJ 17\nVAR\nA = 1\nVALVAR B FURLONG 2 \"\"\nC = 3\nEND VAR\n"));
  ASSERT_EQ(project.GetErrors().Count(), 1u);
  EXPECT_EQ(project.GetErrors().Entry(0)->itsMessageId, 6036u);
  EXPECT_EQ(project.GetErrors().Entry(0)->itsLine, 4);
  const SVariableSpecification& list = project.GetParameterBlock()->GetSpecification();
  EXPECT_EQ(list.Count(), 2u);
  EXPECT_EQ(list.Find("B"), nullptr);

  // A constraint before any entry, and a word the list doesn't know, are unknown keywords.
  SProject second;
  EXPECT_FALSE(ReadText(second, "FTYP VELORAPRJ 17\nVAR\nVCNSTR OPT A 1 2 ON\nA = 1\nEND VAR\n"));
  EXPECT_TRUE(second.GetErrors().Contains(7284));
  SProject third;
  EXPECT_FALSE(ReadText(third, "FTYP VELORAPRJ 17\nVAR\nA = 1\nGARBAGE\nEND VAR\n"));
  EXPECT_TRUE(third.GetErrors().Contains(7284));
}

TEST(SpecificationTest, AddFindRemoveAndParse) {
  SVariableSpecification list;
  list.Add("A", "2.5");
  list.Add("B", "A*2", false);
  list.Add("A", "=3");
  EXPECT_EQ(list.Count(), 2u);
  double value = 0;
  ASSERT_TRUE(list.GetValue("A", value));
  EXPECT_DOUBLE_EQ(value, 3.0);
  EXPECT_TRUE(list.Find("B")->Value().HasEquation());
  EXPECT_FALSE(list.Find("B")->IsInUse());
  EXPECT_FALSE(list.GetValue("C", value));

  EXPECT_TRUE(list.ParseLine(" \"C D\"  =  4 true"));
  EXPECT_TRUE(list.ParseLine("E = x false"));
  EXPECT_FALSE(list.ParseLine("no equals sign"));
  EXPECT_FALSE(list.ParseLine(" = 5"));
  EXPECT_TRUE(list.Find("C D")->IsInUse());
  EXPECT_FALSE(list.Find("E")->IsInUse());
  EXPECT_TRUE(list.Remove("E"));
  EXPECT_FALSE(list.Remove("E"));

  EXPECT_EQ(Written([&](SProjectStream& out) { list.Write(out, "VAR", true, false); }),
            "VAR A = 3 true\nVAR B = A*2 false\nVAR \"C D\" = 4 true\n");
  EXPECT_EQ(Written([&](SProjectStream& out) { list.Write(out, "", false, true); }),
            "VALVAR A NONE 3 \"\"\nVALVAR B NONE \"A*2\" \"\"\nVALVAR \"C D\" NONE 4 \"\"\n");
}

TEST(SpecificationTest, ASectionEndsAtItsKeyword) {
  TextFile file("PARAMS\nA = 1\n\"B C\" = A+1 false\nEND\nD = 4\n");
  file.File().NextLine();
  SVariableSpecification list;
  ASSERT_TRUE(list.ReadSection(file.File(), "END"));
  EXPECT_EQ(list.GetListText(6), SString("A=1\nB C=A+1"));
  SString stop;
  ASSERT_TRUE(file.File().PeekToken(stop));
  EXPECT_EQ(stop, SString("END"));
}

TEST(SpecificationTest, ListTextsByMode) {
  SVariableSpecification list;
  ASSERT_TRUE(list.FromText("A = 1.234567891\nB = 2 false\nC = 3"));
  list.Find("A")->itsSecondKind = 0;
  const std::pair<int, const char*> cases[] = {
      {0, "A=1.2345679 B=2 C=3"}, {1, "A=1.2345679 C=3"},        {6, "A=1.2345679\nB=2\nC=3"},
      {7, "A=1.2345679\nC=3"},    {8, "A=1.2345679, C=3"},       {2, "A=1.2345679\nB=2 C=3"},
      {3, "A=1.2345679\nC=3"},    {4, "A=1.2345679\nB=2 C=3"},
  };
  for (const auto& c : cases) EXPECT_EQ(list.GetListText(c.first), SString(c.second)) << c.first;
  list.Find("A")->SetInUse(false);
  EXPECT_EQ(list.GetListText(5), SString("\nC=3"));
}

TEST(SpecificationTest, CopiesCompareByNames) {
  SVariableSpecification a;
  a.FromText("X = 1\nY = 2");
  SVariableSpecification b(a);
  b.Find("Y")->Value().SetNumber(9);
  EXPECT_EQ(a.compareTo(&b), 0);
  b.Add("Z", "1");
  EXPECT_LT(a.compareTo(&b), 0);
  SVariableSpecification c;
  c.FromText("X = 1\nW = 2");
  EXPECT_GT(a.compareTo(&c), 0);
  std::unique_ptr<SVariableSpecification> partial(a.CloneExcept("X"));
  EXPECT_TRUE(partial->IsPartialCopy());
  EXPECT_EQ(partial->Count(), 1u);
  EXPECT_EQ(partial->At(0)->GetName(), SString("Y"));
  EXPECT_EQ(partial->itsIdentifier, a.itsIdentifier);
}

TEST(SpecContainerTest, ExpandGivesEveryCombination) {
  SVariableSpecContainer sweep;
  for (const char* text : {"W = 1\nL = 10", "W = 2\nL = 20\nH = 5 false", "W = 1\nL = 30"}) {
    auto* point = new SVariableSpecification();
    point->FromText(text);
    sweep.Add(point);
  }
  sweep.AddShared(new SVariablePair("T"));
  SVariableSpecification base;
  base.FromText("K = 7");
  std::vector<SVariableSpecification*> all = sweep.Expand(base, true, true);
  ASSERT_EQ(all.size(), 6u);
  QStringList texts;
  for (SVariableSpecification* set : all) {
    texts << set->GetListText(0).qstring();
    delete set;
  }
  EXPECT_EQ(texts, (QStringList{"K=7 W=1 L=10 T=0", "K=7 W=1 L=20 T=0", "K=7 W=1 L=30 T=0", "K=7 W=2 L=10 T=0",
                                "K=7 W=2 L=20 T=0", "K=7 W=2 L=30 T=0"}));
  // Without the flags the unused H is swept too, and nothing is shared.
  all = sweep.Expand(base, false, false);
  EXPECT_EQ(all.size(), 6u);
  EXPECT_EQ(all[0]->GetListText(0), SString("K=7 W=1 L=10 H=5"));
  for (SVariableSpecification* set : all) delete set;
}

TEST(SpecContainerTest, FlagsOrderAndRemovalReachEveryList) {
  SVariableSpecContainer sweep;
  auto* point = new SVariableSpecification();
  point->FromText("A = 1\nB = 2\nC = 3");
  sweep.Add(point);
  sweep.AddShared(new SVariablePair("B"));
  sweep.SetUnused("B");
  EXPECT_FALSE(sweep.Find("B")->IsInUse());
  EXPECT_FALSE(point->Find("B")->IsInUse());
  sweep.Reorder("C", 0);
  EXPECT_EQ(point->GetListText(0), SString("C=3 A=1 B=2"));
  SVariableSpecContainer other(sweep);
  other.At(0)->Find("A")->SetInUse(false);
  sweep.ApplyFlags(other);
  EXPECT_FALSE(point->Find("A")->IsInUse());
  sweep.Remove("B");
  EXPECT_EQ(sweep.Find("B"), nullptr);
  EXPECT_EQ(point->Count(), 2u);
}

TEST(ToleranceTest, PairComparisonAroundPositiveNegativeAndZero) {
  const double e = SValueVar::ParameterCompareEpsilon();
  ASSERT_DOUBLE_EQ(e, 1e-6);
  struct Case {
    double value;
    double number;
    int order;
  } cases[] = {
      {100, 100, 0},       {100, 100.00009, 0}, {100, 99.99991, 0},  {100, 100.0002, -1}, {100, 99.9998, 1},
      {-100, -100.00009, 0}, {-100, -99.99991, 0}, {-100, -100.0002, 1}, {-100, -99.9998, -1}, {0, 0, 0},
      {0, 9e-7, 0},        {0, -9e-7, 0},       {0, 2e-6, -1},       {0, -2e-6, 1},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(SValueVar::ComparePair(c.value, c.number), c.order) << c.value << " " << c.number;
    EXPECT_EQ(SValueVar::WithinTolerance(c.value, c.number, e), c.order == 0) << c.value << " " << c.number;
  }
}

TEST_F(ProjectTest, NominalEpsilonIsReadAtEachCallTheCompareEpsilonOnce) {
  const double compare = SValueVar::ParameterCompareEpsilon();
  EXPECT_DOUBLE_EQ(SValueVar::NominalEpsilon(), 1e-6);
  SettingsScope settings(Path("velora.ini"), "[Velora]\nNominalEpsilon=0.01\nParameterCompareEpsilon=0.5\n");
  EXPECT_DOUBLE_EQ(SValueVar::NominalEpsilon(), 0.01);
  EXPECT_DOUBLE_EQ(SValueVar::ParameterCompareEpsilon(), compare);
  EXPECT_TRUE(SValueVar::WithinTolerance(100, 100.5, SValueVar::NominalEpsilon()));
}
