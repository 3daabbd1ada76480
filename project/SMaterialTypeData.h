#ifndef SMATERIALTYPEDATA_H
#define SMATERIALTYPEDATA_H

#include "SMaterialData.h"
#include "SString.h"

// What metal, via and brick types share: a name, a fill pattern and the number the file
// gives the type (-2 until the writer numbers it; polygons refer to types by it).
class SMaterialTypeData : public SMaterialData {
public:
  SMaterialTypeData() {}
  explicit SMaterialTypeData(const SString& name) : itsTypeName(name) {}

  const SString& GetTypeName() const { return itsTypeName; }
  void SetTypeName(const SString& name) {
    itsTypeName = name;
    itsNameSet = 1;
  }
  int GetPattern() const { return itsPattern; }
  // A negative pattern is a program error.
  void SetPattern(int pattern);
  int GetFileId() const { return itsFileId; }
  void SetFileId(int id) { itsFileId = id; }
  const SString& GetTechFile() const { return itsTechFile; }
  void SetTechFile(const SString& name) {
    itsTechFile = name;
    if (name.isEmpty()) itsBuiltIn = itsSecondFlag = 0;
  }
  bool IsBuiltIn() const { return itsBuiltIn != 0; }
  void SetBuiltIn(bool on) { itsBuiltIn = on ? 1 : 0; }

protected:
  SString itsTypeName;
  unsigned char itsFirstFlag = 1;
  int itsPattern = 0;
  int itsFileId = -2;
  unsigned char itsPatternSet = 1;
  unsigned char itsNameSet = 1;
  SString itsTechFile;
  unsigned char itsBuiltIn = 0;
  unsigned char itsSecondFlag = 0;
};

#endif
