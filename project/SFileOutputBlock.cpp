#include "SFileOutputBlock.h"

#include "SBaseOutputFile.h"
#include "SFile.h"
#include "SProject.h"
#include "SProjectClassID.h"
#include "SProjectErrorManager.h"

#include <QDir>
#include <QFileInfo>

SCOLLECTABLE_DEFINE(SFileOutputBlock, SID_FILEOUTPUTBLOCK, &SFileBlock::staticTypeInfo())

namespace {
const char* const kBaseName = "$BASENAME";
const char* const kOutputSuffix = "_output";

QString BaseOf(const SString& projectName) { return QFileInfo(projectName.qstring()).completeBaseName(); }
}  // namespace

SFileOutputBlock::SFileOutputBlock(const SFileOutputBlock& other)
    : SFileBlock(other), itsFolder(other.itsFolder), itsProjectName(other.itsProjectName) {
  for (const SCollectable* file : other.itsFiles) itsFiles.append(static_cast<const SBaseOutputFile*>(file)->copy());
}

SBaseOutputFile* SFileOutputBlock::Get(size_t i) const {
  return i < itsFiles.entries() ? static_cast<SBaseOutputFile*>(itsFiles.at(i)) : nullptr;
}

void SFileOutputBlock::Add(SBaseOutputFile* file) {
  if (file) itsFiles.append(file);
}

SString SFileOutputBlock::ProjectName() const {
  if (itsOwner && !itsOwner->GetFileName().isEmpty()) return itsOwner->GetFileName();
  return itsProjectName;
}

SString SFileOutputBlock::Expand(const SString& text, const SString& projectName) {
  if (text.isEmpty() || projectName.isEmpty()) return text;
  QString folder = text.qstring();
  folder.replace(QLatin1String(kBaseName), BaseOf(projectName));
  const QFileInfo project(projectName.qstring());
  if (QFileInfo(folder).isAbsolute()) return SString(QDir::cleanPath(folder));
  return SString(QDir::cleanPath(project.absoluteDir().absoluteFilePath(folder)));
}

void SFileOutputBlock::SetFolder(const SString& folder) { itsFolder = Expand(folder, ProjectName()); }

SString SFileOutputBlock::FolderText(const SString& projectName) const {
  if (itsFolder.isEmpty() || projectName.isEmpty()) return itsFolder;
  const QString base = BaseOf(projectName);
  const QString folder = itsFolder.qstring();
  const QString relative = QFileInfo(folder).isAbsolute()
                               ? QFileInfo(projectName.qstring()).absoluteDir().relativeFilePath(folder)
                               : folder;
  if (relative == base + QLatin1String(kOutputSuffix)) return SString();
  if (relative.startsWith(QLatin1String("..")) || base.isEmpty()) return SString(relative);
  const int slash = relative.lastIndexOf(QLatin1Char('/'));
  const QString last = relative.mid(slash + 1);
  if (last != base && last != base + QLatin1String(kOutputSuffix)) return SString(relative);
  return SString(relative.left(slash + 1) + QLatin1String(kBaseName) + last.mid(base.length()));
}

void SFileOutputBlock::FileNameChanged(const SString& newName) {
  if (newName.isEmpty()) return;
  // A folder named after the project takes the new name.
  if (!itsProjectName.isEmpty() && itsProjectName != newName)
    itsFolder = Expand(FolderText(itsProjectName), newName);
  itsProjectName = newName;
}

bool SFileOutputBlock::ReadFirstLine(SFile& file) {
  SString word;
  if (itsOwner && itsOwner->GetFileVersion() < 1 && file.PeekToken(word) && SBaseOutputFile::KindOfWord(word) >= 0)
    return true;
  return SFileBlock::ReadFirstLine(file);
}

bool SFileOutputBlock::ReadBody(SFile& file, SProjectErrorManager& errors) {
  itsFiles.clearAndDestroy();
  itsFolder.clear();
  if (itsOwner && !itsOwner->GetFileName().isEmpty()) itsProjectName = itsOwner->GetFileName();
  // Files before the first numbered format may carry a block word or END in front.
  const bool older = itsOwner && itsOwner->GetFileVersion() < 1;
  for (;;) {
    SString word;
    if (!file.PeekToken(word)) {
      if (!file.NextLine()) return true;
      continue;
    }
    if (older && (word == "FILEOUT" || Match(word, "END"))) {
      SString second;
      file.NextToken();
      if (file.PeekToken(second) && SBaseOutputFile::KindOfWord(second) >= 0)
        word = second;
      else
        file.RewindLine();
    }
    if (Match(word, "END")) return true;
    if (Match(word, "FOLDER")) {
      SString folder;
      file.NextToken();
      file.GetToken(folder);
      SetFolder(folder);
      if (!file.NextLine()) return true;
      continue;
    }
    const int kind = SBaseOutputFile::KindOfWord(word);
    if (kind < 0) {
      if (!Unknown(file, word, errors)) return false;
      continue;
    }
    SBaseOutputFile* entry = SBaseOutputFile::Make(kind);
    if (entry == nullptr || !entry->Read(file)) {
      delete entry;
      SString line;
      file.GetLine(line);
      errors.AddError(SProjectErrorManager::Error, LineOf(file), 7132, line.data());
      return false;
    }
    itsFiles.append(entry);
    if (!file.NextLine()) return true;
  }
}

void SFileOutputBlock::WriteBody(SProjectStream& out) {
  const SString folder = FolderText(ProjectName());
  if (!folder.isEmpty()) {
    out << "FOLDER ";
    out.Name(folder) << '\n';
  }
  const int format = Format();
  for (size_t i = 0; i < Count(); ++i)
    if (Get(i)->IsWritten(format)) Get(i)->Write(out);
}

void SFileOutputBlock::RenameVariable(const SString& oldName, const SString& newName) {
  for (size_t i = 0; i < Count(); ++i) Get(i)->RenameVariable(oldName, newName);
}

QStringList SFileOutputBlock::GetVariableNames() const {
  QStringList names;
  for (size_t i = 0; i < Count(); ++i)
    for (const QString& name : Get(i)->GetVariableNames())
      if (!names.contains(name)) names.append(name);
  return names;
}
