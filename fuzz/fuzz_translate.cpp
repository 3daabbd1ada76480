// Arbitrary bytes as a stream translated into a project: flattening, path outlines,
// the filters, ports, substrate, box sizing and the project writer, through the same
// run a user starts.

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

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

struct Workspace
{
    QTemporaryDir dir;
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
        space.layers = space.dir.filePath("fuzz.lay").toStdString();
        space.project = space.dir.filePath("fuzz.vel").toStdString();
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
        words.push_back(stream);
        std::vector<char*> argv;
        for (std::string& word : words)
            argv.push_back(&word[0]);
        argv.push_back(nullptr);
        try {
            SGdsApp app;
            app.Run(int(argv.size()) - 1, argv.data());
        } catch (int) {
            // A fatal program error.
        }
    }
    QFile::remove(QString::fromStdString(space.project));
    return 0;
}
