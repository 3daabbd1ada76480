#include "SOptGoalTarget.h"

#include "SFile.h"
#include "SProjectClassID.h"
#include "SValvarLine.h"

#include <QDir>
#include <QRegularExpression>

#include <memory>

SCOLLECTABLE_DEFINE(SOptGoalTarget, SID_OPTGOALTARGET, &SCollectable::staticTypeInfo())
SCOLLECTABLE_DEFINE(SOptValueTarget, SID_OPTVALUETARGET, &SOptGoalTarget::staticTypeInfo())
SCOLLECTABLE_DEFINE(SOptResponseTarget, SID_OPTRESPONSETARGET, &SOptGoalTarget::staticTypeInfo())
SCOLLECTABLE_DEFINE(SOptFileTarget, SID_OPTFILETARGET, &SOptGoalTarget::staticTypeInfo())

namespace {
const int kDigits = 10;

// The part of `word` behind its last "=".
QString AfterEquals(const SString& word) {
  const QRegularExpressionMatch match = QRegularExpression(QStringLiteral("[^=]*$")).match(word.qstring());
  return match.hasMatch() ? match.captured(0) : QString();
}
}  // namespace

SOptGoalTarget* SOptGoalTarget::Create(SFile& file, const SProject* project) {
  SString first;
  if (!file.GetToken(first)) return nullptr;
  const SString upper = first.upper();
  std::unique_ptr<SOptGoalTarget> target;
  if (upper.startsWith("VALUE="))
    target.reset(new SOptValueTarget());
  else if (upper.startsWith("NET="))
    target.reset(new SOptResponseTarget());
  else if (upper == "FILE")
    target.reset(new SOptFileTarget());
  if (!target || !target->Read(first, file, project)) return nullptr;
  return target.release();
}

bool SOptGoalTarget::Compare(const SOptGoalTarget& other) const {
  if (isA() != other.isA()) return false;
  SProjectStream mine, theirs;
  Write(mine, nullptr);
  other.Write(theirs, nullptr);
  return mine.Text() == theirs.Text();
}

bool SOptValueTarget::Read(const SString& first, SFile&, const SProject*) {
  bool ok = false;
  itsValue = AfterEquals(first).toDouble(&ok);
  return ok;
}

void SOptValueTarget::Write(SProjectStream& out, const SProject*) const {
  out << "VALUE=";
  out.Number(itsValue, kDigits);
}

SString SOptValueTarget::GetText() const { return SString::number(itsValue, kDigits); }

bool SOptResponseTarget::Read(const SString& first, SFile& file, const SProject*) {
  itsNetwork = SString(AfterEquals(first));
  return !itsNetwork.isEmpty() && file.GetToken(itsResponse);
}

void SOptResponseTarget::Write(SProjectStream& out, const SProject*) const {
  out << "NET=" << itsNetwork << ' ';
  out.Name(itsResponse);
}

SString SOptResponseTarget::GetText() const { return itsNetwork + " " + itsResponse; }

bool SOptFileTarget::Read(const SString&, SFile& file, const SProject* project) {
  SString name;
  if (!file.GetToken(name) || name.isEmpty() || !file.GetToken(itsResponse)) return false;
  const SString directory = SValvarLine::ProjectDirectory(project);
  if (directory.isEmpty()) {
    itsFileName = name;
    return true;
  }
  itsFileName = SString(QDir::cleanPath(QDir(directory.qstring()).absoluteFilePath(name.qstring())));
  return true;
}

void SOptFileTarget::Write(SProjectStream& out, const SProject* project) const {
  const SString directory = SValvarLine::ProjectDirectory(project);
  out << "FILE ";
  const QString relative = QDir(directory.qstring()).relativeFilePath(itsFileName.qstring());
  out.Name(directory.isEmpty() ? itsFileName : SString(relative));
  out << ' ';
  out.Name(itsResponse);
}

SString SOptFileTarget::GetText() const { return itsFileName + " " + itsResponse; }
