#ifndef SPROJECTOPERATIONS_H
#define SPROJECTOPERATIONS_H

#include "SProject.h"

// Removes what earlier analyses stored for a project, once its geometry has changed.
class SProjectOperations : public SProject {
  SCOLLECTABLE_DECLARE(SProjectOperations)
public:
  enum Status { Done = 0, NoProjectFile = 1, Locked = 2, InsideInstallation = 3 };

  explicit SProjectOperations(const SString& projectFile);

  // `results`: remove the stored results, logs and derived directories. `examples`: also
  // work inside the installation, and remove the example marker. False with `status` set
  // when the project is missing, locked, or part of the installation.
  bool Clean(bool results, bool keepSolver = false, bool examples = false);
  int GetStatus() const { return itsStatus; }

  // "<data directory>/solver": the working directory of the analysis engine.
  SString GetSolverDirectory() const;

private:
  // A file or directory that isn't there is no fault.
  void RemovePath(const SString& path);

  int itsStatus = Done;
};

#endif
