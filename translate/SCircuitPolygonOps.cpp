#include "SCircuitPolygonOps.h"

#include "SBrickPolygon.h"
#include "SBrickType.h"
#include "SCircuit.h"
#include "SDimension.h"
#include "SGPCWrapper.h"
#include "SGeoClassID.h"
#include "SGeoVar.h"
#include "SInitializationFile.h"
#include "SLevel.h"
#include "SMetalPolygon.h"
#include "SMetalType.h"
#include "SRefPlane.h"
#include "STechLayer.h"
#include "SViaPolygon.h"
#include "SXtranProject.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <map>
#include <tuple>
#include <unordered_map>

namespace {

const double kPriorityTies = 1e-12;
const double kBrickTies = 1e-7;

bool IsBrick(const SEnclosure& polygon) { return polygon.isA() == SID_BRICKPOLYGON; }

const SPolygonData& DataOf(const SEnclosure& polygon) {
  if (IsBrick(polygon)) return static_cast<const SBrickPolygon&>(polygon);
  return static_cast<const SMetalPolygon&>(polygon);
}

SPolygonData& DataOf(SEnclosure& polygon) {
  if (IsBrick(polygon)) return static_cast<SBrickPolygon&>(polygon);
  return static_cast<SMetalPolygon&>(polygon);
}

bool SameWithin(double a, double b, double relative) {
  return a == b || std::fabs(a - b) <= relative * std::max(std::fabs(a), std::fabs(b));
}

bool EqualControls(const SShapeData& a, const SShapeData& b) {
  if (a.FollowsTechLayer() != b.FollowsTechLayer()) return false;
  if (a.FollowsTechLayer()) return a.GetTechLayer() == b.GetTechLayer();
  return a.GetFillType() == b.GetFillType() && a.GetIsotropy() == b.GetIsotropy() && a.GetXMin() == b.GetXMin() &&
         a.GetYMin() == b.GetYMin() && a.GetXMax() == b.GetXMax() && a.GetYMax() == b.GetYMax() &&
         SameWithin(a.GetMaxSubLen(), b.GetMaxSubLen(), 1e-12) &&
         SameWithin(a.GetEdgeTruncation(), b.GetEdgeTruncation(), 1e-12) && a.GetFlatness() == b.GetFlatness() &&
         a.GetCurrentSym() == b.GetCurrentSym() && a.GetEdgeMesh() == b.GetEdgeMesh();
}

int MetalModel(const SEnclosure& polygon) {
  const SMetalType* type = static_cast<const SMetalPolygon&>(polygon).GetType();
  return type ? type->GetModel() : SMetalTypeData::General;
}

SString MetalName(const SEnclosure& polygon) {
  const SMetalType* type = static_cast<const SMetalPolygon&>(polygon).GetType();
  return type ? type->GetTypeName() : SString("Lossless");
}

} // namespace

// The waiting wrappers of one merge: in order of arrival, in a grid of their boxes, and in
// queues of equal properties, so that a group and a seed are found without a scan of all.
class SCircuitPolygonOps::SWaitingList {
public:
  struct SItem {
    std::unique_ptr<SGPCWrapper> wrapper;
    long long order = 0;
    int kind = 0;  // the class of equal properties
    bool alive = false;
    bool piece = false;  // a piece of a cut polygon, not a whole source polygon
  };

  SWaitingList(const std::vector<SEnclosure*>& input, double tolerance) : itsTolerance(tolerance) {
    double sum = 0.0;
    for (SEnclosure* polygon : input) {
      const SRect box = DataOf(*polygon).GetBoundingRect();
      sum += std::max(std::fabs(box.width()), std::fabs(box.height()));
    }
    // Cells about twice the size of an average polygon keep the lists in a cell short.
    itsCell = input.empty() ? 1.0 : std::max(2.0 * sum / static_cast<double>(input.size()), 1e3 * tolerance);
    if (!std::isfinite(itsCell) || itsCell <= 0.0) itsCell = 1.0;
    for (SEnclosure* polygon : input)
      Add(std::make_unique<SGPCWrapper>(DataOf(*polygon).GetVertices(), polygon, tolerance), false);
  }

  bool Empty() const { return itsAlive == 0; }

  int Add(std::unique_ptr<SGPCWrapper> wrapper, bool piece) {
    const int index = static_cast<int>(itsItems.size());
    itsItems.push_back(SItem());
    SItem& item = itsItems.back();
    item.wrapper = std::move(wrapper);
    item.order = itsNextOrder++;
    item.alive = true;
    item.piece = piece;
    item.kind = KindOf(*item.wrapper->itsSource);
    itsQueues[item.kind].push_back(index);
    ++itsAlive;
    const SRect& box = item.wrapper->GetBoundingBox();
    long long x1, y1, x2, y2;
    if (!Cells(box, x1, y1, x2, y2) || (x2 - x1 + 1) * (y2 - y1 + 1) > kMaxCellsPerItem) {
      itsEverywhere.push_back(index);
    } else {
      for (long long x = x1; x <= x2; ++x)
        for (long long y = y1; y <= y2; ++y) itsGrid[Key(x, y)].push_back(index);
    }
    return index;
  }

  SItem& Item(int index) { return itsItems[static_cast<size_t>(index)]; }

  // Takes the item out of the waiting list; the caller has its wrapper.
  std::unique_ptr<SGPCWrapper> Take(int index) {
    SItem& item = Item(index);
    item.alive = false;
    --itsAlive;
    return std::move(item.wrapper);
  }

  // The best waiting item: of the queues of equal properties, taken in the order of their
  // earliest item, the first that no later one outranks; within it the earliest item.
  int ChooseSeed() {
    std::vector<std::pair<long long, int>> heads;
    for (auto& entry : itsQueues) {
      std::vector<int>& queue = entry.second;
      size_t& start = itsQueueStart[entry.first];
      while (start < queue.size() && !Item(queue[start]).alive) ++start;
      if (start < queue.size()) heads.emplace_back(Item(queue[start]).order, queue[start]);
    }
    std::sort(heads.begin(), heads.end());
    int best = heads.front().second;
    for (size_t i = 1; i < heads.size(); ++i) {
      const SEnclosure& it = *Item(heads[i].second).wrapper->itsSource;
      const SEnclosure& current = *Item(best).wrapper->itsSource;
      const int priority = ComparePriority(it, current);
      if (priority == 1 || (priority == 0 && CompareControls(it, current) == 1))
        best = heads[i].second;
    }
    return best;
  }

  // The waiting items whose boxes may come within the tolerance of `box`, in their order.
  std::vector<int> Near(const SRect& box) {
    std::vector<int> found;
    ++itsStamp;
    auto take = [&](int index) {
      SItem& item = itsItems[static_cast<size_t>(index)];
      if (!item.alive || itsSeen[static_cast<size_t>(index)] == itsStamp) return;
      itsSeen[static_cast<size_t>(index)] = itsStamp;
      found.push_back(index);
    };
    itsSeen.resize(itsItems.size(), 0);
    long long x1, y1, x2, y2;
    const bool bounded = Cells(box, x1, y1, x2, y2);
    if (!bounded || (x2 - x1 + 1) * (y2 - y1 + 1) > static_cast<long long>(itsGrid.size())) {
      for (auto& cell : itsGrid)
        for (int index : cell.second) take(index);
    } else {
      for (long long x = x1; x <= x2; ++x)
        for (long long y = y1; y <= y2; ++y) {
          auto cell = itsGrid.find(Key(x, y));
          if (cell != itsGrid.end())
            for (int index : cell->second) take(index);
        }
    }
    for (int index : itsEverywhere) take(index);
    std::sort(found.begin(), found.end(),
              [this](int a, int b) { return itsItems[size_t(a)].order < itsItems[size_t(b)].order; });
    return found;
  }

private:
  static const long long kMaxCellsPerItem = 4096;

  // Cell numbers may be negative: the key is built from their bits as unsigned.
  static unsigned long long Key(long long x, long long y) {
    return (static_cast<unsigned long long>(x) << 32) ^ (static_cast<unsigned long long>(y) & 0xffffffffULL);
  }

  bool Cells(const SRect& box, long long& x1, long long& y1, long long& x2, long long& y2) const {
    const double t = itsTolerance;
    const double bounds[4] = {(box.x1() - t) / itsCell, (box.y1() - t) / itsCell, (box.x2() + t) / itsCell,
                              (box.y2() + t) / itsCell};
    for (double b : bounds)
      if (!std::isfinite(b) || std::fabs(b) > 1e9) return false;
    x1 = static_cast<long long>(std::floor(bounds[0]));
    y1 = static_cast<long long>(std::floor(bounds[1]));
    x2 = static_cast<long long>(std::floor(bounds[2]));
    y2 = static_cast<long long>(std::floor(bounds[3]));
    return x2 >= x1 && y2 >= y1;
  }

  // Equal properties: the type, the technology layer and the controls.
  int KindOf(const SEnclosure& polygon) {
    const SShapeData& shape = DataOf(polygon);
    const void* type = IsBrick(polygon) ? static_cast<const void*>(static_cast<const SBrickPolygon&>(polygon).GetType())
                                        : static_cast<const void*>(static_cast<const SMetalPolygon&>(polygon).GetType());
    for (size_t i = 0; i < itsKinds.size(); ++i) {
      const SEnclosure& other = *itsKinds[i];
      if (DataOf(other).GetTechLayer() != shape.GetTechLayer() || IsBrick(other) != IsBrick(polygon)) continue;
      const void* otherType =
          IsBrick(other) ? static_cast<const void*>(static_cast<const SBrickPolygon&>(other).GetType())
                         : static_cast<const void*>(static_cast<const SMetalPolygon&>(other).GetType());
      if (otherType == type && EqualControls(DataOf(other), shape)) return static_cast<int>(i);
    }
    itsKinds.push_back(&polygon);
    return static_cast<int>(itsKinds.size() - 1);
  }

  double itsTolerance;
  double itsCell = 1.0;
  std::vector<SItem> itsItems;
  long long itsNextOrder = 0;
  size_t itsAlive = 0;
  std::unordered_map<unsigned long long, std::vector<int>> itsGrid;
  std::vector<int> itsEverywhere;
  std::map<int, std::vector<int>> itsQueues;
  std::map<int, size_t> itsQueueStart;
  std::vector<const SEnclosure*> itsKinds;
  std::vector<long long> itsSeen;
  long long itsStamp = 0;
};


// ---- collection

SPolygonCollection::~SPolygonCollection() {
  // New polygons that never reached the circuit.
  for (SEnclosure* polygon : itsNew) delete polygon;
}

void SPolygonCollection::TakeResults(SPolygonCollection& other) {
  itsNew.insert(itsNew.end(), other.itsNew.begin(), other.itsNew.end());
  itsUnchanged.insert(itsUnchanged.end(), other.itsUnchanged.begin(), other.itsUnchanged.end());
  itsRemoved.insert(itsRemoved.end(), other.itsRemoved.begin(), other.itsRemoved.end());
  itsExcluded.insert(itsExcluded.end(), other.itsExcluded.begin(), other.itsExcluded.end());
  other.itsNew.clear();
  other.itsRemoved.clear();
}

// ---- the operations

SCircuitPolygonOps::SCircuitPolygonOps(SXtranProject* project) : SPolygonAuxOps(project) {
  double coefficient = 1e6;
  if (SInitializationFile* settings = SInitializationFile::GetGlobal())
    coefficient = settings->GetDouble("Velora", "PolyMergeEpsilonCoef", 1e6);
  if (!(coefficient > 0.0)) coefficient = 1e6;
  const SCircuit* circuit = project ? project->GetCircuit() : nullptr;
  if (circuit) {
    const SSize cell = circuit->GetCellSize();
    const double smaller = std::min(cell.width(), cell.height());
    if (smaller > 0.0) itsEpsilon = smaller / coefficient;
  }
}

SCircuitPolygonOps::~SCircuitPolygonOps() {}

bool SCircuitPolygonOps::MergeAll() {
  itsResults.clear();
  SCircuit* circuit = itsProject ? itsProject->GetCircuit() : nullptr;
  if (!circuit) return true;
  // Polygons that dimensions, parameters and reference planes name by id keep their identity.
  itsProtectedIds.clear();
  auto protect = [this](const SPolyDepHandle& handle) {
    if (handle.IsSet()) itsProtectedIds.push_back(handle.GetPolygonId());
  };
  for (size_t i = 0; i < circuit->GetNumberOfChildren(); ++i) {
    const SBaseEnclosure* child = circuit->GetChild(i);
    if (child->isA() == SID_DIMENSION) {
      const SDimension* dimension = static_cast<const SDimension*>(child);
      protect(dimension->GetReference(0));
      protect(dimension->GetReference(1));
    } else if (child->isA() == SID_GEOVAR) {
      const SGeoVar* variable = static_cast<const SGeoVar*>(child);
      for (int set : {1, 2})
        for (const SPolyDepHandle& handle : variable->GetPointSet(set)) protect(handle);
    }
  }
  for (int side = SRefPlane::Left; side <= SRefPlane::Bottom; ++side)
    if (const SRefPlane* plane = circuit->GetRefPlane(side)) protect(plane->GetLink());
  std::sort(itsProtectedIds.begin(), itsProtectedIds.end());

  for (int level = 0; level < circuit->GetNumberOfLevels(); ++level) MergeLevel(level, false);
  for (int level = 0; level < circuit->GetNumberOfLevels(); ++level)
    Commit(*itsResults[static_cast<size_t>(level)], level);
  return true;
}

SPolygonCollection* SCircuitPolygonOps::MergeLevel(int level, bool commit) {
  std::vector<SEnclosure*> list;
  itsProject->GetCircuit()->CollectLevelPolygons(level, list);
  return MergeList(list, level, commit);
}

SPolygonCollection* SCircuitPolygonOps::MergeList(const std::vector<SEnclosure*>& list, int level, bool commit) {
  itsResults.push_back(std::make_unique<SPolygonCollection>());
  SPolygonCollection& collection = *itsResults.back();
  collection.itsInput = list;
  SPolygonCollection metals, bricks;
  for (SEnclosure* polygon : list) {
    const int points = DataOf(*polygon).GetNumberOfVertices();
    // Too few points to be an area: stays as it is, and vias are never merged.
    if (polygon->isA() == SID_METALPOLYGON && points > 2)
      metals.itsInput.push_back(polygon);
    else if (polygon->isA() == SID_BRICKPOLYGON && points >= 3)
      bricks.itsInput.push_back(polygon);
  }
  Merge(metals);
  collection.TakeResults(metals);
  Merge(bricks);
  collection.TakeResults(bricks);
  if (commit) Commit(collection, level);
  return &collection;
}

void SCircuitPolygonOps::Merge(SPolygonCollection& collection) {
  Exclude(collection);
  MergeGroups(collection);
}

void SCircuitPolygonOps::Exclude(SPolygonCollection& collection) {
  std::vector<SEnclosure*> kept;
  for (SEnclosure* polygon : collection.itsInput) {
    bool excluded = std::binary_search(itsProtectedIds.begin(), itsProtectedIds.end(), polygon->GetId());
    if (!excluded && polygon->isA() == SID_METALPOLYGON)
      for (size_t i = 0; i < polygon->GetNumberOfChildren() && !excluded; ++i) {
        const ClassID id = polygon->GetChild(i)->isA();
        excluded = id == SID_PORT || id == SID_EDGEVIA;
      }
    (excluded ? collection.itsExcluded : kept).push_back(polygon);
  }
  collection.itsInput = kept;
}

int SCircuitPolygonOps::ChooseSeed(SWaitingList& waiting) { return waiting.ChooseSeed(); }

void SCircuitPolygonOps::MergeGroups(SPolygonCollection& collection) {
  SWaitingList waiting(collection.itsInput, itsEpsilon);
  while (!waiting.Empty()) {
    SGroup group;
    std::unique_ptr<SGPCWrapper> merged = BuildGroup(waiting, group);
    Trim(waiting, group, *merged, collection);
    SEnclosure* first = group.members.front().first->itsSource;
    const bool connected = merged->ConnectHoles();
    if (!connected) std::printf("There are still holes, but no way to connect could be found!\n");
    if (group.members.size() > 1 && connected) {
      for (auto& entry : group.members)
        if (!entry.second) collection.itsRemoved.push_back(entry.first->itsSource);
      MakePolygons(*merged, first, collection);
    } else if (group.members.size() > 1) {
      // A merge that can't be written as plain outlines leaves its polygons as they were.
      for (auto& entry : group.members) {
        if (entry.second)
          MakePolygons(*entry.first, entry.first->itsSource, collection);
        else
          collection.itsUnchanged.push_back(entry.first->itsSource);
      }
    } else if (group.members.front().second) {
      MakePolygons(*group.members.front().first, first, collection);
    } else {
      collection.itsUnchanged.push_back(first);
    }
  }
}

std::unique_ptr<SGPCWrapper> SCircuitPolygonOps::BuildGroup(SWaitingList& waiting, SGroup& group) {
  const int seedIndex = ChooseSeed(waiting);
  const bool seedIsPiece = waiting.Item(seedIndex).piece;
  group.members.emplace_back(waiting.Take(seedIndex), seedIsPiece);
  // Whatever merges with the union merges with one of its parts, and whatever overlaps it
  // overlaps one of them: the group grows from each member to what lies near that member,
  // and the union is taken once at the end, which keeps the work near linear where a
  // growing outline compared with every waiting polygon would be quadratic.
  for (size_t next = 0; next < group.members.size(); ++next) {
    const SGPCWrapper& member = *group.members[next].first;
    for (int index : waiting.Near(member.GetBoundingBox())) {
      const int relation = Relate(member, *waiting.Item(index).wrapper);
      const bool piece = waiting.Item(index).piece;
      if (relation == MergeThem)
        group.members.emplace_back(waiting.Take(index), piece);
      else if (relation == CutOther)
        group.cut.emplace_back(waiting.Take(index), piece);
    }
  }
  std::unique_ptr<SGPCWrapper> merged(new SGPCWrapper(itsEpsilon));
  if (group.members.size() == 1) {
    *merged = *group.members.front().first;
  } else {
    std::vector<const SGPCWrapper*> parts;
    for (const auto& entry : group.members) parts.push_back(entry.first.get());
    if (SGPCWrapper::UnionAll(parts, *merged) != SGPCWrapper::ClipDone) *merged = *group.members.front().first;
  }
  merged->itsSource = group.members.front().first->itsSource;
  return merged;
}

void SCircuitPolygonOps::Trim(SWaitingList& waiting, SGroup& group, const SGPCWrapper&,
                              SPolygonCollection& collection) {
  // What is cut back loses the group's area; the pieces wait again.
  for (auto& entry : group.cut) {
    // Only the members near it take anything of it.
    std::vector<const SGPCWrapper*> near;
    for (const auto& member : group.members)
      if (member.first->BoxesNear(*entry.first)) near.push_back(member.first.get());
    SGPCWrapper local(itsEpsilon), rest(itsEpsilon);
    if (SGPCWrapper::UnionAll(near, local) != SGPCWrapper::ClipDone ||
        entry.first->Clip(SGPCWrapper::Difference, local, rest) != SGPCWrapper::ClipDone) {
      // The clipper failed: the polygon stays as it was rather than vanish.
      waiting.Add(std::move(entry.first), entry.second);
      continue;
    }
    rest.itsSource = entry.first->itsSource;
    if (!rest.ConnectHoles()) {
      std::printf("There are still holes, but no way to connect could be found!\n");
      waiting.Add(std::move(entry.first), entry.second);
      continue;
    }
    for (int c = 0; c < rest.GetContourCount(); ++c)
      waiting.Add(std::unique_ptr<SGPCWrapper>(rest.GetContour(c)), true);
    if (!entry.second) collection.itsRemoved.push_back(entry.first->itsSource);
  }
}

void SCircuitPolygonOps::MakePolygons(const SGPCWrapper& merged, SEnclosure* source, SPolygonCollection& collection) {
  for (int c = 0; c < merged.GetContourCount(); ++c) {
    if (merged.Contour(c).size() < 3) continue;
    SEnclosure* polygon = nullptr;
    if (IsBrick(*source)) {
      SBrickPolygon* brick = new SBrickPolygon;
      static_cast<SBrickPolygonData&>(*brick) = static_cast<const SBrickPolygon&>(*source);
      polygon = brick;
    } else {
      SMetalPolygon* metal = new SMetalPolygon;
      static_cast<SMetalPolygonData&>(*metal) = static_cast<const SMetalPolygon&>(*source);
      polygon = metal;
    }
    SPolygonData& data = DataOf(*polygon);
    const SPolygonData& from = DataOf(*source);
    data.SetTechLayer(from.GetTechLayer(), from.FollowsTechLayer());
    data.SetVertices(merged.GetContourPoints(c));
    collection.itsNew.push_back(polygon);
  }
}

void SCircuitPolygonOps::Commit(SPolygonCollection& collection, int level) {
  SCircuit* circuit = itsProject->GetCircuit();
  SLevel* parent = circuit ? circuit->GetLevel(level) : nullptr;
  if (!parent) return;
  for (SEnclosure* polygon : collection.itsNew) {
    polygon->SetId(circuit->TakePolygonId());
    parent->AddChild(polygon);
  }
  itsProject->NoteMerged(collection.itsRemoved, collection.itsNew);
  collection.itsNew.clear();
  // Many polygons may go from one owner: each owner's list is walked once.
  std::vector<SEnclosure*> removed = collection.itsRemoved;
  std::sort(removed.begin(), removed.end());
  std::vector<SBaseEnclosure*> owners;
  for (SEnclosure* polygon : removed)
    if (SBaseEnclosure* owner = polygon->GetOwner()) owners.push_back(owner);
  std::sort(owners.begin(), owners.end());
  owners.erase(std::unique(owners.begin(), owners.end()), owners.end());
  std::vector<SBaseEnclosure*> taken;
  for (SBaseEnclosure* owner : owners)
    owner->TakeChildren(
        [&removed](const SBaseEnclosure* child) {
          return std::binary_search(removed.begin(), removed.end(), static_cast<const SEnclosure*>(child));
        },
        taken);
  for (SEnclosure* polygon : removed) delete polygon;
  collection.itsRemoved.clear();
}

// ---- ranking and relations

double SCircuitPolygonOps::Rank(const SEnclosure& polygon) {
  if (IsBrick(polygon)) {
    const SBrickType* type = static_cast<const SBrickPolygon&>(polygon).GetType();
    return type ? type->itsEps[SBrickTypeData::Isotropic].GetValue() : 1.0;
  }
  const SMetalType* type = static_cast<const SMetalPolygon&>(polygon).GetType();
  if (!type) return 0.0;  // lossless
  auto inverse = [](double divisor) { return std::fabs(divisor) <= 1e-100 ? 1e100 : 1.0 / divisor; };
  const double conductivity = type->itsConductivity.GetValue();
  const double thickness = type->itsThickness.GetValue();
  switch (type->GetModel()) {
  case SMetalTypeData::Normal:
    return type->itsCondIsInf ? 0.0 : inverse(conductivity * thickness);
  case SMetalTypeData::ThickMetal:
    return type->itsCondIsInf ? 0.0 : inverse(conductivity);
  case SMetalTypeData::Resistor:
  case SMetalTypeData::RdcRrf:
  case SMetalTypeData::General:
    return type->itsRdc.GetValue();
  case SMetalTypeData::Rough:
    if (type->itsCondIsInf) return 0.0;
    return type->itsRoughnessType == 1 ? inverse(conductivity * thickness) : inverse(conductivity);
  default:
    return 0.0;
  }
}

int SCircuitPolygonOps::ComparePriority(const SEnclosure& a, const SEnclosure& b) {
  const double ra = Rank(a), rb = Rank(b);
  if (IsBrick(a)) {
    if (std::fabs(ra - rb) <= kBrickTies) return 0;
    return ra > rb ? 1 : 2;
  }
  if (rb > (1 + kPriorityTies) * ra) return 1;
  if ((1 - kPriorityTies) * ra > rb) return 2;
  return 0;
}

int SCircuitPolygonOps::CompareControls(const SEnclosure& a, const SEnclosure& b) {
  const SShapeData& x = DataOf(a);
  const SShapeData& y = DataOf(b);
  if (EqualControls(x, y)) return 0;
  if (x.GetFillType() != y.GetFillType()) {
    if (x.GetFillType() == 0 || (x.GetFillType() == 1 && y.GetFillType() != 0)) return 1;
    if (y.GetFillType() < 2) return 2;
  }
  if (x.GetXMin() < y.GetXMin()) return 1;
  if (x.GetYMin() < y.GetYMin()) return 1;
  if (x.GetEdgeMesh() && !y.GetEdgeMesh()) return 1;
  if (x.GetXMax() < y.GetXMax()) return 1;
  if (x.GetYMax() < y.GetYMax()) return 1;
  if (x.GetMaxSubLen() < y.GetMaxSubLen()) return 1;
  return 2;
}

int SCircuitPolygonOps::Relate(const SGPCWrapper& merged, const SGPCWrapper& other) {
  const int relation = merged.Relation(other);
  if (relation == SGPCWrapper::Apart) return LeaveThem;
  const SEnclosure& a = *merged.itsSource;
  const SEnclosure& b = *other.itsSource;
  const SShapeData& x = DataOf(a);
  const SShapeData& y = DataOf(b);
  if (x.GetTechLayer() != y.GetTechLayer()) return LeaveThem;
  if (!IsBrick(a)) {
    const bool thickA = MetalModel(a) == SMetalTypeData::ThickMetal;
    const bool thickB = MetalModel(b) == SMetalTypeData::ThickMetal;
    if (thickA != thickB) return LeaveThem;
    if (thickA) {
      const double ta = static_cast<const SMetalPolygon&>(a).GetType()->itsThickness.GetValue();
      const double tb = static_cast<const SMetalPolygon&>(b).GetType()->itsThickness.GetValue();
      if (!(1e-6 * std::max(ta, tb) > std::fabs(ta - tb))) return LeaveThem;
    }
  }
  if (EqualControls(x, y) && (IsBrick(a) || MetalName(a) == MetalName(b))) return MergeThem;
  if (relation == SGPCWrapper::Touch) return LeaveThem;
  return CutOther;
}
