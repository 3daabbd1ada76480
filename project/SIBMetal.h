#ifndef SIBMETAL_H
#define SIBMETAL_H

#include "SCollectable.h"
#include "SProjectStream.h"
#include "SString.h"

class SFile;

// A metal of the host tool (METFPAWR): name, number, and colour as "#rrggbb".
class SIBMetal : public SCollectable {
  SCOLLECTABLE_DECLARE(SIBMetal)
  SCOLLECTABLE_COPYABLE(SIBMetal)
public:
  bool Read(SFile& file);
  // The colour only when it isn't the default black.
  void Write(SProjectStream& out) const;
  // Six hexadecimal digits behind a number sign.
  static bool IsColour(const SString& text);

  SString itsName;
  int itsNumber = 0;
  SString itsColour = "#000000";
};

#endif
