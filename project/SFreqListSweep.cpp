#include "SFreqListSweep.h"

#include "SFile.h"
#include "SProjectClassID.h"

SCOLLECTABLE_DEFINE(SFreqListSweep, SID_FREQLISTSWEEP, &SFrequencyEntry::staticTypeInfo())

bool SFreqListSweep::Read(SFile& file) {
  itsFrequencies.clear();
  while (file.HasToken()) {
    double value = 0.0;
    if (!file.GetDouble(value)) return false;
    itsFrequencies.push_back(value);
  }
  return true;
}

void SFreqListSweep::Write(SProjectStream& out) const {
  out << "LIST";
  for (double value : itsFrequencies) out << ' ' << value;
  out << '\n';
}

void SFreqListSweep::GetFrequencies(std::vector<double>& out) const {
  out.insert(out.end(), itsFrequencies.begin(), itsFrequencies.end());
}

SString SFreqListSweep::GetDescription() const {
  SString text;
  for (size_t i = 0; i < itsFrequencies.size(); ++i) {
    if (i) text += i + 1 == itsFrequencies.size() ? " and " : ", ";
    text += NumberText(itsFrequencies[i]);
  }
  return text;
}

void SFreqListSweep::Scale(double ratio) {
  for (double& value : itsFrequencies) value *= ratio;
}
