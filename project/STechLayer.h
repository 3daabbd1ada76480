#ifndef STECHLAYER_H
#define STECHLAYER_H

#include "SEnclosure.h"

#include <memory>
#include <vector>

class QXmlStreamWriter;
class SBrickPolygon;
class SBrickType;
class SCircuit;
class SFile;
class SMaterialTypeData;
class SMetalPolygon;
class SMetalType;
class SProjectErrorManager;
class SProjectStream;
class SShapeData;
class SViaMetalType;
class SViaPolygon;

// A named drawing layer of one level: where outside layers (DXF name, stream and datatype,
// Gerber file) land, and the attributes that its polygons take when they follow it. The
// attributes live on a template polygon without vertices that the layer owns. The layer is
// a child of its level; the polygons on it stay children of their levels and point to it.
class STechLayer : public SObjectEnclosure {
  SCOLLECTABLE_DECLARE(STechLayer)
public:
  enum LayerType { NoType = 0, Metal = 1, Via = 2, Brick = 3 };
  enum MatchKind { AnyKey = 0, ByName = 1, ByDXFName = 2, ByStreamLabel = 3, ByGerberName = 4, ById = 5 };
  enum ToLevelType { ToLevelNumber = 0, ToTop = 1, ToGround = 2 };

  STechLayer();
  ~STechLayer() override;

  // By level, then layer type, then name.
  int compareTo(const SCollectable* other) const override;

  long long GetSourceLine() const { return itsLine; }
  void SetSourceLine(long long line) { itsLine = line; }

  SString GetName() const override { return itsName; }
  // Inside a circuit a name that another layer has is made unique ("M" -> "M1").
  void SetName(const SString& name);
  int GetLayerType() const { return itsLayerType; }
  // Makes the template on the first call; later calls with another type change nothing.
  void SetLayerType(int type);
  static const char* LayerTypeWord(int type);

  const SString& GetDXFName() const { return itsDXFName; }
  void SetDXFName(const SString& name) { itsDXFName = name; }
  const SString& GetGerberName() const { return itsGerberName; }
  void SetGerberName(const SString& name) { itsGerberName = name; }
  const SString& GetShieldName() const { return itsShieldName; }
  void SetShieldName(const SString& name) { itsShieldName = name; }
  const SString& GetCapMetalName() const { return itsCapMetalName; }
  void SetCapMetalName(const SString& name) { itsCapMetalName = name; }
  SString GetDXFNameOrName() const { return itsDXFName.isEmpty() ? itsName : itsDXFName; }
  SString GetGerberNameOrName() const { return itsGerberName.isEmpty() ? itsName : itsGerberName; }

  // The absolute values; a negative stored stream or data means "no stream mapping".
  int GetStream() const { return itsStream < 0 ? -itsStream : itsStream; }
  int GetData() const { return itsData < 0 ? -itsData : itsData; }
  int GetRawStream() const { return itsStream; }
  int GetRawData() const { return itsData; }
  void SetStream(int stream) { itsStream = stream; }
  void SetData(int data) { itsData = data; }
  bool HasStreamMapping() const { return itsStream >= 0 && itsData >= 0; }
  // "Stream-5-0", numbers with 4 significant digits.
  SString GetStreamLabel() const;
  // "DXF: ..., GDSII: 5:0, Gerber: ..." or "Default Mappings".
  SString GetMappingSummary() const;

  // The CVT texts of conversion files.
  const SString& GetMaterialText() const { return itsMaterialText; }
  void SetMaterialText(const SString& text) { itsMaterialText = text; }
  const SString& GetLevelTextField() const { return itsLevelText; }
  void SetLevelText(const SString& text) { itsLevelText = text; }

  // The template: null until the layer has a type.
  SShapeData* GetTemplate() const;
  SEnclosure* GetTemplateObject() const { return itsTemplate.get(); }
  SMetalPolygon* GetMetalTemplate() const;
  SViaPolygon* GetViaTemplate() const;
  SBrickPolygon* GetBrickTemplate() const;

  // The owning level's number, else the template's.
  int GetLevel() const;
  // Moves the layer to that level of its circuit; no such level, no move.
  void SetLevel(int level);
  // Only a via layer has a target; the others ignore the setters and answer 0.
  void SetToLevel(int level);
  void SetToLevelType(int type);
  int GetToLevel() const;
  int GetToLevelType() const;
  // 1 on a layer that isn't a via layer.
  int GetViaFillType() const;
  bool GetHasCovers() const;
  void SetViaFillType(int fill);
  void SetHasCovers(bool on);

  void SetMaterial(SMaterialTypeData* material);
  SMaterialTypeData* GetMaterialTypeData() const;
  SMetalType* GetMetalType() const;
  SViaMetalType* GetViaMetalType() const;
  SBrickType* GetBrickType() const;
  // Takes the circuit's type of the material name of `other` (or of this layer).
  void RelinkMaterial(const STechLayer* other = nullptr);
  // The CVT material text, else the template's material name.
  SString GetMaterialName() const;
  int GetMaterialIndex() const;

  // Forwarded from the template; neutral values without one.
  int GetFillType() const;
  SString GetFillTypeName() const { return FillTypeText(GetFillType()); }
  int GetIsoType() const;
  SString GetIsoTypeName() const { return IsoTypeText(GetIsoType()); }
  bool GetEdgeMesh() const;
  int GetXMin() const;
  int GetYMin() const;
  int GetXMax() const;
  int GetYMax() const;
  double GetMaxLength() const;
  static const char* FillTypeText(int code);
  static int FillTypeFromText(const SString& text);
  static const char* IsoTypeText(int code);
  static int IsoTypeFromText(const SString& text);

  // "GND" or the level number, and for a via "-" and "TOP", "GND" or its target.
  SString GetLevelText() const;
  bool Matches(const SString& key, int kind) const;

  // The polygons of the circuit that are on this layer, in circuit order.
  void GetPolygons(std::vector<SEnclosure*>& list) const;
  // The kept counts when the layer holds no polygons (a copy without them).
  int GetPolygonCount() const;
  int GetFollowingPolygonCount() const;

  bool IsFromSTF() const override { return itsFromSTF != 0; }
  void SetFromSTF(bool on) override { itsFromSTF = on ? 1 : 0; }
  SString GetDescription() const;

  // The template takes the attributes that most polygons on the layer share; with
  // `markPolygons` exactly those polygons follow the layer. Null without polygons.
  SEnclosure* AdoptCommonAttributes(bool markPolygons);
  // A full copy of the other layer's settings (the name made unique here).
  void CopyFrom(const STechLayer& other);

  // The TECHLAY block; the short form ends the first line with the CVT clause instead of
  // the template record.
  void Write(SProjectStream& out, int format, bool shortForm = false) const;
  // After the TECHLAY keyword; on failure 7132 is reported. Leaves the file on the END line.
  bool Read(SFile& file, SProjectErrorManager& errors);
  // The "techlayer" element of a summary.
  void WriteSummaryXml(QXmlStreamWriter& xml) const;

  // ---- the circuit's layers
  static void GetAll(const SCircuit& circuit, std::vector<STechLayer*>& list);
  // The first layer, level by level, whose key of `kind` matches; an empty key finds nothing.
  static STechLayer* Find(const SCircuit& circuit, const SString& key, int kind = ByName);
  // The layer of that name, or a new one on the level; `created` tells which.
  static STechLayer* GetOrCreate(SCircuit& circuit, int type, const SString& name, int level, int toLevel,
                                 bool* created = nullptr);
  // A new layer on the level with the project's via defaults. Its stream is the negative of
  // `counter`, which then counts up, so that it has a placeholder until a mapping is given.
  static STechLayer* Create(SCircuit& circuit, int type, const SString& name, int level, int toLevel, int& counter,
                            int viaFill, bool covers);
  // Rebuilds the layers from the polygons' materials and levels. True if any was made.
  static bool CreateFromPolygons(SCircuit& circuit);
  // Detaches the polygons from the layer and deletes it.
  static void Delete(STechLayer* layer);
  // `name`, or the same base with the first free number when one of `taken` has it.
  static SString UniqueName(const SString& name, const std::vector<SString>& taken);

private:
  // A new layer of `type` on `level`, named; null when there is no such level.
  static STechLayer* MakeOnLevel(SCircuit& circuit, int type, const SString& name, int level);
  void MakeTemplate(int type);
  SCircuit* Circuit() const;
  // Sets the template's target, and that of every polygon that differs from the layer there.
  template <class Set> void SetViaTarget(Set set);

  SString itsName;
  int itsLayerType = NoType;
  SString itsDXFName;
  SString itsGerberName;
  SString itsShieldName;
  SString itsCapMetalName;
  int itsStream = -1;
  int itsData = 0;
  std::unique_ptr<SEnclosure> itsTemplate;
  int itsTemplateLevel = 0;
  SString itsMaterialText;
  SString itsLevelText;
  int itsPolygonCount = 0;
  int itsDifferingCount = 0;
  unsigned char itsFromSTF = 0;
};

#endif
