#include "SCvtMaterialFile.h"

#include "SBrickType.h"
#include "SCircuit.h"
#include "SCommentedFile.h"
#include "SDimensionBlock.h"
#include "SFileBlock.h"
#include "SMetalType.h"
#include "SProject.h"
#include "SProjectStream.h"
#include "SSafeSave.h"
#include "STechLayer.h"
#include "SViaMetalType.h"

#include <algorithm>
#include <initializer_list>

namespace {

const int kUnreadableFile = 5001;
const int kBadValue = 6083;

SString Numbers(std::initializer_list<double> values) {
  SString text;
  for (double value : values) {
    if (!text.isEmpty()) text += " ";
    text += SString::number(value);
  }
  return text;
}

bool ReadNumbers(SFile& file, std::initializer_list<double*> values) {
  for (double* value : values)
    if (!file.GetDouble(*value)) return false;
  return true;
}

}  // namespace

SCvtMaterialFile::~SCvtMaterialFile() { Clear(); }

void SCvtMaterialFile::Clear() {
  if (itsOwnsTechLayers)
    for (STechLayer* layer : itsTechLayers) delete layer;
  itsTechLayers.clear();
  itsOwnsTechLayers = false;
  itsMetals.clear();
  itsViaMetals.clear();
  itsBricks.clear();
  itsExtents.clear();
  itsBoxSize = SSize();
  itsCellSize = SSize();
  itsHasBox = false;
  itsUnitName.clear();
  itsErrors.Clear();
}

void SCvtMaterialFile::AddOnce(std::vector<SString>& list, const SString& name) {
  if (std::find(list.begin(), list.end(), name) == list.end()) list.push_back(name);
}

void SCvtMaterialFile::SetBoxSize(const SSize& size) {
  itsBoxSize = size;
  itsHasBox = true;
}

void SCvtMaterialFile::CollectFrom(SProject& project) {
  SCircuit* circuit = project.GetCircuit();
  if (!circuit) return;
  std::vector<SMetalType*> metals;
  circuit->CollectObjects(metals);
  for (const SMetalType* metal : metals)
    // Box cover lines as read (SReadMetal) are not metal types of the circuit.
    if (metal->isA() == SMetalType::staticTypeInfo().id() && metal->GetDefinition() != SMetalTypeData::WGLoad &&
        metal->GetDefinition() != SMetalTypeData::FreeSpace)
      AddMetal(metal->GetTypeName());
  std::vector<SViaMetalType*> vias;
  circuit->CollectObjects(vias);
  for (const SViaMetalType* via : vias) AddViaMetal(via->GetTypeName());
  std::vector<SBrickType*> bricks;
  circuit->CollectObjects(bricks);
  for (const SBrickType* brick : bricks) AddBrick(brick->GetTypeName());
  std::vector<STechLayer*> layers;
  circuit->GetTechLayers(layers);
  for (STechLayer* layer : layers) AddTechLayer(layer);
  SetBoxSize(circuit->GetBoxSize());
  SetCellSize(circuit->GetCellSize());
  if (SDimensionBlock* dimensions = project.GetDimensionBlock())
    SetUnitName(dimensions->GetUnitName(SDimensionBlock::Length));
}

std::string SCvtMaterialFile::Text() const {
  SProjectStream out;
  for (const SString& name : itsMetals) out << "metal " << name << '\n';
  for (const SString& name : itsViaMetals) out << "viametal " << name << '\n';
  for (const SString& name : itsBricks) out << "brick " << name << '\n';
  for (const STechLayer* layer : itsTechLayers) layer->Write(out, SFileBlock::Format(), true);
  out << "EXTENTS " << Numbers({itsExtents.x1(), itsExtents.y1(), itsExtents.x2(), itsExtents.y2()}) << '\n';
  if (itsHasBox) {
    out << "BOXSIZE " << Numbers({itsBoxSize.width(), itsBoxSize.height()}) << '\n';
    out << "CELLSIZE " << Numbers({itsCellSize.width(), itsCellSize.height()}) << '\n';
  }
  if (!itsUnitName.isEmpty()) out << "UNITNAME " << itsUnitName << '\n';
  return out.Text();
}

bool SCvtMaterialFile::Write(const SString& fileName) const {
  SSafeSave save(fileName);
  return save.Commit(Text());
}

bool SCvtMaterialFile::Read(const SString& fileName) {
  Clear();
  itsErrors.SetFileName(fileName);
  SCommentedFile file(fileName, "!", "&");
  if (!file.IsOk()) {
    itsErrors.AddError(SProjectErrorManager::Error, 0, kUnreadableFile);
    return false;
  }
  itsOwnsTechLayers = true;
  SString keyword;
  while (file.NextLine()) {
    if (!file.GetToken(keyword)) continue;
    SString name;
    bool numbers = true;
    if (keyword == "metal" || keyword == "viametal" || keyword == "brick" || keyword == "UNITNAME") {
      // The name is the rest of the line, blanks and all.
      file.GetAfterFirstToken(name);
      if (name.isEmpty()) continue;
      if (keyword == "metal")
        AddMetal(name);
      else if (keyword == "viametal")
        AddViaMetal(name);
      else if (keyword == "brick")
        AddBrick(name);
      else
        itsUnitName = name;
    } else if (keyword == "TECHLAY") {
      STechLayer* layer = new STechLayer;
      if (!layer->Read(file, itsErrors)) {
        delete layer;
        return false;
      }
      itsTechLayers.push_back(layer);
    } else if (keyword == "EXTENTS") {
      double x1, y1, x2, y2;
      numbers = ReadNumbers(file, {&x1, &y1, &x2, &y2});
      if (numbers) itsExtents.set(x1, y1, x2, y2);
    } else if (keyword == "BOXSIZE") {
      double width, height;
      numbers = ReadNumbers(file, {&width, &height});
      if (numbers) SetBoxSize(SSize(width, height));
    } else if (keyword == "CELLSIZE") {
      double width, height;
      numbers = ReadNumbers(file, {&width, &height});
      if (numbers) itsCellSize = SSize(width, height);
    }
    if (!numbers) {
      itsErrors.AddError(SProjectErrorManager::Error, static_cast<int>(file.LineCount()), kBadValue);
      return false;
    }
  }
  return true;
}
