#include "SSubdivisionLine.h"

#include "SProjectClassID.h"

SCOLLECTABLE_DEFINE(SSubdivisionLine, SID_SUBDIVISIONLINE, &SEnclosure::staticTypeInfo())

SSubdivisionLine* SSubdivisionLine::Clone() const {
  SSubdivisionLine* line = new SSubdivisionLine(itsPosition, itsDirection, static_cast<int>(GetId()));
  line->SetLine(GetLine());
  return line;
}
