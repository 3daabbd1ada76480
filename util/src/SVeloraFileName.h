#ifndef SVELORAFILENAME_H
#define SVELORAFILENAME_H

#include "SFileName.h"

// A file name that knows the suite's file type from its extension.
class SVeloraFileName : public SFileName {
  SCOLLECTABLE_DECLARE(SVeloraFileName)
  SCOLLECTABLE_COPYABLE(SVeloraFileName)
public:
  enum FileType {
    FT_NONE = 0, FT_RSP = 1, FT_D = 2, FT_ND = 3, FT_HPY = 4, FT_GEO = 5, FT_VEL = 6, FT_SID = 7,
    FT_NET = 8, FT_OUT = 9, FT_JXY = 10, FT_PAT = 11, FT_PG = 12, FT_LC = 13, FT_LCT = 14, FT_PD = 15,
    FT_PND = 16, FT_CSV = 17, FT_AN = 18, FT_JOB = 19, FT_PSP = 20, FT_SNP = 21, FT_EFF = 22, FT_ZON = 23,
    FT_SGRX = 24, FT_SGR = 25, FT_ZGR = 26, FT_BCK = 27, FT_SQN = 28, FT_MAP = 29, FT_SCS = 30, FT_LIB = 31,
    FT_SMF = 32, FT_LSF = 33, FT_LSX = 34, FT_SCL = 35, FT_SCX = 36, FT_DXF = 37, FT_GDS = 38, FT_GBR = 39,
    FT_NJB = 40, FT_GIF = 41, FT_XML = 42, FT_MDF = 43, FT_MATL = 44, FT_STF = 45, FT_SID_OTHER = 46,
    FT_NETLIST_PROJECT = 47, FT_TXT = 48, FT_POFL = 49, FT_SESN = 50
  };
  // What happens when the extension's type differs from the wanted one.
  enum Mode { KeepMismatch = 0, ReportMismatch = 1, ForceType = 2 };

  SVeloraFileName() {}
  // Without an extension the wanted type's extension is added (unless it is 0); with one,
  // its type is looked up and `mode` settles a difference.
  SVeloraFileName(const SString& name, int wantedType = FT_NONE, int mode = KeepMismatch);
  using SFileName::operator=;

  int GetFileType() const { return itsFileType; }
  void SetFileType(int type) { itsFileType = type; }

  // The extension a type writes with; empty for 0 and unknown types.
  static SString ExtensionOf(int type);
  // The type of an extension, case-sensitive; 0 when unknown.
  static int TypeOfExtension(const SString& extension);
  // The word behind FTYP in the first line of such a file; empty when the type has none.
  static SString FileTypeWord(int type);
  // The type of an FTYP word; 0 when unknown. "VELORAPRJ" gives 47, "VELGRAPH" 24.
  static int TypeOfFileTypeWord(const SString& word);

private:
  int itsFileType = FT_NONE;
};

#endif
