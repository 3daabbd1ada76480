#ifndef SEDGEVIA_H
#define SEDGEVIA_H

#include "SEnclosure.h"
#include "SViaPolygon.h"

class SCircuit;
class SFile;
class SProjectErrorManager;
class SProjectStream;

// A via along one edge of a metal polygon, down (or up) to another level; a child of the
// polygon.
class SEdgeVia : public SEnclosure, public SViaData {
  SCOLLECTABLE_DECLARE(SEdgeVia)
public:
  SEdgeVia() {}
  // Becomes a child of `owner` when one is given.
  SEdgeVia(SMetalPolygon* owner, int edge);

  SMetalPolygon* GetPolygon() const;
  long long GetPolygonId() const { return itsPolygonId; }
  void SetPolygonId(long long id) { itsPolygonId = id; }
  long long GetOrdinal() const { return itsOrdinal; }
  void SetOrdinal(long long ordinal) { itsOrdinal = ordinal; }

  // `ordinal` is the polygon's place among the written polygons, counted from 1, which the
  // older line uses instead of the id.
  void Write(SProjectStream& out, int format, long long ordinal) const;
  // After the keyword: EVIA1 is followed by POLY lines and TOLEVEL; VIA, EVIA and EVIAI by
  // an ordinal, an edge and a level.
  bool Read(SFile& file, const SString& keyword, SProjectErrorManager& errors);

private:
  long long itsPolygonId = -1;
  long long itsOrdinal = 0;
};

#endif
