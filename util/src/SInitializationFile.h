#ifndef SINITIALIZATIONFILE_H
#define SINITIALIZATIONFILE_H

#include "SCollectableString.h"
#include "SFileName.h"
#include "SOrdered.h"
#include "SVarRWCString.h"

#include <QStringList>

// One "name=value" line of a settings file; a line without a name (blank or only a
// comment) is kept as an empty key so that writing puts it back in place.
class SInitializationKey : public SCollectableString {
  SCOLLECTABLE_DECLARE(SInitializationKey)
  SCOLLECTABLE_COPYABLE(SInitializationKey)
public:
  SInitializationKey() {}
  explicit SInitializationKey(const SString& name) : SCollectableString(name) {}

  // Follows the process-wide case flag of the search in progress.
  int compareTo(const SCollectable* other) const override;

  SString itsValue;
  // White space behind the value, in front of the comment.
  SString itsBetween;
  SString itsComment;
  // False for a line that had no "=".
  bool itsHasEquals = true;
};

class SInitializationSection : public SCollectableString {
  SCOLLECTABLE_DECLARE(SInitializationSection)
public:
  SInitializationSection() {}
  explicit SInitializationSection(const SString& name) : SCollectableString(name) {}
  ~SInitializationSection() override { itsKeys.clearAndDestroy(); }
  SInitializationSection(const SInitializationSection&) = delete;
  SInitializationSection& operator=(const SInitializationSection&) = delete;
  SCollectable* newSpecies() const override { return new SInitializationSection(); }
  SCollectable* copy() const override;

  int compareTo(const SCollectable* other) const override;

  // Of SInitializationKey, owned, in file order.
  SOrdered itsKeys;
  SString itsBetween;
  SString itsComment;
};

// The sectioned settings file. Every lookup takes a default, which answers for a
// missing file, section or key, an empty value, and a value of the wrong kind.
class SInitializationFile {
public:
  enum Error {
    NoError = 0,
    FileNotFound = 1,
    CannotCreate = 2,
    DirectoryMissing = 3,
    DirectoryUnreadable = 4,
    MissingAfterWrite = 5,
    BadSection = 6,
    TemporaryFailed = 7
  };

  // Names may hold variables; `overrideName` wins when it expands to an existing file.
  SInitializationFile(const SString& defaultName, const SString& overrideName = SString(), bool ignoreCase = false);
  ~SInitializationFile();
  SInitializationFile(const SInitializationFile&) = delete;
  SInitializationFile& operator=(const SInitializationFile&) = delete;

  SString GetValue(const SString& section, const SString& key, const SString& fallback = SString());
  bool GetBool(const SString& section, const SString& key, bool fallback);
  int GetInt(const SString& section, const SString& key, int fallback);
  double GetDouble(const SString& section, const SString& key, double fallback);
  // Items separated by blanks or tabs; a double-quoted item may hold blanks.
  QStringList GetList(const SString& section, const SString& key);
  bool HasKey(const SString& section, const SString& key);
  bool HasSection(const SString& section);
  SInitializationSection* GetSection(const SString& section) const;
  SInitializationKey* GetKey(const SString& section, const SString& key) const;
  void SetValue(const SString& section, const SString& key, const SString& value);
  // An empty key sets the comment of the section line.
  void SetComment(const SString& section, const SString& key, const SString& comment);

  bool Read();
  // Reads a further file on top: its values replace or add to ours.
  bool Merge(const SString& fileName);
  // Writes to the file read from, or to a temporary file removed with this object.
  bool Write(bool temporary = false);
  bool IsChanged() const;
  void Clear();

  // The file that Read uses.
  SString GetPath();
  // The file that Write uses.
  SString GetWritePath();
  const SFileName& GetTemporaryName() const { return itsTemporaryName; }
  int GetError() const { return itsError; }
  SString GetErrorText() const;
  const SString& GetHeader() const { return itsHeader; }
  const SOrdered& GetSections() const { return itsSections; }
  bool OverrideFailed() const { return itsOverrideFailed; }
  void SetIgnoreCase(bool on) { itsIgnoreCase = on; }
  void SetUseOverrideAlways(bool on) { itsUseOverrideAlways = on; }
  void SetReload(bool on) { itsReload = on; }

  // The process's settings: the global file with the user file merged on top.
  static SInitializationFile* CreateGlobal();
  // Null until CreateGlobal ran.
  static SInitializationFile* GetGlobal();
  static void DestroyGlobal();

private:
  bool ReadInto(const SString& path, bool merge);
  void ParseLine(const SString& line, SInitializationSection*& current, bool merge, QStringList& header);
  SInitializationSection* FindOrAddSection(const SString& name);
  void ReloadIfChanged();
  long long ModificationTime(const SString& path) const;

  SVarRWCString itsDefaultName;
  SVarRWCString itsOverrideName;
  SString itsReadPath;
  long long itsDate = -1;
  int itsError = NoError;
  SOrdered itsSections;
  SString itsHeader;
  bool itsIgnoreCase = false;
  bool itsOverrideFailed = false;
  bool itsUseOverrideAlways = false;
  bool itsReload = false;
  SFileName itsTemporaryName;
};

#endif
