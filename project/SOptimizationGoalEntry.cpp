#include "SOptimizationGoalEntry.h"

#include "SFile.h"
#include "SProject.h"
#include "SProjectClassID.h"

#include <QRegularExpression>

SCOLLECTABLE_DEFINE(SOptimizationGoalEntry, SID_OPTIMIZATIONGOALENTRY, &SCollectable::staticTypeInfo())

namespace {
const int kDigits = 10;
const char* const kOperators[] = {"=", ">", "<"};
}  // namespace

SOptimizationGoalEntry::SOptimizationGoalEntry(const SOptimizationGoalEntry& other)
    : SCollectable(other), itsEnabled(other.itsEnabled), itsProject(other.itsProject),
      itsResponse(other.itsResponse), itsWeight(other.itsWeight), itsNetwork(other.itsNetwork),
      itsOperator(other.itsOperator), itsTarget(other.itsTarget ? other.itsTarget->Clone() : nullptr) {}

const char* SOptimizationGoalEntry::OperatorText(int op) { return op >= Equal && op <= Less ? kOperators[op] : "?"; }

bool SOptimizationGoalEntry::Read(SFile& file) {
  SString word;
  if (!file.GetToken(word) || !word.upper().startsWith("NET=")) return false;
  const QRegularExpressionMatch network = QRegularExpression(QStringLiteral("[^=]+$")).match(word.qstring());
  if (!network.hasMatch()) return false;
  itsNetwork = SString(network.captured(0));
  SString op;
  if (!file.GetToken(itsResponse) || !file.GetToken(op)) return false;
  itsOperator = -1;
  for (int i = Equal; i <= Less; ++i)
    if (op == kOperators[i]) itsOperator = i;
  if (itsOperator < 0) return false;
  itsTarget.reset(SOptGoalTarget::Create(file, itsProject));
  if (!itsTarget) return false;
  itsWeight = 1.0;
  if (!file.HasToken()) return true;
  SString weight;
  file.GetToken(weight);
  bool ok = false;
  itsWeight = weight.qstring().toDouble(&ok);
  return ok && !file.HasToken();
}

void SOptimizationGoalEntry::Write(SProjectStream& out) const {
  out << "NET=" << itsNetwork << ' ';
  out.Name(itsResponse);
  out << ' ' << OperatorText(itsOperator) << ' ';
  if (itsTarget) itsTarget->Write(out, itsProject);
  out << ' ';
  out.Number(itsWeight, kDigits);
}

SString SOptimizationGoalEntry::GetText() const {
  if (itsProject == nullptr) return "NO PROJECT";
  SString network = itsNetwork;
  if (network.upper() == "GEO" || network.upper() == "MAIN") network = itsProject->GetFileName().GetBaseName();
  return network + " " + itsResponse + " " + OperatorText(itsOperator) + " " +
         (itsTarget ? itsTarget->GetText() : SString()) + " weight=" + SString::number(itsWeight, kDigits);
}
