#include "SProjectFileMapping.h"

#include "SCommentedFile.h"
#include "SProjectClassID.h"

#include <QFileInfo>

SCOLLECTABLE_DEFINE(SProjectFileMapping, SID_PROJECTFILEMAPPING, &SCollectable::staticTypeInfo())

bool SProjectFileMapping::Read() {
  itsNames.clear();
  if (itsPath.isEmpty() || !QFileInfo(itsPath.qstring()).isFile()) return true;
  SCommentedFile file(itsPath);
  if (!file.IsOk()) return false;
  while (file.NextLine()) {
    SString from, to;
    if (file.GetToken(from) && file.GetToken(to)) itsNames.insert(from.qstring(), to.qstring());
  }
  return true;
}
