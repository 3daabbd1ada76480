#include "SVarRWCString.h"

#include "SVeloraDirectoryInstance.h"

#include <QCoreApplication>
#include <QSettings>
#include <unistd.h>

namespace {
// Values may hold further variables; the count stops a name that refers to itself.
const int kMaxExpansions = 256;

bool IsNameChar(QChar c) {
  return (c >= QLatin1Char('a') && c <= QLatin1Char('z')) || (c >= QLatin1Char('A') && c <= QLatin1Char('Z')) ||
         c == QLatin1Char('_');
}

SString WithoutTrailingSlash(const SString& path) {
  SString result(path);
  while (result.length() > 1 && result.endsWith("/")) result.remove(result.length() - 1, 1);
  return result;
}

SString Environment(const QString& name) {
  const QByteArray key = name.toLocal8Bit();
  const char* value = getenv(key.constData());
  return value ? SString::fromUtf8(value) : SString();
}
}  // namespace

SString SVarRWCString::Architecture() { return SString("x86_64"); }

SString SVarRWCString::Value(const SString& name) {
  SVeloraDirectoryInstance* directories = SVeloraDirectoryInstance::Instance();
  if (directories && directories->IsValid()) {
    if (name == "VELORA_DIR" || name == "SHORT_VELORA_DIR") return directories->GetInstallDir();
    if (name == "VELORA_RESOURCE_DIR") return directories->GetResourceDir();
    if (name == "VELORA_APPDATA_DIR") return directories->GetAppDataDir();
    if (name == "VELORA_ARCH_BIN") return directories->GetInstallDir() + "/arch/" + Architecture() + "/bin";
  }
  if (name == "VELORA_ARCH") return Architecture();
  if (name == "SUSER_DIR") return WithoutTrailingSlash(SVarRWCString("$HOME").Expand());
  if (name == "SUSER_VELORA_DIR")
    return SVarRWCString("$SUSER_DIR/velora/").Expand() + SString(QCoreApplication::applicationVersion());
  // The user's store is asked only once the program has named itself.
  if (QCoreApplication::instance() && !QCoreApplication::organizationName().isEmpty()) {
    QSettings settings;
    const QString key = QStringLiteral("Variables/") + name.qstring();
    if (settings.contains(key)) return SString(settings.value(key).toString());
  }
  return Environment(name.qstring());
}

SString SVarRWCString::Expand() const {
  QString text = qstring();
  int pos = 0;
  int expansions = 0;
  while ((pos = text.indexOf(QLatin1Char('$'), pos)) >= 0 && expansions < kMaxExpansions) {
    if (pos + 1 < text.length() && text.at(pos + 1) == QLatin1Char('$')) {
      const SString named = Environment(QStringLiteral("$"));
      const QString value = getenv("$") ? named.qstring() : QString::number(static_cast<long long>(getpid()));
      text.replace(pos, 2, value);
      pos += value.length();
      ++expansions;
      continue;
    }
    const bool braced = pos + 1 < text.length() && text.at(pos + 1) == QLatin1Char('{');
    int start = pos + (braced ? 2 : 1);
    int end = start;
    while (end < text.length() && IsNameChar(text.at(end))) ++end;
    if (end == start || (braced && (end >= text.length() || text.at(end) != QLatin1Char('}')))) {
      ++pos;  // not a variable: the "$" stays
      continue;
    }
    const QString value = Value(SString(text.mid(start, end - start))).qstring();
    text.replace(pos, end + (braced ? 1 : 0) - pos, value);
    ++expansions;
    // The value is looked at again, for the variables it holds.
  }
  return SString(text);
}

SVarRWCString& SVarRWCString::ExpandInPlace() {
  SString::operator=(Expand());
  return *this;
}
