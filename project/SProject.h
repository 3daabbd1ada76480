#ifndef SPROJECT_H
#define SPROJECT_H

#include "SBlockDictionary.h"
#include "SCollectable.h"
#include "SEqnOwner.h"
#include "SEquationTables.h"
#include "SProjectErrorManager.h"
#include "SProjectFileMapping.h"
#include "SProjectStream.h"
#include "SVeloraFileName.h"

#include <QStringList>
#include <vector>

class S3dOptionsBlock;
class SCircuit;
class SCircuitBlock;
class SControlBlock;
class SDimensionBlock;
class SFile;
class SFileBlock;
class SFileOutputBlock;
class SFrequencyBlock;
class SGeometryBlock;
class SHeaderBlock;
class SInterfaceBlock;
class SJXYBlock;
class SOptimizationBlock;
class SParameterBlock;
class SQsgBlock;
class SResponseBlock;
class SSMDBlock;
class SSubdivisionBlock;
class STranslatorBlock;
class SVariable;
class SVariableSweepBlock;

// A project file in memory: its eighteen named blocks, the file it came from, the format
// version read, and the messages of the last read or check. Blocks are made together on
// first use; only those that hold data ("present") are written. Equations of the project's
// values are compiled against it (SEqnOwner).
class SProject : public SCollectable, public SEqnOwner {
  SCOLLECTABLE_DECLARE(SProject)
public:
  enum ProjectType {
    GeoFile = 0,
    NetFile = 1,
    JxyFile = 2,
    GeometryProject = 3,
    NetlistProject = 4,
    SecondSolverProject = 5
  };
  // Lock check results.
  enum LockState { LockedBySelf = 0, LockMixed = 1, LockRefused = 2, LockRefusedOther = 3, NoLock = 4 };

  SProject();
  explicit SProject(const SString& fileName);
  ~SProject() override;
  SProject(const SProject&) = delete;
  SProject& operator=(const SProject&) = delete;
  SCollectable* newSpecies() const override { return new SProject(); }
  SCollectable* copy() const override { return new SProject(); }

  virtual int GetProjectType();
  // The date of the first DAT line of the file; false when there is none.
  virtual bool GetProjectDate(SString& date);
  virtual void SetProjectType(int type);
  virtual void AddToReadSet(const SString& name);
  virtual void ClearReadSet() { itsReadSet.clear(); }
  // With `checkDataDirectory` a missing data directory is made beside the file.
  virtual bool Read(int checkDataDirectory);
  // First lines and dispatch by file type; the file stands on its first line.
  virtual bool ReadStream(SFile& file, int checkDataDirectory);
  // The loop over the blocks of a project file.
  virtual bool ReadFile(SFile& file);
  virtual bool ReadGeoFile(SFile& file);
  virtual bool ReadNetFile(SFile& file);
  virtual bool ReadJxyFile(SFile& file);
  virtual void SetWriteOrder(int type);
  virtual void AddToWriteOrder(const SString& name);
  virtual void ClearWriteOrder() { itsWriteOrder.clear(); }
  // The whole project in the process's write format.
  virtual bool Write(SProjectStream& out);
  virtual bool WriteFile(SProjectStream& out);
  virtual bool MakeDataDirectory();
  virtual bool CheckDataDirectory();
  // Mode 1 shows what `format` can't hold as a warning, 2 as an error, 3 as an error that
  // also says the file can't be saved.
  virtual bool CheckFormatForSaving(int format, int mode);
  // With `toAllBlocks`, every present block but DIM converts its values first.
  virtual void SetUnits(const SDimensionBlock& units, bool toAllBlocks);
  virtual bool Validate();
  virtual void CreateBlocks();

  // Writes the project to `path` (its own file name when empty) so that a failure leaves
  // the old file untouched; the reason of a failure is in GetErrors().
  bool Save(const SString& path = SString());

  SFileBlock* GetBlock(const SString& name);
  SHeaderBlock* GetHeaderBlock();
  SDimensionBlock* GetDimensionBlock();
  SGeometryBlock* GetGeometryBlock();
  SFrequencyBlock* GetFrequencyBlock();
  SControlBlock* GetControlBlock();
  SInterfaceBlock* GetInterfaceBlock();
  STranslatorBlock* GetTranslatorBlock();
  SResponseBlock* GetResponseBlock();
  SJXYBlock* GetJXYBlock();
  SOptimizationBlock* GetOptimizationBlock();
  SVariableSweepBlock* GetVariableSweepBlock();
  SFileOutputBlock* GetFileOutputBlock();
  SParameterBlock* GetParameterBlock();
  SCircuitBlock* GetCircuitBlock();
  SSubdivisionBlock* GetSubdivisionBlock();
  SQsgBlock* GetQsgBlock();
  S3dOptionsBlock* Get3dOptionsBlock();
  SSMDBlock* GetSMDBlock();
  bool IsPresent(const SString& name);
  bool BlocksCreated() const { return itsBlocksCreated; }

  // Normalises the name with the project's file type; clears `loaded` unless asked not to
  // or the name is unchanged.
  void SetFileName(const SString& name, bool keepLoaded = false);
  const SVeloraFileName& GetFileName() const { return itsFileName; }

  // <dir>/veldata/<name> and what lies in it.
  SString GetDataDirectory() const;
  SString GetSubsectionFile() const;
  SString GetDocumentationDirectory() const;
  SString GetAutosaveFile() const;
  SString GetFileMappingFile() const;
  SString GetLockFile() const;

  // A lock file's two values; "Error" for both when it can't be read.
  static bool ReadLockFile(const SString& path, SString& time, SString& user);
  int CheckLock() const;
  // Writes the lock file; false when another holder's lock stands.
  bool Lock();
  // Removes the lock file this project wrote.
  bool Unlock();

  const QStringList& GetReadSet() const { return itsReadSet; }
  const QStringList& GetWriteOrder() const { return itsWriteOrder; }
  const SString& GetVersionText() const { return itsVersionText; }
  int GetFileVersion() const { return itsFileVersion; }
  // The file type of the FTYP magic read (6 for VELPROJ, 47 for VELORAPRJ).
  int GetFileTypeRead() const { return itsFileTypeRead; }
  // The FTYP number read is newer than this program knows.
  bool IsFileNewer() const;
  bool IsLoaded() const { return itsLoaded; }
  void SetLoaded(bool on) { itsLoaded = on; }
  bool IsConverted() const { return itsConverted; }
  bool IsTemplateRead() const { return itsTemplateRead; }
  void SetTemplateRead(bool on) { itsTemplateRead = on; }
  int GetProjectTypeSet() const { return itsProjectType; }
  // Hertz.
  double GetHighestFrequency() const { return itsHighestFrequency; }
  SProjectErrorManager& GetErrors() { return itsErrors; }
  const SProjectErrorManager& GetErrors() const { return itsErrors; }
  SProjectFileMapping& GetFileMapping() { return itsFileMapping; }

  // The circuit of the GEO block, or null.
  SCircuit* GetCircuit();
  // The circuit's variable of that name, made when missing; null without a circuit
  // (message 7045).
  SVariable* FindOrMakeVar(const SString& name);
  // Names that an equation can't use are repaired and made unique, and the references of
  // the other blocks follow; then each equation is compiled and worked out once.
  void RepairVariableNames();
  void EvaluateVariables();

  // What equations ask of their project.
  bool GetEquationProperty(int code, double& value) const override;
  bool LookupTable(const SString& name, char mode, int dimensions, double x, double y, double& value) const override;
  SVarSource* FindVariableSource(const SString& name) override;
  double GetFrequencyFactor() const override;

protected:
  // Blocks with data, in creation order.
  std::vector<SFileBlock*> PresentBlocks();
  static int LineOfFile(const SFile& file);
  // The steps of a read that carry older content into its current place.
  void MoveParallelSubsToOptions();
  void DropFrequencyOptions();

  SVeloraFileName itsFileName;
  SBlockDictionary itsBlocks;
  QStringList itsReadSet;
  QStringList itsWriteOrder;
  SString itsVersionText;
  int itsFileVersion = 0;
  int itsFileTypeRead = SVeloraFileName::FT_VEL;
  bool itsBlocksCreated = false;
  bool itsLoaded = false;
  SProjectErrorManager itsErrors;
  bool itsConverted = false;
  SProjectFileMapping itsFileMapping;
  int itsProjectType = -1;
  bool itsTemplateRead = false;
  double itsHighestFrequency = 1e9;
  mutable SEquationTables itsTables;
  // The time of the lock this project wrote, empty without one.
  SString itsLockTime;
};

#endif
