#include "SVerbatimBlock.h"

#include "SFile.h"
#include "SProjectClassID.h"

SCOLLECTABLE_DEFINE(SVerbatimBlock, SID_VERBATIMBLOCK, &SFileBlock::staticTypeInfo())

bool SVerbatimBlock::ReadFirstLine(SFile& file) {
  Clear();
  file.GetRestOfLine(itsFirstLineRest);
  file.NextLine();
  return true;
}

namespace {
// Block names that no block body uses as a keyword of its own: a bare "END" directly in
// front of one of them is taken as the end of the block (an older form of closing).
bool StartsTopLevelBlock(const SString& token) {
  static const char* const names[] = {"HEADER", "GEO",     "CONTROL", "INTERFACE", "TRANSLATOR",
                                      "SID",    "JXY",     "OPT",     "VARSWP",    "FILEOUT",
                                      "CKT",    "SUBDIV",  "QSG",     "3DOPTIONS", "SMDFILES"};
  for (const char* name : names)
    if (token == name) return true;
  return false;
}
}  // namespace

bool SVerbatimBlock::ReadBody(SFile& file, SProjectErrorManager&) {
  bool afterBareEnd = false;
  for (;;) {
    if (!file.HasToken()) return true;  // end of the file: the frame decides
    SString first;
    file.GetFirstToken(first);
    if (afterBareEnd && StartsTopLevelBlock(first)) {
      itsLines.removeLast();
      return true;
    }
    afterBareEnd = false;
    if (Match(first, "END")) {
      file.RewindLine();
      SString end, second;
      file.GetToken(end);
      const bool hasSecond = file.GetToken(second);
      file.RewindLine();
      if (hasSecond && Match(second, itsName)) return true;
      afterBareEnd = !hasSecond;
    }
    itsLines.append(file.CurrentLine().qstring());
    if (!file.NextLine()) return true;
  }
}

void SVerbatimBlock::WriteFirstLine(SProjectStream& out) {
  if (!itsFirstLineRest.isEmpty()) out << ' ' << itsFirstLineRest;
  out << '\n';
}

void SVerbatimBlock::WriteBody(SProjectStream& out) {
  for (const QString& line : itsLines) out << SString(line) << '\n';
}

void SVerbatimBlock::Clear() {
  itsFirstLineRest.clear();
  itsLines.clear();
}
