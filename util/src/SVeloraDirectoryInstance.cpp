#include "SVeloraDirectoryInstance.h"

#include "SVeloraError.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <cstdlib>

namespace {
SVeloraDirectoryInstance* gInstance = nullptr;

SString Env(const char* name) {
  const char* value = getenv(name);
  return value ? SString::fromUtf8(value) : SString();
}

// The program lives two levels below the top: <top>/bin/<arch>/gds.
QString TopOfProgram(QString path) {
  for (int i = 0; i < 3 && path.contains(QLatin1Char('/')); ++i) path.truncate(path.lastIndexOf(QLatin1Char('/')));
  return path.isEmpty() ? QStringLiteral("/") : path;
}

SString Clean(const SString& path) {
  QString text = path.qstring();
  text.replace(QLatin1Char('\\'), QLatin1Char('/'));
  while (text.length() > 1 && text.endsWith(QLatin1Char('/'))) text.chop(1);
  return SString(text);
}
}  // namespace

SVeloraDirectoryInstance::SVeloraDirectoryInstance(const char* programPath) {
  if (!qEnvironmentVariableIsSet("QT_LOGGING_RULES")) qputenv("QT_LOGGING_RULES", "*=false");
  FindInstallDir(programPath);
  FindAppDataDir();
  FindResourceDir();
}

bool SVeloraDirectoryInstance::TryInstall(const SString& candidate, const char* label, const char* how) {
  if (candidate.isEmpty()) return false;
  const SString dir = Clean(candidate);
  if (!QFileInfo(QDir(dir.qstring()).filePath(QLatin1String(MarkerFile()))).isFile()) {
    itsInstallLog += SString(label);
    itsInstallLog += " directory test failed.\n";
    return false;
  }
  itsInstallDir = dir;
  itsInstallLog += "Velora dir determined using ";
  itsInstallLog += how;
  itsInstallLog += "\n";
  return true;
}

void SVeloraDirectoryInstance::FindInstallDir(const char* programPath) {
  if (TryInstall(Env("REG_VELORA_DIR"), "REG_VELORA_DIR", "$REG_VELORA_DIR")) return;
  if (TryInstall(Env("VELORA_DIR"), "Environment", "$VELORA_DIR")) return;
  if (programPath && *programPath) {
    const QString path = TopOfProgram(QFileInfo(QFile::decodeName(programPath)).absoluteFilePath());
    if (TryInstall(SString(path), "Argv Path", "Argv Path")) return;
  }
  // Started through PATH or a link, the first argument doesn't lead to the installation;
  // the executable itself does.
  const QString executable = QFileInfo(QStringLiteral("/proc/self/exe")).canonicalFilePath();
  if (!executable.isEmpty() && TryInstall(SString(TopOfProgram(executable)), "Executable Path", "Executable Path"))
    return;
  itsFailure += "A valid Velora install directory could not be found.\n";
  itsFailure += "The variable VELORA_DIR must be defined.\n";
  itsFailure += "It must name the directory that holds the file velora.ver.\n";
  itsFailure += "Please check your installation.\n";
}

void SVeloraDirectoryInstance::FindAppDataDir() {
  const char* const names[] = {"REG_VELORA_APPDATA_DIR", "VELORA_APPDATA_DIR"};
  for (const char* name : names) {
    const SString candidate = Env(name);
    if (candidate.isEmpty()) continue;
    if (QFileInfo(candidate.qstring()).isDir()) {
      itsAppDataDir = Clean(candidate);
      itsAppDataLog += SString::format("Velora application data dir determined using $%s\n", name);
      break;
    }
    itsAppDataLog += SString::format("%s directory test failed.\n", name);
  }
  if (itsAppDataDir.isEmpty() && !itsInstallDir.isEmpty()) {
    itsAppDataDir = itsInstallDir;
    itsAppDataLog += "Velora application data dir defaults to the install directory\n";
  }
  if (itsAppDataDir.isEmpty()) {
    itsFailure += "\nA valid Velora Application Data  directory could not be found.\n";
    itsFailure += "The variable VELORA_APPDATA_DIR must be defined.\n";
  }
  itsValid = !itsInstallDir.isEmpty() && !itsAppDataDir.isEmpty();
}

void SVeloraDirectoryInstance::FindResourceDir() {
  const SString candidate = Env("VELORA_RESOURCE_DIR");
  if (!candidate.isEmpty() && QFileInfo(candidate.qstring()).isDir()) {
    itsResourceDir = Clean(candidate);
    itsResourceLog += "Velora resource dir determined using $VELORA_RESOURCE_DIR\n";
    return;
  }
  if (!candidate.isEmpty())
    itsResourceLog += "$VELORA_RESOURCE_DIR resource directory does not exist, using default\n";
  if (!itsInstallDir.isEmpty()) {
    itsResourceDir = itsInstallDir + "/resource";
    itsResourceLog += "Velora resource dir determined using the install directory\n";
  }
}

SVeloraDirectoryInstance* SVeloraDirectoryInstance::CreateGlobal(const char* programPath) {
  if (gInstance)
    VeloraFatalError("VL1006", __FILE__, __LINE__, "%s", "Global Directory Instance already intialized");
  gInstance = new SVeloraDirectoryInstance(programPath);
  return gInstance;
}

SVeloraDirectoryInstance* SVeloraDirectoryInstance::Instance() { return gInstance; }

void SVeloraDirectoryInstance::ReleaseGlobal() {
  delete gInstance;
  gInstance = nullptr;
}

SFileName GetInstallDir() {
  SVeloraDirectoryInstance* instance = SVeloraDirectoryInstance::Instance();
  return instance && instance->IsValid() ? instance->GetInstallDir() : SFileName();
}

SFileName GetAppDataDir() {
  SVeloraDirectoryInstance* instance = SVeloraDirectoryInstance::Instance();
  return instance && instance->IsValid() ? instance->GetAppDataDir() : SFileName();
}

SFileName GetResourceDir() {
  SVeloraDirectoryInstance* instance = SVeloraDirectoryInstance::Instance();
  return instance && instance->IsValid() ? instance->GetResourceDir() : SFileName();
}
