#ifndef SAPPLICATIONMANAGER_H
#define SAPPLICATIONMANAGER_H

#include <QObject>

// What the suite's programs share: process-wide settings made ready on
// construction, message files, trace, and the command-line log.
class SApplicationManager : public QObject
{
public:
    SApplicationManager();
    ~SApplicationManager() override;

    virtual void DumpCommandLine(int argc, char** argv);
    virtual bool Run(int argc, char** argv) = 0;
    virtual bool LoadStringFiles();
    virtual void CreateTrace();

    static SApplicationManager* Instance();
};

#endif
