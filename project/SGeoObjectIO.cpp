#include "SGeoObjectIO.h"

#include "SBrickPolygon.h"
#include "SCircuit.h"
#include "SCoupledGroup.h"
#include "SDimension.h"
#include "SEdgeVia.h"
#include "SFile.h"
#include "SGeoClassID.h"
#include "SLevel.h"
#include "SMaterialTypeData.h"
#include "SMaterialTypeIO.h"
#include "SMetalPolygon.h"
#include "SPort.h"
#include "SProject.h"
#include "SProjectErrorManager.h"
#include "SProjectStream.h"
#include "SRefPlane.h"
#include "STechLayer.h"
#include "SViaPolygon.h"

#include <QHash>

#include <memory>
#include <set>

namespace SGeoObjectIO {
namespace {
void Unresolved(SProjectErrorManager& errors, long long line) {
  errors.AddPrefixedError(SProjectErrorManager::Error, static_cast<int>(line), 6028, 6121);
}

// A coupled group written right behind a port belongs to it. Groups of files before FTYP 17
// carried the ground and width settings that ports now hold themselves.
void AttachToPort(SCircuit& circuit, SCoupledGroup* group) {
  const size_t n = circuit.GetNumberOfChildren();
  if (n < 2) return;
  SBaseEnclosure* previous = circuit.GetChild(n - 2);
  if (previous->isA() != SID_PORT) return;
  SPort* port = static_cast<SPort*>(previous);
  if (port->GetType() != SPortData::CoCalibrated || port->GetEndLine() + 1 != group->GetLine()) return;
  port->SetGroup(group);
  const int version = circuit.GetProject() != nullptr ? circuit.GetProject()->GetFileVersion() : 0;
  if (version >= 17) return;
  port->SetGroundReference(group->GetGroundReference());
  port->SetGroundDirection(group->GetGroundDirection());
  // The group's older codes: 0 feedline, 1 custom, 2 one cell.
  static const int kWidth[] = {SPortData::FeedlineWidth, SPortData::CustomWidth, SPortData::OneCell};
  const int width = group->GetTerminalWidthType();
  port->SetTerminalWidthType(width >= 0 && width <= 2 ? kWidth[width] : SPortData::FeedlineWidth);
  port->SetTerminalWidth(group->GetTerminalWidth());
}

// The file numbers of the material types: metal and via types share a sequence.
void MaterialsByNumber(const SCircuit& circuit, QHash<int, SMaterialTypeData*>& metals,
                       QHash<int, SMaterialTypeData*>& bricks) {
  for (size_t i = 0; i < circuit.GetNumberOfChildren(); ++i) {
    SBaseEnclosure* child = circuit.GetChild(i);
    SMaterialTypeData* type = SMaterialTypeIO::AsMaterialType(static_cast<SEnclosure*>(child));
    if (type == nullptr || type->GetFileId() < 0) continue;
    (child->isA() == SID_BRICKTYPE ? bricks : metals).insert(type->GetFileId(), type);
  }
}

// The template's material number as read becomes the circuit's type.
bool BindTemplateMaterial(const SCircuit& circuit, STechLayer& layer, SProjectErrorManager& errors) {
  SShapeData* shape = layer.GetTemplate();
  if (shape == nullptr) return true;
  QHash<int, SMaterialTypeData*> metals, bricks;
  MaterialsByNumber(circuit, metals, bricks);
  const bool brick = layer.GetLayerType() == STechLayer::Brick;
  const int n = shape->GetFileMaterial();
  if (brick ? n <= 0 : n < 0) {
    shape->SetMaterial(nullptr);
    return true;
  }
  SMaterialTypeData* type = (brick ? bricks : metals).value(brick ? n - 1 : n, nullptr);
  if (type == nullptr) {
    Unresolved(errors, layer.GetSourceLine());
    return false;
  }
  shape->SetMaterial(type);
  return true;
}

}  // namespace

// A plane whose polygon is gone is written as if it had never been linked.
void WritePlaneForm(SProjectStream& out, const SCircuit& circuit, const SRefPlaneData& plane) {
  if (plane.IsLinked() && plane.GetLink().FindPolygon(circuit) == nullptr) {
    SRefPlaneData copy = plane;
    copy.Link().Clear();
    copy.WriteForm(out);
    return;
  }
  plane.WriteForm(out);
}

bool PlaneHasLine(const SCircuit& circuit, const SRefPlaneData& plane) {
  if (plane.IsLinked() && plane.GetLink().FindPolygon(circuit) == nullptr)
    return plane.GetLength() != 0.0 || plane.IsCalibrationSet();
  return !plane.IsEmpty();
}

namespace {

bool CheckLink(const SCircuit& circuit, const SPolyDepHandle& link, long long line, SProjectErrorManager& errors) {
  if (!link.IsSet() || link.FindPolygon(circuit) != nullptr) return true;
  Unresolved(errors, line);
  return false;
}

template <class T> void ChildrenOf(const SBaseEnclosure& node, std::vector<T*>& list) {
  for (size_t i = 0; i < node.GetNumberOfChildren(); ++i)
    if (node.GetChild(i)->isA() == T::staticTypeInfo().id()) list.push_back(static_cast<T*>(node.GetChild(i)));
}
}  // namespace

// ---- readers

bool ReadPort(SFile& file, SCircuit& circuit, const SString& keyword, SProjectErrorManager& errors) {
  std::unique_ptr<SPort> port(new SPort);
  if (!port->Read(file, keyword, errors)) return false;
  // Waits in the circuit's list until its polygon is read.
  circuit.AddObject(port.release());
  return true;
}

bool ReadEdgeVia(SFile& file, SCircuit& circuit, const SString& keyword, SProjectErrorManager& errors) {
  std::unique_ptr<SEdgeVia> via(new SEdgeVia);
  if (!via->Read(file, keyword, errors)) return false;
  circuit.AddObject(via.release());
  return true;
}

bool ReadBoxRefPlane(SFile& file, SCircuit& circuit, SProjectErrorManager& errors) {
  SString word;
  file.GetToken(word);
  const int side = SBoxSide::SideFromText(word);
  if (side < SBoxSide::Left || side > SBoxSide::Bottom) return ReadFault(errors, file, 6056);
  SRefPlane* plane = circuit.GetRefPlane(side);
  if (plane == nullptr) {
    CreateBoxRefPlanes(circuit);
    plane = circuit.GetRefPlane(side);
  }
  const size_t before = errors.Count();
  if (!plane->ReadForm(file, errors)) {
    if (errors.Count() == before) ReadFault(errors, file, 6056);
    return false;
  }
  plane->SetLine(file.LineCount());
  return true;
}

bool ReadParallelSubs(SFile& file, SCircuit& circuit, SProjectErrorManager& errors) {
  SString word;
  file.GetToken(word);
  const int side = SBoxSide::SideFromText(word);
  double length = 0.0;
  if (side < SBoxSide::Left || side > SBoxSide::Bottom || !file.GetDouble(length)) return ReadFault(errors, file, 6112);
  circuit.SetParallelSubs(side, length);
  return true;
}

bool ReadOldRefLine(SFile& file, SCircuit& circuit, SProjectErrorManager& errors) {
  double values[8];
  for (double& value : values)
    if (!file.GetDouble(value)) return ReadFault(errors, file, 6056);
  CreateBoxRefPlanes(circuit);
  for (int side = 0; side < 4; ++side) {
    SRefPlane* plane = circuit.GetRefPlane(side);
    // A calibration length stood in the plane's place as a negative number.
    if (values[side] < 0.0) {
      plane->SetLength(0.0);
      plane->SetCalibrationLength(-values[side]);
    } else {
      plane->SetLength(values[side]);
    }
    circuit.SetParallelSubs(side, values[side + 4]);
  }
  return true;
}

bool ReadCoupledGroup(SFile& file, SCircuit& circuit, SProjectErrorManager& errors) {
  std::unique_ptr<SCoupledGroup> group(new SCoupledGroup);
  if (!group->Read(file, errors)) return false;
  SCoupledGroup* added = group.release();
  circuit.AddObject(added);
  AttachToPort(circuit, added);
  return true;
}

bool ReadDimension(SFile& file, SCircuit& circuit, SProjectErrorManager& errors) {
  std::unique_ptr<SDimension> dimension(new SDimension);
  if (!dimension->Read(file, errors)) return false;
  circuit.AddObject(dimension.release());
  return true;
}

bool ReadTechLayer(SFile& file, SCircuit& circuit, SProjectErrorManager& errors) {
  std::unique_ptr<STechLayer> layer(new STechLayer);
  if (!layer->Read(file, errors)) return false;
  STechLayer* existing = circuit.FindTechLayer(layer->GetName());
  if (existing != nullptr) {
    const bool fromSTF = existing->IsFromSTF();
    const bool keepTarget = fromSTF && existing->GetLayerType() == STechLayer::Via;
    const int toLevel = existing->GetToLevel();
    const int toLevelType = existing->GetToLevelType();
    existing->CopyFrom(*layer);
    existing->SetFromSTF(fromSTF);
    if (keepTarget) {
      existing->SetToLevel(toLevel);
      existing->SetToLevelType(toLevelType);
    }
    if (existing->GetTemplate() != nullptr && layer->GetTemplate() != nullptr)
      existing->GetTemplate()->SetFileMaterial(layer->GetTemplate()->GetFileMaterial());
    existing->SetSourceLine(layer->GetSourceLine());
    return BindTemplateMaterial(circuit, *existing, errors);
  }
  SLevel* level = circuit.GetLevel(layer->GetLevel());
  if (level == nullptr) {
    errors.AddPrefixedError(SProjectErrorManager::Error, static_cast<int>(layer->GetSourceLine()), 6002, 6059);
    return false;
  }
  STechLayer* added = layer.release();
  level->AddChild(added);
  return BindTemplateMaterial(circuit, *added, errors);
}

// ---- references

bool ResolveReferences(SCircuit& circuit, SProjectErrorManager& errors, bool abbreviated) {
  // Without the polygons there is nothing to bind to; the block isn't written back.
  if (abbreviated) return true;
  std::vector<SEnclosure*> shapes;
  circuit.CollectPolygons(shapes);
  const auto polygonOf = [&](long long id, long long ordinal) -> SMetalPolygon* {
    if (id >= 0) return circuit.FindPolygonById(id);
    if (ordinal < 1 || ordinal > static_cast<long long>(shapes.size())) return nullptr;
    SEnclosure* shape = shapes[static_cast<size_t>(ordinal - 1)];
    return shape->isA() == SID_BRICKPOLYGON ? nullptr : static_cast<SMetalPolygon*>(shape);
  };

  std::vector<SBaseEnclosure*> waiting;
  circuit.TakeChildren([](const SBaseEnclosure* child) { return child->isA() == SID_PORT || child->isA() == SID_EDGEVIA; },
                       waiting);
  for (size_t i = 0; i < waiting.size(); ++i) {
    SBaseEnclosure* object = waiting[i];
    SMetalPolygon* polygon = nullptr;
    long long line = 0;
    if (object->isA() == SID_PORT) {
      SPort* port = static_cast<SPort*>(object);
      polygon = polygonOf(port->GetPolygonId(), port->GetOrdinal());
      line = port->GetLine();
    } else {
      SEdgeVia* via = static_cast<SEdgeVia*>(object);
      polygon = polygonOf(via->GetPolygonId(), via->GetOrdinal());
      line = via->GetLine();
    }
    if (polygon == nullptr) {
      errors.AddError(SProjectErrorManager::Error, static_cast<int>(line), 6173);
      // What isn't bound yet stays with the circuit, which owns it.
      for (size_t k = i; k < waiting.size(); ++k) circuit.AddChild(waiting[k]);
      return false;
    }
    polygon->AddChild(object);
  }

  bool ok = true;
  std::vector<SPort*> ports;
  GetAllPorts(circuit, ports);
  for (SPort* port : ports) {
    if (port->GetRefPlane() != nullptr) ok = CheckLink(circuit, port->GetRefPlane()->GetLink(), port->GetLine(), errors) && ok;
    if (port->GetType() != SPortData::CoCalibrated || port->GetGroup() != nullptr || port->IsAutomaticGroup()) continue;
    SCoupledGroup* group = SCoupledGroup::Find(circuit, port->GetGroupName());
    if (group == nullptr && !port->GetGroupName().isEmpty()) {
      Unresolved(errors, port->GetLine());
      ok = false;
    }
    port->SetGroup(group);
  }
  for (int side = SBoxSide::Left; side <= SBoxSide::Bottom; ++side)
    if (const SRefPlane* plane = circuit.GetRefPlane(side))
      ok = CheckLink(circuit, plane->GetLink(), plane->GetLine(), errors) && ok;
  std::vector<SCoupledGroup*> groups;
  circuit.CollectObjects(groups);
  for (SCoupledGroup* group : groups)
    for (int side = SBoxSide::Left; side <= SBoxSide::AutoGround; ++side)
      if (const SRefPlane* plane = group->GetRefPlane(side))
        ok = CheckLink(circuit, plane->GetLink(), group->GetLine(), errors) && ok;
  std::vector<SDimension*> dimensions;
  circuit.CollectObjects(dimensions);
  for (SDimension* dimension : dimensions)
    for (int which = 0; which < 2; ++which)
      ok = CheckLink(circuit, dimension->GetReference(which), dimension->GetLine(), errors) && ok;

  // Layers are looked up by name once: a lookup walks every level's children, polygons
  // included, and a large layout names its layers on every polygon.
  std::vector<STechLayer*> layers;
  circuit.GetTechLayers(layers);
  QHash<QString, STechLayer*> byName;
  for (auto it = layers.rbegin(); it != layers.rend(); ++it) byName.insert((*it)->GetName().qstring(), *it);
  for (SEnclosure* shape : shapes) {
    SShapeData* data = shape->isA() == SID_BRICKPOLYGON ? static_cast<SShapeData*>(static_cast<SBrickPolygon*>(shape))
                                                        : static_cast<SShapeData*>(static_cast<SMetalPolygon*>(shape));
    const SString name = data->GetTechLayerName();
    if (name.isEmpty()) continue;
    STechLayer* layer = byName.value(name.qstring(), nullptr);
    if (layer == nullptr) {
      Unresolved(errors, shape->GetLine());
      ok = false;
      continue;
    }
    data->SetTechLayer(layer, data->FollowsTechLayer());
  }
  return ok;
}

// ---- writers

void WriteBoxRefPlanes(SProjectStream& out, const SCircuit& circuit, int format) {
  if (format < 2) {
    // The older single line: a calibration length stands as a negative number.
    bool any = false;
    double values[8] = {0, 0, 0, 0, 0, 0, 0, 0};
    for (int side = 0; side < 4; ++side) {
      if (const SRefPlane* plane = circuit.GetRefPlane(side))
        values[side] = plane->IsCalibrationSet() && plane->GetCalibrationLength() > 0.0 ? -plane->GetCalibrationLength()
                                                                                         : plane->GetLength();
      values[side + 4] = circuit.GetParallelSubs(side);
    }
    for (double value : values) any = any || value != 0.0;
    if (!any) return;
    out << "REF";
    for (double value : values) out << ' ' << value;
    out << '\n';
    return;
  }
  for (int side = SBoxSide::Left; side <= SBoxSide::Bottom; ++side) {
    const SRefPlane* plane = circuit.GetRefPlane(side);
    if (plane == nullptr || !PlaneHasLine(circuit, *plane)) continue;
    out << "DRP1 " << SBoxSide::SideText(side) << ' ';
    WritePlaneForm(out, circuit, *plane);
  }
}

void WriteParallelSubs(SProjectStream& out, const SCircuit& circuit, int format) {
  // Below format 2 the REF line holds them; from 21 the CONTROL block does.
  if (format < 2 || format >= 21) return;
  for (int side = SBoxSide::Left; side <= SBoxSide::Bottom; ++side)
    if (circuit.GetParallelSubs(side) > 0.0)
      out << "PSB1 " << SBoxSide::SideText(side) << ' ' << circuit.GetParallelSubs(side) << '\n';
}

void WriteTechLayers(SProjectStream& out, const SCircuit& circuit, int format) {
  if (format < 15) return;
  std::vector<STechLayer*> layers;
  STechLayer::GetAll(circuit, layers);
  for (const STechLayer* layer : layers)
    if (layer->IsChanged()) layer->Write(out, format);
}

void WriteDimensions(SProjectStream& out, const SCircuit& circuit, int format) {
  std::vector<SDimension*> dimensions;
  circuit.CollectObjects(dimensions);
  for (const SDimension* dimension : dimensions) dimension->Write(out, circuit, format);
}

void WriteViasAndPorts(SProjectStream& out, const std::vector<std::pair<long long, SEnclosure*>>& owners, int format,
                       std::vector<SPort*>& ports) {
  for (const auto& owner : owners) {
    if (owner.second->isA() == SID_BRICKPOLYGON) continue;
    std::vector<SEdgeVia*> vias;
    GetEdgeVias(*static_cast<SMetalPolygon*>(owner.second), vias);
    for (const SEdgeVia* via : vias) via->Write(out, format, owner.first);
  }
  for (const auto& owner : owners)
    if (owner.second->isA() != SID_BRICKPOLYGON) GetPorts(*static_cast<SMetalPolygon*>(owner.second), ports);
  // Older formats had no port number 0: such ports take the next free numbers.
  int nextNumber = 1;
  for (const SPort* port : ports)
    for (int number : port->GetNumbers())
      if (number >= nextNumber) nextNumber = number + 1;
  std::set<const SCoupledGroup*> written;
  for (const SPort* port : ports) {
    if (port->GetType() == SPortData::Component) continue;
    const bool renumber = port->GetNumber(0) == 0 && format < 19;
    port->Write(out, format, renumber ? nextNumber++ : port->GetNumber(0));
    const SCoupledGroup* group = port->GetGroup();
    if (port->GetType() == SPortData::CoCalibrated && format >= 7 && group != nullptr && written.insert(group).second)
      group->Write(out, format);
  }
}

void WriteCoupledGroups(SProjectStream& out, const SCircuit& circuit, const std::vector<SPort*>& ports, int format) {
  std::set<const SCoupledGroup*> withPort;
  if (format >= 7)
    for (const SPort* port : ports)
      if (port->GetType() == SPortData::CoCalibrated && port->GetGroup() != nullptr) withPort.insert(port->GetGroup());
  std::vector<SCoupledGroup*> groups;
  circuit.CollectObjects(groups);
  for (const SCoupledGroup* group : groups)
    if (withPort.count(group) == 0) group->Write(out, format);
}

void CreateBoxRefPlanes(SCircuit& circuit) {
  for (int side = SBoxSide::Left; side <= SBoxSide::Bottom; ++side)
    if (circuit.GetRefPlane(side) == nullptr) circuit.AddObject(new SRefPlane(side, SRefPlane::BoxPlane));
}

const SSubsectionControls* TemplateControls(const STechLayer* layer) {
  return layer != nullptr ? layer->GetTemplate() : nullptr;
}

SString TechLayerName(const STechLayer* layer) { return layer != nullptr ? layer->GetName() : SString(); }

bool TechLayerUses(const STechLayer* layer, const void* type) {
  return layer != nullptr && type != nullptr && layer->GetMaterialTypeData() == type;
}

void GetPorts(const SMetalPolygon& polygon, std::vector<SPort*>& list) { ChildrenOf(polygon, list); }

void GetEdgeVias(const SMetalPolygon& polygon, std::vector<SEdgeVia*>& list) { ChildrenOf(polygon, list); }

SPort* FindPortAtVertex(const SMetalPolygon& polygon, int vertex) {
  std::vector<SPort*> ports;
  GetPorts(polygon, ports);
  for (SPort* port : ports)
    if (port->GetEdge() == vertex) return port;
  return nullptr;
}

void GetAllPorts(const SCircuit& circuit, std::vector<SPort*>& list) {
  std::vector<SEnclosure*> shapes;
  circuit.CollectPolygons(shapes, SCircuit::MetalAndVia);
  for (const SEnclosure* shape : shapes) GetPorts(*static_cast<const SMetalPolygon*>(shape), list);
}
}  // namespace SGeoObjectIO

// ---- the circuit's side

SRefPlane* SCircuit::GetRefPlane(int side) const {
  for (size_t i = 0; i < GetNumberOfChildren(); ++i) {
    SBaseEnclosure* child = GetChild(i);
    if (child->isA() != SID_REFPLANE) continue;
    SRefPlane* plane = static_cast<SRefPlane*>(child);
    if (plane->GetSide() == side && plane->GetType() == SRefPlane::BoxPlane) return plane;
  }
  return nullptr;
}

STechLayer* SCircuit::FindTechLayer(const SString& name) const { return STechLayer::Find(*this, name, STechLayer::ByName); }

void SCircuit::GetTechLayers(std::vector<STechLayer*>& list) const { STechLayer::GetAll(*this, list); }
