#ifndef SGROUNDSETTINGS_H
#define SGROUNDSETTINGS_H

// How co-calibrated ports meet ground: the reference, which way it lies, and the width of
// the terminal (a custom value in project units). A port and a coupled group each hold one;
// their codes are SPortData's, except where the group says otherwise.
class SGroundSettings {
public:
  explicit SGroundSettings(int widthType) : itsTerminalWidthType(widthType) {}

  int GetGroundReference() const { return itsGroundReference; }
  void SetGroundReference(int code) { itsGroundReference = code; }
  int GetGroundDirection() const { return itsGroundDirection; }
  void SetGroundDirection(int code) { itsGroundDirection = code; }
  int GetTerminalWidthType() const { return itsTerminalWidthType; }
  void SetTerminalWidthType(int code) { itsTerminalWidthType = code; }
  double GetTerminalWidth() const { return itsTerminalWidth; }
  void SetTerminalWidth(double width) { itsTerminalWidth = width; }

protected:
  int itsGroundReference = 0;
  // Below.
  int itsGroundDirection = 2;
  int itsTerminalWidthType;
  double itsTerminalWidth = 0.0;
};

#endif
