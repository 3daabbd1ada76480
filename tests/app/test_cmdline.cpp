// The generic command line layer: matching order, bundles, values,
// terminators and "-ver".

#include "SCmdOption.h"
#include "SCommandLineOptions.h"
#include "SErrorMessages.h"
#include "SGdsCmdLineOptions.h"

#include <gtest/gtest.h>

#include <QStringList>

#include <string>
#include <vector>

namespace {

// The unknown-option report needs its texts; the program reads them from the
// message files, the tests give them here.
class MessageTexts : public testing::Environment
{
public:
    void SetUp() override
    {
        SErrorMessages* messages = SErrorMessages::Instance();
        messages->SetMessage(5900, SString("Error "));
        messages->SetMessage(5930, SString("Unknown command line option."));
        messages->SetMessage(5931, SString("The option %s is ignored."));
    }
};

testing::Environment* const Messages = testing::AddGlobalTestEnvironment(new MessageTexts);

// A small option set with every kind of option.
class TestOptions : public SCommandLineOptions
{
public:
    void DefineOptions() override
    {
        AddOption(new SCmdOption(SString("v")));
        AddOption(new SCmdOption(SString("d")));
        AddOption(new SCmdOption(SString("L")));
        AddOption(new SCmdOptionArgumentNextArgv(SString("l")));
        AddOption(new SCmdOptionArgumentNextArgv(SString("o")));
        AddOption(new SCmdOptionArgumentString(SString("N")));
        AddOption(new SCmdOptionArgumentFloat(SString("a")));
        AddOption(new SCmdOptionArgumentInteger(SString("n")));
        AddOption(new SCmdOption(SString("lx")));
    }
};

struct Reading
{
    std::vector<std::string> arguments;
    std::string out;
    std::string err;
};

Reading Read(SCommandLineOptions& options, const QStringList& line)
{
    options.DefineOptions();
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    options.ReadCmdLine(QStringList{ "prog" } + line);
    Reading result;
    result.out = testing::internal::GetCapturedStdout();
    result.err = testing::internal::GetCapturedStderr();
    const SOrdered& arguments = options.GetArguments();
    for (size_t i = 0; i < arguments.entries(); ++i)
        result.arguments.push_back(static_cast<const SCollectableString*>(arguments.at(i))->data());
    return result;
}

std::string ValueOf(const SCommandLineOptions& options, const char* name)
{
    const SCmdOption* option = options.FindActiveOption(SString(name));
    return option ? std::string(option->GetValueText().data()) : std::string("<inactive>");
}

bool Active(const SCommandLineOptions& options, const char* name)
{
    return options.FindActiveOption(SString(name)) != nullptr;
}

using Args = std::vector<std::string>;

} // namespace

TEST(OptionDictionary, MatchesInLengthThenAsciiOrder)
{
    SGdsCmdLineOptions options;
    options.DefineOptions();
    const SOptionDictionary& known = options.GetOptions();
    ASSERT_EQ(known.entries(), 41u);
    std::string order;
    for (size_t i = 0; i < known.entries(); ++i)
        order += known.at(i)->GetName().data();
    EXPECT_EQ(order, "1ABCDFGHJLMPQRSTUVWbcdefghijklmopqrstvxyz");

    // A longer name is tried before the letters it starts with.
    TestOptions test;
    test.DefineOptions();
    EXPECT_EQ(std::string(test.GetOptions().at(0)->GetName().data()), "lx");
}

TEST(OptionDictionary, AddingSameNameReplacesTheOption)
{
    SOptionDictionary dictionary;
    dictionary.Add(new SCmdOption(SString("o")));
    dictionary.Add(new SCmdOptionArgumentNextArgv(SString("o")));
    dictionary.Add(new SCmdOption(SString("p")));
    ASSERT_EQ(dictionary.entries(), 2u);
    EXPECT_NE(dynamic_cast<SCmdOptionArgumentNextArgv*>(dictionary.Find(SString("o"))), nullptr);
    EXPECT_EQ(dictionary.Find(SString("q")), nullptr);
    EXPECT_EQ(dictionary.at(2), nullptr);
}

TEST(CmdOption, CloneKeepsKindNameAndValue)
{
    SCmdOptionArgumentNextArgv option(SString("l"), 7);
    option.SetValue(SString("file.lay"));
    SCmdOption* clone = option.Clone();
    EXPECT_TRUE(option.EqualTo(*clone));
    EXPECT_EQ(clone->GetType(), 7);
    EXPECT_EQ(std::string(clone->GetValueText().data()), "file.lay");
    EXPECT_FALSE(SCmdOption(SString("l"), 7).EqualTo(*clone));
    delete clone;
}

TEST(CmdLine, FlagsBundleOnlyInDictionaryOrder)
{
    TestOptions bundled;
    Reading r = Read(bundled, { "-dv" });
    EXPECT_TRUE(Active(bundled, "d"));
    EXPECT_TRUE(Active(bundled, "v"));
    EXPECT_EQ(r.err, "");

    TestOptions reversed;
    r = Read(reversed, { "-vd", "x" });
    EXPECT_TRUE(Active(reversed, "v"));
    EXPECT_FALSE(Active(reversed, "d"));
    EXPECT_EQ(r.err, "Error 5930:\nUnknown command line option.\nThe option -d is ignored.\n");
    EXPECT_EQ(r.arguments, Args{ "x" });
}

TEST(CmdLine, UnknownOptionIsReportedAndReadingGoesOn)
{
    TestOptions options;
    Reading r = Read(options, { "-Z", "a", "-v" });
    EXPECT_NE(r.err.find("-Z"), std::string::npos) << r.err;
    EXPECT_TRUE(Active(options, "v"));
    EXPECT_EQ(r.arguments, Args{ "a" });

    TestOptions quiet;
    quiet.DefineOptions();
    SString unknown;
    const SCmdOption* found = quiet.FindOption(SString("vQ"), unknown);
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(found, quiet.FindActiveOption(SString("v")));
    EXPECT_EQ(std::string(unknown.data()), "Q");
}

TEST(CmdLine, NextArgvTakesFollowingElementAndDropsRestOfItsOwn)
{
    TestOptions options;
    Reading r = Read(options, { "-lfoo", "x", "y" });
    EXPECT_EQ(ValueOf(options, "l"), "x");
    EXPECT_EQ(r.arguments, Args{ "y" });

    // The value may begin with a dash.
    TestOptions dash;
    Read(dash, { "-o", "-10,20" });
    EXPECT_EQ(ValueOf(dash, "o"), "-10,20");
}

TEST(CmdLine, LongerNameWinsOverItsFirstLetter)
{
    TestOptions options;
    Reading r = Read(options, { "-lx", "a" });
    EXPECT_TRUE(Active(options, "lx"));
    EXPECT_FALSE(Active(options, "l"));
    EXPECT_EQ(r.arguments, Args{ "a" });
}

TEST(CmdLine, RepeatedOptionKeepsLastValue)
{
    TestOptions options;
    Read(options, { "-o", "first", "-o", "second" });
    EXPECT_EQ(ValueOf(options, "o"), "second");
    EXPECT_EQ(options.GetActiveOptions().entries(), 1u);
}

TEST(CmdLine, OptionAtEndIsActiveWithEmptyValue)
{
    TestOptions options;
    Reading r = Read(options, { "a", "-o" });
    EXPECT_EQ(ValueOf(options, "o"), "");
    EXPECT_EQ(r.arguments, Args{ "a" });
}

TEST(CmdLine, DoubleDashEndsOptionRecognition)
{
    TestOptions options;
    Reading r = Read(options, { "-v", "--", "-a.gds", "-d", "--x" });
    EXPECT_TRUE(Active(options, "v"));
    EXPECT_FALSE(Active(options, "d"));
    EXPECT_EQ(r.arguments, (Args{ "-a.gds", "-d", "--x" }));

    // Any element with two leading dashes terminates and is dropped.
    TestOptions longDash;
    r = Read(longDash, { "--verbose", "-v" });
    EXPECT_FALSE(Active(longDash, "v"));
    EXPECT_EQ(r.arguments, Args{ "-v" });
}

TEST(CmdLine, DoubleDashAsValueGivesEmptyValue)
{
    TestOptions options;
    Reading r = Read(options, { "-o", "--", "-v", "a" });
    EXPECT_EQ(ValueOf(options, "o"), "");
    EXPECT_TRUE(Active(options, "v"));
    EXPECT_EQ(r.arguments, Args{ "a" });
}

TEST(CmdLine, EmptyElementsAndLoneDashAreIgnored)
{
    TestOptions options;
    Reading r = Read(options, { "", "-", "a", "" });
    EXPECT_EQ(r.arguments, Args{ "a" });
    EXPECT_EQ(options.GetActiveOptions().entries(), 0u);
    EXPECT_EQ(r.err, "");
}

TEST(CmdLine, VersionAnywhereStopsReading)
{
    TestOptions options;
    Reading r = Read(options, { "a.gds", "-v", "-VeRsIoN", "-d", "b.gds" });
    EXPECT_EQ(r.out, "Version: " + std::string(SCommandLineOptions::VersionText().data()) + "\n");
    EXPECT_TRUE(Active(options, "version"));
    EXPECT_TRUE(Active(options, "v"));
    EXPECT_FALSE(Active(options, "d"));
    EXPECT_EQ(r.arguments, Args{ "a.gds" });

    // "-v" alone is not the version.
    TestOptions verbose;
    r = Read(verbose, { "-v" });
    EXPECT_EQ(r.out, "");
    EXPECT_FALSE(Active(verbose, "version"));
}

TEST(CmdLine, ValueInSameArgument)
{
    TestOptions options;
    Reading r = Read(options, { "-Nname rest", "-a2.5v", "-n42", "-n-7x", "next" });
    EXPECT_EQ(ValueOf(options, "N"), "name rest");
    EXPECT_EQ(dynamic_cast<SCmdOptionArgumentFloat*>(options.FindActiveOption(SString("a")))->GetValue(), 2.5);
    EXPECT_TRUE(Active(options, "v"));
    // The number stops at the first character that isn't part of it, and
    // the rest is matched further.
    EXPECT_EQ(dynamic_cast<SCmdOptionArgumentInteger*>(options.FindActiveOption(SString("n")))->GetValue(), -7);
    EXPECT_NE(r.err.find("-x"), std::string::npos) << r.err;
    EXPECT_EQ(r.arguments, Args{ "next" });

    TestOptions noNumber;
    r = Read(noNumber, { "-nq" });
    EXPECT_EQ(dynamic_cast<SCmdOptionArgumentInteger*>(noNumber.FindActiveOption(SString("n")))->GetValue(), 0);
    EXPECT_NE(r.err.find("-q"), std::string::npos);
}

TEST(CmdLine, ReadsOneStringAndArgv)
{
    TestOptions line;
    line.DefineOptions();
    line.ReadCmdLine(SString("prog  -l\tlayers.lay   chip.gds"));
    EXPECT_EQ(ValueOf(line, "l"), "layers.lay");
    ASSERT_EQ(line.GetArguments().entries(), 1u);

    TestOptions fromArgv;
    fromArgv.DefineOptions();
    char prog[] = "prog", flag[] = "-o", value[] = "\xc3\xa9t\xc3\xa9.vel";
    char* argv[] = { prog, flag, value, nullptr };
    fromArgv.ReadCmdLine(3, argv);
    EXPECT_EQ(ValueOf(fromArgv, "o"), "\xc3\xa9t\xc3\xa9.vel");

    // Reading again starts afresh.
    fromArgv.ReadCmdLine(1, argv);
    EXPECT_EQ(fromArgv.GetActiveOptions().entries(), 0u);
}
