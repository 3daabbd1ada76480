#ifndef SSMDPORT_H
#define SSMDPORT_H

#include "SPort.h"

class SCircuit;

// A port of a component: a pin placed at a point on a level and a side of the package, not
// on a polygon edge. Its owner is the component.
class SSMDPort : public SPort {
  SCOLLECTABLE_DECLARE(SSMDPort)
public:
  enum Side { Left = 0, Right = 1, Top = 2, Bottom = 3, Down = 4 };

  SSMDPort() { itsType = Component; }

  long long GetLevel() const { return itsLevel; }
  void SetLevel(long long level) { itsLevel = level; }
  // In project units.
  const SPoint& GetPortPosition() const { return itsPosition; }
  int GetSide() const { return itsSide; }
  void SetSide(int side) { itsSide = side; }
  long long GetPinNumber() const { return itsPin; }
  void SetPinNumber(long long pin) { itsPin = pin; }
  // The letter of a side: L R T B D, with D written as L below format 11.
  static char SideLetter(int side, int format);

  // "SMDP ..." with its plane, and from format 21 its EXSMDP lines.
  void WriteComponentPort(SProjectStream& out, const SCircuit& circuit, int format) const;
  // After the SMDP keyword; leaves the file on the last line taken.
  bool ReadComponentPort(SFile& file, SProjectErrorManager& errors);
  // After the EXSMDP keyword, through its END line.
  bool ReadExtension(SFile& file, SProjectErrorManager& errors);

private:
  long long itsLevel = 0;
  int itsSide = Left;
  long long itsPin = 0;
};

#endif
