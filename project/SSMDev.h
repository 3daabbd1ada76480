#ifndef SSMDEV_H
#define SSMDEV_H

#include "SCoupledGroup.h"
#include "SPoint.h"
#include "SRect.h"
#include "SValueVar.h"

#include <utility>
#include <vector>

class SPolyDepHandle;
class SSMDBlock;
class SSMDPort;

// A component: an ideal part, a data file, another project or a user model, placed on a
// level (which owns it) and connected through its SSMDPort children. Boxes and positions are
// in project units. Its group id names it in the "SMD" handles of geometry variables.
class SSMDev : public SCoupledGroup {
  SCOLLECTABLE_DECLARE(SSMDev)
public:
  enum Ideal { Resistor = 0, Capacitor = 1, Inductor = 2 };
  enum Model { NoModel = 0, IdealModel = 1, DataFileModel = 2, ProjectModel = 3, UserModel = 4 };
  using Parameter = std::pair<SString, SString>;

  SSMDev();

  long long GetLevel() const { return itsLevel; }
  void SetLevel(long long level) { itsLevel = level; }
  int GetIdealKind() const { return itsIdealKind; }
  void SetIdealKind(int kind) { itsIdealKind = kind; }
  SValueVarDouble& Value() { return itsValue; }
  const SValueVarDouble& GetValue() const { return itsValue; }
  int GetModelType() const { return itsModelType; }
  void SetModelType(int type) { itsModelType = type; }
  // The state word of an older MODEL line: 3 for Y or AY, else 2; 0 without one.
  int GetModelState() const { return itsModelState; }
  const SString& GetFileName() const { return itsFileName; }
  void SetFileName(const SString& name) { itsFileName = name; }
  long long GetFileKey() const { return itsFileKey; }
  void SetFileKey(long long key) { itsFileKey = key; }
  const SString& GetUserModelName() const { return itsUserModel; }
  const SString& GetLibraryName() const { return itsLibrary; }
  const SString& GetEntryName() const { return itsEntry; }
  void SetUserModel(const SString& model, const SString& library, const SString& entry);
  const std::vector<Parameter>& GetParameters() const { return itsParameters; }
  void AddParameter(const SString& name, const SString& value) { itsParameters.emplace_back(name, value); }
  const SRect& GetPackageBox() const { return itsPackageBox; }
  void SetPackageBox(const SRect& box) { itsPackageBox = box; }
  const SRect& GetPortBox() const { return itsPortBox; }
  bool HasUserBox() const { return itsUserBox != 0; }
  bool IsBoxShown() const { return itsShowBox != 0; }
  bool IsPortPlacementAutomatic() const { return itsPortPlacement == 1; }
  bool IsLabelPositionSet() const { return itsLabelPositionSet != 0; }
  const SPoint& GetLabelPosition() const { return itsLabelPosition; }
  bool InheritsSweep() const { return itsInheritSweep != 0; }
  double GetRotation() const { return itsRotation; }

  // The ports, in the order of the children.
  void GetPorts(std::vector<SSMDPort*>& list) const;
  SSMDPort* AddPort();
  // Whether the file gets the component at this format: it needs a port, a data file
  // needs its key, and projects and user models need format 19.
  bool IsWrittenAt(int format) const;
  // Shifts the boxes, the label and the pins.
  void Move(double dx, double dy);
  // Multiplies the boxes, positions, package sizes and port places (a change of unit).
  void ScaleLengths(double factor);
  // The links of its reference planes and those of its ports.
  void GetLinks(std::vector<const SPolyDepHandle*>& list) const;
  // Linked planes become fixed ones, while their polygons still stand: a port's plane takes
  // the distance from its pin to the linked vertex across the pin's side.
  void ReleaseLinks(const SCircuit& circuit);

  // "SMD" to "END"; nothing for a component the format doesn't get.
  void WriteComponent(SProjectStream& out, const SCircuit& circuit, int format);
  // After the SMD keyword; leaves the file on the END line.
  bool ReadComponent(SFile& file, const SCircuit& circuit, SProjectErrorManager& errors);

  // Every component of the circuit, level by level.
  static void Collect(const SCircuit& circuit, std::vector<SSMDev*>& list);
  // The component with that group id, or null.
  static SSMDev* Find(const SCircuit& circuit, long long id);
  // Data file names by key: from the block after a read, to the block before a write.
  static void BindFiles(const SCircuit& circuit, const SSMDBlock& block);
  static bool CopyFiles(const SCircuit& circuit, SSMDBlock& block);

private:
  bool ReadLine(SFile& file, const SString& key, const SCircuit& circuit, SProjectErrorManager& errors);
  bool ReadModel(SFile& file, const SString& key, const SCircuit& circuit, SProjectErrorManager& errors);
  bool ReadParameters(SFile& file);
  void WriteModel(SProjectStream& out, const SCircuit& circuit) const;

  long long itsLevel = 0;
  int itsIdealKind = Resistor;
  SValueVarDouble itsValue;
  int itsModelType = NoModel;
  int itsModelState = 0;
  SString itsFileName;
  long long itsFileKey = 0;
  SString itsUserModel;
  SString itsLibrary;
  SString itsEntry;
  std::vector<Parameter> itsParameters;
  SRect itsPackageBox;
  SRect itsPortBox;
  SPoint itsLabelPosition;
  double itsLength = 0.0;
  double itsWidth = 0.0;
  double itsHeight = 0.0;
  unsigned char itsUserBox = 0;
  unsigned char itsShowBox = 0;
  int itsPortPlacement = 0;
  double itsRotation = 0.0;
  unsigned char itsLabelPositionSet = 0;
  unsigned char itsInheritSweep = 0;
};

#endif
