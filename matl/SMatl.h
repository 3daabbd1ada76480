#ifndef SMATL_H
#define SMATL_H

#include "SMatlComment.h"
#include "SMatlInterface.h"
#include "SMatlMaterial.h"
#include "SMatlUnit.h"

#include <QStringList>

#include <memory>
#include <vector>

class SCircuit;
class SMatlBrick;
class SMatlColor;
class SMatlDielectric;
class SMatlMetalData;
class SMatlMetalDrawLayer;
class SMatlMetalMaterial;
class SMatlTechLayer;
class SMatlTechLayerFastOpt;
class SMatlVariable;
class SMatlViaDrawLayer;
class SMatlViaMaterial;
class SProject;

// Keyword (upper case) to the prototype entry that a line of that keyword is cloned from.
// The dictionary owns the prototypes.
class SMatlDictionary {
public:
  SMatlDictionary();
  ~SMatlDictionary();
  SMatlDictionary(const SMatlDictionary&) = delete;
  SMatlDictionary& operator=(const SMatlDictionary&) = delete;

  // The prototype of a keyword, or null.
  const SMatlMaterial* Find(const SString& keyword) const;

private:
  std::vector<std::pair<SString, SMatlMaterial*>> itsEntries;
};

// A material file: the stack of dielectrics, the metal and via layers drawn on it, named
// metal and via materials, layer mappings and units. Read, written back, compared, and set
// into a project. Copies share the lists of entries.
class SMatl : public SMatlMaterial, public SMatlInterface {
  SCOLLECTABLE_DECLARE(SMatl)
public:
  SMatl();
  // Reads the file at once; IsReadOk tells how that went.
  explicit SMatl(const SString& fileName);
  SMatl(const SMatl& other);
  ~SMatl() override;

  // SMatlInterface
  int GetNumDielectrics() const override;
  int GetNumDielectricsLessOne() const override;
  int GetHighestDielectricLevel() const override;
  SString GetInputFileName() const override { return itsInputFileName; }
  SProject* GetScratchProject() const override { return itsScratchProject.get(); }
  bool IsChecksOn() const override { return itsChecksOn; }
  bool IsColorLayerNameUnique(const SString& name) const override;

  // Both passes over the file: comments, then units and entries. False on the first bad
  // entry, after its message; a file that can't be opened is false without one.
  virtual bool Read(const SString& fileName);
  bool IsReadOk() const { return itsReadOk; }
  // Writes the whole file to the output file name, complete or not at all.
  bool Write();
  virtual bool Write(const SString& fileName);
  // The file's text, as Write would put it in a file.
  bool WriteText(SProjectStream& out);

  // Units, variables, the stack, metal, via and brick types and technology layers go into
  // the project, whose header and dimension blocks stand by then.
  bool SetIntoProject(SProject& project);
  virtual bool SetMaterialsIntoProject(SProject& project, SCircuit& circuit);
  virtual bool SetDielectricsIntoProject(SProject& project, SCircuit& circuit);

  // Routes an entry to its list by its kind, taking it over; false for a kind no list takes
  // (the entry is then the caller's). A duplicate that is dropped is deleted, and no failure.
  bool AddEntry(SMatlMaterial* entry);

  // Equal content, label by label; `report` collects a line per difference.
  bool IsSameContent(const SMatl& other, QStringList* report = nullptr) const;
  bool IsEqual(const SMatlMaterial& other) const override;

  // Lookups, linear, names compared as they stand.
  SMatlDielectric* FindDielectric(int level) const;
  SMatlDielectric* FindDielectric(const SString& name) const;
  SMatlMetalDrawLayer* FindMetalDrawLayer(const SString& name) const;
  SMatlViaDrawLayer* FindViaDrawLayer(const SString& name) const;
  SMatlMetalMaterial* FindMetalMaterial(const SString& name) const;
  SMatlViaMaterial* FindViaMaterial(const SString& name) const;
  SMatlColor* FindColor(const SString& name) const;

  const std::vector<SMatlDielectric*>& GetDielectrics() const { return itsLists->dielectrics; }
  const std::vector<SMatlBrick*>& GetBrickDielectrics() const { return itsLists->bricks; }
  const std::vector<SMatlMetalDrawLayer*>& GetMetalDrawLayers() const { return itsLists->metalDrawLayers; }
  const std::vector<SMatlMetalMaterial*>& GetMetalMaterials() const { return itsLists->metalMaterials; }
  const std::vector<SMatlViaMaterial*>& GetViaMaterials() const { return itsLists->viaMaterials; }
  const std::vector<SMatlViaDrawLayer*>& GetViaDrawLayers() const { return itsLists->viaDrawLayers; }
  const std::vector<SMatlColor*>& GetColors() const { return itsLists->colors; }
  const std::vector<SMatlTechLayer*>& GetTechLayers() const { return itsLists->techLayers; }
  const std::vector<SMatlTechLayerFastOpt*>& GetTechLayerFastOpts() const { return itsLists->fastOpts; }
  const std::vector<SMatlVariable*>& GetVariables() const { return itsLists->variables; }

  SMatlUnit& Units() { return itsUnits; }
  const SMatlUnit& GetUnits() const { return itsUnits; }
  SMatlComment& Comments() { return itsComments; }
  const SMatlComment& GetComments() const { return itsComments; }

  const SString& GetOutputFileName() const { return itsOutputFileName; }
  void SetOutputFileName(const SString& name) { itsOutputFileName = name; }
  bool IsUnitsGiven() const { return itsUnitsGiven; }
  void SetKeepCommentsOff(bool on) { itsKeepCommentsOff = on; }
  bool IsKeepCommentsOff() const { return itsKeepCommentsOff; }
  // All dielectrics, then all metal draw layers, then all via draw layers, instead of
  // level by level.
  void SetOrganizedOutput(bool on) { itsOrganizedOutput = on; }
  void SetChecksOn(bool on) { itsChecksOn = on; }
  // Keeps the values of one dimension (SMatlUtil::Dimension), or of all with -1, in the file
  // units when writing.
  void SetNoConversion(int dimension, bool on);

protected:
  void SetInputFileName(const SString& name) { itsInputFileName = name; }
  void SetReadOk(bool ok) { itsReadOk = ok; }
  // Deletes the entries of every list (the lists of a copy included).
  void ClearEntries();
  // Scales the values of the dimensions whose file unit differs from the current one.
  virtual void ConvertUnits();
  // Puts a metal's values into the circuit's metal type of its name, and makes the
  // technology layer of its drawing layer.
  bool SetMetalIntoProject(SProject& project, SCircuit& circuit, const SMatlMetalData& metal,
                           const SString& typeName, const SString& layerName, int pattern, int level,
                           bool ground);
  bool SetViaIntoProject(SProject& project, SCircuit& circuit, const SMatlViaDrawLayer& via, bool drawLayer);
  bool SetBrickIntoProject(SProject& project, SCircuit& circuit, const SMatlBrick& brick);
  // Stream, DXF and Gerber names of the technology layer entries of a name.
  void ApplyMappings(const SString& layerName, class STechLayer& layer) const;

private:
  struct SLists {
    std::vector<SMatlDielectric*> dielectrics;
    std::vector<SMatlMetalDrawLayer*> metalDrawLayers;
    std::vector<SMatlMetalMaterial*> metalMaterials;
    std::vector<SMatlViaMaterial*> viaMaterials;
    std::vector<SMatlViaDrawLayer*> viaDrawLayers;
    std::vector<SMatlColor*> colors;
    std::vector<SMatlTechLayer*> techLayers;
    std::vector<SMatlTechLayerFastOpt*> fastOpts;
    std::vector<SMatlVariable*> variables;
    std::vector<SMatlBrick*> bricks;
    ~SLists();
    void Destroy();
  };

  bool ReadComments(const SString& fileName);
  bool ReadEntries(const SString& fileName);
  void SettleGround();
  bool WriteLayers(SProjectStream& out);
  bool WriteEntry(const SMatlMaterial& entry, SProjectStream& out, int message);
  int LevelOf(const SMatlMaterial& entry, int ground) const;

  std::shared_ptr<SLists> itsLists;
  std::shared_ptr<SMatlDictionary> itsDictionary;
  SString itsInputFileName;
  SString itsOutputFileName;
  bool itsReadOk = true;
  bool itsKeepCommentsOff = false;
  bool itsOrganizedOutput = false;
  bool itsChecksOn = false;
  bool itsUnitsGiven = false;
  bool itsNoConversion[1 + SMatlUtil::DimensionCount] = {false, false, false, false, false, false};
  SMatlComment itsComments;
  SMatlUnit itsUnits;
  std::shared_ptr<SProject> itsScratchProject;
  int itsNextTechLayerId = 0;
  // Lengths in a unit the project has none for are set into it in microns.
  double itsLengthScale = 1.0;
};

#endif
