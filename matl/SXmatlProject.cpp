// The technology file's way into a project: the stackup made into the lists of a material
// file (the simplified view), then set as a material file is, with the variables and covers.

#include "SXmatl.h"

#include "SCircuit.h"
#include "SMatlBrick.h"
#include "SMatlDielectric.h"
#include "SMatlMetalDrawLayer.h"
#include "SMatlReporting.h"
#include "SMatlTechLayer.h"
#include "SMatlVariable.h"
#include "SMatlViaDrawLayer.h"
#include "SMetalType.h"
#include "SProject.h"
#include "SVariable.h"
#include "SVeloraError.h"
#include "SVeloraTrace.h"

namespace {

const int kNoDielectric = 20558;
const int kNoConductor = 20559;
const int kNoMetalModel = 20560;
const int kNoViaModel = 20561;
const int kNoMesh = 20562;
const int kNoLevel = 20563;

const char kVariableDescription[] = "Variable set in veltech file";

// Names that stand for a material of the project rather than a conductor of the file.
bool IsBuiltInMetal(const SString& name) { return name == "Lossless" || name == "Free Space" || name == "WG Load"; }

bool IsDefaultModel(const SString& name) { return name.isEmpty() || name == "Default"; }

void Report(int number, const SString& where, const SString& name) {
  SString text;
  VeloraFormatMessage(text, number, where.data());
  SMatlReporting::Instance().ReportError(text + " (" + name + ")", number);
}

} // namespace

// ---- the simplified view

bool SXmatl::SimplifyVelTech() {
  // Every layer of the stackup stands, also two of one drawing layer name.
  SetChecksOn(false);
  ClearEntries();
  itsSimplifiedReady = false;
  const std::vector<SXmatlDiel>& diels = itsData.diels;
  for (size_t level = 0; level < diels.size(); ++level) {
    SMatlDielectric* dielectric = new SMatlDielectric;
    dielectric->SetLevel(static_cast<int>(level));
    dielectric->SetLevelName(diels[level].name);
    dielectric->Value(SLevelData::Thickness).SetValue(diels[level].thickness);
    dielectric->SetNZParts(diels[level].zpart);
    AddEntry(dielectric);
  }
  if (!SimplifyDielMatl()) return false;
  for (size_t level = 0; level < diels.size(); ++level)
    for (const SXmatlLayer& layer : diels[level].layers) {
      const bool ok = layer.kind == SXmatlLayer::Brick ? SimplifyBrick(layer, static_cast<int>(level))
                                                      : SimplifyMetal(layer, static_cast<int>(level));
      if (!ok) return false;
    }
  for (const SXmatlLayer& via : itsData.vias)
    if (!SimplifyVia(via)) return false;
  itsSimplifiedReady = true;
  return true;
}

bool SXmatl::SimplifyDielMatl() {
  for (SMatlDielectric* dielectric : GetDielectrics()) {
    const SXmatlDiel& diel = itsData.diels[static_cast<size_t>(dielectric->GetLevel())];
    const SXmatlDielMatl* material = itsData.FindDielectric(diel.dielectric);
    if (!material) {
      Report(kNoDielectric, Where(diel.line), diel.dielectric);
      return false;
    }
    auto take = [](SValueVarDouble* values, const SXmatlAxis& axis) {
      values[SLevelData::Erel - SLevelData::Erel].SetValue(axis.erel);
      values[SLevelData::MuRel - SLevelData::Erel].SetValue(axis.mrel);
      values[SLevelData::DLossTan - SLevelData::Erel].SetValue(axis.tane);
      values[SLevelData::MLossTan - SLevelData::Erel].SetValue(axis.tanm);
      values[SLevelData::DieElecLoss - SLevelData::Erel].SetValue(axis.condInf ? SMatlMetalData::kInfinite : axis.cond);
    };
    take(&dielectric->Value(SLevelData::Erel), material->axis[SXmatlDielMatl::X]);
    dielectric->SetAnisotropic(material->anisotropic);
    if (material->anisotropic) take(&dielectric->ValueZ(SLevelData::Erel), material->axis[SXmatlDielMatl::Z]);
    dielectric->SetLossType(material->resistivity ? SMatlMetalData::Res : SMatlMetalData::Cond);
  }
  return true;
}

namespace {

// The metal values of a conductor, a metal model and a mesh; false after the message when
// one of the names isn't defined.
bool FillMetal(const SXmatlData& data, SMatlMetalData& metal, const SString& material, const SString& model,
               const SString& mesh, bool down, const SString& where) {
  int metalType = SMatlMetalData::Normal;
  if (IsBuiltInMetal(material)) {
    metal.SetLossType(SMatlMetalData::Cond);
    metal.SetConductivityInfinite(true);
  } else {
    const SXmatlCond* conductor = data.FindConductor(material);
    if (!conductor) {
      Report(kNoConductor, where, material);
      return false;
    }
    metal.SetLossType(conductor->GetLossType().GetCode());
    metal.SetConductivityInfinite(false);
    metal.itsConductivity.SetValue(conductor->itsConductivity.GetValue());
    metal.SetConductivityInfinite(conductor->itsCondIsInf);
    metal.itsRdc.SetValue(conductor->itsRdc.GetValue());
    metal.itsRrf.SetValue(conductor->itsRrf.GetValue());
    metal.itsXdc.SetValue(conductor->itsXdc.GetValue());
    metal.itsLs.SetValue(conductor->itsLs.GetValue());
    if (conductor->GetFixedMetalType() >= 0) metalType = conductor->GetFixedMetalType();
  }
  const SXmatlMetalModel* found = data.FindMetalModel(model);
  if (!found && !IsDefaultModel(model)) {
    Report(kNoMetalModel, where, model);
    return false;
  }
  metal.itsCurrentRatio.SetValue(0.0);
  if (found) {
    // A conductor of resistances keeps its own type; the model gives the others theirs.
    if (metalType == SMatlMetalData::Normal) metalType = found->type;
    metal.itsCurrentRatio.SetValue(found->currentRatio);
    metal.SetNumSheets(found->numSheets);
    metal.itsTopRoughness.SetValue(found->topRoughness);
    metal.itsBottomRoughness.SetValue(found->bottomRoughness);
  }
  metal.SetMetalType(metalType);
  if (metalType == SMatlMetalData::ThickMetalModel)
    metal.SetCrossSection(down ? SMatlMetalData::ThickDown : SMatlMetalData::Thick);
  else if (metalType == SMatlMetalData::RoughMetal)
    metal.SetCrossSection(found && found->thick ? SMatlMetalData::Thick : SMatlMetalData::Thin);
  if (mesh.isEmpty()) return true;
  const SXmatlMesh* definition = data.FindMesh(mesh);
  if (!definition) {
    Report(kNoMesh, where, mesh);
    return false;
  }
  if (definition->type != SXmatlMesh::Via) metal.SetFillType(definition->fillType);
  metal.SetXRange(definition->xmin, definition->xmax);
  metal.SetYRange(definition->ymin, definition->ymax);
  metal.SetEdgeMesh(definition->edgeMesh);
  return true;
}

// A via level word or "diel" name: the number and SMatlLevel type; false when unknown.
bool ResolveLevel(const SXmatlData& data, const SString& text, SMatlLevel& level) {
  const SString word = text.lower();
  if (word == "top") {
    level.SetNumber(0);
    level.SetType(SMatlLevel::Top);
    return true;
  }
  if (word == "gnd" || word == "bot" || word == "bottom" || word == "substrate") {
    level.SetNumber(static_cast<int>(data.diels.size()) - 1);
    level.SetType(SMatlLevel::Ground);
    return true;
  }
  const int number = data.FindDielLevel(text);
  if (number < 0) return false;
  level.SetNumber(number);
  level.SetType(SMatlLevel::Numbered);
  return true;
}

} // namespace

bool SXmatl::SimplifyMetal(const SXmatlLayer& layer, int level) {
  SMatlMetalDrawLayer* metal = new SMatlMetalDrawLayer;
  metal->SetLayerName(layer.layerName.isEmpty() ? SString("Unnamed") : layer.layerName);
  metal->SetMetalName(layer.name);
  metal->SetPattern(layer.pattern);
  metal->SetLevelNumber(level);
  if (!FillMetal(itsData, *metal, layer.material, layer.model, layer.mesh, layer.down, Where(layer.line))) {
    delete metal;
    return false;
  }
  metal->itsThickness.SetValue(layer.thickness);
  // Adding resets what the metal type doesn't use, the direction of a thick metal among it.
  const int section = metal->GetCrossSection();
  AddEntry(metal);
  metal->SetCrossSection(section);
  AddMappings(layer);
  return true;
}

bool SXmatl::SimplifyVia(const SXmatlLayer& layer) {
  SMatlViaDrawLayer via;
  via.SetLayerName(layer.layerName.isEmpty() ? SString("Unnamed") : layer.layerName);
  via.SetMetalName(layer.name);
  via.SetPattern(layer.pattern);
  SMatlLevel from(true);
  if (!ResolveLevel(itsData, layer.from, from)) {
    Report(kNoLevel, Where(layer.line), layer.from);
    return false;
  }
  via.Level().SetNumber(from.GetNumber());
  via.Level().SetType(from.GetType());
  if (!ResolveLevel(itsData, layer.to, via.ToLevel())) {
    Report(kNoLevel, Where(layer.line), layer.to);
    return false;
  }
  if (IsBuiltInMetal(layer.material)) {
    via.SetConductivityInfinite(true);
  } else {
    const SXmatlCond* conductor = itsData.FindConductor(layer.material);
    if (!conductor) {
      Report(kNoConductor, Where(layer.line), layer.material);
      return false;
    }
    via.SetLossType(conductor->GetLossType().GetCode());
    via.itsConductivity.SetValue(conductor->itsConductivity.GetValue());
    via.SetConductivityInfinite(conductor->itsCondIsInf);
    via.itsRdc.SetValue(conductor->itsRdc.GetValue());
    via.itsRrf.SetValue(conductor->itsRrf.GetValue());
    via.itsXdc.SetValue(conductor->itsXdc.GetValue());
    if (conductor->GetFixedMetalType() >= 0) {
      via.SetIsMetal(true);
      via.SetMetalType(conductor->GetFixedMetalType());
    }
  }
  const SXmatlViaModel* model = itsData.FindViaModel(layer.model);
  if (!model && !IsDefaultModel(layer.model)) {
    Report(kNoViaModel, Where(layer.line), layer.model);
    return false;
  }
  const SXmatlViaModel defaults;
  if (!model) model = &defaults;
  via.SetViaType(model->type);
  via.itsThickness.SetValue(model->wallThickness);
  via.itsFillFactor.SetValue(model->fillFactor);
  via.itsViaDensity.SetValue(model->viaDensity);
  via.SetVolumeLossModel(model->solid ? SMatlViaDrawLayer::Solid : SMatlViaDrawLayer::Wall);
  if (!layer.mesh.isEmpty()) {
    const SXmatlMesh* mesh = itsData.FindMesh(layer.mesh);
    if (!mesh) {
      Report(kNoMesh, Where(layer.line), layer.mesh);
      return false;
    }
    if (mesh->type == SXmatlMesh::Via) {
      via.SetViaFill(mesh->fillType);
      via.SetPads(mesh->pads);
    } else {
      via.SetFillType(mesh->fillType);
    }
    via.SetXRange(mesh->xmin, mesh->xmax);
    via.SetYRange(mesh->ymin, mesh->ymax);
    via.SetEdgeMesh(mesh->edgeMesh);
  }
  via.MakeConsistent();
  AddEntry(via.Clone());
  AddMappings(layer);
  return true;
}

bool SXmatl::SimplifyBrick(const SXmatlLayer& layer, int level) {
  const SXmatlDielMatl* material = itsData.FindDielectric(layer.material);
  if (!material) {
    Report(kNoDielectric, Where(layer.line), layer.material);
    return false;
  }
  SMatlBrick* brick = new SMatlBrick;
  brick->SetLayerName(layer.layerName.isEmpty() ? SString("Unnamed") : layer.layerName);
  brick->SetMetalName(layer.name);
  brick->SetPattern(layer.pattern);
  brick->SetLevelNumber(level);
  brick->SetBrickType(material->anisotropic ? SMatlBrick::Anisotropic : SMatlBrick::Isotropic);
  SBrickTypeData& description = brick->Description();
  // Isotropic values, then X, Y and Z.
  const int axes[4] = {SXmatlDielMatl::X, SXmatlDielMatl::X, SXmatlDielMatl::Y, SXmatlDielMatl::Z};
  for (int i = 0; i < 4; ++i) {
    const SXmatlAxis& axis = material->axis[axes[i]];
    description.itsEps[i].SetValue(axis.erel);
    description.itsLoss[i].SetValue(axis.condInf ? SMatlMetalData::kInfinite : axis.cond);
    description.itsLossTan[i].SetValue(axis.tane);
    description.itsMuRel[i].SetValue(axis.mrel);
    description.itsMagLossTan[i].SetValue(axis.tanm);
  }
  description.itsParmType = material->anisotropic ? 0 : 1;
  description.SetLossType(material->resistivity ? SMatlMetalData::Res : SMatlMetalData::Cond);
  AddEntry(brick);
  AddMappings(layer);
  return true;
}

void SXmatl::AddMappings(const SXmatlLayer& layer) {
  if (layer.layerName.isEmpty()) return;
  const SXmatlMap& map = layer.map;
  auto add = [&](int subKind) {
    SMatlTechLayer* entry = new SMatlTechLayer;
    entry->SetSubKind(subKind);
    STechLayer& mapping = entry->Layer();
    mapping.SetName(layer.layerName);
    mapping.SetStream(map.gdsStream);
    mapping.SetData(map.gdsDatatype);
    mapping.SetDXFName(map.dxfLayer);
    mapping.SetGerberName(map.gerberName);
    AddEntry(entry);
  };
  if (map.gdsStream >= 0) add(SMatlTechLayer::Gds);
  if (!map.dxfLayer.isEmpty()) add(SMatlTechLayer::Dxf);
  if (!map.gerberName.isEmpty()) add(SMatlTechLayer::Gerber);
}

// ---- into a project

bool SXmatl::SetIntoProject(SProject& project) {
  if (!SimplifyVelTech()) return false;
  if (GetDielectrics().empty()) {
    SMatlReporting::Instance().ReportError("The technology file " + GetInputFileName() +
                                           " has no dielectric layer (diel element); a project needs at least one.");
    return false;
  }
  return SMatl::SetIntoProject(project);
}

bool SXmatl::SetMaterialsIntoProject(SProject& project, SCircuit& circuit) {
  if (!itsSimplifiedReady) return true;
  itsSimplifiedView = true;
  for (const SXmatlVar& var : itsData.variables) {
    SMatlVariable variable;
    variable.Set(var.name, var.value);
    if (!variable.SetIntoProject(&project)) continue;
    if (SVariable* target = circuit.FindVariable(var.name)) target->Value().SetDescription(kVariableDescription);
  }
  const bool ok = SMatl::SetMaterialsIntoProject(project, circuit) &&
                  SetCoverIntoProject(project, circuit, itsData.top, true) &&
                  SetCoverIntoProject(project, circuit, itsData.bottom, false);
  itsSimplifiedView = false;
  return ok;
}

bool SXmatl::SetCoverIntoProject(SProject& project, SCircuit& circuit, const SXmatlCover& cover, bool top) {
  // The project's own types stand for the built-in names.
  if (IsBuiltInMetal(cover.material) && IsDefaultModel(cover.model)) {
    if (SMetalType* type = circuit.FindMetalType(cover.material)) (top ? circuit.SetTopMetal(type) : circuit.SetBottomMetal(type));
    return true;
  }
  SMatlMetalDrawLayer metal;
  if (!FillMetal(itsData, metal, cover.material, cover.model, SString(), false, GetInputFileName())) return false;
  metal.SetUnusedToDefault();
  const SString name = top ? SString("Top Cover") : cover.material;
  if (!SetMetalIntoProject(project, circuit, metal, name, SString(), 0, 0, false)) return false;
  SMetalType* type = circuit.FindMetalType(name);
  if (top)
    circuit.SetTopMetal(type);
  else
    circuit.SetBottomMetal(type);
  VeloraTrace(4, TRACE_GENERAL, "Set cover '%s' into Velora project", name.data());
  return true;
}
