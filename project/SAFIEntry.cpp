#include "SAFIEntry.h"

#include "SFile.h"
#include "SProjectClassID.h"
#include "SProjectFormat.h"

SCOLLECTABLE_DEFINE(SAFIEntry, SID_AFIENTRY, &SBaseSweep::staticTypeInfo())

bool SAFIEntry::Read(SFile& file) {
  if (!ReadValue(file, itsStart) || !ReadValue(file, itsStop)) return false;
  itsResolution.SetInvalid();
  if (!file.HasToken()) return true;
  double resolution = 0.0;
  if (!file.GetDouble(resolution)) return false;
  if (resolution >= 0.0) itsResolution.Set(resolution);
  return true;
}

void SAFIEntry::Write(SProjectStream& out) const {
  out << GetName() << ' ';
  WriteValue(out, itsStart);
  out << ' ';
  WriteValue(out, itsStop);
  if (SProjectFormat::GetWriteFormat() >= 21) {
    if (itsResolution.IsValid())
      out << ' ' << itsResolution.GetValue();
    else
      out << " -1";
  } else if (itsResolution.IsValid()) {
    // Older readers take a zero resolution for none at all.
    out << ' ' << (itsResolution.GetValue() == 0.0 ? 0.1 : itsResolution.GetValue());
  }
  out << '\n';
}

void SAFIEntry::GetFrequencies(std::vector<double>& out) const {
  if (itsStart.IsValid()) out.push_back(itsStart.GetValue());
  if (itsStop.IsValid()) out.push_back(itsStop.GetValue());
}

void SAFIEntry::Scale(double ratio) {
  SBaseSweep::Scale(ratio);
  ScaleValue(itsResolution, ratio);
}
