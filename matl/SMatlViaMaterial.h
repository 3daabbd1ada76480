#ifndef SMATLVIAMATERIAL_H
#define SMATLVIAMATERIAL_H

#include "SMatlViaDrawLayer.h"

// A "VMATERIAL" line: a named via metal without a drawing layer.
class SMatlViaMaterial : public SMatlViaDrawLayer {
  SCOLLECTABLE_DECLARE(SMatlViaMaterial)
public:
  SMatlViaMaterial() {}
  SMatlViaMaterial(const SMatlViaMaterial& other) = default;

  int GetKind() const override { return ViaMaterialKind; }
  bool Write(SProjectStream& out) const override;
  SMatlMaterial* Clone() const override { return new SMatlViaMaterial(*this); }
  // The name "Lossless" (any case) is restricted: the line fails.
  bool Read(SCommentedFile& file) override;
  bool IsEqual(const SMatlMaterial& other) const override;
  SString GetName() const override { return itsMetalName; }

  static bool IsRestrictedName(const SString& name);
};

#endif
