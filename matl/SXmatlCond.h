#ifndef SXMATLCOND_H
#define SXMATLCOND_H

#include "SMetalType.h"

// A "conductor" of a technology file: a named metal, stated by one of the "condspec"
// kinds. The kind decides the value attributes: a conductivity (with INF), a resistivity,
// a sheet resistance or a resistance per via in the conductivity field with its loss type,
// or Rdc, Rrf, Xdc and Ls.
class SXmatlCond : public SMetalTypeData {
public:
  enum Kind { Cond = 0, Rsvy = 1, ShRes = 2, Rpv = 3, Res = 4, RdcRrf = 5, General = 6, Sense = 7, Surface = 8 };
  // Which value attributes a kind has.
  enum Value { ValueCond = 1, ValueRsvy = 2, ValueShRes = 4, ValueRpv = 8, ValueRdc = 16, ValueRrf = 32,
               ValueXdc = 64, ValueLs = 128 };

  SXmatlCond();
  virtual SXmatlCond* Clone() const { return new SXmatlCond(*this); }

  // The "condspec" word of a kind, and the kind of a word (-1 for none).
  static const char* KindWord(int kind);
  static int KindOf(const SString& word);
  // The Value bits of a kind.
  static int Values(int kind);

  const SString& GetName() const { return itsName; }
  void SetName(const SString& name) { itsName = name; }
  bool IsPrivate() const { return itsPrivate; }
  void SetPrivate(bool on) { itsPrivate = on; }
  int GetKind() const { return itsKind; }
  // Also sets the loss type and model that the kind stands for.
  void SetKind(int kind);
  long long GetLine() const { return itsLine; }
  void SetLine(long long line) { itsLine = line; }

  // The metal type (SMatlMetalData::MetalType) of a kind without a conductivity; -1 for
  // those with one, where the model decides.
  int GetFixedMetalType() const;
  // Name, flag, kind and the values of the kind.
  bool IsSame(const SXmatlCond& other) const;
  // Multiplies the values of one dimension (SMatlUtil::Dimension).
  void Scale(int dimension, double factor);

private:
  SString itsName;
  bool itsPrivate = false;
  int itsKind = Cond;
  long long itsLine = 0;
};

#endif
