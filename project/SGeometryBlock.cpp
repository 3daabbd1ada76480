#include "SGeometryBlock.h"

#include "SCircuit.h"
#include "SDimensionBlock.h"
#include "SFile.h"
#include "SProject.h"
#include "SProjectClassID.h"
#include "SProjectErrorManager.h"

#include <string>

SCOLLECTABLE_DEFINE(SGeometryBlock, SID_GEOMETRYBLOCK, &SFileBlock::staticTypeInfo())

SGeometryBlock::SGeometryBlock(SProject* owner) : SFileBlock(owner, "GEO") {}

SGeometryBlock::~SGeometryBlock() {}

bool SGeometryBlock::Read(SFile& file, SProjectErrorManager& errors) {
  if (!SFileBlock::Read(file, errors)) return false;
  if (itsCircuit && itsCircuit->IsCutShort()) {
    const long long announced = itsCircuit->GetPolygonsAnnounced();
    const long long found = itsCircuit->GetPolygonsFound();
    if (found < announced)
      errors.AddError(SProjectErrorManager::Warning, LineOf(file), 6188, std::to_string(found).c_str(),
                      std::to_string(announced).c_str());
    else
      errors.AddError(SProjectErrorManager::Warning, LineOf(file), 6189);
  }
  return true;
}

bool SGeometryBlock::ReadFirstLine(SFile& file) {
  SString token;
  itsLabel = file.GetToken(token) ? token : SString("GEO");
  file.NextLine();
  return true;
}

bool SGeometryBlock::ReadBody(SFile& file, SProjectErrorManager& errors) {
  itsCircuit.reset(new SCircuit(itsOwner));
  itsCircuit->SetAbbreviated(itsAbbreviated);
  itsCircuit->SetDropDrawing(itsDropDrawing);
  const int version = itsOwner != nullptr ? itsOwner->GetFileVersion() : 0;
  if (!itsCircuit->ReadBody(file, errors, version)) {
    errors.AddError(SProjectErrorManager::Error, LineOf(file), 5602, "Failed to read Geometry");
    return false;
  }
  if (itsAbbreviated && !Skip(file)) {
    errors.AddError(SProjectErrorManager::Error, LineOf(file), 5602, "Failed to read Geometry");
    return false;
  }
  return true;
}

void SGeometryBlock::WriteBody(SProjectStream& out) {
  if (itsCircuit) itsCircuit->WriteBody(out, Format());
}

void SGeometryBlock::SetDefaults() {
  itsCircuit.reset(new SCircuit(itsOwner));
  itsCircuit->InitNew();
  itsPresent = true;
}

void SGeometryBlock::SetCircuit(SCircuit* circuit) {
  itsCircuit.reset(circuit);
  if (circuit != nullptr) circuit->SetProject(itsOwner);
}

SFileBlock* SGeometryBlock::Clone(SProject* owner) const {
  // A circuit isn't copied: the copy reads the text of this one.
  SGeometryBlock* copy = new SGeometryBlock(owner);
  copy->itsLabel = itsLabel;
  copy->itsAbbreviated = itsAbbreviated;
  copy->itsPresent = itsPresent;
  return copy;
}

bool SGeometryBlock::CheckFormat(int format, QStringList& problems) {
  return !itsCircuit || itsCircuit->CheckFormat(format, problems);
}

void SGeometryBlock::ChangeUnits(const SDimensionBlock& newUnits) {
  const SDimensionBlock* old = itsOwner != nullptr ? itsOwner->GetDimensionBlock() : nullptr;
  if (!itsCircuit || old == nullptr) return;
  const double to = newUnits.GetFactor(SDimensionBlock::Length);
  if (to > 0.0) itsCircuit->ScaleLengths(old->GetFactor(SDimensionBlock::Length) / to);
}
