#ifndef SPOLYGONDATA_H
#define SPOLYGONDATA_H

#include "SPoint.h"
#include "SRect.h"
#include "SString.h"
#include "SSubsectionControls.h"

#include <memory>
#include <vector>

class SFile;
class SMaterialTypeData;
class SProjectErrorManager;
class SProjectStream;

// What a shape carries besides its points: the material and the texts that few polygons
// have (kept apart so that plain polygons stay small).
class SShapeData : public SSubsectionControls {
public:
  SShapeData() {}
  SShapeData(const SShapeData& other);
  SShapeData& operator=(const SShapeData& other);
  // Not virtual: shapes are owned and destroyed as the objects they are part of, and a
  // table pointer in each of millions of polygons costs their allocation a size class.
  ~SShapeData() = default;

  SMaterialTypeData* GetMaterial() const { return itsMaterial; }
  void SetMaterial(SMaterialTypeData* type) { itsMaterial = type; }
  // The material number and level as the file gave them, until bound.
  int GetFileMaterial() const { return itsFileMaterial; }
  void SetFileMaterial(int n) { itsFileMaterial = n; }

  SString GetUserText() const;
  void SetUserText(const SString& text);
  // A TLAYNAM name read from the file, until the technology layers are known.
  SString GetTechLayerName() const;
  void SetTechLayerName(const SString& name);

protected:
  struct Extras {
    QString itsUserText;
    QString itsTechLayerName;
  };
  Extras& MakeExtras();

  // First, so that it fills the room the controls leave at their end.
  int itsFileMaterial = -1;
  SMaterialTypeData* itsMaterial = nullptr;
  std::unique_ptr<Extras> itsExtras;
};

// A polygon's vertices, kept open: the closing vertex isn't stored, the writer adds it.
class SPolygonData : public SShapeData {
public:
  void AddVertex(const SPoint& p) { itsVertices.push_back(p); }
  void InsertVertex(int index, const SPoint& p);
  // An index out of range is a program error.
  const SPoint& GetVertex(int index) const;
  // An index out of range is ignored.
  void SetVertex(int index, const SPoint& p) {
    if (index >= 0 && index < GetNumberOfVertices()) itsVertices[static_cast<size_t>(index)] = p;
  }
  int GetNumberOfVertices() const { return static_cast<int>(itsVertices.size()); }
  const std::vector<SPoint>& GetVertices() const { return itsVertices; }
  void SetVertices(const std::vector<SPoint>& points) { itsVertices = points; }
  void SetVertices(std::vector<SPoint>&& points) { itsVertices = std::move(points); }
  void ReserveVertices(size_t n) { itsVertices.reserve(n); }
  // Drops consecutive repeats, the last against the first too.
  void RemoveDuplicates();
  SRect GetBoundingRect() const { return BoundsOf(itsVertices); }
  // Of any outline: the empty rectangle for no points, and the area positive when clockwise
  // in a y-down frame (the shoelace sum, halved).
  static SRect BoundsOf(const std::vector<SPoint>& points);
  static double SignedArea(const std::vector<SPoint>& points);
  SPoint GetCenter() const;
  bool IsClockwise() const;
  void Reverse();
  double Area() const { return SignedArea(itsVertices); }
  void MoveVertices(const SPoint& delta);
  // Every y becomes height - y, in place.
  void FlipVertices(double height);

  // The fields of the polygon line from the level on, and its line feed. `lengthFactor`
  // applies to the two subsection lengths (feet of older brick lines).
  void WriteHeader(SProjectStream& out, int level, int material, unsigned long long id, int format,
                   double lengthFactor = 1.0) const;
  // TLAYNAM and USER_DAT lines.
  void WriteExtras(SProjectStream& out, int format) const;
  // Vertices, the closing one, END.
  // `lengthFactor` gives the points in the file's length unit (older feet files).
  void WriteVertices(SProjectStream& out, double lengthFactor = 1.0) const;

  // The polygon line from its first token; the file moves to the next line.
  bool ReadHeader(SFile& file, SProjectErrorManager& errors, long long& level, int& points, long long& id,
                  double lengthFactor = 1.0);
  // Optional TLAYNAM and USER_DAT lines; `grouped` gets a GLG line when given.
  bool ReadExtras(SFile& file, SProjectErrorManager& errors, bool* grouped, int* group, bool* hasGroup);
  // The vertices and the closing one; the file stays on the END line.
  bool ReadVertices(SFile& file, SProjectErrorManager& errors, int points);

protected:
  std::vector<SPoint> itsVertices;
};

#endif
