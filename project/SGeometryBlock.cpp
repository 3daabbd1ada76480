#include "SGeometryBlock.h"

#include "SProjectClassID.h"

SCOLLECTABLE_DEFINE(SGeometryBlock, SID_GEOMETRYBLOCK, &SVerbatimBlock::staticTypeInfo())

bool SGeometryBlock::CheckFormat(int format, QStringList& problems) {
  // The older forms of polygons are the circuit's to judge; a body kept as read has none.
  (void)format;
  (void)problems;
  return true;
}
