#ifndef SLEVEL_H
#define SLEVEL_H

#include "SEnclosure.h"
#include "SMaterialData.h"
#include "SValueVar.h"

class SDimensionBlock;
class SFile;
class SProjectErrorManager;
class SProjectStream;

// The dielectric of one level of the stack.
class SLevelData : public SMaterialData {
public:
  enum Value { Thickness = 0, Erel, MuRel, DLossTan, MLossTan, DieElecLoss, ValueCount };

  SLevelData();
  // Names the values "Layer <index> <word>".
  void NameValues(int index);

  const SValueVarDouble& GetValue(int which) const { return itsValues[which]; }
  SValueVarDouble& Value(int which) { return itsValues[which]; }
  const SValueVarDouble& GetValueZ(int which) const { return itsValuesZ[which - Erel]; }
  SValueVarDouble& ValueZ(int which) { return itsValuesZ[which - Erel]; }

  double GetThickness() const { return itsValues[Thickness].GetValue(); }
  void SetThickness(double v) { itsValues[Thickness].SetValue(v); }
  double GetErel() const { return itsValues[Erel].GetValue(); }
  void SetErel(double v) { itsValues[Erel].SetValue(v); }
  double GetMuRel() const { return itsValues[MuRel].GetValue(); }
  void SetMuRel(double v) { itsValues[MuRel].SetValue(v); }
  double GetDLossTan() const { return itsValues[DLossTan].GetValue(); }
  void SetDLossTan(double v) { itsValues[DLossTan].SetValue(v); }
  double GetMLossTan() const { return itsValues[MLossTan].GetValue(); }
  void SetMLossTan(double v) { itsValues[MLossTan].SetValue(v); }
  double GetDieElecLoss() const { return itsValues[DieElecLoss].GetValue(); }
  void SetDieElecLoss(double v) { itsValues[DieElecLoss].SetValue(v); }
  int GetNZParts() const { return itsNZParts; }
  void SetNZParts(int n) { itsNZParts = n; }
  const SString& GetLevelName() const { return itsName; }
  void SetLevelName(const SString& name) { itsName = name; }
  bool IsAnisotropic() const { return itsAnisotropic != 0; }
  void SetAnisotropic(bool on) { itsAnisotropic = on ? 1 : 0; }

  // One dielectric line with 15 significant digits.
  void WriteDielectric(SProjectStream& out, int format, const SDimensionBlock* dim) const;
  // A dielectric line from its first token; false after the numbered message.
  bool ReadDielectric(SFile& file, SProjectErrorManager& errors);

protected:
  SValueVarDouble itsValues[ValueCount];
  int itsNZParts = 0;
  double itsScale = 1.0;
  int itsSpare1 = -1;
  int itsSpare2 = -1;
  SString itsName = "Unnamed";
  unsigned char itsAnisotropic = 0;
  // Erel to DieElecLoss along Z.
  SValueVarDouble itsValuesZ[ValueCount - 1];

private:
  void WriteLoss(SProjectStream& out, const SValueVarDouble& loss, int format, const SDimensionBlock* dim) const;
};

// A level: the dielectric and, as children, the polygons, groups and technology layers of
// the metal below it.
class SLevel : public SObjectEnclosure, public SLevelData {
  SCOLLECTABLE_DECLARE(SLevel)
public:
  // Appends itself to the owner's enclosure list when there is one.
  SLevel(SBaseEnclosure* owner, int index);

  int GetIndex() const { return itsIndex; }
  void SetIndex(int index);
  SString GetName() const override { return itsName; }
  void SetName(const SString& name) { itsName = name; }
  bool IsFromSTF() const override { return IsMaterialFromSTF(); }
  void SetFromSTF(bool on) override { SetMaterialFromSTF(on); }
  // Copies the dielectric, not the polygons.
  void CopyDielectric(const SLevelData& other);

  // How many children are technology layers, and components: a search for them among
  // millions of polygons stops once it has found them all.
  size_t GetTechLayerCount() const { return itsTechLayers; }
  size_t GetComponentCount() const { return itsComponents; }

protected:
  void NoteChild(const SBaseEnclosure* child, int change) override;

private:
  int itsIndex = 0;
  long itsCount1 = 0;
  long itsCount2 = 0;
  size_t itsTechLayers = 0;
  size_t itsComponents = 0;
};

#endif
