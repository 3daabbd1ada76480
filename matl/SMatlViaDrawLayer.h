#ifndef SMATLVIADRAWLAYER_H
#define SMATLVIADRAWLAYER_H

#include "SMatlDrawLayer.h"
#include "SMatlMaterial.h"
#include "SMatlMetalData.h"

// A "VIA" line: a drawing layer of vias from its level to its to-level, with the via's
// values. The via metal type field names a via type or, with `isMetal`, a metal type whose
// model the via follows.
class SMatlViaDrawLayer : public SMatlMaterial, public SMatlDrawLayer, public SMatlMetalData {
  SCOLLECTABLE_DECLARE(SMatlViaDrawLayer)
public:
  enum ViaType { Volume = 0, Surface = 1, Array = 2 };
  enum ViaFill { DefaultViaFill = 0, Ring = 1, Vertices = 2, Center = 3, Full = 4, Bar = 5 };
  enum VolumeLossModel { Wall = 0, Solid = 1, NotApplicable = 2 };

  static const SMatlWord kViaTypes[];
  static const SMatlWord kViaFills[];
  static const SMatlWord kPads[];
  static const SMatlWord kVolumeLossModels[];
  static const char* ViaTypeName(int code);
  static const char* ViaFillName(int code);
  static const char* VolumeLossModelName(int code);

  SMatlViaDrawLayer();
  SMatlViaDrawLayer(const SMatlViaDrawLayer& other) = default;

  int GetKind() const override { return ViaDrawLayerKind; }
  bool Write(SProjectStream& out) const override;
  SMatlMaterial* Clone() const override { return new SMatlViaDrawLayer(*this); }
  // Needs a dielectric before it (20026); ends with the consistency step.
  bool Read(SCommentedFile& file) override;
  bool IsEqual(const SMatlMaterial& other) const override;
  void Scale(int dimension, double factor) override;
  SString GetName() const override { return itsLayerName; }
  bool SetUnusedToDefault(const SString& name) override;
  bool SetUnusedToDefault() { return SetUnusedToDefault(itsLayerName); }

  // A metal type named in the via metal type field forces the via type (the resistive
  // types "Surface", the others "Volume"); a "Volume" via without a volume loss model gets
  // "Wall" (trace and note); the thickness becomes the wall thickness.
  void MakeConsistent();

  const SMatlLevel& GetToLevel() const { return itsToLevel; }
  SMatlLevel& ToLevel() { return itsToLevel; }
  int GetViaType() const { return itsViaType; }
  void SetViaType(int type) { itsViaType = type; }
  bool IsMetal() const { return itsIsMetal; }
  void SetIsMetal(bool on) { itsIsMetal = on; }
  int GetViaFill() const { return itsViaFill; }
  void SetViaFill(int fill) { itsViaFill = fill; }
  bool HasPads() const { return itsPads; }
  void SetPads(bool on) { itsPads = on; }
  int GetVolumeLossModel() const { return itsVolumeLossModel; }
  void SetVolumeLossModel(int model) { itsVolumeLossModel = model; }

  SValueVarDouble itsWallThickness;
  SValueVarDouble itsFillFactor;
  SValueVarDouble itsViaDensity;

protected:
  // The via metal type field: a via type or a metal type name.
  bool ReadViaMetalType(SMatlFieldReader& reader, const SMatlFieldMessages& messages);
  // The word the via metal type field is written as.
  const char* ViaMetalTypeWord() const;
  // The via form of the thickness rule, into thickness and wall thickness.
  bool ReadViaThickness(SMatlFieldReader& reader, const SMatlFieldMessages& messages);
  // Fill factor and via density: above 0 on an array via.
  bool ReadArrayValue(SMatlFieldReader& reader, SValueVarDouble& field, const SMatlFieldMessages& messages);
  // The metal type whose rules apply: the named one, else "Normal" for a volume via.
  int RuleMetalType() const;

  SMatlLevel itsToLevel{true};
  int itsViaType = Volume;
  bool itsIsMetal = false;
  int itsViaFill = DefaultViaFill;
  bool itsPads = false;
  int itsVolumeLossModel = Wall;
};

#endif
