#ifndef SINTERFACEBLOCK_H
#define SINTERFACEBLOCK_H

#include "SOrdered.h"
#include "SVerbatimBlock.h"

#include <QList>
#include <QPair>
#include <QStringList>
#include <QVector>

// INTERFACE: what a host design tool handed over. Geometry projects don't use its fields
// and keep its lines word for word; other projects read them into the fields below, and
// each line is written from the format that knows it.
class SInterfaceBlock : public SVerbatimBlock {
  SCOLLECTABLE_DECLARE(SInterfaceBlock)
public:
  // The lines of fast solver options, each a row of "WORD value..." pairs.
  enum OptionLine { MeshOptions, ModelOptions, SolverOptions, ConfigOptions, OptionLineCount };

  // Origin, margins and extra margins of a layout placed by a host tool.
  struct SHostPlacement {
    bool present = false;
    SString date;
    double origin[2] = {0, 0};
    double margins[4] = {0, 0, 0, 0};
    double extraMargins[4] = {0, 0, 0, 0};
  };
  struct SOptionValues {
    bool present = false;
    // Per word of the line, its values; empty for a word the line didn't hold.
    QVector<QStringList> values;
  };

  explicit SInterfaceBlock(SProject* owner = nullptr);
  SInterfaceBlock(const SInterfaceBlock& other);
  SInterfaceBlock& operator=(const SInterfaceBlock&) = delete;
  ~SInterfaceBlock() override;
  SCollectable* newSpecies() const override { return new SInterfaceBlock(); }
  SCollectable* copy() const override { return new SInterfaceBlock(*this); }

  bool ReadBody(SFile& file, SProjectErrorManager& errors) override;
  void WriteBody(SProjectStream& out) override;

  // The project keeps the block's lines as they came rather than its fields.
  bool KeepsLines() const;
  bool IsVerbatim() const { return itsVerbatim; }
  void ClearFields();

  SString itsMeshName;
  int itsMeshValues[4] = {0, 0, 0, 0};
  bool itsMeshFlag = false;
  bool itsHasMeshDefaults = false;
  SOrdered itsMetals;    // SIBMetal
  SOrdered itsLayers;    // SIBLayer
  SHostPlacement itsCadence;
  SHostPlacement itsAds;
  QStringList itsShieldNames;
  QStringList itsCapMetalNames;
  SOptionValues itsOptions[OptionLineCount];
  SString itsAdditionalOptions;
  bool itsRemoteSimulation = false;
  SOrdered itsLayerMappings;  // SIBLayerMapping
  bool itsHasAwr64Project = false;
  SString itsAwr64Project[2];
  QList<QPair<SString, SString>> itsAwr64Options;
  SOrdered itsAwr64Matls;   // SIBAWR64Matl
  SOrdered itsAwr64Traces;  // SIBAWR64Trace
  SOrdered itsAwr64Layers;  // SIBAWR64Layer
  SOrdered itsAwr64Meshes;  // SIBAWR64MeshOption
  SOrdered itsAwr64Ports;   // SIBAWR64Port

private:
  // One line behind its keyword; false for an unknown keyword or a line that can't be read.
  bool ReadFieldLine(const SString& keyword, SFile& file, bool inSection);
  bool ReadPlacement(const SString& keyword, SFile& file, SHostPlacement& placement);
  bool ReadOptions(int line, SFile& file);
  void WritePlacement(SProjectStream& out, const char* prefix, const SHostPlacement& placement, int format) const;
  void WriteOptions(SProjectStream& out, int line, int format) const;
  void WriteAwr64Section(SProjectStream& out) const;

  bool itsVerbatim = false;
};

#endif
