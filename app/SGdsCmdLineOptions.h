#ifndef SGDSCMDLINEOPTIONS_H
#define SGDSCMDLINEOPTIONS_H

#include "SCommandLineOptions.h"

// The translator's 41 single-letter options.
class SGdsCmdLineOptions : public SCommandLineOptions
{
public:
    void DefineOptions() override;
};

#endif
