#include "SIBAWR64Layer.h"

#include "SInterfaceWords.h"
#include "SProjectClassID.h"
#include "SWordTable.h"

SCOLLECTABLE_DEFINE(SIBAWR64Layer, SID_IBAWR64LAYER, &SCollectable::staticTypeInfo())

namespace {
const char* const kKinds[] = {"dielectric", "conductor", "user"};
}

bool SIBAWR64Layer::Read(SFile& file) {
  using namespace SInterfaceWords;
  itsNames.clear();
  SString token;
  for (;;) {
    if (!file.GetToken(token)) return false;
    itsKind = IndexOf(kKinds, token);
    if (itsKind >= 0) break;
    itsNames.append(token.qstring());
  }
  return file.GetToken(itsTrace) && GetNumberText(file, itsValues[0]) && GetNumberText(file, itsValues[1]) &&
         GetYesNo(file, itsFlag);
}

void SIBAWR64Layer::Write(SProjectStream& out) const {
  out << (itsEmbedded ? "AWR64ELAYER" : "AWR64LAYER");
  for (const QString& name : itsNames) SInterfaceWords::Quoted(out, SString(name));
  out << ' ' << SWordTable::WordOf(kKinds, itsKind, kKinds[0]) << ' ';
  out.Name(itsTrace) << ' ' << itsValues[0] << ' ' << itsValues[1] << ' ';
  out.YesNo(itsFlag) << '\n';
}
