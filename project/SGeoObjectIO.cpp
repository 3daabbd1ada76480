#include "SGeoObjectIO.h"

#include "SCircuit.h"
#include "SFile.h"
#include "SProjectErrorManager.h"
#include "SProjectStream.h"

// Placeholders until ports, planes and technology layers are in: their lines are refused as
// unknown keywords, and nothing is written for them.
namespace SGeoObjectIO {
namespace {
bool Refuse(SFile& file, SProjectErrorManager& errors) {
  errors.AddError(SProjectErrorManager::Error, static_cast<int>(file.LineCount()), 6024);
  return false;
}
}  // namespace

bool ReadPort(SFile& file, SCircuit&, const SString&, SProjectErrorManager& errors) { return Refuse(file, errors); }
bool ReadEdgeVia(SFile& file, SCircuit&, const SString&, SProjectErrorManager& errors) { return Refuse(file, errors); }
bool ReadBoxRefPlane(SFile& file, SCircuit&, SProjectErrorManager& errors) { return Refuse(file, errors); }
bool ReadParallelSubs(SFile& file, SCircuit&, SProjectErrorManager& errors) { return Refuse(file, errors); }
bool ReadOldRefLine(SFile& file, SCircuit&, SProjectErrorManager& errors) { return Refuse(file, errors); }
bool ReadCoupledGroup(SFile& file, SCircuit&, SProjectErrorManager& errors) { return Refuse(file, errors); }
bool ReadDimension(SFile& file, SCircuit&, SProjectErrorManager& errors) { return Refuse(file, errors); }
bool ReadTechLayer(SFile& file, SCircuit&, SProjectErrorManager& errors) { return Refuse(file, errors); }
bool ResolveReferences(SCircuit&, SProjectErrorManager&, bool) { return true; }
void WriteBoxRefPlanes(SProjectStream&, const SCircuit&, int) {}
void WriteParallelSubs(SProjectStream&, const SCircuit&, int) {}
void WriteTechLayers(SProjectStream&, const SCircuit&, int) {}
void WriteDimensions(SProjectStream&, const SCircuit&, int) {}
void WriteViasAndPorts(SProjectStream&, const SCircuit&, int) {}
void WriteCoupledGroups(SProjectStream&, const SCircuit&, int) {}
void CreateBoxRefPlanes(SCircuit&) {}
const SSubsectionControls* TemplateControls(const STechLayer*) { return nullptr; }
SString TechLayerName(const STechLayer*) { return SString(); }
bool TechLayerUses(const STechLayer*, const void*) { return false; }
}  // namespace SGeoObjectIO

SRefPlane* SCircuit::GetRefPlane(int) const { return nullptr; }
STechLayer* SCircuit::FindTechLayer(const SString&) const { return nullptr; }
void SCircuit::GetTechLayers(std::vector<STechLayer*>&) const {}
