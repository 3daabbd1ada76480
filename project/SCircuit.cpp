#include "SCircuit.h"

#include "SBrickPolygon.h"
#include "SDimensionBlock.h"
#include "SFile.h"
#include "SFileBlock.h"
#include "SGeoClassID.h"
#include "SGeoObjectIO.h"
#include "SGeoVar.h"
#include "SLevel.h"
#include "SMarker.h"
#include "SMetalElement.h"
#include "SMaterialTypeData.h"
#include "SMaterialTypeIO.h"
#include "SMetalType.h"
#include "SVeloraError.h"
#include "SNumberFormat.h"
#include "SProject.h"
#include "SPolygonScanner.h"
#include "SProgress.h"
#include "SProjectErrorManager.h"
#include "SProjectFile.h"
#include "SProjectStream.h"
#include "SSMDev.h"
#include "STechLayer.h"
#include "SValvarLine.h"
#include "SVariable.h"
#include "SVeloraDirectoryInstance.h"
#include "SVeloraTrace.h"
#include "SViaPolygon.h"

#include <QFile>
#include <future>
#include <system_error>
#include <QSet>
#include <QTextStream>

#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <functional>
#include <memory>

SCOLLECTABLE_DEFINE(SCircuit, SID_CIRCUIT, &SEnclosure::staticTypeInfo())

// ---- box data

SCircuitData::SCircuitData() : itsCircuitSize(160.0, 160.0) {
  itsNumCellsX.SetName("Box Num Cells in X");
  itsNumCellsY.SetName("Box Num Cells in Y");
  itsNumCellsX.SetValue(16);
  itsNumCellsY.SetValue(16);
}

SSize SCircuitData::GetCellSize() const {
  const int nx = GetNumCellsX(), ny = GetNumCellsY();
  return SSize(nx > 0 ? itsCircuitSize.width() / nx : 0.0, ny > 0 ? itsCircuitSize.height() / ny : 0.0);
}

const char* SCircuitData::SnapAngleText(int code) {
  switch (code) {
  case Snap90: return "90";
  case Snap30: return "30";
  case Snap22_5: return "22.5";
  case Snap5: return "5";
  default: return "45";
  }
}

int SCircuitData::SnapAngleCode(const SString& text) {
  for (int code : {Snap90, Snap30, Snap22_5, Snap5})
    if (text == SnapAngleText(code)) return code;
  return Snap45;
}

// ---- circuit

SCircuit::SCircuit(SProject* project) : itsProject(project) {}

SCircuit::~SCircuit() {
  for (SReadMetal*& data : itsReadMetal) {
    SMaterialTypeIO::DeleteReadMetal(data);
    data = nullptr;
  }
  itsAnnotations.clearAndDestroy();
  delete itsLocalOrigin;
}

void SCircuit::InitNew() {
  SMaterialTypeIO::CreateBuiltInTypes(*this);
  AddLevel();
  AddLevel();
  SGeoObjectIO::CreateBoxRefPlanes(*this);
  delete itsLocalOrigin;
  itsLocalOrigin = new SMarker;
  itsLocalOrigin->SetPosition(SPoint(0.0, itsCircuitSize.height()));
}

SLevel* SCircuit::GetLevel(int index) const {
  return index >= 0 && index < GetNumberOfLevels() ? itsLevels[static_cast<size_t>(index)] : nullptr;
}

SLevel* SCircuit::AddLevel() {
  SLevel* level = new SLevel(this, GetNumberOfLevels());
  level->SetProject(itsProject);
  itsLevels.push_back(level);
  return level;
}

void SCircuit::SetNumberOfLevels(int count) {
  if (count < 0) count = 0;
  while (GetNumberOfLevels() > count) {
    SLevel* level = itsLevels.back();
    // A layer goes with its level, but polygons on other levels may still follow it.
    std::vector<STechLayer*> layers;
    for (size_t i = 0; i < level->GetNumberOfChildren(); ++i)
      if (level->GetChild(i)->isA() == SID_TECHLAYER) layers.push_back(static_cast<STechLayer*>(level->GetChild(i)));
    for (STechLayer* layer : layers) STechLayer::Delete(layer);
    itsLevels.pop_back();
    RemoveChild(level);
    delete level;
  }
  while (GetNumberOfLevels() < count) AddLevel();
}

namespace {
bool KindMatches(const SBaseEnclosure* node, int kind) {
  const ClassID id = node->isA();
  switch (kind) {
  case SCircuit::MetalPolygons: return id == SID_METALPOLYGON;
  case SCircuit::ViaPolygons: return id == SID_VIAPOLYGON;
  case SCircuit::BrickPolygons: return id == SID_BRICKPOLYGON;
  case SCircuit::MetalAndVia: return id == SID_METALPOLYGON || id == SID_VIAPOLYGON;
  default: return id == SID_METALPOLYGON || id == SID_VIAPOLYGON || id == SID_BRICKPOLYGON;
  }
}

// Groups nest; an explicit stack keeps a deep file from running the call stack out.
template <class Visit> void WalkShapes(const SBaseEnclosure* root, bool recursive, Visit visit) {
  std::vector<std::pair<const SBaseEnclosure*, size_t>> stack;
  stack.emplace_back(root, 0);
  while (!stack.empty()) {
    auto& top = stack.back();
    if (top.second >= top.first->GetNumberOfChildren()) {
      stack.pop_back();
      continue;
    }
    const SBaseEnclosure* child = top.first->GetChild(top.second++);
    const ClassID id = child->isA();
    if (id == SID_OBJECTENCLOSURE) {
      if (recursive) stack.emplace_back(child, 0);
    } else if (id == SID_METALPOLYGON || id == SID_VIAPOLYGON || id == SID_BRICKPOLYGON || id == SID_METALELEMENT) {
      visit(child);
    }
  }
}
}  // namespace

namespace {
void CollectShapes(const SLevel* level, bool recursive, int kind, std::vector<SEnclosure*>& list) {
  WalkShapes(level, recursive, [&](const SBaseEnclosure* node) {
    if (KindMatches(node, kind)) list.push_back(const_cast<SEnclosure*>(static_cast<const SEnclosure*>(node)));
  });
}
}  // namespace

void SCircuit::CollectPolygons(std::vector<SEnclosure*>& list, int kind, bool recursive) const {
  for (const SLevel* level : itsLevels) CollectShapes(level, recursive, kind, list);
}

void SCircuit::CollectLevelPolygons(int level, std::vector<SEnclosure*>& list, int kind) const {
  if (const SLevel* found = GetLevel(level)) CollectShapes(found, true, kind, list);
}

long long SCircuit::CountPolygons() const {
  long long n = 0;
  for (const SLevel* level : itsLevels) WalkShapes(level, true, [&](const SBaseEnclosure*) { ++n; });
  return n;
}

long long SCircuit::CollectPolygonsWithChildren(std::vector<std::pair<long long, SEnclosure*>>& list) const {
  long long n = 0;
  for (const SLevel* level : itsLevels)
    WalkShapes(level, true, [&](const SBaseEnclosure* node) {
      ++n;
      if (node->GetNumberOfChildren() > 0)
        list.emplace_back(n, const_cast<SEnclosure*>(static_cast<const SEnclosure*>(node)));
    });
  return n;
}

bool SCircuit::IsMaterialUsed(const SMaterialTypeData* type) const {
  if (type == nullptr) return false;
  bool used = false;
  for (const SLevel* level : itsLevels) {
    WalkShapes(level, true, [&](const SBaseEnclosure* node) {
      if (node->isA() == SID_METALELEMENT)
        used = used || static_cast<const SMetalElement*>(node)->UsesMaterial(type);
      else if (node->isA() != SID_BRICKPOLYGON && static_cast<const SMetalPolygon*>(node)->GetMaterial() == type)
        used = true;
    });
    if (used) return true;
  }
  std::vector<STechLayer*> layers;
  GetTechLayers(layers);
  for (const STechLayer* layer : layers)
    if (SGeoObjectIO::TechLayerUses(layer, type)) return true;
  return false;
}

void SCircuit::PrepareForSave() {
  // Levels keep their polygons in the order they were added; nothing to derive yet.
}

void SCircuit::ScaleLengths(double factor) {
  if (factor == 1.0 || !(factor > 0.0)) return;
  itsCircuitSize.scale(factor);
  if (itsLocalOrigin != nullptr) itsLocalOrigin->Scale(factor);
  for (SLevel* level : itsLevels) {
    SValueVarDouble& thickness = level->Value(SLevelData::Thickness);
    if (!thickness.HasEquation()) thickness.SetValue(thickness.GetValue() * factor);
  }
  std::vector<SEnclosure*> shapes;
  CollectPolygons(shapes);
  for (SEnclosure* node : shapes) {
    SPolygonData* shape = node->isA() == SID_BRICKPOLYGON ? static_cast<SPolygonData*>(static_cast<SBrickPolygon*>(node))
                                                          : static_cast<SPolygonData*>(static_cast<SMetalPolygon*>(node));
    std::vector<SPoint> points = shape->GetVertices();
    for (SPoint& p : points) p *= factor;
    shape->SetVertices(std::move(points));
    shape->SetMaxSubLen(shape->GetMaxSubLen() * factor);
    shape->SetEdgeTruncation(shape->GetEdgeTruncation() * factor);
  }
  std::vector<SSMDev*> components;
  SSMDev::Collect(*this, components);
  for (SSMDev* component : components) component->ScaleLengths(factor);
}

bool SCircuit::CheckFormat(int format, QStringList& problems) const {
  if (format > 6) return true;
  bool ok = true;
  const SString prefix = VeloraMessageText(6123);
  std::vector<SEnclosure*> vias;
  CollectPolygons(vias, ViaPolygons);
  if (!vias.empty()) {
    problems << (prefix + "\n" + VeloraMessageText(6198)).qstring();
    ok = false;
  }
  std::vector<SMetalType*> metals;
  CollectObjects(metals);
  for (const SMetalType* metal : metals) {
    const int model = metal->GetModel();
    if (metal->GetDefinition() == 0 && (model == SMetalTypeData::Rough || model == SMetalTypeData::Sense)) {
      problems << (prefix + "\n" + VeloraMessageText(6124)).qstring();
      return false;
    }
  }
  return ok;
}

const SDimensionBlock* SCircuit::GetDimensions() const {
  return itsProject != nullptr ? itsProject->GetDimensionBlock() : nullptr;
}

SString SCircuit::ProjectDirectory() const {
  if (itsProject == nullptr || itsProject->GetFileName().isEmpty()) return SString();
  return SString(QFileInfo(itsProject->GetFileName().qstring()).absolutePath());
}

SString SCircuit::ProjectRelative(const SString& name) const {
  const SString dir = ProjectDirectory();
  return dir.isEmpty() ? name : SString(QDir(dir.qstring()).relativeFilePath(name.qstring()));
}

double SCircuit::FileLengthFactor() const {
  const SDimensionBlock* dim = GetDimensions();
  return dim != nullptr ? dim->ToFileLength(1.0) : 1.0;
}

QStringList SCircuit::LoadPatternNames(const SString& path) {
  QStringList names;
  QFile file(path.qstring());
  if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
    VeloraTrace(1, TRACE_GENERAL, "SCircuit: Could not open pattern file");
    return names;
  }
  QTextStream in(&file);
  while (!in.atEnd()) {
    const QStringList fields = in.readLine().split(' ', Qt::SkipEmptyParts);
    if (fields.size() < 2 || fields[0].startsWith('#')) continue;
    bool ok = false;
    const int number = fields[0].toInt(&ok);
    if (!ok || number < 0 || number > 4096) continue;
    while (names.size() <= number) names << QString();
    names[number] = fields[1];
  }
  return names;
}

const QStringList& SCircuit::PatternNames(bool bricks) {
  static const auto load = [](const char* name) {
    SVeloraDirectoryInstance* dirs = SVeloraDirectoryInstance::Instance();
    if (dirs == nullptr) return QStringList();
    return LoadPatternNames(dirs->GetResourceDir() + "/patterns/" + name);
  };
  static const QStringList metal = load("metal.dat");
  static const QStringList brick = load("brick.dat");
  return bricks ? brick : metal;
}

SMetalPolygon* SCircuit::FindPolygonById(long long id) const { return itsPolygonsById.value(id, nullptr); }

// ---- writing

void SCircuit::WriteBody(SProjectStream& out, int format) {
  SProjectDigits digits(out, SNumberFormat::Geometry);
  const double feet = FileLengthFactor();
  if (format < 2) {
    out << "VER 6.0c\n";
    if (!itsOldDate.isEmpty()) out << "DAT " << itsOldDate << '\n';
  }
  if (format >= 21 && !itsTechFile.isEmpty()) {
    out << "STF ";
    out.Name(ProjectRelative(itsTechFile));
    out << '\n';
  }
  if (itsSymmetric) out << "SYM\n";
  if (format >= 17) {
    if (itsAutoHeightVias) out << "VGMODE STOP\n";
    if (itsSnapAngle != Snap45) out << "SNPANG " << SnapAngleText(itsSnapAngle) << '\n';
  }
  SGeoObjectIO::WriteBoxRefPlanes(out, *this, format);
  if (format < 21) SGeoObjectIO::WriteParallelSubs(out, *this, format);
  SMaterialTypeIO::WriteCovers(out, *this, format);
  SMaterialTypeIO::NumberAndWriteTypes(out, *this, format);

  const int levelField = itsTechFile.isEmpty() ? GetNumberOfLevels() - 1 : 0;
  out << "BOX " << levelField << ' ' << itsCircuitSize.width() * feet << ' ' << itsCircuitSize.height() * feet << ' '
      << 2 * GetNumCellsX() << ' ' << 2 * GetNumCellsY() << ' ' << itsSubsPerLambda << ' ' << itsEeff << '\n';
  if (itsTechFile.isEmpty())
    for (const SLevel* level : itsLevels) level->WriteDielectric(out, format, GetDimensions());
  if (format >= 15 && (itsNumCellsX.HasEquation() || itsNumCellsY.HasEquation())) {
    out << "VNCELLS ";
    itsNumCellsX.WriteValue(out);
    out << ' ';
    itsNumCellsY.WriteValue(out);
    out << '\n';
  }
  if (format >= 15) SGeoObjectIO::WriteTechLayers(out, *this, format);
  if (format >= 2) {
    WriteVariablesAndDimensions(out, format);
  }
  if (format >= 11 && itsLocalOrigin != nullptr) itsLocalOrigin->Write(out, feet);
  std::vector<std::pair<long long, SEnclosure*>> owners;
  const long long count = CollectPolygonsWithChildren(owners);
  std::vector<SPort*> ports;
  SGeoObjectIO::WriteViasAndPorts(out, owners, format, ports);
  if (format >= 7) {
    WriteComponents(out, format);
    SGeoObjectIO::WriteCoupledGroups(out, *this, ports, format);
  }
  out << "NUM " << count << '\n';
  SProgressPhase phase("writing project", static_cast<uint64_t>(count), "polygons");
  WritePolygons(out, format);
}

void SCircuit::WritePolygons(SProjectStream& out, int format) const {
  const double feet = FileLengthFactor();
  auto write = [format, feet](SProjectStream& to, const std::pair<int, const SBaseEnclosure*>& shape) {
    const int index = shape.first;
    const SBaseEnclosure* node = shape.second;
    switch (node->isA()) {
    case SID_VIAPOLYGON: static_cast<const SViaPolygon*>(node)->Write(to, index, format, feet); break;
    case SID_BRICKPOLYGON: static_cast<const SBrickPolygon*>(node)->Write(to, index, format, feet); break;
    case SID_METALELEMENT: static_cast<const SMetalElement*>(node)->Write(to); break;
    default: static_cast<const SMetalPolygon*>(node)->Write(to, index, format, feet); break;
    }
  };
  // Number formatting is most of a large project's writing: the shapes go in pairs of
  // batches, and while this thread writes the first of a pair, a second formats the other
  // into text of its own. That text goes to the file while the second thread formats the
  // next pair's, so that neither waits on the other's writing. Writing a shape changes
  // nothing it can reach.
  const size_t kBatch = 16384;
  SProgress& progress = Progress();
  uint64_t collected = 0;
  std::vector<std::pair<int, const SBaseEnclosure*>> batches[2];
  SProjectStream sides[2];
  for (SProjectStream& side : sides) side.SetDigits(out.Digits());
  SProjectStream* pending = nullptr;
  int nextSide = 0;
  auto flush = [&]() {
    std::future<void> next;
    SProjectStream& side = sides[nextSide];
    if (!batches[1].empty()) {
      try {
        next = std::async(std::launch::async, [&]() {
          for (const auto& shape : batches[1]) write(side, shape);
        });
      } catch (const std::system_error&) {
        // No second thread to be had: this one writes both.
      }
    }
    if (pending) {
      out.AppendStream(*pending);
      pending = nullptr;
    }
    for (const auto& shape : batches[0]) write(out, shape);
    if (next.valid()) {
      next.get();
      pending = &side;
      nextSide ^= 1;
    } else {
      for (const auto& shape : batches[1]) write(out, shape);
    }
    batches[0].clear();
    batches[1].clear();
  };
  for (const SLevel* level : itsLevels) {
    const int index = level->GetIndex();
    WalkShapes(level, true, [&](const SBaseEnclosure* node) {
      progress.Tick(collected++);
      std::vector<std::pair<int, const SBaseEnclosure*>>& batch = batches[batches[0].size() < kBatch ? 0 : 1];
      batch.emplace_back(index, node);
      if (batches[1].size() == kBatch) flush();
    });
  }
  flush();
  if (pending) out.AppendStream(*pending);
}

// ---- components

void SCircuit::WriteComponents(SProjectStream& out, int format) const {
  std::vector<SSMDev*> components;
  SSMDev::Collect(*this, components);
  for (SSMDev* component : components) component->WriteComponent(out, *this, format);
}

bool SCircuit::ReadComponent(SFile& file, SProjectErrorManager& errors) {
  const int line = static_cast<int>(file.LineCount());
  std::unique_ptr<SSMDev> component(new SSMDev);
  if (!component->ReadComponent(file, *this, errors)) return false;
  const long long level = component->GetLevel();
  if (level < 0 || level >= GetNumberOfLevels()) {
    errors.AddError(SProjectErrorManager::Error, line, 6059);
    return false;
  }
  GetLevel(static_cast<int>(level))->AddChild(component.release());
  return true;
}

// A plane of a component linked to a polygon needs the polygon, as a box side's does.
bool SCircuit::ResolveComponentLinks(SProjectErrorManager& errors) const {
  std::vector<SSMDev*> components;
  SSMDev::Collect(*this, components);
  for (const SSMDev* component : components) {
    std::vector<const SPolyDepHandle*> links;
    component->GetLinks(links);
    for (const SPolyDepHandle* link : links)
      if (link->FindPolygon(*this) == nullptr) {
        errors.AddPrefixedError(SProjectErrorManager::Error, static_cast<int>(component->GetLine()), 6028, 6121);
        return false;
      }
  }
  return true;
}

// ---- reading

namespace {


bool StartsLikeValue(const SString& token) {
  if (token.isEmpty()) return false;
  const QChar c = token.first();
  return c.isDigit() || c == '-' || c == '+' || c == '.' || c == '"' || c == '=' || c == '<';
}
}  // namespace

bool SCircuit::ReadBox(SFile& file, SProjectErrorManager& errors) {
  int levels = 0;
  if (!file.GetInt(levels) || levels < 0) return ReadFault(errors, file, 6059);
  double width = 0, height = 0;
  if (!file.GetDouble(width) || !file.GetDouble(height)) return ReadFault(errors, file, 6077);
  const double feet = FileLengthFactor();
  itsCircuitSize = SSize(width / feet, height / feet);
  int cellsX = 0, cellsY = 0;
  if (!file.GetInt(cellsX) || !file.GetInt(cellsY)) return ReadFault(errors, file, 6078);
  // The file holds twice the count.
  cellsX /= 2;
  cellsY /= 2;
  SetNumCells(cellsX < 3 ? 3 : cellsX, cellsY < 3 ? 3 : cellsY);
  if (!file.GetInt(itsSubsPerLambda)) return ReadFault(errors, file, 6079);
  if (!file.GetDouble(itsEeff)) return ReadFault(errors, file, 6080);
  if (itsEeff < 0) return ReadFault(errors, file, 6005, 6080);
  SetNumberOfLevels(0);
  for (int i = 0; i <= levels; ++i) {
    SString token;
    if (!file.NextLine() || !StartsLikeValue(file.CurrentLine().stripped())) return ReadFault(errors, file, 6016);
    SLevel* level = AddLevel();
    level->SetLine(file.LineCount());
    if (!level->ReadDielectric(file, errors)) return false;
  }
  return true;
}

// One line of the body before the polygons. `stop` ends the loop (NUM of an abbreviated read).
bool SCircuit::ReadLine(SFile& file, SProjectErrorManager& errors, const SString& keyword, bool& stop) {
  using M = SFileBlock;
  SString token;
  if (M::Match(keyword, "VER")) {
    file.GetRestOfLine(itsOldVersion);
  } else if (M::Match(keyword, "BUI")) {
  } else if (M::Match(keyword, "DAT")) {
    file.GetRestOfLine(itsOldDate);
  } else if (M::Match(keyword, "LEN")) {
    file.GetToken(itsUnits.itsName);
    file.GetDouble(itsUnits.itsFactor);
  } else if (M::Match(keyword, "REF")) {
    return SGeoObjectIO::ReadOldRefLine(file, *this, errors);
  } else if (M::Match(keyword, "DRP1")) {
    return SGeoObjectIO::ReadBoxRefPlane(file, *this, errors);
  } else if (M::Match(keyword, "PSB1")) {
    return SGeoObjectIO::ReadParallelSubs(file, *this, errors);
  } else if (M::Match(keyword, "ANN")) {
    SString text;
    if (!file.GetRestOfLine(text) || text.isEmpty()) return ReadFault(errors, file, 6111);
    itsAnnotations.append(new SCollectableString(text));
  } else if (M::Match(keyword, "BOX")) {
    return ReadBox(file, errors);
  } else if (M::Match(keyword, "VNCELLS")) {
    if (!itsNumCellsX.ReadValueToken(file) || !itsNumCellsY.ReadValueToken(file)) return ReadFault(errors, file, 6078);
  } else if (M::Match(keyword, "SYM")) {
    itsSymmetric = true;
  } else if (M::Match(keyword, "VGMODE")) {
    if (file.GetUpperToken(token) && token == "STOP" && itsViaAutoHeightAllowed) itsAutoHeightVias = true;
  } else if (M::Match(keyword, "SNPANG")) {
    file.GetToken(token);
    itsSnapAngle = SnapAngleCode(token);
  } else if (M::Match(keyword, "POR")) {
    return SGeoObjectIO::ReadPort(file, *this, keyword, errors);
  } else if (M::Match(keyword, "VIA") || M::Match(keyword, "EVIA")) {
    return SGeoObjectIO::ReadEdgeVia(file, *this, keyword, errors);
  } else if (M::Match(keyword, "LORGN")) {
    if (itsLocalOrigin == nullptr) itsLocalOrigin = new SMarker;
    itsLocalOrigin->Read(file, errors, FileLengthFactor());
  } else if (M::Match(keyword, "DIM")) {
    return SGeoObjectIO::ReadDimension(file, *this, errors);
  } else if (M::Match(keyword, "GEOVAR")) {
    std::unique_ptr<SGeoVar> geoVar(new SGeoVar);
    if (!geoVar->Read(file, errors)) return false;
    AddChild(geoVar.release());
  } else if (M::Match(keyword, "VALVAR")) {
    SString name;
    int unitKind = SValueVar::NoUnit;
    const long long line = file.LineCount();
    if (!SValvarLine::ReadHead(file, name, unitKind, errors)) return false;
    SVariable* variable = FindOrMakeVariable(name);
    variable->SetLine(line);
    variable->Value().SetUnitKind(unitKind);
    SValvarLine::ReadValue(file, variable->Value(), itsProject, errors);
  } else if (M::Match(keyword, "VCNSTR")) {
    // A constraint of a variable that doesn't exist constrains nothing and is passed over.
    const auto result = SValvarLine::ReadConstraint(file, [this](const SString& name) -> SValueVarDouble* {
      SVariable* variable = FindVariable(name);
      return variable != nullptr ? &variable->Value() : nullptr;
    });
    if (result == SValvarLine::ConstraintUnknownKind) return ReadFault(errors, file, 6024);
  } else if (M::Match(keyword, "SMD")) {
    return ReadComponent(file, errors);
  } else if (M::Match(keyword, "CUPGRP")) {
    return SGeoObjectIO::ReadCoupledGroup(file, *this, errors);
  } else if (M::Match(keyword, "NUM")) {
    long long count = 0;
    if (!file.GetLong(count) || count < 0) return ReadFault(errors, file, 6064);
    itsEndReached = true;
    if (itsAbbreviated) {
      stop = true;
      return true;
    }
    return ReadPolygons(file, errors, count);
  } else if (M::Match(keyword, "TME") || M::Match(keyword, "BME") || M::Match(keyword, "TOP") ||
             M::Match(keyword, "TON") || M::Match(keyword, "BOT") || M::Match(keyword, "BON")) {
    return SMaterialTypeIO::ReadCoverLine(file, *this, keyword, errors);
  } else if (M::Match(keyword, "MET") || M::Match(keyword, "RES") || M::Match(keyword, "REN")) {
    return SMaterialTypeIO::ReadMetalLine(file, *this, keyword, errors);
  } else if (M::Match(keyword, "BRI") || M::Match(keyword, "BRA") || M::Match(keyword, "BRL") ||
             M::Match(keyword, "PRI") || M::Match(keyword, "PRA") || M::Match(keyword, "PRN")) {
    return SMaterialTypeIO::ReadBrickLine(file, *this, keyword, errors);
  } else if (M::Match(keyword, "TECHLAY")) {
    return SGeoObjectIO::ReadTechLayer(file, *this, errors);
  } else if (M::Match(keyword, "STF")) {
    SString name;
    file.GetToken(name);
    if (name.startsWith("\"") && name.endsWith("\"") && name.length() >= 2) name = name.mid(1, name.length() - 2);
    const SString dir = ProjectDirectory();
    itsTechFile = dir.isEmpty() || QFileInfo(name.qstring()).isAbsolute()
                      ? name
                      : SString(QDir(dir.qstring()).absoluteFilePath(name.qstring()));
  } else if (keyword.startsWith("!")) {
  } else {
    return ReadFault(errors, file, 6024);
  }
  return true;
}

bool SCircuit::ReadBody(SFile& file, SProjectErrorManager& errors, int version) {
  (void)version;
  SMaterialTypeIO::CreateBuiltInTypes(*this);
  SGeoObjectIO::CreateBoxRefPlanes(*this);
  delete itsLocalOrigin;
  itsLocalOrigin = new SMarker;
  itsLocalOrigin->SetPosition(SPoint(0.0, itsCircuitSize.height()));
  bool originRead = false;
  for (;;) {
    SString keyword;
    if (file.PeekToken(keyword)) {
      if (SFileBlock::Match(keyword, "END")) break;
      file.GetToken(keyword);
      if (SFileBlock::Match(keyword, "LORGN")) originRead = true;
      bool stop = false;
      if (!ReadLine(file, errors, keyword, stop)) return false;
      if (stop) return true;
      // The polygon reader stops on the block's END line.
      if (itsEndReached) {
        if (file.PeekToken(keyword) && SFileBlock::Match(keyword, "END")) break;
      }
    }
    if (!file.NextLine()) {
      itsCutShort = true;
      break;
    }
  }
  // A file without LORGN has its origin at the top left corner of the box read.
  if (!originRead) itsLocalOrigin->SetPosition(SPoint(0.0, itsCircuitSize.height()));
  if (GetNumberOfLevels() < 2) return ReadFault(errors, file, 6008, 6114);
  if (!BindMaterials(errors)) return false;
  if (!SGeoObjectIO::ResolveReferences(*this, errors, itsAbbreviated)) return false;
  if (!itsAbbreviated && !ResolveComponentLinks(errors)) return false;
  if (!BindGeoVars(errors)) return false;
  itsPolygonsById.clear();
  if (!SMaterialTypeIO::ResolveCovers(*this, errors)) return false;
  SortTypes();
  return true;
}

bool SCircuit::ReadPolygons(SFile& file, SProjectErrorManager& errors, long long count) {
  itsPolygonsAnnounced = count;
  itsPolygonsFound = 0;
  std::unique_ptr<SPolygonScanner> scanner;
  if (itsDropDrawing) scanner.reset(new SPolygonScanner(*this));
  if (scanner && !scanner->CanPassOver()) scanner.reset();
  SProjectFile* raw = scanner ? dynamic_cast<SProjectFile*>(&file) : nullptr;
  if (!scanner) itsPolygonsById.reserve(static_cast<int>(std::min<long long>(count, 1 << 20)));
  // Finding where the token reader stands costs some thousand lines' worth of work: after
  // a short raw run the next waits for ever more polygons read through the tokens.
  long long pause = 0, nextPause = 256;
  SString token, second;
  long long i = 0;
  for (; i < count; ++i) {
    if (raw != nullptr && pause == 0) {
      long long highest = -1;
      const long long passed = scanner->PassOver(*raw, count - i, highest);
      if (passed < 0) return ReadFault(errors, file, 7041);
      if (highest >= 0) NoteId(highest);
      i += passed;
      if (passed >= 1024) {
        nextPause = 256;
      } else {
        pause = nextPause;
        nextPause = std::min<long long>(nextPause * 2, 1 << 16);
      }
      if (i >= count) break;
    } else if (pause > 0) {
      --pause;
    }
    if (!file.NextLine()) break;
    file.PeekToken(token);
    SEnclosure* shape = nullptr;
    long long level = 0;
    bool ok = false;
    if (SFileBlock::Match(token, "END")) {
      // More polygons promised than there are: the block's END ends the loop.
      SString line;
      file.GetLine(line);
      if (line.stripped().upper() == "END GEO" || line.upper().startsWith("END GEO")) {
        itsPolygonsFound = i;
        return true;
      }
      return ReadFault(errors, file, 6180);
    }
    const SString upper = token.upper();
    if (upper == "MET" || upper == "BRI" || upper == "VIA") {
      file.NextToken();
      file.PeekToken(second);
      second = second.upper();
      file.RewindLine();
    } else {
      second.clear();
    }
    const int lineNumber = static_cast<int>(file.LineCount());
    if ((upper == "MET" || upper == "BRI") && second.startsWith("ELM")) {
      SMetalElement* element = new SMetalElement;
      ok = element->Read(file, errors, level);
      shape = element;
    } else if (upper == "BRI") {
      if (!file.NextLine()) return ReadFault(errors, file, 6065);
      SBrickPolygon* brick = new SBrickPolygon;
      ok = brick->Read(file, errors, level, FileLengthFactor());
      shape = brick;
    } else if (upper == "VIA" && second == "POLYGON") {
      if (!file.NextLine()) return ReadFault(errors, file, 6065);
      SViaPolygon* via = new SViaPolygon;
      ok = via->Read(file, errors, level);
      shape = via;
    } else {
      SMetalPolygon* metal = new SMetalPolygon;
      ok = metal->Read(file, errors, level);
      shape = metal;
    }
    if (!ok) {
      delete shape;
      return false;
    }
    SLevel* owner = level >= 0 && level < GetNumberOfLevels() ? GetLevel(static_cast<int>(level)) : nullptr;
    if (owner == nullptr) {
      delete shape;
      errors.AddPrefixedError(SProjectErrorManager::Error, lineNumber, 6002, 6059);
      return false;
    }
    NoteId(shape->GetId());
    if (shape->isA() == SID_METALELEMENT) {
      owner->AddChild(shape);
      continue;
    }
    if (scanner && scanner->MayDrop(*shape)) {
      delete shape;
      continue;
    }
    owner->AddChild(shape);
    if (shape->isA() != SID_BRICKPOLYGON) itsPolygonsById.insert(shape->GetId(), static_cast<SMetalPolygon*>(shape));
  }
  itsPolygonsFound = std::min(i, count);
  return true;
}

// Material numbers of the polygon lines become types: metal and via types share one
// sequence, bricks have their own, shifted by one so that 0 is "Air".
bool SCircuit::BindMaterials(SProjectErrorManager& errors) {
  QHash<int, SMaterialTypeData*> metals, bricks;
  for (size_t i = 0; i < GetNumberOfChildren(); ++i) {
    SBaseEnclosure* child = GetChild(i);
    SMaterialTypeData* type = SMaterialTypeIO::AsMaterialType(static_cast<SEnclosure*>(child));
    if (type == nullptr || type->GetFileId() < 0) continue;
    (child->isA() == SID_BRICKTYPE ? bricks : metals).insert(type->GetFileId(), type);
  }
  bool ok = true;
  auto resolve = [&](const SBaseEnclosure* node, bool brick, int n) -> SMaterialTypeData* {
    if (brick ? n <= 0 : n < 0) return nullptr;
    SMaterialTypeData* type = (brick ? bricks : metals).value(brick ? n - 1 : n, nullptr);
    if (type == nullptr && ok) {
      errors.AddPrefixedError(SProjectErrorManager::Error,
                              static_cast<int>(static_cast<const SEnclosure*>(node)->GetLine()), 6028, 6121);
      ok = false;
    }
    return type;
  };
  for (const SLevel* level : itsLevels) {
    WalkShapes(level, true, [&](const SBaseEnclosure* node) {
      if (node->isA() == SID_METALELEMENT) {
        SMetalElement* element = const_cast<SMetalElement*>(static_cast<const SMetalElement*>(node));
        for (size_t i = 0; i < element->GetNumberOfPolygonLines(); ++i)
          element->SetMaterial(i, resolve(node, element->IsBrick(), element->GetFileMaterial(i)));
        return;
      }
      const bool brick = node->isA() == SID_BRICKPOLYGON;
      SShapeData* shape = brick
                              ? static_cast<SShapeData*>(const_cast<SBrickPolygon*>(static_cast<const SBrickPolygon*>(node)))
                              : static_cast<SShapeData*>(const_cast<SMetalPolygon*>(static_cast<const SMetalPolygon*>(node)));
      shape->SetMaterial(resolve(node, brick, shape->GetFileMaterial()));
    });
  }
  return ok;
}

long long SCircuit::GetHighestPolygonId() const {
  std::vector<SEnclosure*> shapes;
  CollectPolygons(shapes);
  long long highest = 0;
  for (const SEnclosure* shape : shapes) highest = std::max(highest, shape->GetId());
  return highest;
}

// ---- variables

SVariable* SCircuit::FindVariable(const SString& name) const {
  for (size_t i = 0; i < GetNumberOfChildren(); ++i) {
    SBaseEnclosure* child = GetChild(i);
    if (child->isA() == SID_VARIABLE && static_cast<SVariable*>(child)->GetName() == name)
      return static_cast<SVariable*>(child);
  }
  return nullptr;
}

SVariable* SCircuit::FindOrMakeVariable(const SString& name, bool* made) {
  SVariable* variable = FindVariable(name);
  if (made != nullptr) *made = variable == nullptr;
  if (variable == nullptr) {
    variable = new SVariable(name);
    AddChild(variable);
  }
  return variable;
}

void SCircuit::GetVariables(std::vector<SVariable*>& list) const { CollectObjects(list); }

bool SCircuit::BindGeoVars(SProjectErrorManager& errors) {
  std::vector<SBaseEnclosure*> read;
  TakeChildren([](const SBaseEnclosure* child) { return child->isA() == SID_GEOVAR; }, read);
  // Without the polygons (a short read, or a drawing about to be replaced) the handles
  // can't be checked; the entries are still bound so that they go with their variables.
  const bool checkHandles = !itsAbbreviated && !itsDropDrawing;
  for (size_t i = 0; i < read.size(); ++i) {
    SGeoVar* geoVar = static_cast<SGeoVar*>(read[i]);
    if (checkHandles) {
      if (const int missing = geoVar->CheckHandles(*this)) {
        errors.AddError(SProjectErrorManager::Error, static_cast<int>(geoVar->GetLine()), 6028);
        errors.AddError(SProjectErrorManager::Error, static_cast<int>(geoVar->GetLine()), missing);
        for (size_t k = i; k < read.size(); ++k) delete read[k];
        return false;
      }
    }
    bool made = false;
    const SString name = geoVar->GetVariableName();
    SVariable* variable = name.isEmpty() ? nullptr : FindOrMakeVariable(name, &made);
    if (variable == nullptr) {
      SString why;
      VeloraFormatMessage(why, 6130);
      errors.AddError(SProjectErrorManager::Warning, static_cast<int>(geoVar->GetLine()), 6034, why.data(), name.data());
      delete geoVar;
      continue;
    }
    if (made) {
      // Before the binding: a variable with a parameter only compares.
      double nominal = geoVar->GetStoredNominal();
      if (checkHandles && !geoVar->ComputeNominal(*this, nominal)) nominal = geoVar->GetStoredNominal();
      variable->TrySetNominal(nominal);
    }
    variable->AddChild(geoVar);
    if (!geoVar->GetEquationText().isEmpty())
      variable->Value().SetFromText(
          SValvarLine::AbsoluteFileNames(geoVar->GetEquationText(), SValvarLine::ProjectDirectory(itsProject)), true);
    if (variable->Value().GetDescription().isEmpty())
      variable->Value().SetDescription(SString("Dim. Param. ") + name);
    variable->SetUnitType(SValueVar::Length);
  }
  return true;
}

void SCircuit::WriteVariablesAndDimensions(SProjectStream& out, int format) const {
  for (size_t i = 0; i < GetNumberOfChildren(); ++i) {
    const SBaseEnclosure* child = GetChild(i);
    if (child->isA() == SID_VARIABLE) {
      const SVariable* variable = static_cast<const SVariable*>(child);
      if (variable->IsChanged()) variable->Write(out, *this, format);
    } else if (child->isA() == SID_DIMENSION) {
      static_cast<const SDimension*>(child)->Write(out, *this, format);
    }
  }
}

bool SCircuit::HasCircularDefinition() const {
  std::vector<SVariable*> variables;
  GetVariables(variables);
  QSet<const SVariable*> visited;
  std::vector<const SVariable*> path;
  // Depth first from each equation; a variable met again on the way down closes a circle.
  std::function<bool(const SVariable*)> walk = [&](const SVariable* variable) {
    for (const QString& name : variable->GetValueVar().GetVariableNames()) {
      const SVariable* next = FindVariable(SString(name));
      if (next == nullptr || visited.contains(next)) continue;
      if (std::find(path.begin(), path.end(), next) != path.end()) return true;
      if (next->HasEquation()) {
        path.push_back(next);
        const bool circular = walk(next);
        path.pop_back();
        if (circular) return true;
      }
      visited.insert(next);
    }
    visited.insert(variable);
    return false;
  };
  for (const SVariable* variable : variables) {
    if (visited.contains(variable)) continue;
    if (!variable->HasEquation()) {
      visited.insert(variable);
      continue;
    }
    path.assign(1, variable);
    if (walk(variable)) return true;
  }
  return false;
}

bool SCircuit::EvaluateVariables() {
  itsErrorText.clear();
  if (HasCircularDefinition()) {
    itsErrorText = "Equations have circular definition";
    return false;
  }
  std::vector<SVariable*> variables;
  GetVariables(variables);
  bool ok = true;
  for (SVariable* variable : variables) {
    if (!variable->HasEquation()) continue;
    SString error;
    if (!variable->Value().Evaluate(error)) {
      if (!itsErrorText.isEmpty()) itsErrorText += "\n";
      itsErrorText += error + " in variable " + variable->GetName();
      ok = false;
      continue;
    }
    variable->SetTargets(variable->GetValue());
  }
  if (ok) ApplyGeoVars();
  return ok;
}

void SCircuit::ApplyGeoVars() {
  std::vector<SVariable*> variables;
  GetVariables(variables);
  std::vector<SGeoVar*> geoVars;
  for (const SVariable* variable : variables) variable->GetGeoVars(geoVars);
  if (geoVars.empty()) return;
  // Depth: 0 for a variable that waits for none, else one more than the deepest it waits
  // for. A variable on a cycle of waiting gets no depth and is left out.
  const size_t n = geoVars.size();
  std::vector<std::vector<size_t>> waitsFor(n);
  for (size_t i = 0; i < n; ++i)
    for (size_t j = 0; j < n; ++j)
      if (geoVars[i]->WaitsFor(*geoVars[j])) waitsFor[i].push_back(j);
  enum { Unknown = -1, Visiting = -2, OnCycle = -3 };
  std::vector<int> depth(n, Unknown);
  std::function<int(size_t)> depthOf = [&](size_t i) -> int {
    if (depth[i] == Visiting) return OnCycle;
    if (depth[i] != Unknown) return depth[i];
    depth[i] = Visiting;
    int deepest = -1;
    for (size_t j : waitsFor[i]) {
      const int d = depthOf(j);
      if (d == OnCycle) {
        depth[i] = OnCycle;
        return OnCycle;
      }
      deepest = std::max(deepest, d);
    }
    depth[i] = deepest + 1;
    return depth[i];
  };
  int deepest = -1;
  for (size_t i = 0; i < n; ++i) deepest = std::max(deepest, depthOf(i));
  for (int d = 0; d <= deepest; ++d) {
    for (size_t i = 0; i < n; ++i)
      if (depth[i] == d) geoVars[i]->Apply(*this, true);
    for (size_t i = 0; i < n; ++i)
      if (depth[i] > d) geoVars[i]->Apply(*this, false);
  }
}
