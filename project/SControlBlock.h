#ifndef SCONTROLBLOCK_H
#define SCONTROLBLOCK_H

#include "SFileBlock.h"
#include "SFileName.h"
#include "SValid.h"

#include <QStringList>
#include <vector>

// CONTROL: how an analysis runs. Frequencies are in the project's frequency unit.
class SControlBlock : public SFileBlock {
  SCOLLECTABLE_DECLARE(SControlBlock)
  SCOLLECTABLE_COPYABLE(SControlBlock)
public:
  enum AnalysisType { Frequency = 0, Adaptive, Combination, Parameter, Optimization, External, AwrAdaptive };
  enum Speed { MaxAccuracy = 0, Medium = 1, MaxSpeed = 2 };
  enum Consistency { Ignore = 0, Replace = 1, Keep = 2 };
  enum FMaxControl { FMaxNone = 0, FMaxLevel = 1, FMaxBoth = 2, FMaxYes = 3 };
  enum ResolutionMode { AutoResolution = 0, ManualResolution = 1, ResolutionList = 2 };

  explicit SControlBlock(SProject* owner = nullptr);

  bool ReadBody(SFile& file, SProjectErrorManager& errors) override;
  void WriteBody(SProjectStream& out) override;
  void SetDefaults() override;
  // The cut off, FMax and ABS resolution follow a change of the frequency unit.
  void ChangeUnits(const SDimensionBlock& newUnits) override;
  void ScaleToUnit(double oldFactor, double newFactor);

  static const char* AnalysisKeyword(int type);
  static const char* AnalysisTypeName(int type);
  SString GetAnalysisTypeName() const { return AnalysisTypeName(itsAnalysisType); }

  // Run options, one word each.
  const QStringList& GetOptions() const { return itsOptions; }
  void SetOptions(const QStringList& options) { itsOptions = options; }
  SString GetOptionsText() const { return SString(itsOptions.join(QLatin1Char(' '))); }
  // A word names an option with or without a leading "-".
  bool HasOption(const SString& name) const;
  void AddOption(const SString& word);
  bool RemoveOption(const SString& name);
  // Drops empty and repeated words.
  void ConvertOptions();

  int itsAnalysisType = Adaptive;
  QStringList itsOptions;
  bool itsPush = false;
  bool itsInherited = false;
  int itsConsistency = Ignore;
  SFileName itsExternalFile;
  bool itsQuadEnabled = false;
  SDoubleValid itsQuadCutOff;
  int itsSpeed = MaxAccuracy;
  bool itsCustomSubs = false;
  SIntValid itsSubsPerLambda;
  bool itsEstimateEpsEff = false;
  SDoubleValid itsEpsEff;
  bool itsEdgeChecking = false;
  SIntValid itsEdgeLevels;
  // 0 levels, 1 technology layers.
  int itsEdgeCheckType = 0;
  int itsFMaxControl = FMaxBoth;
  SDoubleValid itsFMax;
  bool itsQAccuracy = false;
  bool itsResonanceDetection = false;
  int itsResolutionMode = AutoResolution;
  SDoubleValid itsResolution;
  std::vector<double> itsResolutionFrequencies;
  // 0 none, 1 stop-restart, 2 multi-sweep.
  int itsCachingLevel = 1;
  SIntValid itsTargetFrequencies = SIntValid(300);
  bool itsForceRun = false;
  SDoubleValid itsCalibration;
  // Leaves out the file name and the run flags.
  bool itsSuppressOutput = false;
  // Set for a project read from an older netlist file.
  bool itsNetlist = false;
  // The legacy conversions changed something on reading.
  bool itsChanged = false;

private:
  void Reset();
  bool ReadLine(const SString& keyword, SFile& file, bool& known);
};

#endif
