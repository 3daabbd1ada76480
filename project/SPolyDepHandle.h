#ifndef SPOLYDEPHANDLE_H
#define SPOLYDEPHANDLE_H

#include <cstddef>
#include <vector>

class SCircuit;
class SFile;
class SMetalPolygon;
class SProjectErrorManager;
class SProjectStream;

// A link to a polygon and some of its edges (or vertices), in the file as a "POLY" line with
// the polygon's id and a count, then one line per number. The polygon is kept by id and
// looked up when needed: the translator may delete polygons behind a link's back.
class SPolyDepHandle {
public:
  bool IsSet() const { return itsPolygonId >= 0; }
  void Clear() {
    itsPolygonId = -1;
    itsItems.clear();
  }
  long long GetPolygonId() const { return itsPolygonId; }
  void SetPolygonId(long long id) { itsPolygonId = id; }
  void SetPolygon(const SMetalPolygon* polygon);
  // The polygon of the id in the circuit, or null.
  SMetalPolygon* FindPolygon(const SCircuit& circuit) const;
  const std::vector<int>& GetItems() const { return itsItems; }
  void SetItems(const std::vector<int>& items) { itsItems = items; }
  void AddItem(int item) { itsItems.push_back(item); }
  int GetItem(size_t i) const { return i < itsItems.size() ? itsItems[i] : 0; }

  // "POLY id count" and the item lines, each ending in a line feed.
  void Write(SProjectStream& out) const;
  // From the current token, which must be the "POLY" word; leaves the file on the last
  // item line. Errors: 6024 for another word (components have no place here), 6057 for
  // a bad id or count, 6058 for a bad item.
  bool Read(SFile& file, SProjectErrorManager& errors);

private:
  long long itsPolygonId = -1;
  std::vector<int> itsItems;
};

#endif
