#include "SIBLayerMapping.h"

#include "SInterfaceWords.h"
#include "SProjectClassID.h"

SCOLLECTABLE_DEFINE(SIBLayerMapping, SID_IBLAYERMAPPING, &SCollectable::staticTypeInfo())

namespace {
const char* const kTypes[] = {"METAL", "VIA"};
}

bool SIBLayerMapping::Read(SFile& file) {
  SString type;
  if (!file.GetToken(type)) return false;
  itsType = SInterfaceWords::IndexOf(kTypes, type);
  return itsType >= 0 && file.GetToken(itsName) && file.GetToken(itsOutsideName) &&
         SInterfaceWords::GetInt(file, itsNumber);
}

void SIBLayerMapping::Write(SProjectStream& out) const {
  out << "LAYERMAP " << kTypes[itsType == Via ? 1 : 0] << ' ';
  out.Name(itsName) << ' ';
  out.Name(itsOutsideName) << ' ' << itsNumber << '\n';
}
