#include "SIBAWR64Trace.h"

#include "SInterfaceWords.h"
#include "SProjectClassID.h"

SCOLLECTABLE_DEFINE(SIBAWR64Trace, SID_IBAWR64TRACE, &SCollectable::staticTypeInfo())

bool SIBAWR64Trace::Read(SFile& file) {
  using namespace SInterfaceWords;
  return file.GetToken(itsName) && file.GetToken(itsMetalName) && file.GetToken(itsLayerName) &&
         GetNumberText(file, itsValues[0]) && GetNumberText(file, itsValues[1]);
}

void SIBAWR64Trace::Write(SProjectStream& out) const {
  out << "AWR64TRACE";
  SInterfaceWords::Quoted(out, itsName);
  SInterfaceWords::Quoted(out, itsMetalName);
  SInterfaceWords::Quoted(out, itsLayerName);
  out << ' ' << itsValues[0] << ' ' << itsValues[1] << '\n';
}
