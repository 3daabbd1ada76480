#include "SMatl.h"

#include "SCommentedFile.h"
#include "SMatlBrick.h"
#include "SMatlClassID.h"
#include "SMatlColor.h"
#include "SMatlDielectric.h"
#include "SMatlMetalDrawLayer.h"
#include "SMatlMetalMaterial.h"
#include "SMatlReporting.h"
#include "SMatlTechLayer.h"
#include "SMatlTechLayerFastOpt.h"
#include "SMatlVariable.h"
#include "SMatlViaDrawLayer.h"
#include "SMatlViaMaterial.h"
#include "SProject.h"
#include "SProjectStream.h"
#include "SSafeSave.h"
#include "SVeloraTrace.h"

#include <algorithm>

SCOLLECTABLE_DEFINE(SMatl, SID_MATL, &SMatlMaterial::staticTypeInfo())

namespace {

// Messages of a write that failed: an entry in general, a draw layer, a dielectric.
const int kEntryNotWritten = 20013;
const int kDrawLayerNotWritten = 20021;
const int kDielectricNotWritten = 20056;
const int kBadUnitLine = 20126;
const int kTechLayerTwice = 20058;
const int kVariableTwice = 20108;

template <class T> void DestroyAll(std::vector<T*>& list) {
  for (T* entry : list) delete entry;
  list.clear();
}

template <class T> T* FindByName(const std::vector<T*>& list, const SString& name) {
  for (T* entry : list)
    if (entry->GetName() == name) return entry;
  return nullptr;
}

// Equal lists: each entry has an equal one in the other list, in any order (a written file
// puts draw layers in the order of their levels, whatever the order read).
template <class T> bool SameEntries(const std::vector<T*>& a, const std::vector<T*>& b) {
  if (a.size() != b.size()) return false;
  std::vector<bool> used(b.size(), false);
  for (size_t i = 0; i < a.size(); ++i) {
    // Mostly the same order: look at the same place first.
    size_t j = i;
    if (used[j] || !a[i]->IsEqual(*b[j])) {
      for (j = 0; j < b.size(); ++j)
        if (!used[j] && a[i]->IsEqual(*b[j])) break;
      if (j == b.size()) return false;
    }
    used[j] = true;
  }
  return true;
}

} // namespace

// ---- dictionary

SMatlDictionary::SMatlDictionary() {
  itsEntries = {{"DIEL", new SMatlDielectric},        {"VIA", new SMatlViaDrawLayer},
                {"METAL", new SMatlMetalDrawLayer},   {"VMATERIAL", new SMatlViaMaterial},
                {"MATERIAL", new SMatlMetalMaterial}, {"COLOR", new SMatlColor},
                {"GDSLAYER", new SMatlTechLayer},     {"DXFLAYER", new SMatlTechLayer},
                {"GBRLAYER", new SMatlTechLayer},     {"SHIELD", new SMatlTechLayerFastOpt},
                {"CAPMETAL", new SMatlTechLayerFastOpt}, {"VAR", new SMatlVariable},
                {"BRICK", new SMatlBrick}};
}

SMatlDictionary::~SMatlDictionary() {
  for (auto& entry : itsEntries) delete entry.second;
}

const SMatlMaterial* SMatlDictionary::Find(const SString& keyword) const {
  for (const auto& entry : itsEntries)
    if (entry.first == keyword) return entry.second;
  return nullptr;
}

// ---- lifetime

SMatl::SLists::~SLists() { Destroy(); }

void SMatl::SLists::Destroy() {
  DestroyAll(dielectrics);
  DestroyAll(metalDrawLayers);
  DestroyAll(metalMaterials);
  DestroyAll(viaMaterials);
  DestroyAll(viaDrawLayers);
  DestroyAll(colors);
  DestroyAll(techLayers);
  DestroyAll(fastOpts);
  DestroyAll(variables);
  DestroyAll(bricks);
}

SMatl::SMatl()
    : itsLists(std::make_shared<SLists>()), itsDictionary(std::make_shared<SMatlDictionary>()),
      itsScratchProject(std::make_shared<SProject>()) {
  itsComments.SetMatl(this);
  itsUnits.SetMatl(this);
}

SMatl::SMatl(const SString& fileName) : SMatl() { Read(fileName); }

SMatl::SMatl(const SMatl& other)
    : SMatlMaterial(other), SMatlInterface(), itsLists(other.itsLists), itsDictionary(other.itsDictionary),
      itsInputFileName(other.itsInputFileName), itsOutputFileName(other.itsOutputFileName),
      itsReadOk(other.itsReadOk), itsKeepCommentsOff(other.itsKeepCommentsOff),
      itsOrganizedOutput(other.itsOrganizedOutput), itsChecksOn(other.itsChecksOn),
      itsUnitsGiven(other.itsUnitsGiven), itsComments(other.itsComments), itsUnits(other.itsUnits),
      itsScratchProject(other.itsScratchProject) {
  std::copy(std::begin(other.itsNoConversion), std::end(other.itsNoConversion), std::begin(itsNoConversion));
  itsComments.SetMatl(this);
  itsUnits.SetMatl(this);
}

SMatl::~SMatl() {}

void SMatl::ClearEntries() { itsLists->Destroy(); }

// ---- the owner's side of the entries

int SMatl::GetNumDielectrics() const { return static_cast<int>(itsLists->dielectrics.size()); }

int SMatl::GetNumDielectricsLessOne() const { return GetNumDielectrics() - 1; }

int SMatl::GetHighestDielectricLevel() const {
  int highest = -1;
  for (const SMatlDielectric* dielectric : itsLists->dielectrics) highest = std::max(highest, dielectric->GetLevel());
  return highest;
}

bool SMatl::IsColorLayerNameUnique(const SString& name) const { return FindColor(name) == nullptr; }

void SMatl::SetNoConversion(int dimension, bool on) {
  if (dimension < 0)
    itsNoConversion[0] = on;
  else if (dimension < SMatlUtil::DimensionCount)
    itsNoConversion[1 + dimension] = on;
}

// ---- reading

bool SMatl::Read(const SString& fileName) {
  itsInputFileName = fileName;
  itsChecksOn = true;
  VeloraTrace(3, TRACE_GENERAL, "Starting MATL property read for file %s.", fileName.data());
  itsReadOk = ReadComments(fileName) && ReadEntries(fileName);
  VeloraTrace(3, TRACE_GENERAL, "Finished MATL property read for file %s.", fileName.data());
  return itsReadOk;
}

bool SMatl::ReadComments(const SString& fileName) {
  // No comment marker: the lines that begin with ";" are what this pass is for.
  SCommentedFile file(fileName, "", "");
  if (!file.IsOk()) return false;
  while (file.NextLine()) {
    SString keyword;
    if (!file.GetUpperToken(keyword)) continue;
    if (keyword.contains("UNIT") || itsDictionary->Find(keyword)) continue;
    VeloraTrace(4, TRACE_GENERAL, "Found a comment in MATL file.");
    if (!itsKeepCommentsOff && !itsComments.Read(file)) return false;
  }
  return true;
}

bool SMatl::ReadEntries(const SString& fileName) {
  SCommentedFile file(fileName, ";", "");
  if (!file.IsOk()) return false;
  while (file.NextLine()) {
    SString keyword;
    if (!file.GetUpperToken(keyword)) continue;
    if (keyword.contains("UNIT")) {
      itsUnitsGiven = true;
      if (!itsUnits.Read(file)) {
        SMatlReporting::Instance().LineError(kBadUnitLine, fileName, file.LineCount(), file.CurrentLine(), keyword);
        return false;
      }
      continue;
    }
    const SMatlMaterial* prototype = itsDictionary->Find(keyword);
    if (!prototype) {
      VeloraTrace(4, TRACE_GENERAL, "Found a comment in MATL file.");
      continue;
    }
    VeloraTrace(4, TRACE_GENERAL, "Found %s in file %s", keyword.data(), fileName.data());
    SMatlMaterial* entry = prototype->Clone();
    entry->SetMatl(this);
    entry->SetLine(file.LineCount());
    if (!entry->Read(file) || !AddEntry(entry)) {
      delete entry;
      return false;
    }
  }
  SettleGround();
  return true;
}

void SMatl::SettleGround() {
  // "GND" is the last level of the whole stack, also for a line that came before the last DIEL.
  const int ground = GetHighestDielectricLevel();
  if (ground < 0) return;
  for (SMatlMetalDrawLayer* layer : itsLists->metalDrawLayers)
    if (layer->IsOnGround()) layer->SetLevelNumber(ground);
  for (SMatlViaDrawLayer* layer : itsLists->viaDrawLayers) {
    if (layer->IsOnGround()) layer->SetLevelNumber(ground);
    if (layer->GetToLevel().IsGround()) layer->ToLevel().SetNumber(ground);
  }
}

bool SMatl::AddEntry(SMatlMaterial* entry) {
  if (!entry) return false;
  SMatlReporting& report = SMatlReporting::Instance();
  entry->SetMatl(this);
  switch (entry->GetKind()) {
  case DielectricKind: {
    SMatlDielectric* dielectric = static_cast<SMatlDielectric*>(entry);
    if (!dielectric->HasLevel()) dielectric->SetLevel(GetNumDielectrics());
    itsLists->dielectrics.push_back(dielectric);
    return true;
  }
  case ViaDrawLayerKind: {
    SMatlViaDrawLayer* via = static_cast<SMatlViaDrawLayer*>(entry);
    if (itsChecksOn && FindViaDrawLayer(via->GetLayerName())) {
      report.ReportWarning("The via layer name '" + via->GetLayerName() +
                           "' is used by an earlier VIA line; this one is disregarded.");
      delete via;
      return true;
    }
    via->SetUnusedToDefault();
    itsLists->viaDrawLayers.push_back(via);
    return true;
  }
  case MetalDrawLayerKind: {
    SMatlMetalDrawLayer* metal = static_cast<SMatlMetalDrawLayer*>(entry);
    metal->SetUnusedToDefault();
    if (itsChecksOn && FindMetalDrawLayer(metal->GetLayerName())) {
      report.ReportWarning("The metal layer name '" + metal->GetLayerName() +
                           "' is used by an earlier METAL line; this one is disregarded.");
      delete metal;
      return true;
    }
    metal->OrderRanges();
    itsLists->metalDrawLayers.push_back(metal);
    return true;
  }
  case ViaMaterialKind: {
    SMatlViaMaterial* via = static_cast<SMatlViaMaterial*>(entry);
    via->SetUnusedToDefault();
    itsLists->viaMaterials.push_back(via);
    return true;
  }
  case MetalMaterialKind: {
    SMatlMetalMaterial* metal = static_cast<SMatlMetalMaterial*>(entry);
    metal->SetUnusedToDefault();
    itsLists->metalMaterials.push_back(metal);
    return true;
  }
  case UnitKind:
    delete entry;
    return true;
  case ColorKind:
    // A second color of a name read as true but stands for nothing.
    if (static_cast<SMatlColor*>(entry)->IsDisregarded())
      delete entry;
    else
      itsLists->colors.push_back(static_cast<SMatlColor*>(entry));
    return true;
  case TechLayerKind: {
    SMatlTechLayer* layer = static_cast<SMatlTechLayer*>(entry);
    for (const SMatlTechLayer* other : itsLists->techLayers)
      if (other->GetSubKind() == layer->GetSubKind() && other->GetName() == layer->GetName()) {
        report.NameWarning(kTechLayerTwice, layer->GetName());
        delete layer;
        return true;
      }
    itsLists->techLayers.push_back(layer);
    return true;
  }
  case TechLayerFastOptKind: {
    SMatlTechLayerFastOpt* option = static_cast<SMatlTechLayerFastOpt*>(entry);
    for (const SMatlTechLayerFastOpt* other : itsLists->fastOpts)
      if (other->GetSubKind() == option->GetSubKind() && other->GetName() == option->GetName()) {
        report.NameWarning(kTechLayerTwice, option->GetName());
        delete option;
        return true;
      }
    itsLists->fastOpts.push_back(option);
    return true;
  }
  case VariableKind: {
    SMatlVariable* variable = static_cast<SMatlVariable*>(entry);
    if (FindByName(itsLists->variables, variable->GetName())) {
      report.NameWarning(kVariableTwice, variable->GetName());
      delete variable;
      return true;
    }
    itsLists->variables.insert(itsLists->variables.begin(), variable);
    return true;
  }
  case BrickKind:
    itsLists->bricks.push_back(static_cast<SMatlBrick*>(entry));
    return true;
  default:
    return false;
  }
}

// ---- lookups

SMatlDielectric* SMatl::FindDielectric(int level) const {
  for (SMatlDielectric* dielectric : itsLists->dielectrics)
    if (dielectric->GetLevel() == level) return dielectric;
  return nullptr;
}

SMatlDielectric* SMatl::FindDielectric(const SString& name) const { return FindByName(itsLists->dielectrics, name); }

SMatlMetalDrawLayer* SMatl::FindMetalDrawLayer(const SString& name) const {
  for (SMatlMetalDrawLayer* layer : itsLists->metalDrawLayers)
    if (layer->GetLayerName() == name) return layer;
  return nullptr;
}

SMatlViaDrawLayer* SMatl::FindViaDrawLayer(const SString& name) const {
  for (SMatlViaDrawLayer* layer : itsLists->viaDrawLayers)
    if (layer->GetLayerName() == name) return layer;
  return nullptr;
}

SMatlMetalMaterial* SMatl::FindMetalMaterial(const SString& name) const {
  return FindByName(itsLists->metalMaterials, name);
}

SMatlViaMaterial* SMatl::FindViaMaterial(const SString& name) const { return FindByName(itsLists->viaMaterials, name); }

SMatlColor* SMatl::FindColor(const SString& name) const {
  for (SMatlColor* color : itsLists->colors)
    if (!color->IsDisregarded() && color->GetLayerName() == name) return color;
  return nullptr;
}

// ---- comparison

bool SMatl::IsSameContent(const SMatl& other, QStringList* report) const {
  struct SCheck {
    const char* label;
    const char* message;
    bool same;
  };
  const SLists& a = *itsLists;
  const SLists& b = *other.itsLists;
  const SCheck checks[] = {
      {"MAXLEVELS", "Max Dielectric level values do not match.",
       GetHighestDielectricLevel() == other.GetHighestDielectricLevel()},
      {"Metal Drawing Layers entries", "Metal Drawing Layers entry values do not match.",
       SameEntries(a.metalDrawLayers, b.metalDrawLayers)},
      {"Metal Material entries", "Metal Material entry values do not match.",
       SameEntries(a.metalMaterials, b.metalMaterials)},
      {"Via Drawing Layers entries", "Via Drawing Layers entry values do not match.",
       SameEntries(a.viaDrawLayers, b.viaDrawLayers)},
      {"Via Material entries", "Via Material entry values do not match.", SameEntries(a.viaMaterials, b.viaMaterials)},
      {"Color entries", "Color entry values do not match.", SameEntries(a.colors, b.colors)},
      // What a file holds beyond the labels above, so that equal means equal.
      {"Dielectric entries", "Dielectric entry values do not match.", SameEntries(a.dielectrics, b.dielectrics)},
      {"Tech Layer entries", "Tech Layer entry values do not match.", SameEntries(a.techLayers, b.techLayers)},
      {"Tech Layer Fast Option entries", "Tech Layer Fast Option entry values do not match.",
       SameEntries(a.fastOpts, b.fastOpts)},
      {"Variable entries", "Variable entry values do not match.", SameEntries(a.variables, b.variables)},
      {"Unit entries", "Unit values do not match.", itsUnits.IsEqual(other.itsUnits)},
  };
  bool same = true;
  for (const SCheck& check : checks) {
    if (check.same) continue;
    same = false;
    if (report) report->append(QString("%1: %2").arg(check.label, check.message));
  }
  return same;
}

bool SMatl::IsEqual(const SMatlMaterial& other) const {
  const SMatl* matl = dynamic_cast<const SMatl*>(&other);
  return matl && IsSameContent(*matl);
}

// ---- writing

void SMatl::ConvertUnits() {
  static const char* const kWhat[] = {"Changing length units from \"", "Changing conductivity units from \"",
                                      "Changing resistivity units from \"", "Changing sheet resistance units from \""};
  if (itsNoConversion[0]) return;
  for (int dimension = SMatlUtil::Length; dimension <= SMatlUtil::SheetResistance; ++dimension) {
    if (itsNoConversion[1 + dimension]) continue;
    const int from = itsUnits.GetFile(dimension);
    const int to = itsUnits.GetCurrent(dimension);
    if (from == to) continue;
    const double factor = SMatlUtil::ConversionFactor(dimension, from, to);
    SLists& lists = *itsLists;
    for (SMatlDielectric* entry : lists.dielectrics) entry->Scale(dimension, factor);
    for (SMatlMetalDrawLayer* entry : lists.metalDrawLayers) entry->Scale(dimension, factor);
    for (SMatlMetalMaterial* entry : lists.metalMaterials) entry->Scale(dimension, factor);
    for (SMatlViaDrawLayer* entry : lists.viaDrawLayers) entry->Scale(dimension, factor);
    for (SMatlViaMaterial* entry : lists.viaMaterials) entry->Scale(dimension, factor);
    for (SMatlBrick* entry : lists.bricks) entry->Scale(dimension, factor);
    SMatlReporting::Instance().ReportNote(SString(kWhat[dimension]) + itsUnits.GetFileName(dimension) + "\" to \"" +
                                          itsUnits.GetCurrentName(dimension) + "\".");
    itsUnits.SetFile(dimension, to);
  }
}

bool SMatl::WriteEntry(const SMatlMaterial& entry, SProjectStream& out, int message) {
  if (entry.Write(out)) return true;
  SMatlReporting::Instance().WriteError(message, entry.GetName(), itsOutputFileName);
  return false;
}

int SMatl::LevelOf(const SMatlMaterial& entry, int ground) const {
  const SMatlDrawLayer* layer = dynamic_cast<const SMatlDrawLayer*>(&entry);
  if (!layer) return 0;
  return layer->IsOnGround() ? ground : layer->GetLevelNumber();
}

bool SMatl::WriteLayers(SProjectStream& out) {
  const SLists& lists = *itsLists;
  const int highest = GetHighestDielectricLevel();
  if (itsOrganizedOutput) {
    for (int level = 0; level <= highest; ++level)
      for (const SMatlDielectric* dielectric : lists.dielectrics)
        if (dielectric->GetLevel() == level && !WriteEntry(*dielectric, out, kDielectricNotWritten)) return false;
    for (const SMatlMetalDrawLayer* metal : lists.metalDrawLayers)
      if (!WriteEntry(*metal, out, kDrawLayerNotWritten)) return false;
    for (const SMatlViaDrawLayer* via : lists.viaDrawLayers)
      if (!WriteEntry(*via, out, kDrawLayerNotWritten)) return false;
    return true;
  }
  for (int level = 0; level <= highest; ++level) {
    for (const SMatlDielectric* dielectric : lists.dielectrics)
      if (dielectric->GetLevel() == level && !WriteEntry(*dielectric, out, kDielectricNotWritten)) return false;
    for (const SMatlMetalDrawLayer* metal : lists.metalDrawLayers)
      if (LevelOf(*metal, highest) == level && !WriteEntry(*metal, out, kDrawLayerNotWritten)) return false;
    for (const SMatlViaDrawLayer* via : lists.viaDrawLayers)
      if (LevelOf(*via, highest) == level && !WriteEntry(*via, out, kDrawLayerNotWritten)) return false;
  }
  // Layers below the stack would otherwise be lost; they go last, in file order.
  for (const SMatlMetalDrawLayer* metal : lists.metalDrawLayers)
    if ((LevelOf(*metal, highest) > highest || highest < 0) && !WriteEntry(*metal, out, kDrawLayerNotWritten))
      return false;
  for (const SMatlViaDrawLayer* via : lists.viaDrawLayers)
    if ((LevelOf(*via, highest) > highest || highest < 0) && !WriteEntry(*via, out, kDrawLayerNotWritten))
      return false;
  return true;
}

bool SMatl::WriteText(SProjectStream& out) {
  if (!itsReadOk) return false;
  SLists& lists = *itsLists;
  if (itsChecksOn) {
    for (const SMatlColor* color : lists.colors) {
      if (color->IsDisregarded()) continue;
      for (SMatlMetalDrawLayer* metal : lists.metalDrawLayers)
        if (metal->GetLayerName() == color->GetLayerName()) {
          VeloraTrace(4, TRACE_GENERAL, "Assigning new color/pattern %d to layer '%s'.", color->GetPattern(),
                      metal->GetLayerName().data());
          metal->SetPattern(color->GetPattern());
        }
      for (SMatlViaDrawLayer* via : lists.viaDrawLayers)
        if (via->GetLayerName() == color->GetLayerName()) {
          VeloraTrace(4, TRACE_GENERAL, "Assigning new color/pattern %d to layer '%s'.", color->GetPattern(),
                      via->GetLayerName().data());
          via->SetPattern(color->GetPattern());
        }
    }
    for (SMatlTechLayer* layer : lists.techLayers)
      layer->SetUsed(FindMetalDrawLayer(layer->GetName()) || FindViaDrawLayer(layer->GetName()));
  }
  ConvertUnits();
  out.SetDigits(10);
  const char* name = itsOutputFileName.data();

  out << "; Layer file for Cadence ADE and/or Keysight ADS to Velora em translation\n";
  out << "; Translated from " << itsInputFileName << "\n\n";
  if (!itsComments.Write(out)) return false;
  VeloraTrace(4, TRACE_GENERAL, "Finished writing comments to file %s.", name);
  if (!itsUnits.Write(out)) return false;

  if (!lists.variables.empty()) {
    out << "\n";
    // Reading puts each variable in front, so the file's order is the list's reversed.
    for (auto it = lists.variables.rbegin(); it != lists.variables.rend(); ++it)
      if (!WriteEntry(**it, out, kEntryNotWritten)) {
        VeloraTrace(2, TRACE_ERRORS, "Error writing variables to file %s.", name);
        return false;
      }
    out << "\n";
  }
  if (!WriteLayers(out)) {
    VeloraTrace(2, TRACE_ERRORS,
                itsOrganizedOutput ? "Error writing organized output to file %s."
                                   : "Error writing standard output to file %s.",
                name);
    return false;
  }
  VeloraTrace(4, TRACE_GENERAL, "Finished writing dielectrics, metals, vias to file %s.", name);
  for (const SMatlTechLayer* layer : lists.techLayers)
    if (!WriteEntry(*layer, out, kEntryNotWritten)) {
      VeloraTrace(2, TRACE_ERRORS, "Error writing tech layers to file %s.", name);
      return false;
    }
  for (const SMatlTechLayerFastOpt* option : lists.fastOpts)
    if (!WriteEntry(*option, out, kEntryNotWritten)) {
      VeloraTrace(2, TRACE_ERRORS, "Error writing tech layer fast options to file %s.", name);
      return false;
    }
  for (const SMatlMetalMaterial* metal : lists.metalMaterials)
    if (!WriteEntry(*metal, out, kEntryNotWritten)) return false;
  for (const SMatlViaMaterial* via : lists.viaMaterials)
    if (!WriteEntry(*via, out, kEntryNotWritten)) return false;
  VeloraTrace(4, TRACE_GENERAL, "Finished writing materials to file %s.", name);
  return true;
}

bool SMatl::Write() {
  if (!itsReadOk) return false;
  SProjectStream out;
  if (!WriteText(out)) return false;
  SSafeSave save(itsOutputFileName);
  if (!save.Commit(out.Text())) {
    SMatlReporting::Instance().ReportError("Unable to write the material file " + itsOutputFileName + ": " +
                                           save.GetErrorText());
    return false;
  }
  return true;
}

bool SMatl::Write(const SString& fileName) {
  itsOutputFileName = fileName;
  return Write();
}
