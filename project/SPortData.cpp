#include "SPortData.h"

#include "SRefPlane.h"

SPortData::SPortData() {}

SPortData::SPortData(const SPortData& other) : SEdge(other) { *this = other; }

SPortData& SPortData::operator=(const SPortData& other) {
  if (this == &other) return *this;
  SEdge::operator=(other);
  itsIndices = other.itsIndices;
  itsType = other.itsType;
  itsResistance = other.itsResistance;
  itsReactance = other.itsReactance;
  itsInductance = other.itsInductance;
  itsCapacitance = other.itsCapacitance;
  if (other.itsRefPlane) {
    auto plane = std::make_unique<SRefPlane>();
    plane->CopyPlane(*other.itsRefPlane);
    itsRefPlane = std::move(plane);
  } else {
    itsRefPlane.reset();
  }
  itsPosition = other.itsPosition;
  itsGroupName = other.itsGroupName;
  itsAutomaticGroup = other.itsAutomaticGroup;
  itsDiagonalAllowed = other.itsDiagonalAllowed;
  itsPolarityReversed = other.itsPolarityReversed;
  itsSimple = other.itsSimple;
  itsGroup = other.itsGroup;
  itsGroundReference = other.itsGroundReference;
  itsGroundDirection = other.itsGroundDirection;
  itsTerminalWidthType = other.itsTerminalWidthType;
  itsTerminalWidth = other.itsTerminalWidth;
  return *this;
}

SPortData::~SPortData() {}

void SPortData::SetRefPlane(SRefPlane* plane) { itsRefPlane.reset(plane); }

const char* SPortData::TypeText(int type) {
  switch (type) {
  case Standard: return "Standard";
  case AutoGround: return "Autognd";
  case CoCalibrated: return "Co-calibrated";
  case DeltaGap: return "Delta Gap";
  case BoxWall: return "Box-wall";
  case ViaPort: return "Via";
  case Component: return "Component";
  default: return "";
  }
}

namespace {
const char* const kGroundWords[] = {"AUTO", "BOX", "EDGE", "POLY", "FLOAT", "HIDDEN"};
const char* const kDirectionWords[] = {"AUTO", "ABOVE", "BELOW", "BOTH"};
const char* const kWidthWords[] = {"CELL", "FEED", "CUST"};

template <size_t N> const char* WordOf(const char* const (&words)[N], int code) {
  return code >= 0 && static_cast<size_t>(code) < N ? words[code] : words[0];
}

template <size_t N> int CodeOf(const char* const (&words)[N], const SString& word) {
  for (size_t i = 0; i < N; ++i)
    if (word == words[i]) return static_cast<int>(i);
  return -1;
}
}  // namespace

const char* SPortData::GroundWord(int code) { return WordOf(kGroundWords, code); }
int SPortData::GroundFromWord(const SString& word) { return CodeOf(kGroundWords, word); }
const char* SPortData::DirectionWord(int code) { return WordOf(kDirectionWords, code); }
int SPortData::DirectionFromWord(const SString& word) { return CodeOf(kDirectionWords, word); }
const char* SPortData::WidthWord(int code) { return WordOf(kWidthWords, code); }
int SPortData::WidthFromWord(const SString& word) { return CodeOf(kWidthWords, word); }
