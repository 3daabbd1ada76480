#ifndef SEDGE_H
#define SEDGE_H

// The index of a polygon's edge: edge i runs from vertex i to vertex i + 1.
class SEdge {
public:
  SEdge() {}
  explicit SEdge(int edge) : itsEdge(edge) {}
  int GetEdge() const { return itsEdge; }
  void SetEdge(int edge) { itsEdge = edge; }

protected:
  int itsEdge = 0;
};

#endif
