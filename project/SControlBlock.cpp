#include "SControlBlock.h"

#include "SDimensionBlock.h"
#include "SFile.h"
#include "SInitializationFile.h"
#include "SProject.h"
#include "SProjectClassID.h"
#include "SProjectErrorManager.h"

#include <type_traits>

SCOLLECTABLE_DEFINE(SControlBlock, SID_CONTROLBLOCK, &SFileBlock::staticTypeInfo())

namespace {
const char* const kAnalysisKeywords[] = {"SIMPLE", "ABS", "STD", "VARSWP", "OPTIMIZE", "EXTFILE", "AWR_ABS"};
const char* const kAnalysisNames[] = {"Frequency", "Adaptive",     "Combination",      "Parameter",
                                      "Optimization", "External", "AWR Full-Band ABS"};

bool YesToken(const SString& token) { return token.first() == QLatin1Char('Y') || token.first() == QLatin1Char('y'); }

// "Y" or "N" first on the rest of a line; false when the word is missing.
bool TakeYesNo(SFile& file, bool& out) {
  SString token;
  if (!file.GetToken(token)) return false;
  out = YesToken(token);
  return true;
}

// An optional number behind: left unset when the line ends.
template <typename T, typename V>
bool TakeOptional(SFile& file, V& valid) {
  if (!file.HasToken()) {
    valid.SetInvalid();
    return true;
  }
  T value{};
  bool ok;
  if constexpr (std::is_same<T, int>::value)
    ok = file.GetInt(value);
  else
    ok = file.GetDouble(value);
  if (!ok) return false;
  valid.Set(value);
  return true;
}
}  // namespace

SControlBlock::SControlBlock(SProject* owner) : SFileBlock(owner, "CONTROL") {}

const char* SControlBlock::AnalysisKeyword(int type) {
  return type >= 0 && type <= AwrAdaptive ? kAnalysisKeywords[type] : "SIMPLE";
}

const char* SControlBlock::AnalysisTypeName(int type) {
  return type >= 0 && type <= AwrAdaptive ? kAnalysisNames[type] : "Unknown";
}

void SControlBlock::Reset() {
  const int start = itsStartLine;
  const bool present = itsPresent;
  *this = SControlBlock(itsOwner);
  itsStartLine = start;
  itsPresent = present;
}

void SControlBlock::SetDefaults() {
  Reset();
  SFileBlock::SetDefaults();
}

bool SControlBlock::HasOption(const SString& name) const {
  for (QString word : itsOptions) {
    if (word.startsWith(QLatin1Char('-'))) word.remove(0, 1);
    if (word == name.qstring()) return true;
  }
  return false;
}

void SControlBlock::AddOption(const SString& word) {
  if (!word.isEmpty()) itsOptions.append(word.qstring());
}

bool SControlBlock::RemoveOption(const SString& name) {
  bool removed = false;
  for (int i = itsOptions.size() - 1; i >= 0; --i) {
    QString word = itsOptions.at(i);
    if (word.startsWith(QLatin1Char('-'))) word.remove(0, 1);
    if (word == name.qstring()) {
      itsOptions.removeAt(i);
      removed = true;
    }
  }
  return removed;
}

void SControlBlock::ConvertOptions() {
  QStringList cleaned;
  for (const QString& word : itsOptions)
    if (!word.isEmpty() && !cleaned.contains(word)) cleaned.append(word);
  itsOptions = cleaned;
}

// One line of the block; false for a missing or malformed value. `known` is false for a
// keyword the block doesn't have.
bool SControlBlock::ReadLine(const SString& keyword, SFile& file, bool& known) {
  known = true;
  for (int type = 0; type <= AwrAdaptive; ++type)
    if (Match(keyword, kAnalysisKeywords[type])) {
      itsAnalysisType = type;
      return true;
    }
  SString word;
  if (Match(keyword, "OPTIONS")) {
    itsOptions.clear();
    while (file.HasToken()) {
      file.GetToken(word);
      AddOption(word);
    }
    return true;
  }
  if (Match(keyword, "FILENAME")) {
    file.GetToken(word);
    itsExternalFile = word;
    return true;
  }
  if (Match(keyword, "PUSH")) {
    itsPush = true;
    return true;
  }
  if (Match(keyword, "INHERIT")) {
    itsInherited = true;
    return true;
  }
  if (Match(keyword, "FORCERUN")) {
    itsForceRun = true;
    return true;
  }
  if (Match(keyword, "SPEED")) return file.GetInt(itsSpeed);
  if (Match(keyword, "MCONSIST")) {
    if (!file.GetToken(word)) return false;
    if (word == "REPLACE")
      itsConsistency = Replace;
    else if (word == "NO_REPLACE")
      itsConsistency = Keep;
    else if (word == "IGNORE")
      itsConsistency = Ignore;
    else
      return false;
    return true;
  }
  if (Match(keyword, "ENABLEQ")) {
    itsQuadEnabled = true;
    return true;
  }
  if (Match(keyword, "QUADFREQ")) {
    double value = 0.0;
    if (!file.GetDouble(value)) return false;
    itsQuadCutOff.Set(value);
    return true;
  }
  if (Match(keyword, "SUBSPLAM")) return TakeYesNo(file, itsCustomSubs) && TakeOptional<int>(file, itsSubsPerLambda);
  if (Match(keyword, "EDGECHECK")) {
    if (!TakeYesNo(file, itsEdgeChecking)) return false;
    itsEdgeCheckType = 0;
    itsEdgeLevels.SetInvalid();
    while (file.HasToken()) {
      file.PeekToken(word);
      if (word == "TECHLAY") {
        file.GetToken(word);
        itsEdgeCheckType = 1;
        continue;
      }
      int levels = 0;
      if (!file.GetInt(levels)) return false;
      itsEdgeLevels.Set(levels);
    }
    return true;
  }
  if (Match(keyword, "CFMAX")) {
    if (!file.GetToken(word)) return false;
    itsFMaxControl = word == "N" ? FMaxNone : word == "L" ? FMaxLevel : word == "Y" ? FMaxYes : FMaxBoth;
    return TakeOptional<double>(file, itsFMax);
  }
  if (Match(keyword, "CEPSY")) return TakeYesNo(file, itsEstimateEpsEff) && TakeOptional<double>(file, itsEpsEff);
  if (Match(keyword, "RES_ABS")) {
    bool manual = false;
    if (!TakeYesNo(file, manual)) return false;
    if (manual)
      itsResolutionMode = ManualResolution;
    else if (itsResolutionMode == ManualResolution)
      itsResolutionMode = AutoResolution;
    return TakeOptional<double>(file, itsResolution);
  }
  if (Match(keyword, "RES_FREQS")) {
    bool list = false;
    if (!TakeYesNo(file, list)) return false;
    if (list) itsResolutionMode = ResolutionList;
    itsResolutionFrequencies.clear();
    while (file.HasToken()) {
      double value = 0.0;
      if (!file.GetDouble(value)) return false;
      itsResolutionFrequencies.push_back(value);
    }
    return true;
  }
  if (Match(keyword, "CACHE_ABS")) {
    if (!file.GetToken(word)) return false;
    itsCachingLevel = word == "0" ? 0 : word == "1" ? 1 : 2;
    return true;
  }
  if (Match(keyword, "TARG_ABS")) return TakeOptional<int>(file, itsTargetFrequencies);
  if (Match(keyword, "Q_ACC")) return TakeYesNo(file, itsQAccuracy);
  if (Match(keyword, "DET_ABS_RES")) {
    itsResonanceDetection = true;
    if (file.GetToken(word)) itsResonanceDetection = YesToken(word);
    return true;
  }
  if (Match(keyword, "FCAL")) return TakeOptional<double>(file, itsCalibration);
  known = false;
  return true;
}

bool SControlBlock::ReadBody(SFile& file, SProjectErrorManager& errors) {
  Reset();
  for (;;) {
    if (!file.HasToken()) break;
    SString keyword;
    file.PeekToken(keyword);
    if (Match(keyword, "END")) break;
    file.GetToken(keyword);
    bool known = true;
    if (!ReadLine(keyword, file, known)) {
      SString text;
      file.GetLine(text);
      errors.AddError(SProjectErrorManager::Error, LineOf(file), 7132, text.data());
      return false;
    }
    if (!known) {
      file.RewindLine();
      if (!Unknown(file, keyword, errors)) return false;
      continue;
    }
    if (!file.NextLine()) break;
  }

  SInitializationFile* settings = SInitializationFile::GetGlobal();
  const bool convert = settings ? settings->GetBool("Velora", "LegacyCTLConverions", true) : true;
  const bool warn = settings ? settings->GetBool("Velora", "LegacyCTLWarnings", true) : true;
  if (convert) {
    if (RemoveOption("Zhh2")) {
      itsChanged = true;
      if (warn) errors.AddError(SProjectErrorManager::Warning, LineOf(file), 7255);
    }
    if (itsQuadEnabled) {
      itsQuadEnabled = false;
      itsChanged = true;
      if (warn) errors.AddError(SProjectErrorManager::Warning, LineOf(file), 7250);
    }
  }
  ConvertOptions();
  return true;
}

void SControlBlock::WriteBody(SProjectStream& out) {
  const int format = Format();
  int type = itsAnalysisType;
  if (format < 3 && (type == Adaptive || type == AwrAdaptive)) type = Frequency;
  out << AnalysisKeyword(type) << '\n';
  out << "OPTIONS " << GetOptionsText() << '\n';
  if (!itsSuppressOutput) {
    if (format < 21 && !itsExternalFile.isEmpty()) out << "FILENAME " << SString(itsExternalFile) << '\n';
    if (itsPush) out << "PUSH\n";
    if (itsInherited) out << "INHERIT\n";
    if (itsForceRun) out << "FORCERUN\n";
  }
  out << "SPEED " << itsSpeed << '\n';
  if (itsConsistency == Replace) out << "MCONSIST REPLACE\n";
  if (itsConsistency == Keep) out << "MCONSIST NO_REPLACE\n";
  if (itsQuadEnabled) out << "ENABLEQ\n";

  out << "SUBSPLAM ";
  out.YesNo(itsCustomSubs);
  if (itsSubsPerLambda.IsValid()) out << ' ' << itsSubsPerLambda.GetValue();
  out << '\n';

  out << "EDGECHECK ";
  out.YesNo(itsEdgeChecking);
  const bool techLayers = itsEdgeCheckType == 1 && format > 18;
  if (itsEdgeLevels.IsValid())
    out << ' ' << itsEdgeLevels.GetValue();
  else if (techLayers)
    out << " 1";
  if (techLayers) out << " TECHLAY";
  out << '\n';

  int control = itsFMaxControl;
  if (format < 4 && (control == FMaxBoth || control == FMaxLevel)) control = FMaxNone;
  static const char kLetters[] = {'N', 'L', 'B', 'Y'};
  out << "CFMAX " << kLetters[control >= 0 && control <= 3 ? control : FMaxBoth];
  if (itsFMax.IsValid()) out << ' ';
  if (itsFMax.IsValid()) out.Number(itsFMax.GetValue(), SNumberFormat::Geometry);
  out << '\n';

  out << "CEPSY ";
  out.YesNo(itsEstimateEpsEff);
  if (itsEpsEff.IsValid()) out << ' ' << itsEpsEff.GetValue();
  out << '\n';

  if (format >= 3) {
    out << "RES_ABS ";
    out.YesNo(itsResolutionMode == ManualResolution);
    if (itsResolution.IsValid()) out << ' ' << itsResolution.GetValue();
    out << '\n';
  }
  if (format >= 21 && (itsResolutionMode == ResolutionList || !itsResolutionFrequencies.empty())) {
    out << "RES_FREQS ";
    out.YesNo(itsResolutionMode == ResolutionList);
    for (double frequency : itsResolutionFrequencies) out << ' ' << frequency;
    out << '\n';
  }
  if (format >= 4) {
    out << "CACHE_ABS " << itsCachingLevel << '\n';
    if (itsTargetFrequencies.IsValid()) out << "TARG_ABS " << itsTargetFrequencies.GetValue() << '\n';
  }
  if (format >= 5) {
    out << "Q_ACC ";
    out.YesNo(itsQAccuracy) << '\n';
  }
  if (format >= 19 && itsResonanceDetection) out << "DET_ABS_RES Y\n";
  if (format >= 6 && itsCalibration.IsValid()) out << "FCAL " << itsCalibration.GetValue() << '\n';
}

void SControlBlock::ChangeUnits(const SDimensionBlock& newUnits) {
  if (!itsOwner) return;
  SDimensionBlock* old = itsOwner->GetDimensionBlock();
  if (old) ScaleToUnit(old->GetFactor(SDimensionBlock::Frequency), newUnits.GetFactor(SDimensionBlock::Frequency));
}

void SControlBlock::ScaleToUnit(double oldFactor, double newFactor) {
  if (oldFactor == 0.0 || newFactor == 0.0 || oldFactor == newFactor) return;
  const double ratio = oldFactor / newFactor;
  if (itsQuadCutOff.IsValid()) itsQuadCutOff.Set(itsQuadCutOff.GetValue() * ratio);
  if (itsFMax.IsValid()) itsFMax.Set(itsFMax.GetValue() * ratio);
  if (itsResolution.IsValid()) itsResolution.Set(itsResolution.GetValue() * ratio);
}
