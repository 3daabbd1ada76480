#include "EqnTestSupport.h"

namespace {
struct ErrorCase {
  const char* text;
  int code;
  const char* words;
};

SString CompileError(const char* text, bool allowUnknown, int& code) {
  SEquation equation{SString(text)};
  EXPECT_FALSE(equation.Compile(allowUnknown)) << text;
  EXPECT_FALSE(equation.IsCompiled());
  code = equation.GetErrorCode();
  return equation.GetErrorText();
}
}  // namespace

TEST_F(EqnTest, EachSyntaxAndStackErrorHasItsCodeAndWords) {
  const ErrorCase cases[] = {
      {"(1+2", 1, "A \"(\" is not closed by a \")\", at line 1, column 5 (the end of the equation)"},
      {")", 2, "A \")\" has no \"(\" before it to close, at line 1, column 1 (character 1)"},
      {"2+", 3, "The equation ends after + where an operand is expected, at line 1, column 3 (the end of the equation)"},
      {"2 @ 3", 4, "@ is not a character an equation may hold, at line 1, column 3 (character 3)"},
      {"2**3", 5, "* is an operator where an operand is expected, at line 1, column 3 (character 3)"},
      {"--3", 5, "- is an operator where an operand is expected, at line 1, column 2 (character 2)"},
      {"+3", 5, "+ is an operator where an operand is expected, at line 1, column 1 (character 1)"},
      {"2\n 3", 6, "3 follows an operand without an operator between them, at line 2, column 2 (character 4)"},
      {"2(3)", 6, "( follows an operand without an operator between them, at line 1, column 2 (character 2)"},
      {"[G+1]", 7, "[G+1] is not a frequency reference such as [F], [F+1], [F-2] or [3], at line 1, column 1 (character 1)"},
      {"[F+]", 7, "[F+] is not a frequency reference such as [F], [F+1], [F-2] or [3], at line 1, column 1 (character 1)"},
      {"(1,2)", 8, "A comma stands outside the operands of a function, at line 1, column 3 (character 3)"},
      {"max(1,)", 9, "An operand is missing before ), at line 1, column 7 (character 7)"},
      {"()", 9, "An operand is missing before ), at line 1, column 2 (character 2)"},
      {"1 + \"abc", 10, "The text \"abc has no closing double quote, at line 1, column 5 (character 5)"},
      {"1.2.3", 11, "1.2.3 is not a valid number, at line 1, column 1 (character 1)"},
      {"1e", 11, "1e is not a valid number, at line 1, column 1 (character 1)"},
      {"1e999", 11, "1e999 is not a valid number, at line 1, column 1 (character 1)"},
      {"sqrt 4", 12, "The function sqrt must be followed by \"(\" and its operands, at line 1, column 1 (character 1)"},
      {"foo+1", 13, "foo is not a known function, constant, property or argument, at line 1, column 1 (character 1)"},
      {"2*foo(1)", 14, "foo is not a known function, at line 1, column 3 (character 3)"},
      {"max(1)", 15, "An operator or function has too few operands (at the function max)"},
      {"sin()", 15, "An operator or function has too few operands (at the function sin)"},
      {"max(1,2,3)", 16,
       "The equation leaves more than one value: an operator is missing or a function has too many operands "
       "(at the function max)"},
      {"", 19, "The equation is empty"},
      {" \r\n\t", 19, "The equation is empty"},
      {"table1(1, 2)", 21,
       "table1: a text in double quotes names a table, and only as the first operand of table1, table1c or table2 "
       "(at the function table1)"},
      {"1 + \"a\"", 21,
       "\"a\": a text in double quotes names a table, and only as the first operand of table1, table1c or table2 "
       "(at the text \"a\")"},
  };
  for (const ErrorCase& c : cases) {
    int code = -1;
    const SString words = CompileError(c.text, false, code);
    EXPECT_EQ(code, c.code) << c.text;
    EXPECT_STREQ(words.data(), c.words) << c.text;
  }
  // An unknown function stays an error where unknown names are allowed.
  int code = -1;
  CompileError("foo(1)", true, code);
  EXPECT_EQ(code, 14);
}

TEST_F(EqnTest, FormatErrorGivesTheWordsOfCodesThatNoParseReaches) {
  SEquation equation{SString("x")};
  EXPECT_STREQ(equation.FormatError(0).data(), "No error in the equation");
  EXPECT_STREQ(equation.FormatError(17).data(), "An operator or function has too few operands");
  EXPECT_STREQ(equation.FormatError(20, 0, 0, "W").data(), "The argument W has no value");
  EXPECT_EQ(equation.GetErrorCode(), 20);
  EXPECT_STREQ(equation.FormatError(18, 3, 7, "h", 1).data(),
               "h is not an argument of the equation, at line 3, column 7 (the end of the equation)");
}

TEST_F(EqnTest, NamesLeftUnresolvedMustBecomeArgumentsBeforeEvaluation) {
  SEquation equation{SString("w*2 + W + h")};
  ASSERT_TRUE(equation.Compile(true));
  EXPECT_EQ(equation.GetUnresolvedNames(), QStringList({"w", "h"}));
  Complex result;
  SString words;
  EXPECT_FALSE(equation.Evaluate({1.0}, result, words));
  EXPECT_STREQ(words.data(), "w is not an argument of the equation");
  EXPECT_EQ(equation.GetErrorCode(), 18);

  equation.SetArguments(QStringList({"FREQ", "h"}));
  EXPECT_FALSE(equation.CheckStack());
  EXPECT_EQ(equation.GetErrorCode(), 18);
  EXPECT_STREQ(equation.GetErrorText().data(), "w is not an argument of the equation (at the argument w)");

  equation.AddArgument("W");
  ASSERT_TRUE(equation.CheckStack());
  ASSERT_TRUE(equation.Evaluate({0.0, 10.0, 3.0}, result, words)) << words.data();
  EXPECT_DOUBLE_EQ(result.real(), 3 * 2 + 3 + 10);
  EXPECT_EQ(equation.GetUsedArguments(), std::vector<int>({2, 1}));

  // Too few values for the arguments named.
  EXPECT_FALSE(equation.Evaluate({0.0, 10.0}, result, words));
  EXPECT_STREQ(words.data(), "The argument w has no value");
  EXPECT_EQ(equation.GetErrorCode(), 20);
}

TEST_F(EqnTest, OperatorsAssociateLeftAndUnaryMinusSitsBetweenPowerAndProduct) {
  const struct {
    const char* text;
    const char* postfix;
    double value;
  } cases[] = {
      {"2^3^2", "2 3 ^ 2 ^ FORMAT", 64},
      {"-2^2", "2 2 ^ neg FORMAT", -4},
      {"-2*3", "2 neg 3 * FORMAT", -6},
      {"2*-3", "2 3 neg * FORMAT", -6},
      {"2^-1", "2 1 neg ^ FORMAT", 0.5},
      {"2-3-4", "2 3 - 4 - FORMAT", -5},
      {"8/4/2", "8 4 / 2 / FORMAT", 1},
      {"1+2*3", "1 2 3 * + FORMAT", 7},
      {"(1+2)*3", "1 2 + 3 * FORMAT", 9},
      {"2*3^2", "2 3 2 ^ * FORMAT", 18},
      {"-(-3)", "3 neg neg FORMAT", 3},
      {"max(1, sin(0)+3)", "1 0 sin 3 + max FORMAT", 3},
      {"sqrt(4)^3", "4 sqrt 3 ^ FORMAT", 8},
      {"PI", "PI FORMAT", 3.141592653589793},
  };
  for (const auto& c : cases) {
    SEquation equation{SString(c.text)};
    ASSERT_TRUE(equation.Compile()) << c.text << ": " << equation.GetErrorText().data();
    EXPECT_STREQ(equation.GetPostfixText().data(), c.postfix) << c.text;
    EXPECT_DOUBLE_EQ(Value(c.text).real(), c.value) << c.text;
  }
}

TEST_F(EqnTest, NamesOfFunctionsConstantsPropertiesAndArgumentsAreCaseBlind) {
  for (const char* text : {"SQRT(16)", "sqrt(16)", "Sqrt(16)", "sQrT(16)"}) EXPECT_DOUBLE_EQ(Value(text).real(), 4);
  EXPECT_DOUBLE_EQ(Value("pi").real(), Value("PI").real());
  EXPECT_DOUBLE_EQ(Value("Abs(-3) + MAG(-1)").real(), 4);
  EXPECT_DOUBLE_EQ(Value("freq * Freq", {3.0}).real(), 9);
  EXPECT_DOUBLE_EQ(Value("cell_x").real(), 0);
}

TEST_F(EqnTest, EveryConstantHasItsValueAndInfIsTheWidenedFloat) {
  const struct {
    const char* name;
    double value;
  } constants[] = {{"PI", 3.141592653589793},        {"TWO_PI", 6.283185307179586},
                   {"ETA_0", 376.7303136},           {"EPSILON_0", 8.854187816e-12},
                   {"MU_0", 1.2566370614359173e-06}, {"VELC", 299792458},
                   {"RAD_TO_DEG", 57.29577951308232}, {"DEG_TO_RAD", 0.017453292519943295},
                   {"INF", 1.0000000200408773e20}};
  for (const auto& constant : constants) EXPECT_EQ(Value(constant.name).real(), constant.value) << constant.name;
  EXPECT_NEAR(Value("INF - 1e20").real(), 2.00408773e12, 1e4);
  EXPECT_NE(Value("INF").real(), 1e20);
}

TEST_F(EqnTest, EachEquationHasItsOwnTagAndCopiesKeepTheirElements) {
  SEquation first{SString("1+2")};
  SEquation second{SString("1+2")};
  EXPECT_TRUE(first.GetTag().startsWith("EQD"));
  EXPECT_NE(first.GetTag(), second.GetTag());
  ASSERT_TRUE(first.Compile());
  SEquation copy(first);
  EXPECT_NE(copy.GetTag(), first.GetTag());
  first.SetEquation("5");
  Complex result;
  SString words;
  ASSERT_TRUE(copy.Evaluate({}, result, words));
  EXPECT_DOUBLE_EQ(result.real(), 3);
  // Never compiled: the first evaluation compiles.
  ASSERT_TRUE(first.Evaluate({}, result, words));
  EXPECT_DOUBLE_EQ(result.real(), 5);
  // Without allowNoArgs the arguments start with FREQ; with it they stay empty.
  EXPECT_EQ(first.GetArgumentNames(), QStringList({"FREQ"}));
  SEquation bare{SString("2")};
  ASSERT_TRUE(bare.Compile(false, true));
  EXPECT_TRUE(bare.GetArgumentNames().isEmpty());
}
