#ifndef SMATLMETALDRAWLAYER_H
#define SMATLMETALDRAWLAYER_H

#include "SMatlDrawLayer.h"
#include "SMatlMaterial.h"
#include "SMatlMetalData.h"

// A "METAL" line: a drawing layer of metal on a level, with its metal's values.
class SMatlMetalDrawLayer : public SMatlMaterial, public SMatlDrawLayer, public SMatlMetalData {
  SCOLLECTABLE_DECLARE(SMatlMetalDrawLayer)
public:
  SMatlMetalDrawLayer() {}
  SMatlMetalDrawLayer(const SMatlMetalDrawLayer& other) = default;

  int GetKind() const override { return MetalDrawLayerKind; }
  bool Write(SProjectStream& out) const override;
  SMatlMaterial* Clone() const override { return new SMatlMetalDrawLayer(*this); }
  // Needs a dielectric before it (20026). "GND" puts the layer on the highest dielectric level.
  bool Read(SCommentedFile& file) override;
  bool IsEqual(const SMatlMaterial& other) const override;
  void Scale(int dimension, double factor) override;
  SString GetName() const override { return itsLayerName; }
  // With the trace of this line kind.
  bool SetUnusedToDefault(const SString& name) override;
  bool SetUnusedToDefault() { return SetUnusedToDefault(itsLayerName); }
  // XMin above XMax and YMin above YMax are swapped, with a trace each.
  void OrderRanges();
};

#endif
