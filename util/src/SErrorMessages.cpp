#include "SErrorMessages.h"

#include "SCollectableInt.h"
#include "SCollectableString.h"
#include "SCommentedFile.h"
#include "SFileName.h"
#include "SNumberTest.h"
#include "SInitializationFile.h"
#include "SRegexp.h"
#include "SVarRWCString.h"
#include "SVeloraError.h"
#include "SVeloraTrace.h"

#include <QDir>
#include <QFileInfo>
#include <cstdio>

SCOLLECTABLE_DEFINE(SErrorMessages, SID_ERRORMESSAGES, &SHashDictionary::staticTypeInfo())

namespace {
// Includes nest only a few levels; the limit stops a file that includes itself.
const int kMaxIncludeDepth = 16;
SErrorMessages* gInstance = nullptr;

// Quotes off, escapes resolved.
SString MessageText(const SString& raw) {
  QString text = raw.qstring().trimmed();
  if (text.startsWith(QLatin1Char('"'))) text.remove(0, 1);
  if (text.endsWith(QLatin1Char('"'))) text.chop(1);
  QString result;
  result.reserve(text.size());
  for (int i = 0; i < text.size(); ++i) {
    const QChar c = text.at(i);
    if (c != QLatin1Char('\\')) {
      result += c;
      continue;
    }
    if (i + 1 >= text.size()) {
      // The stripping took the quote that this backslash escaped.
      result += QLatin1Char('"');
      break;
    }
    const QChar n = text.at(++i);
    if (n == QLatin1Char('n'))
      result += QLatin1Char('\n');
    else if (n == QLatin1Char('t'))
      result += QLatin1Char('\t');
    else
      result += n;
  }
  return SString(result);
}
}  // namespace

SErrorMessages::~SErrorMessages() { ClearAll(); }

void SErrorMessages::ClearAll() {
  clearAndDestroy();
  itsDefinitions.clearAndDestroy();
}

SErrorMessages* SErrorMessages::Instance() {
  if (!gInstance) gInstance = new SErrorMessages();
  return gInstance;
}

void SErrorMessages::DestroyInstance() {
  delete gInstance;
  gInstance = nullptr;
}

void SErrorMessages::SetMessage(int number, const SString& text) {
  SCollectableInt key(number);
  SCollectable* value = nullptr;
  if (findKeyAndValue(&key, value)) {
    VeloraTrace(3, TRACE_INIT, "Duplicate Message %d: %s", number, text.data());
    removeAndDestroy(&key);
  } else {
    VeloraTrace(5, TRACE_INIT, "Inserting Message %d: %s", number, text.data());
  }
  insertKeyAndValue(new SCollectableInt(number), new SCollectableString(text));
}

const SString* SErrorMessages::FindMessage(int number) const {
  SCollectableInt key(number);
  return static_cast<const SCollectableString*>(findValue(&key));
}

void SErrorMessages::Define(const SString& name, int value) {
  SCollectableString key(name);
  bool found = false;
  const int old = Definition(name, &found);
  if (found) {
    VeloraTrace(3, TRACE_INIT, "Duplicate Definition %s: %d -> %d", name.data(), old, value);
    itsDefinitions.removeAndDestroy(&key);
  } else {
    VeloraTrace(5, TRACE_INIT, "Inserting Definition %s: %d", name.data(), value);
  }
  itsDefinitions.insertKeyAndValue(new SCollectableString(name), new SCollectableInt(value));
}

int SErrorMessages::Definition(const SString& name, bool* found) const {
  SCollectableString key(name);
  const SCollectableInt* value = static_cast<const SCollectableInt*>(itsDefinitions.findValue(&key));
  if (found) *found = value != nullptr;
  return value ? static_cast<int>(value->value()) : 0;
}

int SErrorMessages::Evaluate(const SString& expression) const {
  QString text = expression.qstring().trimmed();
  while (text.startsWith(QLatin1Char('('))) text.remove(0, 1);
  while (text.endsWith(QLatin1Char(')'))) text.chop(1);
  long long total = 0;
  int sign = 1;
  QString term;
  auto apply = [&]() {
    const QString t = term.trimmed();
    if (!t.isEmpty()) {
      bool ok = false;
      long long value = t.toLongLong(&ok, 10);
      if (!ok) value = Definition(SString(t));
      total += sign * value;
      // Stay inside int so that a silly file can't overflow.
      if (total > 0x7fffffff) total = 0x7fffffff;
      if (total < -0x7fffffffLL) total = -0x7fffffffLL;
    }
    term.clear();
  };
  for (const QChar c : text) {
    if (c == QLatin1Char('+') || c == QLatin1Char('-')) {
      apply();
      sign = c == QLatin1Char('+') ? 1 : -1;
    } else {
      term += c;
    }
  }
  apply();
  return static_cast<int>(total);
}

bool SErrorMessages::LoadFile(const SString& path) { return LoadFile(path, 0); }

bool SErrorMessages::LoadFile(const SString& path, int depth) {
  if (depth > kMaxIncludeDepth) return false;
  SCommentedFile file(path, "//", "");
  if (!file.IsOk()) {
    fprintf(stderr,
            "Warning : Unable to open error data file : %s\nDescriptive Error messages will not be available.\n"
            "Please check your installation.\n",
            path.data());
    fflush(stderr);
    return false;
  }
  while (file.NextLine()) {
    SString first;
    if (!file.PeekToken(first)) continue;
    if (first == "#define") {
      SString name, rest;
      file.GetToken(first);
      if (!file.GetToken(name)) continue;
      file.GetRestOfLine(rest);
      Define(name, Evaluate(rest));
    } else if (first == "#include") {
      SString rest;
      file.GetToken(first);
      if (!file.GetRestOfLine(rest)) continue;
      QString name = rest.qstring().trimmed();
      name.remove(QLatin1Char('"'));
      if (name.isEmpty()) continue;
      if (QFileInfo(name).isRelative()) name = QFileInfo(path.qstring()).dir().filePath(name);
      LoadFile(SString(name), depth + 1);
    } else if (first == "string") {
      SString number, rest;
      file.GetToken(first);
      if (!file.GetToken(number)) continue;
      file.GetRestOfLine(rest);
      const int value = IsInteger(number) ? number.toInt() : Definition(number);
      SetMessage(value, MessageText(rest));
    }
  }
  return true;
}

bool SErrorMessages::LoadStringFile(const char* name) {
  if (!name || !*name) VeloraFatalError("VL1012", __FILE__, __LINE__, "%s", " Filename is Null");
  SString directory("$VELORA_RESOURCE_DIR/");
  if (SInitializationFile* settings = SInitializationFile::GetGlobal())
    directory = settings->GetValue("Velora", "ErrorStringDir", directory);
  if (!directory.isEmpty() && !directory.endsWith("/")) directory += "/";
  SString path = directory;
  path += name;
  return Instance()->LoadFile(SVarRWCString(path).Expand());
}

void SErrorMessages::LoadStringFiles() {
  LoadStringFile("strings_util.h");
  LoadStringFile("strings_filelib.h");
}
