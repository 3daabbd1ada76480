#ifndef SPROJECTFILEMAPPING_H
#define SPROJECTFILEMAPPING_H

#include "SCollectable.h"
#include "SString.h"

#include <QMap>

// "filenames.map" of the data directory: names of files the project refers to, each with
// the name it has on this machine. One pair of (quoted) names a line.
class SProjectFileMapping : public SCollectable {
  SCOLLECTABLE_DECLARE(SProjectFileMapping)
  SCOLLECTABLE_COPYABLE(SProjectFileMapping)
public:
  void Bind(const SString& path) { itsPath = path; }
  const SString& GetPath() const { return itsPath; }
  // Reads the bound file; a missing file leaves the mapping empty and is no fault.
  bool Read();
  bool HasEntries() const { return !itsNames.isEmpty(); }
  // The mapped name, or `name` itself.
  SString Map(const SString& name) const { return itsNames.value(name.qstring(), name.qstring()); }
  void Set(const SString& from, const SString& to) { itsNames.insert(from.qstring(), to.qstring()); }
  void Clear() { itsNames.clear(); }

private:
  SString itsPath;
  QMap<QString, QString> itsNames;
};

#endif
