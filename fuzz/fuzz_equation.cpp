// Arbitrary bytes as an equation: the tokens, a compile with and without unknown names allowed,
// an evaluation of what compiled, and the same text over variables of an owner whose every
// name is a variable, one of them referring back to the text itself.

#include <cstdio>
#include <cstdlib>
#include <vector>

#include "SEqnOwner.h"
#include "SEquation.h"
#include "SErrorMessages.h"
#include "SVarCalculation.h"
#include "SVarSource.h"

namespace {

[[noreturn]] void Broken(const char* what, const QString& text)
{
    fprintf(stderr, "%s\n%s\n", what, text.toUtf8().constData());
    abort();
}

// A variable named anything: "self" evaluates the fuzzed text again, the others are numbers.
class FuzzVariable : public SVarSource {
public:
    FuzzVariable(const SString& name, SEqnOwner* owner, const SString& text)
        : itsName(name), itsCalculation(owner), itsText(text) {}
    SString GetSourceName() const override { return itsName; }
    bool GetSourceValue(std::complex<double>& value, SString& errorText) override
    {
        if (itsName.compare("self", true) != 0) {
            value = std::complex<double>(itsName.length(), 1.0);
            return true;
        }
        if (!itsCalculation.IsCompiled() && !itsCalculation.Compile(itsText, errorText))
            return false;
        return itsCalculation.Evaluate(1.0, value, errorText);
    }

private:
    SString itsName;
    SVarCalculation itsCalculation;
    SString itsText;
};

class FuzzOwner : public SEqnOwner {
public:
    explicit FuzzOwner(const SString& text) : itsText(text) {}
    ~FuzzOwner() override
    {
        for (FuzzVariable* variable : itsVariables)
            delete variable;
    }
    bool GetEquationProperty(int code, double& value) const override
    {
        value = code;
        return code % 2 == 0;
    }
    bool LookupTable(const SString& name, char, int dimensions, double x, double y, double& value) const override
    {
        value = x + dimensions * y;
        return !name.isEmpty();
    }
    bool MapInductorTable(int functionCode, double in, double& out) const override
    {
        out = functionCode * in;
        return functionCode != 44;
    }
    SVarSource* FindVariableSource(const SString& name) override
    {
        if (name.startsWith("no", true))
            return nullptr;
        itsVariables.push_back(new FuzzVariable(name, this, itsText));
        return itsVariables.back();
    }
    double GetFrequencyFactor() const override { return 1e9; }

private:
    SString itsText;
    std::vector<FuzzVariable*> itsVariables;
};

void CheckTokens(const SString& text)
{
    SString rest(text);
    SString token;
    int line = 0, column = 0, position = 0;
    bool restart = true;
    while (SEquation::NextToken(rest, token, line, column, position, restart)) {
        restart = false;
        if (text.qstring().mid(position, token.length()) != token.qstring())
            Broken("a token is not where its position says", text.qstring());
    }
}

void CompileAndEvaluate(const SString& text, bool allowUnknown, SEqnOwner* owner)
{
    SEquation equation(text, owner);
    equation.SetResultType(text.length() % 2 ? "DB" : "REAL");
    if (!equation.Compile(allowUnknown)) {
        if (equation.GetErrorCode() == 0 || equation.GetErrorText().isEmpty())
            Broken("a failed compile without an error", text.qstring());
        return;
    }
    std::vector<std::complex<double>> arguments(1 + equation.GetUnresolvedNames().size(), 2.0);
    std::complex<double> result;
    SString words;
    if (!equation.Evaluate(arguments, result, words) && words.isEmpty())
        Broken("a failed evaluation without words", text.qstring());
    SEquation copy(equation);
    copy.SetArgumentPosition(-3);
    copy.Evaluate({}, result, words);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static const bool loaded =
        SErrorMessages::Instance()->LoadFile(SString(GDS_SOURCE_DIR "/resource/strings_filelib.h"));
    (void)loaded;
    const SString text(QString::fromUtf8(reinterpret_cast<const char*>(data), static_cast<int>(size)));
    CheckTokens(text);
    FuzzOwner owner(text);
    CompileAndEvaluate(text, false, nullptr);
    CompileAndEvaluate(text, true, &owner);
    SVarCalculation calculation(&owner);
    SString words;
    std::complex<double> result;
    if (calculation.Compile(text, words))
        calculation.Evaluate(0.5, result, words);
    return 0;
}
