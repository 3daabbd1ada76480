#include "SSingleStepFreq.h"

#include "SFile.h"
#include "SProjectClassID.h"

SCOLLECTABLE_DEFINE(SSingleStepFreq, SID_SINGLESTEPFREQ, &SStandardSweep::staticTypeInfo())

bool SSingleStepFreq::Read(SFile& file) { return ReadValue(file, itsStart); }

void SSingleStepFreq::Write(SProjectStream& out) const {
  out << "STEP ";
  WriteValue(out, itsStart);
  out << '\n';
}

void SSingleStepFreq::GetFrequencies(std::vector<double>& out) const {
  if (itsStart.IsValid()) out.push_back(itsStart.GetValue());
}

SString SSingleStepFreq::GetDescription() const {
  return itsStart.IsValid() ? NumberText(itsStart.GetValue()) : SString(UnsetText());
}
