#include "SMarker.h"

#include "SFile.h"
#include "SGeoClassID.h"
#include "SProjectErrorManager.h"
#include "SProjectStream.h"

SCOLLECTABLE_DEFINE(SMarker, SID_MARKER, &SEnclosure::staticTypeInfo())

void SMarker::Mirror(int axis, double at) {
  if (axis == 0)
    itsPosition.setX(2 * at - itsPosition.x());
  else
    itsPosition.setY(2 * at - itsPosition.y());
}

void SMarker::Write(SProjectStream& out, double fileFactor) const {
  out << "LORGN " << itsPosition.x() * fileFactor << ' ' << itsPosition.y() * fileFactor << ' '
      << (itsUpper ? 'U' : 'L') << '\n';
}

void SMarker::Read(SFile& file, SProjectErrorManager& errors, double fileFactor) {
  const int line = static_cast<int>(file.LineCount());
  double x = 0, y = 0;
  SString token;
  if (!file.GetDouble(x) || !file.GetDouble(y) || !file.GetUpperToken(token) || token.isEmpty()) {
    errors.AddError(SProjectErrorManager::Warning, line, 7132, "The LORGN line. (Local Orgin)");
    return;
  }
  const QChar letter = token.first();
  if (letter != 'U' && letter != 'L') {
    errors.AddError(SProjectErrorManager::Warning, line, 7194);
    return;
  }
  itsPosition = SPoint(x / fileFactor, y / fileFactor);
  itsUpper = letter == 'U' ? 1 : 0;
}
