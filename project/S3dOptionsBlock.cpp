#include "S3dOptionsBlock.h"

#include "SFile.h"
#include "SProjectClassID.h"
#include "SProjectErrorManager.h"

SCOLLECTABLE_DEFINE(S3dOptionsBlock, SID_3DOPTIONSBLOCK, &SFileBlock::staticTypeInfo())

namespace {
bool BadLine(SFile& file, SProjectErrorManager& errors) {
  SString text;
  file.GetLine(text);
  errors.AddError(SProjectErrorManager::Error, SFileBlock::LineOf(file), 7132, text.data());
  return false;
}
}  // namespace

bool S3dOptionsBlock::ReadBody(SFile& file, SProjectErrorManager& errors) {
  itsScales.clear();
  for (;;) {
    if (!file.HasToken()) return true;
    SString keyword;
    file.PeekToken(keyword);
    if (Match(keyword, "END")) return true;
    if (Match(keyword, "GLOBAL")) {
      file.GetToken(keyword);
      double scale = 1.0;
      if (!file.GetDouble(scale)) return BadLine(file, errors);
      itsGlobalScale = static_cast<float>(scale);
    } else if (Match(keyword, "ALL")) {
      file.GetToken(keyword);
      int count = 0;
      double scale = 1.0;
      if (!file.GetInt(count) || count < 0 || count > kMaxEntries || !file.GetDouble(scale))
        return BadLine(file, errors);
      itsScales.assign(static_cast<size_t>(count), scale);
    } else if (Match(keyword, "LAYERS")) {
      // One value a line up to an END of its own.
      for (;;) {
        if (!file.NextLine()) return true;
        SString first;
        file.PeekToken(first);
        if (Match(first, "END")) break;
        double scale = 1.0;
        if (!file.GetDouble(scale) || itsScales.size() >= static_cast<size_t>(kMaxEntries))
          return BadLine(file, errors);
        itsScales.push_back(scale);
      }
    } else {
      if (!Unknown(file, keyword, errors)) return false;
      continue;
    }
    if (!file.NextLine()) return true;
  }
}

bool S3dOptionsBlock::Write(SProjectStream& out) { return Format() < 5 ? true : SFileBlock::Write(out); }

void S3dOptionsBlock::WriteBody(SProjectStream& out) {
  out << "GLOBAL " << static_cast<double>(itsGlobalScale) << '\n';
  if (itsScales.empty()) return;
  bool allEqual = true;
  for (double scale : itsScales) allEqual = allEqual && scale == itsScales.front();
  if (allEqual) {
    out << "ALL " << static_cast<long long>(itsScales.size()) << ' ' << itsScales.front() << '\n';
    return;
  }
  out << "LAYERS\n";
  for (double scale : itsScales) out << scale << '\n';
  out << "END\n";
}
