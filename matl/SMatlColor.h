#ifndef SMATLCOLOR_H
#define SMATLCOLOR_H

#include "SMatlDrawLayer.h"
#include "SMatlMaterial.h"

// A "COLOR" line: the color/pattern a drawing layer of that name takes when the file is
// written. Never written itself.
class SMatlColor : public SMatlMaterial, public SMatlDrawLayer {
  SCOLLECTABLE_DECLARE(SMatlColor)
public:
  SMatlColor() {}
  SMatlColor(const SMatlColor& other) = default;

  int GetKind() const override { return ColorKind; }
  SMatlMaterial* Clone() const override { return new SMatlColor(*this); }
  // Layer name, pattern (at least 0). A name the owner already has a color for is passed
  // over: the line reads as true, and the entry is marked disregarded with its name left empty.
  bool Read(SCommentedFile& file) override;
  bool IsEqual(const SMatlMaterial& other) const override;
  SString GetName() const override { return itsLayerName; }

  bool IsDisregarded() const { return itsDisregarded; }

private:
  bool itsDisregarded = false;
};

#endif
