#include "SPort.h"

#include "SCoupledGroup.h"
#include "SFile.h"
#include "SFileBlock.h"
#include "SGeoClassID.h"
#include "SMetalPolygon.h"
#include "SPolyDepHandle.h"
#include "SProjectErrorManager.h"
#include "SProjectStream.h"
#include "SRefPlane.h"
#include "SRegexp.h"

#include <QRegExp>
#include <QStringList>

SCOLLECTABLE_DEFINE(SPort, SID_PORT, &SEnclosure::staticTypeInfo())

SPort::SPort(SMetalPolygon* owner, int edge) {
  itsEdge = edge;
  if (owner != nullptr) owner->AddChild(this);
}

SMetalPolygon* SPort::GetPolygon() const { return SMetalPolygon::Of(itsOwner); }

SPoint SPort::GetPosition() const {
  const SMetalPolygon* polygon = GetPolygon();
  if (polygon == nullptr) return itsPosition;
  const int n = polygon->GetNumberOfVertices();
  if (n < 2 || itsEdge < 0 || itsEdge >= n) return itsPosition;
  const SPoint& a = polygon->GetVertex(itsEdge);
  const SPoint& b = polygon->GetVertex((itsEdge + 1) % n);
  return SPoint((a.x() + b.x()) / 2.0, (a.y() + b.y()) / 2.0);
}

// ---- writing

void SPort::WriteTypeLine(SProjectStream& out, int format) const {
  int type = itsType;
  // Older formats know fewer kinds of port.
  if (format < 21 && (type == DeltaGap || type == BoxWall || type == ViaPort)) type = Standard;
  if (type == CoCalibrated && (format < 7 || (format < 21 && itsSimple))) type = AutoGround;
  out << "POR1 ";
  switch (type) {
  case AutoGround: out << "AGND"; break;
  case CoCalibrated:
    out << "CUP ";
    // Quoted always, as the group's own line has it.
    if (itsAutomaticGroup || (itsGroup != nullptr && itsGroup->IsAutomatic()))
      out << "\"Auto\"";
    else
      out << '"' << (itsGroup != nullptr ? itsGroup->GetName() : itsGroupName) << '"';
    break;
  case DeltaGap: out << "GAP"; break;
  case BoxWall: out << "BOX"; break;
  case ViaPort: out << "VIA"; break;
  default: out << "STD"; break;
  }
  out << '\n';
}

void SPort::WriteGroundLines(SProjectStream& out) const {
  out << "GNDREF " << GroundWord(itsGroundReference);
  if (HasDirection(itsGroundReference)) out << ' ' << DirectionWord(itsGroundDirection);
  out << "\nTERMW " << WidthWord(itsTerminalWidthType);
  if (itsTerminalWidthType == CustomWidth) out << ' ' << itsTerminalWidth;
  out << '\n';
}

void SPort::Write(SProjectStream& out, int format, int number) const {
  WriteTypeLine(out, format);
  if (format >= 11 && CanBeDiagonal() && itsDiagonalAllowed) out << "DIAGALLOWED Y\n";
  if (format >= 21 && itsPolarityReversed) out << "POLARITY REVERSED\n";
  if (format >= 21 && itsType == CoCalibrated) {
    if (itsSimple) out << "SIMPLE Y\n";
    WriteGroundLines(out);
  }
  const SMetalPolygon* polygon = GetPolygon();
  SPolyDepHandle handle;
  handle.SetPolygonId(polygon != nullptr ? polygon->GetId() : itsPolygonId);
  handle.AddItem(itsEdge);
  handle.Write(out);

  if (format >= 21) {
    if (itsIndices.empty()) out << '0';
    for (size_t i = 0; i < itsIndices.size(); ++i) {
      if (i > 0) out << ',';
      out << itsIndices[i];
    }
  } else {
    const int first = GetNumber(0);
    out << (first == 0 && format < 19 ? number : first);
  }
  const SPoint p = GetPosition();
  out << ' ' << itsResistance << ' ' << itsReactance << ' ' << itsInductance * 1e-9 << ' '
      << itsCapacitance * 1e-12 << ' ' << p.x() << ' ' << p.y() << ' ';
  const bool planeLine = itsRefPlane && (itsType == AutoGround || format >= 11);
  if (!planeLine || !itsRefPlane->WriteForm(out)) out << '\n';
}

// ---- reading

namespace {
bool YesNo(const SString& word, bool& value) {
  if (word == "Y") {
    value = true;
    return true;
  }
  if (word == "N") {
    value = false;
    return true;
  }
  return false;
}

bool BadOption(SProjectErrorManager& errors, const SFile& file, int detail) { return ReadFault(errors, file, 6017, detail); }

bool StartsLikeNumber(const SString& token) {
  if (token.isEmpty()) return false;
  const QChar c = token.first();
  return c.isDigit() || c == '-' || c == '+' || c == '.';
}
}  // namespace

bool SPort::Read(SFile& file, const SString& keyword, SProjectErrorManager& errors) {
  SetLine(file.LineCount());
  const SString upper = keyword.upper();
  if (upper != "POR1") {
    // The oldest forms: polygon ordinal, edge and level, then the port line.
    if (upper == "PORA") itsType = AutoGround;
    long long ordinal = 0, edge = 0, level = 0;
    if (!file.GetLong(ordinal)) return ReadFault(errors, file, 6057);
    if (!file.GetLong(edge)) return ReadFault(errors, file, 6058);
    if (!file.GetLong(level)) return ReadFault(errors, file, 6059);
    itsOrdinal = ordinal;
    itsEdge = static_cast<int>(edge);
    if (!file.HasToken() && !file.NextLine()) return ReadFault(errors, file, 6050);
    return ReadPortLine(file, errors);
  }
  SString word;
  if (file.GetToken(word)) {
    if (word == "VIA") {
      itsType = ViaPort;
    } else if (word == "GAP") {
      itsType = DeltaGap;
    } else if (word == "BOX") {
      itsType = BoxWall;
    } else if (word == "AGND") {
      itsType = AutoGround;
      itsSimple = 1;
      itsGroundReference = GroundBoxCover;
      itsGroundDirection = DirectionBelow;
    } else if (word == "CUP") {
      itsType = CoCalibrated;
      SString name;
      file.GetToken(name);
      if (name == "Auto") {
        itsAutomaticGroup = 1;
      } else {
        itsGroupName = name;
      }
    }
  }
  if (!file.NextLine()) return ReadFault(errors, file, 6024);
  if (!ReadOptions(file, errors)) return false;
  SPolyDepHandle handle;
  if (!handle.Read(file, errors)) return false;
  itsPolygonId = handle.GetPolygonId();
  itsEdge = handle.GetItem(0);
  if (!file.NextLine()) return ReadFault(errors, file, 6050);
  return ReadPortLine(file, errors);
}

bool SPort::ReadOptions(SFile& file, SProjectErrorManager& errors) {
  SString key, word;
  while (file.PeekToken(key)) {
    if (SFileBlock::Match(key, "DIAGALLOWED")) {
      file.NextToken();
      bool on = false;
      if (!file.GetToken(word) || !YesNo(word, on)) return BadOption(errors, file, 6185);
      itsDiagonalAllowed = on ? 1 : 0;
    } else if (SFileBlock::Match(key, "POLARITY")) {
      file.NextToken();
      file.GetToken(word);
      if (word == "REVERSED")
        itsPolarityReversed = 1;
      else if (word == "NORMAL")
        itsPolarityReversed = 0;
      else
        return BadOption(errors, file, 6217);
    } else if (SFileBlock::Match(key, "SIMPLE")) {
      file.NextToken();
      bool on = false;
      if (!file.GetToken(word) || !YesNo(word, on)) return BadOption(errors, file, 6218);
      itsSimple = on ? 1 : 0;
    } else if (SFileBlock::Match(key, "GNDREF")) {
      file.NextToken();
      file.GetToken(word);
      const int ground = GroundFromWord(word);
      if (ground < 0) return BadOption(errors, file, 6216);
      itsGroundReference = ground;
      if (file.GetToken(word)) {
        const int direction = DirectionFromWord(word);
        if (direction < 0) return BadOption(errors, file, 6216);
        itsGroundDirection = direction;
      }
    } else if (SFileBlock::Match(key, "TERMW")) {
      file.NextToken();
      file.GetToken(word);
      const int width = WidthFromWord(word);
      if (width < 0) return BadOption(errors, file, 6216);
      itsTerminalWidthType = width;
      double value = 0.0;
      if (file.HasToken()) {
        if (!file.GetDouble(value)) return BadOption(errors, file, 6216);
        itsTerminalWidth = value;
      }
    } else {
      return true;
    }
    if (!file.NextLine()) return ReadFault(errors, file, 6024);
  }
  return ReadFault(errors, file, 6024);
}

bool SPort::ReadPortLine(SFile& file, SProjectErrorManager& errors) {
  SString token;
  if (!file.GetToken(token)) return ReadFault(errors, file, 6050);
  itsIndices.clear();
  const QStringList parts = token.qstring().split(QRegExp("[\\s,]+"), Qt::SkipEmptyParts);
  for (const QString& part : parts) {
    bool ok = false;
    const int number = part.toInt(&ok);
    if (!ok) return ReadFault(errors, file, 6050);
    itsIndices.push_back(number);
  }
  if (itsIndices.empty()) return ReadFault(errors, file, 6050);
  if (!file.GetDouble(itsResistance)) return ReadFault(errors, file, 6051);
  if (!file.GetDouble(itsReactance)) return ReadFault(errors, file, 6052);
  if (!file.GetDouble(itsInductance)) return ReadFault(errors, file, 6053);
  if (!file.GetDouble(itsCapacitance)) return ReadFault(errors, file, 6054);
  itsInductance *= 1e9;
  itsCapacitance *= 1e12;
  if (file.PeekToken(token) && StartsLikeNumber(token)) {
    double x = 0.0, y = 0.0;
    if (!file.GetDouble(x) || !file.GetDouble(y)) return ReadFault(errors, file, 6056);
    itsPosition = SPoint(x, y);
  }
  if (file.HasToken()) {
    auto plane = std::make_unique<SRefPlane>(0, itsType == AutoGround ? SRefPlane::LocalPlane : SRefPlane::PortPlane);
    const size_t before = errors.Count();
    if (!plane->ReadForm(file, errors)) {
      if (errors.Count() == before) ReadFault(errors, file, 6056);
      return false;
    }
    plane->SetOwner(this);
    itsRefPlane = std::move(plane);
  }
  itsEndLine = file.LineCount();
  return true;
}
