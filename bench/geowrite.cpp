// Builds a circuit of many rectangles spread over three levels and writes its project
// text, timing both: the write should be linear and dominated by number formatting.
//
//   geowrite [polygons [project]]      (default 1000000, geowrite.vel in the temporary folder)

#include <sys/resource.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <chrono>
#include <cstdio>
#include <cstdlib>

#include "SCircuit.h"
#include "SDimensionBlock.h"
#include "SGeometryBlock.h"
#include "SLevel.h"
#include "SMetalPolygon.h"
#include "SProject.h"
#include "SProjectStream.h"

namespace {

double Seconds(std::chrono::steady_clock::time_point since) {
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - since).count();
}

double PeakMiB() {
  struct rusage usage {};
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss / 1024.0;
}

}  // namespace

int main(int argc, char** argv) {
  const long count = argc > 1 ? std::atol(argv[1]) : 1000000L;
  if (count <= 0) {
    std::fprintf(stderr, "usage: geowrite [polygons]\n");
    return 2;
  }
  auto start = std::chrono::steady_clock::now();
  SProject project;
  project.GetDimensionBlock()->SetDefaults();
  project.GetGeometryBlock()->SetDefaults();
  SCircuit* circuit = project.GetGeometryBlock()->GetCircuit();
  circuit->SetNumberOfLevels(3);
  circuit->SetBoxSize(10000, 10000);
  for (long i = 0; i < count; ++i) {
    // Coordinates with a few decimals, as a stream in microns gives them.
    const double x = (i % 1000) * 9.875 + 0.125;
    const double y = (i / 1000 % 1000) * 9.625 + 0.375;
    SMetalPolygon* polygon = new SMetalPolygon;
    polygon->SetId(circuit->TakePolygonId() + 1);
    polygon->SetVertices({SPoint(x, y), SPoint(x + 4.5, y), SPoint(x + 4.5, y + 3.25), SPoint(x, y + 3.25)});
    circuit->GetLevel(static_cast<int>(i % 3))->AddChild(polygon);
  }
  const double built = Seconds(start);
  const std::string path = argc > 2 ? argv[2] : (QDir::tempPath() + "/geowrite.vel").toStdString();
  start = std::chrono::steady_clock::now();
  if (!project.Save(SString(path.c_str()))) {
    std::fprintf(stderr, "geowrite: cannot save %s\n", path.c_str());
    return 1;
  }
  const double written = Seconds(start);
  const double megabytes = QFileInfo(QString::fromStdString(path)).size() / 1e6;
  QFile::remove(QString::fromStdString(path));
  std::printf("%-10s %10s %10s %10s %12s %10s\n", "polygons", "build s", "write s", "file MB", "polygons/s", "peak MiB");
  std::printf("%-10ld %10.3f %10.3f %10.1f %12.0f %10.0f\n", count, built, written, megabytes,
              count / written, PeakMiB());
  return 0;
}
