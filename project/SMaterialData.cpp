#include "SMaterialData.h"

const char* SElectricalLossType::Keyword(int code) {
  switch (code) {
  case Resistivity: return "RSVY";
  case ResistancePerVia: return "RPV";
  case SheetResistance: return "SRVY";
  default: return "CDVY";
  }
}

bool SElectricalLossType::SetFromKeyword(const SString& word) {
  const SString upper = word.upper();
  for (int code = Conductivity; code <= SheetResistance; ++code) {
    if (upper == Keyword(code)) {
      itsCode = code;
      return true;
    }
  }
  return false;
}

int SElectricalLossType::UnitFamily() const {
  switch (itsCode) {
  case Conductivity: return 11;
  case Resistivity: return 12;
  case SheetResistance: return 13;
  default: return -1;
  }
}

#include "SMaterialTypeData.h"
#include "SVeloraError.h"

void SMaterialTypeData::SetPattern(int pattern) {
  if (pattern < 0) SFATAL("VL1003", "Index = %d, must be >= 0", pattern);
  itsPattern = pattern;
  itsPatternSet = 1;
}
