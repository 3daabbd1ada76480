#ifndef SXMATLENTRIES_H
#define SXMATLENTRIES_H

#include "SString.h"
#include "SXmatlCond.h"

#include <QStringList>

#include <utility>
#include <vector>

// The plain entries of a technology file. Each carries the "private" flag of the block it
// was read from, which decides where it is written again, and the line of its element for
// messages. Lengths are in the file's length unit, conductivities in its conductivity unit.
// Equality (==) compares what a file holds, not the line.

// Compares two numbers as a file holds them: equal, or written alike.
bool SXmatlSameNumber(double a, double b);

struct SXmatlVar {
  SString name;
  SString value;
  // "LENG", "COND", ... as written, upper case; empty when the file gave none.
  SString units;
  bool isPrivate = false;
  long long line = 0;
  bool operator==(const SXmatlVar& o) const;
};

// The values of a dielectric material along one axis.
struct SXmatlAxis {
  double erel = 1.0;
  double mrel = 1.0;
  double tane = 0.0;
  double tanm = 0.0;
  // Conductivity, or resistivity on a material whose "cond_res" is "rsvy".
  double cond = 0.0;
  bool condInf = false;
  bool operator==(const SXmatlAxis& o) const;
};

struct SXmatlDielMatl {
  enum Axis { X = 0, Y = 1, Z = 2 };
  // The "axes" words of a "params" element, in the order they are written.
  enum Params { ParamsXYZ = 0, ParamsXY = 1, ParamsX = 2, ParamsY = 3, ParamsZ = 4, ParamsCount = 5 };
  static const char* const kParamsWords[ParamsCount];

  SString name;
  bool anisotropic = false;
  bool resistivity = false;
  // Which "params" elements the material had.
  bool has[ParamsCount] = {false, false, false, false, false};
  SXmatlAxis axis[3];
  bool isPrivate = false;
  long long line = 0;
  bool operator==(const SXmatlDielMatl& o) const;
  // The axis whose values a "params" element of that kind carries.
  static int FirstAxis(int params);
};

struct SXmatlMesh {
  enum Type { Metal = 0, Via = 1, Brick = 2 };
  static const char* TypeWord(int type);

  SString name;
  int type = Metal;
  // SMatlMetalData::FillType for metal and brick, SMatlViaDrawLayer::ViaFill for vias.
  int fillType = 0;
  SString isoType;
  int xmin = 1;
  int xmax = 100;
  int ymin = 1;
  int ymax = 100;
  bool edgeMesh = true;
  bool pads = false;
  bool useMaxLength = false;
  double maxLength = 0.0;
  bool isPrivate = false;
  long long line = 0;
  bool operator==(const SXmatlMesh& o) const;
};

// A "metal_model" element; its type is a SMatlMetalData::MetalType.
struct SXmatlMetalModel {
  SString name;
  int type = 0;
  double currentRatio = 0.0;
  int numSheets = 2;
  double topRoughness = 0.0;
  double bottomRoughness = 0.0;
  bool thick = false;
  bool isPrivate = false;
  long long line = 0;
  bool operator==(const SXmatlMetalModel& o) const;
  // Which attributes the type has.
  bool HasCurrentRatio() const;
  bool HasNumSheets() const;
  bool HasRoughness() const;
};

// A "via_model" element; its type is a SMatlViaDrawLayer::ViaType.
struct SXmatlViaModel {
  SString name;
  int type = 0;
  double fillFactor = 100.0;
  bool solid = false;
  double wallThickness = 0.0;
  double viaDensity = 1.0;
  bool isPrivate = false;
  long long line = 0;
  bool operator==(const SXmatlViaModel& o) const;
};

// A "bias" element: its lookup child kept as it stands, attribute by attribute.
struct SXmatlBias {
  SString name;
  // "lookup_table" or "lookup_vector"; empty without a child.
  SString lookup;
  std::vector<std::pair<SString, SString>> attributes;
  bool isPrivate = false;
  long long line = 0;
  bool operator==(const SXmatlBias& o) const;
};

struct SXmatlMap {
  SString dxfLayer;
  SString gerberName;
  // Negative: no stream mapping.
  int gdsStream = -1;
  int gdsDatatype = 0;
  SString mask;
  bool IsEmpty() const;
  bool operator==(const SXmatlMap& o) const;
};

// A "metal_techlayer", "brick_techlayer" or "via_techlayer".
struct SXmatlLayer {
  enum Kind { Metal = 0, Brick = 1, Via = 2 };
  int kind = Metal;
  // The material type the project gets (metal, via or brick type name).
  SString name;
  // A conductor, or for a brick a dielectric material.
  SString material;
  SString model;
  // The drawing layer: the project's technology layer.
  SString layerName;
  double thickness = 0.0;
  SString bias;
  SString mesh;
  int pattern = 0;
  bool down = false;
  // Via ends: "top", "gnd", "bot", "bottom", "substrate" or a "diel" name.
  SString from;
  SString to;
  SXmatlMap map;
  bool isPrivate = false;
  long long line = 0;
  bool operator==(const SXmatlLayer& o) const;
};

// "top" and "bottom" of the stackup.
struct SXmatlCover {
  SString material = "Lossless";
  SString model = "Default";
  bool isPrivate = false;
  bool operator==(const SXmatlCover& o) const;
};

// A "diel": one dielectric layer of the stack, top first, with its metal and brick layers.
struct SXmatlDiel {
  SString name;
  SString dielectric;
  bool conformal = false;
  double thickness = 0.0;
  int zpart = 0;
  SString measuredFrom;
  SString associatedCond;
  double sidewallThickness = 0.0;
  double topwallThickness = 0.0;
  double bottomwallThickness = 0.0;
  std::vector<SXmatlLayer> layers;
  bool isPrivate = false;
  long long line = 0;
  bool operator==(const SXmatlDiel& o) const;
};

struct SXmatlDielMap {
  SString name;
  SString publicDiel;
  QStringList privateDiels;
  bool isPrivate = true;
  long long line = 0;
  bool operator==(const SXmatlDielMap& o) const;
};

// Everything a technology file holds beyond its units, which SMatl keeps.
struct SXmatlData {
  SString version = "1.2";
  std::vector<std::pair<SString, SString>> sources;
  // The "line" texts as they stand; SMatl's comments hold them without their leaders.
  std::vector<SString> comments;
  std::vector<SXmatlVar> variables;
  std::vector<SXmatlCond> conductors;
  std::vector<SXmatlDielMatl> dielectrics;
  std::vector<SXmatlMesh> meshes;
  std::vector<SXmatlMetalModel> metalModels;
  std::vector<SXmatlViaModel> viaModels;
  std::vector<SXmatlBias> biases;
  SXmatlCover top;
  SXmatlCover bottom;
  std::vector<SXmatlDiel> diels;
  std::vector<SXmatlLayer> vias;
  std::vector<SXmatlDielMap> dielMaps;

  // Lookups by name, public and private alike; null when there is none.
  const SXmatlCond* FindConductor(const SString& name) const;
  const SXmatlDielMatl* FindDielectric(const SString& name) const;
  const SXmatlMesh* FindMesh(const SString& name) const;
  const SXmatlMetalModel* FindMetalModel(const SString& name) const;
  const SXmatlViaModel* FindViaModel(const SString& name) const;
  // The level of a "diel" name, counted from the top; -1 when there is none.
  int FindDielLevel(const SString& name) const;
};

#endif
