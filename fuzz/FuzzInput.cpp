#include "FuzzInput.h"

#include <QDir>
#include <QString>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

#include "SGdsDebug.h"
#include "SGdsRecord.h"
#include "SVeloraError.h"

namespace {

// A file the harness rewrites for every input, in the process's own directory.
struct MemoryFile
{
    int fd = -1;
    std::string name;
    size_t size = 0;
};

MemoryFile theInput;
MemoryFile theScratch;
std::string theDirectory;

const char* const kPrefix = "gds-fuzz-";

// Malformed text and broken structure end the program; under the fuzzer
// they end the input only.
void Failure()
{
    throw 1;
}

void RemoveDirectory()
{
    QDir(QString::fromStdString(theDirectory)).removeRecursively();
}

// A process that crashed leaves its directory behind; the next one clears it.
void RemoveDeadDirectories(QDir shm)
{
    const QStringList names = shm.entryList({QString(kPrefix) + "*"}, QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString& name : names) {
        bool number = false;
        pid_t pid = pid_t(name.mid(int(strlen(kPrefix))).toLong(&number));
        if (number && pid > 0 && kill(pid, 0) != 0)
            QDir(shm.filePath(name)).removeRecursively();
    }
}

// In memory where the machine has a tmpfs: every input is written and read back, and a
// translation saves a project with the save's flush to disk.
void MakeDirectory()
{
    QDir base("/dev/shm");
    if (!base.exists() || access("/dev/shm", W_OK) != 0)
        base = QDir(QDir::tempPath());
    RemoveDeadDirectories(base);
    QString name = QString(kPrefix) + QString::number(getpid());
    if (!base.mkpath(name))
        return;
    theDirectory = base.filePath(name).toStdString();
    atexit(RemoveDirectory);
}

// Files have real names: a save resolves links, and a /proc/self/fd name would send it there.
void Make(MemoryFile& file, const char* name)
{
    if (theDirectory.empty())
        return;
    file.name = theDirectory + "/" + name;
    file.fd = open(file.name.c_str(), O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
}

// Shortened only when the new content is shorter: emptying it first would free its pages.
bool Fill(MemoryFile& file, const uint8_t* data, size_t size)
{
    if (file.fd < 0)
        return false;
    if (size > 0 && pwrite(file.fd, data, size, 0) != ssize_t(size))
        return false;
    if (size < file.size && ftruncate(file.fd, off_t(size)) != 0)
        return false;
    file.size = size;
    return true;
}

} // namespace

void FuzzSetup()
{
    static bool done = false;
    if (done)
        return;
    done = true;
    // Messages are part of the behaviour but not of interest here; FUZZ_SHOW keeps them,
    // to see what a harness does.
    if (getenv("FUZZ_SHOW") == nullptr && !freopen("/dev/null", "w", stdout))
        return;
    SetTextFailureHandler(Failure);
    VeloraSetErrorHook(Failure);
    MakeDirectory();
    Make(theInput, "input");
    Make(theScratch, "scratch");
}

std::string FuzzDirectory()
{
    FuzzSetup();
    return theDirectory;
}

std::string FuzzFile(const uint8_t* data, size_t size)
{
    return Fill(theInput, data, size) ? theInput.name : std::string();
}

std::string FuzzScratchFile()
{
    return theScratch.fd >= 0 && ftruncate(theScratch.fd, 0) == 0 ? theScratch.name : std::string();
}

std::string FuzzFileContent(const std::string& name)
{
    std::string content;
    FILE* file = fopen(name.c_str(), "rb");
    if (!file)
        return content;
    char buffer[65536];
    size_t got;
    while ((got = fread(buffer, 1, sizeof buffer, file)) > 0)
        content.append(buffer, got);
    fclose(file);
    return content;
}

void FuzzBroken(const char* what, const std::string& detail)
{
    fprintf(stderr, "%s\n", what);
    fwrite(detail.data(), 1, detail.size(), stderr);
    fputc('\n', stderr);
    abort();
}
