#include "SInitializationFile.h"

#include "SFile.h"
#include "SNumberTest.h"
#include "SVeloraError.h"
#include "SVeloraTrace.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryFile>

SCOLLECTABLE_DEFINE(SInitializationKey, SID_INITIALIZATIONKEY, &SCollectableString::staticTypeInfo())
SCOLLECTABLE_DEFINE(SInitializationSection, SID_INITIALIZATIONSECTION, &SCollectableString::staticTypeInfo())

namespace {
// Set for the time of a search, so that sections and keys compare as their file asks.
bool gIgnoreCase = false;
SInitializationFile* gGlobal = nullptr;

// Only the low seven bits of a character take part in the syntax tests.
int Low(QChar c) { return c.unicode() & 0x7f; }
bool IsBlank(QChar c) { return Low(c) == ' ' || Low(c) == '\t'; }

int CompareNames(const SCollectableString& a, const SCollectable* other) {
  const SCollectableString* name = dynamic_cast<const SCollectableString*>(other);
  if (!name) return a.SCollectableString::compareTo(other);
  return a.compare(*name, gIgnoreCase);
}

class SCaseScope {
public:
  explicit SCaseScope(bool ignoreCase) : itsOld(gIgnoreCase) { gIgnoreCase = ignoreCase; }
  ~SCaseScope() { gIgnoreCase = itsOld; }

private:
  bool itsOld;
};

SString Trace(const char* fmt, const SString& path) { return SString::format(fmt, path.data()); }
}  // namespace

int SInitializationKey::compareTo(const SCollectable* other) const { return CompareNames(*this, other); }

int SInitializationSection::compareTo(const SCollectable* other) const { return CompareNames(*this, other); }

SCollectable* SInitializationSection::copy() const {
  SInitializationSection* section = new SInitializationSection(*static_cast<const SString*>(this));
  section->itsBetween = itsBetween;
  section->itsComment = itsComment;
  SOrderedConstIterator it(itsKeys);
  while (const SCollectable* key = it.next()) section->itsKeys.insert(key->copy());
  return section;
}

SInitializationFile::SInitializationFile(const SString& defaultName, const SString& overrideName, bool ignoreCase)
    : itsDefaultName(defaultName), itsOverrideName(overrideName), itsIgnoreCase(ignoreCase) {}

SInitializationFile::~SInitializationFile() {
  Clear();
  if (!itsTemporaryName.isEmpty()) QFile::remove(itsTemporaryName.qstring());
}

void SInitializationFile::Clear() {
  itsSections.clearAndDestroy();
  itsHeader.clear();
  itsError = NoError;
}

SInitializationSection* SInitializationFile::GetSection(const SString& section) const {
  SCaseScope scope(itsIgnoreCase);
  SInitializationSection probe(section);
  return static_cast<SInitializationSection*>(itsSections.find(&probe));
}

SInitializationKey* SInitializationFile::GetKey(const SString& section, const SString& key) const {
  if (key.isEmpty()) return nullptr;
  SInitializationSection* found = GetSection(section);
  if (!found) return nullptr;
  SCaseScope scope(itsIgnoreCase);
  SInitializationKey probe(key);
  return static_cast<SInitializationKey*>(found->itsKeys.find(&probe));
}

SInitializationSection* SInitializationFile::FindOrAddSection(const SString& name) {
  SInitializationSection* section = GetSection(name);
  if (!section) {
    section = new SInitializationSection(name);
    itsSections.insert(section);
  }
  return section;
}

void SInitializationFile::ReloadIfChanged() {
  if (itsReload && IsChanged()) Read();
}

SString SInitializationFile::GetValue(const SString& section, const SString& key, const SString& fallback) {
  ReloadIfChanged();
  const SInitializationKey* found = GetKey(section, key);
  return found && !found->itsValue.isEmpty() ? found->itsValue : fallback;
}

bool SInitializationFile::GetBool(const SString& section, const SString& key, bool fallback) {
  const SString value = GetValue(section, key);
  if (value.isEmpty()) return fallback;
  static const char* const yes[] = {"on", "true", "yes"};
  static const char* const no[] = {"off", "false", "no"};
  for (const char* word : yes)
    if (value.compare(SString(word), true) == 0) return true;
  for (const char* word : no)
    if (value.compare(SString(word), true) == 0) return false;
  return fallback;
}

int SInitializationFile::GetInt(const SString& section, const SString& key, int fallback) {
  const SString value = GetValue(section, key);
  return IsInteger(value) ? value.qstring().trimmed().toInt() : fallback;
}

double SInitializationFile::GetDouble(const SString& section, const SString& key, double fallback) {
  const SString value = GetValue(section, key);
  return IsDouble(value) ? value.qstring().trimmed().toDouble() : fallback;
}

QStringList SInitializationFile::GetList(const SString& section, const SString& key) {
  QString value = GetValue(section, key).qstring();
  value.replace(QLatin1Char('\t'), QLatin1Char(' '));
  QStringList items;
  int i = 0;
  const int size = value.size();
  while (i < size) {
    while (i < size && value.at(i) == QLatin1Char(' ')) ++i;
    if (i >= size) break;
    if (value.at(i) == QLatin1Char('"')) {
      const int close = value.indexOf(QLatin1Char('"'), i + 1);
      const int end = close < 0 ? size : close;
      items.append(value.mid(i + 1, end - i - 1));
      i = end + 1;
    } else {
      int end = value.indexOf(QLatin1Char(' '), i);
      if (end < 0) end = size;
      items.append(value.mid(i, end - i));
      i = end;
    }
  }
  return items;
}

bool SInitializationFile::HasKey(const SString& section, const SString& key) {
  return !GetValue(section, key).isEmpty();
}

bool SInitializationFile::HasSection(const SString& section) {
  ReloadIfChanged();
  const SInitializationSection* found = GetSection(section);
  if (!found) return false;
  SOrderedConstIterator it(found->itsKeys);
  while (const SCollectable* key = it.next())
    if (!static_cast<const SInitializationKey*>(key)->isEmpty()) return true;
  return false;
}

void SInitializationFile::SetValue(const SString& section, const SString& key, const SString& value) {
  if (key.isEmpty()) return;
  SInitializationSection* found = FindOrAddSection(section);
  SInitializationKey* entry = GetKey(section, key);
  if (!entry) {
    entry = new SInitializationKey(key);
    found->itsKeys.insert(entry);
  }
  entry->itsValue = value;
  entry->itsHasEquals = true;
}

void SInitializationFile::SetComment(const SString& section, const SString& key, const SString& comment) {
  SInitializationSection* found = FindOrAddSection(section);
  if (key.isEmpty()) {
    found->itsComment = comment;
    return;
  }
  SInitializationKey* entry = GetKey(section, key);
  if (!entry) {
    entry = new SInitializationKey(key);
    found->itsKeys.insert(entry);
  }
  entry->itsComment = comment;
}

SString SInitializationFile::GetPath() {
  const SString overrideName = itsOverrideName.Expand();
  if (!overrideName.isEmpty()) {
    QString path = overrideName.qstring();
    path.replace(QLatin1Char('\\'), QLatin1Char('/'));
    const QFileInfo info(path);
    if (info.isFile() && (itsUseOverrideAlways || info.isReadable())) return SString(path);
    if (info.exists()) itsOverrideFailed = true;
  }
  QString path = itsDefaultName.Expand().qstring();
  path.replace(QLatin1Char('\\'), QLatin1Char('/'));
  return SString(path);
}

SString SInitializationFile::GetWritePath() { return itsReadPath.isEmpty() ? GetPath() : itsReadPath; }

long long SInitializationFile::ModificationTime(const SString& path) const {
  const QFileInfo info(path.qstring());
  return info.exists() ? info.lastModified().toMSecsSinceEpoch() : -1;
}

bool SInitializationFile::IsChanged() const {
  if (itsReadPath.isEmpty()) return false;
  return ModificationTime(itsReadPath) != itsDate;
}

bool SInitializationFile::Read() {
  Clear();
  const SString path = GetPath();
  itsReadPath = path;
  itsDate = -1;
  if (!ReadInto(path, false)) return false;
  itsDate = ModificationTime(path);
  itsReload = GetBool("INI", "CheckDate", false);
  return true;
}

bool SInitializationFile::Merge(const SString& fileName) {
  QString path = SVarRWCString(fileName).Expand().qstring();
  path.replace(QLatin1Char('\\'), QLatin1Char('/'));
  return ReadInto(SString(path), true);
}

bool SInitializationFile::ReadInto(const SString& path, bool merge) {
  const QFileInfo info(path.qstring());
  if (path.isEmpty() || !info.isFile()) {
    const QFileInfo dir(info.absolutePath());
    if (path.isEmpty() || !dir.isDir())
      itsError = DirectoryMissing;
    else if (!dir.isReadable())
      itsError = DirectoryUnreadable;
    else
      itsError = FileNotFound;
    return false;
  }
  SFile file(path);
  if (!file.IsOk()) {
    itsError = FileNotFound;
    return false;
  }
  VeloraTrace(2, TRACE_INIT, "%s", Trace("Attempting to read initialization file: %s", path).data());
  SInitializationSection* current = nullptr;
  QStringList header;
  while (file.NextLine()) ParseLine(file.CurrentLine(), current, merge, header);
  if (!merge) itsHeader = SString(header.join(QLatin1Char('\n')));
  VeloraTrace(2, TRACE_INIT, "%s", Trace("Finished reading initialization file: %s", path).data());
  return true;
}

void SInitializationFile::ParseLine(const SString& line, SInitializationSection*& current, bool merge,
                                    QStringList& header) {
  const QString& text = line.qstring();
  const int size = text.size();
  int i = 0;
  while (i < size && IsBlank(text.at(i))) ++i;

  if (i < size && Low(text.at(i)) == '[') {
    int close = i + 1;
    while (close < size && Low(text.at(close)) != ']') ++close;
    if (close >= size) {
      itsError = BadSection;  // the line is dropped
      return;
    }
    const SString name(text.mid(i + 1, close - i - 1));
    int rest = close + 1;
    while (rest < size && IsBlank(text.at(rest))) ++rest;
    const bool known = GetSection(name) != nullptr;
    current = FindOrAddSection(name);
    if (merge) return;
    if (known) {
      current->itsComment += SString(text.mid(rest));
    } else {
      current->itsBetween = SString(text.mid(close + 1, rest - close - 1));
      current->itsComment = SString(text.mid(rest));
    }
    return;
  }

  if (!current) {
    if (merge) return;
    if (i == size || Low(text.at(0)) == ';')
      header.append(text);
    else
      header.append(QLatin1Char(';') + text);
    return;
  }

  // Find "=" and the comment's ";", the latter only outside double quotes.
  int equals = -1;
  int semicolon = -1;
  bool inQuote = false;
  for (int j = i; j < size; ++j) {
    const int c = Low(text.at(j));
    if (equals < 0) {
      if (c == '=') {
        equals = j;
      } else if (c == ';') {
        semicolon = j;
        break;
      }
      continue;
    }
    if (c == '"') inQuote = !inQuote;
    if (c == ';' && !inQuote) {
      semicolon = j;
      break;
    }
  }

  SInitializationKey* key = new SInitializationKey();
  if (equals < 0) {
    // Blank, comment-only or a bare word: kept as it stands.
    const int end = semicolon < 0 ? size : semicolon;
    int nameEnd = end;
    while (nameEnd > i && IsBlank(text.at(nameEnd - 1))) --nameEnd;
    static_cast<SString&>(*key) = SString(text.mid(i, nameEnd - i));
    key->itsHasEquals = false;
    key->itsBetween = SString(key->isEmpty() ? text.left(end) : text.mid(nameEnd, end - nameEnd));
    key->itsComment = semicolon < 0 ? SString() : SString(text.mid(semicolon));
  } else {
    static_cast<SString&>(*key) = SString(text.mid(i, equals - i).trimmed());
    const int end = semicolon < 0 ? size : semicolon;
    int valueStart = equals + 1;
    while (valueStart < end && IsBlank(text.at(valueStart))) ++valueStart;
    int valueEnd = end;
    while (valueEnd > valueStart && IsBlank(text.at(valueEnd - 1))) --valueEnd;
    key->itsValue = SString(text.mid(valueStart, valueEnd - valueStart));
    key->itsBetween = SString(text.mid(valueEnd, end - valueEnd));
    key->itsComment = semicolon < 0 ? SString() : SString(text.mid(semicolon));
  }

  if (merge) {
    if (!key->isEmpty() && key->itsHasEquals) {
      SetValue(*current, *key, key->itsValue);
    }
    delete key;
    return;
  }
  current->itsKeys.insert(key);
}

bool SInitializationFile::Write(bool temporary) {
  QByteArray content;
  if (!itsHeader.isEmpty()) {
    content += itsHeader.toUtf8();
    content += '\n';
  }
  SOrderedConstIterator sections(itsSections);
  while (const SCollectable* object = sections.next()) {
    const SInitializationSection* section = static_cast<const SInitializationSection*>(object);
    content += '[' + section->toUtf8() + ']' + section->itsBetween.toUtf8() + section->itsComment.toUtf8() + '\n';
    SOrderedConstIterator keys(section->itsKeys);
    while (const SCollectable* keyObject = keys.next()) {
      const SInitializationKey* key = static_cast<const SInitializationKey*>(keyObject);
      content += key->toUtf8();
      if (key->itsHasEquals) content += '=' + key->itsValue.toUtf8();
      content += key->itsBetween.toUtf8() + key->itsComment.toUtf8() + '\n';
    }
  }

  if (temporary) {
    QTemporaryFile file(QDir(QDir::tempPath()).filePath(QStringLiteral("veloraXXXXXX.ini")));
    file.setAutoRemove(false);
    if (!file.open() || file.write(content) != content.size()) {
      if (!file.fileName().isEmpty()) QFile::remove(file.fileName());
      itsError = TemporaryFailed;
      return false;
    }
    if (!itsTemporaryName.isEmpty()) QFile::remove(itsTemporaryName.qstring());
    itsTemporaryName = SString(file.fileName());
    return true;
  }

  const SString path = GetWritePath();
  QFile file(path.qstring());
  if (path.isEmpty() || !file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(content) != content.size()) {
    itsError = CannotCreate;
    return false;
  }
  file.close();
  if (!QFileInfo::exists(path.qstring())) {
    itsError = MissingAfterWrite;
    return false;
  }
  itsReadPath = path;
  itsDate = ModificationTime(path);
  return true;
}

SString SInitializationFile::GetErrorText() const {
  if (itsError == NoError) return VeloraMessageText(5412);
  if (itsError >= FileNotFound && itsError <= BadSection) return VeloraMessageText(5690 + itsError - 1);
  if (itsError == TemporaryFailed) return SString("Unable to write temporary file.");
  SString text;
  VeloraFormatMessage(text, 5696, itsError);
  return text;
}

SInitializationFile* SInitializationFile::CreateGlobal() {
  if (gGlobal) return gGlobal;
  gGlobal = new SInitializationFile("$VELORA_APPDATA_DIR/data/velora.ini", "$VELORA_INI_FILE", true);
  gGlobal->Read();
  const SString user = SVarRWCString("$VELORA_USER_INI_FILE").Expand();
  if (!user.isEmpty()) {
    if (QFileInfo(user.qstring()).isFile())
      gGlobal->Merge(user);
    else
      VeloraTrace(2, TRACE_INIT, "Attempted to read user initialization file: %s, did not exist", user.data());
  }
  return gGlobal;
}

SInitializationFile* SInitializationFile::GetGlobal() { return gGlobal; }

void SInitializationFile::DestroyGlobal() {
  delete gGlobal;
  gGlobal = nullptr;
}
