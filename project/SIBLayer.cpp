#include "SIBLayer.h"

#include "SInterfaceWords.h"
#include "SProjectClassID.h"

SCOLLECTABLE_DEFINE(SIBLayer, SID_IBLAYER, &SCollectable::staticTypeInfo())

bool SIBLayer::Read(SFile& file) {
  using namespace SInterfaceWords;
  if (!GetInt(file, itsNumber) || !GetInt(file, itsValues[0]) || !GetInt(file, itsValues[1])) return false;
  itsFlags[0] = GetFlag(file);
  itsFlags[1] = GetFlag(file);
  return true;
}

void SIBLayer::Write(SProjectStream& out) const {
  out << "LAYFPAWR " << itsNumber << ' ' << itsValues[0] << ' ' << itsValues[1];
  out << SInterfaceWords::FlagWord(itsFlags[0]) << SInterfaceWords::FlagWord(itsFlags[1]) << '\n';
}
