#include "SPolygonScanner.h"

#include "SBrickPolygon.h"
#include "SCircuit.h"
#include "SCoupledGroup.h"
#include "SDimension.h"
#include "SEdgeVia.h"
#include "SGeoClassID.h"
#include "SMaterialTypeData.h"
#include "SMaterialTypeIO.h"
#include "SMetalPolygon.h"
#include "SPort.h"
#include "SProjectFile.h"
#include "SRefPlane.h"
#include "SSMDev.h"
#include "STechLayer.h"

#include <algorithm>
#include <cstring>
#include <string>

namespace {
// The tokens of a raw line, as far as a polygon needs them.
struct Tokens {
  static const int kMax = 16;
  const char* at[kMax];
  int length[kMax];
  // All tokens of the line, also those beyond kMax.
  int count = 0;

  bool Is(int i, const char* word) const {
    return i < count && i < kMax && static_cast<size_t>(length[i]) == std::strlen(word) &&
           std::memcmp(at[i], word, static_cast<size_t>(length[i])) == 0;
  }
  std::string Text(int i) const { return i < count && i < kMax ? std::string(at[i], static_cast<size_t>(length[i])) : std::string(); }
};

// Splits at blanks and tabs. False for a line that the token reader treats in a way of its
// own: a comment, a continuation or quotes, a carriage return, control or non-ASCII bytes.
bool Split(const char* p, const char* end, Tokens& t) {
  t.count = 0;
  while (p < end) {
    if (*p == ' ' || *p == '\t') {
      ++p;
      continue;
    }
    const char* start = p;
    for (; p < end && *p != ' ' && *p != '\t'; ++p) {
      const unsigned char c = static_cast<unsigned char>(*p);
      if (c < 0x21 || c > 0x7e || c == '!' || c == '&' || c == '"') return false;
    }
    if (t.count < Tokens::kMax) {
      t.at[t.count] = start;
      t.length[t.count] = static_cast<int>(p - start);
    }
    ++t.count;
  }
  return true;
}

// The next line that holds a token, as the token reader skips blank ones.
bool NextLine(SProjectFile& file, Tokens& t) {
  const char* begin = nullptr;
  const char* end = nullptr;
  do {
    if (!file.RawLine(begin, end) || !Split(begin, end, t)) return false;
  } while (t.count == 0);
  return true;
}

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// Numbers in the forms the writer uses, which the token reader takes to the same values;
// few enough digits that nothing overflows.
bool Integer(const Tokens& t, int i, int digits, long long& value) {
  if (i >= t.count || i >= Tokens::kMax) return false;
  const char* s = t.at[i];
  const int n = t.length[i];
  int k = s[0] == '-' ? 1 : 0;
  if (n - k < 1 || n - k > digits) return false;
  long long v = 0;
  for (; k < n; ++k) {
    if (!IsDigit(s[k])) return false;
    v = v * 10 + (s[k] - '0');
  }
  value = s[0] == '-' ? -v : v;
  return true;
}

bool Integer(const Tokens& t, int i) {
  long long value = 0;
  return Integer(t, i, 9, value);
}

bool Real(const Tokens& t, int i) {
  if (i >= t.count || i >= Tokens::kMax) return false;
  const char* s = t.at[i];
  const int n = t.length[i];
  int k = s[0] == '-' ? 1 : 0;
  int digits = 0;
  for (; k < n && IsDigit(s[k]); ++k) ++digits;
  if (digits == 0) return false;
  if (k < n && s[k] == '.') {
    ++k;
    int fraction = 0;
    for (; k < n && IsDigit(s[k]); ++k) ++fraction;
    if (fraction == 0) return false;
    digits += fraction;
  }
  if (digits > 30) return false;
  if (k < n && (s[k] == 'e' || s[k] == 'E')) {
    ++k;
    if (k < n && (s[k] == '+' || s[k] == '-')) ++k;
    int exponent = 0;
    for (; k < n && IsDigit(s[k]); ++k) ++exponent;
    if (exponent < 1 || exponent > 2) return false;
  }
  return k == n;
}

void Want(std::unordered_set<long long>& wanted, const SPolyDepHandle& link) {
  if (link.IsSet()) wanted.insert(link.GetPolygonId());
}
}  // namespace

SPolygonScanner::SPolygonScanner(const SCircuit& circuit) : itsLevels(circuit.GetNumberOfLevels()) {
  for (size_t i = 0; i < circuit.GetNumberOfChildren(); ++i) {
    SBaseEnclosure* child = circuit.GetChild(i);
    const SMaterialTypeData* type = SMaterialTypeIO::AsMaterialType(static_cast<SEnclosure*>(child));
    if (type == nullptr || type->GetFileId() < 0) continue;
    (child->isA() == SID_BRICKTYPE ? itsBricks : itsMetals).insert(type->GetFileId());
  }
  std::vector<STechLayer*> layers;
  circuit.GetTechLayers(layers);
  for (const STechLayer* layer : layers) itsTechLayers.insert(layer->GetName().qstring());

  std::vector<SPort*> ports;
  circuit.CollectObjects(ports);
  for (const SPort* port : ports) {
    if (port->GetPolygonId() < 0) itsByPlace = true;
    itsWanted.insert(port->GetPolygonId());
    if (port->GetRefPlane() != nullptr) Want(itsWanted, port->GetRefPlane()->GetLink());
  }
  std::vector<SEdgeVia*> vias;
  circuit.CollectObjects(vias);
  for (const SEdgeVia* via : vias) {
    if (via->GetPolygonId() < 0) itsByPlace = true;
    itsWanted.insert(via->GetPolygonId());
  }
  std::vector<SDimension*> dimensions;
  circuit.CollectObjects(dimensions);
  for (const SDimension* dimension : dimensions)
    for (int which = 0; which < 2; ++which) Want(itsWanted, dimension->GetReference(which));
  std::vector<SRefPlane*> planes;
  circuit.CollectObjects(planes);
  for (const SRefPlane* plane : planes) Want(itsWanted, plane->GetLink());
  std::vector<SCoupledGroup*> groups;
  circuit.CollectObjects(groups);
  for (SCoupledGroup* group : groups)
    for (int side = SBoxSide::Left; side <= SBoxSide::AutoGround; ++side)
      if (const SRefPlane* plane = group->GetRefPlane(side)) Want(itsWanted, plane->GetLink());
  std::vector<SSMDev*> components;
  SSMDev::Collect(circuit, components);
  std::vector<const SPolyDepHandle*> links;
  for (const SSMDev* component : components) component->GetLinks(links);
  for (const SPolyDepHandle* link : links) Want(itsWanted, *link);
}

bool SPolygonScanner::Binds(Kind kind, int material) const {
  // As the read binds material numbers: bricks count from 1, 0 being air.
  if (kind == Brick) return material <= 0 || itsBricks.contains(material - 1);
  return material < 0 || itsMetals.contains(material);
}

bool SPolygonScanner::MayDrop(const SEnclosure& shape) const {
  const bool brick = shape.isA() == SID_BRICKPOLYGON;
  if (!brick && itsWanted.count(shape.GetId()) > 0) return false;
  const SShapeData& data = brick ? static_cast<const SShapeData&>(static_cast<const SBrickPolygon&>(shape))
                                 : static_cast<const SShapeData&>(static_cast<const SMetalPolygon&>(shape));
  if (!Binds(brick ? Brick : Metal, data.GetFileMaterial())) return false;
  const SString layer = data.GetTechLayerName();
  return layer.isEmpty() || itsTechLayers.contains(layer.qstring());
}

long long SPolygonScanner::PassOver(SProjectFile& file, long long count, long long& highestId) const {
  highestId = -1;
  if (count <= 0 || !file.BeginRaw()) return 0;
  SProjectFile::Mark last = file.RawMark();
  long long passed = 0;
  for (; passed < count; ++passed) {
    long long id = 0;
    if (!PassOne(file, id)) break;
    highestId = std::max(highestId, id);
    last = file.RawMark();
  }
  if (!file.EndRaw(last)) return -1;
  // The token reader stands where it would after reading the polygon: on its END line.
  if (passed > 0) file.SetLine("END");
  return passed;
}

// The lines of SCircuit::ReadPolygons and the polygon readers, in the plain form only.
bool SPolygonScanner::PassOne(SProjectFile& file, long long& id) const {
  Tokens t;
  if (!NextLine(file, t)) return false;
  Kind kind = Metal;
  if (t.Is(0, "VIA") || t.Is(0, "BRI")) {
    if (t.count != 2 || !t.Is(1, t.Is(0, "VIA") ? "POLYGON" : "POLY")) return false;
    kind = t.Is(0, "VIA") ? Via : Brick;
    if (!NextLine(file, t)) return false;
  }

  // level points material fill id four-limits three-lengths [Y|N] [remainder]
  long long level = 0, points = 0, material = 0;
  if (t.count < 12 || !Integer(t, 0, 18, level) || !Integer(t, 1, 9, points) || !Integer(t, 2, 9, material))
    return false;
  if (points < 0 || points == 1) return false;
  if (t.length[3] != 1 || std::strchr("BCHNTVXY", t.at[3][0]) == nullptr) return false;
  if (!Integer(t, 4, 18, id) || id < 0) return false;
  for (int i = 5; i < 9; ++i)
    if (!Integer(t, i)) return false;
  for (int i = 9; i < 12; ++i)
    if (!Real(t, i)) return false;
  if (t.count > 12 && !t.Is(12, "Y") && !t.Is(12, "N")) return false;
  // An id of 0 is the number of the line, as the reader gives it.
  if (id == 0) id = file.RawMark().lines;
  if (level < 0 || level >= itsLevels || !Binds(kind, static_cast<int>(material))) return false;
  if (kind != Brick && itsWanted.count(id) > 0) return false;
  if (!NextLine(file, t)) return false;

  if (kind == Via && t.Is(0, "TOLEVEL")) {
    if (t.count < 2 || !(t.Is(1, "TOP") || t.Is(1, "GND") || Integer(t, 1))) return false;
    if (t.count > 3 && !t.Is(3, "COVERS") && !t.Is(3, "NOCOVERS")) return false;
    if (!NextLine(file, t)) return false;
  }
  while (t.Is(0, "TLAYNAM") || t.Is(0, "USER_DAT") || (kind != Brick && t.Is(0, "GLG"))) {
    if (t.Is(0, "TLAYNAM") && (t.count < 2 || !itsTechLayers.contains(QString::fromLatin1(t.at[1], t.length[1]))))
      return false;
    if (!NextLine(file, t)) return false;
  }

  // The points, the last repeating the first in the same text.
  std::string firstX, firstY;
  for (long long i = 0; i < points; ++i) {
    if (t.count != 2 || !Real(t, 0) || !Real(t, 1)) return false;
    if (i == 0) {
      firstX = t.Text(0);
      firstY = t.Text(1);
    } else if (i == points - 1 && (t.Text(0) != firstX || t.Text(1) != firstY)) {
      return false;
    }
    if (!NextLine(file, t)) return false;
  }
  return t.count == 1 && t.Is(0, "END");
}
