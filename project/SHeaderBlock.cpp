#include "SHeaderBlock.h"

#include "SCommentedFile.h"
#include "SProject.h"
#include "SProjectClassID.h"
#include "SProjectErrorManager.h"
#include "SProjectFormat.h"
#include "STime.h"
#include "SVeloraTrace.h"
#include "SXMLUtil.h"

#include <QFile>

SCOLLECTABLE_DEFINE(SHeaderBlock, SID_HEADERBLOCK, &SFileBlock::staticTypeInfo())

namespace {
time_t gFixedTime = 0;
}

SProjectDate SProjectDate::FromSeconds(time_t seconds) {
  const STime when(seconds);
  return SProjectDate{when.date(), when.time()};
}

void SHeaderBlock::SetFixedTime(time_t seconds) { gFixedTime = seconds; }
time_t SHeaderBlock::Now() { return gFixedTime ? gFixedTime : ::time(nullptr); }

SHeaderBlock::SHeaderBlock(SProject* owner) : SFileBlock(owner, "HEADER") {}

void SHeaderBlock::SetDefaults() {
  itsDateUnset = true;
  itsModifiedUnset = true;
  const SProjectDate now = SProjectDate::FromSeconds(Now());
  itsCreatedDate = itsHistoryDate = itsModifiedDate = itsBuiltCreatedDate = now;
  itsCreatedProgram = itsSavedProgram = SProjectFormat::ProgramName();
  itsCreatedVersion = itsSavedVersion = SProjectFormat::ProgramVersion();
  itsAnnotations.clear();
  SetSolverKind(0);
  SFileBlock::SetDefaults();
}

QStringList SHeaderBlock::BuiltByTokens(SFile& file) {
  SCommentedFile* commented = dynamic_cast<SCommentedFile*>(&file);
  const bool cut = commented && !commented->GetLastComment().isEmpty();
  if (cut) {
    // The line is split again with its comment, and without comment handling until all
    // of its tokens are taken, so that a name holding "!" survives.
    commented->SetCommentStart(SString());
    commented->SetLine(file.CurrentLine() + commented->GetLastComment());
  }
  QStringList tokens;
  while (file.HasToken()) {
    SString token;
    file.GetToken(token);
    tokens.append(token.qstring());
  }
  if (cut) commented->SetCommentStart("!");
  if (!tokens.isEmpty()) tokens.removeFirst();  // the keyword
  return tokens;
}

bool SHeaderBlock::ReadBody(SFile& file, SProjectErrorManager& errors) {
  itsAnnotations.clear();
  itsDateUnset = true;
  itsModifiedUnset = true;
  itsFromExternal = false;
  for (;;) {
    if (!file.HasToken()) break;
    SString keyword;
    file.PeekToken(keyword);
    if (Match(keyword, "END")) break;
    if (Match(keyword, "VER")) {
      file.GetToken(keyword);
      file.GetToken(itsVersionText);
    } else if (Match(keyword, "DAT")) {
      file.GetToken(keyword);
      file.GetToken(itsCreatedDate.date);
      file.GetToken(itsCreatedDate.time);
    } else if (Match(keyword, "BUILT_BY_CREATED")) {
      const QStringList tokens = BuiltByTokens(file);
      itsCreatedProgram = tokens.value(0);
      itsCreatedVersion = tokens.value(1);
      itsBuiltCreatedDate = SProjectDate{tokens.value(2), tokens.value(3)};
    } else if (Match(keyword, "BUILT_BY_SAVED")) {
      const QStringList tokens = BuiltByTokens(file);
      itsSavedProgram = tokens.value(0);
      itsSavedVersion = tokens.value(1);
    } else if (Match(keyword, "HDATE")) {
      file.GetToken(keyword);
      file.GetToken(itsHistoryDate.date);
      file.GetToken(itsHistoryDate.time);
      if (itsHistoryDate.IsValid()) itsDateUnset = false;
    } else if (Match(keyword, "MDATE")) {
      file.GetToken(keyword);
      file.GetToken(itsModifiedDate.date);
      file.GetToken(itsModifiedDate.time);
      if (itsModifiedDate.IsValid()) itsModifiedUnset = false;
    } else if (Match(keyword, "ANN")) {
      SString text;
      file.GetAfterFirstToken(text);
      itsAnnotations.append(text.qstring());
    } else if (Match(keyword, "BUI")) {
      // an older built-by line of no further use
    } else if (Match(keyword, "EXF")) {
      itsFromExternal = true;
    } else {
      if (!Unknown(file, keyword, errors)) return false;
      continue;
    }
    if (!file.NextLine()) break;
  }
  ReadSolverFile();
  return true;
}

bool SHeaderBlock::Write(SProjectStream& out) {
  const SProjectDate now = SProjectDate::FromSeconds(Now());
  itsCreatedDate = now;
  if (itsDateUnset) {
    itsHistoryDate = itsModifiedDate = now;
    itsFromExternal = false;
  } else if (itsModifiedUnset) {
    itsModifiedDate = now;
  }
  if (Format() > 14) ApplySolverFile();
  return SFileBlock::Write(out);
}

void SHeaderBlock::WriteBody(SProjectStream& out) {
  out << "DAT " << itsCreatedDate.Text() << '\n';
  out << "BUILT_BY_CREATED ";
  out.Name(itsCreatedProgram) << ' ';
  out.Name(itsCreatedVersion);
  if (itsBuiltCreatedDate.IsValid()) out << ' ' << itsBuiltCreatedDate.Text();
  out << '\n';
  out << "BUILT_BY_SAVED ";
  out.Name(SProjectFormat::ProgramName()) << ' ';
  out.Name(SProjectFormat::ProgramVersion()) << '\n';
  out << "MDATE " << itsModifiedDate.Text() << '\n';
  out << "HDATE " << itsHistoryDate.Text() << '\n';
  if (Format() > 14 && itsFromExternal) out << "EXF\n";
  for (const QString& line : itsAnnotations) out << "ANN " << SString(line) << '\n';
}

SString SHeaderBlock::SolverFileName() const {
  if (!itsOwner || itsOwner->IsTemplateRead()) return SString();
  const SString directory = itsOwner->GetDataDirectory();
  return directory.isEmpty() ? SString() : directory + "/EmSolver.xml";
}

void SHeaderBlock::SetSolverKind(int kind) {
  itsSolverKind = kind;
  ApplySolverFile();
}

void SHeaderBlock::ApplySolverFile() {
  const SString name = SolverFileName();
  if (name.isEmpty()) return;
  if (itsSolverKind == 0) {
    QFile::remove(name.qstring());
    return;
  }
  SXMLUtil xml;
  xml.SetRoot("EmSolver", name);
  xml.OpenElement("Iris");
  xml.CloseElement();
  if (!xml.Save()) VeloraTrace(2, TRACE_GENERAL, "SHeaderBlock: Could not write solver file: %s", name.data());
}

void SHeaderBlock::ReadSolverFile() {
  const SString name = SolverFileName();
  itsSolverKind = 0;
  if (name.isEmpty() || !QFile::exists(name.qstring())) return;
  SXMLFile file(name);
  SString error;
  const bool read = file.Read(error);
  if (!read || !error.isEmpty()) {
    VeloraTrace(2, TRACE_GENERAL, "SHeaderBlock: Could not read solver file: %s\n Error: %s", name.data(), error.data());
    if (!read) return;
  }
  const SXMLElement* root = file.GetRoot();
  if (root->compare("EmSolver", true) == 0 && root->FindDeep("Iris")) itsSolverKind = 1;
}
