// The material file's way into a project: units, variables, the dielectric stack, the
// metal, via and brick types and the technology layers of the drawing layers.

#include "SMatl.h"

#include "SBrickType.h"
#include "SCircuit.h"
#include "SDimensionBlock.h"
#include "SHeaderBlock.h"
#include "SLevel.h"
#include "SMatlBrick.h"
#include "SMatlDielectric.h"
#include "SMatlMetalDrawLayer.h"
#include "SMatlMetalMaterial.h"
#include "SMatlReporting.h"
#include "SMatlTechLayer.h"
#include "SMatlVariable.h"
#include "SMatlViaDrawLayer.h"
#include "SMatlViaMaterial.h"
#include "SMetalType.h"
#include "SPolygonData.h"
#include "SProject.h"
#include "STechLayer.h"
#include "SVeloraTrace.h"
#include "SViaMetalType.h"
#include "SViaPolygon.h"

namespace {

// The project's dimension families of the material file's dimensions.
const int kFamilies[] = {SDimensionBlock::Length, SDimensionBlock::Conductivity, SDimensionBlock::Resistivity,
                         SDimensionBlock::SheetResistance};

// Via fill words of a material file (SMatlViaDrawLayer::ViaFill) to the project's fills.
int ProjectViaFill(int fill) {
  switch (fill) {
  case SMatlViaDrawLayer::Ring: return SViaPolygon::Ring;
  case SMatlViaDrawLayer::Full: return SViaPolygon::Solid;
  case SMatlViaDrawLayer::Vertices: return SViaPolygon::Vertices;
  case SMatlViaDrawLayer::Center: return SViaPolygon::Center;
  case SMatlViaDrawLayer::Bar: return SViaPolygon::Bar;
  default: return SViaPolygon::Ring;
  }
}

// Fill types of a drawing layer to the template polygon's: 2 diagonal, 1 conformal, else 0.
int ProjectFillType(int fill) {
  if (fill == SMatlMetalData::Diagonal) return SSubsectionControls::Diagonal;
  if (fill == SMatlMetalData::Conformal) return SSubsectionControls::Conformal;
  return SSubsectionControls::Staircase;
}

template <class T> T* FindOrMakeType(SProject& project, SCircuit& circuit, const SString& name, bool& made) {
  std::vector<T*> types;
  circuit.CollectObjects(types);
  for (T* type : types)
    if (type->GetTypeName() == name) {
      made = false;
      return type;
    }
  T* type = new T;
  type->SetName(name);
  type->SetProject(&project);
  circuit.AddObject(type);
  made = true;
  return type;
}

} // namespace

bool SMatl::SetIntoProject(SProject& project) {
  SCircuit* circuit = project.GetCircuit();
  if (!circuit) return false;
  if (itsLists->dielectrics.empty()) {
    SMatlReporting::Instance().ReportError("The material file " + itsInputFileName +
                                           " has no dielectric layer (DIEL line); a project needs at least one.");
    return false;
  }
  if (itsComments.GetCount() > 0) {
    VeloraTrace(4, TRACE_GENERAL, "Setting comments into Velora header block.");
    for (const SString& line : itsComments.GetLines()) project.GetHeaderBlock()->AddAnnotation(line);
  }
  SDimensionBlock* dimensions = project.GetDimensionBlock();
  itsLengthScale = 1.0;
  const SString lengthName = itsUnits.GetCurrentName(SMatlUtil::Length, false);
  if (!lengthName.isEmpty()) {
    for (int dimension = SMatlUtil::Length; dimension <= SMatlUtil::SheetResistance; ++dimension) {
      const int code = itsUnits.GetCurrent(dimension);
      SString keyword = SMatlUtil::DimensionUnitKeyword(dimension, code);
      if (keyword.isEmpty()) keyword = itsUnits.GetCurrentName(dimension, false).toUpper();
      if (dimensions->SetUnit(kFamilies[dimension], keyword)) continue;
      // A length the project has no unit for (pm, uinch) goes in microns.
      if (dimension == SMatlUtil::Length) {
        dimensions->SetUnit(SDimensionBlock::Length, "UM");
        itsLengthScale = SMatlUtil::LengthFactor(code) / 1e-6;
      }
    }
  }
  return SetMaterialsIntoProject(project, *circuit);
}

bool SMatl::SetMaterialsIntoProject(SProject& project, SCircuit& circuit) {
  for (const SMatlVariable* variable : itsLists->variables) variable->SetIntoProject(&project);
  if (!SetDielectricsIntoProject(project, circuit)) return false;
  itsNextTechLayerId = 0;
  for (const SMatlMetalDrawLayer* layer : itsLists->metalDrawLayers) {
    const SMatlMetalMaterial metal(*layer);
    if (!SetMetalIntoProject(project, circuit, metal, layer->GetMetalName(), layer->GetLayerName(),
                             layer->GetPattern(), layer->GetLevelNumber(), layer->IsOnGround()))
      return false;
    VeloraTrace(4, TRACE_GENERAL, "Set metal '%s' into Velora project", layer->GetLayerName().data());
  }
  for (const SMatlMetalMaterial* metal : itsLists->metalMaterials) {
    if (!SetMetalIntoProject(project, circuit, *metal, metal->GetMetalName(), metal->GetLayerName(),
                             metal->GetPattern(), metal->GetLevelNumber(), metal->IsOnGround()))
      return false;
    VeloraTrace(4, TRACE_GENERAL, "Set material '%s' into Velora project", metal->GetMetalName().data());
  }
  for (const SMatlViaDrawLayer* via : itsLists->viaDrawLayers)
    if (!SetViaIntoProject(project, circuit, *via, true)) return false;
  for (const SMatlViaMaterial* via : itsLists->viaMaterials)
    if (!SetViaIntoProject(project, circuit, *via, false)) return false;
  for (const SMatlBrick* brick : itsLists->bricks)
    if (!SetBrickIntoProject(project, circuit, *brick)) return false;
  return true;
}

bool SMatl::SetDielectricsIntoProject(SProject&, SCircuit& circuit) {
  circuit.SetNumberOfLevels(GetNumDielectrics());
  for (int index = 0; index < circuit.GetNumberOfLevels(); ++index) {
    const SMatlDielectric* dielectric = FindDielectric(index);
    SLevel* level = circuit.GetLevel(index);
    if (!dielectric || !level) continue;
    for (int which = SLevelData::Thickness; which < SLevelData::ValueCount; ++which) {
      level->Value(which) = dielectric->GetValue(which);
      if (which != SLevelData::Thickness) level->ValueZ(which) = dielectric->GetValueZ(which);
    }
    level->SetThickness(dielectric->GetThickness() * itsLengthScale);
    level->SetNZParts(dielectric->GetNZParts());
    level->SetLevelName(dielectric->GetLevelName());
    level->SetAnisotropic(dielectric->IsAnisotropic());
    level->SetLossType(dielectric->GetLossTypeCode());
    level->NameValues(index);
    VeloraTrace(4, TRACE_GENERAL, "Set dielectric layer '%s' into Velora project.",
                dielectric->GetLevelName().data());
  }
  return true;
}

void SMatl::ApplyMappings(const SString& layerName, STechLayer& layer) const {
  for (const SMatlTechLayer* entry : itsLists->techLayers) {
    if (entry->GetName() != layerName) continue;
    const STechLayer& mapping = entry->GetLayer();
    const int kind = entry->GetSubKind();
    if (kind == SMatlTechLayer::Gds || kind == SMatlTechLayer::All) {
      layer.SetStream(mapping.GetStream());
      layer.SetData(mapping.GetData());
    }
    if (kind == SMatlTechLayer::Dxf || kind == SMatlTechLayer::All) layer.SetDXFName(mapping.GetDXFName());
    if (kind == SMatlTechLayer::Gerber || kind == SMatlTechLayer::All) layer.SetGerberName(mapping.GetGerberName());
  }
}

namespace {

// A drawing layer's level in the project: "GND" is the last level.
int ProjectLevel(const SCircuit& circuit, int level, bool ground) {
  return ground ? circuit.GetNumberOfLevels() - 1 : level;
}

bool HasDrawingLayer(const SString& name) { return !name.isEmpty() && name != "Unnamed"; }

} // namespace

bool SMatl::SetMetalIntoProject(SProject& project, SCircuit& circuit, const SMatlMetalData& metal,
                                const SString& typeName, const SString& layerName, int pattern, int level,
                                bool ground) {
  bool made = false;
  SMetalType* type = FindOrMakeType<SMetalType>(project, circuit, typeName, made);
  type->SetPattern(pattern);
  const int model = metal.GetMetalType();
  type->SetModel(model);
  type->SetLossType(metal.GetLossType());
  auto length = [this](const SValueVarDouble& value) {
    SValueVarDouble scaled = value;
    if (itsLengthScale != 1.0) scaled.SetValue(value.GetValue() * itsLengthScale);
    return scaled;
  };
  auto conductivity = [&]() {
    type->itsCondIsInf = metal.IsConductivityInfinite();
    type->itsConductivity = metal.itsConductivity;
    if (type->itsCondIsInf) type->itsConductivity.SetValue(0.0);
    type->itsCurrentRatio = metal.itsCurrentRatio;
    type->itsThickness = length(metal.itsThickness);
  };
  switch (model) {
  case SMatlMetalData::Normal:
    conductivity();
    break;
  case SMatlMetalData::ThickMetalModel:
    conductivity();
    type->itsNumSheets.SetValue(metal.GetNumSheets());
    type->itsThickDirection = metal.GetCrossSection() == SMatlMetalData::ThickDown ? 1 : 0;
    break;
  case SMatlMetalData::Resistor:
    type->itsRdc = metal.itsRdc;
    break;
  case SMatlMetalData::RdcRrf:
    type->itsRdc = metal.itsRdc;
    type->itsRrf = metal.itsRrf;
    break;
  case SMatlMetalData::SenseMetal:
    type->itsXdc = metal.itsXdc;
    break;
  case SMatlMetalData::RoughMetal:
    conductivity();
    type->itsRoughnessModel = metal.GetTopRoughnessType();
    type->itsTopRoughness = length(metal.itsTopRoughness);
    type->itsBottomRoughness = length(metal.itsBottomRoughness);
    // The rough model's thin form is a thin cross section; everything else is thick.
    type->itsRoughnessType = metal.GetCrossSection() == SMatlMetalData::Thin ? 1 : 0;
    break;
  default: // General, and any code that prints as it
    type->SetModel(SMetalTypeData::General);
    type->itsRdc = metal.itsRdc;
    type->itsRrf = metal.itsRrf;
    type->itsXdc = metal.itsXdc;
    type->itsLs = metal.itsLs;
    break;
  }
  if (!HasDrawingLayer(layerName)) return true;
  const int from = ProjectLevel(circuit, level, ground);
  const int to = ground ? from : from + 1;
  STechLayer* layer = STechLayer::Create(circuit, STechLayer::Metal, layerName, from, to, itsNextTechLayerId,
                                         SViaPolygon::Ring, false);
  if (!layer) {
    SMatlReporting::Instance().ReportError("The metal layer " + layerName + " of " + itsInputFileName +
                                           " lies on level " + SString::number(static_cast<long long>(from)) + ", below the " +
                                           SString::number(static_cast<long long>(circuit.GetNumberOfLevels())) + " dielectric levels.");
    return false;
  }
  ApplyMappings(layerName, *layer);
  layer->SetMaterial(type);
  if (SShapeData* shape = layer->GetTemplate()) {
    shape->SetFillType(ProjectFillType(metal.GetFillType()));
    shape->SetLimits(1, 1, 100, 100);
    shape->SetEdgeMesh(true);
  }
  return true;
}

bool SMatl::SetViaIntoProject(SProject& project, SCircuit& circuit, const SMatlViaDrawLayer& via, bool drawLayer) {
  const SString& name = via.GetMetalName();
  VeloraTrace(4, TRACE_GENERAL, "Setting the via properties based on metal type for '%s'.", name.data());
  bool made = false;
  SViaMetalType* type = FindOrMakeType<SViaMetalType>(project, circuit, name, made);
  type->SetPattern(via.GetPattern());
  type->itsModel = via.GetViaType();
  type->SetLossType(via.GetLossType());
  type->itsCondIsInf = via.IsConductivityInfinite();
  type->itsConductivity = via.itsConductivity;
  if (type->itsCondIsInf) type->itsConductivity.SetValue(0.0);
  type->itsWallThickness = via.itsWallThickness;
  if (itsLengthScale != 1.0) type->itsWallThickness.SetValue(via.itsWallThickness.GetValue() * itsLengthScale);
  type->itsFillFactor = via.itsFillFactor;
  type->itsViaDensity = via.itsViaDensity;
  type->itsRdc = via.itsRdc;
  type->itsRrf = via.itsRrf;
  type->itsXdc = via.itsXdc;
  // A wall of its own thickness only for a lossy via that has one; otherwise the solid volume.
  const bool wall = via.GetVolumeLossModel() != SMatlViaDrawLayer::Solid && !via.IsConductivityInfinite() &&
                    via.itsWallThickness.GetValue() > 0;
  type->itsIsSolid = !wall;
  VeloraTrace(4, TRACE_GENERAL, "Set via material '%s' into Velora project", name.data());
  if (!drawLayer || !HasDrawingLayer(via.GetLayerName())) return true;

  const int last = circuit.GetNumberOfLevels() - 1;
  const int from = ProjectLevel(circuit, via.GetLevelNumber(), via.IsOnGround());
  const SMatlLevel& target = via.GetToLevel();
  const int to = target.IsGround() ? last : target.IsTop() ? 0 : target.GetNumber();
  STechLayer* layer = STechLayer::Create(circuit, STechLayer::Via, via.GetLayerName(), from, to, itsNextTechLayerId,
                                         ProjectViaFill(via.GetViaFill()), via.HasPads());
  if (!layer) {
    SMatlReporting::Instance().ReportError("The via layer " + via.GetLayerName() + " of " + itsInputFileName +
                                           " lies on level " + SString::number(static_cast<long long>(from)) + ", below the " +
                                           SString::number(static_cast<long long>(circuit.GetNumberOfLevels())) + " dielectric levels.");
    return false;
  }
  layer->SetToLevelType(target.GetType());
  ApplyMappings(via.GetLayerName(), *layer);
  layer->SetMaterial(type);
  if (SShapeData* shape = layer->GetTemplate()) {
    shape->SetFillType(ProjectFillType(via.GetFillType()));
    shape->SetLimits(1, 1, 100, 100);
    shape->SetEdgeMesh(true);
  }
  return true;
}

bool SMatl::SetBrickIntoProject(SProject& project, SCircuit& circuit, const SMatlBrick& brick) {
  const SString name = brick.GetMetalName() != "Unnamed" ? brick.GetMetalName() : brick.GetLayerName();
  VeloraTrace(4, TRACE_GENERAL, "Setting the dielectric brick properties based on metal type for '%s'.",
              name.data());
  bool made = false;
  SBrickType* type = FindOrMakeType<SBrickType>(project, circuit, name, made);
  static_cast<SBrickTypeData&>(*type) = brick.GetDescription();
  type->SetName(name);
  type->SetPattern(brick.GetPattern());
  type->SetProject(&project);
  VeloraTrace(4, TRACE_GENERAL, "Set dielectric brick '%s' into Velora project", name.data());
  if (!HasDrawingLayer(brick.GetLayerName())) return true;
  const int from = ProjectLevel(circuit, brick.GetLevelNumber(), brick.IsOnGround());
  STechLayer* layer = STechLayer::Create(circuit, STechLayer::Brick, brick.GetLayerName(), from, from,
                                         itsNextTechLayerId, SViaPolygon::Ring, false);
  if (!layer) return false;
  ApplyMappings(brick.GetLayerName(), *layer);
  layer->SetMaterial(type);
  return true;
}
