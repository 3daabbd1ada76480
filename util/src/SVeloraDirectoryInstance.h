#ifndef SVELORADIRECTORYINSTANCE_H
#define SVELORADIRECTORYINSTANCE_H

#include "SFileName.h"

// The installation, application data and resource directories, found once at
// start-up. Nothing here stops a run: without an install directory the
// instance stays invalid and every directory is empty.
class SVeloraDirectoryInstance {
public:
  // Works the directories out from the environment and the program's path (argv[0]).
  explicit SVeloraDirectoryInstance(const char* programPath);

  // Makes the process's instance; a second call is the fatal error "VL1006".
  static SVeloraDirectoryInstance* CreateGlobal(const char* programPath);
  // The process's instance, or null.
  static SVeloraDirectoryInstance* Instance();
  // Drops the process's instance, at the end of the process.
  static void ReleaseGlobal();

  bool IsValid() const { return itsValid; }
  const SFileName& GetInstallDir() const { return itsInstallDir; }
  const SFileName& GetAppDataDir() const { return itsAppDataDir; }
  const SFileName& GetResourceDir() const { return itsResourceDir; }
  const SString& GetInstallLog() const { return itsInstallLog; }
  const SString& GetAppDataLog() const { return itsAppDataLog; }
  const SString& GetResourceLog() const { return itsResourceLog; }
  const SString& GetFailure() const { return itsFailure; }

  // A directory counts as an installation when it holds this file.
  static const char* MarkerFile() { return "velora.ver"; }

private:
  void FindInstallDir(const char* programPath);
  void FindAppDataDir();
  void FindResourceDir();
  bool TryInstall(const SString& candidate, const char* label, const char* how);

  SFileName itsInstallDir;
  SFileName itsAppDataDir;
  SFileName itsResourceDir;
  SString itsInstallLog;
  SString itsAppDataLog;
  SString itsResourceLog;
  SString itsFailure;
  bool itsValid = false;
};

// Empty names when no valid instance exists.
SFileName GetInstallDir();
SFileName GetAppDataDir();
SFileName GetResourceDir();

#endif
