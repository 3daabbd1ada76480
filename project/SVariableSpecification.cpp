#include "SVariableSpecification.h"

#include "SDimensionBlock.h"
#include "SFile.h"
#include "SFileBlock.h"
#include "SNumberFormat.h"
#include "SProject.h"
#include "SProjectClassID.h"
#include "SProjectErrorManager.h"
#include "SProjectStream.h"
#include "SValvarLine.h"
#include "SVariablePair.h"

#include <QTextStream>

SCOLLECTABLE_DEFINE(SVariableSpecification, SID_VARIABLESPECIFICATION, &SCollectable::staticTypeInfo())

SVariableSpecification::SVariableSpecification(const SVariableSpecification& other) : SCollectable(other) {
  CopyFrom(other);
}

SVariableSpecification& SVariableSpecification::operator=(const SVariableSpecification& other) {
  if (this != &other) CopyFrom(other);
  return *this;
}

void SVariableSpecification::CopyFrom(const SVariableSpecification& other) {
  itsPairs.clearAndDestroy();
  for (SCollectable* pair : other.itsPairs) itsPairs.append(pair->copy());
  itsIdentifier = other.itsIdentifier;
  itsFlag = other.itsFlag;
  itsPartialCopy = other.itsPartialCopy;
}

int SVariableSpecification::compareTo(const SCollectable* other) const {
  if (other->isA() != isA()) return isA() < other->isA() ? -1 : 1;
  const auto* that = static_cast<const SVariableSpecification*>(other);
  // A copy that leaves a pair out isn't comparable by content.
  if (itsPartialCopy || that->itsPartialCopy) return SCollectable::compareTo(other);
  const size_t common = std::min(Count(), that->Count());
  for (size_t i = 0; i < common; ++i) {
    const int order = At(i)->compareTo(that->At(i));
    if (order != 0) return order;
  }
  if (Count() == that->Count()) return 0;
  return Count() < that->Count() ? -1 : 1;
}

SVariablePair* SVariableSpecification::At(size_t i) const { return static_cast<SVariablePair*>(itsPairs.at(i)); }

SVariablePair* SVariableSpecification::Find(const SString& name) const {
  for (SCollectable* item : itsPairs) {
    auto* pair = static_cast<SVariablePair*>(item);
    if (pair->GetName() == name) return pair;
  }
  return nullptr;
}

bool SVariableSpecification::GetValue(const SString& name, double& value) const {
  const SVariablePair* pair = Find(name);
  if (!pair) return false;
  value = pair->Value().GetValue();
  return true;
}

bool SVariableSpecification::Remove(const SString& name) {
  SVariablePair* pair = Find(name);
  if (!pair) return false;
  itsPairs.remove(pair);
  delete pair;
  return true;
}

SVariablePair* SVariableSpecification::FindOrAppend(const SString& name, bool inUse) {
  SVariablePair* pair = Find(name);
  if (!pair) {
    pair = new SVariablePair(name);
    itsPairs.append(pair);
  }
  pair->SetInUse(inUse);
  return pair;
}

SVariablePair* SVariableSpecification::AddValue(const SString& name, double value, bool inUse) {
  SVariablePair* pair = FindOrAppend(name, inUse);
  pair->Value().SetNumber(value);
  return pair;
}

SVariablePair* SVariableSpecification::AddEquation(const SString& name, const SString& text, bool inUse) {
  SVariablePair* pair = FindOrAppend(name, inUse);
  SString equation = text.stripped();
  if (equation.startsWith("=")) equation.remove(0, 1);
  if (!pair->Value().SetEquation(equation.stripped())) pair->Value().HoldEquation(equation.stripped());
  pair->UpdateKinds();
  return pair;
}

SVariablePair* SVariableSpecification::Add(const SString& name, const SString& text, bool inUse) {
  SString body = text.stripped();
  if (body.startsWith("=")) body.remove(0, 1);
  double value = 0.0;
  if (body.stripped().isEmpty()) return AddValue(name, 0.0, inUse);
  if (SValueVar::IsNumeric(body, value)) return AddValue(name, value, inUse);
  return AddEquation(name, body, inUse);
}

bool SVariableSpecification::Move(const SString& name, size_t index) {
  SVariablePair* pair = Find(name);
  if (!pair) return false;
  itsPairs.remove(pair);
  if (index >= itsPairs.entries())
    itsPairs.append(pair);
  else
    itsPairs.insertAt(index, pair);
  return true;
}

void SVariableSpecification::Add(SVariablePair* pair) {
  SVariablePair* old = Find(pair->GetName());
  if (old) {
    itsPairs.at(itsPairs.index(old)) = pair;
    delete old;
  } else {
    itsPairs.append(pair);
  }
}

bool SVariableSpecification::ParseLine(const SString& line) { return ParseLineInto(line) != nullptr; }

SVariablePair* SVariableSpecification::ParseLineInto(const SString& line) {
  const int equals = line.index("=");
  if (equals < 0) return nullptr;
  QString name = line.left(equals).qstring().trimmed();
  while (name.startsWith(QLatin1Char('"'))) name.remove(0, 1);
  while (name.endsWith(QLatin1Char('"'))) name.chop(1);
  name = name.trimmed();
  if (name.isEmpty()) return nullptr;
  QString value = line.mid(equals + 1).qstring().trimmed();
  bool inUse = true;
  if (value.endsWith(QLatin1String(" true"))) {
    value.chop(5);
  } else if (value.endsWith(QLatin1String(" false"))) {
    value.chop(6);
    inUse = false;
  }
  SVariablePair* pair = FindOrAppend(SString(name), inUse);
  // Held, not compiled: the names it refers to may come later in the file.
  pair->Value().SetFromText(SString(value.trimmed()), true);
  return pair;
}

bool SVariableSpecification::ReadSection(SFile& file, const SString& stopKeyword) {
  for (;;) {
    SString first;
    if (file.PeekToken(first) && SFileBlock::Match(first, stopKeyword)) return true;
    if (file.HasToken()) ParseLine(file.CurrentLine());
    if (!file.NextLine()) return true;
  }
}

namespace {
// The keyword of a variable list line: exact words first, so that "VALVAR_2 = 1" stays a
// name, then the prefix test of every block reader for lines without "=".
bool IsKeyword(const SString& first, const SString& line, const char* keyword) {
  if (first.compare(keyword, true) == 0) return true;
  return !line.contains("=") && SFileBlock::Match(first, keyword);
}
}  // namespace

SVariableSpecification::LineResult SVariableSpecification::ReadLine(SFile& file, SProject* project,
                                                                    SProjectErrorManager& errors) {
  SString first;
  if (!file.PeekToken(first)) return LineNotInList;
  const SString& line = file.CurrentLine();
  SVariablePair* pair = nullptr;
  if (IsKeyword(first, line, "VALVAR")) {
    file.NextToken();
    SString name;
    auto* read = new SVariablePair();
    if (!SValvarLine::Read(file, name, read->Value(), project, errors)) {
      delete read;
      // The entry is left out and the list goes on.
      return LineTaken;
    }
    read->SetName(name);
    read->SetValvarForm(true);
    read->UpdateKinds();
    Add(read);
    pair = read;
  } else if (IsKeyword(first, line, "VCNSTR")) {
    if (Count() == 0) return LineNotInList;
    file.NextToken();
    const auto result = SValvarLine::ReadConstraint(file, [this](const SString& name) -> SValueVarDouble* {
      SVariablePair* found = Find(name);
      return found ? &found->Value() : nullptr;
    });
    if (result == SValvarLine::ConstraintUnknownKind) return LineNotInList;
  } else {
    pair = ParseLineInto(line);
    if (!pair) return LineNotInList;
  }
  if (pair) pair->Value().SetProject(project);
  return LineTaken;
}

bool SVariableSpecification::ReadList(SFile& file, SProject* project, SProjectErrorManager& errors) {
  for (;;) {
    if (!file.HasToken()) {
      if (!file.NextLine()) return true;
      continue;
    }
    const LineResult result = ReadLine(file, project, errors);
    if (result == LineFailed) return false;
    if (result == LineNotInList) return true;
    if (!file.NextLine()) return true;
  }
}

void SVariableSpecification::WritePair(SProjectStream& out, const SVariablePair& pair, const SString& prefix,
                                       bool withFlag, bool useValvar) {
  if (!prefix.isEmpty()) out << prefix << ' ';
  if (useValvar && SFileBlock::Format() >= 21) {
    SValvarLine::Write(out, pair.GetName(), pair.Value(), pair.Value().GetProject());
    return;
  }
  out.Name(pair.GetName()) << " = " << pair.Value().GetText();
  if (withFlag && !useValvar) out << (pair.IsInUse() ? " true" : " false");
  out << '\n';
}

void SVariableSpecification::Write(SProjectStream& out, const SString& prefix, bool withFlag, bool useValvar) const {
  for (SCollectable* item : itsPairs) WritePair(out, *static_cast<SVariablePair*>(item), prefix, withFlag, useValvar);
}

namespace {
SString ItemText(const SVariablePair& pair, const SString& unit) {
  const SValueVarDouble& value = pair.Value();
  SString text = pair.GetName() + "=" +
                 (value.HasEquation() ? value.GetEquation() : SNumberFormat::ToString(value.GetValue(), 8));
  if (!unit.isEmpty()) text += " (" + unit + ")";
  return text;
}

SString Joined(const QStringList& items, const char* separator) { return SString(items.join(QLatin1String(separator))); }
}  // namespace

SString SVariableSpecification::GetListText(int mode) const {
  if (mode >= 2 && mode <= 5) {
    const bool firstInUse = mode == 4 || mode == 5;
    const bool secondInUse = mode == 3 || mode == 5;
    QStringList first;
    QStringList second;
    for (SCollectable* item : itsPairs) {
      const auto* pair = static_cast<const SVariablePair*>(item);
      const bool isFirst = pair->itsSecondKind == 0;
      if (!pair->IsInUse() && (isFirst ? firstInUse : secondInUse)) continue;
      if (isFirst) {
        SProject* project = pair->Value().GetProject();
        const SString unit =
            project ? project->GetDimensionBlock()->GetUnitDisplay(SDimensionBlock::Frequency) : SString();
        first << ItemText(*pair, unit).qstring();
      } else {
        second << ItemText(*pair, SString()).qstring();
      }
    }
    return Joined(first, " ") + "\n" + Joined(second, " ");
  }
  const bool onlyInUse = mode == 1 || mode == 7 || mode == 8;
  const char* separator = (mode == 6 || mode == 7) ? "\n" : mode == 8 ? ", " : " ";
  QStringList items;
  for (SCollectable* item : itsPairs) {
    const auto* pair = static_cast<const SVariablePair*>(item);
    if (onlyInUse && !pair->IsInUse()) continue;
    items << ItemText(*pair, SString()).qstring();
  }
  return Joined(items, separator);
}

bool SVariableSpecification::FromText(const SString& text) {
  bool any = false;
  for (const QString& line : text.qstring().split(QLatin1Char('\n')))
    if (ParseLine(SString(line))) any = true;
  return any;
}

SVariableSpecification* SVariableSpecification::CloneExcept(const SString& name) const {
  auto* clone = new SVariableSpecification(*this);
  clone->Remove(name);
  clone->itsPartialCopy = 1;
  return clone;
}
