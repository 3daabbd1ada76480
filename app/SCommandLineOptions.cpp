#include "SCommandLineOptions.h"

#include <QFile>
#include "SCmdOption.h"
#include "SCollectableString.h"
#include "SVeloraError.h"
#include "SVeloraTrace.h"

#include <QCoreApplication>
#include <QRegExp>

#include <cstdio>

namespace {

const char* const DefaultVersion = "17.52.1";

// An option that no known option matches is reported and otherwise ignored.
void ReportUnknownOption(const SString& option)
{
    VeloraErrorReport(5930, 5931, option.data());
}

}

SCommandLineOptions::SCommandLineOptions() = default;

SCommandLineOptions::~SCommandLineOptions()
{
    itsActiveOptions.clearAndDestroy();
    itsArguments.clearAndDestroy();
}

void SCommandLineOptions::AddOption(SCmdOption* option)
{
    itsOptions.Add(option);
}

void SCommandLineOptions::DefineOptions()
{
}

SString SCommandLineOptions::VersionText()
{
    if (QCoreApplication::instance()) {
        const QString version = QCoreApplication::applicationVersion();
        if (!version.isEmpty())
            return SString(version);
    }
    return SString(DefaultVersion);
}

void SCommandLineOptions::Reset()
{
    itsActiveOptions.clearAndDestroy();
    itsArguments.clearAndDestroy();
}

void SCommandLineOptions::ReadCmdLine(int argc, char** argv)
{
    QStringList arguments;
    for (int i = 0; argv && i < argc; ++i)
        arguments << (argv[i] ? QFile::decodeName(argv[i]) : QString());
    ReadCmdLine(arguments);
}

void SCommandLineOptions::ReadCmdLine(const SString& commandLine)
{
    ReadCmdLine(commandLine.qstring().split(QRegExp("\\s+"), Qt::SkipEmptyParts));
}

void SCommandLineOptions::ReadCmdLine(const QStringList& arguments)
{
    Reset();
    itsReportUnknown = true;
    for (int i = 0; i < arguments.size(); ++i)
        VeloraTrace(1, TRACE_INIT, "Command Line %d: %s", i, SString(arguments.at(i)).data());

    bool recognising = true;
    for (int i = 1; i < arguments.size(); ++i) {
        const QString& element = arguments.at(i);
        if (element.isEmpty())
            continue;
        if (recognising && element.startsWith(QLatin1Char('-'))) {
            const QString rest = element.mid(1);
            if (rest.startsWith(QLatin1Char('-'))) {
                recognising = false;
                continue;
            }
            if (rest.startsWith(QLatin1String("ver"), Qt::CaseInsensitive)) {
                std::printf("Version: %s\n", VersionText().data());
                std::fflush(stdout);
                ActivateVersion();
                return;
            }
            SString unknown;
            SCmdOption* option = FindOption(SString(rest), unknown);
            if (!unknown.isEmpty() && itsReportUnknown)
                ReportUnknownOption(SString("-") + unknown);
            if (option && i + 1 < arguments.size())
                option->TakeValue(i, arguments);
            continue;
        }
        itsArguments.insert(new SCollectableString(SString(element)));
    }
}

void SCommandLineOptions::ActivateVersion()
{
    SCmdOption version(SString("version"));
    if (!itsActiveOptions.find(&version))
        itsActiveOptions.insert(version.Clone());
}

SCmdOption* SCommandLineOptions::FindActiveOption(const SString& name) const
{
    SCmdOption key(name);
    return static_cast<SCmdOption*>(itsActiveOptions.find(&key));
}

SCmdOption* SCommandLineOptions::FindOption(const SString& text, SString& unknown)
{
    SString rest(text);
    SCmdOption* result = nullptr;
    for (size_t i = 0; i < itsOptions.entries(); ++i) {
        if (rest.isEmpty())
            break;
        SCmdOption* known = itsOptions.at(i);
        if (!known || known->isEmpty() || !known->Matches(rest))
            continue;
        SCmdOption* active = static_cast<SCmdOption*>(itsActiveOptions.find(known));
        if (!active) {
            active = known->Clone();
            itsActiveOptions.insert(active);
        }
        active->StripFrom(rest);
        result = active;
    }
    unknown = rest;
    return result;
}
