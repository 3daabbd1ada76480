#include "SBoxSide.h"

#include "SFileBlock.h"

const char* SBoxSide::SideText(int side) {
  switch (side) {
  case Left: return "LEFT";
  case Right: return "RIGHT";
  case Top: return "TOP";
  case Bottom: return "BOTTOM";
  case AutoGround: return "AUTOGND";
  default: return "";
  }
}

int SBoxSide::SideFromText(const SString& text) {
  for (int side = Left; side <= AutoGround; ++side)
    if (SFileBlock::Match(text, SideText(side))) return side;
  return -1;
}
