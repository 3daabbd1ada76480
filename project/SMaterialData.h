#ifndef SMATERIALDATA_H
#define SMATERIALDATA_H

#include "SString.h"

class SProject;

// How a material states its conductive loss.
class SElectricalLossType {
public:
  enum Code { Conductivity = 0, Resistivity = 1, ResistancePerVia = 2, SheetResistance = 3 };

  SElectricalLossType() {}
  explicit SElectricalLossType(int code) : itsCode(code) {}
  int GetCode() const { return itsCode; }
  void SetCode(int code) { itsCode = code; }
  // "CDVY", "RSVY", "RPV", "SRVY".
  const char* Keyword() const { return Keyword(itsCode); }
  static const char* Keyword(int code);
  // Sets the code from a keyword (in any case); false leaves it.
  bool SetFromKeyword(const SString& word);
  // The unit family of the value in the dimension block, or -1 for none.
  int UnitFamily() const;

private:
  int itsCode = Conductivity;
};

// Base of everything that has a loss.
class SMaterialData {
public:
  SMaterialData() {}
  virtual ~SMaterialData() {}

  SProject* GetProject() const { return itsProject; }
  void SetProject(SProject* project) { itsProject = project; }
  const SElectricalLossType& GetLossType() const { return itsLossType; }
  SElectricalLossType& LossType() { return itsLossType; }
  void SetLossType(int code) { itsLossType.SetCode(code); }
  bool IsMaterialChanged() const { return itsMaterialChanged != 0; }
  void SetMaterialChanged(bool on) { itsMaterialChanged = on ? 1 : 0; }
  bool IsMaterialFromSTF() const { return itsFromSTF != 0; }
  void SetMaterialFromSTF(bool on) { itsFromSTF = on ? 1 : 0; }

protected:
  SProject* itsProject = nullptr;
  SElectricalLossType itsLossType;
  unsigned char itsMaterialChanged = 1;
  unsigned char itsFromSTF = 0;
};

#endif
