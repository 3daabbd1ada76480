#ifndef SGEOOBJECTIO_H
#define SGEOOBJECTIO_H

#include "SString.h"

#include <utility>
#include <vector>

class SCircuit;
class SEdgeVia;
class SEnclosure;
class SFile;
class SMetalPolygon;
class SPort;
class SRefPlaneData;
class SProjectErrorManager;
class SProjectStream;
class SSubsectionControls;
class STechLayer;

// Where the GEO block reaches ports, reference planes, coupled groups, dimensions, edge vias
// and technology layers. Readers are called with the keyword token already taken from the
// current line; they report their own errors (message number, severity 3, line), leave the
// file on the last line they took, and return false when the read of the block must end.
namespace SGeoObjectIO {
bool ReadPort(SFile& file, SCircuit& circuit, const SString& keyword, SProjectErrorManager& errors);     // POR, POR1, PORA, PORI
bool ReadEdgeVia(SFile& file, SCircuit& circuit, const SString& keyword, SProjectErrorManager& errors);  // VIA, EVIA, EVIA1, EVIAI
bool ReadBoxRefPlane(SFile& file, SCircuit& circuit, SProjectErrorManager& errors);                      // DRP1
bool ReadParallelSubs(SFile& file, SCircuit& circuit, SProjectErrorManager& errors);                     // PSB1
bool ReadOldRefLine(SFile& file, SCircuit& circuit, SProjectErrorManager& errors);                       // REF
bool ReadCoupledGroup(SFile& file, SCircuit& circuit, SProjectErrorManager& errors);                     // CUPGRP
bool ReadDimension(SFile& file, SCircuit& circuit, SProjectErrorManager& errors);                        // DIM
bool ReadTechLayer(SFile& file, SCircuit& circuit, SProjectErrorManager& errors);                        // TECHLAY
// After the polygons: binds ports, vias, planes, dimensions and the TLAYNAM names of the
// polygons to their objects. False after reporting (6173, 6028 with 6121).
bool ResolveReferences(SCircuit& circuit, SProjectErrorManager& errors, bool abbreviated);
// Writers, called at their places in the GEO body.
void WriteBoxRefPlanes(SProjectStream& out, const SCircuit& circuit, int format);
void WriteParallelSubs(SProjectStream& out, const SCircuit& circuit, int format);
void WriteTechLayers(SProjectStream& out, const SCircuit& circuit, int format);
void WriteDimensions(SProjectStream& out, const SCircuit& circuit, int format);
// `owners` are the polygons with children and their ordinals; the ports written go to `ports`.
void WriteViasAndPorts(SProjectStream& out, const std::vector<std::pair<long long, SEnclosure*>>& owners, int format,
                       std::vector<SPort*>& ports);
// The groups that no port of `ports` has written.
void WriteCoupledGroups(SProjectStream& out, const SCircuit& circuit, const std::vector<SPort*>& ports, int format);
// A plane's form behind its keyword; a plane whose polygon is gone writes as a fixed one.
void WritePlaneForm(SProjectStream& out, const SCircuit& circuit, const SRefPlaneData& plane);
// Whether that form has anything to say.
bool PlaneHasLine(const SCircuit& circuit, const SRefPlaneData& plane);
// A new circuit's four box-side reference planes, made right after its levels.
void CreateBoxRefPlanes(SCircuit& circuit);
// The template's controls of a technology layer, or null.
const SSubsectionControls* TemplateControls(const STechLayer* layer);
SString TechLayerName(const STechLayer* layer);
// True when the layer's template polygon uses the material type.
bool TechLayerUses(const STechLayer* layer, const void* type);

// The ports and edge vias that hang on a polygon, in order.
void GetPorts(const SMetalPolygon& polygon, std::vector<SPort*>& list);
void GetEdgeVias(const SMetalPolygon& polygon, std::vector<SEdgeVia*>& list);
// The first port on the edge that starts at `vertex`, or null.
SPort* FindPortAtVertex(const SMetalPolygon& polygon, int vertex);
// Every port of the circuit, level by level.
void GetAllPorts(const SCircuit& circuit, std::vector<SPort*>& list);
}  // namespace SGeoObjectIO

#endif
