#include "SVariablePair.h"

#include "SProjectClassID.h"

SCOLLECTABLE_DEFINE(SVariablePair, SID_VARIABLEPAIR, &SCollectableString::staticTypeInfo())

void SVariablePair::SetName(const SString& name) {
  SString::operator=(name);
  itsValue.SetName(name);
}

bool SVariablePair::NeedsValvarForm() const {
  return itsValvarForm || itsValue.GetUnitKind() != SValueVar::NoUnit || !itsValue.GetDescription().isEmpty() ||
         itsValue.IsValueHidden() || itsValue.EMConstraints().ShouldWrite() ||
         itsValue.TuningConstraints().ShouldWrite() || itsValue.OptConstraints().ShouldWrite();
}

void SVariablePair::UpdateKinds() {
  if (itsValue.IsDependent()) itsFirstKind = itsSecondKind = DependentKind;
}
