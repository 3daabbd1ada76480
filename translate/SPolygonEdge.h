#ifndef SPOLYGONEDGE_H
#define SPOLYGONEDGE_H

#include "SCollectable.h"
#include "SPoint.h"

class SMetalPolygon;

// One edge of a project polygon: the polygon (not owned) and the index of the vertex the
// edge starts at; it ends at the next vertex in the polygon's cyclic order.
class SPolygonEdge : public SCollectable
{
    SCOLLECTABLE_DECLARE(SPolygonEdge)
    SCOLLECTABLE_COPYABLE(SPolygonEdge)

public:
    SPolygonEdge() = default;
    SPolygonEdge(SMetalPolygon* polygon, int vertex) : itsPolygon(polygon), itsVertex(vertex) {}

    bool isEqual(const SCollectable* other) const override;
    unsigned hash() const override;
    bool operator==(const SPolygonEdge& other) const
    {
        return itsPolygon == other.itsPolygon && itsVertex == other.itsVertex;
    }

    SPoint GetFirstPoint() const;
    SPoint GetSecondPoint() const;

    SMetalPolygon* itsPolygon = nullptr;
    int itsVertex = 0;
};

#endif
