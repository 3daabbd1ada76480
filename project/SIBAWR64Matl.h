#ifndef SIBAWR64MATL_H
#define SIBAWR64MATL_H

#include "SCollectable.h"
#include "SProjectStream.h"
#include "SString.h"

#include <QStringList>

class SFile;

// A material of the host tool's project (AWR64MATL): names, kind, and the values of that
// kind as the host tool wrote them.
class SIBAWR64Matl : public SCollectable {
  SCOLLECTABLE_DECLARE(SIBAWR64Matl)
  SCOLLECTABLE_COPYABLE(SIBAWR64Matl)
public:
  enum Kind { Dielectric, RealCond, BoundSI, BoundABS, BoundNone, PecCond };

  bool Read(SFile& file);
  void Write(SProjectStream& out) const;

  SString itsName;
  SString itsOutsideName;
  int itsKind = Dielectric;
  QStringList itsValues;
};

#endif
