// Reads a stream and flattens one structure, the way a translation does up to
// its polygon list, and says how long each phase took. For timing until the
// program itself runs the flattening.
//
//   gdsflat [-p structure] [-c boundary_path|no_boundary_path|smart_path] [-D level] [-r] stream.gds
//
// -r also rounds every flat point to six digits, as adding to a project does.

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "SGdsDebug.h"
#include "SGdsExpander.h"
#include "SGdsFile.h"
#include "SGdsPathConverter.h"
#include "SGdsPolygon.h"
#include "SGdsPolygonList.h"
#include "SGdsStructureList.h"
#include "SVeloraError.h"

namespace {

double Seconds(std::chrono::steady_clock::time_point since)
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - since).count();
}

int Usage()
{
    fprintf(stderr, "usage: gdsflat [-p structure] [-c mode] [-D level] [-r] stream.gds\n");
    return 2;
}

} // namespace

int main(int argc, char** argv)
{
    VeloraInstallMemoryHandler();
    const char* structure = nullptr;
    const char* stream = nullptr;
    bool round = false;
    for (int i = 1; i < argc; ++i) {
        if (strcmp(argv[i], "-p") == 0 && i + 1 < argc)
            structure = argv[++i];
        else if (strcmp(argv[i], "-c") == 0 && i + 1 < argc) {
            if (!SetPathConversionMode(SString(argv[++i])))
                return Usage();
        } else if (strcmp(argv[i], "-D") == 0 && i + 1 < argc)
            GdsDebug().SetLevel(atoi(argv[++i]));
        else if (strcmp(argv[i], "-r") == 0)
            round = true;
        else if (argv[i][0] != '-' && !stream)
            stream = argv[i];
        else
            return Usage();
    }
    if (!stream)
        return Usage();

    auto start = std::chrono::steady_clock::now();
    SGdsFile file{SString(stream)};
    // Built while the stream is read, keeping only the records of points, as a translation does.
    SGdsStructureList structures;
    if (!file.CheckHeader() || !file.Read(&structures))
        return 1;
    if (!file.BuildStructures(structures))
        return 1;
    double read = Seconds(start);

    SString name = structure ? SString(structure) : structures.GetDefaultStructure(kDefaultStructureBest);
    if (name.isEmpty() || !structures.FindStructure(name)) {
        fprintf(stderr, "no structure to flatten\n");
        return 1;
    }
    start = std::chrono::steady_clock::now();
    SGdsPolygonList polygons(&structures);
    // The records' memory goes to the flat points on the way, as in a translation.
    if (!ExpandStructure(structures, polygons, name, &file.GetRecords()))
        return 1;
    double flatten = Seconds(start);

    start = std::chrono::steady_clock::now();
    size_t points = 0;
    size_t count = polygons.entries();
    for (size_t i = 0; i < count; ++i) {
        SGdsPolygon* polygon = polygons.at(i);
        if (round)
            polygon->RoundPoints();
        points += size_t(polygon->GetPointCount());
    }
    double rounding = Seconds(start);
    printf("structure %s polygons %zu points %zu read %.3f flatten %.3f round %.3f\n", name.data(), count, points,
           read, flatten, round ? rounding : 0.0);
    return 0;
}
