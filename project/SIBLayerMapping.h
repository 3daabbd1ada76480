#ifndef SIBLAYERMAPPING_H
#define SIBLAYERMAPPING_H

#include "SCollectable.h"
#include "SProjectStream.h"
#include "SString.h"

class SFile;

// How a technology layer of the project is called in the host tool (LAYERMAP).
class SIBLayerMapping : public SCollectable {
  SCOLLECTABLE_DECLARE(SIBLayerMapping)
  SCOLLECTABLE_COPYABLE(SIBLayerMapping)
public:
  enum Type { Metal = 0, Via = 1 };

  bool Read(SFile& file);
  void Write(SProjectStream& out) const;

  int itsType = Metal;
  SString itsName;
  SString itsOutsideName;
  int itsNumber = 0;
};

#endif
