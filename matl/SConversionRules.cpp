#include "SConversionRules.h"

#include "SCommentedFile.h"
#include "SInitializationFile.h"
#include "SVarRWCString.h"
#include "SVeloraError.h"
#include "SVeloraTrace.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegExp>
#include <QTextStream>

namespace {

const char* const kSection = "Velora\\CvtOpts";
const int kFileProblem = 5602;
const int kFileNotFound = 5670;
const int kCustomNotSaved = 5795;
const char* const kCustom = "custom";

// The key of a rule line's first token, as the rule reader splits it.
SString FirstKey(const QString& line) {
  const QString word = line.trimmed().section(QRegExp("\\s+"), 0, 0);
  SString key, value;
  SViaMetalRule::SplitToken(SString(word), key, value);
  return key;
}

SString ExistingDirectory(const SString& path) { return QFileInfo(path.qstring()).isDir() ? path : SString(); }

}  // namespace

SConversionRules::SConversionRules(SInitializationFile* settings)
    : itsSettings(settings), itsRuleType("preset"), itsPresetName("default") {}

SInitializationFile* SConversionRules::Settings() const {
  return itsSettings ? itsSettings : SInitializationFile::GetGlobal();
}

void SConversionRules::Store(const char* key, const SString& value) {
  if (SInitializationFile* settings = Settings()) settings->SetValue(kSection, key, value);
}

void SConversionRules::SetRuleType(const SString& type) {
  itsRuleType = SViaMetalRule::IsWord(type, "user") ? SString("user") : SString("preset");
  Store("VMRuleType", itsRuleType);
}

void SConversionRules::SetPresetName(const SString& name) {
  itsPresetName = name;
  Store("VMPresetName", name);
}

void SConversionRules::SetUserFileName(const SString& name) {
  itsUserFileName = name;
  Store("VMUserName", name);
}

void SConversionRules::SetBackup(bool on) {
  itsBackup = on;
  Store("VMBackup", on ? "true" : "false");
}

bool SConversionRules::SaveSettings() {
  SInitializationFile* settings = Settings();
  return settings && settings->Write();
}

bool SConversionRules::Initialize() {
  if (SInitializationFile* settings = Settings()) {
    itsRuleType = SViaMetalRule::IsWord(settings->GetValue(kSection, "VMRuleType", "preset"), "user") ? "user" : "preset";
    itsPresetName = settings->GetValue(kSection, "VMPresetName", "default");
    itsUserFileName = settings->GetValue(kSection, "VMUserName", "");
    itsBackup = settings->GetBool(kSection, "VMBackup", false);
  }
  CollectPresets();
  return Reload();
}

SString SConversionRules::PreferenceDirectory() {
  const SString home = SVarRWCString("$HOME").Expand();
  return home.isEmpty() ? SString() : home + "/.velora_preferences";
}

SString SConversionRules::ResourceDirectory() {
  const SString resource = SVarRWCString("$VELORA_RESOURCE_DIR").Expand();
  return resource.isEmpty() ? SString() : resource + "/cvt";
}

SString SConversionRules::FindPresetFile(const SString& name) {
  for (const SString& directory : {PreferenceDirectory(), ResourceDirectory()}) {
    if (directory.isEmpty()) continue;
    const SString path = directory + "/" + name + ".cvt";
    if (QFileInfo(path.qstring()).isFile()) return path;
  }
  return SString();
}

SString SConversionRules::ResolveUserFile() const {
  if (QFileInfo(itsUserFileName.qstring()).isFile()) return itsUserFileName;
  if (itsUserFileName.contains('/')) return SString();
  const SString directory = PreferenceDirectory();
  if (directory.isEmpty()) return SString();
  SString path = directory + "/" + itsUserFileName;
  if (QFileInfo(itsUserFileName.qstring()).suffix().isEmpty()) path += ".cvt";
  return QFileInfo(path.qstring()).isFile() ? path : SString();
}

bool SConversionRules::Reload() {
  itsRules = SViaMetalRules();
  SString path;
  if (itsRuleType == "user" && !itsUserFileName.isEmpty()) {
    path = ResolveUserFile();
    if (path.isEmpty()) VeloraErrorReport(kFileProblem, kFileNotFound, ("File not found: " + itsUserFileName).data());
  }
  if (path.isEmpty()) path = FindPresetFile(itsPresetName.isEmpty() ? SString("default") : itsPresetName);
  if (path.isEmpty()) {
    VeloraTrace(3, TRACE_GENERAL, "Could not find a rule file. Hard coded defaults used.");
    return false;
  }
  return itsRules.ReadFile(path);
}

void SConversionRules::CollectPresets() {
  itsPresetDisplayNames.clear();
  itsPresetFileNames.clear();
  // The preference directory comes last, and a preset there stands for the one of the same
  // name in the installation, as the lookup has it.
  for (const SString& directory : {ExistingDirectory(ResourceDirectory()), ExistingDirectory(PreferenceDirectory())}) {
    if (directory.isEmpty()) continue;
    const QDir folder(directory.qstring());
    for (const QString& entry : folder.entryList({"*.cvt"}, QDir::Files, QDir::Name)) {
      const QString name = entry.left(entry.size() - 4);
      QString display = name;
      if (name == kCustom) {
        display = "Custom";
      } else {
        SViaMetalRules rules;
        if (rules.ReadFile(SString(folder.filePath(entry)), false) && !rules.GetTitle().isEmpty())
          display = rules.GetTitle().qstring();
      }
      const int known = itsPresetFileNames.indexOf(name);
      if (known >= 0) {
        itsPresetDisplayNames[known] = display;
      } else {
        itsPresetFileNames << name;
        itsPresetDisplayNames << display;
      }
    }
  }
  if (!itsPresetFileNames.contains(kCustom)) {
    itsPresetFileNames << kCustom;
    itsPresetDisplayNames << "Custom";
  }
}

bool SConversionRules::ReadRules(const QStringList& lines, const SString& source) {
  int first = -1;
  int last = lines.size() - 1;
  for (int i = 0; i < lines.size(); ++i) {
    const SString key = FirstKey(lines[i]);
    if (first < 0 && SViaMetalRule::IsWord(key, "viametalrules")) {
      first = i;
    } else if (first >= 0 && SViaMetalRule::IsWord(key, "end_viametalrules")) {
      last = i;
      break;
    }
  }
  if (first < 0) return false;
  QString text = lines.mid(first, last - first + 1).join(QLatin1Char('\n'));
  QTextStream stream(&text, QIODevice::ReadOnly);
  SCommentedFile file(&stream, ";", "&");
  return itsRules.Read(file, true, source);
}

void SConversionRules::WriteRules(QStringList& lines) const {
  QString text;
  QTextStream out(&text);
  itsRules.Write(out);
  out.flush();
  if (text.endsWith(QLatin1Char('\n'))) text.chop(1);
  lines << text.split(QLatin1Char('\n'));
}

bool SConversionRules::SaveAsCustom() {
  const SString directory = PreferenceDirectory();
  SViaMetalRules rules = itsRules;
  if (rules.GetTitle().isEmpty()) rules.SetTitle("Custom");
  if (rules.GetDescription().isEmpty()) rules.SetDescription("Custom preset specified by the user");
  const SString path = directory + "/" + kCustom + ".cvt";
  bool saved = !directory.isEmpty() && QDir().mkpath(directory.qstring());
  if (saved && itsBackup && QFile::exists(path.qstring())) {
    const QString backup = path.qstring() + ".bak";
    QFile::remove(backup);
    saved = QFile::copy(path.qstring(), backup);
  }
  if (!saved || !rules.WriteFile(path)) {
    VeloraErrorReport(kFileProblem, kCustomNotSaved);
    return false;
  }
  itsRules = rules;
  SetRuleType("preset");
  SetPresetName(kCustom);
  CollectPresets();
  return true;
}
