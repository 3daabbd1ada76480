#include "SRefPlaneData.h"

#include "SFile.h"
#include "SFileBlock.h"
#include "SProjectStream.h"

bool SRefPlaneData::WriteForm(SProjectStream& out) const {
  // Only planes of a port carry a calibration length behind the fixed or linked length.
  const bool calibrationBehind = itsType != BoxPlane && IsCalibrationSet();
  if (IsLinked()) {
    out << "LINK";
    if (calibrationBehind) out << ' ' << itsCalibrationLength;
    out << '\n';
    itsLink.Write(out);
  } else if (itsLength != 0.0) {
    out << "FIX " << itsLength;
    if (calibrationBehind) out << ' ' << itsCalibrationLength;
    out << '\n';
  } else if (IsCalibrationSet() || itsType == LocalPlane) {
    out << "NONE " << itsCalibrationLength << '\n';
  } else {
    return false;
  }
  return true;
}

bool SRefPlaneData::ReadForm(SFile& file, SProjectErrorManager& errors) {
  SString word;
  if (!file.GetToken(word)) return false;
  double value = 0.0;
  if (SFileBlock::Match(word, "FIX")) {
    if (!file.GetDouble(value)) return false;
    SetLength(value);
    if (itsType != BoxPlane && file.HasToken()) {
      if (!file.GetDouble(value)) return false;
      SetCalibrationLength(value);
    }
    return true;
  }
  if (SFileBlock::Match(word, "LINK")) {
    itsLength = 0.0;
    if (itsType != BoxPlane && file.HasToken()) {
      if (!file.GetDouble(value)) return false;
      SetCalibrationLength(value);
    }
    return file.NextLine() && itsLink.Read(file, errors);
  }
  if (SFileBlock::Match(word, "NONE")) {
    if (!file.GetDouble(value)) return false;
    SetCalibrationLength(value);
    return true;
  }
  return false;
}
