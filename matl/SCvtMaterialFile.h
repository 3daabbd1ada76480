#ifndef SCVTMATERIALFILE_H
#define SCVTMATERIALFILE_H

#include "SProjectErrorManager.h"
#include "SRect.h"
#include "SSize.h"
#include "SString.h"

#include <string>
#include <vector>

class SProject;
class STechLayer;

// The conversion material file of "-M": what a translation would produce, for a dialog of
// the suite. Material names, technology layers in their short form, the stream's extents
// and the box, in project units.
class SCvtMaterialFile {
public:
  SCvtMaterialFile() {}
  ~SCvtMaterialFile();
  SCvtMaterialFile(const SCvtMaterialFile&) = delete;
  SCvtMaterialFile& operator=(const SCvtMaterialFile&) = delete;

  // Each name once, in the order first added.
  void AddMetal(const SString& name) { AddOnce(itsMetals, name); }
  void AddViaMetal(const SString& name) { AddOnce(itsViaMetals, name); }
  void AddBrick(const SString& name) { AddOnce(itsBricks, name); }
  // Not owned: the layer must outlive this object (layers read by Read are owned).
  void AddTechLayer(STechLayer* layer) { itsTechLayers.push_back(layer); }
  void SetExtents(const SRect& extents) { itsExtents = extents; }
  // Sets `hasBox`.
  void SetBoxSize(const SSize& size);
  void SetCellSize(const SSize& size) { itsCellSize = size; }
  void SetUnitName(const SString& name) { itsUnitName = name; }

  // The circuit's metal types (but for waveguide loads and free space), via metal and brick
  // types, its technology layers, its box and cell size, and the length unit's name. The
  // extents are the stream's, which the project doesn't know.
  void CollectFrom(SProject& project);

  // Complete or not written; false when the file can't be written.
  bool Write(const SString& fileName) const;
  // Replaces the contents with those of the file. On failure the errors say why, with the
  // line.
  bool Read(const SString& fileName);
  // The file's text as Write makes it.
  std::string Text() const;

  const std::vector<SString>& GetMetals() const { return itsMetals; }
  const std::vector<SString>& GetViaMetals() const { return itsViaMetals; }
  const std::vector<SString>& GetBricks() const { return itsBricks; }
  const std::vector<STechLayer*>& GetTechLayers() const { return itsTechLayers; }
  const SRect& GetExtents() const { return itsExtents; }
  const SSize& GetBoxSize() const { return itsBoxSize; }
  const SSize& GetCellSize() const { return itsCellSize; }
  bool HasBox() const { return itsHasBox; }
  const SString& GetUnitName() const { return itsUnitName; }
  bool OwnsTechLayers() const { return itsOwnsTechLayers; }
  SProjectErrorManager& GetErrors() { return itsErrors; }

  void Clear();

private:
  static void AddOnce(std::vector<SString>& list, const SString& name);

  std::vector<SString> itsMetals;
  std::vector<SString> itsViaMetals;
  std::vector<SString> itsBricks;
  std::vector<STechLayer*> itsTechLayers;
  SRect itsExtents;
  SSize itsBoxSize;
  SSize itsCellSize;
  bool itsHasBox = false;
  SString itsUnitName;
  bool itsOwnsTechLayers = false;
  SProjectErrorManager itsErrors;
};

#endif
