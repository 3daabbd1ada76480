#ifndef SGEOVAR_H
#define SGEOVAR_H

#include "SDimension.h"
#include "SValid.h"

#include <vector>

class SMetalPolygon;
class SVariable;

// A dimension whose length is a variable: a new value moves the points of its point sets.
// Read as a child of the circuit; once the polygons are read it is bound to its variable
// and becomes the variable's child.
class SGeoVar : public SDimension {
  SCOLLECTABLE_DECLARE(SGeoVar)
public:
  SGeoVar() {}

  // The name of the variable as read.
  const SString& GetVariableName() const { return itsVariableName; }
  void SetVariableName(const SString& name) { itsVariableName = name; }
  SVariable* GetVariable() const;
  // The number of the NOM line.
  double GetStoredNominal() const { return itsStoredNominal; }
  // The equation of the EQN line, quotes unescaped; empty without one.
  const SString& GetEquationText() const { return itsEquationText; }
  std::vector<SPolyDepHandle>& PointSet(int which) { return itsPointSets[which == 2 ? 1 : 0]; }
  const std::vector<SPolyDepHandle>& GetPointSet(int which) const { return itsPointSets[which == 2 ? 1 : 0]; }

  // A new value to move to; a target already present becomes the previous target.
  void SetTarget(double value);
  const SDoubleValid& GetTarget() const { return itsTarget; }
  const SDoubleValid& GetPreviousTarget() const { return itsPreviousTarget; }

  // The distance between the reference points along the direction (RAD: the distance),
  // times the sign factor; false when a reference point can't be found.
  bool ComputeNominal(const SCircuit& circuit, double& nominal) const;
  // Every handle names a polygon of the circuit and a vertex it has: 0, else the text
  // number of what is missing (6130 a polygon, 6131 a point).
  int CheckHandles(const SCircuit& circuit) const;
  // Moves the points to the target (forward) or back to the previous target.
  void Apply(SCircuit& circuit, bool forward);

  // This one waits for `other`: a reference point of it lies in the other's point sets,
  // and both measure along the same direction (or this one is radial).
  bool WaitsFor(const SGeoVar& other) const;

  // GEOVAR to END, after the keyword. Leaves the file on the END line.
  bool Read(SFile& file, SProjectErrorManager& errors);
  // Nothing when REF1 names no polygon, or below format 7 with a component handle.
  void Write(SProjectStream& out, const SCircuit& circuit, int format, const SString& equation) const;

private:
  struct SVertexRef {
    SMetalPolygon* polygon;
    int vertex;
    bool operator<(const SVertexRef& o) const {
      return polygon != o.polygon ? polygon < o.polygon : vertex < o.vertex;
    }
    bool operator==(const SVertexRef& o) const { return polygon == o.polygon && vertex == o.vertex; }
  };
  bool ReferencePoint(const SCircuit& circuit, int which, SPoint& point) const;
  static void CollectVertices(const SCircuit& circuit, const SPolyDepHandle& handle, std::vector<SVertexRef>& out);
  void CollectSet(const SCircuit& circuit, int which, bool withReference, std::vector<SVertexRef>& out) const;
  bool HasComponentHandle() const;
  void MoveComponents(const SCircuit& circuit, int which, double dx, double dy) const;
  bool ReadPointSet(SFile& file, SProjectErrorManager& errors, std::vector<SPolyDepHandle>& set);

  std::vector<SPolyDepHandle> itsPointSets[2];
  SDoubleValid itsTarget = SDoubleValid(0.0, false);
  SDoubleValid itsPreviousTarget = SDoubleValid(0.0, false);
  SString itsVariableName;
  double itsStoredNominal = 0.0;
  SString itsEquationText;
};

#endif
