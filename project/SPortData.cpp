#include "SPortData.h"

#include "SRefPlane.h"
#include "SWordTable.h"

SPortData::SPortData() : SGroundSettings(FeedlineWidth) {}

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
}  // namespace

using SWordTable::CodeOf;
using SWordTable::WordOf;

const char* SPortData::GroundWord(int code) { return WordOf(kGroundWords, code, kGroundWords[0]); }
int SPortData::GroundFromWord(const SString& word) { return CodeOf(kGroundWords, word, -1); }
const char* SPortData::DirectionWord(int code) { return WordOf(kDirectionWords, code, kDirectionWords[0]); }
int SPortData::DirectionFromWord(const SString& word) { return CodeOf(kDirectionWords, word, -1); }
const char* SPortData::WidthWord(int code) { return WordOf(kWidthWords, code, kWidthWords[0]); }
int SPortData::WidthFromWord(const SString& word) { return CodeOf(kWidthWords, word, -1); }
