#include "SFileName.h"

#include <QDir>
#include <QFileInfo>
#include <algorithm>

SCOLLECTABLE_DEFINE(SFileName, SID_FILENAME, &SCollectableString::staticTypeInfo())

namespace {
int LastSeparator(const QString& text) {
  return std::max(text.lastIndexOf(QLatin1Char('/')), text.lastIndexOf(QLatin1Char('\\')));
}
}  // namespace

SString SFileName::GetFileName() const { return mid(LastSeparator(qstring()) + 1); }

SString SFileName::GetBaseName() const {
  const SString name = GetFileName();
  const int dot = name.qstring().lastIndexOf(QLatin1Char('.'));
  return dot < 0 ? name : name.left(dot);
}

int SFileName::ExtensionDot() const {
  const QString& text = qstring();
  const int dot = text.lastIndexOf(QLatin1Char('.'));
  if (dot < 0 || dot < LastSeparator(text)) return -1;
  return dot;
}

SString SFileName::GetExtension() const {
  const int dot = ExtensionDot();
  return dot < 0 ? SString() : mid(dot + 1);
}

SString SFileName::GetWithoutExtension() const {
  const int dot = ExtensionDot();
  return dot < 0 ? SString(*this) : left(dot);
}

SString SFileName::GetPath() const {
  const int sep = LastSeparator(qstring());
  if (sep < 0) return SString();
  if (sep == 0) return SString(QDir::toNativeSeparators(left(1).qstring()));
  return SString(QDir::toNativeSeparators(left(sep).qstring()));
}

SFileName& SFileName::SetExtension(const SString& extension) {
  SString name = GetWithoutExtension();
  if (!extension.isEmpty()) {
    name += ".";
    name += extension;
  }
  SString::operator=(name);
  return *this;
}

SFileName& SFileName::AddExtension(const SString& extension) {
  SString name = *this;
  if (!name.endsWith(".")) name += ".";
  name += extension;
  SString::operator=(name);
  return *this;
}

SFileName& SFileName::SetPath(const SString& path) {
  SString name = path;
  if (!name.endsWith("/")) name += "/";
  name += GetFileName();
  SString::operator=(name);
  return *this;
}

SFileName& SFileName::SetBaseName(const SString& baseName) {
  const SString path = GetPath();
  const SString extension = GetExtension();
  SString name = path;
  if (!path.isEmpty() && !path.endsWith("/")) name += "/";
  name += baseName;
  if (!extension.isEmpty()) {
    name += ".";
    name += extension;
  }
  SString::operator=(name);
  return *this;
}

SFileName& SFileName::AppendToBaseName(long long suffix) {
  return SetBaseName(GetBaseName() + "_" + SString::number(suffix));
}

SFileName& SFileName::AppendToBaseName(const SString& suffix) { return SetBaseName(GetBaseName() + "_" + suffix); }

bool SFileName::Exists() const { return !isEmpty() && QFileInfo::exists(qstring()); }

bool SFileName::IsReadable() const { return !isEmpty() && QFileInfo(qstring()).isReadable(); }

bool SFileName::IsWritable() const { return !isEmpty() && QFileInfo(qstring()).isWritable(); }

bool SFileName::IsDirectory() const { return !isEmpty() && QFileInfo(qstring()).isDir(); }
