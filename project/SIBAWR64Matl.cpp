#include "SIBAWR64Matl.h"

#include "SInterfaceWords.h"
#include "SProjectClassID.h"
#include "SWordTable.h"

SCOLLECTABLE_DEFINE(SIBAWR64Matl, SID_IBAWR64MATL, &SCollectable::staticTypeInfo())

namespace {
const char* const kKinds[] = {"MT_Dielectric", "MT_RealCond", "MT_BoundSI", "MT_BoundABS", "MT_BoundNone", "MT_PEC_Cond"};
}

bool SIBAWR64Matl::Read(SFile& file) {
  SString kind;
  if (!file.GetToken(itsName) || !file.GetToken(itsOutsideName) || !file.GetToken(kind)) return false;
  itsKind = SInterfaceWords::IndexOf(kKinds, kind);
  if (itsKind < 0) return false;
  itsValues.clear();
  SString value;
  while (file.HasToken()) {
    if (!SInterfaceWords::GetNumberText(file, value)) return false;
    itsValues.append(value.qstring());
  }
  return true;
}

void SIBAWR64Matl::Write(SProjectStream& out) const {
  out << "AWR64MATL ";
  out.Name(itsName) << ' ';
  out.Name(itsOutsideName) << ' ' << SWordTable::WordOf(kKinds, itsKind, kKinds[0]);
  SInterfaceWords::Numbers(out, itsValues);
  out << '\n';
}
