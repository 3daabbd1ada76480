#ifndef SCONVERSIONRULES_H
#define SCONVERSIONRULES_H

#include "SViaMetalRules.h"

#include <QStringList>

class SInitializationFile;

// The via metal rules in force for conversions, and where they come from: a preset (a
// rule file named after it, looked up in the user's preference directory and then in the
// installation's "cvt" folder) or a file of the user's. The choice lives in the settings
// under "Velora\CvtOpts".
class SConversionRules {
public:
  // `settings` is not owned; null means the process's global settings file, if any.
  explicit SConversionRules(SInitializationFile* settings = nullptr);

  // Takes the choice from the settings, lists the presets and loads the rules.
  bool Initialize();
  // Loads the rules of the current choice; the hard-coded defaults stand when no file is
  // found or the one found doesn't read. True when a file was read.
  bool Reload();

  // "preset" or "user".
  const SString& GetRuleType() const { return itsRuleType; }
  void SetRuleType(const SString& type);
  const SString& GetPresetName() const { return itsPresetName; }
  void SetPresetName(const SString& name);
  const SString& GetUserFileName() const { return itsUserFileName; }
  void SetUserFileName(const SString& name);
  // Whether SaveAsCustom keeps the custom file it replaces, as "custom.cvt.bak".
  bool GetBackup() const { return itsBackup; }
  void SetBackup(bool on);
  // Writes the settings file that holds the choice; false without one or on failure.
  bool SaveSettings();

  // Display names (file titles) and file names without extension, in the same order:
  // the installation's presets, then the user's, then "Custom".
  const QStringList& GetPresetDisplayNames() const { return itsPresetDisplayNames; }
  const QStringList& GetPresetFileNames() const { return itsPresetFileNames; }
  void CollectPresets();

  const SViaMetalRules& GetRules() const { return itsRules; }
  SViaMetalRules& Rules() { return itsRules; }

  // The rules from a list of text lines, from the one with "viametalrules" through the one
  // with "end_viametalrules" (";" comments, "&" continuation), as a project header holds
  // them. `source` names them in a failure's text.
  bool ReadRules(const QStringList& lines, const SString& source = SString());
  // The rules as lines of the same grammar, added to `lines`.
  void WriteRules(QStringList& lines) const;
  // Writes the rules in force as the preset "custom" of the preference directory and makes
  // it the current preset; 5795 on failure.
  bool SaveAsCustom();

  // "$HOME/.velora_preferences" and "$VELORA_RESOURCE_DIR/cvt"; empty when the variable is.
  static SString PreferenceDirectory();
  static SString ResourceDirectory();
  // The rule file of a preset name: in the preference directory, else in the resource
  // directory; empty if neither has it.
  static SString FindPresetFile(const SString& name);

private:
  SInitializationFile* Settings() const;
  void Store(const char* key, const SString& value);
  // A user file as named, or as a rule name in the preference directory.
  SString ResolveUserFile() const;

  SInitializationFile* itsSettings;
  SViaMetalRules itsRules;
  QStringList itsPresetDisplayNames;
  QStringList itsPresetFileNames;
  SString itsRuleType;
  SString itsPresetName;
  SString itsUserFileName;
  bool itsBackup = false;
};

#endif
