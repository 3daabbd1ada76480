#ifndef SMATLTECHLAYER_H
#define SMATLTECHLAYER_H

#include "SMatlMaterial.h"
#include "STechLayer.h"

#include <memory>

// A "GDSLAYER", "DXFLAYER" or "GBRLAYER" line: how a drawing layer maps to a stream layer
// and datatype, a DXF layer or a Gerber file. Owns the technology layer that carries the
// mapping, and a "used" flag that the owner sets when a draw layer has the name.
class SMatlTechLayer : public SMatlMaterial {
  SCOLLECTABLE_DECLARE(SMatlTechLayer)
public:
  enum SubKind { Gds = 0, Dxf = 1, Gerber = 2, NotSet = 3, All = 4 };

  SMatlTechLayer();
  SMatlTechLayer(const SMatlTechLayer& other);
  ~SMatlTechLayer() override;

  int GetKind() const override { return TechLayerKind; }
  // Subkind 0 writes only with a stream of at least 0, 1 and 2 only with their name, 4 all
  // three lines under the same conditions; 3 fails.
  bool Write(SProjectStream& out) const override;
  SMatlMaterial* Clone() const override { return new SMatlTechLayer(*this); }
  // The subkind comes from the line's keyword.
  bool Read(SCommentedFile& file) override;
  bool IsEqual(const SMatlMaterial& other) const override;
  SString GetName() const override { return itsLayer->GetName(); }

  static const char* SubKindKeyword(int subKind);

  int GetSubKind() const { return itsSubKind; }
  void SetSubKind(int subKind) { itsSubKind = subKind; }
  bool IsUsed() const { return itsUsed; }
  void SetUsed(bool on) { itsUsed = on; }
  STechLayer& Layer() { return *itsLayer; }
  const STechLayer& GetLayer() const { return *itsLayer; }

private:
  std::unique_ptr<STechLayer> itsLayer;
  int itsSubKind = NotSet;
  bool itsUsed = false;
};

#endif
