#include "SMetalPolygon.h"

#include "SBrickPolygon.h"
#include "SBrickType.h"
#include "SFile.h"
#include "SFileBlock.h"
#include "SGeoClassID.h"
#include "SLevel.h"
#include "SMetalType.h"
#include "SProjectErrorManager.h"
#include "SProjectStream.h"
#include "SViaMetalType.h"
#include "SViaPolygon.h"
#include "SWordTable.h"

#include <cstdio>

SCOLLECTABLE_DEFINE(SMetalPolygon, SID_METALPOLYGON, &SEnclosure::staticTypeInfo())
SCOLLECTABLE_DEFINE(SViaPolygon, SID_VIAPOLYGON, &SMetalPolygon::staticTypeInfo())
SCOLLECTABLE_DEFINE(SBrickPolygon, SID_BRICKPOLYGON, &SEnclosure::staticTypeInfo())

namespace {
int LevelIndexOf(const SBaseEnclosure* node) {
  for (const SBaseEnclosure* n = node->GetOwner(); n != nullptr; n = n->GetOwner())
    if (n->isA() == SID_LEVEL) return static_cast<const SLevel*>(n)->GetIndex();
  return -1;
}

void MoveNode(SBaseEnclosure* node, SBaseEnclosure* parent) {
  if (node->GetOwner() != nullptr) node->GetOwner()->RemoveChild(node);
  parent->AddChild(node);
}
}  // namespace

// ---- metal

SMetalPolygon* SMetalPolygon::Of(SBaseEnclosure* node) {
  return node != nullptr && node->isKindOf(SMetalPolygon::staticTypeInfo()) ? static_cast<SMetalPolygon*>(node) : nullptr;
}

SMetalType* SMetalPolygon::GetType() const { return static_cast<SMetalType*>(itsMaterial); }
void SMetalPolygon::SetType(SMetalType* type) { itsMaterial = type; }
int SMetalPolygon::GetLevelIndex() const { return LevelIndexOf(this); }
void SMetalPolygon::MoveTo(SBaseEnclosure* parent) { MoveNode(this, parent); }

int SMetalPolygon::MaterialNumber() const {
  if (itsMaterial == nullptr) return -1;
  const int id = itsMaterial->GetFileId();
  return id < -1 ? -1 : id;
}

void SMetalPolygon::WriteGroupLine(SProjectStream& out, int format) const {
  if (format < 5 || (!itsGrouped && !itsHasGroup)) return;
  out << "GLG";
  if (itsHasGroup) out << " GROUP " << itsGroup;
  out << '\n';
}

void SMetalPolygon::Write(SProjectStream& out, int level, int format, double lengthFactor) const {
  WriteHeader(out, level, MaterialNumber(), static_cast<unsigned long long>(itsId), format);
  WriteExtras(out, format);
  WriteGroupLine(out, format);
  WriteVertices(out, lengthFactor);
}

bool SMetalPolygon::Read(SFile& file, SProjectErrorManager& errors, long long& level) {
  SetLine(file.LineCount());
  int points = 0;
  if (!ReadHeader(file, errors, level, points, itsId)) return false;
  return ReadTail(file, errors, points);
}

bool SMetalPolygon::ReadTail(SFile& file, SProjectErrorManager& errors, int points) {
  bool grouped = false, hasGroup = false;
  int group = 0;
  if (!ReadExtras(file, errors, &grouped, &group, &hasGroup)) return false;
  itsGrouped = grouped ? 1 : 0;
  if (hasGroup) SetGroup(group);
  return ReadVertices(file, errors, points);
}

// ---- via

SString SViaData::ToLevelText(int type, int level) {
  if (type == ToTop) return "TOP";
  if (type == ToGround) return "GND";
  return SString::number(static_cast<long long>(level));
}

bool SViaData::SetToLevelText(const SString& text) {
  if (text == "TOP") {
    itsToLevelType = ToTop;
  } else if (text == "GND") {
    itsToLevelType = ToGround;
  } else {
    bool ok = false;
    const int level = text.toInt(&ok);
    if (!ok) return false;
    SetToLevel(level);
  }
  return true;
}

SViaMetalType* SViaPolygon::GetViaType() const { return static_cast<SViaMetalType*>(itsMaterial); }
void SViaPolygon::SetViaType(SViaMetalType* type) { itsMaterial = type; }

namespace {
const char* const kFillWords[] = {"LEGACY", "RING", "SOLID", "VERTICES", "CENTER", "BAR", "HIDDEN"};
}  // namespace

const char* SViaPolygon::FillWord(int fill, int format) {
  if (fill == Bar && format < 19) return "VERTICES";
  return SWordTable::WordOf(kFillWords, fill, kFillWords[Legacy]);
}

void SViaPolygon::Write(SProjectStream& out, int level, int format, double lengthFactor) const {
  if (format >= 3) out << "VIA POLYGON\n";
  WriteHeader(out, level, MaterialNumber(), static_cast<unsigned long long>(itsId), format);
  if (format >= 3) {
    out << "TOLEVEL " << GetToLevelText();
    if (format >= 11) out << ' ' << FillWord(itsViaFill, format) << ' ' << (itsCovers ? "COVERS" : "NOCOVERS");
    out << '\n';
  }
  WriteExtras(out, format);
  WriteGroupLine(out, format);
  WriteVertices(out, lengthFactor);
}

bool SViaPolygon::ReadToLevel(SFile& file, SProjectErrorManager& errors) {
  const int line = static_cast<int>(file.LineCount());
  file.NextToken();
  SString token;
  if (!file.GetUpperToken(token)) {
    errors.AddPrefixedError(SProjectErrorManager::Error, line, 6002, 6059);
    return false;
  }
  if (!SetToLevelText(token)) {
    errors.AddError(SProjectErrorManager::Error, line, 6059);
    return false;
  }
  itsViaFill = Legacy;
  if (!file.GetUpperToken(token)) return true;
  itsViaFill = SWordTable::CodeOf(kFillWords, token, Legacy);
  if (!file.GetUpperToken(token)) return true;
  if (token != "COVERS" && token != "NOCOVERS") {
    static bool told = false;
    if (!told) {
      told = true;
      errors.AddError(SProjectErrorManager::Warning, line, 6034, "Project",
                      "Old Via polygon file format read, please resave this project to update the format. "
                      "This format will not be supported in the next alpha.");
    }
    // Two more older fields, each a value or AUTO, then the covers word.
    for (int i = 0; i < 2; ++i)
      if (!file.GetUpperToken(token)) return true;
    if (!file.GetUpperToken(token)) return true;
  }
  itsCovers = token == "COVERS" ? 1 : 0;
  return true;
}

bool SViaPolygon::Read(SFile& file, SProjectErrorManager& errors, long long& level) {
  SetLine(file.LineCount());
  int points = 0;
  if (!ReadHeader(file, errors, level, points, itsId)) return false;
  SString token;
  if (file.PeekToken(token) && SFileBlock::Match(token, "TOLEVEL")) {
    if (!ReadToLevel(file, errors)) return false;
    file.NextLine();
  }
  return ReadTail(file, errors, points);
}

// ---- brick

SBrickType* SBrickPolygon::GetType() const { return static_cast<SBrickType*>(itsMaterial); }
void SBrickPolygon::SetType(SBrickType* type) { itsMaterial = type; }
int SBrickPolygon::GetLevelIndex() const { return LevelIndexOf(this); }
void SBrickPolygon::MoveTo(SBaseEnclosure* parent) { MoveNode(this, parent); }

void SBrickPolygon::Write(SProjectStream& out, int level, int format, double lengthFactor) const {
  out << "BRI POLY\n";
  const int material = itsMaterial == nullptr || itsMaterial->GetFileId() < 0 ? 0 : itsMaterial->GetFileId() + 1;
  WriteHeader(out, level, material, static_cast<unsigned long long>(itsId), format, lengthFactor);
  WriteExtras(out, format);
  WriteVertices(out, lengthFactor);
}

bool SBrickPolygon::Read(SFile& file, SProjectErrorManager& errors, long long& level, double lengthFactor) {
  SetLine(file.LineCount());
  int points = 0;
  if (!ReadHeader(file, errors, level, points, itsId, lengthFactor)) return false;
  if (!ReadExtras(file, errors, nullptr, nullptr, nullptr)) return false;
  return ReadVertices(file, errors, points);
}
