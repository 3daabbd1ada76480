#include "SProject.h"

#include "S3dOptionsBlock.h"
#include "SBoxSide.h"
#include "SCircuit.h"
#include "SCircuitBlock.h"
#include "SCommentedFile.h"
#include "SControlBlock.h"
#include "SDimensionBlock.h"
#include "SEqnElement.h"
#include "SFileOutputBlock.h"
#include "SFrequencyBlock.h"
#include "SGeometryBlock.h"
#include "SHeaderBlock.h"
#include "SInitializationFile.h"
#include "SInterfaceBlock.h"
#include "SJXYBlock.h"
#include "SOptimizationBlock.h"
#include "SParameterBlock.h"
#include "SProjectClassID.h"
#include "SProjectFile.h"
#include "SProjectFormat.h"
#include "SQsgBlock.h"
#include "SRefPlane.h"
#include "SResponseBlock.h"
#include "SSMDBlock.h"
#include "SSMDev.h"
#include "SSafeSave.h"
#include "SSubdivisionBlock.h"
#include "STime.h"
#include "STranslatorBlock.h"
#include "SVariable.h"
#include "SVariableName.h"
#include "SVariableSweepBlock.h"
#include "SVeloraError.h"
#include "SVeloraTrace.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cmath>
#include <memory>

SCOLLECTABLE_DEFINE(SProject, SID_PROJECT, &SCollectable::staticTypeInfo())

namespace {
const int kProjectTitle = 5602;
const int kPlainText = 7045;

SString CurrentUser() {
  QByteArray user = qgetenv("USER");
  if (user.isEmpty()) user = qgetenv("LOGNAME");
  if (user.isEmpty()) user = "unknown";
  return SString::fromUtf8(user);
}

QStringList Names(std::initializer_list<const char*> names) {
  QStringList list;
  for (const char* name : names) list.append(QLatin1String(name));
  return list;
}
}  // namespace

SProject::SProject() {
  SProjectFormat::SetWriteFormat(SProjectFormat::kCurrent);
  SetWriteOrder(0);
}

SProject::SProject(const SString& fileName) : SProject() { SetFileName(fileName); }

SProject::~SProject() {}

void SProject::CreateBlocks() {
  if (itsBlocksCreated) return;
  itsBlocksCreated = true;
  itsBlocks.Add(new SHeaderBlock(this));
  itsBlocks.Add(new SDimensionBlock(this));
  itsBlocks.Add(new SGeometryBlock(this));
  itsBlocks.Add(new SFrequencyBlock(this));
  itsBlocks.Add(new SControlBlock(this));
  itsBlocks.Add(new SInterfaceBlock(this));
  itsBlocks.Add(new STranslatorBlock(this));
  itsBlocks.Add(new SResponseBlock(this));
  itsBlocks.Add(new SJXYBlock(this));
  itsBlocks.Add(new SOptimizationBlock(this));
  itsBlocks.Add(new SVariableSweepBlock(this));
  itsBlocks.Add(new SFileOutputBlock(this));
  itsBlocks.Add(new SParameterBlock(this));
  itsBlocks.Add(new SCircuitBlock(this));
  itsBlocks.Add(new SSubdivisionBlock(this));
  itsBlocks.Add(new SQsgBlock(this));
  itsBlocks.Add(new S3dOptionsBlock(this));
  itsBlocks.Add(new SSMDBlock(this));
  GetGeometryBlock()->SetAbbreviated(itsProjectType == GeometryProject || itsProjectType == NetlistProject);
}

SFileBlock* SProject::GetBlock(const SString& name) {
  CreateBlocks();
  return itsBlocks.Find(name);
}

bool SProject::IsPresent(const SString& name) {
  SFileBlock* block = GetBlock(name);
  return block && block->IsPresent();
}

SHeaderBlock* SProject::GetHeaderBlock() { return static_cast<SHeaderBlock*>(GetBlock("HEADER")); }
SDimensionBlock* SProject::GetDimensionBlock() { return static_cast<SDimensionBlock*>(GetBlock("DIM")); }
SGeometryBlock* SProject::GetGeometryBlock() { return static_cast<SGeometryBlock*>(GetBlock("GEO")); }
SFrequencyBlock* SProject::GetFrequencyBlock() { return static_cast<SFrequencyBlock*>(GetBlock("FREQ")); }
SControlBlock* SProject::GetControlBlock() { return static_cast<SControlBlock*>(GetBlock("CONTROL")); }
SInterfaceBlock* SProject::GetInterfaceBlock() { return static_cast<SInterfaceBlock*>(GetBlock("INTERFACE")); }
STranslatorBlock* SProject::GetTranslatorBlock() { return static_cast<STranslatorBlock*>(GetBlock("TRANSLATOR")); }
SResponseBlock* SProject::GetResponseBlock() { return static_cast<SResponseBlock*>(GetBlock("SID")); }
SJXYBlock* SProject::GetJXYBlock() { return static_cast<SJXYBlock*>(GetBlock("JXY")); }
SOptimizationBlock* SProject::GetOptimizationBlock() { return static_cast<SOptimizationBlock*>(GetBlock("OPT")); }
SVariableSweepBlock* SProject::GetVariableSweepBlock() {
  return static_cast<SVariableSweepBlock*>(GetBlock("VARSWP"));
}
SFileOutputBlock* SProject::GetFileOutputBlock() { return static_cast<SFileOutputBlock*>(GetBlock("FILEOUT")); }
SParameterBlock* SProject::GetParameterBlock() { return static_cast<SParameterBlock*>(GetBlock("VAR")); }
SCircuitBlock* SProject::GetCircuitBlock() { return static_cast<SCircuitBlock*>(GetBlock("CKT")); }
SSubdivisionBlock* SProject::GetSubdivisionBlock() { return static_cast<SSubdivisionBlock*>(GetBlock("SUBDIV")); }
SQsgBlock* SProject::GetQsgBlock() { return static_cast<SQsgBlock*>(GetBlock("QSG")); }
S3dOptionsBlock* SProject::Get3dOptionsBlock() { return static_cast<S3dOptionsBlock*>(GetBlock("3DOPTIONS")); }
SSMDBlock* SProject::GetSMDBlock() { return static_cast<SSMDBlock*>(GetBlock("SMDFILES")); }

std::vector<SFileBlock*> SProject::PresentBlocks() {
  CreateBlocks();
  std::vector<SFileBlock*> present;
  for (SFileBlock* block : itsBlocks.InOrder())
    if (block->IsPresent()) present.push_back(block);
  return present;
}

bool SProject::IsFileNewer() const { return SProjectFormat::IsNewer(itsFileVersion, itsFileTypeRead); }

// ---- names ----

void SProject::SetFileName(const SString& name, bool keepLoaded) {
  const int type = itsFileName.GetFileType() ? itsFileName.GetFileType() : static_cast<int>(SVeloraFileName::FT_VEL);
  const SVeloraFileName normal = name.isEmpty() ? SVeloraFileName() : SVeloraFileName(name, type);
  const bool changed = static_cast<const SString&>(normal) != static_cast<const SString&>(itsFileName);
  itsFileName = normal;
  itsErrors.SetFileName(itsFileName);
  if (itsBlocksCreated) {
    if (GetFileOutputBlock()->IsPresent()) GetFileOutputBlock()->FileNameChanged(itsFileName);
    if (GetSubdivisionBlock()->IsPresent()) GetSubdivisionBlock()->FileNameChanged(itsFileName);
  }
  if (changed && !keepLoaded) itsLoaded = false;
}

SString SProject::GetDataDirectory() const {
  if (itsFileName.isEmpty()) return SString();
  const SString directory = itsFileName.GetPath();
  const SString base = itsFileName.GetBaseName();
  if (directory.isEmpty()) return "veldata/" + base;
  return directory + (directory.endsWith("/") ? "veldata/" : "/veldata/") + base;
}

SString SProject::GetSubsectionFile() const {
  const SString directory = GetDataDirectory();
  return directory.isEmpty() ? directory : directory + "/sub/subsections.vel";
}

SString SProject::GetDocumentationDirectory() const {
  const SString directory = GetDataDirectory();
  return directory.isEmpty() ? directory : directory + "/doc";
}

SString SProject::GetAutosaveFile() const {
  const SString directory = GetDataDirectory();
  return directory.isEmpty() ? directory : directory + "/autosave.sgrx";
}

SString SProject::GetFileMappingFile() const {
  const SString directory = GetDataDirectory();
  return directory.isEmpty() ? directory : directory + "/filenames.map";
}

SString SProject::GetLockFile() const {
  const SString directory = GetDataDirectory();
  return directory.isEmpty() ? directory : directory + "/lock.lck";
}

// ---- types, read set, write order ----

int SProject::GetProjectType() {
  if (itsLoaded && itsBlocksCreated) {
    if (GetGeometryBlock()->IsPresent())
      return GetHeaderBlock()->GetSolverKind() == 1 ? SecondSolverProject : GeometryProject;
    if (GetCircuitBlock()->IsPresent()) return NetlistProject;
  }
  if (itsFileName.isEmpty())
    SFATAL("VL1005", "Must have valid filename to call this method: GetProjectType");
  const SString extension = itsFileName.GetExtension();
  if (extension == "geo") return GeoFile;
  if (extension == "net") return NetFile;
  if (extension == "jxy" || extension == "jxb") return JxyFile;
  const SString directory = GetDataDirectory();
  if (!directory.isEmpty() && QFileInfo::exists((directory + "/EmSolver.xml").qstring())) return SecondSolverProject;
  SCommentedFile file(itsFileName);
  for (int line = 0; line < 10 && file.NextLine(); ++line) {
    SString first;
    file.GetToken(first);
    if (first != "FTYP") continue;
    SString magic;
    file.GetToken(magic);
    if (magic == "VELORAPRJ") return NetlistProject;
    return GeometryProject;
  }
  return GeometryProject;
}

bool SProject::GetProjectDate(SString& date) {
  if (itsFileName.isEmpty()) SFATAL("VL1005", "Must have valid filename to call this method: GetProjectDate");
  date.clear();
  if (itsFileName.GetFileType() != SVeloraFileName::FT_VEL || !itsFileName.Exists()) return false;
  SCommentedFile file(itsFileName);
  file.SetCommentEscape("<");
  while (file.NextLine()) {
    SString first;
    file.GetToken(first);
    if (!first.startsWith("DAT")) continue;
    SString day, clock;
    file.GetToken(day);
    file.GetToken(clock);
    date = clock.isEmpty() ? day : day + " " + clock;
    return !date.isEmpty();
  }
  return false;
}

void SProject::SetProjectType(int type) {
  itsReadSet.clear();
  itsProjectType = type;
  switch (type) {
    case GeoFile:
      itsReadSet = Names({"VAR", "GEO", "HEADER", "DIM", "OPT", "VARSWP", "FREQ", "CONTROL", "INTERFACE", "TRANSLATOR",
                          "FILEOUT", "CKT", "SUBDIV", "QSG", "3DOPTIONS", "SMDFILES"});
      break;
    case NetFile:
      itsReadSet = Names({"VAR", "GEO", "HEADER", "DIM", "FREQ", "OPT", "VARSWP", "CONTROL", "INTERFACE", "FILEOUT",
                          "CKT", "SMDFILES"});
      break;
    case JxyFile:
      itsReadSet = Names({"VAR", "GEO", "HEADER", "DIM", "JXY", "CKT", "3DOPTIONS", "SMDFILES"});
      break;
    case GeometryProject:
      itsReadSet = Names({"VAR", "GEO", "HEADER", "DIM", "SID", "CKT", "SMDFILES"});
      break;
    case NetlistProject:
      itsReadSet = Names({"VAR", "GEO", "HEADER", "DIM", "OPT", "VARSWP", "FREQ", "CONTROL", "FILEOUT"});
      break;
    case SecondSolverProject:
      itsReadSet = Names({"VAR", "GEO", "HEADER", "DIM", "VARSWP", "FREQ", "CONTROL", "INTERFACE", "TRANSLATOR",
                          "FILEOUT", "SMDFILES"});
      break;
    default:
      break;
  }
  if (itsBlocksCreated)
    GetGeometryBlock()->SetAbbreviated(type == GeometryProject || type == NetlistProject);
}

void SProject::AddToReadSet(const SString& name) {
  if (!itsReadSet.contains(name.qstring())) itsReadSet.append(name.qstring());
}

void SProject::SetWriteOrder(int type) {
  switch (type) {
    case 0:
      itsWriteOrder = Names({"HEADER", "DIM", "VAR", "CKT", "FREQ", "CONTROL", "GEO", "SUBDIV", "OPT", "VARSWP", "FILEOUT",
                             "QSG", "INTERFACE", "TRANSLATOR", "3DOPTIONS", "SMDFILES"});
      break;
    case 1:
      itsWriteOrder =
          Names({"HEADER", "DIM", "VAR", "CKT", "FREQ", "CONTROL", "GEO", "OPT", "VARSWP", "SID", "FILEOUT"});
      break;
    case 2:
      itsWriteOrder = Names({"JXY"});
      break;
    default:
      itsWriteOrder.clear();
      break;
  }
}

void SProject::AddToWriteOrder(const SString& name) { itsWriteOrder.append(name.qstring()); }

// ---- reading ----

bool SProject::Read(int checkDataDirectory) {
  VeloraTrace(3, TRACE_GENERAL, "SProject::Read() Filename: %s", itsFileName.data());
  if (itsLoaded) return true;
  itsErrors.Clear();
  itsErrors.SetFileName(itsFileName);
  SProjectFile file;
  if (!QFileInfo(itsFileName.qstring()).isFile() || !file.Open(itsFileName) || !file.NextLine()) {
    itsErrors.AddError(SProjectErrorManager::Error, -1, 7041);
    VeloraTrace(3, TRACE_GENERAL, "SProject::Read() Failed to open Filename: %s", itsFileName.data());
    return false;
  }
  const bool ok = ReadStream(file, checkDataDirectory);
  if (itsErrors.Count() > 0 && IsFileNewer() && !itsErrors.Contains(7049))
    itsErrors.AddErrorAtFront(SProjectErrorManager::Warning, -1, 7049, "Project");
  // The solver description of a second-solver level belongs to the analysis engine.
  // The messages keep the name: their lines count in the file that was read.
  if (itsTemplateRead) itsFileName = SVeloraFileName();
  return ok;
}

bool SProject::ReadStream(SFile& file, int checkDataDirectory) {
  CreateBlocks();
  itsErrors.Clear();
  const int nameType = itsFileName.isEmpty() ? static_cast<int>(SVeloraFileName::FT_VEL) : itsFileName.GetFileType();
  itsFileTypeRead = nameType == SVeloraFileName::FT_NET ? static_cast<int>(SVeloraFileName::FT_NET)
                                                         : static_cast<int>(SVeloraFileName::FT_VEL);
  itsFileVersion = 1;
  itsVersionText.clear();

  SString token;
  file.PeekToken(token);
  const bool hasFtyp = token.compare("FTYP", true) == 0;
  if (hasFtyp) {
    SString magic, number;
    file.GetToken(token);
    file.GetToken(magic);
    int version = 1;
    if (file.GetToken(number)) {
      bool ok = false;
      const int value = number.toInt(&ok);
      if (ok) version = value;
    }
    const int type = SVeloraFileName::TypeOfFileTypeWord(magic);
    if (type != SVeloraFileName::FT_VEL && type != SVeloraFileName::FT_NET &&
        type != SVeloraFileName::FT_NETLIST_PROJECT) {
      itsErrors.AddError(SProjectErrorManager::Error, LineOfFile(file), 7047);
      return false;
    }
    itsFileVersion = version;
    itsFileTypeRead = type;
    if (type == SVeloraFileName::FT_VEL && (version == 6 || version == 7))
      itsErrors.AddError(SProjectErrorManager::Warning, LineOfFile(file), 7361, "Project", version);
    SInitializationFile* settings = SInitializationFile::GetGlobal();
    if (IsFileNewer() && settings && settings->GetBool("Velora", "FTYP_Warning", false))
      itsErrors.AddError(SProjectErrorManager::Warning, LineOfFile(file), 7049, "Project");
    file.NextLine();
  } else if (nameType == SVeloraFileName::FT_VEL) {
    itsErrors.AddError(SProjectErrorManager::Error, LineOfFile(file), 7047);
    return false;
  }

  file.PeekToken(token);
  if (token.startsWith("MKDIR")) {
    MakeDataDirectory();
    file.NextLine();
  }

  if (nameType == SVeloraFileName::FT_JXY) {
    for (;;) {
      file.PeekToken(token);
      if (token.startsWith("VER") || !file.NextLine()) break;
    }
  }
  if (nameType != SVeloraFileName::FT_NET) {
    file.PeekToken(token);
    if (token.startsWith("VER")) {
      file.GetToken(token);
      file.GetToken(itsVersionText);
      file.NextLine();
    }
  }

  itsFileMapping.Bind(GetFileMappingFile());
  if (!itsTemplateRead && !itsFileMapping.GetPath().isEmpty()) itsFileMapping.Read();

  const SString extension = itsFileName.GetExtension();
  switch (nameType) {
    case SVeloraFileName::FT_VEL:
    case SVeloraFileName::FT_BCK:
      itsErrors.SetTitleId(7140);
      if (checkDataDirectory) CheckDataDirectory();
      return ReadFile(file);
    case SVeloraFileName::FT_GEO:
      itsErrors.SetTitleId(6010);
      return ReadGeoFile(file);
    case SVeloraFileName::FT_NET:
      itsFileVersion = 0;
      itsErrors.SetTitleId(7190);
      return ReadNetFile(file);
    case SVeloraFileName::FT_JXY:
      itsErrors.SetTitleId(6560);
      return ReadJxyFile(file);
    case SVeloraFileName::FT_RSP:
    case SVeloraFileName::FT_D:
    case SVeloraFileName::FT_ND:
    case SVeloraFileName::FT_PD:
    case SVeloraFileName::FT_PND:
    case SVeloraFileName::FT_SNP:
      itsErrors.AddError(SProjectErrorManager::Error, -1, 7144, extension.data());
      return false;
    default:
      itsErrors.AddError(SProjectErrorManager::Error, -1, 7145, extension.data());
      return false;
  }
}

int SProject::LineOfFile(const SFile& file) { return static_cast<int>(file.LineCount()); }

bool SProject::ReadFile(SFile& file) {
  for (;;) {
    if (!file.HasToken()) {
      if (!file.NextLine()) break;
      continue;
    }
    SString token;
    file.PeekToken(token);
    SFileBlock* block = itsBlocks.Find(token);
    if (!block) {
      // Text between blocks is passed over without a word.
      if (!file.NextLine()) break;
      continue;
    }
    if (itsReadSet.contains(token.qstring())) {
      VeloraTrace(3, TRACE_GENERAL, "SProject::ReadFile() Block: %s", token.data());
      if (!block->Read(file, itsErrors)) {
        VeloraTrace(3, TRACE_GENERAL, "SProject::ReadFile() Block Failed: %s", token.data());
        return false;
      }
    } else {
      VeloraTrace(3, TRACE_GENERAL, "SProject::ReadFile() Block Skipped: %s", token.data());
      block->Skip(file);
      block->SetPresent(false);
    }
  }
  itsLoaded = true;
  if (!GetHeaderBlock()->IsPresent()) GetHeaderBlock()->SetDefaults();
  SControlBlock* control = GetControlBlock();
  if (!control->IsPresent()) control->SetDefaults();
  if (SCircuit* circuit = GetGeometryBlock()->GetCircuit()) SSMDev::BindFiles(*circuit, *GetSMDBlock());
  RepairVariableNames();
  EvaluateVariables();
  if (control->itsFMax.IsValid())
    itsHighestFrequency =
        control->itsFMax.GetValue() * GetDimensionBlock()->GetFactor(SDimensionBlock::Frequency);
  if (GetFrequencyBlock()->IsPresent())
    GetFrequencyBlock()->MoveToSweeps(*GetVariableSweepBlock(), control->HasOption("ReplaceFreqs"),
                                      control->HasOption("AdditionalFreqs"));
  MoveParallelSubsToOptions();
  DropFrequencyOptions();
  return true;
}

// The current format keeps no parallel subsection lengths in GEO: they live on as speed
// options, which the analysis reads instead.
void SProject::MoveParallelSubsToOptions() {
  SCircuit* circuit = GetGeometryBlock()->GetCircuit();
  if (circuit == nullptr || GetProjectType() == NetlistProject) return;
  static const struct {
    int side;
    const char* option;
  } kSides[] = {{SBoxSide::Left, "Zpsubleft"},
                {SBoxSide::Top, "Zpsubtop"},
                {SBoxSide::Right, "Zpsubright"},
                {SBoxSide::Bottom, "Zpsubbot"}};
  SControlBlock* control = GetControlBlock();
  bool added = false;
  for (const auto& side : kSides) {
    const double length = circuit->GetParallelSubs(side.side);
    if (std::fabs(length) <= 1e-12) continue;
    control->AddOption(SString::format("%s%g", side.option, length));
    added = true;
  }
  if (!added) return;
  control->ConvertOptions();
  const char* help = itsProjectType == NetFile
                         ? "\"qthelp://main_help/doc/CircuitParallelSubs.html\""
                         : "<a href=\"qthelp://main_help/doc/CircuitParallelSubs.html\"> help </a>";
  itsErrors.AddError(SProjectErrorManager::Warning, -1, 6041, help);
}

void SProject::DropFrequencyOptions() {
  SControlBlock* control = GetControlBlock();
  control->RemoveOption("ReplaceFreqs");
  control->RemoveOption("AdditionalFreqs");
  control->ConvertOptions();
}

bool SProject::ReadGeoFile(SFile& file) {
  SGeometryBlock* geometry = GetGeometryBlock();
  if (!geometry->ReadBody(file, itsErrors)) return false;
  geometry->SetPresent(true);
  GetControlBlock()->SetDefaults();
  GetHeaderBlock()->SetDefaults();
  GetDimensionBlock()->SetDefaults();
  itsLoaded = true;
  itsConverted = true;
  return true;
}

bool SProject::ReadNetFile(SFile& file) {
  GetHeaderBlock()->SetDefaults();
  GetControlBlock()->SetDefaults();
  GetControlBlock()->itsNetlist = true;
  itsConverted = true;
  return ReadFile(file);
}

bool SProject::ReadJxyFile(SFile& file) {
  SString token;
  for (;;) {
    file.PeekToken(token);
    if (token == "GEO") break;
    if (!file.NextLine()) return false;
  }
  if (!GetGeometryBlock()->Read(file, itsErrors)) return false;
  for (;;) {
    file.PeekToken(token);
    if (token == "JXY") break;
    if (!file.NextLine()) {
      itsLoaded = true;
      return true;
    }
  }
  const bool ok = GetJXYBlock()->Read(file, itsErrors);
  itsLoaded = ok;
  return ok;
}

// ---- writing ----

bool SProject::Write(SProjectStream& out) {
  const int format = SProjectFormat::GetWriteFormat();
  if (format >= 2 && !itsFileName.isEmpty()) CheckDataDirectory();
  // The current format keeps frequencies as sweeps.
  if (format >= SProjectFormat::kCurrent && itsBlocksCreated) GetFrequencyBlock()->SetPresent(false);
  return WriteFile(out);
}

bool SProject::WriteFile(SProjectStream& out) {
  if (!itsBlocksCreated) return true;
  const int format = SProjectFormat::GetWriteFormat();
  if (format < 3) SProjectFormat::SetLengthConversion(GetDimensionBlock()->GetFactor(SDimensionBlock::Length));
  SGeometryBlock* geometry = GetGeometryBlock();
  if (format < 2) {
    if (geometry->IsPresent()) geometry->WriteBody(out);
    return true;
  }
  const SString version = SProjectFormat::VersionText(format);
  const int number = SProjectFormat::FileNumber(format);
  if (geometry->IsPresent())
    out << "FTYP VELPROJ " << number << " ! Velora Project File\n";
  else
    out << "FTYP VELORAPRJ " << number << " ! Velora Netlist Project File\n";
  out << "VER " << version << '\n';
  if (SCircuit* circuit = geometry->GetCircuit())
    if (SSMDev::CopyFiles(*circuit, *GetSMDBlock())) GetSMDBlock()->SetPresent(true);
  // Older formats keep the plain frequency sweeps in FREQ; the guard puts the block back.
  std::unique_ptr<SFrequencyBlock::SFromSweeps> frequencies;
  if (format < SProjectFormat::kCurrent)
    frequencies.reset(new SFrequencyBlock::SFromSweeps(*GetFrequencyBlock(), *GetVariableSweepBlock()));
  for (const QString& name : itsWriteOrder) {
    SFileBlock* block = itsBlocks.Find(SString(name));
    if (block && block->IsPresent() && !block->Write(out)) return false;
  }
  return true;
}

bool SProject::Save(const SString& path) {
  const SString target = path.isEmpty() ? SString(itsFileName) : path;
  if (target.isEmpty()) {
    itsErrors.AddError(SProjectErrorManager::Error, -1, 7048, "", "the project has no file name");
    return false;
  }
  // What a save reports concerns its target.
  itsErrors.SetFileName(target);
  // The text goes to the temporary file as it is made: a large layout isn't held twice.
  SSafeSave save(target);
  // Only a file that stood there is "unchanged"; a save to a new name or over a directory
  // says so otherwise.
  const bool hadFile = QFileInfo(target.qstring()).isFile();
  auto fail = [this, &save, &target, hadFile](const SString& reason) {
    save.Abort();
    itsErrors.AddError(SProjectErrorManager::Error, -1, hadFile ? 7046 : 7048, target.data(), reason.data());
    return false;
  };
  if (!save.Begin()) return fail(save.GetErrorText());
  SProjectStream out;
  out.SetSink([&save](const char* data, size_t size) { return save.Append(data, size); });
  if (!Write(out)) return fail("a block could not be written");
  if (!out.Flush() || !save.Finish()) return fail(save.GetErrorText());
  return true;
}

// ---- data directory, lock ----

bool SProject::MakeDataDirectory() {
  const SString directory = GetDataDirectory();
  if (directory.isEmpty()) return false;
  if (QDir().mkpath(directory.qstring())) return true;
  VeloraErrorReport(kProjectTitle, 5740, directory.data());
  return false;
}

bool SProject::CheckDataDirectory() {
  if (itsTemplateRead) return true;
  const SString directory = GetDataDirectory();
  if (directory.isEmpty() || QFileInfo(directory.qstring()).isDir()) return true;
  MakeDataDirectory();
  return false;
}

bool SProject::ReadLockFile(const SString& path, SString& time, SString& user) {
  QFile file(path.qstring());
  if (!file.open(QIODevice::ReadOnly)) {
    time = user = "Error";
    return false;
  }
  const auto clean = [](QString text, int skip) {
    text = text.mid(skip);
    text.remove(QLatin1Char('\r'));
    text.remove(QLatin1Char('\n'));
    text.remove(QLatin1Char('\t'));
    return SString(text);
  };
  time = clean(QString::fromUtf8(file.readLine()), 11);
  user = clean(QString::fromUtf8(file.readLine()), 6);
  return true;
}

int SProject::CheckLock() const {
  const SString path = GetLockFile();
  if (path.isEmpty() || !QFileInfo::exists(path.qstring())) return NoLock;
  SString time, user;
  ReadLockFile(path, time, user);
  if (!itsLockTime.isEmpty() && time == itsLockTime && user == CurrentUser()) return LockedBySelf;
  return LockRefused;
}

bool SProject::Lock() {
  const int state = CheckLock();
  if (state == LockedBySelf) return true;
  if (state != NoLock) return false;
  const SString directory = GetDataDirectory();
  if (directory.isEmpty() || !QDir().mkpath(directory.qstring())) return false;
  const SString time = STime().dateTime();
  QFile file(GetLockFile().qstring());
  if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate)) return false;
  file.write(("LOCK TIME: " + time + "\nUSER: " + CurrentUser() + "\n").toUtf8());
  itsLockTime = time;
  return true;
}

bool SProject::Unlock() {
  if (itsLockTime.isEmpty()) return false;
  itsLockTime.clear();
  return QFile::remove(GetLockFile().qstring());
}

// ---- checks ----

bool SProject::CheckFormatForSaving(int format, int mode) {
  QStringList problems;
  for (SFileBlock* block : PresentBlocks()) block->CheckFormat(format, problems);
  if (problems.isEmpty()) return true;
  SString text(problems.join(QLatin1Char('\n')));
  if (mode == 3) text += "\nYou will not be able to save this file unless you remove the offending objects.";
  if (mode == 1)
    VeloraWarningReport(kProjectTitle, kPlainText, text.data());
  else if (mode == 2 || mode == 3)
    VeloraErrorReport(kProjectTitle, kPlainText, text.data());
  return false;
}

void SProject::SetUnits(const SDimensionBlock& units, bool toAllBlocks) {
  SDimensionBlock* dimension = GetDimensionBlock();
  if (toAllBlocks)
    for (SFileBlock* block : PresentBlocks())
      if (block != dimension) block->ChangeUnits(units);
  for (int family = 0; family < SDimensionBlock::FamilyCount; ++family)
    dimension->SetUnit(family, units.GetUnitName(family));
}

bool SProject::Validate() {
  itsErrors.Clear();
  itsErrors.SetTitleId(7210);
  bool ok = true;
  for (SFileBlock* block : PresentBlocks()) ok = block->Validate(itsErrors) && ok;
  if (ok && !GetGeometryBlock()->IsPresent() && !GetCircuitBlock()->IsPresent()) {
    itsErrors.AddError(SProjectErrorManager::Error, -1, 7211, "Circuit or Geometry");
    ok = false;
  }
  if (!GetControlBlock()->IsPresent()) {
    itsErrors.AddError(SProjectErrorManager::Error, -1, 7212);
    ok = false;
  }
  if (!ok && itsErrors.GetSeverity() < SProjectErrorManager::Error) {
    itsErrors.SetTitleId(7270);
    itsErrors.Report();
    return true;
  }
  return ok;
}

// ---- variables and equations

SCircuit* SProject::GetCircuit() {
  if (!itsBlocksCreated) return nullptr;
  return GetGeometryBlock()->GetCircuit();
}

SVariable* SProject::FindOrMakeVar(const SString& name) {
  SCircuit* circuit = GetCircuit();
  if (circuit == nullptr) {
    itsErrors.AddError(SProjectErrorManager::Error, -1, 7045, "FindOrMakeVar- No blocks initialized");
    return nullptr;
  }
  return circuit->FindOrMakeVariable(name);
}

void SProject::RepairVariableNames() {
  SCircuit* circuit = GetCircuit();
  if (circuit == nullptr) return;
  std::vector<SVariable*> variables;
  circuit->GetVariables(variables);
  for (SVariable* variable : variables) {
    const SString old = variable->GetName();
    SString name = old;
    if (!SVariableName::Repair(name)) continue;
    SVariableName::MakeUnique(name, [&](const SString& candidate) {
      const SVariable* other = circuit->FindVariable(candidate);
      return other != nullptr && other != variable;
    });
    variable->SetName(name);
    for (SFileBlock* block : PresentBlocks()) block->RenameVariable(old, name);
  }
}

void SProject::EvaluateVariables() {
  SCircuit* circuit = GetCircuit();
  if (circuit == nullptr) return;
  std::vector<SVariable*> variables;
  circuit->GetVariables(variables);
  // Held equations compile now that every variable they may name exists.
  for (SVariable* variable : variables) {
    variable->Value().SetProject(this);
    variable->Value().CompileHeldText(nullptr, true);
  }
  if (!circuit->EvaluateVariables())
    itsErrors.AddError(SProjectErrorManager::Warning, -1, 7045, circuit->GetErrorText().data());
}

bool SProject::GetEquationProperty(int code, double& value) const {
  SCircuit* circuit = const_cast<SProject*>(this)->GetCircuit();
  if (circuit == nullptr) return false;
  const SSize box = circuit->GetBoxSize();
  switch (code) {
  case SEqnProperty::CELL_X: value = circuit->GetNumCellsX() > 0 ? box.width() / circuit->GetNumCellsX() : 0.0; break;
  case SEqnProperty::CELL_Y: value = circuit->GetNumCellsY() > 0 ? box.height() / circuit->GetNumCellsY() : 0.0; break;
  case SEqnProperty::CELLS_X: value = circuit->GetNumCellsX(); break;
  case SEqnProperty::CELLS_Y: value = circuit->GetNumCellsY(); break;
  case SEqnProperty::BOX_X: value = box.width(); break;
  case SEqnProperty::BOX_Y: value = box.height(); break;
  case SEqnProperty::REF_L:
  case SEqnProperty::REF_R:
  case SEqnProperty::REF_T:
  case SEqnProperty::REF_B: {
    static const int sides[] = {SBoxSide::Left, SBoxSide::Right, SBoxSide::Top, SBoxSide::Bottom};
    const SRefPlane* plane = circuit->GetRefPlane(sides[code - SEqnProperty::REF_L]);
    value = plane != nullptr ? plane->GetLength() : 0.0;
    break;
  }
  default: return false;
  }
  return true;
}

bool SProject::LookupTable(const SString& name, char mode, int dimensions, double x, double y, double& value) const {
  const SString directory = SString(QFileInfo(itsFileName.GetFullName().qstring()).absolutePath());
  return dimensions == 2 ? itsTables.Lookup2(name, directory, x, y, value)
                         : itsTables.Lookup1(name, directory, mode, x, value);
}

SVarSource* SProject::FindVariableSource(const SString& name) {
  SCircuit* circuit = GetCircuit();
  return circuit != nullptr ? circuit->FindVariable(name) : nullptr;
}

double SProject::GetFrequencyFactor() const {
  return const_cast<SProject*>(this)->GetDimensionBlock()->GetFactor(SDimensionBlock::Frequency);
}
