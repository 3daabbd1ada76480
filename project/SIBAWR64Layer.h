#ifndef SIBAWR64LAYER_H
#define SIBAWR64LAYER_H

#include "SCollectable.h"
#include "SProjectStream.h"
#include "SString.h"

#include <QStringList>

class SFile;

// A layer of the host tool's stack (AWR64LAYER, or AWR64ELAYER for an embedded one).
class SIBAWR64Layer : public SCollectable {
  SCOLLECTABLE_DECLARE(SIBAWR64Layer)
  SCOLLECTABLE_COPYABLE(SIBAWR64Layer)
public:
  enum Kind { Dielectric, Conductor, User };

  bool Read(SFile& file);
  void Write(SProjectStream& out) const;

  bool itsEmbedded = false;
  // The names in front of the kind.
  QStringList itsNames;
  int itsKind = Dielectric;
  // "NoTrace" for none.
  SString itsTrace = "NoTrace";
  SString itsValues[2];
  bool itsFlag = false;
};

#endif
