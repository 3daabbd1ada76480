#include "SVariableConstraints.h"

#include "SFile.h"
#include "SNumberFormat.h"
#include "SProjectStream.h"
#include "SValueVar.h"

namespace {
// The text of a bound that was never given.
const char* const kUndefined = "UNDEF";

SString OnOff(bool on) { return SString(on ? "ON" : "OFF"); }
}  // namespace

SVariableConstraints::SVariableConstraints(const SString& kind)
    : itsMinimum(99.0, false, kUndefined), itsMaximum(99.0, false, kUndefined), itsKind(kind) {}

void SVariableConstraints::ReadBound(SFile& file, SDoubleValid& bound) {
  SString token;
  if (!file.GetToken(token)) return;
  double value = 0.0;
  if (SValueVar::IsNumeric(token, value)) {
    bound.Set(value);
  } else {
    bound.SetInvalid();
    bound.SetInvalidText(token);
  }
}

SString SVariableConstraints::BoundText(const SDoubleValid& bound) {
  return bound.IsValid() ? SNumberFormat::ToString(bound.GetValue(), SNumberFormat::Named) : bound.GetInvalidText();
}

bool SVariableConstraints::Read(SFile& file) {
  ReadBound(file, itsMinimum);
  ReadBound(file, itsMaximum);
  return true;
}

void SVariableConstraints::Write(SProjectStream& out, const SString& name) const {
  if (!ShouldWrite()) return;
  out << "VCNSTR " << itsKind << ' ';
  out.Name(name) << ' ' << BoundText(itsMinimum) << ' ' << BoundText(itsMaximum) << ' ';
  WriteRest(out);
  out << '\n';
}

SString SVariableConstraints::GetText() const {
  return itsKind + "," + BoundText(itsMinimum) + "," + BoundText(itsMaximum);
}

SVariableEMConstraints::SVariableEMConstraints() : SVariableConstraints("EM"), itsGranularity(0.0, true, "AUTO") {
  itsMinimum.Set(0.0);
}

bool SVariableEMConstraints::Read(SFile& file) {
  SVariableConstraints::Read(file);
  SString token;
  if (!file.PeekToken(token)) return true;
  if (token.compare("AUTO", true) == 0) {
    file.NextToken();
    itsGranularity.Set(0.0);
  } else {
    ReadBound(file, itsGranularity);
  }
  return true;
}

void SVariableEMConstraints::WriteRest(SProjectStream& out) const { out << BoundText(itsGranularity); }

SString SVariableEMConstraints::GetText() const {
  // "I" stands where the others have the first letter of their kind; ON means the
  // granularity is set rather than left to the solver.
  return SVariableConstraints::GetText() + ",I," + OnOff(!IsAutoGranularity()) + "," +
         (IsAutoGranularity() ? SString("AUTO") : BoundText(itsGranularity));
}

bool SVariableBaseConstraints::Read(SFile& file) {
  SVariableConstraints::Read(file);
  SString token;
  // Only the exact word: "on" or "ONCE" leave the constraint off.
  if (file.GetToken(token)) itsEnabled = token == "ON" ? 1 : 0;
  return true;
}

void SVariableBaseConstraints::WriteRest(SProjectStream& out) const { out << "ON "; }

SString SVariableBaseConstraints::GetText() const {
  return SVariableConstraints::GetText() + "," + itsKind.left(1) + "," + OnOff(IsEnabled());
}

SVariableTuningConstraints::SVariableTuningConstraints()
    : SVariableBaseConstraints("TUNE"), itsStep(99.0, false, kUndefined) {}

bool SVariableTuningConstraints::Read(SFile& file) {
  SVariableBaseConstraints::Read(file);
  ReadBound(file, itsStep);
  SString token;
  if (file.GetToken(token)) itsStepType = token == "LIN" ? Linear : Logarithmic;
  return true;
}

void SVariableTuningConstraints::WriteRest(SProjectStream& out) const {
  out << "ON " << BoundText(itsStep) << ' ' << (itsStepType == Linear ? "LIN" : "LOG");
}

SString SVariableTuningConstraints::GetText() const {
  return SVariableBaseConstraints::GetText() + "," + BoundText(itsStep) + "," + (itsStepType == Linear ? "LIN" : "LOG");
}
