#include "SProjectOperations.h"

#include "SProjectClassID.h"
#include "SVeloraError.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

SCOLLECTABLE_DEFINE(SProjectOperations, SID_PROJECTOPERATIONS, &SProject::staticTypeInfo())

SProjectOperations::SProjectOperations(const SString& projectFile) : SProject(projectFile) {}

SString SProjectOperations::GetSolverDirectory() const {
  const SString directory = GetDataDirectory();
  return directory.isEmpty() ? directory : directory + "/solver";
}

void SProjectOperations::RemovePath(const SString& path) {
  if (path.isEmpty()) return;
  const QFileInfo info(path.qstring());
  if (!info.exists() && !info.isSymLink()) return;
  const bool removed = info.isDir() && !info.isSymLink() ? QDir(path.qstring()).removeRecursively()
                                                          : QFile::remove(path.qstring());
  if (!removed) VeloraErrorReport(5602, 5740, path.data());
}

bool SProjectOperations::Clean(bool results, bool keepSolver, bool examples) {
  (void)keepSolver;
  itsStatus = Done;
  if (!itsFileName.Exists()) {
    itsStatus = NoProjectFile;
    return false;
  }
  if (QFileInfo::exists(GetLockFile().qstring())) {
    itsStatus = Locked;
    return false;
  }
  const QByteArray install = qgetenv("VELORA_DIR");
  if (!install.isEmpty() && !examples) {
    const QString root = QDir(QString::fromLocal8Bit(install)).absolutePath() + QLatin1Char('/');
    const QString data = QDir(GetDataDirectory().qstring()).absolutePath();
    if (data.startsWith(root)) {
      itsStatus = InsideInstallation;
      return false;
    }
  }
  if (!results) return true;

  const SString data = GetDataDirectory();
  const SString solver = GetSolverDirectory();
  for (const char* name : {"log_response", "log_errors", "log_timing", "log_composite", "runnum", "fmax", "log_remote"})
    RemovePath(data + "/" + name);
  for (const char* name : {"timing", "converter", "mesher", "irissolver", "outputfiles", "errors"})
    RemovePath(solver + "/" + name);
  RemovePath(SFileName(GetSubsectionFile()).GetPath());
  RemovePath(GetDocumentationDirectory());
  const QDir directory(data.qstring());
  for (const QString& name : directory.entryList(QStringList(QStringLiteral("VEL*")), QDir::Files | QDir::Hidden))
    RemovePath(SString(directory.filePath(name)));
  RemovePath(GetAutosaveFile());
  RemovePath(solver);
  if (examples) RemovePath(data + "/example.tag");
  return true;
}
