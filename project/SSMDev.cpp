#include "SSMDev.h"

#include "SCircuit.h"
#include "SFile.h"
#include "SFileBlock.h"
#include "SGeoClassID.h"
#include "SLevel.h"
#include "SMetalPolygon.h"
#include "SProject.h"
#include "SProjectErrorManager.h"
#include "SProjectStream.h"
#include "SRefPlane.h"
#include "SSMDBlock.h"
#include "SSMDPort.h"
#include "SVeloraError.h"
#include "SVeloraTrace.h"

#include <QDir>
#include <QFileInfo>

#include <climits>
#include <cmath>

SCOLLECTABLE_DEFINE(SSMDev, SID_SMDEV, &SCoupledGroup::staticTypeInfo())

namespace {
const char* const kIdealWords[] = {"RES", "CAP", "IND"};

SString Unquoted(const SString& text) {
  const SString stripped = text.stripped();
  if (stripped.length() >= 2 && stripped.startsWith("\"") && stripped.endsWith("\""))
    return stripped.mid(1, stripped.length() - 2);
  return stripped;
}

// The block numbers its files with ints; a key outside them names no file of it.
bool IsBlockKey(long long key) { return key != 0 && key >= INT_MIN && key <= INT_MAX; }

void Scale(SRect& box, double factor) {
  box = SRect(box.left() * factor, box.top() * factor, box.right() * factor, box.bottom() * factor);
}

// The directory of the project that holds the circuit, or empty without a file.
SString ProjectDirectory(const SCircuit& circuit) {
  const SProject* project = circuit.GetProject();
  if (project == nullptr || project->GetFileName().isEmpty()) return SString();
  return SString(QFileInfo(project->GetFileName().qstring()).absolutePath());
}

void Scale(SPoint& point, double factor) { point = SPoint(point.x() * factor, point.y() * factor); }
}  // namespace

SSMDev::SSMDev() { itsValue.SetName("Component "); }

void SSMDev::SetUserModel(const SString& model, const SString& library, const SString& entry) {
  itsUserModel = model;
  itsLibrary = library;
  itsEntry = entry;
}

void SSMDev::GetPorts(std::vector<SSMDPort*>& list) const {
  for (size_t i = 0; i < GetNumberOfChildren(); ++i)
    if (GetChild(i)->isA() == SID_SMDPORT) list.push_back(static_cast<SSMDPort*>(GetChild(i)));
}

SSMDPort* SSMDev::AddPort() {
  SSMDPort* port = new SSMDPort;
  AddChild(port);
  return port;
}

bool SSMDev::IsWrittenAt(int format) const {
  std::vector<SSMDPort*> ports;
  GetPorts(ports);
  if (ports.empty()) return false;
  if (itsModelType == DataFileModel && itsFileKey == 0) return false;
  if (format < 19 && (itsModelType == ProjectModel || itsModelType == UserModel)) return false;
  return true;
}

void SSMDev::Move(double dx, double dy) {
  const auto shift = [dx, dy](const SPoint& p) { return SPoint(p.x() + dx, p.y() + dy); };
  for (SRect* box : {&itsPackageBox, &itsPortBox})
    *box = SRect(box->left() + dx, box->top() + dy, box->right() + dx, box->bottom() + dy);
  itsLabelPosition = shift(itsLabelPosition);
  std::vector<SSMDPort*> ports;
  GetPorts(ports);
  for (SSMDPort* port : ports) port->SetPosition(shift(port->GetPortPosition()));
}

void SSMDev::ScaleLengths(double factor) {
  Scale(itsPackageBox, factor);
  Scale(itsPortBox, factor);
  Scale(itsLabelPosition, factor);
  itsLength *= factor;
  itsWidth *= factor;
  itsHeight *= factor;
  std::vector<SSMDPort*> ports;
  GetPorts(ports);
  for (SSMDPort* port : ports) {
    SPoint p = port->GetPortPosition();
    Scale(p, factor);
    port->SetPosition(p);
  }
}

void SSMDev::GetLinks(std::vector<const SPolyDepHandle*>& list) const {
  for (int side = SBoxSide::Left; side <= SBoxSide::AutoGround; ++side)
    if (const SRefPlane* plane = const_cast<SSMDev*>(this)->GetRefPlane(side))
      if (plane->IsLinked()) list.push_back(&plane->GetLink());
  std::vector<SSMDPort*> ports;
  GetPorts(ports);
  for (const SSMDPort* port : ports)
    if (port->GetRefPlane() != nullptr && port->GetRefPlane()->IsLinked())
      list.push_back(&port->GetRefPlane()->GetLink());
}

void SSMDev::ReleaseLinks(const SCircuit& circuit) {
  for (int side = SBoxSide::Left; side <= SBoxSide::AutoGround; ++side)
    if (SRefPlane* plane = GetRefPlane(side))
      if (plane->IsLinked()) plane->SetLength(plane->GetLength());
  std::vector<SSMDPort*> ports;
  GetPorts(ports);
  for (SSMDPort* port : ports) {
    SRefPlane* plane = port->GetRefPlane();
    if (plane == nullptr || !plane->IsLinked()) continue;
    double length = plane->GetLength();
    // The distance from the pin to the linked vertex, across the side the pin faces.
    const SMetalPolygon* polygon = plane->GetLink().FindPolygon(circuit);
    const int vertex = plane->GetLink().GetItem(0);
    if (polygon != nullptr && vertex >= 0 && vertex < polygon->GetNumberOfVertices()) {
      const SPoint& p = polygon->GetVertex(vertex);
      const SPoint& pin = port->GetPortPosition();
      if (port->GetSide() == SSMDPort::Left || port->GetSide() == SSMDPort::Right)
        length = std::fabs(p.x() - pin.x());
      else if (port->GetSide() == SSMDPort::Top || port->GetSide() == SSMDPort::Bottom)
        length = std::fabs(p.y() - pin.y());
    }
    plane->SetLength(length);
  }
}

// ---- writing

void SSMDev::WriteModel(SProjectStream& out, const SCircuit& circuit) const {
  out << "TYPE ";
  switch (itsModelType) {
  case IdealModel:
    out << "IDEAL " << (itsIdealKind >= Resistor && itsIdealKind <= Inductor ? kIdealWords[itsIdealKind] : "RES") << ' ';
    itsValue.WriteValue(out);
    break;
  case DataFileModel: out << "SPARAM " << itsFileKey; break;
  case ProjectModel: {
    const SString dir = ProjectDirectory(circuit);
    out << "SPROJ ";
    out.Name(dir.isEmpty() ? itsFileName : SString(QDir(dir.qstring()).relativeFilePath(itsFileName.qstring())));
    break;
  }
  case UserModel: out << "UMOD " << itsUserModel << " DLL " << itsLibrary << ' ' << itsEntry; break;
  default: out << "NONE"; break;
  }
  if (itsParameters.empty()) return;
  out << ' ';
  for (const Parameter& parameter : itsParameters) {
    if (parameter.second.isEmpty()) continue;
    out.Name(parameter.first);
    out << '=';
    out.Name(parameter.second);
    out << ' ';
  }
}

void SSMDev::WriteComponent(SProjectStream& out, const SCircuit& circuit, int format) {
  if (!IsWrittenAt(format)) {
    if (itsModelType == DataFileModel && itsFileKey == 0) {
      SString note;
      VeloraFormatMessage(note, 5770, "SMD not written, FileKey = 0");
      VeloraTrace(2, TRACE_ERRORS, "%s", note.data());
    }
    return;
  }
  if (itsModelType != IdealModel) itsValue.SetValue(0.0);
  out << "SMD " << itsLevel << " \"" << GetName() << "\"\n";
  WriteGroupLines(out, format);
  out << "SBOX " << itsPackageBox.left() << ' ' << itsPackageBox.top() << ' ' << itsPackageBox.right() << ' '
      << itsPackageBox.bottom() << '\n';
  out << "PBSHW " << (itsShowBox ? 'Y' : 'N') << '\n';
  if (itsUserBox) {
    out << "PBOX " << itsPortBox.left() << ' ' << itsPortBox.top() << ' ' << itsPortBox.right() << ' '
        << itsPortBox.bottom() << '\n';
    out << "PKG " << itsLength << ' ' << itsWidth << ' ' << itsHeight << '\n';
  }
  out << "LPOS " << itsLabelPosition.x() << ' ' << itsLabelPosition.y() << '\n';
  WriteModel(out, circuit);
  if (itsModelType == ProjectModel) out << "\nINHSWP " << (itsInheritSweep ? 'Y' : 'N');
  out << '\n';
  std::vector<SSMDPort*> ports;
  GetPorts(ports);
  for (const SSMDPort* port : ports) port->WriteComponentPort(out, circuit, format);
  out << "END\n";
}

// ---- reading

bool SSMDev::ReadComponent(SFile& file, const SCircuit& circuit, SProjectErrorManager& errors) {
  SetLine(file.LineCount());
  if (!file.GetLong(itsLevel)) return ReadFault(errors, file, 6059);
  SString name;
  file.GetToken(name);
  SetName(name);
  itsValue.SetName(SString("Component ") + name);
  itsValue.SetProject(circuit.GetProject());
  for (;;) {
    if (!file.NextLine()) return ReadFault(errors, file, 6024);
    SString key;
    if (!file.GetToken(key)) continue;
    bool taken = false;
    if (!ReadGroupLine(file, key, errors, taken)) return false;
    if (taken) continue;
    if (SFileBlock::Match(key, "END")) return true;
    if (!ReadLine(file, key, circuit, errors)) return false;
  }
}

bool SSMDev::ReadLine(SFile& file, const SString& key, const SCircuit& circuit, SProjectErrorManager& errors) {
  using M = SFileBlock;
  SString word;
  const auto readBox = [&](SRect& box) {
    double l = 0, t = 0, r = 0, b = 0;
    if (!file.GetDouble(l) || !file.GetDouble(t) || !file.GetDouble(r) || !file.GetDouble(b)) return false;
    box = SRect(l, t, r, b);
    return true;
  };
  if (M::Match(key, "SMDP")) {
    return AddPort()->ReadComponentPort(file, errors);
  } else if (M::Match(key, "EXSMDP")) {
    std::vector<SSMDPort*> ports;
    GetPorts(ports);
    if (ports.empty()) return ReadFault(errors, file, 6168);
    return ports.back()->ReadExtension(file, errors);
  } else if (M::Match(key, "SBOX")) {
    if (!readBox(itsPackageBox)) return ReadFault(errors, file, 6169);
  } else if (M::Match(key, "PBSHW")) {
    if (!file.GetToken(word)) return ReadFault(errors, file, 6168);
    itsShowBox = word == "Y" ? 1 : 0;
  } else if (M::Match(key, "PBOX")) {
    if (!readBox(itsPortBox)) return ReadFault(errors, file, 6169);
  } else if (M::Match(key, "PKG")) {
    if (!file.GetDouble(itsLength) || !file.GetDouble(itsWidth)) return ReadFault(errors, file, 6169);
    if (!file.GetDouble(itsHeight)) return ReadFault(errors, file, 6168);
    itsUserBox = 1;
  } else if (M::Match(key, "LPOS")) {
    double x = 0, y = 0;
    if (!file.GetDouble(x) || !file.GetDouble(y)) return ReadFault(errors, file, 6076);
    itsLabelPosition = SPoint(x, y);
    itsLabelPositionSet = 1;
  } else if (M::Match(key, "TYPE") || M::Match(key, "MODEL")) {
    return ReadModel(file, key, circuit, errors);
  } else if (M::Match(key, "PPLACE")) {
    if (!file.GetToken(word)) return ReadFault(errors, file, 6168);
    itsPortPlacement = word == "A" ? 1 : 0;
  } else if (M::Match(key, "INHSWP")) {
    if (!file.GetToken(word)) return ReadFault(errors, file, 6168);
    itsInheritSweep = word == "Y" ? 1 : 0;
  } else {
    return ReadFault(errors, file, 6024);
  }
  return true;
}

bool SSMDev::ReadModel(SFile& file, const SString& key, const SCircuit& circuit, SProjectErrorManager& errors) {
  SString word;
  if (SFileBlock::Match(key, "MODEL")) {
    if (!file.GetToken(word)) return ReadFault(errors, file, 6170);
    itsModelState = word == "Y" || word == "AY" ? 3 : 2;
  }
  if (!file.GetToken(word)) return ReadFault(errors, file, 6170);
  itsParameters.clear();
  if (word == "NONE") {
    itsModelType = NoModel;
  } else if (word == "IDEAL") {
    SString kind;
    file.GetToken(kind);
    int code = -1;
    for (int i = Resistor; i <= Inductor; ++i)
      if (kind == kIdealWords[i]) code = i;
    if (code < 0) return ReadFault(errors, file, 6024);
    if (!itsValue.ReadValueToken(file)) return ReadFault(errors, file, 6168);
    itsIdealKind = code;
    itsModelType = IdealModel;
  } else if (word == "SPARAM") {
    if (!file.GetLong(itsFileKey)) return ReadFault(errors, file, 6171);
    itsModelType = DataFileModel;
  } else if (word == "SPFILE") {
    SString rest;
    file.GetRestOfLine(rest);
    itsFileName = Unquoted(rest);
    itsFileKey = 0;
    itsModelType = DataFileModel;
  } else if (word == "SPROJ") {
    SString name;
    if (!file.GetToken(name) || name.isEmpty()) return ReadFault(errors, file, 6202);
    const SString dir = ProjectDirectory(circuit);
    if (!dir.isEmpty() && !QFileInfo(name.qstring()).isAbsolute())
      name = SString(QDir::cleanPath(QDir(dir.qstring()).absoluteFilePath(name.qstring())));
    itsFileName = name;
    itsModelType = ProjectModel;
    return ReadParameters(file);
  } else if (word == "UMOD") {
    SString model, dll, library, entry;
    if (!file.GetToken(model) || !file.GetToken(dll) || dll != "DLL" || !file.GetToken(library) ||
        !file.GetToken(entry))
      return ReadFault(errors, file, 6201);
    SetUserModel(model, library, entry);
    itsModelType = UserModel;
    return ReadParameters(file);
  } else {
    return ReadFault(errors, file, 6024);
  }
  return true;
}

// "name=value" tokens to the end of the line; a quoted name may stand apart from "=value".
bool SSMDev::ReadParameters(SFile& file) {
  SString token;
  while (file.GetToken(token)) {
    SString next;
    if (!token.contains("=") && file.PeekToken(next) && next.startsWith("=")) {
      file.NextToken();
      token = token + next;
    }
    // A quoted value stands apart from "name=".
    if (token.endsWith("=") && file.PeekToken(next) && !next.contains("=")) {
      file.NextToken();
      token = token + next;
    }
    const int at = token.index("=");
    if (at < 0)
      AddParameter(token, SString());
    else
      AddParameter(token.left(at), token.mid(at + 1));
  }
  return true;
}

// ---- the circuit's components

void SSMDev::Collect(const SCircuit& circuit, std::vector<SSMDev*>& list) {
  for (int i = 0; i < circuit.GetNumberOfLevels(); ++i) {
    const SLevel* level = circuit.GetLevel(i);
    size_t wanted = level->GetComponentCount();
    for (size_t j = 0; wanted > 0 && j < level->GetNumberOfChildren(); ++j)
      if (level->GetChild(j)->isA() == SID_SMDEV) {
        list.push_back(static_cast<SSMDev*>(level->GetChild(j)));
        --wanted;
      }
  }
}

SSMDev* SSMDev::Find(const SCircuit& circuit, long long id) {
  std::vector<SSMDev*> components;
  Collect(circuit, components);
  for (SSMDev* component : components)
    if (component->GetGroupId() == id) return component;
  return nullptr;
}

void SSMDev::BindFiles(const SCircuit& circuit, const SSMDBlock& block) {
  std::vector<SSMDev*> components;
  Collect(circuit, components);
  for (SSMDev* component : components)
    if (component->itsModelType == DataFileModel && IsBlockKey(component->itsFileKey) &&
        block.GetFiles().contains(static_cast<int>(component->itsFileKey)))
      component->itsFileName = block.GetFile(static_cast<int>(component->itsFileKey));
}

bool SSMDev::CopyFiles(const SCircuit& circuit, SSMDBlock& block) {
  std::vector<SSMDev*> components;
  Collect(circuit, components);
  bool copied = false;
  for (const SSMDev* component : components) {
    if (component->itsModelType != DataFileModel || !IsBlockKey(component->itsFileKey) ||
        component->itsFileName.isEmpty())
      continue;
    block.SetFile(static_cast<int>(component->itsFileKey), component->itsFileName);
    copied = true;
  }
  return copied;
}
