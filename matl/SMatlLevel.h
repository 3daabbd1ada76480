#ifndef SMATLLEVEL_H
#define SMATLLEVEL_H

#include "SString.h"

// The level a draw layer lies on, or a via's target level: a number, "TOP" (only where
// allowed, that is on vias) or "GND".
class SMatlLevel {
public:
  enum Type { Numbered = 0, Top = 1, Ground = 2 };

  explicit SMatlLevel(bool topAllowed = false) : itsTopAllowed(topAllowed) {}

  int GetNumber() const { return itsNumber; }
  // A negative number becomes 0.
  void SetNumber(int number) { itsNumber = number < 0 ? 0 : number; }
  int GetType() const { return itsType; }
  // "TOP" where it isn't allowed becomes a numbered level.
  void SetType(int type);
  bool IsTopAllowed() const { return itsTopAllowed; }
  void SetTopAllowed(bool on) { itsTopAllowed = on; }
  bool IsGround() const { return itsType == Ground; }
  bool IsTop() const { return itsType == Top; }

  // "GND", "TOP" or the number.
  SString GetText() const;
  // "GND" and "TOP" in any case, or a decimal integer. False for any other text, and for a
  // negative number (which is then stored as 0); `numeric` tells whether the text was an integer.
  bool SetFromText(const SString& text, bool* numeric = nullptr);

  bool operator==(const SMatlLevel& other) const {
    return itsNumber == other.itsNumber && itsType == other.itsType;
  }
  bool operator!=(const SMatlLevel& other) const { return !(*this == other); }

private:
  int itsNumber = 0;
  int itsType = Numbered;
  bool itsTopAllowed = false;
};

#endif
