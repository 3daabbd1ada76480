#include "SMatlVariable.h"

#include <algorithm>

#include "SCircuit.h"
#include "SCommentedFile.h"
#include "SMatlClassID.h"
#include "SMatlInterface.h"
#include "SMatlReporting.h"
#include "SMatlUtil.h"
#include "SProject.h"
#include "SProjectStream.h"
#include "SVariable.h"
#include "SVeloraTrace.h"

SCOLLECTABLE_DEFINE(SMatlVariable, SID_MATLVARIABLE, &SMatlMaterial::staticTypeInfo())

namespace {
const char kDescription[] = "Variable set in material file";

// White space outside double quotes goes; a table name in quotes keeps its blanks.
QString WithoutBlanks(const QString& text) {
  QString result;
  bool quoted = false;
  for (QChar c : text) {
    if (c == '"') quoted = !quoted;
    if (!quoted && c.isSpace()) continue;
    result += c;
  }
  return result;
}
}  // namespace

void SMatlVariable::Set(const SString& name, const SString& value) {
  itsPair.SetName(name);
  double number = 0.0;
  if (SMatlUtil::ParseReal(value, number))
    itsPair.Value().SetValue(number);
  else
    itsPair.Value().HoldEquation(value);
  itsPair.UpdateKinds();
}

bool SMatlVariable::Read(SCommentedFile& file) {
  const SString fileName = MessageFileName(file);
  SetLine(file.LineCount());
  SString rest;
  file.GetRestOfLine(rest);
  file.SkipLine();
  QString text = rest.qstring().trimmed();
  const int equals = text.indexOf('=');
  if (equals < 0) {
    SMatlReporting::Instance().ReportError(SString::format("%s, line %lld: \"%s\": a variable line needs name = value.",
                                                           fileName.data(), GetLine(), file.CurrentLine().data()));
    return false;
  }
  QString name = text.left(equals).trimmed();
  while (name.startsWith('"')) name.remove(0, 1);
  while (name.endsWith('"')) name.chop(1);
  name = name.trimmed();
  QString value = text.mid(equals + 1).trimmed();
  for (const char* flag : {" true", " false"})
    if (value.endsWith(QLatin1String(flag), Qt::CaseInsensitive)) value.chop(static_cast<int>(strlen(flag)));
  value = WithoutBlanks(value);
  // A name must come back as it was when written in quotes: no quote, comment or blank in it.
  if (SMatlUtil::HasIllegalCharacter(SString(name)) || name.contains(';') ||
      std::any_of(name.begin(), name.end(), [](QChar c) { return c.isSpace() || c.unicode() < 0x20; })) {
    SMatlReporting::Instance().ReportError(SString::format(
        "%s, line %lld: \"%s\": a variable name can't hold a blank or any of ! & = \" ;.", fileName.data(), GetLine(),
        file.CurrentLine().data()));
    return false;
  }
  // The value is written as it stands: a comment mark, an unmatched quote or a control
  // character in it would read back as something else.
  if (value.contains(';') || value.count('"') % 2 != 0 ||
      std::any_of(value.begin(), value.end(), [](QChar c) { return c.unicode() < 0x20 || c.unicode() == 0x7f; })) {
    SMatlReporting::Instance().ReportError(SString::format(
        "%s, line %lld: \"%s\": a variable value can't hold a ; a control character or an unmatched quote.",
        fileName.data(), GetLine(), file.CurrentLine().data()));
    return false;
  }
  if (name.isEmpty() || value.isEmpty()) {
    SMatlReporting::Instance().ReportError(SString::format("%s, line %lld: \"%s\": a variable needs a name and a value.",
                                                           fileName.data(), GetLine(), file.CurrentLine().data()));
    return false;
  }
  Set(SString(name), SString(value));
  if (itsMatl) SetIntoProject(itsMatl->GetScratchProject());
  return true;
}

bool SMatlVariable::SetIntoProject(SProject* project) const {
  SCircuit* circuit = project ? project->GetCircuit() : nullptr;
  SVariable* variable = circuit ? circuit->FindVariable(itsPair.GetName()) : nullptr;
  if (!variable) return false;
  const SValueVarDouble& value = itsPair.Value();
  if (value.HasEquation())
    variable->Value().SetFromText(value.GetEquation(), true);
  else
    variable->SetValue(value.GetValue());
  variable->Value().SetDescription(kDescription);
  VeloraTrace(4, TRACE_GENERAL, "Set variable '%s' into Velora project", itsPair.GetName().data());
  return true;
}

SString SMatlVariable::GetValueText() const {
  const SValueVarDouble& value = itsPair.Value();
  if (value.HasEquation()) return value.GetEquation();
  // The file's digits where they say the number exactly, else as many as it takes.
  const SString text = SMatlUtil::Instance().FormatNumber(value.GetValue());
  double back = 0.0;
  if (SMatlUtil::ParseReal(text, back) && back == value.GetValue()) return text;
  return SString::number(value.GetValue(), 17);
}

bool SMatlVariable::Write(SProjectStream& out) const {
  out << "VAR \"" << itsPair.GetName() << "\" = " << GetValueText() << '\n';
  return true;
}

bool SMatlVariable::IsEqual(const SMatlMaterial& other) const {
  const SMatlVariable* o = dynamic_cast<const SMatlVariable*>(&other);
  return o && itsPair.GetName() == o->itsPair.GetName() && SMatlUtil::SameValue(itsPair.Value(), o->itsPair.Value());
}
