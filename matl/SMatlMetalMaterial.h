#ifndef SMATLMETALMATERIAL_H
#define SMATLMETALMATERIAL_H

#include "SMatlDrawLayer.h"
#include "SMatlMaterial.h"
#include "SMatlMetalData.h"

class SMatlMetalDrawLayer;

// A "MATERIAL" line: a named metal without a drawing layer. A metal draw layer becomes a
// temporary one of these to be set into a project; it then keeps its layer name.
class SMatlMetalMaterial : public SMatlMaterial, public SMatlDrawLayer, public SMatlMetalData {
  SCOLLECTABLE_DECLARE(SMatlMetalMaterial)
public:
  SMatlMetalMaterial() {}
  SMatlMetalMaterial(const SMatlMetalMaterial& other) = default;
  // The metal of a draw layer, with its layer name, pattern and level.
  explicit SMatlMetalMaterial(const SMatlMetalDrawLayer& layer);

  int GetKind() const override { return MetalMaterialKind; }
  bool Write(SProjectStream& out) const override;
  SMatlMaterial* Clone() const override { return new SMatlMetalMaterial(*this); }
  // In a file whose name holds ".matl" the names "WG Load", "Free Space" and "Lossless"
  // (any case) are restricted: the line fails.
  bool Read(SCommentedFile& file) override;
  bool IsEqual(const SMatlMaterial& other) const override;
  void Scale(int dimension, double factor) override;
  SString GetName() const override { return itsMetalName; }
  bool SetUnusedToDefault(const SString& name) override;
  bool SetUnusedToDefault() { return SetUnusedToDefault(itsMetalName); }

  static bool IsRestrictedName(const SString& name);
};

#endif
