#include "SDimension.h"

#include "SCircuit.h"
#include "SFile.h"
#include "SFileBlock.h"
#include "SGeoClassID.h"
#include "SProjectErrorManager.h"
#include "SProjectStream.h"
#include "SWordTable.h"

SCOLLECTABLE_DEFINE(SDimension, SID_DIMENSION, &SEnclosure::staticTypeInfo())

namespace {
const char* const kScaleWords[] = {"NSCD", "SCUNI", "SCXY"};

const char* KindWord(int kind, int format) {
  switch (kind) {
  case SDimension::Anchored: return "ANC";
  case SDimension::Symmetric: return "SYM";
  case SDimension::Radial: return format >= 9 ? "RAD" : "ANC";
  default: return "STD";
  }
}
}  // namespace

void SDimension::Write(SProjectStream& out, const SCircuit& circuit, int format) const {
  if (itsRef1.FindPolygon(circuit) == nullptr) return;
  out << "DIM ";
  WriteRecord(out, format);
  out << "\nPOS " << itsLabelPosition.x() << ' ' << itsLabelPosition.y() << '\n';
  out << "NOM " << itsNominal << '\n';
  out << "REF1 ";
  itsRef1.Write(out);
  out << "REF2 ";
  itsRef2.Write(out);
  out << "END\n";
}

void SDimension::WriteRecord(SProjectStream& out, int format) const {
  out << KindWord(itsKind, format) << ' ' << (itsDirection == YDirection ? "YDIR" : "XDIR");
  if (format >= 5) out << ' ' << itsSignFactor;
  if (format >= 9 && itsKind != Standard) {
    out << ' ' << SWordTable::WordOf(kScaleWords, itsScaleMode, kScaleWords[NotScaled]);
  }
}

bool SDimension::ReadRecord(SFile& file, SProjectErrorManager& errors, bool strictScale) {
  SetLine(file.LineCount());
  SString word;
  file.GetToken(word);
  if (SFileBlock::Match(word, "ANC"))
    itsKind = Anchored;
  else if (SFileBlock::Match(word, "SYM"))
    itsKind = Symmetric;
  else if (SFileBlock::Match(word, "STD"))
    itsKind = Standard;
  else if (SFileBlock::Match(word, "RAD"))
    itsKind = Radial;
  else
    return ReadFault(errors, file, 6032);
  file.GetToken(word);
  if (SFileBlock::Match(word, "YDIR"))
    itsDirection = YDirection;
  else if (SFileBlock::Match(word, "XDIR"))
    itsDirection = XDirection;
  else
    return ReadFault(errors, file, 6033);
  double sign = 1.0;
  if (file.GetDouble(sign)) SetSignFactor(sign);
  // The scale mode is the variable's business; a word it doesn't know is left for it.
  if (file.GetUpperToken(word)) {
    const int mode = SWordTable::CodeOf(kScaleWords, word, -1);
    if (mode >= 0)
      itsScaleMode = mode;
    else if (strictScale)
      return ReadFault(errors, file, 6037);
  }
  return true;
}

bool SDimension::Read(SFile& file, SProjectErrorManager& errors) {
  if (!ReadRecord(file, errors)) return false;
  for (;;) {
    if (!file.NextLine()) return ReadFault(errors, file, 6024);
    SString key;
    if (!file.GetToken(key)) continue;
    if (SFileBlock::Match(key, "REF1")) {
      if (!itsRef1.Read(file, errors)) return false;
    } else if (SFileBlock::Match(key, "REF2")) {
      if (!itsRef2.Read(file, errors)) return false;
    } else if (SFileBlock::Match(key, "POS")) {
      double x = 0.0, y = 0.0;
      if (!file.GetDouble(x) || !file.GetDouble(y)) return ReadFault(errors, file, 6076);
      itsLabelPosition = SPoint(x, y);
    } else if (SFileBlock::Match(key, "NOM")) {
      if (!file.GetDouble(itsNominal)) return ReadFault(errors, file, 6133);
    } else if (SFileBlock::Match(key, "END")) {
      return true;
    } else {
      return ReadFault(errors, file, 6024);
    }
  }
}
