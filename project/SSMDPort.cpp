#include "SSMDPort.h"

#include "SCircuit.h"
#include "SFile.h"
#include "SFileBlock.h"
#include "SGeoClassID.h"
#include "SGeoObjectIO.h"
#include "SProjectErrorManager.h"
#include "SProjectStream.h"
#include "SRefPlane.h"

#include <memory>

SCOLLECTABLE_DEFINE(SSMDPort, SID_SMDPORT, &SPort::staticTypeInfo())

char SSMDPort::SideLetter(int side, int format) {
  switch (side) {
  case Right: return 'R';
  case Top: return 'T';
  case Bottom: return 'B';
  case Down: return format >= 11 ? 'D' : 'L';
  default: return 'L';
  }
}

void SSMDPort::WriteComponentPort(SProjectStream& out, const SCircuit& circuit, int format) const {
  out << "SMDP " << itsLevel << ' ' << itsPosition.x() << ' ' << itsPosition.y() << ' ' << SideLetter(itsSide, format)
      << ' ' << GetNumber(0) << ' ' << itsPin << ' ';
  const SRefPlane* plane = GetRefPlane();
  const bool planeLine = format >= 11 && plane != nullptr &&
                         (plane->GetLength() != 0.0 || plane->GetCalibrationLength() != 0.0 ||
                          (plane->IsLinked() && plane->GetLink().FindPolygon(circuit) != nullptr));
  if (planeLine)
    SGeoObjectIO::WritePlaneForm(out, circuit, *plane);
  else
    out << '\n';
  if (format >= 21) {
    out << "EXSMDP\n";
    WriteGroundLines(out);
    out << "END EXSMDP\n";
  }
}

bool SSMDPort::ReadComponentPort(SFile& file, SProjectErrorManager& errors) {
  SetLine(file.LineCount());
  if (!file.GetLong(itsLevel)) return ReadFault(errors, file, 6059);
  double x = 0.0, y = 0.0;
  if (!file.GetDouble(x) || !file.GetDouble(y)) return ReadFault(errors, file, 6076);
  itsPosition = SPoint(x, y);
  SString word;
  file.GetToken(word);
  static const char* const kLetters[] = {"L", "R", "T", "B", "D"};
  itsSide = -1;
  for (int side = Left; side <= Down; ++side)
    if (SFileBlock::Match(word, kLetters[side])) {
      itsSide = side;
      break;
    }
  if (itsSide < 0) {
    itsSide = Left;
    return ReadFault(errors, file, 6033);
  }
  int number = 0;
  if (!file.GetInt(number)) return ReadFault(errors, file, 6050);
  SetNumber(number);
  file.GetLong(itsPin);
  // Only a plane word starts a plane; anything else on the line is passed over.
  SString planeWord;
  if (!file.PeekToken(planeWord)) return true;
  if (!SFileBlock::Match(planeWord, "FIX") && !SFileBlock::Match(planeWord, "LINK") &&
      !SFileBlock::Match(planeWord, "NONE"))
    return true;
  auto plane = std::make_unique<SRefPlane>(0, SRefPlane::PortPlane);
  const size_t before = errors.Count();
  if (!plane->ReadForm(file, errors)) {
    // A plane of one line that can't be read is dropped; a broken link has taken lines.
    if (errors.Count() == before && !SFileBlock::Match(planeWord, "LINK")) return true;
    if (errors.Count() == before) ReadFault(errors, file, 6056);
    return false;
  }
  plane->SetOwner(this);
  SetRefPlane(plane.release());
  return true;
}

bool SSMDPort::ReadExtension(SFile& file, SProjectErrorManager& errors) {
  if (!file.NextLine()) return ReadFault(errors, file, 6024);
  if (!ReadOptions(file, errors)) return false;
  SString key;
  file.PeekToken(key);
  if (!SFileBlock::Match(key, "END")) return ReadFault(errors, file, 6024);
  return true;
}
