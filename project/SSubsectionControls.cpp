#include "SSubsectionControls.h"

#include "SGeoObjectIO.h"
#include "SInitializationFile.h"

SSubsectionControls::SSubsectionControls(const SSubsectionControls& other)
    : itsFields(other.itsFields ? new Fields(*other.itsFields) : nullptr),
      itsTechLayer(other.itsTechLayer),
      itsFollows(other.itsFollows),
      itsOverride(other.itsOverride) {}

SSubsectionControls& SSubsectionControls::operator=(const SSubsectionControls& other) {
  if (this != &other) {
    itsFields.reset(other.itsFields ? new Fields(*other.itsFields) : nullptr);
    itsTechLayer = other.itsTechLayer;
    itsFollows = other.itsFollows;
    itsOverride = other.itsOverride;
  }
  return *this;
}

const SSubsectionControls::Fields& SSubsectionControls::Defaults() {
  static const Fields defaults;
  return defaults;
}

const SSubsectionControls& SSubsectionControls::Source() const {
  if (itsOverride || itsTechLayer == nullptr || !itsFollows) return *this;
  const SSubsectionControls* controls = SGeoObjectIO::TemplateControls(itsTechLayer);
  return controls != nullptr && controls != this ? *controls : *this;
}

void SSubsectionControls::CopyControls(const SSubsectionControls& other) {
  STechLayer* layer = itsTechLayer;
  const unsigned char follows = itsFollows;
  *this = other;
  itsTechLayer = layer;
  itsFollows = follows;
}

char SSubsectionControls::FillLetter(int format) const {
  const int isotropy = GetIsotropy();
  if (isotropy == XOnly) return 'X';
  if (isotropy == YOnly) return 'Y';
  switch (GetFillType()) {
  case Conformal: return format >= 2 ? 'V' : 'N';
  case Diagonal: return 'T';
  case Hidden: return format >= 1 ? 'H' : 'N';
  case AniX: return format >= 11 ? 'X' : 'N';
  case AniY: return format >= 11 ? 'Y' : 'N';
  case Corner: return 'C';
  case Both: return 'B';
  default: return 'N';
  }
}

bool SSubsectionControls::SetFillLetter(char letter) {
  int fill = Staircase;
  int isotropy = XAndY;
  switch (letter) {
  case 'B': fill = Both; break;
  case 'C': fill = Corner; break;
  case 'H': fill = Hidden; break;
  case 'N': break;
  case 'T': fill = Diagonal; break;
  case 'V': fill = Conformal; break;
  case 'X': isotropy = XOnly; break;
  case 'Y': isotropy = YOnly; break;
  default: return false;
  }
  if (!CornerFillAllowed()) {
    if (fill == Corner) fill = Staircase;
    if (fill == Both) fill = Diagonal;
  }
  Set(&Fields::itsFillType, fill);
  Set(&Fields::itsIsotropy, isotropy);
  return true;
}

bool SSubsectionControls::CornerFillAllowed() {
  static const bool allowed = [] {
    SInitializationFile* ini = SInitializationFile::GetGlobal();
    return ini != nullptr && ini->GetBool("Velora", "CornerFill", false);
  }();
  return allowed;
}
