#ifndef SFILENAME_H
#define SFILENAME_H

#include "SCollectableString.h"

// A path kept as given, with operations on its parts. The separator is "/";
// a backslash also ends a directory part when names are taken apart.
class SFileName : public SCollectableString {
  SCOLLECTABLE_DECLARE(SFileName)
  SCOLLECTABLE_COPYABLE(SFileName)
public:
  SFileName() {}
  SFileName(const char* latin1) : SCollectableString(latin1) {}
  SFileName(const QString& name) : SCollectableString(name) {}
  SFileName(const SString& name) : SCollectableString(name) {}
  using SCollectableString::operator=;

  SString GetFullName() const { return *this; }
  // Behind the last slash or backslash.
  SString GetFileName() const;
  // The file name up to its last dot.
  SString GetBaseName() const;
  // Behind the last dot of the file name; empty without one.
  SString GetExtension() const;
  SString GetWithoutExtension() const;
  // In front of the last separator; empty without one, "/" for the root.
  SString GetPath() const;

  // Replaces the extension; an empty text removes it.
  SFileName& SetExtension(const SString& extension);
  SFileName& AddExtension(const SString& extension);
  SFileName& SetPath(const SString& path);
  SFileName& SetBaseName(const SString& baseName);
  // base name "x" becomes "x_<suffix>"
  SFileName& AppendToBaseName(long long suffix);
  SFileName& AppendToBaseName(const SString& suffix);

  bool Exists() const;
  bool IsReadable() const;
  bool IsWritable() const;
  bool IsDirectory() const;

private:
  // Start of the extension's dot in the full name, or -1.
  int ExtensionDot() const;
};

#endif
