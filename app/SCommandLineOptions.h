#ifndef SCOMMANDLINEOPTIONS_H
#define SCOMMANDLINEOPTIONS_H

#include "SOptionDictionary.h"
#include "SOrdered.h"
#include "SSet.h"
#include "SString.h"

#include <QStringList>

class SCmdOption;

// Turns an argument list into plain arguments and a set of active options.
// Subclasses say which options exist in DefineOptions.
class SCommandLineOptions
{
public:
    SCommandLineOptions();
    virtual ~SCommandLineOptions();
    SCommandLineOptions(const SCommandLineOptions&) = delete;
    SCommandLineOptions& operator=(const SCommandLineOptions&) = delete;

    // Takes ownership; an option of the same name is replaced.
    void AddOption(SCmdOption* option);
    virtual void DefineOptions();

    void ReadCmdLine(int argc, char** argv);
    // The first element is the program's name and is skipped.
    void ReadCmdLine(const QStringList& arguments);
    // A whole command line, program name first, split at white space.
    void ReadCmdLine(const SString& commandLine);

    // The active option of that name, or null when it wasn't given.
    SCmdOption* FindActiveOption(const SString& name) const;
    // Matches the options in dictionary order against `text` (an argument
    // without its dash) and makes each one found active. Returns the last one
    // made active, or null; `unknown` gets what no option matched.
    SCmdOption* FindOption(const SString& text, SString& unknown);

    const SSet& GetActiveOptions() const { return itsActiveOptions; }
    // The plain arguments in order, as SCollectableString.
    const SOrdered& GetArguments() const { return itsArguments; }
    const SOptionDictionary& GetOptions() const { return itsOptions; }

    bool GetReportUnknown() const { return itsReportUnknown; }
    void SetReportUnknown(bool report) { itsReportUnknown = report; }

    // The text printed by "-ver": the application's version.
    static SString VersionText();

private:
    void Reset();
    void ActivateVersion();

    SSet itsActiveOptions;
    SOptionDictionary itsOptions;
    SOrdered itsArguments;
    bool itsReportUnknown = true;
};

#endif
