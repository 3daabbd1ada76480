// Via metal rule files: the grammar with its failure texts, writing, name matching, the
// order in which rules answer, and where the conversion rules find their file.

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTextStream>

#include <cstdlib>
#include <string>

#include "SCommentedFile.h"
#include "SConversionRules.h"
#include "SErrorMessages.h"
#include "SInitializationFile.h"
#include "SVeloraError.h"
#include "SViaMetalRules.h"

namespace {

std::string theReports;

void Capture(const char* text, int)
{
    theReports += text;
    theReports += "\n";
}

// Rules read from text; the numbered reports land in theReports instead of on the screen.
class ViaRules : public testing::Test {
protected:
    void SetUp() override
    {
        static bool loaded = false;
        if (!loaded) {
            SErrorMessages::Instance()->LoadFile(SString(GDS_SOURCE_DIR "/resource/strings_util.h"));
            SErrorMessages::Instance()->LoadFile(SString(GDS_SOURCE_DIR "/resource/strings_filelib.h"));
            loaded = true;
        }
        theReports.clear();
        VeloraSetReportHook(Capture);
        VeloraEnableErrorSink(false);
    }
    void TearDown() override
    {
        VeloraSetReportHook(nullptr);
        VeloraEnableErrorSink(true);
    }

    static bool ReadText(SViaMetalRules& rules, const std::string& text, const char* name = "t.cvt")
    {
        QString copy = QString::fromStdString(text);
        QTextStream stream(&copy);
        SCommentedFile file(&stream, ";", "&");
        return rules.Read(file, true, name);
    }

    static std::string WriteText(const SViaMetalRules& rules)
    {
        QString text;
        QTextStream out(&text);
        rules.Write(out);
        out.flush();
        return text.toStdString();
    }

    static SViaMetalRuleQuery Ask(const SViaMetalRules& rules, const char* name, bool planar, bool vias)
    {
        SViaMetalRuleQuery query(name, planar, vias);
        rules.Evaluate(query);
        return query;
    }
};

const char* const kHead = "viametalrules version=1\n";

struct Failure
{
    std::string text;
    long long line;
    const char* message;
};

TEST_F(ViaRules, EachFailureNamesItsLineAndKeepsTheRulesHeld)
{
    const Failure cases[] = {
        {"", 0, "viametalrules expected"},
        {"; only a comment\n", 1, "viametalrules expected"},
        {"rules version=1\n", 1, "viametalrules expected"},
        {"viametalrules\n", 1, "version expected"},
        {"viametalrules revision=1\n", 1, "version expected"},
        {"viametalrules version=2\n", 1, "version number should be 1"},
        {"viametalrules version\n", 1, "version number should be 1"},
        {std::string(kHead) + "title=x\n", 2, "end of file found"},
        {std::string(kHead) + "colour=red\n", 2, "unknown keyword"},
        {std::string(kHead) + "\"\"\nend_viametalrules\n", 2, "more keywords expected"},
        {std::string(kHead) + "rule\nonlyvia createvia=yes size=3\n", 3, "unknown keyword"},
        {std::string(kHead) + "rule\nsometimes createvia=yes\n", 3, "unknown rule attr: sometimes"},
        {std::string(kHead) + "userule\nend_rule\n", 3, "unknown rule attr: end_rule"},
        {std::string(kHead) + "rule\nnames compare=fuzzy\n", 3, "unknown compare mode: fuzzy"},
        {std::string(kHead) + "rule\nnames sort=up\n", 3, "unknown keyword"},
        {std::string(kHead) + "rule\nnames\n*via*\n", 4, "end of file found"},
        {std::string(kHead) + "emptyrule\n", 2, "end of file found"},
    };
    for (const Failure& c : cases) {
        SViaMetalRules rules;
        ASSERT_TRUE(ReadText(rules, std::string(kHead) + "title=Held\nend_viametalrules\n"));
        const SViaMetalRules before = rules;
        theReports.clear();
        EXPECT_FALSE(ReadText(rules, c.text)) << c.text;
        EXPECT_EQ(rules.GetErrorLine(), c.line) << c.text;
        const std::string expected =
            "Rules File (t.cvt)  Line: " + std::to_string(c.line) + " " + c.message;
        EXPECT_EQ(rules.GetErrorText().data(), expected) << c.text;
        EXPECT_NE(theReports.find("The rule or equation could not be used: " + expected), std::string::npos)
            << theReports;
        EXPECT_TRUE(rules == before) << c.text;
    }
}

TEST_F(ViaRules, ARuleReadOnItsOwnWantsItsKeyword)
{
    QString text = "\nnames\n";
    QTextStream stream(&text);
    SCommentedFile file(&stream, ";", "&");
    file.SetSkipBlankLines(false);
    SViaMetalRule rule;
    SString error;
    ASSERT_TRUE(file.NextLine());
    EXPECT_FALSE(rule.Read(file, error));
    EXPECT_EQ(error, "rule keyword expected");
    ASSERT_TRUE(file.NextLine());
    EXPECT_FALSE(rule.Read(file, error));
    EXPECT_EQ(error, "unknown rule keyword: names");
}

TEST_F(ViaRules, VersionTwoLeavesTheDefaultsInForce)
{
    SViaMetalRules rules;
    EXPECT_FALSE(ReadText(rules, "viametalrules version=2\nrule\nend_rule\nend_viametalrules\n"));
    EXPECT_TRUE(rules == SViaMetalRules());
    EXPECT_FALSE(rules.HasRule());
    EXPECT_TRUE(Ask(rules, "MyVIA1", true, false).itsCreateVia);
}

TEST_F(ViaRules, NewRulesHoldTheHardCodedDefaults)
{
    const SViaMetalRules rules;
    ASSERT_EQ(rules.GetRules().size(), 2u);
    const SViaMetalRule* user = rules.FindRule(SViaMetalRule::UseRule);
    const SViaMetalRule* empty = rules.FindRule(SViaMetalRule::EmptyRule);
    ASSERT_TRUE(user && empty);
    EXPECT_EQ(user->GetNames(), std::vector<SString>{"*via*"});
    EXPECT_EQ(user->GetCompareMode(), SViaMetalRule::NoCase);
    EXPECT_TRUE(user->GetAttr(SViaMetalRule::OnlyVia).itsCreateVia);
    EXPECT_TRUE(user->GetAttr(SViaMetalRule::Template).itsCreateVia);
    EXPECT_FALSE(user->GetAttr(SViaMetalRule::OnlyPlanar).itsCreateVia);
    EXPECT_TRUE(empty->GetAttr(SViaMetalRule::IsEmpty).itsCreateVia);
    EXPECT_FALSE(empty->GetAttr(SViaMetalRule::OnlyVia).itsCreateVia);
    const SViaMetalRule plain(SViaMetalRule::Rule);
    EXPECT_FALSE(plain.GetAttr(SViaMetalRule::IsEmpty).itsCreateVia);
    EXPECT_TRUE(plain.GetAttr(SViaMetalRule::OnlyVia).itsCreateVia);
    for (int attr = 0; attr < SViaMetalRule::AttrCount; ++attr)
        EXPECT_FALSE(plain.GetAttr(attr).itsKeepPlanar || plain.GetAttr(attr).IsGiven()) << attr;
}

struct NameCase
{
    int mode;
    const char* pattern;
    const char* name;
    bool matches;
};

TEST_F(ViaRules, NamesMatchByWildcardOrRegularExpression)
{
    const NameCase cases[] = {
        {SViaMetalRule::NoCase, "*via*", "MyVIA1", true},
        {SViaMetalRule::Case, "*via*", "MyVIA1", false},
        {SViaMetalRule::Case, "*VIA?", "MyVIA1", true},
        {SViaMetalRule::Case, "*VIA?", "MyVIA12", false},
        {SViaMetalRule::Case, "M*", "xM1", false},
        {SViaMetalRule::Case, "*", "", true},
        {SViaMetalRule::Case, "a*b*c", "aXbYbZc", true},
        {SViaMetalRule::Case, "a*b*c", "aXbYbZ", false},
        {SViaMetalRule::Case, "[ab]", "a", false},
        {SViaMetalRule::RegExp, "VIA[0-9]", "MyVIA1", true},
        {SViaMetalRule::RegExp, "^VIA", "MyVIA1", false},
        {SViaMetalRule::RegExp, "via", "MyVIA1", false},
        {SViaMetalRule::RegExp, "(", "(", false},
    };
    for (const NameCase& c : cases) {
        SViaMetalRule rule;
        rule.SetCompareMode(c.mode);
        rule.SetNames({c.pattern});
        EXPECT_EQ(rule.MatchesName(c.name), c.matches) << c.pattern << " " << c.name;
    }
}

TEST_F(ViaRules, APatternIsTheLineAsItStandsLessItsComment)
{
    SViaMetalRules rules;
    ASSERT_TRUE(ReadText(rules, std::string(kHead) +
                                    "rule\nnames compare=case\n\"my via\" ; the quoted one\n  two words  \n"
                                    "\"end_names\"\nend_names\nend_rule\nend_viametalrules\n"))
        << rules.GetErrorText().data();
    const SViaMetalRule* rule = rules.FindRule(SViaMetalRule::Rule);
    ASSERT_TRUE(rule);
    EXPECT_EQ(rule->GetNames(), (std::vector<SString>{"\"my via\"", "two words", "\"end_names\""}));
    EXPECT_EQ(rule->GetCompareMode(), SViaMetalRule::Case);
}

const char* const kRules = "viametalrules version=1 ; rules for the tests\n"
                           "title=Test rules\n"
                           "description = Two rules &\n"
                           "and their order\n"
                           "userule\n"
                           "onlyvia createvia=yes keepplanar=yes\n"
                           "names compare=case\nUSERVIA*\nend_names\n"
                           "end_userule\n"
                           "emptyrule\n"
                           "isempty createvia=no keepplanar=yes\n"
                           "end_emptyrule\n"
                           "rule\n"
                           "onlyplanar createvia=no keepplanar=yes\n"
                           "onlyvia keepplanar=no\n"
                           "notused createvia=no\n"
                           "template createvia=yes keepplanar=yes\n"
                           "names compare=nocase\nm*\nend_names\n"
                           "end_rule\n"
                           "RULE\n"
                           "OnlyPlanar CreateVia=YES keepplanar=yes\n"
                           "names compare=regexp\n^[A-Z]+[0-9]$\nend_names\n"
                           "end_rule\n"
                           "end_viametalrules\n";

struct Answer
{
    const char* name;
    bool planar;
    bool vias;
    bool createVia;
    bool keepPlanar;
};

TEST_F(ViaRules, TheUserRuleFirstThenTheRulesInOrderThenTheDefault)
{
    SViaMetalRules rules;
    ASSERT_TRUE(ReadText(rules, kRules)) << rules.GetErrorText().data();
    EXPECT_TRUE(rules.HasRule());
    EXPECT_EQ(rules.GetTitle(), "Test rules");
    EXPECT_EQ(rules.GetDescription(), "Two rules and their order");
    const Answer cases[] = {
        {"USERVIA3", true, false, true, true}, // the user rule, whatever the state
        {"uservia3", true, false, false, false}, // no rule: the default's planar answer
        {"M1", true, false, false, true},       // first rule, planar only
        {"M1", false, true, true, false},       // vias only
        {"M1", false, false, false, false},     // not used
        {"M1", true, true, true, true},         // both: the template
        {"MB7", true, false, false, true},      // both rules match; the first answers
        {"AB7", true, false, true, true},       // second rule
        {"AB7", false, true, true, false},      // second rule, its default for vias
        {"", true, false, false, true},         // no name: the empty rule
        {"X", false, true, true, false},        // no match: the default rule
        {"X", true, false, false, false},
    };
    for (const Answer& c : cases) {
        const SViaMetalRuleQuery query = Ask(rules, c.name, c.planar, c.vias);
        EXPECT_TRUE(query.IsAnswered());
        EXPECT_EQ(query.itsCreateVia, c.createVia) << c.name << " " << c.planar << c.vias;
        EXPECT_EQ(query.itsKeepPlanar, c.keepPlanar) << c.name << " " << c.planar << c.vias;
    }
}

TEST_F(ViaRules, AnAnswerGivenBeforeIsKept)
{
    SViaMetalRules rules;
    ASSERT_TRUE(ReadText(rules, kRules));
    SViaMetalRuleQuery query("USERVIA1", true, false);
    query.itsCreateVia = false;
    query.itsCreateViaAnswered = true;
    rules.Evaluate(query);
    EXPECT_FALSE(query.itsCreateVia);
    EXPECT_TRUE(query.itsKeepPlanar);
}

TEST_F(ViaRules, WrittenRulesReadBackEqual)
{
    SViaMetalRules rules;
    ASSERT_TRUE(ReadText(rules, kRules));
    const std::string written = WriteText(rules);
    EXPECT_NE(written.find("viametalrules version=1\ntitle=Test rules\n"), std::string::npos) << written;
    EXPECT_NE(written.find("rule\nonlyplanar createvia=no keepplanar=yes\nonlyvia keepplanar=no\n"), std::string::npos)
        << written;
    SViaMetalRules again;
    ASSERT_TRUE(ReadText(again, written)) << again.GetErrorText().data();
    EXPECT_TRUE(again == rules) << written;
    EXPECT_EQ(WriteText(again), written);

    // No title or description, no lines for them.
    const std::string plain = WriteText(SViaMetalRules());
    EXPECT_EQ(plain.find("title"), std::string::npos);
    EXPECT_EQ(plain.find("description"), std::string::npos);
}

TEST_F(ViaRules, RulesAmongTheLinesOfAHeader)
{
    SViaMetalRules rules;
    ASSERT_TRUE(ReadText(rules, kRules));
    SConversionRules source;
    source.Rules() = rules;
    QStringList lines{"HEADER", "DAT 01/01/2024"};
    source.WriteRules(lines);
    lines << "END HEADER";
    ASSERT_EQ(lines[2], "viametalrules version=1");

    SConversionRules target;
    ASSERT_TRUE(target.ReadRules(lines));
    EXPECT_TRUE(target.GetRules() == rules);
    EXPECT_FALSE(SConversionRules().ReadRules({"HEADER", "END HEADER"}));
    theReports.clear();
    EXPECT_FALSE(target.ReadRules({"HEADER", "viametalrules version=1", "rule", "END HEADER"}, "header"));
    EXPECT_NE(theReports.find("Rules File (header)  Line: 3 unknown rule attr: END"), std::string::npos) << theReports;
    EXPECT_TRUE(target.GetRules() == rules);
}

TEST_F(ViaRules, TheInstalledDefaultPresetReadsAndDecides)
{
    SViaMetalRules rules;
    ASSERT_TRUE(rules.ReadFile(GDS_SOURCE_DIR "/resource/cvt/default.cvt")) << rules.GetErrorText().data();
    EXPECT_EQ(rules.GetTitle(), "Default");
    const Answer cases[] = {
        {"MyVIA1", true, false, true, false},
        {"Contact", true, true, true, false},
        {"CUT2", true, false, false, true},
        {"V12", false, true, true, false},
        {"V12", true, false, false, true},
        {"M1", true, false, false, false},
        {"", true, false, false, true},
    };
    for (const Answer& c : cases) {
        const SViaMetalRuleQuery query = Ask(rules, c.name, c.planar, c.vias);
        EXPECT_EQ(query.itsCreateVia, c.createVia) << c.name << " " << c.planar << c.vias;
        EXPECT_EQ(query.itsKeepPlanar, c.keepPlanar) << c.name << " " << c.planar << c.vias;
    }
}

// HOME and VELORA_RESOURCE_DIR in scratch folders, with preset files written there.
class RuleFiles : public ViaRules {
protected:
    void SetUp() override
    {
        ViaRules::SetUp();
        ASSERT_TRUE(itsDir.isValid());
        for (const char* name : {"HOME", "VELORA_RESOURCE_DIR"}) {
            const char* value = getenv(name);
            itsSaved.push_back(value ? std::string(value) : std::string());
            itsWasSet.push_back(value != nullptr);
        }
        QDir(itsDir.path()).mkpath("home/.velora_preferences");
        QDir(itsDir.path()).mkpath("resource/cvt");
        setenv("HOME", (itsDir.path() + "/home").toLocal8Bit().constData(), 1);
        setenv("VELORA_RESOURCE_DIR", (itsDir.path() + "/resource").toLocal8Bit().constData(), 1);
    }
    void TearDown() override
    {
        const char* names[] = {"HOME", "VELORA_RESOURCE_DIR"};
        for (size_t i = 0; i < 2; ++i) {
            if (itsWasSet[i])
                setenv(names[i], itsSaved[i].c_str(), 1);
            else
                unsetenv(names[i]);
        }
        ViaRules::TearDown();
    }

    QString Path(const QString& name) const { return itsDir.path() + "/" + name; }
    void Write(const QString& name, const std::string& text) const
    {
        QFile file(Path(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(text.data(), qint64(text.size()));
    }
    static std::string Titled(const char* title)
    {
        return std::string(kHead) + "title=" + title + "\nend_viametalrules\n";
    }

    QTemporaryDir itsDir;
    std::vector<std::string> itsSaved;
    std::vector<bool> itsWasSet;
};

TEST_F(RuleFiles, ThePreferenceDirectoryComesBeforeTheResourceDirectory)
{
    Write("resource/cvt/default.cvt", Titled("Installed"));
    Write("home/.velora_preferences/default.cvt", Titled("Mine"));
    SConversionRules rules;
    EXPECT_TRUE(rules.Reload());
    EXPECT_EQ(rules.GetRules().GetTitle(), "Mine");

    QFile::remove(Path("home/.velora_preferences/default.cvt"));
    EXPECT_TRUE(rules.Reload());
    EXPECT_EQ(rules.GetRules().GetTitle(), "Installed");

    // Nothing found: the defaults, without a report.
    QFile::remove(Path("resource/cvt/default.cvt"));
    EXPECT_FALSE(rules.Reload());
    EXPECT_TRUE(rules.GetRules() == SViaMetalRules());
    EXPECT_EQ(theReports, "");

    // A file that fails stands back for the defaults too.
    Write("resource/cvt/default.cvt", "viametalrules version=2\n");
    EXPECT_FALSE(rules.Reload());
    EXPECT_TRUE(rules.GetRules() == SViaMetalRules());
    EXPECT_NE(theReports.find("version number should be 1"), std::string::npos);
}

TEST_F(RuleFiles, TheSettingsChooseAUserFileOrAPreset)
{
    Write("resource/cvt/narrow.cvt", Titled("Narrow"));
    Write("home/.velora_preferences/mine.cvt", Titled("Mine"));
    Write("settings.ini", "[Velora\\CvtOpts]\nVMRuleType=user\nVMUserName=mine\nVMPresetName=narrow\n");
    SInitializationFile settings(SString(Path("settings.ini")));
    ASSERT_TRUE(settings.Read());
    SConversionRules rules(&settings);
    EXPECT_TRUE(rules.Initialize());
    EXPECT_EQ(rules.GetRuleType(), "user");
    EXPECT_EQ(rules.GetRules().GetTitle(), "Mine");

    // A user file that isn't there is reported, and the preset stands in.
    rules.SetUserFileName("gone.cvt");
    EXPECT_TRUE(rules.Reload());
    EXPECT_NE(theReports.find("File not found: gone.cvt"), std::string::npos) << theReports;
    EXPECT_EQ(rules.GetRules().GetTitle(), "Narrow");

    rules.SetRuleType("preset");
    rules.SetUserFileName(SString(Path("home/.velora_preferences/mine.cvt")));
    EXPECT_TRUE(rules.Reload());
    EXPECT_EQ(rules.GetRules().GetTitle(), "Narrow");
    EXPECT_EQ(settings.GetValue("Velora\\CvtOpts", "VMRuleType"), "preset");
    EXPECT_TRUE(rules.SaveSettings());
    SInitializationFile reread(SString(Path("settings.ini")));
    ASSERT_TRUE(reread.Read());
    EXPECT_EQ(reread.GetValue("Velora\\CvtOpts", "VMUserName"), SString(Path("home/.velora_preferences/mine.cvt")));
}

TEST_F(RuleFiles, PresetsAreListedByTitleWithCustomLast)
{
    Write("resource/cvt/default.cvt", Titled("Installed"));
    Write("resource/cvt/narrow.cvt", "not a rule file\n");
    Write("home/.velora_preferences/wide.cvt", Titled("Wide vias"));
    Write("home/.velora_preferences/default.cvt", Titled("My default"));
    Write("home/.velora_preferences/notes.txt", "not a preset\n");
    SConversionRules rules;
    rules.CollectPresets();
    EXPECT_EQ(rules.GetPresetFileNames(), (QStringList{"default", "narrow", "wide", "custom"}));
    EXPECT_EQ(rules.GetPresetDisplayNames(), (QStringList{"My default", "narrow", "Wide vias", "Custom"}));
    EXPECT_EQ(theReports, "");
}

TEST_F(RuleFiles, SavingAsCustomMakesTheCustomPreset)
{
    SConversionRules rules;
    SViaMetalRule rule;
    rule.SetNames({"poly*"});
    rule.Attr(SViaMetalRule::OnlyPlanar).SetCreateVia(true);
    rules.Rules().AddRule(rule);
    rules.SetBackup(true);
    ASSERT_TRUE(rules.SaveAsCustom());
    ASSERT_TRUE(rules.SaveAsCustom());
    EXPECT_TRUE(QFile::exists(Path("home/.velora_preferences/custom.cvt.bak")));
    EXPECT_EQ(rules.GetPresetName(), "custom");
    EXPECT_EQ(rules.GetRules().GetDescription(), "Custom preset specified by the user");
    const SViaMetalRules saved = rules.GetRules();
    EXPECT_TRUE(rules.Reload());
    EXPECT_TRUE(rules.GetRules() == saved);
    EXPECT_TRUE(Ask(rules.GetRules(), "poly1", true, false).itsCreateVia);

    // A preference directory that can't be made.
    Write("file", "");
    setenv("HOME", Path("file").toLocal8Bit().constData(), 1);
    EXPECT_FALSE(rules.SaveAsCustom());
    EXPECT_NE(theReports.find("Unable to save the custom rule file."), std::string::npos) << theReports;
}

} // namespace
