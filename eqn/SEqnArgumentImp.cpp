#include "SEqnArgumentImp.h"

#include "SEqnOwner.h"
#include "SVarSource.h"

SCOLLECTABLE_DEFINE(SEqnArgumentImp, SID_EQNARGUMENTIMP, &SCollectable::staticTypeInfo())
SCOLLECTABLE_DEFINE(SVarArgImplimentation, SID_VARARGIMPLIMENTATION, &SEqnArgumentImp::staticTypeInfo())
SCOLLECTABLE_DEFINE(SVarFreqArgImplimentation, SID_VARFREQARGIMPLIMENTATION, &SEqnArgumentImp::staticTypeInfo())

bool SEqnArgumentImp::GetValue(double, std::complex<double>& value, SString&) {
  value = itsValue;
  return true;
}

SVarArgImplimentation::SVarArgImplimentation(const SString& name, SVarSource* source)
    : SEqnArgumentImp(name), itsSource(source) {
  if (itsSource) itsSource->RegisterArgument(this);
}

SVarArgImplimentation::SVarArgImplimentation(const SVarArgImplimentation& other)
    : SEqnArgumentImp(other), itsSource(other.itsSource) {
  if (itsSource) itsSource->RegisterArgument(this);
}

SVarArgImplimentation::~SVarArgImplimentation() {
  if (itsSource) itsSource->UnregisterArgument(this);
}

bool SVarArgImplimentation::GetValue(double, std::complex<double>& value, SString& errorText) {
  if (!itsSource) {
    errorText = "Bad Argument (" + itsName + ") in equation ";
    return false;
  }
  if (!itsSource->GetSourceValue(value, errorText)) return false;
  itsValue = value;
  return true;
}

bool SVarFreqArgImplimentation::GetValue(double frequency, std::complex<double>& value, SString&) {
  value = frequency * (itsOwner ? itsOwner->GetFrequencyFactor() : 1.0);
  itsValue = value;
  return true;
}
