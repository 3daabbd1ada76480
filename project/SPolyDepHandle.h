#ifndef SPOLYDEPHANDLE_H
#define SPOLYDEPHANDLE_H

#include <cstddef>
#include <vector>

class SCircuit;
class SFile;
class SMetalPolygon;
class SProjectErrorManager;
class SProjectStream;
class SSMDev;

// A link to a polygon and some of its edges (or vertices), in the file as a "POLY" line with
// the polygon's id and a count, then one line per number. The polygon is kept by id and
// looked up when needed: the translator may delete polygons behind a link's back.
class SPolyDepHandle {
public:
  bool IsSet() const { return itsPolygonId >= 0; }
  void Clear() {
    itsPolygonId = -1;
    itsItems.clear();
    itsComponent = false;
  }
  // An "SMD" handle: the id names a component, not a polygon.
  bool IsComponent() const { return itsComponent; }
  // No items: the handle stands for every vertex of the polygon.
  bool IsWholePolygon() const { return itsItems.empty(); }
  long long GetPolygonId() const { return itsPolygonId; }
  void SetPolygonId(long long id) { itsPolygonId = id; }
  void SetPolygon(const SMetalPolygon* polygon);
  // The polygon of the id in the circuit, or null.
  SMetalPolygon* FindPolygon(const SCircuit& circuit) const;
  // For an "SMD" handle, the component of the id (its group id) in the circuit, or null.
  SSMDev* FindComponent(const SCircuit& circuit) const;
  const std::vector<int>& GetItems() const { return itsItems; }
  void SetItems(const std::vector<int>& items) { itsItems = items; }
  void AddItem(int item) { itsItems.push_back(item); }
  int GetItem(size_t i) const { return i < itsItems.size() ? itsItems[i] : 0; }

  // "POLY id count" (or "SMD ...") and the item lines, each ending in a line feed.
  void Write(SProjectStream& out) const;
  // From the current token, which must be the "POLY" word; leaves the file on the last
  // item line. Errors: 6024 for another word (components have no place here), 6057 for
  // a bad id or count, 6058 for a bad item.
  bool Read(SFile& file, SProjectErrorManager& errors);
  // The form of a geometry variable's handles, where "SMD" is allowed too. Errors: 6024
  // for another word, 6068 for a bad id, 6065 for a bad count, 6132 for a bad index.
  bool ReadVariableHandle(SFile& file, SProjectErrorManager& errors);

private:
  bool ReadItems(SFile& file, SProjectErrorManager& errors, int badId, int badCount, int badItem);

  long long itsPolygonId = -1;
  std::vector<int> itsItems;
  bool itsComponent = false;
};

#endif
