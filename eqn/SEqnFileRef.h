#ifndef SEQNFILEREF_H
#define SEQNFILEREF_H

#include "SString.h"

// Where an equation came from: the kind of library that holds it, its file and line.
class SEqnFileRef {
public:
  enum Kind { VELORA_FILE = 0, SITE_FILE, USER_FILE, GRAPH_FILE, USER, UNKNOWN };

  SEqnFileRef() {}
  SEqnFileRef(Kind kind, const SString& fileName, int line = 0) : itsKind(kind), itsFileName(fileName), itsLine(line) {}

  Kind GetKind() const { return itsKind; }
  void SetKind(Kind kind) { itsKind = kind; }
  // "VELORA_FILE", "SITE_FILE", "USER_FILE", "GRAPH_FILE", "USER" or "UNKNOWN".
  SString GetKindName() const { return KindName(itsKind); }
  static SString KindName(Kind kind);
  // The kind of a keyword in any case; UNKNOWN for any other text.
  static Kind KindFromName(const SString& name);

  const SString& GetFileName() const { return itsFileName; }
  void SetFileName(const SString& fileName) { itsFileName = fileName; }
  // 0 when not known.
  int GetLine() const { return itsLine; }
  void SetLine(int line) { itsLine = line; }

private:
  Kind itsKind = UNKNOWN;
  SString itsFileName;
  int itsLine = 0;
};

#endif
