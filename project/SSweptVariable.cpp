#include "SSweptVariable.h"

#include "SProjectClassID.h"

#include <QRegularExpression>

SCOLLECTABLE_DEFINE(SSweptVariable, SID_SWEPTVARIABLE, &SCollectableString::staticTypeInfo())
SCOLLECTABLE_DEFINE(SSweptVariableSpecification, SID_SWEPTVARIABLESPECIFICATION, &SCollectable::staticTypeInfo())

namespace {
const char kLetters[] = {'\0', 'N', 'E', 'C', 'S', 'G', 'L'};
const char* const kLabels[] = {"Lin", "Lin", "Exp", "Corner", "Sensitivity", "Single", "List"};
const int kDigits = 10;

SDoubleValid Number(const QString& word) {
  bool ok = false;
  const double value = word.toDouble(&ok);
  return ok ? SDoubleValid(value) : SDoubleValid(0.0, false);
}

void WriteBound(SProjectStream& out, const SDoubleValid& value) {
  if (value.IsValid())
    out.Number(value.GetValue(), kDigits);
  else
    out << "UNDEF";
}

SString BoundText(const SDoubleValid& value) {
  return value.IsValid() ? SString::number(value.GetValue(), kDigits) : SString("Undefined");
}
}  // namespace

const char* SSweptVariable::TypeLabel(int type) { return type >= 0 && type <= List ? kLabels[type] : ""; }
char SSweptVariable::TypeLetter(int type) { return type > 0 && type <= List ? kLetters[type] : '\0'; }

bool SSweptVariable::ReadValues(const SString& rest) {
  QString text = rest.qstring();
  text.remove(QLatin1Char('"'));
  const QStringList words = text.split(QRegularExpression(QStringLiteral("\\s+")), Qt::SkipEmptyParts);
  if (words.isEmpty()) return false;
  const QString flag = words[0].toUpper();
  if (!flag.startsWith(QLatin1Char('Y')) && !flag.startsWith(QLatin1Char('N'))) return false;
  itsInUse = flag.startsWith(QLatin1Char('Y'));
  itsType = Sweep;
  if (flag.size() > 1)
    for (int type = LinearPoints; type <= List; ++type)
      if (flag.at(1) == QLatin1Char(kLetters[type])) itsType = type;
  const auto word = [&words](int i) { return i < words.size() ? words[i] : QString(); };
  if (itsType == List) {
    itsValues.clear();
    for (int i = 1; i < words.size(); ++i) {
      const SDoubleValid value = Number(words[i]);
      if (value.IsValid()) itsValues.push_back(value.GetValue());
    }
    return true;
  }
  itsStart = Number(word(1));
  itsStop = Number(word(2));
  if (itsType == Sweep) itsStep = Number(word(3));
  if (itsType == LinearPoints || itsType == Exponential) {
    const SDoubleValid points = Number(word(3));
    itsPoints = SIntValid(static_cast<int>(points.GetValue()), points.IsValid());
  }
  return true;
}

void SSweptVariable::Write(SProjectStream& out, int format) const {
  // Formats below 9 know the stepped types only.
  const bool older = format < 9 && itsType > Exponential;
  const int type = older ? Sweep : itsType;
  out.Name(*this);
  out << ' ';
  if (itsInUse && !older) {
    out << 'Y';
    if (TypeLetter(type) != '\0') out << TypeLetter(type);
  } else {
    out << 'N';
  }
  out << ' ';
  if (type == List) {
    for (size_t i = 0; i < itsValues.size(); ++i) {
      if (i > 0) out << ' ';
      out.Number(itsValues[i], kDigits);
    }
    out << '\n';
    return;
  }
  WriteBound(out, itsStart);
  if (type != Single) {
    out << ' ';
    WriteBound(out, itsStop);
  }
  if (type == Sweep) {
    out << ' ';
    WriteBound(out, itsStep);
  } else if (type == LinearPoints || type == Exponential) {
    out << ' ';
    if (itsPoints.IsValid())
      out << itsPoints.GetValue();
    else
      out << "UNDEF";
  }
  out << '\n';
}

void SSweptVariable::SetType(const SString& text) {
  static const struct {
    const char* word;
    int type;
  } kWords[] = {{"SWEEP", Sweep},   {"LSWEEP", LinearPoints}, {"ESWEEP", Exponential},
                {"CORNER", Corner}, {"STEP", Single},         {"LIST", List}};
  for (const auto& entry : kWords)
    if (text == entry.word) {
      itsType = entry.type;
      if (itsType == List) itsValues.clear();
      return;
    }
}

SString SSweptVariable::GetListText(const SString& unit) const {
  if (!itsInUse) return "Fixed: " + SString::number(itsNominal.GetValue(), 8) + " " + unit;
  if (itsType != List && (!itsStart.IsValid() || itsStart.GetValue() < 0.0))
    return "Please double click to set up this sweep.";
  SString text = SString(TypeLabel(itsType)) + ": ";
  switch (itsType) {
  case Corner:
  case Sensitivity:
    text += "min=" + BoundText(itsStart) + " max=" + BoundText(itsStop) + " nom=" + BoundText(itsNominal);
    break;
  case Single: text += BoundText(itsStart); break;
  case List:
    for (size_t i = 0; i < itsValues.size(); ++i)
      text += (i > 0 ? " " : "") + SString::number(itsValues[i], kDigits);
    break;
  default: {
    const bool counted = itsType == Sweep ? itsStep.IsValid() : itsPoints.IsValid();
    text += BoundText(itsStart) + (counted ? " to " : " and ") + BoundText(itsStop);
    break;
  }
  }
  return text + " " + unit;
}

// ---- the set's list

SSweptVariableSpecification::SSweptVariableSpecification(const SSweptVariableSpecification& other)
    : SCollectable(other) {
  *this = other;
}

SSweptVariableSpecification& SSweptVariableSpecification::operator=(const SSweptVariableSpecification& other) {
  if (this == &other) return *this;
  itsVariables.clearAndDestroy();
  for (size_t i = 0; i < other.Count(); ++i) Add(new SSweptVariable(*other.Get(i)));
  return *this;
}

SSweptVariable* SSweptVariableSpecification::Find(const SString& name) const {
  for (size_t i = 0; i < Count(); ++i)
    if (*Get(i) == name) return Get(i);
  return nullptr;
}

bool SSweptVariableSpecification::HasVariableInUse() const {
  for (size_t i = 0; i < Count(); ++i)
    if (Get(i)->itsInUse) return true;
  return false;
}

int SSweptVariableSpecification::GetKind() const {
  bool any = false, allSweep = true, allSensitivity = true, allCorner = true;
  for (size_t i = 0; i < Count(); ++i) {
    const SSweptVariable* variable = Get(i);
    if (!variable->itsInUse) continue;
    any = true;
    allSweep = allSweep && variable->itsType == SSweptVariable::Sweep;
    allSensitivity = allSensitivity && variable->itsType == SSweptVariable::Sensitivity;
    allCorner = allCorner && variable->itsType == SSweptVariable::Corner;
  }
  if (allSweep) return LinearSweep;
  if (any && allSensitivity) return SensitivitySweep;
  if (any && allCorner) return CornerSweep;
  return MixedSweep;
}

const char* SSweptVariableSpecification::KindLabel(int kind) {
  switch (kind) {
  case CornerSweep: return "Corner Sweep";
  case SensitivitySweep: return "Sensitivity Sweep";
  case LinearSweep: return "Linear Sweep";
  default: return "Mixed Sweep";
  }
}

bool SSweptVariableSpecification::Rename(const SString& oldName, const SString& newName) {
  SSweptVariable* variable = Find(oldName);
  if (variable == nullptr) return false;
  static_cast<SString&>(*variable) = newName;
  return true;
}
