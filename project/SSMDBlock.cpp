#include "SSMDBlock.h"

#include "SFile.h"
#include "SProject.h"
#include "SProjectClassID.h"
#include "SProjectErrorManager.h"

#include <QDir>
#include <QFileInfo>

SCOLLECTABLE_DEFINE(SSMDBlock, SID_SMDBLOCK, &SFileBlock::staticTypeInfo())

SString SSMDBlock::ProjectDirectory() const {
  if (!itsOwner || itsOwner->GetFileName().isEmpty()) return SString();
  return SString(QFileInfo(itsOwner->GetFileName().qstring()).absolutePath());
}

bool SSMDBlock::ReadBody(SFile& file, SProjectErrorManager& errors) {
  itsFiles.clear();
  const SString directory = ProjectDirectory();
  for (;;) {
    if (!file.HasToken()) return true;
    SString first;
    file.PeekToken(first);
    if (Match(first, "END")) return true;
    int id = 0;
    if (!file.GetInt(id)) {
      errors.AddError(SProjectErrorManager::Error, LineOf(file), 7316);
      return false;
    }
    SString name;
    file.GetToken(name);
    if (!directory.isEmpty() && !name.isEmpty())
      name = SString(QDir::cleanPath(QDir(directory.qstring()).absoluteFilePath(name.qstring())));
    itsFiles.insert(id, name);
    if (!file.NextLine()) return true;
  }
}

void SSMDBlock::WriteBody(SProjectStream& out) {
  const SString directory = ProjectDirectory();
  for (auto it = itsFiles.constBegin(); it != itsFiles.constEnd(); ++it) {
    SString name = it.value();
    if (itsOwner && itsOwner->GetFileMapping().HasEntries())
      name = itsOwner->GetFileMapping().Map(name);
    else if (!directory.isEmpty() && QFileInfo(name.qstring()).isAbsolute())
      name = SString(QDir(directory.qstring()).relativeFilePath(name.qstring()));
    out << it.key() << " \"" << name << "\"\n";
  }
}

bool SSMDBlock::Validate(SProjectErrorManager& errors) {
  for (auto it = itsFiles.constBegin(); it != itsFiles.constEnd(); ++it) {
    if (!QFileInfo::exists(it.value().qstring())) {
      errors.AddError(SProjectErrorManager::Error, -1, 7213, it.value().data());
      return false;
    }
  }
  return true;
}
