// A material file made into a technology file: each dielectric a material and a layer, each
// drawing layer a conductor, a model and a mesh (shared definitions where the values are
// those of a default), the mappings on the layers.

#include "SXmatl.h"

#include "SMatlBrick.h"
#include "SMatlDielectric.h"
#include "SMatlMetalDrawLayer.h"
#include "SMatlMetalMaterial.h"
#include "SMatlReporting.h"
#include "SMatlTechLayer.h"
#include "SMatlVariable.h"
#include "SMatlViaDrawLayer.h"
#include "SMatlViaMaterial.h"

namespace {

const int kBadDielectric = 20660;
const int kBadBrick = 20662;
const int kBadMetal = 20664;
const int kBadVia = 20665;
const int kBadModel = 20666;
const int kBadMesh = 20667;
// How many names are tried for one that is free.
const int kNameTries = 100;

bool IsRestricted(const SString& name) { return name == "Lossless" || name == "Free Space" || name == "WG Load"; }

// `name`, or the first of name_1, name_2, ... that `taken` doesn't know; empty after the tries.
template <class Taken> SString UniqueName(const SString& name, Taken taken) {
  if (!taken(name)) return name;
  for (int i = 1; i < kNameTries; ++i) {
    const SString candidate = SString(QString("%1_%2").arg(name.qstring()).arg(i));
    if (!taken(candidate)) return candidate;
  }
  return SString();
}

// Adds a definition, or finds one of the same values: a default's name when the values are
// a default's, else `name` made unique. The name used; empty when none was free.
template <class T> SString AddDefinition(std::vector<T>& list, T definition, const SString& name,
                                         const std::vector<T>& defaults) {
  for (T shared : defaults) {
    definition.name = shared.name;
    if (!(definition == shared)) continue;
    for (const T& entry : list)
      if (entry.name == shared.name) return shared.name;
    list.push_back(shared);
    return shared.name;
  }
  definition.name = name;
  for (const T& entry : list)
    if (entry == definition) return name;
  const SString unique = UniqueName(name, [&](const SString& candidate) {
    for (const T& entry : list)
      if (entry.name == candidate) return true;
    return false;
  });
  if (unique.isEmpty()) return unique;
  definition.name = unique;
  list.push_back(definition);
  return unique;
}

SXmatlMesh MetalMesh(const char* name, int fill) {
  SXmatlMesh mesh;
  mesh.name = name;
  mesh.fillType = fill;
  return mesh;
}

SXmatlMesh ViaMesh(const char* name, int fill) {
  SXmatlMesh mesh;
  mesh.name = name;
  mesh.type = SXmatlMesh::Via;
  mesh.fillType = fill;
  return mesh;
}

const std::vector<SXmatlMesh>& DefaultMeshes() {
  static const std::vector<SXmatlMesh> meshes = {
      MetalMesh("Staircase_def", SMatlMetalData::Staircase), MetalMesh("Conformal_def", SMatlMetalData::Conformal),
      ViaMesh("Ring_def", SMatlViaDrawLayer::Ring),           ViaMesh("Full_def", SMatlViaDrawLayer::Full),
      ViaMesh("Bar_def", SMatlViaDrawLayer::Bar),             ViaMesh("Vertices_def", SMatlViaDrawLayer::Vertices)};
  return meshes;
}

const std::vector<SXmatlMetalModel>& DefaultMetalModels() {
  static const std::vector<SXmatlMetalModel> models = [] {
    SXmatlMetalModel thick;
    thick.name = "Thick_def";
    thick.type = SMatlMetalData::ThickMetalModel;
    SXmatlMetalModel thin;
    thin.name = "Thin_def";
    return std::vector<SXmatlMetalModel>{thick, thin};
  }();
  return models;
}

const std::vector<SXmatlViaModel>& DefaultViaModels() {
  static const std::vector<SXmatlViaModel> models = [] {
    SXmatlViaModel volume;
    volume.name = "Volume_def";
    SXmatlViaModel array = volume;
    array.name = "Array_def";
    array.type = SMatlViaDrawLayer::Array;
    SXmatlViaModel surface = volume;
    surface.name = "Surface_def";
    surface.type = SMatlViaDrawLayer::Surface;
    return std::vector<SXmatlViaModel>{volume, array, surface};
  }();
  return models;
}

// The conductor kind of a metal's type and loss type.
int ConductorKind(int metalType, int lossType) {
  switch (metalType) {
  case SMatlMetalData::Resistor: return SXmatlCond::Res;
  case SMatlMetalData::RdcRrf: return SXmatlCond::RdcRrf;
  case SMatlMetalData::General: return SXmatlCond::General;
  case SMatlMetalData::SenseMetal: return SXmatlCond::Sense;
  default: break;
  }
  switch (lossType) {
  case SMatlMetalData::Res: return SXmatlCond::Rsvy;
  case SMatlMetalData::ShRes: return SXmatlCond::ShRes;
  case SMatlMetalData::RPV: return SXmatlCond::Rpv;
  default: return SXmatlCond::Cond;
  }
}

// The subsection limits and edge mesh of a metal or via.
SXmatlMesh MeshOf(const SMatlMetalData& metal) {
  SXmatlMesh mesh;
  mesh.xmin = metal.GetXMin();
  mesh.xmax = metal.GetXMax();
  mesh.ymin = metal.GetYMin();
  mesh.ymax = metal.GetYMax();
  mesh.edgeMesh = metal.GetEdgeMesh();
  return mesh;
}

SXmatlMap MapOf(const SMatl& matl, const SString& layerName) {
  SXmatlMap map;
  for (const SMatlTechLayer* entry : matl.GetTechLayers()) {
    if (entry->GetName() != layerName) continue;
    const STechLayer& layer = entry->GetLayer();
    const int kind = entry->GetSubKind();
    if (kind == SMatlTechLayer::Gds || kind == SMatlTechLayer::All) {
      map.gdsStream = layer.GetRawStream();
      map.gdsDatatype = layer.GetRawData();
    }
    if (kind == SMatlTechLayer::Dxf || kind == SMatlTechLayer::All) map.dxfLayer = layer.GetDXFName();
    if (kind == SMatlTechLayer::Gerber || kind == SMatlTechLayer::All) map.gerberName = layer.GetGerberName();
  }
  return map;
}

} // namespace

namespace {

// The converter's state: the target's data and the names of the levels.
class SConverter {
public:
  SConverter(const SMatl& matl, SXmatlData& data) : itsMatl(matl), itsData(data) {}

  bool Dielectrics();
  bool Metal(const SMatlMetalData& metal, const SMatlDrawLayer* layer, const SString& layerName, int level,
             bool ground);
  bool Via(const SMatlViaDrawLayer& via, bool drawLayer);
  bool Brick(const SMatlBrick& brick, int index);

private:
  // The conductor of a metal of that type; the name used, or empty after the message.
  SString Conductor(const SMatlMetalData& metal, int metalType, const SString& base);
  SString LevelName(int level, bool ground) const;
  bool Fail(int number, const SString& name) {
    SMatlReporting::Instance().NameError(number, name);
    return false;
  }

  const SMatl& itsMatl;
  SXmatlData& itsData;
};

bool SConverter::Dielectrics() {
  const int highest = itsMatl.GetHighestDielectricLevel();
  for (int level = 0; level <= highest; ++level) {
    const SMatlDielectric* dielectric = itsMatl.FindDielectric(level);
    if (!dielectric) return Fail(kBadDielectric, SString::number(static_cast<long long>(level)));
    SString name = dielectric->GetLevelName();
    if (name.isEmpty() || name == "Unnamed")
      name = level == 0 ? SString("Air") : SString::format("Unnamed_%d", level);
    name = UniqueName(name, [this](const SString& candidate) {
      return itsData.FindDielectric(candidate) != nullptr || itsData.FindDielLevel(candidate) >= 0;
    });
    if (name.isEmpty()) return Fail(kBadDielectric, dielectric->GetLevelName());
    SXmatlDielMatl material;
    material.name = name;
    material.anisotropic = dielectric->IsAnisotropic();
    material.resistivity = dielectric->GetLossTypeCode() == SMatlMetalData::Res;
    auto axis = [&](bool z) {
      SXmatlAxis values;
      auto value = [&](int which) { return z ? dielectric->GetValueZ(which).GetValue() : dielectric->GetValue(which).GetValue(); };
      values.erel = value(SLevelData::Erel);
      values.mrel = value(SLevelData::MuRel);
      values.tane = value(SLevelData::DLossTan);
      values.tanm = value(SLevelData::MLossTan);
      values.cond = value(SLevelData::DieElecLoss);
      return values;
    };
    if (material.anisotropic) {
      material.has[SXmatlDielMatl::ParamsXY] = material.has[SXmatlDielMatl::ParamsZ] = true;
      material.axis[SXmatlDielMatl::X] = material.axis[SXmatlDielMatl::Y] = axis(false);
      material.axis[SXmatlDielMatl::Z] = axis(true);
    } else {
      material.has[SXmatlDielMatl::ParamsXYZ] = true;
      material.axis[0] = material.axis[1] = material.axis[2] = axis(false);
    }
    itsData.dielectrics.push_back(material);
    SXmatlDiel diel;
    diel.name = name;
    diel.dielectric = name;
    diel.thickness = dielectric->GetThickness();
    diel.zpart = dielectric->GetNZParts();
    itsData.diels.push_back(diel);
  }
  return true;
}

SString SConverter::LevelName(int level, bool ground) const {
  if (ground) return SString("gnd");
  if (level < 0 || level >= static_cast<int>(itsData.diels.size())) return SString();
  return itsData.diels[static_cast<size_t>(level)].name;
}

SString SConverter::Conductor(const SMatlMetalData& metal, int metalType, const SString& base) {
  if (IsRestricted(metal.GetMetalName())) return metal.GetMetalName();
  SXmatlCond conductor;
  conductor.SetKind(ConductorKind(metalType, metal.GetLossType()));
  conductor.itsCondIsInf = metal.IsConductivityInfinite();
  conductor.itsConductivity.SetValue(metal.IsConductivityInfinite() ? 0.0 : metal.itsConductivity.GetValue());
  conductor.itsRdc.SetValue(metal.itsRdc.GetValue());
  conductor.itsRrf.SetValue(metal.itsRrf.GetValue());
  conductor.itsXdc.SetValue(metal.itsXdc.GetValue());
  conductor.itsLs.SetValue(metal.itsLs.GetValue());
  const SString name = base + "_COND";
  for (const SXmatlCond& entry : itsData.conductors) {
    conductor.SetName(entry.GetName());
    if (entry.GetName().startsWith(name) && conductor.IsSame(entry)) return entry.GetName();
  }
  const SString unique = UniqueName(name, [this](const SString& candidate) {
    return itsData.FindConductor(candidate) != nullptr;
  });
  if (unique.isEmpty()) return unique;
  conductor.SetName(unique);
  itsData.conductors.push_back(conductor);
  return unique;
}

bool SConverter::Metal(const SMatlMetalData& metal, const SMatlDrawLayer* drawLayer, const SString& layerName,
                       int level, bool ground) {
  const SString name = metal.GetMetalName();
  const SString material = Conductor(metal, metal.GetMetalType(), name);
  if (material.isEmpty()) return Fail(kBadMetal, name);
  SXmatlMetalModel model;
  model.type = metal.GetMetalType();
  model.currentRatio = metal.itsCurrentRatio.GetValue();
  model.numSheets = metal.GetNumSheets();
  model.topRoughness = metal.itsTopRoughness.GetValue();
  model.bottomRoughness = metal.itsBottomRoughness.GetValue();
  model.thick = metal.GetCrossSection() != SMatlMetalData::Thin;
  const SString modelName = AddDefinition(itsData.metalModels, model, name + "_model", DefaultMetalModels());
  if (modelName.isEmpty()) return Fail(kBadModel, name);
  if (!drawLayer) return true;

  SXmatlMesh mesh = MeshOf(metal);
  mesh.fillType = metal.GetFillType() == SMatlMetalData::DefaultFill ? int(SMatlMetalData::Staircase) : metal.GetFillType();
  const SString meshName = AddDefinition(itsData.meshes, mesh, layerName + "_mesh", DefaultMeshes());
  if (meshName.isEmpty()) return Fail(kBadMesh, layerName);
  const int index = ground ? static_cast<int>(itsData.diels.size()) - 1 : level;
  if (index < 0 || index >= static_cast<int>(itsData.diels.size())) return Fail(kBadMetal, layerName);
  SXmatlLayer layer;
  layer.name = name;
  layer.material = material;
  layer.model = modelName;
  layer.layerName = layerName;
  layer.thickness = metal.itsThickness.GetValue();
  layer.mesh = meshName;
  layer.pattern = drawLayer->GetPattern();
  layer.down = metal.GetCrossSection() == SMatlMetalData::ThickDown;
  layer.map = MapOf(itsMatl, layerName);
  itsData.diels[static_cast<size_t>(index)].layers.push_back(layer);
  return true;
}

bool SConverter::Via(const SMatlViaDrawLayer& via, bool drawLayer) {
  const SString name = via.GetMetalName();
  // A via's metal type counts only when its type field named one.
  const SString material = Conductor(via, via.IsMetal() ? via.GetMetalType() : int(SMatlMetalData::Normal), name);
  if (material.isEmpty()) return Fail(kBadVia, name);
  SXmatlViaModel model;
  model.type = via.GetViaType();
  model.fillFactor = via.itsFillFactor.GetValue();
  model.solid = via.GetVolumeLossModel() == SMatlViaDrawLayer::Solid;
  model.wallThickness = via.itsWallThickness.GetValue();
  model.viaDensity = via.itsViaDensity.GetValue();
  const SString modelName = AddDefinition(itsData.viaModels, model, name + "_model", DefaultViaModels());
  if (modelName.isEmpty()) return Fail(kBadModel, name);
  if (!drawLayer) return true;

  const SString layerName = via.GetLayerName();
  SXmatlMesh mesh = MeshOf(via);
  mesh.type = SXmatlMesh::Via;
  mesh.fillType = via.GetViaFill();
  mesh.pads = via.HasPads();
  const SString meshName = AddDefinition(itsData.meshes, mesh, layerName + "_mesh", DefaultMeshes());
  if (meshName.isEmpty()) return Fail(kBadMesh, layerName);
  SXmatlLayer layer;
  layer.kind = SXmatlLayer::Via;
  layer.name = name;
  layer.material = material;
  layer.model = modelName;
  layer.layerName = layerName;
  layer.mesh = meshName;
  layer.pattern = via.GetPattern();
  layer.from = LevelName(via.GetLevelNumber(), via.IsOnGround());
  const SMatlLevel& to = via.GetToLevel();
  layer.to = to.IsTop() ? SString("top") : LevelName(to.GetNumber(), to.IsGround());
  if (layer.from.isEmpty() || layer.to.isEmpty()) return Fail(kBadVia, layerName);
  layer.map = MapOf(itsMatl, layerName);
  itsData.vias.push_back(layer);
  return true;
}

bool SConverter::Brick(const SMatlBrick& brick, int index) {
  const SBrickTypeData& description = brick.GetDescription();
  SXmatlDielMatl material;
  material.name = SString::format("BRICK_%d", index);
  material.anisotropic = description.itsParmType == 0;
  material.resistivity = description.GetLossType().GetCode() == SMatlMetalData::Res;
  const int axes[3] = {1, 2, 3};
  for (int i = 0; i < 3; ++i) {
    const int from = material.anisotropic ? axes[i] : 0;
    SXmatlAxis& axis = material.axis[i];
    axis.erel = description.itsEps[from].GetValue();
    axis.cond = description.itsLoss[from].GetValue();
    axis.tane = description.itsLossTan[from].GetValue();
    axis.mrel = description.itsMuRel[from].GetValue();
    axis.tanm = description.itsMagLossTan[from].GetValue();
  }
  if (material.anisotropic)
    material.has[SXmatlDielMatl::ParamsX] = material.has[SXmatlDielMatl::ParamsY] =
        material.has[SXmatlDielMatl::ParamsZ] = true;
  else
    material.has[SXmatlDielMatl::ParamsXYZ] = true;
  if (itsData.FindDielectric(material.name)) return Fail(kBadBrick, material.name);
  const int level = brick.IsOnGround() ? static_cast<int>(itsData.diels.size()) - 1 : brick.GetLevelNumber();
  if (level < 0 || level >= static_cast<int>(itsData.diels.size())) return Fail(kBadBrick, brick.GetLayerName());
  itsData.dielectrics.push_back(material);
  SXmatlLayer layer;
  layer.kind = SXmatlLayer::Brick;
  layer.name = brick.GetMetalName() != "Unnamed" ? brick.GetMetalName() : material.name;
  layer.material = material.name;
  layer.layerName = brick.GetLayerName() != "Unnamed" ? brick.GetLayerName() : SString();
  layer.pattern = brick.GetPattern();
  layer.map = MapOf(itsMatl, brick.GetLayerName());
  itsData.diels[static_cast<size_t>(level)].layers.push_back(layer);
  return true;
}

} // namespace

bool SXmatl::ProcessSMatlToSXmatl(const SMatl& matl) {
  Reset();
  SetInputFileName(matl.GetInputFileName());
  for (int dimension = 0; dimension < SMatlUtil::DimensionCount; ++dimension) {
    Units().SetCurrent(dimension, matl.GetUnits().GetCurrent(dimension));
    Units().SetFile(dimension, matl.GetUnits().GetFile(dimension));
    Units().SetSeen(dimension, matl.GetUnits().IsSeen(dimension));
  }
  for (const SString& line : matl.GetComments().GetLines()) {
    itsData.comments.push_back(line);
    Comments().AddLine(line);
  }
  // The list holds the variables last read first.
  const std::vector<SMatlVariable*>& variables = matl.GetVariables();
  for (auto it = variables.rbegin(); it != variables.rend(); ++it) {
    SXmatlVar var;
    var.name = (*it)->GetName();
    var.value = (*it)->GetValueText();
    itsData.variables.push_back(var);
  }
  SConverter converter(matl, itsData);
  if (!converter.Dielectrics()) return false;
  for (const SMatlMetalDrawLayer* metal : matl.GetMetalDrawLayers())
    if (!converter.Metal(*metal, metal, metal->GetLayerName(), metal->GetLevelNumber(), metal->IsOnGround()))
      return false;
  for (const SMatlViaDrawLayer* via : matl.GetViaDrawLayers())
    if (!converter.Via(*via, true)) return false;
  int index = 0;
  for (const SMatlBrick* brick : matl.GetBrickDielectrics())
    if (!converter.Brick(*brick, index++)) return false;
  // Named materials without a layer keep their conductor and model.
  for (const SMatlMetalMaterial* metal : matl.GetMetalMaterials())
    if (!converter.Metal(*metal, nullptr, SString(), 0, false)) return false;
  for (const SMatlViaMaterial* via : matl.GetViaMaterials())
    if (!converter.Via(*via, false)) return false;
  SetReadOk(true);
  return true;
}
