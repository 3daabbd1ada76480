#ifndef SIBAWR64PORT_H
#define SIBAWR64PORT_H

#include "SCollectable.h"
#include "SProjectStream.h"
#include "SString.h"

#include <QStringList>

class SFile;

// A port of the host tool's project (AWR64PORT); its values belong to the host tool.
class SIBAWR64Port : public SCollectable {
  SCOLLECTABLE_DECLARE(SIBAWR64Port)
  SCOLLECTABLE_COPYABLE(SIBAWR64Port)
public:
  enum Side { Right, Left, Top, Bottom, Via, Unknown };
  enum Ground { Auto, Wave, Upper, Lower, Both, None };

  bool Read(SFile& file);
  void Write(SProjectStream& out) const;

  int itsIndex = 0;
  SString itsNames[2];
  int itsNumber = 0;
  int itsSide = Unknown;
  bool its3D = false;
  int itsGround = Auto;
  QStringList itsValues;
  bool itsFlags[2] = {false, false};
};

#endif
