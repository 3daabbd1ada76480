#include "SIFSEntry.h"

#include "SFile.h"
#include "SProjectClassID.h"
#include "SRegexp.h"

#include <cstring>

SCOLLECTABLE_DEFINE(SIFSEntry, SID_IFSENTRY, &SBaseSweep::staticTypeInfo())

bool SIFSEntry::Read(SFile& file) {
  SString token;
  itsNetwork = "GEO";
  itsParameter = "S11";
  if (file.PeekToken(token) && token.startsWith("NET=")) {
    file.GetToken(token);
    itsNetwork = token.mid(4);
  }
  if (file.PeekToken(token) && !token.startsWith("N=")) {
    file.GetToken(token);
    itsParameter = token;
  }
  const auto takeCount = [&file, &token](const char* prefix, int& out) {
    if (!file.PeekToken(token) || !token.startsWith(prefix)) return false;
    bool ok = false;
    out = token.mid(static_cast<int>(strlen(prefix))).toInt(&ok);
    file.GetToken(token);
    return ok;
  };
  if (!takeCount("N=", itsPoints) || !takeCount("MAX=", itsMaximum)) return false;
  if (!ReadValue(file, itsStart) || !ReadValue(file, itsStop)) return false;
  itsResolution.SetInvalid();
  return !file.HasToken() || ReadValue(file, itsResolution);
}

void SIFSEntry::Write(SProjectStream& out) const {
  out << GetName();
  if (itsNetwork != "GEO") out << " NET=" << itsNetwork;
  out << ' ' << itsParameter << " N=" << itsPoints << " MAX=" << itsMaximum << ' ';
  WriteValue(out, itsStart);
  out << ' ';
  WriteValue(out, itsStop);
  out << ' ';
  WriteValue(out, itsResolution);
  out << '\n';
}

void SIFSEntry::GetFrequencies(std::vector<double>& out) const {
  if (itsStart.IsValid()) out.push_back(itsStart.GetValue());
  if (itsStop.IsValid()) out.push_back(itsStop.GetValue());
}

void SIFSEntry::Scale(double ratio) {
  SBaseSweep::Scale(ratio);
  ScaleValue(itsResolution, ratio);
}

void SIFSEntry::GetPorts(int& first, int& second) const {
  first = second = 1;
  const SString numbers = itsParameter.match(SRegexp("[0-9]+"));
  if (numbers.length() >= 2) {
    first = numbers[0].digitValue();
    second = numbers[1].digitValue();
  } else if (numbers.length() == 1) {
    first = second = numbers[0].digitValue();
  }
  if (first == 0) first = 1;
  if (second == 0) second = 1;
}
