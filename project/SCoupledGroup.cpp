#include "SCoupledGroup.h"

#include "SCircuit.h"
#include "SFile.h"
#include "SFileBlock.h"
#include "SGeoClassID.h"
#include "SPortData.h"
#include "SProjectErrorManager.h"
#include "SProjectStream.h"
#include "SRefPlane.h"
#include "SSMDev.h"
#include "SWordTable.h"

SCOLLECTABLE_DEFINE(SCoupledGroup, SID_COUPLEDGROUP, &SEnclosure::staticTypeInfo())

void SCoupledGroup::SetAutomatic(bool on) {
  itsAutomatic = on ? 1 : 0;
  if (on) itsName = "Auto";
}

SRefPlane* SCoupledGroup::GetRefPlane(int side, bool create) {
  for (size_t i = 0; i < GetNumberOfChildren(); ++i) {
    SBaseEnclosure* child = GetChild(i);
    if (child->isA() == SID_REFPLANE && static_cast<SRefPlane*>(child)->GetSide() == side)
      return static_cast<SRefPlane*>(child);
  }
  if (!create) return nullptr;
  SRefPlane* plane = new SRefPlane(side, SRefPlane::PortPlane);
  AddChild(plane);
  return plane;
}

SCoupledGroup* SCoupledGroup::Find(const SCircuit& circuit, const SString& name) {
  std::vector<SCoupledGroup*> groups;
  circuit.CollectObjects(groups);
  for (SCoupledGroup* group : groups)
    if (group->itsName == name) return group;
  return nullptr;
}

int SCoupledGroup::NextId(const SCircuit& circuit) {
  std::vector<SCoupledGroup*> groups;
  circuit.CollectObjects(groups);
  // Components number with the groups: their ids name them in parameters.
  std::vector<SSMDev*> components;
  SSMDev::Collect(circuit, components);
  groups.insert(groups.end(), components.begin(), components.end());
  int next = 1;
  for (const SCoupledGroup* group : groups)
    if (group->itsGroupId >= next) next = group->itsGroupId + 1;
  return next;
}

SCoupledGroup* SCoupledGroup::Make(SCircuit& circuit) {
  SCoupledGroup* group = new SCoupledGroup;
  group->itsGroupId = NextId(circuit);
  circuit.AddObject(group);
  return group;
}

// ---- file

namespace {
// Terminal width words of the older group line, by code.
const char* const kOldWidthWords[] = {"FEED", "CUST", "1CELL"};

char OldGroundLetter(int code) {
  if (code == SPortData::GroundPolygonEdge) return 'P';
  if (code == SPortData::GroundBoxCover) return 'B';
  return 'F';
}
}  // namespace

void SCoupledGroup::Write(SProjectStream& out, int format) const {
  out << "CUPGRP \"" << itsName << '"';
  if (itsAutomatic) out << " LOCAL";
  out << '\n';
  WriteGroupLines(out, format);
  out << "END\n";
}

void SCoupledGroup::WriteGroupLines(SProjectStream& out, int format) const {
  out << "ID " << itsGroupId << '\n';
  if (format < 21) {
    out << "GNDREF " << OldGroundLetter(itsGroundReference) << '\n';
    out << "TWTYPE " << SWordTable::WordOf(kOldWidthWords, itsTerminalWidthType, kOldWidthWords[0]) << '\n';
    if (itsTerminalWidth > 0.0) out << "TWVALUE " << itsTerminalWidth << '\n';
  } else if (itsGroundReference != kHiddenGround) {
    out << "GNDREF " << SPortData::GroundWord(itsGroundReference);
    if (SPortData::HasDirection(itsGroundReference)) out << ' ' << SPortData::DirectionWord(itsGroundDirection);
    out << '\n';
  }
  for (size_t i = 0; i < GetNumberOfChildren(); ++i) {
    const SBaseEnclosure* child = GetChild(i);
    if (child->isA() != SID_REFPLANE) continue;
    const SRefPlane* plane = static_cast<const SRefPlane*>(child);
    if (plane->IsEmpty()) continue;
    out << "DRP1 " << plane->GetSideText() << ' ';
    plane->WriteForm(out);
  }
}

bool SCoupledGroup::Read(SFile& file, SProjectErrorManager& errors) {
  SetLine(file.LineCount());
  SString token;
  if (!file.GetToken(token)) return ReadFault(errors, file, 6024);
  itsName = token;
  if (file.GetUpperToken(token)) itsAutomatic = token == "LOCAL" ? 1 : 0;
  for (;;) {
    if (!file.NextLine()) return ReadFault(errors, file, 6024);
    SString key;
    if (!file.GetToken(key)) continue;
    bool taken = false;
    if (!ReadGroupLine(file, key, errors, taken)) return false;
    if (taken) continue;
    if (SFileBlock::Match(key, "END")) return true;
    return ReadFault(errors, file, 6024);
  }
}

bool SCoupledGroup::ReadGroupLine(SFile& file, const SString& key, SProjectErrorManager& errors, bool& taken) {
  SString word;
  taken = true;
  if (SFileBlock::Match(key, "ID")) {
    if (!file.GetInt(itsGroupId)) return ReadFault(errors, file, 6017);
  } else if (SFileBlock::Match(key, "GNDREF")) {
    file.GetToken(word);
    int ground = SPortData::GroundFromWord(word);
    if (ground < 0) {
      // The older single letters.
      if (word == "P")
        ground = SPortData::GroundPolygonEdge;
      else if (word == "B")
        ground = SPortData::GroundBoxCover;
      else if (word == "F")
        ground = SPortData::GroundFloating;
      else
        return ReadFault(errors, file, 6017, 6216);
    }
    itsGroundReference = ground;
    if (file.GetToken(word)) {
      const int direction = SPortData::DirectionFromWord(word);
      if (direction < 0) return ReadFault(errors, file, 6017, 6216);
      itsGroundDirection = direction;
    }
  } else if (SFileBlock::Match(key, "TWTYPE")) {
    file.GetToken(word);
    const int width = SWordTable::CodeOf(kOldWidthWords, word, -1);
    if (width < 0) return ReadFault(errors, file, 6017, 6216);
    itsTerminalWidthType = width;
  } else if (SFileBlock::Match(key, "TWVALUE")) {
    if (!file.GetDouble(itsTerminalWidth)) return ReadFault(errors, file, 6017, 6216);
  } else if (SFileBlock::Match(key, "DRP1")) {
    file.GetToken(word);
    const int side = SBoxSide::SideFromText(word);
    if (side < 0) return ReadFault(errors, file, 6056);
    const size_t before = errors.Count();
    if (!GetRefPlane(side, true)->ReadForm(file, errors)) {
      if (errors.Count() == before) ReadFault(errors, file, 6056);
      return false;
    }
  } else {
    taken = false;
  }
  return true;
}
