#ifndef SGEOMETRYBLOCK_H
#define SGEOMETRYBLOCK_H

#include "SFileBlock.h"

#include <memory>

class SCircuit;

// GEO: the layout. The block owns the circuit and frames its body.
class SGeometryBlock : public SFileBlock {
  SCOLLECTABLE_DECLARE(SGeometryBlock)
public:
  explicit SGeometryBlock(SProject* owner = nullptr);
  ~SGeometryBlock() override;

  // The frame's read; a body that runs into the end of the file is told as a warning, since
  // such a file was most likely cut short and has lost polygons or blocks.
  bool Read(SFile& file, SProjectErrorManager& errors) override;
  bool ReadFirstLine(SFile& file) override;
  bool ReadBody(SFile& file, SProjectErrorManager& errors) override;
  void WriteBody(SProjectStream& out) override;
  void SetDefaults() override;
  SFileBlock* Clone(SProject* owner) const override;
  // Formats above 6 can hold every geometry.
  bool CheckFormat(int format, QStringList& problems) override;
  // Rescales the layout's lengths from the project's length unit to the new one.
  void ChangeUnits(const SDimensionBlock& newUnits) override;

  // An abbreviated read stops the circuit at NUM (geometry and netlist projects); such a
  // circuit must not be written back.
  void SetAbbreviated(bool on) { itsAbbreviated = on; }
  bool IsAbbreviated() const { return itsAbbreviated; }
  // The next read passes over the polygons nothing refers to (SCircuit::SetDropDrawing).
  void SetDropDrawing(bool on) { itsDropDrawing = on; }

  SCircuit* GetCircuit() const { return itsCircuit.get(); }
  // Takes a circuit that was built elsewhere.
  void SetCircuit(SCircuit* circuit);
  const SString& GetLabel() const { return itsLabel; }

private:
  std::unique_ptr<SCircuit> itsCircuit;
  SString itsLabel = "GEO";
  bool itsAbbreviated = false;
  bool itsDropDrawing = false;
};

#endif
