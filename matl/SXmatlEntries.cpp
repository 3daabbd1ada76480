#include "SXmatlEntries.h"

#include "SMatlMetalData.h"
#include "SMatlUtil.h"

bool SXmatlSameNumber(double a, double b) {
  if (a == b) return true;
  const SMatlUtil& util = SMatlUtil::Instance();
  return util.FormatNumber(a) == util.FormatNumber(b);
}

namespace {

template <class T> const T* FindNamed(const std::vector<T>& list, const SString& name) {
  for (const T& entry : list)
    if (entry.name == name) return &entry;
  return nullptr;
}

} // namespace

bool SXmatlVar::operator==(const SXmatlVar& o) const {
  return name == o.name && value == o.value && units == o.units && isPrivate == o.isPrivate;
}

bool SXmatlAxis::operator==(const SXmatlAxis& o) const {
  return SXmatlSameNumber(erel, o.erel) && SXmatlSameNumber(mrel, o.mrel) && SXmatlSameNumber(tane, o.tane) &&
         SXmatlSameNumber(tanm, o.tanm) && condInf == o.condInf && (condInf || SXmatlSameNumber(cond, o.cond));
}

const char* const SXmatlDielMatl::kParamsWords[SXmatlDielMatl::ParamsCount] = {"xyz", "xy", "x", "y", "z"};

int SXmatlDielMatl::FirstAxis(int params) {
  switch (params) {
  case ParamsY: return Y;
  case ParamsZ: return Z;
  default: return X;
  }
}

bool SXmatlDielMatl::operator==(const SXmatlDielMatl& o) const {
  if (name != o.name || anisotropic != o.anisotropic || resistivity != o.resistivity || isPrivate != o.isPrivate)
    return false;
  for (int i = 0; i < ParamsCount; ++i)
    if (has[i] != o.has[i]) return false;
  // Only the axes that a "params" element gave are held in a file.
  const bool given[3] = {has[ParamsXYZ] || has[ParamsXY] || has[ParamsX], has[ParamsXYZ] || has[ParamsXY] || has[ParamsY],
                         has[ParamsXYZ] || has[ParamsZ]};
  for (int i = 0; i < 3; ++i)
    if (given[i] && !(axis[i] == o.axis[i])) return false;
  return true;
}

const char* SXmatlMesh::TypeWord(int type) {
  switch (type) {
  case Via: return "via";
  case Brick: return "brick";
  default: return "metal";
  }
}

bool SXmatlMesh::operator==(const SXmatlMesh& o) const {
  return name == o.name && type == o.type && fillType == o.fillType && isoType == o.isoType && xmin == o.xmin &&
         xmax == o.xmax && ymin == o.ymin && ymax == o.ymax && edgeMesh == o.edgeMesh &&
         (type != Via || pads == o.pads) && useMaxLength == o.useMaxLength &&
         (!useMaxLength || SXmatlSameNumber(maxLength, o.maxLength)) && isPrivate == o.isPrivate;
}

bool SXmatlMetalModel::HasCurrentRatio() const {
  return type == SMatlMetalData::Normal || type == SMatlMetalData::ThickMetalModel || type == SMatlMetalData::RoughMetal;
}

bool SXmatlMetalModel::HasNumSheets() const { return type == SMatlMetalData::ThickMetalModel; }

bool SXmatlMetalModel::HasRoughness() const { return type == SMatlMetalData::RoughMetal; }

bool SXmatlMetalModel::operator==(const SXmatlMetalModel& o) const {
  if (name != o.name || type != o.type || isPrivate != o.isPrivate) return false;
  if (HasCurrentRatio() && !SXmatlSameNumber(currentRatio, o.currentRatio)) return false;
  if (HasNumSheets() && numSheets != o.numSheets) return false;
  if (HasRoughness() && (!SXmatlSameNumber(topRoughness, o.topRoughness) ||
                         !SXmatlSameNumber(bottomRoughness, o.bottomRoughness) || thick != o.thick))
    return false;
  return true;
}

bool SXmatlViaModel::operator==(const SXmatlViaModel& o) const {
  return name == o.name && type == o.type && SXmatlSameNumber(fillFactor, o.fillFactor) && solid == o.solid &&
         SXmatlSameNumber(wallThickness, o.wallThickness) && SXmatlSameNumber(viaDensity, o.viaDensity) &&
         isPrivate == o.isPrivate;
}

bool SXmatlBias::operator==(const SXmatlBias& o) const {
  return name == o.name && lookup == o.lookup && attributes == o.attributes && isPrivate == o.isPrivate;
}

bool SXmatlMap::IsEmpty() const {
  return dxfLayer.isEmpty() && gerberName.isEmpty() && gdsStream < 0 && mask.isEmpty();
}

bool SXmatlMap::operator==(const SXmatlMap& o) const {
  // Without a stream the datatype isn't written, so it isn't held.
  return dxfLayer == o.dxfLayer && gerberName == o.gerberName && gdsStream == o.gdsStream &&
         (gdsStream < 0 || gdsDatatype == o.gdsDatatype) && mask == o.mask;
}

bool SXmatlLayer::operator==(const SXmatlLayer& o) const {
  return kind == o.kind && name == o.name && material == o.material && model == o.model &&
         layerName == o.layerName && SXmatlSameNumber(thickness, o.thickness) && bias == o.bias && mesh == o.mesh &&
         pattern == o.pattern && down == o.down && from == o.from && to == o.to && map == o.map &&
         isPrivate == o.isPrivate;
}

bool SXmatlCover::operator==(const SXmatlCover& o) const {
  return material == o.material && model == o.model && isPrivate == o.isPrivate;
}

bool SXmatlDiel::operator==(const SXmatlDiel& o) const {
  return name == o.name && dielectric == o.dielectric && conformal == o.conformal &&
         SXmatlSameNumber(thickness, o.thickness) && zpart == o.zpart && measuredFrom == o.measuredFrom &&
         associatedCond == o.associatedCond && SXmatlSameNumber(sidewallThickness, o.sidewallThickness) &&
         SXmatlSameNumber(topwallThickness, o.topwallThickness) &&
         SXmatlSameNumber(bottomwallThickness, o.bottomwallThickness) && layers == o.layers &&
         isPrivate == o.isPrivate;
}

bool SXmatlDielMap::operator==(const SXmatlDielMap& o) const {
  return name == o.name && publicDiel == o.publicDiel && privateDiels == o.privateDiels && isPrivate == o.isPrivate;
}

const SXmatlCond* SXmatlData::FindConductor(const SString& name) const {
  for (const SXmatlCond& conductor : conductors)
    if (conductor.GetName() == name) return &conductor;
  return nullptr;
}

const SXmatlDielMatl* SXmatlData::FindDielectric(const SString& name) const { return FindNamed(dielectrics, name); }

const SXmatlMesh* SXmatlData::FindMesh(const SString& name) const { return FindNamed(meshes, name); }

const SXmatlMetalModel* SXmatlData::FindMetalModel(const SString& name) const { return FindNamed(metalModels, name); }

const SXmatlViaModel* SXmatlData::FindViaModel(const SString& name) const { return FindNamed(viaModels, name); }

int SXmatlData::FindDielLevel(const SString& name) const {
  for (size_t i = 0; i < diels.size(); ++i)
    if (diels[i].name == name) return static_cast<int>(i);
  return -1;
}
