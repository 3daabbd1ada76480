#ifndef SGEOMETRYBLOCK_H
#define SGEOMETRYBLOCK_H

#include "SVerbatimBlock.h"

// The layout: box, levels, polygons, ports and the geometry's variables.
// Kept as it stands in the file until its own reader and writer take over ReadBody and
// WriteBody.
class SGeometryBlock : public SVerbatimBlock {
  SCOLLECTABLE_DECLARE(SGeometryBlock)
  SCOLLECTABLE_COPYABLE(SGeometryBlock)
public:
  explicit SGeometryBlock(SProject* owner = nullptr) : SVerbatimBlock(owner, "GEO") {}

  // An abbreviated read stops the circuit at NUM (geometry and netlist projects).
  void SetAbbreviated(bool on) { itsAbbreviated = on; }
  bool IsAbbreviated() const { return itsAbbreviated; }
  // Formats above 6 can hold every geometry.
  bool CheckFormat(int format, QStringList& problems) override;

private:
  bool itsAbbreviated = false;
};

#endif
