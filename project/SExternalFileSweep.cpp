#include "SExternalFileSweep.h"

#include "SFile.h"
#include "SProjectClassID.h"

SCOLLECTABLE_DEFINE(SExternalFileSweep, SID_EXTERNALFILESWEEP, &SFrequencyEntry::staticTypeInfo())

bool SExternalFileSweep::Read(SFile& file) { return file.GetToken(itsFileName); }

void SExternalFileSweep::Write(SProjectStream& out) const {
  out << "FILE ";
  out.Name(itsFileName) << '\n';
}
