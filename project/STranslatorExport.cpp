#include "STranslatorExport.h"

#include "SFile.h"
#include "SProjectClassID.h"
#include "SWordTable.h"

SCOLLECTABLE_DEFINE(STranslatorExport, SID_TRANSLATOREXPORT, &SCollectable::staticTypeInfo())

namespace {
enum Type { Bool, Int, Real, Text, Code };

struct SKeyInfo {
  const char* name;
  Type type;
  double number;
  const char* text;
};

const SKeyInfo kKeys[STranslatorExport::KeyCount] = {
    {"UseTLs", Bool, 1, nullptr},          {"SepObj", Bool, 1, nullptr},
    {"SepMat", Bool, 1, nullptr},          {"DivideMulti", Bool, 0, nullptr},
    {"Circles", Bool, 0, nullptr},         {"CircleType", Code, 1, nullptr},
    {"CircleSize", Real, 0, nullptr},      {"KeepMetals", Bool, 1, nullptr},
    {"KeepVias", Bool, 1, nullptr},        {"KeepViaPads", Bool, 1, nullptr},
    {"KeepBricks", Bool, 1, nullptr},      {"KeepEdgeVias", Bool, 1, nullptr},
    {"KeepParent", Bool, 1, nullptr},      {"ConvertParent", Bool, 0, nullptr},
    {"AllEdgeViasAsVia", Bool, 0, nullptr}, {"GbrWholeDigits", Int, 3, nullptr},
    {"GbrDecimalDigits", Int, 4, nullptr}, {"GbrFilenamePrefix", Text, 0, "artwork_"},
    {"GbrFilenameExt", Text, 0, "gbr"},    {"GbrJobPrefix", Text, 0, "job"},
    {"GbrFilenameType", Code, 0, nullptr}, {"GbrJobFilenameType", Code, 1, nullptr},
    {"GbrUnits", Code, 0, nullptr},
};

const char* const kCircleTypes[] = {"manual", "inscribed"};
const char* const kFilenameTypes[] = {"default", "project", "custom"};
const char* const kJobFilenameTypes[] = {nullptr, "project", "custom"};
const char* const kUnits[] = {"mm", "inch"};
const char* const kRecordWords[] = {"DXFEXPORT", "GDSEXPORT", "GERBEREXPORT"};

// The word of a code key's value; null for a code without one.
const char* CodeWord(int key, int code) {
  switch (key) {
    case STranslatorExport::CircleType: return SWordTable::WordOf(kCircleTypes, code, nullptr);
    case STranslatorExport::GbrFilenameType: return SWordTable::WordOf(kFilenameTypes, code, nullptr);
    case STranslatorExport::GbrJobFilenameType: return SWordTable::WordOf(kJobFilenameTypes, code, nullptr);
    default: return SWordTable::WordOf(kUnits, code, nullptr);
  }
}

int CodeOfWord(int key, const SString& word) {
  switch (key) {
    case STranslatorExport::CircleType: return SWordTable::CodeOf(kCircleTypes, word, 0);
    case STranslatorExport::GbrFilenameType: return SWordTable::CodeOf(kFilenameTypes, word, 0);
    case STranslatorExport::GbrJobFilenameType: return SWordTable::CodeOf(kJobFilenameTypes, word, 0);
    default: return SWordTable::CodeOf(kUnits, word, 0);
  }
}
}  // namespace

STranslatorExport::STranslatorExport(int kind) : itsKind(kind) { SetDefaults(); }

void STranslatorExport::SetDefaults() {
  for (int key = 0; key < KeyCount; ++key) {
    itsNumbers[key] = kKeys[key].number;
    itsTexts[key] = kKeys[key].text ? SString(kKeys[key].text) : SString();
  }
}

const char* STranslatorExport::Word() const { return SWordTable::WordOf(kRecordWords, itsKind, "DXFEXPORT"); }

int STranslatorExport::KindOfWord(const SString& word) {
  for (int kind = Dxf; kind <= Gerber; ++kind)
    if (word.startsWith(SString(kRecordWords[kind]), true)) return kind;
  return -1;
}

const char* STranslatorExport::KeyName(int key) { return key >= 0 && key < KeyCount ? kKeys[key].name : ""; }

int STranslatorExport::KeyOf(const SString& name) {
  for (int key = 0; key < KeyCount; ++key)
    if (name == kKeys[key].name) return key;
  return -1;
}

const SString& STranslatorExport::GetText(int key) const {
  static const SString none;
  return key >= 0 && key < KeyCount ? itsTexts[key] : none;
}

void STranslatorExport::SetNumber(int key, double value) {
  if (key >= 0 && key < KeyCount) itsNumbers[key] = value;
}

void STranslatorExport::SetText(int key, const SString& value) {
  if (key >= 0 && key < KeyCount) itsTexts[key] = value;
}

bool STranslatorExport::SetFromText(const SString& name, const SString& value) {
  const int key = KeyOf(name);
  if (key < 0 || !HasKey(key)) return true;
  bool ok = true;
  switch (kKeys[key].type) {
    case Bool:
      if (value == "true" || value == "false")
        itsNumbers[key] = value == "true" ? 1 : 0;
      else
        ok = false;
      break;
    case Int: {
      const int number = value.qstring().toInt(&ok);
      if (ok) itsNumbers[key] = number;
      break;
    }
    case Real: {
      const double number = value.qstring().toDouble(&ok);
      if (ok) itsNumbers[key] = number;
      break;
    }
    case Text:
      itsTexts[key] = value;
      break;
    case Code:
      itsNumbers[key] = CodeOfWord(key, value);
      break;
  }
  return ok;
}

void STranslatorExport::CopyGeneralKeys(const STranslatorExport& other) {
  for (int key = 0; key < kGeneralKeys; ++key) itsNumbers[key] = other.itsNumbers[key];
}

bool STranslatorExport::ReadKeyLines(SFile& file, bool needEnd) {
  for (;;) {
    if (!file.NextLine()) return !needEnd;
    SString key, value;
    if (!file.GetToken(key)) continue;
    if (needEnd && key.startsWith(SString("END"), true)) {
      // "END TRANSLATOR" closes the block, not the record: the record's own END is missing.
      SString closing;
      return !file.GetToken(closing);
    }
    if (!file.GetToken(value) || !SetFromText(key, value)) return false;
  }
}

bool STranslatorExport::Read(SFile& file) {
  if (!ReadKeyLines(file, true)) return false;
  itsPresent = true;
  return true;
}

bool STranslatorExport::ReadOptionsFile(const SString& path) {
  SFile file;
  if (!file.Open(path)) return false;
  file.SetSeparator('=');
  file.SetSplitAtSeparator(true);
  return ReadKeyLines(file, false);
}

void STranslatorExport::Write(SProjectStream& out) const {
  out << Word() << '\n';
  for (int key = 0; key < KeyCount; ++key) {
    if (!HasKey(key)) continue;
    out << kKeys[key].name << ' ';
    switch (kKeys[key].type) {
      case Bool: out << (itsNumbers[key] != 0.0 ? "true" : "false"); break;
      case Int: out << static_cast<int>(itsNumbers[key]); break;
      case Real: out << itsNumbers[key]; break;
      case Text: out << itsTexts[key]; break;
      case Code: {
        const char* word = CodeWord(key, static_cast<int>(itsNumbers[key]));
        if (word)
          out << word;
        else
          out << static_cast<int>(itsNumbers[key]);
        break;
      }
    }
    out << '\n';
  }
  out << "END\n";
}
