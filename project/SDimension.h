#ifndef SDIMENSION_H
#define SDIMENSION_H

#include "SEnclosure.h"
#include "SPoint.h"
#include "SPolyDepHandle.h"

class SCircuit;
class SFile;
class SProjectErrorManager;
class SProjectStream;

// A measured distance between two points of polygons, with its label.
class SDimension : public SEnclosure {
  SCOLLECTABLE_DECLARE(SDimension)
public:
  enum Kind { Standard = 0, Anchored = 1, Symmetric = 2, Radial = 3 };
  enum Direction { XDirection = 0, YDirection = 1 };
  enum ScaleMode { NotScaled = 0, ScaleUniform = 1, ScaleXY = 2 };

  SDimension() {}

  int GetKind() const { return itsKind; }
  void SetKind(int kind) { itsKind = kind; }
  int GetDirection() const { return itsDirection; }
  void SetDirection(int direction) { itsDirection = direction; }
  // +1 or -1.
  double GetSignFactor() const { return itsSignFactor; }
  void SetSignFactor(double factor) { itsSignFactor = factor < 0 ? -1.0 : 1.0; }
  double GetNominal() const { return itsNominal; }
  void SetNominal(double value) { itsNominal = value; }
  int GetNominalSign() const { return itsNominalSign; }
  void SetNominalSign(int sign) { itsNominalSign = sign; }
  int GetScaleMode() const { return itsScaleMode; }
  void SetScaleMode(int mode) { itsScaleMode = mode; }
  // In project units.
  const SPoint& GetLabelPosition() const { return itsLabelPosition; }
  void SetLabelPosition(const SPoint& p) { itsLabelPosition = p; }
  const SPolyDepHandle& GetReference(int which) const { return which == 0 ? itsRef1 : itsRef2; }
  SPolyDepHandle& Reference(int which) { return which == 0 ? itsRef1 : itsRef2; }

  // "DIM" to "END"; nothing when the first link names no polygon of the circuit.
  void Write(SProjectStream& out, const SCircuit& circuit, int format) const;
  // After the keyword; leaves the file on the END line.
  bool Read(SFile& file, SProjectErrorManager& errors);

protected:
  // The record of the first line: kind, direction, sign factor and scale mode.
  // With `strictScale` a scale word it doesn't know is error 6037.
  bool ReadRecord(SFile& file, SProjectErrorManager& errors, bool strictScale = false);
  void WriteRecord(SProjectStream& out, int format) const;
  // The nominal as a number whose sign the dimension keeps; 0 counts as positive.
  void SetNominalRead(double value) {
    itsNominal = value;
    itsNominalSign = value < 0 ? -1 : 1;
  }

  int itsKind = Standard;
  int itsDirection = XDirection;
  double itsSignFactor = 1.0;
  double itsNominal = 0.0;
  int itsNominalSign = 1;
  int itsScaleMode = NotScaled;
  SPoint itsLabelPosition;
  SPolyDepHandle itsRef1;
  SPolyDepHandle itsRef2;
};

#endif
