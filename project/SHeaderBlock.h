#ifndef SHEADERBLOCK_H
#define SHEADERBLOCK_H

#include "SFileBlock.h"

#include <QStringList>
#include <ctime>

// A date of the header: the date text ("%m/%d/%Y") and the clock text ("%H:%M:%S").
struct SProjectDate {
  SString date;
  SString time;

  bool IsValid() const { return !date.isEmpty(); }
  SString Text() const { return time.isEmpty() ? date : date + " " + time; }
  static SProjectDate FromSeconds(time_t seconds);
};

// HEADER: when and by which programs the project was made and saved, free annotations,
// and which solver the project is for.
class SHeaderBlock : public SFileBlock {
  SCOLLECTABLE_DECLARE(SHeaderBlock)
  SCOLLECTABLE_COPYABLE(SHeaderBlock)
public:
  explicit SHeaderBlock(SProject* owner = nullptr);

  bool ReadBody(SFile& file, SProjectErrorManager& errors) override;
  // Brings the dates up to the time of writing and the solver file up to solverKind.
  bool Write(SProjectStream& out) override;
  void WriteBody(SProjectStream& out) override;
  void SetDefaults() override;

  // 0 the default engine; 1 writes the solver file of the second solver, 0 removes it.
  void SetSolverKind(int kind);
  int GetSolverKind() const { return itsSolverKind; }
  // "<data directory>/EmSolver.xml"; empty for a project without a data directory.
  SString SolverFileName() const;

  const SProjectDate& GetCreatedDate() const { return itsCreatedDate; }
  const SProjectDate& GetHistoryDate() const { return itsHistoryDate; }
  const SProjectDate& GetModifiedDate() const { return itsModifiedDate; }
  const SProjectDate& GetBuiltCreatedDate() const { return itsBuiltCreatedDate; }
  const QStringList& GetAnnotations() const { return itsAnnotations; }
  void SetAnnotations(const QStringList& lines) { itsAnnotations = lines; }
  void AddAnnotation(const SString& text) { itsAnnotations.append(text.qstring()); }
  const SString& GetCreatedProgram() const { return itsCreatedProgram; }
  const SString& GetCreatedVersion() const { return itsCreatedVersion; }
  const SString& GetSavedProgram() const { return itsSavedProgram; }
  const SString& GetSavedVersion() const { return itsSavedVersion; }
  // The text behind an older header's VER line.
  const SString& GetVersionText() const { return itsVersionText; }
  bool IsFromExternal() const { return itsFromExternal; }
  void SetFromExternal(bool on) { itsFromExternal = on; }
  bool IsDateUnset() const { return itsDateUnset; }
  bool IsModifiedUnset() const { return itsModifiedUnset; }

  // The time that writers take as now; 0 gives the clock back. For reproducible files.
  static void SetFixedTime(time_t seconds);
  static time_t Now();

private:
  // The tokens of a BUILT_BY line, with what a "!" would have cut from it put back.
  static QStringList BuiltByTokens(SFile& file);
  void ReadSolverFile();
  void ApplySolverFile();

  SProjectDate itsCreatedDate;
  SProjectDate itsHistoryDate;
  SProjectDate itsModifiedDate;
  SProjectDate itsBuiltCreatedDate;
  QStringList itsAnnotations;
  SString itsCreatedProgram = "Unknown";
  SString itsCreatedVersion = "Unknown Version";
  SString itsSavedProgram = "Unknown";
  SString itsSavedVersion = "Unknown Version";
  SString itsVersionText;
  bool itsFromExternal = false;
  bool itsDateUnset = true;
  bool itsModifiedUnset = true;
  int itsSolverKind = 0;
};

#endif
