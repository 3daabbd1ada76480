// Arbitrary bytes as a stream translated into a project: flattening, path outlines,
// the filters, ports, substrate, box sizing and the project writer, through the same
// run a user starts.

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <memory>
#include <string>
#include <vector>

#include "FuzzInput.h"
#include "SGdsApp.h"
#include "SVeloraDirectoryInstance.h"

namespace {

// Every purpose on layers 1 to 9 of datatype 0, and paths on 10.
const char* const kLayers = "M1 metal_boundary 1 0 0 \"Gold\"\n"
                            "M2 metal_boundary 2 0 1 \"Copper\"\n"
                            "V1 via 3 0 0 \"Copper\" on gnd\n"
                            "V2 via 4 0 1 \"Copper\" on 0\n"
                            "B brick_boundary 5 0 0 \"Oxide\"\n"
                            "P wall_port 8 0 0 \"Port\"\n"
                            "S substrate 9 0 0 \"Box\"\n"
                            "W metal_boundary 10 0 1 \"Gold\"\n";

// The message files and the trace belong to the installation, the same for every input:
// the process reads them once, as a run of the program does.
class FuzzApp : public SGdsApp
{
public:
    bool LoadStringFiles() override
    {
        static const bool loaded = SGdsApp::LoadStringFiles();
        return loaded;
    }
    void CreateTrace() override
    {
        static bool made = false;
        if (!made)
            SGdsApp::CreateTrace();
        made = true;
    }
};

// The layer file and the project live in memory when the machine has a tmpfs: every input
// writes a project, with the save's flush to disk, and reads it back.
struct Workspace
{
    std::unique_ptr<QTemporaryDir> fallback;
    std::string layers;
    std::string project;
};

Workspace& Space()
{
    static int argc = 1;
    static char name[] = "gds";
    static char* argv[] = {name, nullptr};
    static QCoreApplication application(argc, argv);
    static Workspace space;
    static bool made = false;
    if (!made) {
        made = true;
        SVeloraDirectoryInstance::CreateGlobal(GDS_STAGE_DIR "/bin/x86_64/gds");
        QString directory = QString::fromStdString(FuzzDirectory());
        if (directory.isEmpty()) {
            space.fallback.reset(new QTemporaryDir);
            directory = space.fallback->path();
        }
        space.layers = QDir(directory).filePath("fuzz.lay").toStdString();
        space.project = QDir(directory).filePath("fuzz.vel").toStdString();
        QFile file(QString::fromStdString(space.layers));
        if (file.open(QIODevice::WriteOnly))
            file.write(kLayers);
    }
    return space;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    FuzzSetup();
    Workspace& space = Space();
    std::string stream = FuzzFile(data, size);
    if (stream.empty())
        return 0;
    // Twice: into a new project, and then into the one the first run wrote, if any.
    for (int run = 0; run < 2; ++run) {
        std::vector<std::string> words = {"gds", "-W", "-l", space.layers, "-o", space.project};
        if (run == 1) {
            if (!QFile::exists(QString::fromStdString(space.project)))
                break;
            words.insert(words.end(), {"-g", "-i", space.project, "-m", "10%,1,2,3"});
        }
        // Half of the inputs merge their polygons as well, chosen by the input so that a
        // finding replays the same way.
        if (size > 0 && (data[size / 2] & 1) != 0)
            words.push_back("-H");
        words.push_back(stream);
        std::vector<char*> argv;
        for (std::string& word : words)
            argv.push_back(&word[0]);
        argv.push_back(nullptr);
        try {
            FuzzApp app;
            app.Run(int(argv.size()) - 1, argv.data());
        } catch (int) {
            // A fatal program error.
        }
    }
    QFile::remove(QString::fromStdString(space.project));
    return 0;
}
