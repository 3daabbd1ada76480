// Arbitrary bytes as a via metal rule file: the grammar, name matching and the order of the
// rules for a few layers, and the written rules, which must read back as the same rules
// and write the same text again.

#include <cstdio>
#include <cstdlib>
#include <string>

#include <QTextStream>

#include "FuzzInput.h"
#include "SViaMetalRules.h"

namespace {

std::string Text(const SViaMetalRules& rules)
{
    QString text;
    QTextStream out(&text);
    rules.Write(out);
    out.flush();
    return text.toStdString();
}

// A value is written as it was read, which reads back the same unless it holds a line end
// (a quoted string read over lines), an odd number of quotes, which would swallow the line
// after it, or a "&", which continues a line: the format has no escape for them.
bool Survives(const SString& value)
{
    return !value.contains('\n') && !value.contains('\r') && !value.contains('&') &&
           value.qstring().count(QLatin1Char('"')) % 2 == 0;
}

bool WrittenAsRead(const SViaMetalRules& rules)
{
    if (!Survives(rules.GetTitle()) || !Survives(rules.GetDescription()))
        return false;
    for (const SViaMetalRule& rule : rules.GetRules())
        for (const SString& name : rule.GetNames())
            if (!Survives(name))
                return false;
    return true;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    FuzzSetup();
    std::string name = FuzzFile(data, size);
    if (name.empty())
        return 0;
    try {
        SViaMetalRules rules;
        if (!rules.ReadFile(SString(name.c_str()), false)) {
            if (!(rules == SViaMetalRules()))
                FuzzBroken("a failed read changed the rules", rules.GetErrorText().data());
            return 0;
        }
        for (const char* layer : {"MyVIA1", "", "M1", "via", "a*b"})
            for (int state = 0; state < 4; ++state) {
                SViaMetalRuleQuery query(layer, state & 1, state & 2);
                rules.Evaluate(query);
                if (!query.IsAnswered())
                    FuzzBroken("a query went unanswered", layer);
            }

        if (!WrittenAsRead(rules))
            return 0;
        const std::string first = Text(rules);
        std::string written = FuzzScratchFile();
        if (written.empty() || !rules.WriteFile(SString(written.c_str())))
            return 0;
        SViaMetalRules again;
        if (!again.ReadFile(SString(written.c_str()), false))
            FuzzBroken("the written rules do not read back", first + "----\n" + again.GetErrorText().data());
        if (!(again == rules))
            FuzzBroken("the written rules read back as others", first + "----\n" + Text(again));
        if (Text(again) != first)
            FuzzBroken("the rules read back write another text", first + "----\n" + Text(again));
    } catch (int) {
        // A fatal program error.
    }
    return 0;
}
