#ifndef SSMDBLOCK_H
#define SSMDBLOCK_H

#include "SFileBlock.h"

#include <QMap>

// SMDFILES: the data files of the project's components, by component file id. Names are
// kept absolute in memory and written relative to the project's directory.
class SSMDBlock : public SFileBlock {
  SCOLLECTABLE_DECLARE(SSMDBlock)
  SCOLLECTABLE_COPYABLE(SSMDBlock)
public:
  explicit SSMDBlock(SProject* owner = nullptr) : SFileBlock(owner, "SMDFILES") {}

  bool ReadBody(SFile& file, SProjectErrorManager& errors) override;
  void WriteBody(SProjectStream& out) override;
  // Every file must exist (message 7213 for the first that doesn't).
  bool Validate(SProjectErrorManager& errors) override;

  void SetFile(int id, const SString& name) { itsFiles.insert(id, name); }
  SString GetFile(int id) const { return itsFiles.value(id); }
  const QMap<int, SString>& GetFiles() const { return itsFiles; }
  void Clear() { itsFiles.clear(); }

private:
  // The directory of the project's file, or empty without one.
  SString ProjectDirectory() const;

  QMap<int, SString> itsFiles;
};

#endif
