#ifndef SCIRCUITPOLYGONOPS_H
#define SCIRCUITPOLYGONOPS_H

#include "SCollectable.h"
#include "SGPCWrapper.h"

#include <memory>
#include <vector>

class SCircuit;
class SEnclosure;
class SGPCWrapper;
class SXtranProject;

// The polygons of one merged list, by what became of them.
class SPolygonCollection : public SCollectable {
public:
  std::vector<SEnclosure*> itsInput;
  // Made by the merge, not yet in the circuit; owned until committed.
  std::vector<SEnclosure*> itsNew;
  std::vector<SEnclosure*> itsUnchanged;
  // Replaced by new polygons; deleted when committed.
  std::vector<SEnclosure*> itsRemoved;
  // Polygons that other objects point at: never merged.
  std::vector<SEnclosure*> itsExcluded;

  ~SPolygonCollection() override;
  // Appends the new, removed and excluded polygons of `other` (which gives them up).
  void TakeResults(SPolygonCollection& other);
};

class SPolygonBaseOps {
public:
  virtual ~SPolygonBaseOps() {}
  double itsEpsilon = 1e-6;
};

class SPolygonAuxOps : public SPolygonBaseOps {
public:
  explicit SPolygonAuxOps(SXtranProject* project) : itsProject(project) {}
  SXtranProject* itsProject;
};

// -H: on each level, overlapping or touching metal polygons of the same properties become
// one polygon, and where polygons of different properties overlap the better one keeps the
// area and the other is cut back; bricks alike. Vias are not touched.
//
// The greedy grouping compares a growing outline with the polygons still waiting. Done
// literally that is quadratic in the polygons of a level; here the waiting polygons stand
// in a grid of their bounding boxes and in queues by their properties, so that a group
// only looks at what lies near it and the choice of the next seed needn't scan them all.
class SCircuitPolygonOps : public SPolygonAuxOps {
public:
  explicit SCircuitPolygonOps(SXtranProject* project);
  ~SCircuitPolygonOps() override;

  bool MergeAll();
  SPolygonCollection* MergeLevel(int level, bool commit);
  SPolygonCollection* MergeList(const std::vector<SEnclosure*>& list, int level, bool commit);
  void Commit(SPolygonCollection& collection, int level);

  // 1 when a ranks above b, 2 when below, 0 when level.
  static int ComparePriority(const SEnclosure& a, const SEnclosure& b);
  static int CompareControls(const SEnclosure& a, const SEnclosure& b);
  // Merge, cut or leave, for the source polygons of two wrappers.
  enum Relate { MergeThem = 0, CutOther = 1, LeaveThem = 2 };
  static int Relate(const SGPCWrapper& merged, const SGPCWrapper& other);
  // The polygon's resistance as the ranking uses it (metal), or its permittivity (brick).
  static double Rank(const SEnclosure& polygon);

  const std::vector<std::unique_ptr<SPolygonCollection>>& GetResults() const { return itsResults; }

private:
  // The waiting polygons of one merge (defined with the operations).
  class SWaitingList;
  // A group being built: its members and the polygons it cuts back, each with whether it is
  // a piece of a cut polygon rather than a whole source polygon.
  struct SGroup {
    std::vector<std::pair<std::unique_ptr<SGPCWrapper>, bool>> members;
    std::vector<std::pair<std::unique_ptr<SGPCWrapper>, bool>> cut;
  };

  void Merge(SPolygonCollection& collection);
  // The best waiting polygon, which a group is built round.
  int ChooseSeed(SWaitingList& waiting);
  // The seed and every waiting polygon that merges with the group; the union of them.
  std::unique_ptr<SGPCWrapper> BuildGroup(SWaitingList& waiting, SGroup& group);
  // The polygons the group cuts back lose its area; their pieces wait again.
  void Trim(SWaitingList& waiting, SGroup& group, const SGPCWrapper& merged, SPolygonCollection& collection);
  void Exclude(SPolygonCollection& collection);
  void MergeGroups(SPolygonCollection& collection);
  void MakePolygons(const SGPCWrapper& merged, SEnclosure* source, SPolygonCollection& collection);

  std::vector<std::unique_ptr<SPolygonCollection>> itsResults;
  std::vector<long long> itsProtectedIds;
};

#endif
