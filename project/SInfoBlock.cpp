#include "SInfoBlock.h"

#include "SCommentedFile.h"
#include "SProjectClassID.h"
#include "SProjectErrorManager.h"
#include "SSafeSave.h"

#include <QFile>
#include <QFileInfo>

SCOLLECTABLE_DEFINE(SInfoBlock, SID_INFOBLOCK, &SFileBlock::staticTypeInfo())

namespace {
bool TakeDouble(SFile& file, SDoubleValid& value) {
  double number = 0.0;
  if (!file.GetDouble(number)) return false;
  value.Set(number);
  return true;
}

bool TakeInt(SFile& file, SIntValid& value) {
  int number = 0;
  if (!file.GetInt(number)) return false;
  value.Set(number);
  return true;
}

void WritePair(SProjectStream& out, const char* keyword, const SDoubleValid* pair) {
  if (!pair[0].IsValid()) return;
  out << keyword << pair[0].GetValue();
  if (pair[1].IsValid()) out << ' ' << pair[1].GetValue();
  out << '\n';
}
}  // namespace

bool SInfoBlock::ReadFirstLine(SFile& file) {
  SString kind;
  file.GetToken(kind);
  file.NextLine();
  return kind == "RESULTSINFO";
}

bool SInfoBlock::ReadBody(SFile& file, SProjectErrorManager& errors) {
  const int start = itsStartLine;
  *this = SInfoBlock(itsOwner);
  itsStartLine = start;
  for (;;) {
    if (!file.HasToken()) return true;
    SString keyword;
    file.PeekToken(keyword);
    if (Match(keyword, "END")) return true;
    file.GetToken(keyword);
    bool ok = true;
    if (keyword == "DATE")
      ok = file.GetRestOfLine(itsDate);
    else if (keyword == "RUN")
      ok = TakeInt(file, itsRun);
    else if (keyword == "FMAX")
      ok = TakeDouble(file, itsFMax);
    else if (keyword == "MEM" || keyword == "SUBS" || keyword == "BAND") {
      SDoubleValid* pair = keyword == "MEM" ? itsMemory : keyword == "SUBS" ? itsSubsections : itsBand;
      ok = TakeDouble(file, pair[0]) && (!file.HasToken() || TakeDouble(file, pair[1]));
    } else if (keyword == "EMS")
      ok = TakeDouble(file, itsEms);
    else if (keyword == "TIME")
      ok = TakeDouble(file, itsTime);
    else if (keyword == "ITER")
      ok = TakeInt(file, itsIterations);
    else if (keyword == "COMBO")
      ok = TakeInt(file, itsCombinations);
    else if (keyword == "NAMES") {
      SString name;
      while (file.GetToken(name)) itsNames.append(name.qstring());
    } else {
      file.RewindLine();
      if (!Unknown(file, keyword, errors)) return false;
      continue;
    }
    if (!ok) {
      SString text;
      file.GetLine(text);
      errors.AddError(SProjectErrorManager::Error, LineOf(file), 7132, text.data());
      return false;
    }
    if (!file.NextLine()) return true;
  }
}

bool SInfoBlock::Write(SProjectStream& out) {
  out << itsName;
  WriteFirstLine(out);
  WriteBody(out);
  out << "END\n";
  return true;
}

void SInfoBlock::WriteFirstLine(SProjectStream& out) { out << " RESULTSINFO\n"; }

void SInfoBlock::WriteBody(SProjectStream& out) {
  if (!itsDate.isEmpty()) out << "DATE " << itsDate << '\n';
  if (itsRun.IsValid()) out << "RUN " << itsRun.GetValue() << '\n';
  if (itsFMax.IsValid()) out << "FMAX " << itsFMax.GetValue() << '\n';
  WritePair(out, "MEM ", itsMemory);
  WritePair(out, "SUBS ", itsSubsections);
  WritePair(out, "BAND ", itsBand);
  if (itsEms.IsValid()) out << "EMS " << itsEms.GetValue() << '\n';
  if (itsTime.IsValid()) out << "TIME " << itsTime.GetValue() << '\n';
  if (itsIterations.IsValid()) out << "ITER " << itsIterations.GetValue() << '\n';
  if (itsCombinations.IsValid()) out << "COMBO " << itsCombinations.GetValue() << '\n';
  if (!itsNames.isEmpty()) {
    out << "NAMES ";
    for (const QString& name : itsNames) out << SString(name) << ' ';
    out << '\n';
  }
}

bool SInfoBlock::ReadFile(const SString& path, SProjectErrorManager& errors) {
  SCommentedFile file;
  if (!QFileInfo(path.qstring()).isFile() || !file.Open(path) || !file.NextLine()) {
    errors.AddError(SProjectErrorManager::Error, -1, 7041);
    return false;
  }
  return Read(file, errors);
}

bool SInfoBlock::WriteFile(const SString& path) {
  SProjectStream out;
  Write(out);
  if (!SSafeSave(path).Commit(out.Text())) return false;
  QFile::remove(SString(QFileInfo(path.qstring()).absolutePath() + "/runnum").qstring());
  return true;
}
