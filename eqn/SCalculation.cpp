#include "SCalculation.h"

SCOLLECTABLE_DEFINE(SCalculation, SID_CALCULATION, &SCollectableString::staticTypeInfo())

SCalculation::SCalculation(const SCalculation& other) : SCollectableString(other), itsOwner(other.itsOwner) {
  for (SCollectable* argument : other.itsArguments)
    itsArguments.append(static_cast<SEqnArgumentImp*>(argument)->Clone());
}

SCalculation& SCalculation::operator=(const SCalculation& other) {
  if (this == &other) return *this;
  SCollectableString::operator=(other);
  itsOwner = other.itsOwner;
  ClearArguments();
  for (SCollectable* argument : other.itsArguments)
    itsArguments.append(static_cast<SEqnArgumentImp*>(argument)->Clone());
  return *this;
}

SCalculation::~SCalculation() { itsArguments.clearAndDestroy(); }

void SCalculation::SetArguments(const QStringList& names) {
  ClearArguments();
  for (const QString& name : names) AddArgument(SString(name));
}

void SCalculation::SetArguments(const SOrdered& arguments) {
  if (&arguments == &itsArguments) return;
  ClearArguments();
  for (SCollectable* argument : arguments) AddArgument(static_cast<SEqnArgumentImp*>(argument));
}

void SCalculation::AddArgument(SEqnArgumentImp* argument) {
  if (argument) itsArguments.append(argument);
}

SEqnArgumentImp* SCalculation::GetArgument(int index) const {
  if (index < 0 || static_cast<size_t>(index) >= itsArguments.entries()) return nullptr;
  return static_cast<SEqnArgumentImp*>(itsArguments.at(static_cast<size_t>(index)));
}

QStringList SCalculation::GetArgumentNames() const {
  QStringList names;
  for (SCollectable* argument : itsArguments) names << static_cast<SEqnArgumentImp*>(argument)->GetName().qstring();
  return names;
}

int SCalculation::FindArgument(const SString& name) const {
  int index = 0;
  for (SCollectable* argument : itsArguments) {
    if (static_cast<SEqnArgumentImp*>(argument)->IsNamed(name)) return index;
    ++index;
  }
  return -1;
}
