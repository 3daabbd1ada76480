#include "SValvarLine.h"

#include "SFile.h"
#include "SFileBlock.h"
#include "SNumberFormat.h"
#include "SProject.h"
#include "SProjectErrorManager.h"
#include "SProjectStream.h"
#include "SValueVar.h"

#include <QDir>
#include <QFileInfo>

namespace {
SString Unescaped(SString text) { return text.replace("\\\"", "\""); }
SString Escaped(SString text) { return text.replace("\"", "\\\""); }

// The equation with each double-quoted piece passed through `map`.
SString MapFileNames(const SString& equation, const std::function<QString(const QString&)>& map) {
  const QString& text = equation.qstring();
  QString result;
  int from = 0;
  for (;;) {
    const int open = text.indexOf(QLatin1Char('"'), from);
    const int close = open < 0 ? -1 : text.indexOf(QLatin1Char('"'), open + 1);
    if (close < 0) break;
    result += text.mid(from, open + 1 - from);
    const QString name = text.mid(open + 1, close - open - 1);
    result += name.isEmpty() ? name : map(name);
    from = close;
  }
  result += text.mid(from);
  return SString(result);
}
}  // namespace

SString SValvarLine::ProjectDirectory(const SProject* project) {
  if (!project || project->GetFileName().isEmpty()) return SString();
  return SString(QFileInfo(project->GetFileName().qstring()).absolutePath());
}

SString SValvarLine::AbsoluteFileNames(const SString& equation, const SString& directory) {
  if (directory.isEmpty()) return equation;
  const QDir base(directory.qstring());
  return MapFileNames(equation, [&](const QString& name) { return QDir::cleanPath(base.absoluteFilePath(name)); });
}

SString SValvarLine::RelativeFileNames(const SString& equation, const SString& directory) {
  if (directory.isEmpty()) return equation;
  const QDir base(directory.qstring());
  return MapFileNames(equation, [&](const QString& name) {
    return QFileInfo(name).isAbsolute() ? base.relativeFilePath(name) : name;
  });
}

bool SValvarLine::ReadHead(SFile& file, SString& name, int& unitKind, SProjectErrorManager& errors) {
  SString keyword;
  if (!file.GetToken(name) || !file.GetToken(keyword)) {
    errors.AddError(SProjectErrorManager::Error, SFileBlock::LineOf(file), 6036);
    return false;
  }
  unitKind = SValueVar::UnitKindOf(keyword);
  if (unitKind < 0) {
    errors.AddError(SProjectErrorManager::Error, SFileBlock::LineOf(file), 6036);
    return false;
  }
  return true;
}

void SValvarLine::ReadValue(SFile& file, SValueVarDouble& value, const SProject* project,
                            SProjectErrorManager& errors) {
  SString token;
  if (file.GetToken(token)) {
    double number = 0.0;
    if (token == "<HIDDEN>") {
      value.SetValueHidden(true);
    } else if (SValueVar::IsNumeric(token, number)) {
      value.SetNumber(number);
    } else {
      value.HoldEquation(AbsoluteFileNames(Unescaped(token), ProjectDirectory(project)));
      for (const QString& name : value.GetFileNames())
        if (!QFileInfo::exists(name))
          errors.AddError(SProjectErrorManager::Warning, SFileBlock::LineOf(file), 5318, SString(name).data());
    }
  }
  SString description;
  if (file.GetToken(description)) value.SetDescription(Unescaped(description));
  value.SetStored(true);
}

bool SValvarLine::Read(SFile& file, SString& name, SValueVarDouble& value, const SProject* project,
                       SProjectErrorManager& errors) {
  int unitKind = SValueVar::NoUnit;
  if (!ReadHead(file, name, unitKind, errors)) return false;
  value.SetUnitKind(unitKind);
  value.SetLine(SFileBlock::LineOf(file));
  ReadValue(file, value, project, errors);
  return true;
}

void SValvarLine::WriteValue(SProjectStream& out, const SValueVarDouble& value, const SProject* project) {
  if (value.IsValueHidden())
    out << "<HIDDEN>";
  else if (value.HasEquation() && SFileBlock::Format() >= 9)
    out << '"' << Escaped(RelativeFileNames(value.GetEquation(), ProjectDirectory(project))) << '"';
  else
    out.Number(value.GetValue(), SNumberFormat::Named);
}

void SValvarLine::Write(SProjectStream& out, const SString& name, const SValueVarDouble& value,
                        const SProject* project) {
  out << "VALVAR ";
  out.Name(name) << ' ' << SValueVar::UnitKeyword(value.GetUnitKind()) << ' ';
  WriteValue(out, value, project);
  out << " \"" << Escaped(value.GetDescription()) << "\"\n";
  if (SFileBlock::Format() < 21) return;
  value.EMConstraints().Write(out, name);
  value.TuningConstraints().Write(out, name);
  value.OptConstraints().Write(out, name);
}

SValvarLine::ConstraintResult SValvarLine::ReadConstraint(
    SFile& file, const std::function<SValueVarDouble*(const SString&)>& find) {
  SString kind;
  SString name;
  file.GetToken(kind);
  file.GetToken(name);
  SValueVarDouble probe;
  if (!probe.Constraints(kind)) return ConstraintUnknownKind;
  SValueVarDouble* value = find(name);
  if (!value) return ConstraintSkipped;
  value->Constraints(kind)->Read(file);
  return ConstraintRead;
}
