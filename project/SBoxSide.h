#ifndef SBOXSIDE_H
#define SBOXSIDE_H

#include "SString.h"

// A side of the box. Coupled groups also keep a plane for their autoground ports, which
// counts as a fifth side.
class SBoxSide {
public:
  enum Side { Left = 0, Right = 1, Top = 2, Bottom = 3, AutoGround = 4 };

  SBoxSide() {}
  explicit SBoxSide(int side) : itsSide(side) {}

  int GetSide() const { return itsSide; }
  void SetSide(int side) { itsSide = side; }
  const char* GetSideText() const { return SideText(itsSide); }

  // "LEFT", "RIGHT", "TOP", "BOTTOM", "AUTOGND".
  static const char* SideText(int side);
  // The keyword test of the readers (the token begins with the word, in any case); -1 for none.
  static int SideFromText(const SString& text);

protected:
  int itsSide = Left;
};

#endif
