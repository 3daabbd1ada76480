#include "STechLayer.h"

#include "SBrickPolygon.h"
#include "SBrickType.h"
#include "SCircuit.h"
#include "SFile.h"
#include "SFileBlock.h"
#include "SGeoClassID.h"
#include "SLevel.h"
#include "SMaterialTypeData.h"
#include "SMetalType.h"
#include "SNumberFormat.h"
#include "SProjectErrorManager.h"
#include "SProjectStream.h"
#include "SRegexp.h"
#include "SViaMetalType.h"
#include "SViaPolygon.h"
#include "SWordTable.h"

#include <QRegExp>
#include <QXmlStreamWriter>

#include <map>
#include <set>

SCOLLECTABLE_DEFINE(STechLayer, SID_TECHLAYER, &SObjectEnclosure::staticTypeInfo())

namespace {
// The shape data of a metal, via or brick polygon.
SShapeData* ShapeOf(SBaseEnclosure* node) {
  if (node == nullptr) return nullptr;
  switch (node->isA()) {
  case SID_METALPOLYGON:
  case SID_VIAPOLYGON: return static_cast<SMetalPolygon*>(node);
  case SID_BRICKPOLYGON: return static_cast<SBrickPolygon*>(node);
  default: return nullptr;
  }
}

SViaPolygon* ViaOf(SBaseEnclosure* node) {
  return node != nullptr && node->isA() == SID_VIAPOLYGON ? static_cast<SViaPolygon*>(node) : nullptr;
}

// The attribute equality by which polygons of one layer are grouped.
bool SameAttributes(SBaseEnclosure* a, SBaseEnclosure* b) {
  const SShapeData* x = ShapeOf(a);
  const SShapeData* y = ShapeOf(b);
  if (x == nullptr || y == nullptr || a->isA() != b->isA()) return false;
  if (x->GetMaterial() != y->GetMaterial() || x->GetFillType() != y->GetFillType() ||
      x->GetIsotropy() != y->GetIsotropy() || x->GetXMin() != y->GetXMin() || x->GetYMin() != y->GetYMin() ||
      x->GetXMax() != y->GetXMax() || x->GetYMax() != y->GetYMax() || x->GetMaxSubLen() != y->GetMaxSubLen() ||
      x->GetEdgeTruncation() != y->GetEdgeTruncation() || x->GetFlatness() != y->GetFlatness() ||
      x->GetCurrentSym() != y->GetCurrentSym() || x->GetEdgeMesh() != y->GetEdgeMesh())
    return false;
  const SViaPolygon* u = ViaOf(a);
  const SViaPolygon* v = ViaOf(b);
  if (u == nullptr) return true;
  return u->GetToLevelType() == v->GetToLevelType() && u->GetToLevel() == v->GetToLevel() &&
         u->GetViaFill() == v->GetViaFill() && u->HasCovers() == v->HasCovers();
}

// Controls (the values in force), material and via target of `from` onto `to`.
void CopyAttributes(SBaseEnclosure* to, SBaseEnclosure* from) {
  SShapeData* target = ShapeOf(to);
  const SShapeData* source = ShapeOf(from);
  if (target == nullptr || source == nullptr) return;
  SSubsectionControls values;
  values.SetFillType(source->GetFillType());
  values.SetIsotropy(source->GetIsotropy());
  values.SetLimits(source->GetXMin(), source->GetYMin(), source->GetXMax(), source->GetYMax());
  values.SetMaxSubLen(source->GetMaxSubLen());
  values.SetEdgeTruncation(source->GetEdgeTruncation());
  values.SetFlatness(source->GetFlatness());
  values.SetCurrentSym(source->GetCurrentSym());
  values.SetEdgeMesh(source->GetEdgeMesh());
  values.SetRemainder(source->GetRemainder());
  target->CopyControls(values);
  target->SetMaterial(source->GetMaterial());
  SViaPolygon* via = ViaOf(to);
  const SViaPolygon* sourceVia = ViaOf(from);
  if (via != nullptr && sourceVia != nullptr) {
    via->SetToLevel(sourceVia->GetToLevel());
    via->SetToLevelType(sourceVia->GetToLevelType());
    via->SetViaFill(sourceVia->GetViaFill());
    via->SetCovers(sourceVia->HasCovers());
  }
}

// The short form is "T" and "G" for the top and the ground.
SString ToLevelPart(int type, int level, bool shortForm) {
  const SString text = SViaData::ToLevelText(type, level);
  return shortForm && type != STechLayer::ToLevelNumber ? text.left(1) : text;
}
}  // namespace

STechLayer::STechLayer() {}

STechLayer::~STechLayer() {}

int STechLayer::compareTo(const SCollectable* other) const {
  if (other == nullptr || !other->isKindOf(STechLayer::staticTypeInfo())) return SObjectEnclosure::compareTo(other);
  const STechLayer* that = static_cast<const STechLayer*>(other);
  if (GetLevel() != that->GetLevel()) return GetLevel() < that->GetLevel() ? -1 : 1;
  if (itsLayerType != that->itsLayerType) return itsLayerType < that->itsLayerType ? -1 : 1;
  return itsName.compare(that->itsName);
}

SCircuit* STechLayer::Circuit() const { return GetCircuit(); }

// ---- name

SString STechLayer::UniqueName(const SString& name, const std::vector<SString>& taken) {
  bool clash = false;
  for (const SString& other : taken)
    if (other == name) clash = true;
  if (!clash) return name;
  static const QRegExp kDigits("[0-9]+$");
  const auto split = [](const SString& text, long long& number) {
    const int at = kDigits.indexIn(text.qstring());
    bool ok = false;
    number = at >= 0 ? text.qstring().mid(at).toLongLong(&ok) : 0;
    if (!ok) number = 0;
    return at >= 0 ? text.left(at) : text;
  };
  long long number = 0;
  const SString base = split(name, number);
  std::set<long long> used;
  for (const SString& other : taken) {
    long long n = 0;
    if (split(other, n) == base) used.insert(n);
  }
  long long free = 1;
  while (used.count(free) != 0) ++free;
  return base + SString::number(free);
}

void STechLayer::SetName(const SString& name) {
  itsName = name;
  const SCircuit* circuit = Circuit();
  if (circuit == nullptr) return;
  std::vector<STechLayer*> layers;
  GetAll(*circuit, layers);
  std::vector<SString> taken;
  for (const STechLayer* layer : layers)
    if (layer != this) taken.push_back(layer->itsName);
  itsName = UniqueName(name, taken);
}

// ---- type and template

const char* STechLayer::LayerTypeWord(int type) {
  switch (type) {
  case Metal: return "METAL";
  case Via: return "VIA";
  case Brick: return "BRICK";
  default: return "NONE";
  }
}

void STechLayer::MakeTemplate(int type) {
  SEnclosure* shape = nullptr;
  switch (type) {
  case Metal: shape = new SMetalPolygon; break;
  case Via: shape = new SViaPolygon; break;
  case Brick: shape = new SBrickPolygon; break;
  default: return;
  }
  // Owned here, but not a child: the polygon walks of the level must not meet it.
  shape->SetOwner(this);
  itsTemplate.reset(shape);
}

void STechLayer::SetLayerType(int type) {
  if (itsLayerType != NoType || type < Metal || type > Brick) return;
  itsLayerType = type;
  MakeTemplate(type);
}

SShapeData* STechLayer::GetTemplate() const { return ShapeOf(itsTemplate.get()); }

SMetalPolygon* STechLayer::GetMetalTemplate() const {
  return itsLayerType == Metal ? static_cast<SMetalPolygon*>(itsTemplate.get()) : nullptr;
}

SViaPolygon* STechLayer::GetViaTemplate() const {
  return itsLayerType == Via ? static_cast<SViaPolygon*>(itsTemplate.get()) : nullptr;
}

SBrickPolygon* STechLayer::GetBrickTemplate() const {
  return itsLayerType == Brick ? static_cast<SBrickPolygon*>(itsTemplate.get()) : nullptr;
}

// ---- level

int STechLayer::GetLevel() const {
  if (itsOwner != nullptr && itsOwner->isA() == SID_LEVEL) return static_cast<const SLevel*>(itsOwner)->GetIndex();
  return itsTemplateLevel;
}

void STechLayer::SetLevel(int level) {
  SCircuit* circuit = Circuit();
  if (circuit == nullptr) {
    itsTemplateLevel = level;
    return;
  }
  SLevel* target = circuit->GetLevel(level);
  if (target == nullptr || target == itsOwner) return;
  if (itsOwner != nullptr) itsOwner->RemoveChild(this);
  target->AddChild(this);
  itsTemplateLevel = level;
}

template <class Set> void STechLayer::SetViaTarget(Set set) {
  SViaPolygon* via = GetViaTemplate();
  if (via == nullptr) return;
  set(*via);
  std::vector<SEnclosure*> polygons;
  GetPolygons(polygons);
  for (SEnclosure* polygon : polygons)
    if (SViaPolygon* own = ViaOf(polygon))
      if (!own->FollowsTechLayer()) set(*own);
}

void STechLayer::SetToLevel(int level) {
  SetViaTarget([level](SViaPolygon& via) { via.SetToLevel(level); });
}

void STechLayer::SetToLevelType(int type) {
  SetViaTarget([type](SViaPolygon& via) { via.SetToLevelType(type); });
}

int STechLayer::GetToLevel() const {
  const SViaPolygon* via = GetViaTemplate();
  return via != nullptr ? via->GetToLevel() : 0;
}

int STechLayer::GetToLevelType() const {
  const SViaPolygon* via = GetViaTemplate();
  return via != nullptr ? via->GetToLevelType() : 0;
}

int STechLayer::GetViaFillType() const {
  const SViaPolygon* via = GetViaTemplate();
  return via != nullptr ? via->GetViaFill() : 1;
}

bool STechLayer::GetHasCovers() const {
  const SViaPolygon* via = GetViaTemplate();
  return via != nullptr ? via->HasCovers() : true;
}

void STechLayer::SetViaFillType(int fill) {
  if (SViaPolygon* via = GetViaTemplate()) via->SetViaFill(fill);
}

void STechLayer::SetHasCovers(bool on) {
  if (SViaPolygon* via = GetViaTemplate()) via->SetCovers(on);
}

// ---- material

void STechLayer::SetMaterial(SMaterialTypeData* material) {
  if (SShapeData* shape = GetTemplate()) shape->SetMaterial(material);
}

SMaterialTypeData* STechLayer::GetMaterialTypeData() const {
  const SShapeData* shape = GetTemplate();
  return shape != nullptr ? shape->GetMaterial() : nullptr;
}

SMetalType* STechLayer::GetMetalType() const {
  const SCircuit* circuit = Circuit();
  const SMaterialTypeData* material = GetMaterialTypeData();
  if (itsLayerType != Metal || circuit == nullptr || material == nullptr) return nullptr;
  return circuit->FindMetalType(material->GetTypeName());
}

SViaMetalType* STechLayer::GetViaMetalType() const {
  const SCircuit* circuit = Circuit();
  const SMaterialTypeData* material = GetMaterialTypeData();
  if (itsLayerType != Via || circuit == nullptr || material == nullptr) return nullptr;
  return circuit->FindViaMetalType(material->GetTypeName());
}

SBrickType* STechLayer::GetBrickType() const {
  const SCircuit* circuit = Circuit();
  const SMaterialTypeData* material = GetMaterialTypeData();
  if (itsLayerType != Brick || circuit == nullptr || material == nullptr) return nullptr;
  return circuit->FindBrickType(material->GetTypeName());
}

void STechLayer::RelinkMaterial(const STechLayer* other) {
  const SCircuit* circuit = Circuit();
  if (circuit == nullptr) return;
  const SString name = (other != nullptr ? other : this)->GetMaterialName();
  if (name.isEmpty()) return;
  SMaterialTypeData* found = nullptr;
  switch (itsLayerType) {
  case Metal: found = circuit->FindMetalType(name); break;
  case Via: found = circuit->FindViaMetalType(name); break;
  case Brick: found = circuit->FindBrickType(name); break;
  default: break;
  }
  if (found != nullptr) SetMaterial(found);
}

SString STechLayer::GetMaterialName() const {
  if (!itsMaterialText.isEmpty()) return itsMaterialText;
  const SMaterialTypeData* material = GetMaterialTypeData();
  return material != nullptr ? material->GetTypeName() : SString();
}

int STechLayer::GetMaterialIndex() const {
  const SMaterialTypeData* material = GetMaterialTypeData();
  return material != nullptr ? material->GetFileId() : 0;
}

// ---- forwarded attributes

int STechLayer::GetFillType() const { return GetTemplate() != nullptr ? GetTemplate()->GetFillType() : 0; }
int STechLayer::GetIsoType() const { return GetTemplate() != nullptr ? GetTemplate()->GetIsotropy() : 0; }
bool STechLayer::GetEdgeMesh() const { return GetTemplate() != nullptr && GetTemplate()->GetEdgeMesh(); }
int STechLayer::GetXMin() const { return GetTemplate() != nullptr ? GetTemplate()->GetXMin() : 0; }
int STechLayer::GetYMin() const { return GetTemplate() != nullptr ? GetTemplate()->GetYMin() : 0; }
int STechLayer::GetXMax() const { return GetTemplate() != nullptr ? GetTemplate()->GetXMax() : 0; }
int STechLayer::GetYMax() const { return GetTemplate() != nullptr ? GetTemplate()->GetYMax() : 0; }
double STechLayer::GetMaxLength() const { return GetTemplate() != nullptr ? GetTemplate()->GetMaxSubLen() : 0.0; }

namespace {
const char* const kFillTypes[] = {"Staircase", "Conformal", "Diagonal", "*Hidden", nullptr, nullptr, "*Corner", "*Both"};
const char* const kIsoTypes[] = {"X and Y", "X Only", "Y Only"};
}  // namespace

const char* STechLayer::FillTypeText(int code) { return SWordTable::WordOf(kFillTypes, code, "unknown"); }
int STechLayer::FillTypeFromText(const SString& text) { return SWordTable::CodeOf(kFillTypes, text, 0); }
const char* STechLayer::IsoTypeText(int code) { return SWordTable::WordOf(kIsoTypes, code, "unknown"); }
int STechLayer::IsoTypeFromText(const SString& text) { return SWordTable::CodeOf(kIsoTypes, text, 0); }

// ---- texts and keys

SString STechLayer::GetLevelText() const {
  if (!itsLevelText.isEmpty()) return itsLevelText;
  const SCircuit* circuit = Circuit();
  const int level = GetLevel();
  SString text = circuit != nullptr && level == circuit->GetNumberOfLevels() - 1 ? SString("GND") : SString::number(static_cast<long long>(level));
  if (itsLayerType == Via) {
    text += "-";
    text += ToLevelPart(GetToLevelType(), GetToLevel(), false);
  }
  return text;
}

SString STechLayer::GetStreamLabel() const {
  return SString("Stream-") + SNumberFormat::ToString(itsStream, 4) + "-" + SNumberFormat::ToString(itsData, 4);
}

SString STechLayer::GetMappingSummary() const {
  QStringList parts;
  if (!itsDXFName.isEmpty()) parts << QStringLiteral("DXF: ") + itsDXFName.qstring();
  if (itsStream >= 0 && itsData >= 0)
    parts << QStringLiteral("GDSII: ") + SNumberFormat::ToString(itsStream, 10).qstring() + ':' +
                 SNumberFormat::ToString(itsData, 10).qstring();
  if (!itsGerberName.isEmpty()) parts << QStringLiteral("Gerber: ") + itsGerberName.qstring();
  return parts.isEmpty() ? SString("Default Mappings") : SString(parts.join(QStringLiteral(", ")));
}

bool STechLayer::Matches(const SString& key, int kind) const {
  if (key.isEmpty()) return false;
  switch (kind) {
  case AnyKey:
    for (int k = ByName; k <= ByGerberName; ++k)
      if (Matches(key, k)) return true;
    return false;
  case ByName: return key == itsName;
  case ByDXFName: return key == GetDXFNameOrName();
  case ByStreamLabel: return key == GetStreamLabel();
  case ByGerberName: return key == GetGerberNameOrName();
  case ById: return key == SString::number(GetId());
  default: return false;
  }
}

SString STechLayer::GetDescription() const { return SString("Tech Layer = ") + itsName; }

// ---- polygons

void STechLayer::GetPolygons(std::vector<SEnclosure*>& list) const {
  const SCircuit* circuit = Circuit();
  if (circuit == nullptr) return;
  std::vector<SEnclosure*> shapes;
  circuit->CollectPolygons(shapes);
  for (SEnclosure* shape : shapes) {
    const SShapeData* data = ShapeOf(shape);
    if (data != nullptr && data->GetTechLayer() == this) list.push_back(shape);
  }
}

int STechLayer::GetPolygonCount() const {
  std::vector<SEnclosure*> polygons;
  GetPolygons(polygons);
  return polygons.empty() ? itsPolygonCount : static_cast<int>(polygons.size());
}

int STechLayer::GetFollowingPolygonCount() const {
  std::vector<SEnclosure*> polygons;
  GetPolygons(polygons);
  if (polygons.empty()) return itsDifferingCount;
  int count = 0;
  for (SEnclosure* polygon : polygons)
    if (polygon->isA() != SID_VIAPOLYGON && !ShapeOf(polygon)->FollowsTechLayer()) ++count;
  return count;
}

SEnclosure* STechLayer::AdoptCommonAttributes(bool markPolygons) {
  std::vector<SEnclosure*> polygons;
  GetPolygons(polygons);
  if (polygons.empty() || !itsTemplate) return nullptr;
  if (markPolygons)
    for (SEnclosure* polygon : polygons) ShapeOf(polygon)->SetTechLayer(this, false);
  std::vector<std::vector<SEnclosure*>> groups;
  for (SEnclosure* polygon : polygons) {
    bool placed = false;
    for (auto& group : groups)
      if (SameAttributes(group.front(), polygon)) {
        group.push_back(polygon);
        placed = true;
        break;
      }
    if (!placed) groups.push_back({polygon});
  }
  size_t best = 0;
  for (size_t i = 1; i < groups.size(); ++i)
    if (groups[i].size() > groups[best].size()) best = i;
  SEnclosure* model = groups[best].front();
  CopyAttributes(itsTemplate.get(), model);
  if (markPolygons)
    for (SEnclosure* polygon : groups[best]) ShapeOf(polygon)->SetTechLayer(this, true);
  return model;
}

void STechLayer::CopyFrom(const STechLayer& other) {
  if (&other == this) return;
  itsTemplate.reset();
  itsLayerType = NoType;
  itsMaterialText = other.itsMaterialText;
  itsLevelText = other.itsLevelText;
  SetName(other.itsName);
  itsDXFName = other.itsDXFName;
  itsGerberName = other.itsGerberName;
  itsShieldName = other.itsShieldName;
  itsCapMetalName = other.itsCapMetalName;
  itsStream = other.itsStream;
  itsData = other.itsData;
  SetLayerType(other.itsLayerType);
  if (other.itsTemplate && itsTemplate) CopyAttributes(itsTemplate.get(), other.itsTemplate.get());
  if (itsOwner == nullptr) itsTemplateLevel = other.GetLevel();
  SetChanged(other.IsChanged());
  itsFromSTF = other.itsFromSTF;
  std::vector<SEnclosure*> polygons;
  other.GetPolygons(polygons);
  itsPolygonCount = other.GetPolygonCount();
  itsDifferingCount = other.GetFollowingPolygonCount();
  RelinkMaterial(&other);
}

// ---- the circuit's layers

void STechLayer::GetAll(const SCircuit& circuit, std::vector<STechLayer*>& list) {
  for (int i = 0; i < circuit.GetNumberOfLevels(); ++i) {
    const SLevel* level = circuit.GetLevel(i);
    size_t wanted = level->GetTechLayerCount();
    for (size_t c = 0; wanted > 0 && c < level->GetNumberOfChildren(); ++c)
      if (level->GetChild(c)->isA() == SID_TECHLAYER) {
        list.push_back(static_cast<STechLayer*>(level->GetChild(c)));
        --wanted;
      }
  }
}

STechLayer* STechLayer::Find(const SCircuit& circuit, const SString& key, int kind) {
  if (key.isEmpty()) return nullptr;
  std::vector<STechLayer*> layers;
  GetAll(circuit, layers);
  for (STechLayer* layer : layers)
    if (layer->Matches(key, kind)) return layer;
  return nullptr;
}

STechLayer* STechLayer::MakeOnLevel(SCircuit& circuit, int type, const SString& name, int level) {
  SLevel* owner = circuit.GetLevel(level);
  if (owner == nullptr) return nullptr;
  STechLayer* layer = new STechLayer;
  layer->SetLayerType(type);
  owner->AddChild(layer);
  layer->itsTemplateLevel = level;
  layer->SetName(name);
  return layer;
}

STechLayer* STechLayer::GetOrCreate(SCircuit& circuit, int type, const SString& name, int level, int toLevel,
                                    bool* created) {
  if (created != nullptr) *created = false;
  if (STechLayer* found = Find(circuit, name, ByName)) return found;
  STechLayer* layer = MakeOnLevel(circuit, type, name, level);
  if (layer == nullptr) return nullptr;
  if (type == Via) layer->SetToLevel(toLevel);
  if (created != nullptr) *created = true;
  return layer;
}

STechLayer* STechLayer::Create(SCircuit& circuit, int type, const SString& name, int level, int toLevel, int& counter,
                               int viaFill, bool covers) {
  STechLayer* layer = MakeOnLevel(circuit, type, name, level);
  if (layer == nullptr) return nullptr;
  if (type == Via) {
    layer->SetToLevel(toLevel);
    layer->SetViaFillType(viaFill);
    layer->SetHasCovers(covers);
  }
  layer->itsStream = -counter;
  layer->itsData = 0;
  ++counter;
  return layer;
}

void STechLayer::Delete(STechLayer* layer) {
  if (layer == nullptr) return;
  std::vector<SEnclosure*> polygons;
  layer->GetPolygons(polygons);
  for (SEnclosure* polygon : polygons) ShapeOf(polygon)->SetTechLayer(nullptr, false);
  if (layer->itsOwner != nullptr) layer->itsOwner->RemoveChild(layer);
  delete layer;
}

bool STechLayer::CreateFromPolygons(SCircuit& circuit) {
  std::vector<SEnclosure*> shapes;
  circuit.CollectPolygons(shapes);
  // Every polygon leaves its layer with the values it showed.
  for (SEnclosure* shape : shapes) {
    SShapeData* data = ShapeOf(shape);
    STechLayer* layer = data->GetTechLayer();
    if (layer != nullptr && data->FollowsTechLayer() && layer->itsTemplate) {
      const bool via = shape->isA() == SID_VIAPOLYGON;
      const int fill = via ? ViaOf(shape)->GetViaFill() : 0;
      const bool covers = via && ViaOf(shape)->HasCovers();
      CopyAttributes(shape, layer->itsTemplate.get());
      if (via) {
        // A via keeps its own fill and covers; only the target comes from the layer.
        ViaOf(shape)->SetViaFill(fill);
        ViaOf(shape)->SetCovers(covers);
      }
    }
    data->SetTechLayer(nullptr, false);
  }
  std::vector<STechLayer*> old;
  GetAll(circuit, old);
  for (STechLayer* layer : old) Delete(layer);

  const int ground = circuit.GetNumberOfLevels() - 1;
  std::vector<STechLayer*> made;
  std::map<QString, int> materialUse;
  for (SEnclosure* shape : shapes) {
    SShapeData* data = ShapeOf(shape);
    const int levelIndex = shape->isA() == SID_BRICKPOLYGON ? static_cast<SBrickPolygon*>(shape)->GetLevelIndex()
                                                            : static_cast<SMetalPolygon*>(shape)->GetLevelIndex();
    const SString levelPart = levelIndex == ground ? SString("G") : SString::number(static_cast<long long>(levelIndex));
    const bool brick = shape->isA() == SID_BRICKPOLYGON;
    const SString material =
        data->GetMaterial() != nullptr ? data->GetMaterial()->GetTypeName() : SString(brick ? "Air" : "Lossless");
    SString name;
    int type = Metal;
    if (shape->isA() == SID_VIAPOLYGON) {
      const SViaPolygon* via = ViaOf(shape);
      name = material + "_" + levelPart + "_" + ToLevelPart(via->GetToLevelType(), via->GetToLevel(), true);
      type = Via;
    } else if (brick) {
      name = SString("B_") + material + "_" + levelPart;
      type = Brick;
    } else {
      name = material + "_" + levelPart;
    }
    bool created = false;
    STechLayer* layer = GetOrCreate(circuit, type, name, levelIndex, 0, &created);
    if (layer == nullptr) continue;
    if (created) {
      layer->SetMaterial(data->GetMaterial());
      if (type == Via) {
        layer->SetToLevel(ViaOf(shape)->GetToLevel());
        layer->SetToLevelType(ViaOf(shape)->GetToLevelType());
      }
      made.push_back(layer);
      ++materialUse[material.qstring()];
    }
    data->SetTechLayer(layer, true);
  }
  for (STechLayer* layer : made) {
    layer->AdoptCommonAttributes(true);
    const SString material = layer->GetMaterialTypeData() != nullptr ? layer->GetMaterialTypeData()->GetTypeName()
                                                                     : SString(layer->itsLayerType == Brick ? "Air" : "Lossless");
    if (materialUse[material.qstring()] == 1) layer->SetName(material);
  }
  std::vector<STechLayer*> all;
  GetAll(circuit, all);
  int stream = -1;
  for (int type : {Metal, Via, Brick})
    for (auto it = all.rbegin(); it != all.rend(); ++it) {
      STechLayer* layer = *it;
      if (layer->itsLayerType != type) continue;
      layer->itsDXFName.clear();
      layer->itsGerberName.clear();
      layer->itsData = 0;
      layer->itsStream = stream--;
    }
  return !made.empty();
}

// ---- file

void STechLayer::Write(SProjectStream& out, int format, bool shortForm) const {
  out << "TECHLAY " << LayerTypeWord(itsLayerType) << ' ';
  out.Name(itsName);
  out << ' ';
  if (itsDXFName.isEmpty())
    out << "<UNSPECIFIED>";
  else
    out.Name(itsDXFName);
  out << ' ' << itsStream << ' ' << itsData << ' ';
  if (!itsGerberName.isEmpty()) {
    out << "GBR ";
    out.Name(itsGerberName);
    out << ' ';
  }
  if (shortForm) {
    const SString material = GetMaterialName();
    out << "CVT ";
    if (material.isEmpty())
      out << "\"\"";
    else
      out.Name(material);
    out << ' ' << GetLevelText() << "\nEND\n";
    return;
  }
  out << '\n';
  const int level = GetLevel();
  switch (itsLayerType) {
  case Metal: GetMetalTemplate()->Write(out, level, format); break;
  case Via: GetViaTemplate()->Write(out, level, format); break;
  case Brick: GetBrickTemplate()->Write(out, level, format, 1.0); break;
  default: break;
  }
  out << "END\n";
}

namespace {
bool TechLayFault(SProjectErrorManager& errors, const SFile& file, const char* what) {
  errors.AddError(SProjectErrorManager::Warning, static_cast<int>(file.LineCount()), 7132, what);
  return false;
}

bool IsEnd(SFile& file) {
  SString token;
  return file.PeekToken(token) && SFileBlock::Match(token, "END");
}
}  // namespace

bool STechLayer::Read(SFile& file, SProjectErrorManager& errors) {
  SetLine(file.LineCount());
  SString token;
  if (!file.GetToken(token)) return TechLayFault(errors, file, "The TECHLAY line");
  if (token == "METAL")
    SetLayerType(Metal);
  else if (token == "VIA")
    SetLayerType(Via);
  else if (token == "BRICK")
    SetLayerType(Brick);
  if (!file.GetToken(token)) return TechLayFault(errors, file, "The TECHLAY line (name)");
  itsName = token;
  if (!file.GetToken(token)) return TechLayFault(errors, file, "The TECHLAY line (DXF name)");
  itsDXFName = token == "<UNSPECIFIED>" ? SString() : token;
  if (!file.GetInt(itsStream)) return TechLayFault(errors, file, "The TECHLAY line (GDS Stream)");
  if (!file.GetInt(itsData)) return TechLayFault(errors, file, "The TECHLAY line (GDS Data)");
  while (file.GetToken(token)) {
    if (token == "CVT") {
      if (!file.GetToken(itsMaterialText) || !file.GetToken(itsLevelText))
        return TechLayFault(errors, file, "The TECHLAY line (CVT)");
    } else if (token == "GBR") {
      if (!file.GetToken(itsGerberName)) return TechLayFault(errors, file, "The TECHLAY line (GBR)");
    }
  }
  if (!file.NextLine()) return TechLayFault(errors, file, "The TECHLAY line (poly)");
  if (file.PeekToken(token) && token == "END") return true;
  if (itsLayerType != Metal && itsLayerType != NoType && !file.NextLine())
    return TechLayFault(errors, file, "The TECHLAY line (poly)");
  long long level = 0;
  bool ok = true;
  switch (itsLayerType) {
  case Metal: ok = GetMetalTemplate()->Read(file, errors, level); break;
  case Via: ok = GetViaTemplate()->Read(file, errors, level); break;
  case Brick: ok = GetBrickTemplate()->Read(file, errors, level, 1.0); break;
  default:
    // No template to read into: pass over the record.
    while (!IsEnd(file))
      if (!file.NextLine()) return false;
    break;
  }
  if (!ok) return false;
  // A template's id means nothing and must not take the line number that 0 stands for.
  if (itsTemplate) itsTemplate->SetId(0);
  itsTemplateLevel = static_cast<int>(level);
  do {
    if (!file.NextLine()) return false;
  } while (!IsEnd(file));
  return true;
}

void STechLayer::WriteSummaryXml(QXmlStreamWriter& xml) const {
  xml.writeStartElement(QStringLiteral("techlayer"));
  const char* type = itsLayerType == Via ? "Via" : itsLayerType == Brick ? "Brick" : "Metal";
  xml.writeAttribute(QStringLiteral("type"), QString::fromLatin1(type));
  xml.writeAttribute(QStringLiteral("name"), itsName.qstring());
  xml.writeAttribute(QStringLiteral("material"), GetMaterialName().qstring());
  xml.writeAttribute(QStringLiteral("level"), QString::number(GetLevel()));
  if (itsLayerType == Via)
    xml.writeAttribute(QStringLiteral("tolevel"), ToLevelPart(GetToLevelType(), GetToLevel(), false).qstring());
  xml.writeAttribute(QStringLiteral("filltype"), QString::fromLatin1(FillTypeText(GetFillType())));
  xml.writeAttribute(QStringLiteral("isotype"), QString::fromLatin1(IsoTypeText(GetIsoType())));
  xml.writeEndElement();
}
