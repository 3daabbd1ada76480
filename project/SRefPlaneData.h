#ifndef SREFPLANEDATA_H
#define SREFPLANEDATA_H

#include "SBoxSide.h"
#include "SPolyDepHandle.h"
#include "SString.h"

class SFile;
class SProjectErrorManager;
class SProjectStream;

// Where the terminals of a side (or of one port) are moved to. Lengths in project units.
class SRefPlaneData : public SBoxSide {
public:
  enum Type { BoxPlane = 0, PortPlane = 1, LocalPlane = 2 };

  SRefPlaneData() {}
  SRefPlaneData(int side, int type) : SBoxSide(side), itsType(type) {}

  int GetType() const { return itsType; }
  void SetType(int type) { itsType = type; }
  double GetLength() const { return itsLength; }
  // A fixed length; the link to a polygon goes.
  void SetLength(double length) {
    itsLength = length;
    itsLink.Clear();
  }
  double GetCalibrationLength() const { return itsCalibrationLength; }
  void SetCalibrationLength(double length) {
    itsCalibrationLength = length;
    itsCalibrationSet = 1;
  }
  bool IsCalibrationSet() const { return itsCalibrationSet != 0; }
  void ClearCalibration() {
    itsCalibrationLength = 0.0;
    itsCalibrationSet = 0;
  }
  bool IsLinked() const { return itsLink.IsSet(); }
  const SPolyDepHandle& GetLink() const { return itsLink; }
  SPolyDepHandle& Link() { return itsLink; }
  const SString& GetDependency() const { return itsDependency; }
  void SetDependency(const SString& text) { itsDependency = text; }

  // True when the plane has nothing to say: no length, no link, no calibration.
  bool IsEmpty() const { return itsLength == 0.0 && !IsLinked() && !IsCalibrationSet(); }
  // "FIX ...", "LINK" with its POLY lines, or "NONE ...", ending with a line feed; nothing
  // for an empty plane unless it is local to a port, which always writes "NONE". True when
  // it wrote a line.
  bool WriteForm(SProjectStream& out) const;
  // From the current token (FIX, LINK or NONE); leaves the file on the last line taken.
  // False without a message: the caller knows which number to report.
  bool ReadForm(SFile& file, SProjectErrorManager& errors);

protected:
  int itsType = BoxPlane;
  double itsLength = 0.0;
  double itsCalibrationLength = 0.0;
  unsigned char itsCalibrationSet = 0;
  SPolyDepHandle itsLink;
  SString itsDependency;
};

#endif
