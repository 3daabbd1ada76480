#include "EqnTestSupport.h"
#include "SEqnOwner.h"

#include <QStringList>
#include <cmath>

namespace {
const Complex z(0.3, 0.4);
const Complex w(-1.5, 0.25);

// Evaluates with z and w as arguments, both parts of the result.
Complex OfZW(const char* text) {
  Complex parts[2];
  const char* types[2] = {"REAL", "IMAG"};
  for (int i = 0; i < 2; ++i) {
    SEquation equation{SString(text)};
    equation.SetArguments(QStringList({"z", "w"}));
    equation.SetResultType(types[i]);
    EXPECT_TRUE(equation.Compile()) << text << ": " << equation.GetErrorText().data();
    SString words;
    EXPECT_TRUE(equation.Evaluate({z, w}, parts[i], words)) << text << ": " << words.data();
  }
  return Complex(parts[0].real(), parts[1].real());
}

// A project stand-in: CELL_X is 0.5, table "t" is 10x + y, inductor maps give 100 code + in.
class FakeOwner : public SEqnOwner {
public:
  bool GetEquationProperty(int code, double& value) const override {
    if (code != SEqnProperty::CELL_X) return false;
    value = 0.5;
    return true;
  }
  bool LookupTable(const SString& name, char mode, int dimensions, double x, double y, double& value) const override {
    itsCalls << QString("%1 %2 %3").arg(name.qstring()).arg(QChar(mode)).arg(dimensions);
    if (name != "t") return false;
    value = 10 * x + y;
    return true;
  }
  bool MapInductorTable(int functionCode, double in, double& out) const override {
    out = 100 * functionCode + in;
    return true;
  }
  mutable QStringList itsCalls;
};
}  // namespace

TEST_F(EqnTest, EveryFunctionComputesWhatComplexMathGives) {
  const double toDeg = 57.29577951308232;
  const struct {
    const char* text;
    Complex expected;
  } cases[] = {
      {"z+w", z + w},
      {"z-w", z - w},
      {"z*w", z * w},
      {"z/w", z / w},
      {"z^w", std::pow(z, w)},
      {"-z", -z},
      {"sin(z)", std::sin(z)},
      {"cos(z)", std::cos(z)},
      {"tan(z)", std::tan(z)},
      {"sinh(z)", std::sinh(z)},
      {"cosh(z)", std::cosh(z)},
      {"tanh(z)", std::tanh(z)},
      {"asin(z)", std::asin(z)},
      {"acos(z)", std::acos(z)},
      {"atan(z)", std::atan(z)},
      {"asinh(z)", std::asinh(z)},
      {"acosh(z)", std::acosh(z)},
      {"atanh(z)", std::atanh(z)},
      {"cmplx(z, w)", z + Complex(0, 1) * w},
      {"real(z)", z.real()},
      {"imag(z)", z.imag()},
      {"rad(z)", std::arg(z)},
      {"deg(z)", std::arg(z) * toDeg},
      {"mag(z)", std::abs(z)},
      {"abs(w)", std::abs(w)},
      {"conj(z)", std::conj(z)},
      {"db20(z)", 20 * std::log10(std::abs(z))},
      {"db10(z)", 10 * std::log10(std::abs(z))},
      {"log10(z)", std::log10(z)},
      {"ln(z)", std::log(z)},
      {"exp(z)", std::exp(z)},
      {"sqrt(w)", std::sqrt(w)},
      {"atan2(z, w)", std::atan2(z.real(), w.real())},
      {"hypot(z, w)", std::hypot(z.real(), w.real())},
      {"fmod(w, z)", -std::fmod(std::abs(w), std::abs(z))},
      {"fmod(7, -2)", 1.0},
      {"int(w)", -1.0},
      {"max(z, w)", z},
      {"min(z, w)", w},
  };
  for (const auto& c : cases) {
    const Complex value = OfZW(c.text);
    EXPECT_NEAR(value.real(), c.expected.real(), 1e-12) << c.text;
    EXPECT_NEAR(value.imag(), c.expected.imag(), 1e-12) << c.text;
  }
}

TEST_F(EqnTest, EachFailureOfEvaluationHasItsWords) {
  const struct {
    const char* text;
    const char* words;
  } cases[] = {
      {"1/0", "Divide by zero"},
      {"2/1e-101", "Divide by zero"},
      {"10^300", "illegal argument to ^"},
      {"exp(700)", "illegal argument to exp"},
      {"db20(0)", "illegal argument to db20"},
      {"db10(0)", "illegal argument to db10"},
      {"log10(0)", "illegal argument to log10"},
      {"ln(0)", "illegal argument to ln"},
      {"acosh(-1e10)", "illegal argument to acosh"},
      {"asinh(-1e10)", "illegal argument to asinh"},
      {"atanh(1)", "illegal argument to atanh"},
      {"fmod(1, 0)", "illegal argument to fmod"},
      {"tan(PI/2)", "illegal argument to tan"},
      {"table1(\"t\", 1)", "illegal table lookup"},
      {"m2p(1)", "illegal table lookup"},
      {"[3]", "The argument [3] has no value"},
  };
  for (const auto& c : cases) EXPECT_EQ(EvaluationFailure(c.text), c.words) << c.text;
  // A zero base gives zero whatever the exponent.
  EXPECT_EQ(Value("0^-1").real(), 0);
  // Below the limits the same functions work.
  EXPECT_NEAR(Value("10^289").real(), 1e289, 1e275);
  EXPECT_NEAR(Value("exp(667)").real(), std::exp(667.0), std::exp(667.0) * 1e-15);
}

TEST_F(EqnTest, TheResultTypeFormatsTheFinalValue) {
  const struct {
    const char* type;
    double value;
  } cases[] = {{"DB", 20 * std::log10(5.0)}, {"MAG", 5},  {"ANG", 53.13010235415598}, {"ang_deg", 53.13010235415598},
               {"ANG_RAD", 0.9272952180016122}, {"REAL", 3}, {"IMAG", 4}, {"anything", 3}};
  for (const auto& c : cases) EXPECT_NEAR(Value("cmplx(3, 4)", {}, c.type).real(), c.value, 1e-12) << c.type;
  SEquation silent{SString("0")};
  silent.SetResultType("DB");
  EXPECT_EQ(silent.GetResultFormat(), 0);
  ASSERT_TRUE(silent.Compile());
  Complex result;
  SString words;
  EXPECT_FALSE(silent.Evaluate({}, result, words));
  EXPECT_STREQ(words.data(), "illegal argument to db10");
  EXPECT_EQ(ComplexValue("cmplx(3, 4) * cmplx(0, 1)"), Complex(-4, 3));
}

TEST_F(EqnTest, TablesInductorMapsAndPropertiesComeFromTheOwner) {
  FakeOwner owner;
  const struct {
    const char* text;
    double value;
    const char* call;
  } cases[] = {
      {"table1(\"t\", 2)", 20, "t l 1"},
      {"TABLE1C(\"t\", 3) + 1", 31, "t c 1"},
      {"table2(\"t\", 2, 5)", 25, "t l 2"},
      {"m2p(1) + h2p(2) + p2m(3) + p2h(4)", 4100 + 4200 + 4300 + 4400 + 10, ""},
      {"CELL_X * 4 + BOX_Y", 2, ""},
  };
  for (const auto& c : cases) {
    owner.itsCalls.clear();
    SEquation equation(SString(c.text), &owner);
    ASSERT_TRUE(equation.Compile()) << c.text << ": " << equation.GetErrorText().data();
    Complex result;
    SString words;
    ASSERT_TRUE(equation.Evaluate({}, result, words)) << c.text << ": " << words.data();
    EXPECT_DOUBLE_EQ(result.real(), c.value) << c.text;
    EXPECT_EQ(owner.itsCalls.join(";"), QString(c.call)) << c.text;
  }
  SEquation missing(SString("table1(\"other.csv\", 1)"), &owner);
  Complex result;
  SString words;
  EXPECT_FALSE(missing.Evaluate({}, result, words));
  EXPECT_STREQ(words.data(), "illegal table lookup");
}

TEST_F(EqnTest, BracketReferencesTakeArgumentsByIndexFromThePosition) {
  SEquation equation{SString("[F] + [F+1]*10 + [ 0 ]*100 + [f-1]*1000")};
  equation.SetArguments(QStringList({"a", "b", "c"}));
  ASSERT_TRUE(equation.Compile()) << equation.GetErrorText().data();
  equation.SetArgumentPosition(1);
  Complex result;
  SString words;
  ASSERT_TRUE(equation.Evaluate({1.0, 2.0, 3.0}, result, words)) << words.data();
  EXPECT_DOUBLE_EQ(result.real(), 2 + 30 + 100 + 1000);
  equation.SetArgumentPosition(2);
  EXPECT_FALSE(equation.Evaluate({1.0, 2.0, 3.0}, result, words));
  EXPECT_STREQ(words.data(), "The argument [F+1] has no value");
}
