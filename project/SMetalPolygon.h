#ifndef SMETALPOLYGON_H
#define SMETALPOLYGON_H

#include "SEnclosure.h"
#include "SPolygonData.h"

class SFile;
class SMetalType;
class SProjectErrorManager;
class SProjectStream;

class SMetalData {
public:
  bool IsGrouped() const { return itsGrouped != 0; }
  void SetGrouped(bool on) { itsGrouped = on ? 1 : 0; }
  bool HasGroup() const { return itsHasGroup != 0; }
  int GetGroup() const { return itsGroup; }
  void SetGroup(int group) {
    itsGroup = group;
    itsHasGroup = 1;
  }

protected:
  unsigned char itsGrouped = 0;
  unsigned char itsHasGroup = 0;
  int itsGroup = 0;
};

class SMetalPolygonData : public SMetalData, public SPolygonData {};

// A planar metal polygon. Its children are the ports and edge vias on its edges.
class SMetalPolygon : public SEnclosure, public SMetalPolygonData {
  SCOLLECTABLE_DECLARE(SMetalPolygon)
public:
  SMetalPolygon() {}
  explicit SMetalPolygon(SBaseEnclosure* owner) : SEnclosure(owner) {}
  // `node` as a metal polygon (vias are ones too), or null.
  static SMetalPolygon* Of(SBaseEnclosure* node);

  // Null means "Lossless".
  SMetalType* GetType() const;
  void SetType(SMetalType* type);
  // The level index from the enclosing level, -1 outside one.
  int GetLevelIndex() const;
  // Takes the polygon from its owner and appends it to `parent`.
  void MoveTo(SBaseEnclosure* parent);

  // `lengthFactor` as for SPolygonData::WriteVertices.
  virtual void Write(SProjectStream& out, int level, int format, double lengthFactor = 1.0) const;
  // From the polygon line (not yet consumed) to its END line.
  virtual bool Read(SFile& file, SProjectErrorManager& errors, long long& level);

protected:
  // The material number of the line: the type's file number, -1 for "Lossless" and
  // anything below.
  int MaterialNumber() const;
  void WriteGroupLine(SProjectStream& out, int format) const;
  // The optional lines, the group line and the vertices.
  bool ReadTail(SFile& file, SProjectErrorManager& errors, int points);
};

#endif
