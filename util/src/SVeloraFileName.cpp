#include "SVeloraFileName.h"

#include "SRegexp.h"
#include "SVeloraError.h"

SCOLLECTABLE_DEFINE(SVeloraFileName, SID_VELORAFILENAME, &SFileName::staticTypeInfo())

namespace {
// Index is the type; types 46, 47 and 49 write another type's extension and are never looked up.
const char* const kExtensions[] = {
    "",    "rsp", "d",   "nd",  "hpy", "geo", "vel", "sid",  "net", "out", "jxy", "pat", "pg",
    "lc",  "lct", "pd",  "pnd", "csv", "an",  "job", "psp",  "snp", "eff", "zon", "sgrx", "sgr",
    "zgr", "bck", "sqn", "map", "scs", "lib", "smf", "lsf",  "lsx", "scl", "scx", "dxf", "gds",
    "gbr", "njb", "gif", "xml", "mdf", "matl", "stf", "sid", "vel", "txt", "txt", "sesn"};
const int kTypeCount = sizeof kExtensions / sizeof kExtensions[0];

bool LookedUp(int type) { return type != 46 && type != 47 && type != 49; }

struct SFileTypeWord {
  int type;
  const char* word;
};
// The first entry of a word is the type that reading the word gives.
const SFileTypeWord kWords[] = {{6, "VELPROJ"},   {7, "SIDATA"},    {47, "VELORAPRJ"}, {8, "VELORAPRJ"},
                                {10, "JXY"},      {11, "PAT"},      {24, "VELGRAPH"}, {25, "VELGRAPH"},
                                {28, "EQUA"},     {29, "MAP"},      {48, "RLGC"},     {49, "POFL"}};
}  // namespace

SVeloraFileName::SVeloraFileName(const SString& name, int wantedType, int mode) : SFileName(name) {
  const SString extension = GetExtension();
  if (extension.isEmpty()) {
    if (wantedType != FT_NONE) {
      AddExtension(ExtensionOf(wantedType));
      itsFileType = wantedType;
    }
    return;
  }
  itsFileType = TypeOfExtension(extension);
  if (itsFileType == wantedType) return;
  if (mode == ReportMismatch) {
    if (itsFileType != FT_NONE)
      VeloraWarningReport(5914, 5915, ExtensionOf(wantedType).data(), extension.data());
  } else if (mode == ForceType) {
    SetExtension(ExtensionOf(wantedType));
    itsFileType = wantedType;
  }
}

SString SVeloraFileName::ExtensionOf(int type) {
  if (type < 0 || type >= kTypeCount) return SString();
  return SString(kExtensions[type]);
}

int SVeloraFileName::TypeOfExtension(const SString& extension) {
  if (extension.isEmpty()) return FT_NONE;
  for (int type = 1; type < kTypeCount; ++type)
    if (LookedUp(type) && extension == kExtensions[type]) return type;
  if (extension == "jxb") return FT_JXY;
  if (extension == "pab") return FT_PAT;
  static const SRegexp touchstone("s[n1-9][p0-9]");
  if (touchstone.exactMatch(extension)) return FT_SNP;
  return FT_NONE;
}

SString SVeloraFileName::FileTypeWord(int type) {
  for (const SFileTypeWord& entry : kWords)
    if (entry.type == type) return SString(entry.word);
  return SString();
}

int SVeloraFileName::TypeOfFileTypeWord(const SString& word) {
  for (const SFileTypeWord& entry : kWords)
    if (word == entry.word) return entry.type;
  return FT_NONE;
}
