#include "SPolygonEdge.h"

#include <functional>

#include "SMetalPolygon.h"
#include "SXtranProject.h"

SCOLLECTABLE_DEFINE(SPolygonEdge, SID_POLYGONEDGE, &SCollectable::staticTypeInfo())

bool SPolygonEdge::isEqual(const SCollectable* other) const
{
    if (!other || !other->isKindOf(staticTypeInfo()))
        return false;
    return *this == *static_cast<const SPolygonEdge*>(other);
}

unsigned SPolygonEdge::hash() const
{
    return unsigned(std::hash<const void*>()(itsPolygon)) ^ unsigned(itsVertex);
}

SPoint SPolygonEdge::GetFirstPoint() const
{
    return itsPolygon->GetVertex(itsVertex);
}

SPoint SPolygonEdge::GetSecondPoint() const
{
    const int n = itsPolygon->GetNumberOfVertices();
    return itsPolygon->GetVertex(n > 0 ? (itsVertex + 1) % n : 0);
}
