#ifndef EQNTESTSUPPORT_H
#define EQNTESTSUPPORT_H

#include "SErrorMessages.h"
#include "SEquation.h"

#include <gtest/gtest.h>
#include <complex>
#include <string>
#include <vector>

typedef std::complex<double> Complex;

// Loads the shipped message texts once, so that error words read as a user sees them.
class EqnTest : public ::testing::Test {
protected:
  static void SetUpTestSuite() {
    SErrorMessages::Instance()->ClearAll();
    ASSERT_TRUE(SErrorMessages::Instance()->LoadFile(SString(GDS_SOURCE_DIR "/resource/strings_filelib.h")));
  }

  // Compiles with the result type, evaluates with the arguments; fails the test on an error.
  static Complex Value(const char* text, const std::vector<Complex>& arguments = {}, const char* type = "REAL") {
    SEquation equation{SString(text)};
    equation.SetResultType(type);
    EXPECT_TRUE(equation.Compile()) << text << ": " << equation.GetErrorText().data();
    Complex result(-999.0, -999.0);
    SString words;
    EXPECT_TRUE(equation.Evaluate(arguments, result, words)) << text << ": " << words.data();
    return result;
  }

  // The complex value, the real part and the imaginary part each through its result type.
  static Complex ComplexValue(const char* text) {
    return Complex(Value(text, {}, "REAL").real(), Value(text, {}, "IMAG").real());
  }

  // The words of a failed evaluation of a text that compiles.
  static std::string EvaluationFailure(const char* text, const std::vector<Complex>& arguments = {}) {
    SEquation equation{SString(text)};
    EXPECT_TRUE(equation.Compile()) << text << ": " << equation.GetErrorText().data();
    Complex result;
    SString words;
    EXPECT_FALSE(equation.Evaluate(arguments, result, words)) << text;
    return words.data();
  }
};

#endif
