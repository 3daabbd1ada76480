#include "EqnTestSupport.h"
#include "SEqnOwner.h"
#include "SVarCalculation.h"
#include "SVarSource.h"

#include <map>
#include <memory>
#include <set>

namespace {
class FakeProject;

// A variable: a fixed value or an equation over other variables of its project.
class FakeVariable : public SVarSource {
public:
  FakeVariable(const char* name, FakeProject* project) : itsName(name), itsCalculation(nullptr), itsProject(project) {}
  // Arguments that outlive their source are told so.
  ~FakeVariable() override {
    for (SVarArgImplimentation* argument : itsBound) argument->ReleaseSource();
  }
  SString GetSourceName() const override { return itsName; }
  bool GetSourceValue(std::complex<double>& value, SString& errorText) override;
  void RegisterArgument(SVarArgImplimentation* argument) override {
    itsBound.insert(argument);
    ++itsArguments;
  }
  void UnregisterArgument(SVarArgImplimentation* argument) override {
    itsBound.erase(argument);
    --itsArguments;
  }

  SString itsName;
  Complex itsValue = 0.0;
  SString itsText;  // when set, the value is this equation's
  SVarCalculation itsCalculation;
  FakeProject* itsProject;
  int itsArguments = 0;
  std::set<SVarArgImplimentation*> itsBound;
};

class FakeProject : public SEqnOwner {
public:
  FakeVariable& Add(const char* name, Complex value, const char* text = "") {
    itsVariables[name] = std::make_unique<FakeVariable>(name, this);
    itsVariables[name]->itsValue = value;
    itsVariables[name]->itsText = text;
    return *itsVariables[name];
  }
  SVarSource* FindVariableSource(const SString& name) override {
    auto found = itsVariables.find(name.data());
    return found == itsVariables.end() ? nullptr : found->second.get();
  }
  double GetFrequencyFactor() const override { return 1e9; }
  std::map<std::string, std::unique_ptr<FakeVariable>> itsVariables;
};

bool FakeVariable::GetSourceValue(std::complex<double>& value, SString& errorText) {
  if (itsText.isEmpty()) {
    value = itsValue;
    return true;
  }
  itsCalculation.SetOwner(itsProject);
  if (!itsCalculation.IsCompiled() && !itsCalculation.Compile(itsText, errorText)) return false;
  return itsCalculation.Evaluate(0.0, value, errorText);
}

class VarCalculationTest : public EqnTest {
protected:
  FakeProject itsProject;
};
}  // namespace

TEST_F(VarCalculationTest, VariablesAndTheFrequencyInTheOwnersUnitMakeTheValue) {
  itsProject.Add("w", 3.0);
  SVarCalculation calculation(&itsProject);
  SString words;
  ASSERT_TRUE(calculation.Compile("w*2 + freq + Freq/FREQ", words)) << words.data();
  Complex result;
  ASSERT_TRUE(calculation.Evaluate(2.0, result, words)) << words.data();
  EXPECT_DOUBLE_EQ(result.real(), 6 + 2e9 + 1);
  EXPECT_EQ(calculation.GetVariableNames(), QStringList({"w"}));
  EXPECT_TRUE(calculation.UsesFrequency());
  EXPECT_FALSE(calculation.IsConstant());
  EXPECT_EQ(calculation.GetText(), SString("w*2 + freq + Freq/FREQ"));
  // The variable's value is taken at each evaluation.
  itsProject.itsVariables["w"]->itsValue = 10.0;
  ASSERT_TRUE(calculation.Evaluate(1.0, result, words)) << words.data();
  EXPECT_DOUBLE_EQ(result.real(), 20 + 1e9 + 1);
}

TEST_F(VarCalculationTest, AChainOfVariablesEvaluatesThroughEachSource) {
  itsProject.Add("a", 0.0, "b + 1");
  itsProject.Add("b", 0.0, "2*c");
  itsProject.Add("c", 5.0);
  SVarCalculation calculation(&itsProject);
  SString words;
  ASSERT_TRUE(calculation.Compile("a * 100", words)) << words.data();
  Complex result;
  ASSERT_TRUE(calculation.Evaluate(0.0, result, words)) << words.data();
  EXPECT_DOUBLE_EQ(result.real(), 1100);
}

TEST_F(VarCalculationTest, VariablesInACircleFailInsteadOfRecursing) {
  itsProject.Add("a", 0.0, "b");
  itsProject.Add("b", 0.0, "a + 1");
  SVarCalculation calculation(&itsProject);
  SString words;
  ASSERT_TRUE(calculation.Compile("a", words)) << words.data();
  Complex result;
  EXPECT_FALSE(calculation.Evaluate(0.0, result, words));
  EXPECT_TRUE(words.startsWith("Variables refer to one another in a circle")) << words.data();
}

TEST_F(VarCalculationTest, CompileFailuresSayWhatIsBad) {
  itsProject.Add("w", 1.0);
  const struct {
    const char* text;
    const char* words;
  } cases[] = {
      {"w + zz", "Bad Argument (zz) in equation w + zz"},
      {"w +", "Bad Equation: The equation ends after + where an operand is expected, at line 1, column 4 "
              "(the end of the equation)"},
      {"w(2)", "Bad Equation: w is not a known function, at line 1, column 1 (character 1)"},
  };
  for (const auto& c : cases) {
    SVarCalculation calculation(&itsProject);
    SString words;
    EXPECT_FALSE(calculation.Compile(c.text, words)) << c.text;
    EXPECT_STREQ(words.data(), c.words);
    EXPECT_FALSE(calculation.IsCompiled());
  }
  // Without an owner no name can be bound.
  SVarCalculation alone;
  SString words;
  EXPECT_FALSE(alone.Compile("w", words));
  EXPECT_STREQ(words.data(), "Bad Argument (w) in equation w");
}

TEST_F(VarCalculationTest, NamesFilesAndConstancyAreReported) {
  itsProject.Add("w", 1.0);
  itsProject.Add("h", 2.0);
  SVarCalculation calculation(&itsProject);
  SString words;
  ASSERT_TRUE(calculation.Compile("table1(\"a.csv\", w) + table2(\"b.csv\", h, 1) + W", words)) << words.data();
  EXPECT_EQ(calculation.GetVariableNames(), QStringList({"w", "h"}));
  EXPECT_EQ(calculation.GetFileNames(), QStringList({"a.csv", "b.csv"}));
  EXPECT_FALSE(calculation.UsesFrequency());

  SVarCalculation constant(&itsProject);
  ASSERT_TRUE(constant.Compile("2*PI", words));
  EXPECT_TRUE(constant.IsConstant());
  EXPECT_TRUE(constant.GetVariableNames().isEmpty());
}

TEST_F(VarCalculationTest, CopiesBindTheSameSourcesAndLeaveThemWhenDestroyed) {
  FakeVariable& w = itsProject.Add("w", 4.0);
  {
    SVarCalculation calculation(&itsProject);
    SString words;
    ASSERT_TRUE(calculation.Compile("w + w", words));
    EXPECT_EQ(w.itsArguments, 1);
    std::unique_ptr<SCalculation> copy(calculation.Clone());
    EXPECT_EQ(w.itsArguments, 2);
    Complex result;
    ASSERT_TRUE(static_cast<SVarCalculation*>(copy.get())->Evaluate(0.0, result, words));
    EXPECT_DOUBLE_EQ(result.real(), 8);
    // Compiling again lets go of the old bindings.
    ASSERT_TRUE(calculation.Compile("3", words));
    EXPECT_EQ(w.itsArguments, 1);
  }
  EXPECT_EQ(w.itsArguments, 0);
}

TEST_F(VarCalculationTest, AnArgumentWhoseSourceWentAwayFailsByName) {
  FakeVariable& w = itsProject.Add("w", 4.0);
  SVarCalculation calculation(&itsProject);
  SString words;
  ASSERT_TRUE(calculation.Compile("w*2", words));
  // As a source going away does: the argument forgets it, and it the argument.
  SVarArgImplimentation* argument = static_cast<SVarArgImplimentation*>(calculation.GetArgument(1));
  argument->ReleaseSource();
  w.itsBound.erase(argument);
  Complex result;
  EXPECT_FALSE(calculation.Evaluate(0.0, result, words));
  EXPECT_STREQ(words.data(), "Bad Argument (w) in equation w*2");
}
