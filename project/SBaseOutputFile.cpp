#include "SBaseOutputFile.h"

#include "SFile.h"
#include "SProjectClassID.h"


SCOLLECTABLE_DEFINE(SBaseOutputFile, SID_BASEOUTPUTFILE, &SCollectable::staticTypeInfo())

namespace {
struct SKindWord {
  const char* word;
  bool withCase;
  int kind;
};

// Words are prefixes, so a longer word goes before one it begins with (TSPICE, TOUCH2).
const SKindWord kWords[] = {
    {"TSPICE", true, SBaseOutputFile::TSpice},   {"NCLINE", true, SBaseOutputFile::TSpice},
    {"TS", true, SBaseOutputFile::Touchstone},   {"SC", false, SBaseOutputFile::Scaled},
    {"TOUCH2", false, SBaseOutputFile::Touch2},  {"TOUCH", false, SBaseOutputFile::Touch},
    {"CADENCE", false, SBaseOutputFile::Cadence}, {"DATA_BANK", false, SBaseOutputFile::DataBank},
    {"CSV", false, SBaseOutputFile::Csv},         {"MDIF", false, SBaseOutputFile::Mdif},
    {"EBMDIF", false, SBaseOutputFile::EbMdif},   {"GNU", false, SBaseOutputFile::Gnu},
    {"SPICE", false, SBaseOutputFile::Spice},     {"PSPICE", false, SBaseOutputFile::Spice},
    {"PIMODEL", false, SBaseOutputFile::Spice},   {"BBEXTRACT", false, SBaseOutputFile::BbExtract},
    {"INDMODEL", false, SBaseOutputFile::IndModel},
};

// Calls `found(start, length, name, braced)` for each "$NAME" and "${NAME}" of `text`.
// "$BASENAME" is taken whole even when name characters follow it ("$BASENAME_out").
template <typename F> void ForEachReference(const QString& text, F found) {
  const QString base = QStringLiteral("BASENAME");
  for (int at = text.indexOf(QLatin1Char('$')); at >= 0; at = text.indexOf(QLatin1Char('$'), at + 1)) {
    if (at + 1 < text.length() && text.at(at + 1) == QLatin1Char('{')) {
      const int close = text.indexOf(QLatin1Char('}'), at + 2);
      if (close < 0) return;
      found(at, close + 1 - at, text.mid(at + 2, close - at - 2), true);
      at = close;
      continue;
    }
    int end = at + 1;
    while (end < text.length() && (text.at(end).isLetterOrNumber() || text.at(end) == QLatin1Char('_'))) ++end;
    QString name = text.mid(at + 1, end - at - 1);
    if (name.startsWith(base)) name = base;
    if (!name.isEmpty()) found(at, name.length() + 1, name, false);
  }
}
}  // namespace

int SBaseOutputFile::KindOfWord(const SString& word) {
  for (const SKindWord& entry : kWords)
    if (word.startsWith(SString(entry.word), !entry.withCase)) return entry.kind;
  return -1;
}

SBaseOutputFile* SBaseOutputFile::Make(int kind) {
  for (const SKindWord& entry : kWords)
    if (entry.kind == kind) return new SBaseOutputFile(kind);
  return nullptr;
}

bool SBaseOutputFile::Read(SFile& file) {
  SString text;
  if (!file.GetRestOfLine(text)) return false;
  SString word;
  file.GetToken(word);
  if (!file.HasToken()) return false;
  itsText = text;
  return true;
}

bool SBaseOutputFile::IsWritten(int format) const {
  if (itsKind == Mdif || itsKind == EbMdif) return format >= 4;
  if (itsKind == Cadence || itsKind == BbExtract) return format >= 5;
  return true;
}

void SBaseOutputFile::Write(SProjectStream& out) const { out << itsText << '\n'; }

QStringList SBaseOutputFile::GetVariableNames() const {
  QStringList names;
  ForEachReference(itsText.qstring(), [&names](int, int, const QString& name, bool) {
    if (name != QLatin1String("BASENAME") && !name.isEmpty() && !names.contains(name)) names.append(name);
  });
  return names;
}

void SBaseOutputFile::RenameVariable(const SString& oldName, const SString& newName) {
  const QString text = itsText.qstring();
  QString renamed;
  int done = 0;
  ForEachReference(text, [&](int at, int length, const QString& name, bool braced) {
    if (name != oldName.qstring()) return;
    renamed += text.midRef(done, at - done);
    renamed += braced ? QStringLiteral("${") + newName.qstring() + QLatin1Char('}') : QLatin1Char('$') + newName.qstring();
    done = at + length;
  });
  if (done == 0) return;
  renamed += text.midRef(done);
  itsText = SString(renamed);
}
