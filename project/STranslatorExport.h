#ifndef STRANSLATOREXPORT_H
#define STRANSLATOREXPORT_H

#include "SCollectable.h"
#include "SProjectStream.h"
#include "SString.h"

class SFile;

// The options of one export (DXF, GDSII or Gerber) as the layout editor last used them.
// Every key is held as a number (booleans 0 or 1, the codes of the word keys) or, for the
// free words, as text; the Gerber keys belong to the Gerber record alone.
class STranslatorExport : public SCollectable {
  SCOLLECTABLE_DECLARE(STranslatorExport)
  SCOLLECTABLE_COPYABLE(STranslatorExport)
public:
  enum Kind { Dxf = 0, Gds = 1, Gerber = 2 };
  // In the order of writing.
  enum Key {
    UseTLs, SepObj, SepMat, DivideMulti, Circles, CircleType, CircleSize, KeepMetals, KeepVias, KeepViaPads,
    KeepBricks, KeepEdgeVias, KeepParent, ConvertParent, AllEdgeViasAsVia,
    GbrWholeDigits, GbrDecimalDigits, GbrFilenamePrefix, GbrFilenameExt, GbrJobPrefix, GbrFilenameType,
    GbrJobFilenameType, GbrUnits, KeyCount
  };
  static constexpr int kGeneralKeys = GbrWholeDigits;

  explicit STranslatorExport(int kind = Dxf);

  int GetKind() const { return itsKind; }
  bool IsPresent() const { return itsPresent; }
  void SetPresent(bool on) { itsPresent = on; }
  // The record's word in the project file.
  const char* Word() const;
  static int KindOfWord(const SString& word);
  static const char* KeyName(int key);
  // The key of that name, compared with case; -1 for none.
  static int KeyOf(const SString& name);

  double GetNumber(int key) const { return key >= 0 && key < KeyCount ? itsNumbers[key] : 0.0; }
  bool GetBool(int key) const { return GetNumber(key) != 0.0; }
  int GetInt(int key) const { return static_cast<int>(GetNumber(key)); }
  const SString& GetText(int key) const;
  void SetNumber(int key, double value);
  void SetText(int key, const SString& value);

  // A key's value from its file text. Unknown keys and keys of another record are passed
  // over (true); false when the value can't be read. Bad words of the word keys give 0.
  bool SetFromText(const SString& key, const SString& value);
  // The general keys of `other`.
  void CopyGeneralKeys(const STranslatorExport& other);
  void SetDefaults();

  // Key lines up to their "END"; false on a value that can't be read or a missing "END".
  bool Read(SFile& file);
  // "key=value" lines; false when the file can't be opened or a value can't be read.
  bool ReadOptionsFile(const SString& path);
  // The record word, its key lines, "END".
  void Write(SProjectStream& out) const;

private:
  bool HasKey(int key) const { return key < kGeneralKeys || itsKind == Gerber; }
  // Key lines from `file` until "END" or, without `needEnd`, the end of the file.
  bool ReadKeyLines(SFile& file, bool needEnd);

  int itsKind = Dxf;
  bool itsPresent = false;
  double itsNumbers[KeyCount];
  SString itsTexts[KeyCount];
};

#endif
