#ifndef SBASEOUTPUTFILE_H
#define SBASEOUTPUTFILE_H

#include "SCollectable.h"
#include "SProjectStream.h"
#include "SString.h"

#include <QStringList>

class SFile;

// One output file of an analysis, kept as the line that it is: its grammar belongs to the
// analysis side. Its text may name project variables as "$NAME" or "${NAME}" (so that each
// point of a sweep gets its own file); "$BASENAME" is the project's name, no variable.
class SBaseOutputFile : public SCollectable {
  SCOLLECTABLE_DECLARE(SBaseOutputFile)
  SCOLLECTABLE_COPYABLE(SBaseOutputFile)
public:
  enum Kind {
    Touchstone = 0, Scaled = 1, Touch = 2, Touch2 = 3, Cadence = 4, DataBank = 5, Csv = 6, Mdif = 7,
    EbMdif = 8, Gnu = 9, Spice = 11, TSpice = 12, BbExtract = 13, IndModel = 14
  };

  explicit SBaseOutputFile(int kind = Touchstone) : itsKind(kind) {}

  // The kind that a line's first word gives, -1 for none. Longer words that begin like
  // shorter ones are tested first.
  static int KindOfWord(const SString& word);
  // An entry for `kind`; null for a kind without a word.
  static SBaseOutputFile* Make(int kind);

  int GetKind() const { return itsKind; }
  const SString& GetText() const { return itsText; }
  // Takes the line from the current token on; false when nothing follows the word.
  bool Read(SFile& file);
  // The kinds the format knows.
  bool IsWritten(int format) const;
  void Write(SProjectStream& out) const;

  // The variables the text names, in order of first mention.
  QStringList GetVariableNames() const;
  void RenameVariable(const SString& oldName, const SString& newName);

private:
  int itsKind;
  SString itsText;
};

#endif
