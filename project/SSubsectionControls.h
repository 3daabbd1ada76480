#ifndef SSUBSECTIONCONTROLS_H
#define SSUBSECTIONCONTROLS_H

#include <QString>

#include <memory>

class STechLayer;

// How the analysis cuts a polygon into subsections. A polygon that follows its technology
// layer answers with the layer's template values unless it overrides them.
class SSubsectionControls {
public:
  enum Fill { Staircase = 0, Conformal = 1, Diagonal = 2, Hidden = 3, AniX = 4, AniY = 5, Corner = 6, Both = 7 };
  enum Isotropy { XAndY = 0, XOnly = 1, YOnly = 2 };

  int GetFillType() const { return Source().Values().itsFillType; }
  int GetIsotropy() const { return Source().Values().itsIsotropy; }
  int GetXMin() const { return Source().Values().itsXMin; }
  int GetYMin() const { return Source().Values().itsYMin; }
  int GetXMax() const { return Source().Values().itsXMax; }
  int GetYMax() const { return Source().Values().itsYMax; }
  double GetMaxSubLen() const { return Source().Values().itsMaxSubLen; }
  double GetEdgeTruncation() const { return Source().Values().itsEdgeTruncation; }
  double GetFlatness() const { return Source().Values().itsFlatness; }
  bool GetCurrentSym() const { return Source().Values().itsCurrentSym != 0; }
  bool GetEdgeMesh() const { return Source().Values().itsEdgeMesh != 0; }

  // A value equal to the one held changes nothing, so that reading defaults stays cheap.
  void SetFillType(int v) { Set(&Fields::itsFillType, v); }
  void SetIsotropy(int v) { Set(&Fields::itsIsotropy, v); }
  void SetLimits(int xmin, int ymin, int xmax, int ymax) {
    Set(&Fields::itsXMin, xmin);
    Set(&Fields::itsYMin, ymin);
    Set(&Fields::itsXMax, xmax);
    Set(&Fields::itsYMax, ymax);
  }
  void SetMaxSubLen(double v) { Set(&Fields::itsMaxSubLen, v); }
  void SetEdgeTruncation(double v) { Set(&Fields::itsEdgeTruncation, v); }
  void SetFlatness(double v) { Set(&Fields::itsFlatness, v); }
  void SetCurrentSym(bool on) { Set(&Fields::itsCurrentSym, static_cast<unsigned char>(on ? 1 : 0)); }
  void SetEdgeMesh(bool on) { Set(&Fields::itsEdgeMesh, static_cast<unsigned char>(on ? 1 : 0)); }
  // Copies the controls, not the technology layer link.
  void CopyControls(const SSubsectionControls& other);

  STechLayer* GetTechLayer() const { return itsTechLayer; }
  bool FollowsTechLayer() const { return itsFollows != 0; }
  void SetTechLayer(STechLayer* layer, bool follows) {
    itsTechLayer = layer;
    itsFollows = follows ? 1 : 0;
  }
  bool IsOverride() const { return itsOverride != 0; }
  void SetOverride(bool on) { itsOverride = on ? 1 : 0; }
  const QString& GetRemainder() const { return Values().itsRemainder; }
  void SetRemainder(const QString& text) { Set(&Fields::itsRemainder, text); }

  // The letter of the polygon line: isotropy first, then the fill type as the format knows it.
  char FillLetter(int format) const;
  // False for a letter that names no fill.
  bool SetFillLetter(char letter);
  // CornerFill of the initialisation file, read once.
  static bool CornerFillAllowed();

  SSubsectionControls() {}
  SSubsectionControls(const SSubsectionControls& other);
  SSubsectionControls& operator=(const SSubsectionControls& other);

private:
  // Most polygons keep every default: they share one set of fields instead of carrying
  // a copy each, and get their own on the first change.
  struct Fields {
    int itsFillType = Staircase;
    int itsIsotropy = XAndY;
    int itsXMin = 1;
    int itsYMin = 1;
    int itsXMax = 100;
    int itsYMax = 100;
    double itsMaxSubLen = 0.0;
    double itsEdgeTruncation = 0.0;
    double itsFlatness = 0.0;
    unsigned char itsCurrentSym = 0;
    unsigned char itsEdgeMesh = 1;
    QString itsRemainder;
  };
  static const Fields& Defaults();
  const Fields& Values() const { return itsFields ? *itsFields : Defaults(); }
  Fields& Own() {
    if (!itsFields) itsFields.reset(new Fields);
    return *itsFields;
  }
  template <class T> void Set(T Fields::*field, const T& value) {
    if (!(Values().*field == value)) Own().*field = value;
  }
  const SSubsectionControls& Source() const;

  std::unique_ptr<Fields> itsFields;
  STechLayer* itsTechLayer = nullptr;
  unsigned char itsFollows = 0;
  unsigned char itsOverride = 0;
};

#endif
