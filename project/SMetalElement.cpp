#include "SMetalElement.h"

#include "SFile.h"
#include "SFileBlock.h"
#include "SGeoClassID.h"
#include "SMaterialTypeData.h"
#include "SProjectErrorManager.h"
#include "SProjectStream.h"

#include <QRegularExpression>

SCOLLECTABLE_DEFINE(SMetalElement, SID_METALELEMENT, &SEnclosure::staticTypeInfo())

namespace {
// The five first fields of a polygon line: level, points, material, fill, id.
const QRegularExpression kPolygonFields(QStringLiteral("^(\\s*(\\S+)\\s+(\\S+)\\s+)(\\S+)(\\s+(\\S+)\\s+(\\S+).*)$"));
}  // namespace

bool SMetalElement::Read(SFile& file, SProjectErrorManager& errors, long long& level) {
  SetLine(file.LineCount());
  SString word;
  file.PeekToken(word);
  itsBrick = word.upper() == "BRI";
  itsLines.clear();
  SLine header;
  file.GetLine(header.itsText);
  itsLines.push_back(header);
  bool levelRead = false;
  for (;;) {
    if (!file.NextLine()) return ReadFault(errors, file, 6022);
    SString token, second;
    file.PeekToken(token);
    if (SFileBlock::Match(token, "END")) {
      // The block's own END means the element never closed.
      file.NextToken();
      const bool blockEnd = file.PeekToken(second) && second.upper() == "GEO";
      file.RewindLine();
      if (blockEnd) return ReadFault(errors, file, 6022);
      break;
    }
    SLine line;
    file.GetLine(line.itsText);
    itsLines.push_back(line);
    if (token.upper() != "MAT") continue;
    if (!file.NextLine()) return ReadFault(errors, file, 6022);
    SLine polygon;
    long long polygonLevel = 0;
    if (!ReadPolygonLine(file, errors, polygon, polygonLevel)) return false;
    if (!levelRead) {
      level = polygonLevel;
      levelRead = true;
    }
    itsLines.push_back(polygon);
  }
  // An element with no polygon line has no level to stand on.
  if (!levelRead) return ReadFault(errors, file, 6008, 6059);
  return true;
}

bool SMetalElement::ReadPolygonLine(SFile& file, SProjectErrorManager& errors, SLine& line, long long& level) {
  SString text;
  file.GetLine(text);
  const QRegularExpressionMatch match = kPolygonFields.match(text.qstring());
  if (!match.hasMatch()) return ReadFault(errors, file, 6008, 6065);
  bool ok = false;
  level = match.captured(2).toLongLong(&ok);
  if (!ok) return ReadFault(errors, file, 6059);
  line.itsFileMaterial = match.captured(4).toInt(&ok);
  if (!ok) return ReadFault(errors, file, 6066);
  const long long id = match.captured(7).toLongLong(&ok);
  if (!ok || id < 0) return ReadFault(errors, file, 6068);
  // The highest id stands for the element, so that new polygons take ids past all of them.
  if (id > itsId) itsId = id;
  line.itsPolygon = true;
  line.itsText = SString(match.captured(1));
  line.itsAfter = SString(match.captured(5));
  return true;
}

void SMetalElement::Write(SProjectStream& out) const {
  for (const SLine& line : itsLines) {
    out << line.itsText;
    if (line.itsPolygon) {
      int number = line.itsFileMaterial;
      if (line.itsType != nullptr || number < 0) {
        // As a polygon of the kind writes it: bricks count from 1, 0 being air.
        const int id = line.itsType != nullptr ? line.itsType->GetFileId() : -1;
        number = itsBrick ? (id < 0 ? 0 : id + 1) : (id < -1 ? -1 : id);
      }
      out << number << line.itsAfter;
    }
    out << '\n';
  }
  out << "END\n";
}

size_t SMetalElement::GetNumberOfPolygonLines() const {
  size_t count = 0;
  for (const SLine& line : itsLines) count += line.itsPolygon ? 1 : 0;
  return count;
}

const SMetalElement::SLine* SMetalElement::PolygonLine(size_t index) const {
  for (const SLine& line : itsLines)
    if (line.itsPolygon && index-- == 0) return &line;
  return nullptr;
}

SMetalElement::SLine* SMetalElement::PolygonLine(size_t index) {
  return const_cast<SLine*>(static_cast<const SMetalElement*>(this)->PolygonLine(index));
}

int SMetalElement::GetFileMaterial(size_t polygonLine) const {
  const SLine* line = PolygonLine(polygonLine);
  return line != nullptr ? line->itsFileMaterial : 0;
}

SMaterialTypeData* SMetalElement::GetMaterial(size_t polygonLine) const {
  const SLine* line = PolygonLine(polygonLine);
  return line != nullptr ? line->itsType : nullptr;
}

void SMetalElement::SetMaterial(size_t polygonLine, SMaterialTypeData* type) {
  if (SLine* line = PolygonLine(polygonLine)) line->itsType = type;
}

bool SMetalElement::UsesMaterial(const SMaterialTypeData* type) const {
  for (const SLine& line : itsLines)
    if (line.itsPolygon && line.itsType == type) return true;
  return false;
}
