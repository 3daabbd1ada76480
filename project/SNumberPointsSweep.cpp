#include "SNumberPointsSweep.h"

#include "SFile.h"
#include "SProjectClassID.h"

SCOLLECTABLE_DEFINE(SNumberPointsSweep, SID_NUMBERPOINTSSWEEP, &SBaseSweep::staticTypeInfo())

bool SNumberPointsSweep::Read(SFile& file) {
  return ReadValue(file, itsStart) && ReadValue(file, itsStop) && file.GetInt(itsPoints);
}

void SNumberPointsSweep::Write(SProjectStream& out) const {
  out << GetName() << ' ';
  WriteValue(out, itsStart);
  out << ' ';
  WriteValue(out, itsStop);
  out << ' ' << itsPoints << '\n';
}

SString SNumberPointsSweep::GetDescription() const {
  if (!HasLimits()) return UnsetText();
  return SBaseSweep::GetDescription() + " with " + SString::number(static_cast<long long>(itsPoints)) + " points ";
}
