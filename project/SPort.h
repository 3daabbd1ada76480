#ifndef SPORT_H
#define SPORT_H

#include "SEnclosure.h"
#include "SPortData.h"

class SCircuit;
class SFile;
class SMetalPolygon;
class SProjectErrorManager;
class SProjectStream;

// A port on an edge of a metal polygon, which owns it as a child.
class SPort : public SEnclosure, public SPortData {
  SCOLLECTABLE_DECLARE(SPort)
public:
  SPort() {}
  // Becomes a child of `owner` when one is given.
  SPort(SMetalPolygon* owner, int edge);

  // The polygon that owns the port, or null.
  SMetalPolygon* GetPolygon() const;
  // The middle of the edge on a polygon, else the stored position.
  SPoint GetPosition() const;

  // While reading: the id of the polygon (or, in the oldest forms, its ordinal counted from 1)
  // until the polygons are in.
  long long GetPolygonId() const { return itsPolygonId; }
  void SetPolygonId(long long id) { itsPolygonId = id; }
  long long GetOrdinal() const { return itsOrdinal; }
  void SetOrdinal(long long ordinal) { itsOrdinal = ordinal; }
  // The last line the port took in the file; a group on the next line belongs to it.
  long long GetEndLine() const { return itsEndLine; }

  // "POR1" with its lines. `number` replaces a port number 0 in the older formats.
  void Write(SProjectStream& out, int format, int number) const;
  // After the keyword (POR1, PORA, PORI or POR); leaves the file on the last line taken.
  bool Read(SFile& file, const SString& keyword, SProjectErrorManager& errors);

protected:
  // DIAGALLOWED, POLARITY, SIMPLE, GNDREF and TERMW lines from the current one; leaves the
  // file on the first other line.
  bool ReadOptions(SFile& file, SProjectErrorManager& errors);
  // "GNDREF ..." and "TERMW ..." lines.
  void WriteGroundLines(SProjectStream& out) const;

private:
  bool ReadPortLine(SFile& file, SProjectErrorManager& errors);
  void WriteTypeLine(SProjectStream& out, int format) const;

  long long itsPolygonId = -1;
  long long itsOrdinal = 0;
  long long itsEndLine = 0;
};

#endif
