#ifndef SGDSPATHCONVERTER_H
#define SGDSPATHCONVERTER_H

#include <vector>

#include "SPoint.h"
#include "SString.h"

class SGdsElementPath;
class SGdsPolygon;
class SGdsPolygonList;

// How a path of width zero becomes a polygon (-c).
enum {
    kPathBoundary = 0,   // "boundary_path": the points are the outline
    kPathNoBoundary = 1, // "no_boundary_path": out to the end and back
    kPathSmart = 2       // "smart_path": the outline when the path is closed
};

// The mode of the run, kPathBoundary until -c says otherwise.
extern int PathConversionMode;
// Sets the mode from the argument of -c; false for a word it doesn't know.
bool SetPathConversionMode(const SString& argument);

// Turns PATH elements into closed outlines: the centre line is cleaned, its
// ends extended by the path type, placed, and offset by half the width to
// both sides with mitred joins. Lengths are user units; one converter serves
// a whole flattening, reusing its working copy of the centre line.
class SGdsPathConverter
{
public:
    // False only when the element has no XY record.
    bool ExpandStructure(SGdsPolygonList& list, const SGdsElementPath& path);
    // The same for a centre line given apart from the element's record.
    bool ExpandPoints(SGdsPolygonList& list, const SGdsElementPath& path, const SPoint* points, int count);

    bool ExpandZeroWidth(SGdsPolygonList& list, const SGdsElementPath& path, const std::vector<SPoint>& points);
    // Drops points closer than 1e-9 to the next one, then points lying
    // between their neighbours; a path that turns back keeps its turn.
    void RemoveRedundantPoints(std::vector<SPoint>& points) const;
    static double Distance(const SPoint& a, const SPoint& b);
    // Moves end by length away from neighbour; a negative length shortens.
    static void ExtendEnd(SPoint& end, const SPoint& neighbour, double length);
    void AddEndPoint(SGdsPolygonList& list, SGdsPolygon& polygon, const SPoint& a, const SPoint& b, bool atFirst,
                     double halfWidth) const;
    void AddJoinPoint(SGdsPolygonList& list, SGdsPolygon& polygon, const SPoint& p0, const SPoint& p1,
                      const SPoint& p2, double halfWidth) const;
    // +1 or -1: the sign of an offset to the left of the way from a to b.
    static int Side(const SPoint& a, const SPoint& b);

private:
    // The work on the centre line in itsPoints.
    bool Convert(SGdsPolygonList& list, const SGdsElementPath& path);

    std::vector<SPoint> itsPoints;
};

#endif
