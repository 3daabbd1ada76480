#include "SIBAWR64Port.h"

#include "SInterfaceWords.h"
#include "SProjectClassID.h"
#include "SWordTable.h"

SCOLLECTABLE_DEFINE(SIBAWR64Port, SID_IBAWR64PORT, &SCollectable::staticTypeInfo())

namespace {
const char* const kSides[] = {"Right", "Left", "Top", "Bottom", "Via", "Unknown"};
const char* const kDimensions[] = {"2D", "3D"};
const char* const kGrounds[] = {"Auto", "Wave", "Upper", "Lower", "Both", "None"};
}  // namespace

bool SIBAWR64Port::Read(SFile& file) {
  using namespace SInterfaceWords;
  SString side, dimension, ground;
  if (!GetInt(file, itsIndex) || !file.GetToken(itsNames[0]) || !file.GetToken(itsNames[1]) ||
      !GetInt(file, itsNumber) || !file.GetToken(side) || !file.GetToken(dimension) || !file.GetToken(ground))
    return false;
  itsSide = IndexOf(kSides, side);
  const int dimensionCode = IndexOf(kDimensions, dimension);
  itsGround = IndexOf(kGrounds, ground);
  if (itsSide < 0 || dimensionCode < 0 || itsGround < 0) return false;
  its3D = dimensionCode == 1;
  // The values run up to the two flags that end the line.
  QStringList rest;
  SString token;
  while (file.GetToken(token)) rest.append(token.qstring());
  if (rest.size() < 2) return false;
  for (int i = 0; i < 2; ++i) {
    const QString flag = rest.at(rest.size() - 2 + i);
    if (flag != QLatin1String("Y") && flag != QLatin1String("N")) return false;
    itsFlags[i] = flag == QLatin1String("Y");
  }
  rest.erase(rest.end() - 2, rest.end());
  for (const QString& value : rest) {
    bool ok = false;
    value.toDouble(&ok);
    if (!ok) return false;
  }
  itsValues = rest;
  return true;
}

void SIBAWR64Port::Write(SProjectStream& out) const {
  out << "AWR64PORT " << itsIndex;
  SInterfaceWords::Quoted(out, itsNames[0]);
  SInterfaceWords::Quoted(out, itsNames[1]);
  out << ' ' << itsNumber << ' ' << SWordTable::WordOf(kSides, itsSide, "Unknown") << ' ' << kDimensions[its3D ? 1 : 0] << ' ' << SWordTable::WordOf(kGrounds, itsGround, kGrounds[0]);
  SInterfaceWords::Numbers(out, itsValues);
  out << ' ';
  out.YesNo(itsFlags[0]) << ' ';
  out.YesNo(itsFlags[1]) << '\n';
}
