#include "SGeoVar.h"

#include "SCircuit.h"
#include "SFile.h"
#include "SFileBlock.h"
#include "SGeoClassID.h"
#include "SMetalPolygon.h"
#include "SProjectErrorManager.h"
#include "SProjectStream.h"
#include "SSMDev.h"
#include "SVariable.h"

#include <algorithm>
#include <cmath>

SCOLLECTABLE_DEFINE(SGeoVar, SID_GEOVAR, &SDimension::staticTypeInfo())

SVariable* SGeoVar::GetVariable() const {
  SBaseEnclosure* owner = GetOwner();
  return owner != nullptr && owner->isA() == SID_VARIABLE ? static_cast<SVariable*>(owner) : nullptr;
}

void SGeoVar::SetTarget(double value) {
  if (itsTarget.IsValid()) itsPreviousTarget = itsTarget;
  itsTarget = SDoubleValid(value);
}

// ---- points

void SGeoVar::CollectVertices(const SCircuit& circuit, const SPolyDepHandle& handle, std::vector<SVertexRef>& out) {
  SMetalPolygon* polygon = handle.FindPolygon(circuit);
  if (polygon == nullptr) return;
  const int count = polygon->GetNumberOfVertices();
  if (handle.IsWholePolygon()) {
    for (int i = 0; i < count; ++i) out.push_back({polygon, i});
    return;
  }
  for (int item : handle.GetItems())
    if (item >= 0 && item < count) out.push_back({polygon, item});
}

bool SGeoVar::ReferencePoint(const SCircuit& circuit, int which, SPoint& point) const {
  const SPolyDepHandle& handle = GetReference(which);
  const SMetalPolygon* polygon = handle.FindPolygon(circuit);
  if (polygon == nullptr || polygon->GetNumberOfVertices() == 0) return false;
  const int vertex = handle.GetItem(0);
  if (vertex < 0 || vertex >= polygon->GetNumberOfVertices()) return false;
  point = polygon->GetVertex(vertex);
  return true;
}

void SGeoVar::CollectSet(const SCircuit& circuit, int which, bool withReference, std::vector<SVertexRef>& out) const {
  for (const SPolyDepHandle& handle : GetPointSet(which)) CollectVertices(circuit, handle, out);
  if (withReference) {
    // The reference is a single point: its first item.
    const SPolyDepHandle& ref = GetReference(which == 2 ? 1 : 0);
    SMetalPolygon* polygon = ref.FindPolygon(circuit);
    const int vertex = ref.GetItem(0);
    if (polygon != nullptr && vertex >= 0 && vertex < polygon->GetNumberOfVertices()) out.push_back({polygon, vertex});
  }
  // A point named twice moves once.
  std::sort(out.begin(), out.end());
  out.erase(std::unique(out.begin(), out.end()), out.end());
}

bool SGeoVar::ComputeNominal(const SCircuit& circuit, double& nominal) const {
  SPoint a, b;
  if (!ReferencePoint(circuit, 0, a) || !ReferencePoint(circuit, 1, b)) return false;
  double distance;
  if (GetKind() == Radial)
    distance = std::hypot(b.x() - a.x(), b.y() - a.y());
  else
    distance = GetDirection() == YDirection ? b.y() - a.y() : b.x() - a.x();
  nominal = distance * GetSignFactor();
  return true;
}

int SGeoVar::CheckHandles(const SCircuit& circuit) const {
  const auto check = [&](const SPolyDepHandle& handle) {
    if (handle.IsComponent()) return handle.FindComponent(circuit) != nullptr ? 0 : 6130;
    const SMetalPolygon* polygon = handle.FindPolygon(circuit);
    if (polygon == nullptr) return 6130;
    for (int item : handle.GetItems())
      if (item < 0 || item >= polygon->GetNumberOfVertices()) return 6131;
    return 0;
  };
  for (int which = 0; which < 2; ++which)
    if (int missing = check(GetReference(which))) return missing;
  for (int which = 1; which <= 2; ++which)
    for (const SPolyDepHandle& handle : GetPointSet(which))
      if (int missing = check(handle)) return missing;
  return 0;
}

void SGeoVar::Apply(SCircuit& circuit, bool forward) {
  const SDoubleValid target = forward ? itsTarget : itsPreviousTarget;
  if (!forward) itsPreviousTarget = itsTarget;
  double nominal = 0.0;
  if (!target.IsValid() || !ComputeNominal(circuit, nominal)) return;
  double delta = (target.GetValue() - nominal) * GetSignFactor();
  if (delta == 0.0) return;

  const bool symmetric = GetKind() == Symmetric;
  const bool alongY = GetDirection() == YDirection;
  const auto move = [](const std::vector<SVertexRef>& points, double dx, double dy) {
    for (const SVertexRef& p : points) {
      const SPoint& old = p.polygon->GetVertex(p.vertex);
      p.polygon->SetVertex(p.vertex, SPoint(old.x() + dx, old.y() + dy));
    }
  };
  SPoint ref1, ref2;
  ReferencePoint(circuit, 0, ref1);
  ReferencePoint(circuit, 1, ref2);

  if (GetKind() == Radial) {
    // Points of set 2 and REF2 move away from the centre, REF1.
    std::vector<SVertexRef> points;
    CollectSet(circuit, 2, true, points);
    for (const SVertexRef& p : points) {
      const SPoint& old = p.polygon->GetVertex(p.vertex);
      const double dx = old.x() - ref1.x(), dy = old.y() - ref1.y();
      const double r = std::hypot(dx, dy);
      if (r == 0.0) continue;
      const double k = (r + delta) / r;
      p.polygon->SetVertex(p.vertex, SPoint(ref1.x() + dx * k, ref1.y() + dy * k));
    }
  } else {
    if (symmetric) delta /= 2.0;
    const double vx = alongY ? 0.0 : delta, vy = alongY ? delta : 0.0;
    if (GetScaleMode() != NotScaled) {
      const SPoint centre = symmetric ? SPoint((ref1.x() + ref2.x()) / 2, (ref1.y() + ref2.y()) / 2) : ref1;
      // Scales a point set about the centre so that `end` moves by `by`; then the reference
      // point moves by `by` too, unless the set held it and it moved already.
      const auto scale = [&](int which, double by, const SPoint& end) {
        std::vector<SVertexRef> points;
        const double length = alongY ? end.y() - centre.y() : end.x() - centre.x();
        if (length != 0.0) {
          const double k = (by + length) / length;
          CollectSet(circuit, which, false, points);
          for (const SVertexRef& p : points) {
            const SPoint& old = p.polygon->GetVertex(p.vertex);
            double x = old.x(), y = old.y();
            if (!alongY || GetScaleMode() == ScaleXY) x = centre.x() + (x - centre.x()) * k;
            if (alongY || GetScaleMode() == ScaleXY) y = centre.y() + (y - centre.y()) * k;
            p.polygon->SetVertex(p.vertex, SPoint(x, y));
          }
        }
        std::vector<SVertexRef> reference;
        CollectVertices(circuit, GetReference(which == 2 ? 1 : 0), reference);
        reference.resize(std::min<size_t>(reference.size(), 1));
        if (!reference.empty() && !std::binary_search(points.begin(), points.end(), reference[0]))
          move(reference, alongY ? 0.0 : by, alongY ? by : 0.0);
      };
      scale(2, delta, ref2);
      if (symmetric) scale(1, -delta, ref1);
    } else {
      std::vector<SVertexRef> points;
      CollectSet(circuit, 2, true, points);
      move(points, vx, vy);
      MoveComponents(circuit, 2, vx, vy);
      if (symmetric) {
        points.clear();
        CollectSet(circuit, 1, true, points);
        move(points, -vx, -vy);
        MoveComponents(circuit, 1, -vx, -vy);
      }
    }
  }
  if (ComputeNominal(circuit, nominal)) SetNominalRead(nominal);
}

// A component moves whole, the pins with it.
void SGeoVar::MoveComponents(const SCircuit& circuit, int which, double dx, double dy) const {
  std::vector<SSMDev*> moved;
  for (const SPolyDepHandle& handle : GetPointSet(which))
    if (SSMDev* component = handle.FindComponent(circuit))
      if (std::find(moved.begin(), moved.end(), component) == moved.end()) moved.push_back(component);
  for (SSMDev* component : moved) component->Move(dx, dy);
}

bool SGeoVar::WaitsFor(const SGeoVar& other) const {
  if (&other == this) return false;
  if (GetKind() != Radial && other.GetDirection() != GetDirection()) return false;
  const auto holds = [&](const SPolyDepHandle& ref, int set) {
    for (const SPolyDepHandle& handle : other.GetPointSet(set)) {
      if (handle.GetPolygonId() != ref.GetPolygonId() || handle.IsComponent() != ref.IsComponent()) continue;
      if (handle.IsWholePolygon()) return true;
      const std::vector<int>& items = handle.GetItems();
      if (std::find(items.begin(), items.end(), ref.GetItem(0)) != items.end()) return true;
    }
    return false;
  };
  for (int which = 0; which < 2; ++which) {
    const SPolyDepHandle& ref = GetReference(which);
    if (!ref.IsSet()) continue;
    if (holds(ref, 2)) return true;
    if (other.GetKind() == Symmetric && holds(ref, 1)) return true;
  }
  return false;
}

// ---- file

bool SGeoVar::HasComponentHandle() const {
  if (GetReference(0).IsComponent() || GetReference(1).IsComponent()) return true;
  for (int which = 1; which <= 2; ++which)
    for (const SPolyDepHandle& handle : GetPointSet(which))
      if (handle.IsComponent()) return true;
  return false;
}

void SGeoVar::Write(SProjectStream& out, const SCircuit& circuit, int format, const SString& equation) const {
  if (GetReference(0).FindPolygon(circuit) == nullptr) return;
  if (format < 7 && HasComponentHandle()) return;
  out << "GEOVAR ";
  out.Name(itsVariableName);
  out << ' ';
  WriteRecord(out, format);
  out << "\nPOS " << GetLabelPosition().x() << ' ' << GetLabelPosition().y() << '\n';
  out << "NOM " << GetNominal() << '\n';
  out << "REF1 ";
  GetReference(0).Write(out);
  out << "REF2 ";
  GetReference(1).Write(out);
  if (format >= 9 && !equation.isEmpty()) {
    SString escaped = equation;
    escaped.replace("\"", "\\\"");
    out << "EQN " << escaped << '\n';
  }
  for (int which = 1; which <= 2; ++which) {
    const std::vector<SPolyDepHandle>& set = GetPointSet(which);
    out << (which == 1 ? "PS1 " : "PS2 ") << static_cast<long long>(set.size()) << '\n';
    for (const SPolyDepHandle& handle : set) handle.Write(out);
  }
  out << "END\n";
}

bool SGeoVar::ReadPointSet(SFile& file, SProjectErrorManager& errors, std::vector<SPolyDepHandle>& set) {
  long long count = 0;
  if (!file.GetLong(count) || count < 0) return ReadFault(errors, file, 6002);
  set.clear();
  for (long long i = 0; i < count; ++i) {
    if (!file.NextLine()) return ReadFault(errors, file, 6002);
    SPolyDepHandle handle;
    if (!handle.ReadVariableHandle(file, errors)) return false;
    set.push_back(std::move(handle));
  }
  return true;
}

bool SGeoVar::Read(SFile& file, SProjectErrorManager& errors) {
  if (!file.GetToken(itsVariableName)) return ReadFault(errors, file, 6024);
  if (itsVariableName.length() >= 2 && itsVariableName.startsWith("\"") && itsVariableName.endsWith("\""))
    itsVariableName = itsVariableName.mid(1, itsVariableName.length() - 2);
  if (!ReadRecord(file, errors, true)) return false;
  for (;;) {
    if (!file.NextLine()) return ReadFault(errors, file, 6024);
    SString key;
    if (!file.GetToken(key)) continue;
    if (SFileBlock::Match(key, "REF1")) {
      if (!Reference(0).ReadVariableHandle(file, errors)) return false;
    } else if (SFileBlock::Match(key, "REF2")) {
      if (!Reference(1).ReadVariableHandle(file, errors)) return false;
    } else if (SFileBlock::Match(key, "POS")) {
      double x = 0.0, y = 0.0;
      if (!file.GetDouble(x) || !file.GetDouble(y)) return ReadFault(errors, file, 6076);
      SetLabelPosition(SPoint(x, y));
    } else if (SFileBlock::Match(key, "NOM")) {
      if (!file.GetDouble(itsStoredNominal)) return ReadFault(errors, file, 6133);
      SetNominalRead(itsStoredNominal);
    } else if (SFileBlock::Match(key, "PS1")) {
      if (!ReadPointSet(file, errors, itsPointSets[0])) return false;
    } else if (SFileBlock::Match(key, "PS2")) {
      if (!ReadPointSet(file, errors, itsPointSets[1])) return false;
    } else if (SFileBlock::Match(key, "EQN")) {
      if (!file.GetRestOfLine(itsEquationText) || itsEquationText.stripped().isEmpty())
        return ReadFault(errors, file, 6035);
      itsEquationText = itsEquationText.stripped();
    } else if (SFileBlock::Match(key, "END")) {
      itsEquationText.replace("\\\"", "\"");
      return true;
    } else {
      return ReadFault(errors, file, 6024);
    }
  }
}
