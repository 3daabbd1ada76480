#include "SIBAWR64MeshOption.h"

#include "SInterfaceWords.h"
#include "SProjectClassID.h"
#include "SWordTable.h"

SCOLLECTABLE_DEFINE(SIBAWR64MeshOption, SID_IBAWR64MESHOPTION, &SCollectable::staticTypeInfo())

namespace {
const char* const kDensities[] = {"MD_Normal", "MD_High", "MD_Low", "MD_NoVariable"};
const char* const kDecimations[] = {"MDec_None", "MDec_Low", "MDec_Medium", "MDec_High", "MDec_VeryHigh"};
}  // namespace

void SIBAWR64MeshOption::SetDensity(int density) {
  itsDensity = density;
  if (density == Normal) {
    itsRange[0] = 1;
    itsRange[1] = 100;
  } else if (density == Low) {
    itsRange[0] = 1;
    itsRange[1] = 10;
  } else if (density == NoVariable) {
    itsRange[0] = 50;
    itsRange[1] = 100;
  }
}

bool SIBAWR64MeshOption::Read(SFile& file) {
  using namespace SInterfaceWords;
  SString density, decimation;
  if (!GetInt(file, itsIndex) || !file.GetToken(density) || !file.GetToken(decimation)) return false;
  const int densityCode = IndexOf(kDensities, density);
  itsDecimation = IndexOf(kDecimations, decimation);
  if (densityCode < 0 || itsDecimation < 0) return false;
  SetDensity(densityCode);
  return GetYesNo(file, itsFlags[0]) && GetYesNo(file, itsFlags[1]) && GetYesNo(file, itsFlags[2]);
}

void SIBAWR64MeshOption::Write(SProjectStream& out) const {
  out << "AWR64MESHI " << itsIndex << ' ' << SWordTable::WordOf(kDensities, itsDensity, kDensities[0]) << ' ' << SWordTable::WordOf(kDecimations, itsDecimation, kDecimations[2]);
  for (bool flag : itsFlags) {
    out << ' ';
    out.YesNo(flag);
  }
  out << '\n';
}
