#ifndef SMATLTECHLAYERFASTOPT_H
#define SMATLTECHLAYERFASTOPT_H

#include "SMatlMaterial.h"
#include "STechLayer.h"

#include <memory>

// A "SHIELD" or "CAPMETAL" line: a drawing layer's shield layer or cap metal layer. Owns
// a technology layer whose name, shield name and cap metal name it uses.
class SMatlTechLayerFastOpt : public SMatlMaterial {
  SCOLLECTABLE_DECLARE(SMatlTechLayerFastOpt)
public:
  enum SubKind { Shield = 0, CapMetal = 1, NotSet = 2, Both = 3 };

  SMatlTechLayerFastOpt();
  SMatlTechLayerFastOpt(const SMatlTechLayerFastOpt& other);
  ~SMatlTechLayerFastOpt() override;

  int GetKind() const override { return TechLayerFastOptKind; }
  // "Both" writes the two lines; "not set" fails.
  bool Write(SProjectStream& out) const override;
  SMatlMaterial* Clone() const override { return new SMatlTechLayerFastOpt(*this); }
  // Keyword, layer name, the other name; names without a blank.
  bool Read(SCommentedFile& file) override;
  bool IsEqual(const SMatlMaterial& other) const override;
  SString GetName() const override { return itsLayer->GetName(); }

  static const char* SubKindKeyword(int subKind);

  int GetSubKind() const { return itsSubKind; }
  void SetSubKind(int subKind) { itsSubKind = subKind; }
  STechLayer& Layer() { return *itsLayer; }
  const STechLayer& GetLayer() const { return *itsLayer; }

private:
  std::unique_ptr<STechLayer> itsLayer;
  int itsSubKind = NotSet;
};

#endif
