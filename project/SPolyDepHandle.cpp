#include "SPolyDepHandle.h"

#include "SCircuit.h"
#include "SFile.h"
#include "SFileBlock.h"
#include "SMetalPolygon.h"
#include "SProjectErrorManager.h"
#include "SProjectStream.h"
#include "SSMDev.h"

#include <algorithm>

void SPolyDepHandle::SetPolygon(const SMetalPolygon* polygon) { itsPolygonId = polygon != nullptr ? polygon->GetId() : -1; }

SMetalPolygon* SPolyDepHandle::FindPolygon(const SCircuit& circuit) const {
  if (itsPolygonId < 0 || itsComponent) return nullptr;
  // The id hash exists only while the block is read.
  if (SMetalPolygon* found = circuit.FindPolygonById(itsPolygonId)) return found;
  std::vector<SEnclosure*> shapes;
  circuit.CollectPolygons(shapes, SCircuit::MetalAndVia);
  for (SEnclosure* shape : shapes)
    if (shape->GetId() == itsPolygonId) return static_cast<SMetalPolygon*>(shape);
  return nullptr;
}

SSMDev* SPolyDepHandle::FindComponent(const SCircuit& circuit) const {
  if (itsPolygonId < 0 || !itsComponent) return nullptr;
  return SSMDev::Find(circuit, itsPolygonId);
}

void SPolyDepHandle::Write(SProjectStream& out) const {
  out << (itsComponent ? "SMD " : "POLY ") << itsPolygonId << ' ' << static_cast<long long>(itsItems.size()) << '\n';
  for (int item : itsItems) out << item << '\n';
}

bool SPolyDepHandle::Read(SFile& file, SProjectErrorManager& errors) {
  SString token;
  if (!file.GetToken(token) || !SFileBlock::Match(token, "POLY")) return ReadFault(errors, file, 6024);
  itsComponent = false;
  return ReadItems(file, errors, 6057, 6057, 6058);
}

bool SPolyDepHandle::ReadVariableHandle(SFile& file, SProjectErrorManager& errors) {
  SString token;
  if (!file.GetToken(token)) return ReadFault(errors, file, 6024);
  if (SFileBlock::Match(token, "POLY"))
    itsComponent = false;
  else if (SFileBlock::Match(token, "SMD"))
    itsComponent = true;
  else
    return ReadFault(errors, file, 6024);
  return ReadItems(file, errors, 6068, 6065, 6132);
}

bool SPolyDepHandle::ReadItems(SFile& file, SProjectErrorManager& errors, int badId, int badCount, int badItem) {
  long long id = 0;
  int count = 0;
  if (!file.GetLong(id) || id < 0) return ReadFault(errors, file, badId);
  if (!file.GetInt(count) || count < 0) return ReadFault(errors, file, badCount);
  itsPolygonId = id;
  itsItems.clear();
  itsItems.reserve(static_cast<size_t>(std::min(count, 64)));
  for (int i = 0; i < count; ++i) {
    int item = 0;
    if (!file.NextLine() || !file.GetInt(item)) return ReadFault(errors, file, badItem);
    itsItems.push_back(item);
  }
  return true;
}
