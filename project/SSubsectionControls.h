#ifndef SSUBSECTIONCONTROLS_H
#define SSUBSECTIONCONTROLS_H

#include <QString>

class STechLayer;

// How the analysis cuts a polygon into subsections. A polygon that follows its technology
// layer answers with the layer's template values unless it overrides them.
class SSubsectionControls {
public:
  enum Fill { Staircase = 0, Conformal = 1, Diagonal = 2, Hidden = 3, AniX = 4, AniY = 5, Corner = 6, Both = 7 };
  enum Isotropy { XAndY = 0, XOnly = 1, YOnly = 2 };

  int GetFillType() const { return Source().itsFillType; }
  int GetIsotropy() const { return Source().itsIsotropy; }
  int GetXMin() const { return Source().itsXMin; }
  int GetYMin() const { return Source().itsYMin; }
  int GetXMax() const { return Source().itsXMax; }
  int GetYMax() const { return Source().itsYMax; }
  double GetMaxSubLen() const { return Source().itsMaxSubLen; }
  double GetEdgeTruncation() const { return Source().itsEdgeTruncation; }
  double GetFlatness() const { return Source().itsFlatness; }
  bool GetCurrentSym() const { return Source().itsCurrentSym != 0; }
  bool GetEdgeMesh() const { return Source().itsEdgeMesh != 0; }

  void SetFillType(int v) { itsFillType = v; }
  void SetIsotropy(int v) { itsIsotropy = v; }
  void SetLimits(int xmin, int ymin, int xmax, int ymax) {
    itsXMin = xmin;
    itsYMin = ymin;
    itsXMax = xmax;
    itsYMax = ymax;
  }
  void SetMaxSubLen(double v) { itsMaxSubLen = v; }
  void SetEdgeTruncation(double v) { itsEdgeTruncation = v; }
  void SetFlatness(double v) { itsFlatness = v; }
  void SetCurrentSym(bool on) { itsCurrentSym = on ? 1 : 0; }
  void SetEdgeMesh(bool on) { itsEdgeMesh = on ? 1 : 0; }
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
  const QString& GetRemainder() const { return itsRemainder; }
  void SetRemainder(const QString& text) { itsRemainder = text; }

  // The letter of the polygon line: isotropy first, then the fill type as the format knows it.
  char FillLetter(int format) const;
  // False for a letter that names no fill.
  bool SetFillLetter(char letter);
  // CornerFill of the initialisation file, read once.
  static bool CornerFillAllowed();

private:
  const SSubsectionControls& Source() const;

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
  unsigned char itsFollows = 0;
  unsigned char itsOverride = 0;
  unsigned char itsOverrideFlag = 0;
  STechLayer* itsTechLayer = nullptr;
  QString itsRemainder;
};

#endif
