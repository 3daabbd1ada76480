#include "SDCPointSweep.h"

#include "SFile.h"
#include "SProjectClassID.h"

SCOLLECTABLE_DEFINE(SDCPointSweep, SID_DCPOINTSWEEP, &SFrequencyEntry::staticTypeInfo())

bool SDCPointSweep::Read(SFile& file) {
  SString mode;
  if (!file.GetToken(mode)) return false;
  if (mode == "AUTO") {
    itsManual = false;
    return true;
  }
  if (mode != "MAN") return false;
  itsManual = true;
  return file.GetDouble(itsKiloHertz);
}

void SDCPointSweep::Write(SProjectStream& out) const {
  if (itsManual)
    out << "DC_FREQ MAN " << itsKiloHertz << '\n';
  else
    out << "DC_FREQ AUTO\n";
}

void SDCPointSweep::GetFrequencies(std::vector<double>&) const {}

SString SDCPointSweep::GetDescription() const {
  return itsManual ? "analyze at " + NumberText(itsKiloHertz) + " KHz" : SString("AUTO");
}
