#include "SIBMetal.h"

#include "SInterfaceWords.h"
#include "SProjectClassID.h"

#include <QRegExp>

SCOLLECTABLE_DEFINE(SIBMetal, SID_IBMETAL, &SCollectable::staticTypeInfo())

bool SIBMetal::IsColour(const SString& text) {
  static const QRegExp pattern(QStringLiteral("#[0-9A-Fa-f]{6}"));
  return pattern.exactMatch(text.qstring());
}

bool SIBMetal::Read(SFile& file) {
  if (!file.GetToken(itsName) || !SInterfaceWords::GetInt(file, itsNumber)) return false;
  SString colour;
  if (!file.GetToken(colour)) return true;
  if (!IsColour(colour)) return false;
  itsColour = colour;
  return true;
}

void SIBMetal::Write(SProjectStream& out) const {
  out << "METFPAWR ";
  out.Name(itsName) << ' ' << itsNumber;
  if (itsColour != "#000000") out << ' ' << itsColour;
  out << '\n';
}
