#include "SPolygonData.h"

#include "SFile.h"
#include "SFileBlock.h"
#include "SGeoObjectIO.h"
#include "SProjectErrorManager.h"
#include "SProjectStream.h"
#include "SVeloraError.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

SShapeData::SShapeData(const SShapeData& other)
    : SSubsectionControls(other), itsFileMaterial(other.itsFileMaterial), itsMaterial(other.itsMaterial) {
  if (other.itsExtras) itsExtras.reset(new Extras(*other.itsExtras));
}

SShapeData& SShapeData::operator=(const SShapeData& other) {
  if (this == &other) return *this;
  SSubsectionControls::operator=(other);
  itsMaterial = other.itsMaterial;
  itsFileMaterial = other.itsFileMaterial;
  itsExtras.reset(other.itsExtras ? new Extras(*other.itsExtras) : nullptr);
  return *this;
}

SShapeData::Extras& SShapeData::MakeExtras() {
  if (!itsExtras) itsExtras.reset(new Extras);
  return *itsExtras;
}

SString SShapeData::GetUserText() const { return itsExtras ? SString(itsExtras->itsUserText) : SString(); }

void SShapeData::SetUserText(const SString& text) {
  if (text.isEmpty() && !itsExtras) return;
  MakeExtras().itsUserText = text.qstring();
}

SString SShapeData::GetTechLayerName() const {
  return itsExtras ? SString(itsExtras->itsTechLayerName) : SString();
}

void SShapeData::SetTechLayerName(const SString& name) {
  if (name.isEmpty() && !itsExtras) return;
  MakeExtras().itsTechLayerName = name.qstring();
}

void SPolygonData::InsertVertex(int index, const SPoint& p) {
  if (index < 0 || index > GetNumberOfVertices())
    SFATAL("VL1003", "Polygon points =%d, index = %d", GetNumberOfVertices(), index);
  itsVertices.insert(itsVertices.begin() + index, p);
}

const SPoint& SPolygonData::GetVertex(int index) const {
  if (index < 0 || index >= GetNumberOfVertices())
    SFATAL("VL1003", "Polygon points =%d, index = %d", GetNumberOfVertices(), index);
  return itsVertices[static_cast<size_t>(index)];
}

void SPolygonData::RemoveDuplicates() {
  if (itsVertices.empty()) return;
  std::vector<SPoint> kept;
  kept.reserve(itsVertices.size());
  for (const SPoint& p : itsVertices)
    if (kept.empty() || !(kept.back() == p)) kept.push_back(p);
  while (kept.size() > 1 && kept.back() == kept.front()) kept.pop_back();
  itsVertices.swap(kept);
}

SRect SPolygonData::BoundsOf(const std::vector<SPoint>& points) {
  if (points.empty()) return SRect();
  double x1 = points[0].x(), x2 = x1, y1 = points[0].y(), y2 = y1;
  for (const SPoint& p : points) {
    x1 = std::min(x1, p.x());
    x2 = std::max(x2, p.x());
    y1 = std::min(y1, p.y());
    y2 = std::max(y2, p.y());
  }
  return SRect(x1, y1, x2, y2);
}

SPoint SPolygonData::GetCenter() const { return GetBoundingRect().center(); }

double SPolygonData::SignedArea(const std::vector<SPoint>& points) {
  double twice = 0.0;
  const size_t n = points.size();
  for (size_t i = 0; i < n; ++i) {
    const SPoint& a = points[i];
    const SPoint& b = points[(i + 1) % n];
    twice += a.x() * b.y() - b.x() * a.y();
  }
  return twice / 2.0;
}

// Y grows downwards in the project, so a positive signed area turns clockwise on screen.
bool SPolygonData::IsClockwise() const { return Area() > 0.0; }

void SPolygonData::Reverse() { std::reverse(itsVertices.begin(), itsVertices.end()); }

void SPolygonData::MoveVertices(const SPoint& delta) {
  for (SPoint& p : itsVertices) p += delta;
}

void SPolygonData::FlipVertices(double height) {
  for (SPoint& p : itsVertices) p.setY(height - p.y());
}

void SPolygonData::WriteHeader(SProjectStream& out, int level, int material, unsigned long long id, int format,
                               double lengthFactor) const {
  const int points = itsVertices.empty() ? 0 : GetNumberOfVertices() + 1;
  out << level << ' ' << points << ' ' << material << ' ' << FillLetter(format) << ' '
      << static_cast<long long>(id) << ' ' << GetXMin() << ' ' << GetYMin() << ' ' << GetXMax() << ' '
      << GetYMax() << ' ' << GetMaxSubLen() * lengthFactor << ' ' << GetEdgeTruncation() * lengthFactor << ' '
      << (GetCurrentSym() ? GetFlatness() + 10000.0 : GetFlatness());
  if (format >= 2) out << ' ' << (GetEdgeMesh() ? 'Y' : 'N');
  if (!GetRemainder().isEmpty()) out << ' ' << SString(GetRemainder());
  out << '\n';
}

void SPolygonData::WriteExtras(SProjectStream& out, int format) const {
  if (GetTechLayer() != nullptr && format >= 15) {
    out << "TLAYNAM ";
    const STechLayer* layer = GetTechLayer();
    out.KeyedName(layer, [layer] { return SGeoObjectIO::TechLayerName(layer); });
    out << (FollowsTechLayer() ? " INH\n" : " NOH\n");
  }
  if (itsExtras && !itsExtras->itsUserText.isEmpty()) out << "USER_DAT " << SString(itsExtras->itsUserText) << '\n';
}

void SPolygonData::WriteVertices(SProjectStream& out, double lengthFactor) const {
  // Outlines repeat coordinates (a Manhattan one all but one of the point before, and the
  // closing point the first): a value with the bits of the last in its axis keeps its text.
  struct Axis {
    uint64_t bits = 0;
    int length = -1;
    char text[SNumberFormat::kBufferSize];
  };
  Axis x, y;
  const int digits = out.Digits();
  // Lines are made here and handed on a batch at a time: millions of polygons make
  // tens of millions of them.
  const size_t kLongestLine = 2 * SNumberFormat::kBufferSize + 2;
  char lines[4096];
  size_t used = 0;
  auto put = [&lines, &used, digits](Axis& axis, double value) {
    uint64_t bits;
    std::memcpy(&bits, &value, sizeof bits);
    if (axis.length < 0 || bits != axis.bits) {
      axis.bits = bits;
      axis.length = SNumberFormat::Format(value, digits, axis.text);
    }
    std::memcpy(lines + used, axis.text, static_cast<size_t>(axis.length));
    used += static_cast<size_t>(axis.length);
  };
  auto line = [&](const SPoint& p) {
    if (sizeof lines - used < kLongestLine) {
      out.AppendLines(lines, used);
      used = 0;
    }
    put(x, p.x() * lengthFactor);
    lines[used++] = ' ';
    put(y, p.y() * lengthFactor);
    lines[used++] = '\n';
  };
  for (const SPoint& p : itsVertices) line(p);
  if (!itsVertices.empty()) line(itsVertices[0]);
  out.AppendLines(lines, used);
  out << "END\n";
}

bool SPolygonData::ReadHeader(SFile& file, SProjectErrorManager& errors, long long& level, int& points,
                              long long& id, double lengthFactor) {
  SString token;
  if (file.PeekToken(token) && SFileBlock::Match(token, "END")) return ReadFault(errors, file, 6180);
  if (!file.GetLong(level)) return ReadFault(errors, file, 6059);
  if (!file.GetInt(points) || points < 0) return ReadFault(errors, file, 6065);
  if (points == 1) return ReadFault(errors, file, 6008, 6065);
  int material = 0;
  if (!file.GetInt(material)) return ReadFault(errors, file, 6066);
  itsFileMaterial = material;
  if (!file.GetToken(token) || token.isEmpty()) return ReadFault(errors, file, 6067);
  const QChar letter = token.first().toUpper();
  if (letter.unicode() > 127 || !SetFillLetter(static_cast<char>(letter.unicode())))
    return ReadFault(errors, file, 6002, 6067);
  if (!file.GetLong(id) || id < 0) return ReadFault(errors, file, 6068);
  if (id == 0) id = file.LineCount();
  int limits[4];
  for (int i = 0; i < 4; ++i)
    if (!file.GetInt(limits[i])) return ReadFault(errors, file, 6069 + i);
  SetLimits(limits[0], limits[1], limits[2], limits[3]);
  double lengths[3];
  for (int i = 0; i < 3; ++i)
    if (!file.GetDouble(lengths[i])) return ReadFault(errors, file, 6073 + i);
  SetMaxSubLen(lengths[0] / lengthFactor);
  SetEdgeTruncation(lengths[1] / lengthFactor);
  SetCurrentSym(lengths[2] >= 10000.0);
  SetFlatness(lengths[2] >= 10000.0 ? lengths[2] - 10000.0 : lengths[2]);
  if (file.GetToken(token)) {
    if (token == "Y")
      SetEdgeMesh(true);
    else if (token == "N")
      SetEdgeMesh(false);
    else
      return ReadFault(errors, file, 6002, 6135);
  } else {
    SetEdgeMesh(limits[0] == 1 && limits[1] == 1);
  }
  SString rest;
  if (file.HasToken() && file.GetRestOfLine(rest)) SetRemainder(rest.stripped().qstring());
  file.NextLine();
  return true;
}

bool SPolygonData::ReadExtras(SFile& file, SProjectErrorManager& errors, bool* grouped, int* group,
                              bool* hasGroup) {
  (void)errors;
  SString token;
  while (file.PeekToken(token)) {
    if (SFileBlock::Match(token, "TLAYNAM")) {
      file.NextToken();
      SString name, mode;
      file.GetToken(name);
      file.GetUpperToken(mode);
      SetTechLayerName(name);
      // The layer itself is bound when the block is in; the flag waits here until then.
      SetTechLayer(nullptr, mode == "INH");
    } else if (SFileBlock::Match(token, "USER_DAT")) {
      SString text;
      file.GetAfterFirstToken(text);
      SetUserText(text);
    } else if (grouped != nullptr && SFileBlock::Match(token, "GLG")) {
      file.NextToken();
      *grouped = true;
      SString word;
      if (file.GetUpperToken(word) && word == "GROUP") {
        int value = 0;
        if (file.GetInt(value)) {
          *group = value;
          *hasGroup = true;
        }
      }
    } else {
      return true;
    }
    file.NextLine();
  }
  return true;
}

bool SPolygonData::ReadVertices(SFile& file, SProjectErrorManager& errors, int points) {
  SString token;
  if (points > 0) {
    itsVertices.reserve(static_cast<size_t>(std::min(points, 1 << 16)) - 1);
    for (int i = 0; i < points - 1; ++i) {
      if (file.PeekToken(token) && SFileBlock::Match(token, "END")) return ReadFault(errors, file, 6018);
      double x = 0, y = 0;
      if (!file.GetDouble(x) || !file.GetDouble(y)) return ReadFault(errors, file, 6076);
      itsVertices.emplace_back(x, y);
      file.NextLine();
    }
    double x = 0, y = 0;
    if (!file.GetDouble(x) || !file.GetDouble(y)) return ReadFault(errors, file, 6076);
    if (!itsVertices.empty() && !(SPoint(x, y) == itsVertices.front())) return ReadFault(errors, file, 6021);
    file.NextLine();
  }
  if (!file.PeekToken(token) || !SFileBlock::Match(token, "END")) return ReadFault(errors, file, 6022);
  return true;
}
