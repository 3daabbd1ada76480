#ifndef SPOLYGONSCANNER_H
#define SPOLYGONSCANNER_H

#include <QSet>
#include <QString>

#include <unordered_set>

class SCircuit;
class SEnclosure;
class SProjectFile;

// For a read that drops the drawing (an update that replaces it): tells which polygons of
// the GEO block may go unbuilt, and passes over those in the plain form this program writes
// straight from the file's bytes. A polygon is built after all when another object refers
// to it, or when the checks that follow the read (levels, material numbers, technology
// layer names) would refuse it, so that the read ends exactly as a full one would.
class SPolygonScanner {
public:
  // Takes what the circuit holds when its polygons begin: everything that may refer to a
  // polygon stands ahead of them.
  explicit SPolygonScanner(const SCircuit& circuit);

  // False when a port or via names its polygon by its place among all polygons (older
  // files): places can't be told without building every polygon.
  bool CanPassOver() const { return !itsByPlace; }
  // Whether a polygon read in full may be dropped at once.
  bool MayDrop(const SEnclosure& shape) const;
  // Passes over at most `count` polygons, stopping before the first it can't vouch for,
  // and leaves the file at the last line taken. Answers how many it passed (-1 when the
  // file couldn't be positioned again); `highestId` is the highest id among them.
  long long PassOver(SProjectFile& file, long long count, long long& highestId) const;

private:
  enum Kind { Metal, Via, Brick };
  // One polygon from the raw lines; false, with nothing to keep, when it isn't plain.
  bool PassOne(SProjectFile& file, long long& id) const;
  bool Binds(Kind kind, int material) const;

  int itsLevels = 0;
  QSet<int> itsMetals;
  QSet<int> itsBricks;
  QSet<QString> itsTechLayers;
  std::unordered_set<long long> itsWanted;
  bool itsByPlace = false;
};

#endif
