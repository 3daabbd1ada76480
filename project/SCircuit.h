#ifndef SCIRCUIT_H
#define SCIRCUIT_H

#include "SEnclosure.h"
#include "SPoint.h"
#include "SRect.h"
#include "SSize.h"
#include "SValueVar.h"

#include <QHash>
#include <QStringList>
#include <utility>
#include <vector>

class SBrickPolygon;
class SBrickType;
class SCoupledGroup;
class SDimensionBlock;
class SFile;
class SLevel;
class SMarker;
class SMaterialTypeData;
class SMetalPolygon;
class SMetalType;
class SParallelSubs;
class SVariable;
class SProject;
class SProjectErrorManager;
class SProjectStream;
class SReadMetal;
class SRefPlane;
class STechLayer;
class SViaMetalType;
class SViaPolygon;

// Units of the older single-file forms (LEN line).
struct SGeoUnits {
  SString itsName;
  double itsFactor = 1.0;
};

// The box and its covers.
class SCircuitData {
public:
  enum SnapAngle { Snap90 = 1, Snap45 = 2, Snap30 = 3, Snap22_5 = 4, Snap5 = 18 };

  SCircuitData();
  virtual ~SCircuitData() {}

  const SSize& GetBoxSize() const { return itsCircuitSize; }
  void SetBoxSize(double width, double height) { itsCircuitSize = SSize(width, height); }
  int GetNumCellsX() const { return static_cast<int>(itsNumCellsX.GetValue()); }
  int GetNumCellsY() const { return static_cast<int>(itsNumCellsY.GetValue()); }
  void SetNumCells(int x, int y) {
    itsNumCellsX.SetValue(x);
    itsNumCellsY.SetValue(y);
  }
  SSize GetCellSize() const;
  bool IsSymmetric() const { return itsSymmetric; }
  void SetSymmetric(bool on) { itsSymmetric = on; }
  int GetSubsPerLambda() const { return itsSubsPerLambda; }
  void SetSubsPerLambda(int n) { itsSubsPerLambda = n; }
  double GetEeff() const { return itsEeff; }
  void SetEeff(double e) { itsEeff = e; }
  bool IsAutoHeightVias() const { return itsAutoHeightVias; }
  void SetAutoHeightVias(bool on) { itsAutoHeightVias = on; }
  int GetSnapAngle() const { return itsSnapAngle; }
  void SetSnapAngle(int code) { itsSnapAngle = code; }
  static const char* SnapAngleText(int code);
  // Unknown texts read as "45".
  static int SnapAngleCode(const SString& text);
  double GetParallelSubs(int side) const { return itsParallelSubs[side]; }
  void SetParallelSubs(int side, double length) { itsParallelSubs[side] = length; }

  SMetalType* GetTopMetal() const { return itsTopMetal; }
  SMetalType* GetBottomMetal() const { return itsBottomMetal; }
  void SetTopMetal(SMetalType* type) { itsTopMetal = type; }
  void SetBottomMetal(SMetalType* type) { itsBottomMetal = type; }

  // The TMET and BMET texts kept until the types are known; 0 top, 1 bottom.
  SReadMetal* GetReadMetal(int which) const { return itsReadMetal[which]; }
  void SetReadMetal(int which, SReadMetal* data);

protected:
  SGeoUnits itsUnits;
  SSize itsCircuitSize;
  SValueVarDouble itsNumCellsX;
  SValueVarDouble itsNumCellsY;
  bool itsSymmetric = false;
  int itsSubsPerLambda = 20;
  double itsEeff = 0.0;
  // Left, right, top, bottom.
  double itsParallelSubs[4] = {0, 0, 0, 0};
  SMetalType* itsTopMetal = nullptr;
  SMetalType* itsBottomMetal = nullptr;
  bool itsViaAutoHeightAllowed = true;
  bool itsAutoHeightVias = false;
  int itsSnapAngle = Snap45;
  SReadMetal* itsReadMetal[2] = {nullptr, nullptr};

  friend class SCircuit;
};

// The layout of a project. The enclosure list holds, in order of creation, the levels, the
// reference planes of the box sides, the material types, variables, dimensions, coupled
// groups and technology layers; polygons hang below their levels.
class SCircuit : public SEnclosure, public SCircuitData {
  SCOLLECTABLE_DECLARE(SCircuit)
public:
  enum PolygonKind { AnyPolygon = 0, MetalPolygons = 1, ViaPolygons = 2, BrickPolygons = 3, MetalAndVia = 4 };

  explicit SCircuit(SProject* project = nullptr);
  ~SCircuit() override;

  SProject* GetProject() const { return itsProject; }
  void SetProject(SProject* project) { itsProject = project; }
  // Built-in types, two levels, the box planes and the local origin of a new project.
  void InitNew();

  void AddObject(SEnclosure* object) { AddChild(object); }
  int GetNumberOfLevels() const { return static_cast<int>(itsLevels.size()); }
  SLevel* GetLevel(int index) const;
  // Appends a level with the next index.
  SLevel* AddLevel();
  // Keeps the first `count` levels (their polygons go with the dropped ones) or adds new ones.
  void SetNumberOfLevels(int count);
  SMarker* GetLocalOrigin() const { return itsLocalOrigin; }

  // Depth first over the levels and their groups, level by level.
  void CollectPolygons(std::vector<SEnclosure*>& list, int kind = AnyPolygon, bool recursive = true) const;
  // The same for one level.
  void CollectLevelPolygons(int level, std::vector<SEnclosure*>& list, int kind = AnyPolygon) const;
  long long CountPolygons() const;
  // In one walk: the polygons that carry children (ports, edge vias), each with its ordinal
  // among all polygons from 1; answers the number of polygons.
  long long CollectPolygonsWithChildren(std::vector<std::pair<long long, SEnclosure*>>& list) const;
  // Every enclosure of a class (the circuit's own list, not the polygons).
  template <class T> void CollectObjects(std::vector<T*>& list) const {
    for (size_t i = 0; i < GetNumberOfChildren(); ++i)
      if (GetChild(i)->isKindOf(T::staticTypeInfo())) list.push_back(static_cast<T*>(GetChild(i)));
  }

  long long GetNextPolygonId() const { return itsNextPolygonId; }
  // The highest id of the polygons there are now, 0 without any.
  long long GetHighestPolygonId() const;
  void SetNextPolygonId(long long id) { itsNextPolygonId = id; }
  // Takes the next free id and raises it.
  long long TakePolygonId() { return itsNextPolygonId++; }
  // An id read from a file: the next free one rises past it.
  void NoteId(long long id) {
    if (id >= itsNextPolygonId) itsNextPolygonId = id + 1;
  }

  const SString& GetTechnologyFile() const { return itsTechFile; }
  void SetTechnologyFile(const SString& name) { itsTechFile = name; }
  bool IsAbbreviated() const { return itsAbbreviated; }
  void SetAbbreviated(bool on) { itsAbbreviated = on; }
  bool IsEndReached() const { return itsEndReached; }
  // A read for an update that replaces the drawing: polygons that nothing refers to are
  // passed over instead of built, and dropped with the rest of the drawing afterwards.
  void SetDropDrawing(bool on) { itsDropDrawing = on; }
  // The polygons NUM announced and those the file held before it ended (or the block did).
  long long GetPolygonsAnnounced() const { return itsPolygonsAnnounced; }
  long long GetPolygonsFound() const { return itsPolygonsFound; }
  // True when the body ran into the end of the file instead of an END line.
  bool IsCutShort() const { return itsCutShort; }

  // Lets each level order its polygons before a write.
  void PrepareForSave();
  // Multiplies every length of the layout (a change of the length unit).
  void ScaleLengths(double factor);
  // Adds a line per kind of content that the format can't hold; true when there is none.
  bool CheckFormat(int format, QStringList& problems) const;

  // Material types (names compared as they stand).
  SMetalType* FindMetalType(const SString& name) const;
  SViaMetalType* FindViaMetalType(const SString& name) const;
  SBrickType* FindBrickType(const SString& name) const;
  SMetalType* GetLosslessMetal() const;
  SViaMetalType* GetLosslessVia() const;
  // True when a metal or via polygon or a technology layer's template uses the type.
  bool IsMaterialUsed(const SMaterialTypeData* type) const;
  // Sorts metal, via and brick types so that lower file numbers come first.
  void SortTypes();

  // Reference planes, coupled groups and technology layers.
  SRefPlane* GetRefPlane(int side) const;
  STechLayer* FindTechLayer(const SString& name) const;
  void GetTechLayers(std::vector<STechLayer*>& list) const;

  // The GEO body; the block frame is SGeometryBlock's.
  bool ReadBody(SFile& file, SProjectErrorManager& errors, int version);
  void WriteBody(SProjectStream& out, int format);

  // The length factor of older feet files (12 below format 15 with FT), else 1.
  double FileLengthFactor() const;
  const SDimensionBlock* GetDimensions() const;

  // The names of the fill patterns of "metal.dat" (bricks false) or "brick.dat" in the
  // installation's pattern folder, by number; loaded once, empty when the file is missing.
  static const QStringList& PatternNames(bool bricks);
  static QStringList LoadPatternNames(const SString& path);

  // Variables of the layout, in the order of the enclosure list.
  SVariable* FindVariable(const SString& name) const;
  SVariable* FindOrMakeVariable(const SString& name, bool* made = nullptr);
  void GetVariables(std::vector<SVariable*>& list) const;
  // True when an equation refers, through others, back to its own variable.
  bool HasCircularDefinition() const;
  // Works out every equation in list order, and moves the layout to the new values when
  // all could be worked out. False with the reasons in the error text.
  bool EvaluateVariables();
  // Why the last evaluation failed, a line per failure.
  const SString& GetErrorText() const { return itsErrorText; }

  // While reading: a polygon by its id (ports and vias stand ahead of the polygons).
  SMetalPolygon* FindPolygonById(long long id) const;

private:
  friend class SGeometryReader;

  bool ReadPolygons(SFile& file, SProjectErrorManager& errors, long long count);
  bool ReadBox(SFile& file, SProjectErrorManager& errors);
  bool ReadLine(SFile& file, SProjectErrorManager& errors, const SString& keyword, bool& stop);
  bool BindMaterials(SProjectErrorManager& errors);
  SString ProjectDirectory() const;
  SString ProjectRelative(const SString& name) const;
  void WriteComponents(SProjectStream& out, int format) const;
  bool ReadComponent(SFile& file, SProjectErrorManager& errors);
  bool ResolveComponentLinks(SProjectErrorManager& errors) const;
  void WritePolygons(SProjectStream& out, int format) const;
  // Geometry variables read go to their variables once the polygons stand.
  bool BindGeoVars(SProjectErrorManager& errors);
  void WriteVariablesAndDimensions(SProjectStream& out, int format) const;
  // The geometry variables move their points, shallowest first.
  void ApplyGeoVars();

  SProject* itsProject = nullptr;
  SOrdered itsAnnotations;
  std::vector<SLevel*> itsLevels;
  SString itsTechFile;
  long long itsNextPolygonId = 0;
  int itsHighestCoupledGroupId = 0;
  SMarker* itsLocalOrigin = nullptr;
  bool itsAbbreviated = false;
  bool itsEndReached = false;
  bool itsDropDrawing = false;
  bool itsCutShort = false;
  long long itsPolygonsAnnounced = 0;
  long long itsPolygonsFound = 0;
  SString itsOldVersion;
  SString itsOldDate;
  QHash<long long, SMetalPolygon*> itsPolygonsById;
  SString itsErrorText;
};

#endif
