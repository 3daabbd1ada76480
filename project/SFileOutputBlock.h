#ifndef SFILEOUTPUTBLOCK_H
#define SFILEOUTPUTBLOCK_H

#include "SFileBlock.h"
#include "SOrdered.h"

class SBaseOutputFile;

// FILEOUT: the folder of an analysis's output files and the files, each kept as its line.
// The folder is held absolute; "$BASENAME" in it stands for the project's name, so a folder
// named after the project follows the project to a new name.
class SFileOutputBlock : public SFileBlock {
  SCOLLECTABLE_DECLARE(SFileOutputBlock)
public:
  explicit SFileOutputBlock(SProject* owner = nullptr) : SFileBlock(owner, "FILEOUT") {}
  SFileOutputBlock(const SFileOutputBlock& other);
  SFileOutputBlock& operator=(const SFileOutputBlock&) = delete;
  ~SFileOutputBlock() override { itsFiles.clearAndDestroy(); }
  SCollectable* newSpecies() const override { return new SFileOutputBlock(); }
  SCollectable* copy() const override { return new SFileOutputBlock(*this); }

  // In the oldest files an output file may follow the block's name on its first line.
  bool ReadFirstLine(SFile& file) override;
  // An entry that can't be read is message 7132 with its line, and ends the read.
  bool ReadBody(SFile& file, SProjectErrorManager& errors) override;
  void WriteBody(SProjectStream& out) override;
  void FileNameChanged(const SString& newName) override;
  void RenameVariable(const SString& oldName, const SString& newName) override;

  const SString& GetFolder() const { return itsFolder; }
  // "$BASENAME" stands for the project's name; a relative folder is taken against the
  // project's directory.
  void SetFolder(const SString& folder);
  size_t Count() const { return itsFiles.entries(); }
  SBaseOutputFile* Get(size_t i) const;
  // Takes ownership.
  void Add(SBaseOutputFile* file);
  // The variables that the output files name, in order of first mention.
  QStringList GetVariableNames() const;

private:
  // The project's file name, or the last one it had (a template read drops it).
  SString ProjectName() const;
  // The folder as written for the project file `projectName`; empty for the default.
  SString FolderText(const SString& projectName) const;
  static SString Expand(const SString& text, const SString& projectName);

  SString itsFolder;
  SOrdered itsFiles;
  SString itsProjectName;
};

#endif
