#ifndef SPROJECTFORMAT_H
#define SPROJECTFORMAT_H

#include "SString.h"

// The file formats a project can be written in, and the process-wide format that all
// writers branch on. The index runs from 0 ("6.0a") to 21 ("17.52"), the format of this
// program; index 16 has no version text of its own.
class SProjectFormat {
public:
  static constexpr int kCurrent = 21;
  static constexpr int kCount = 22;

  // The format the process writes; every project construction resets it to kCurrent.
  static int GetWriteFormat();
  static void SetWriteFormat(int index);

  // The length conversion of the older forms (set when writing below index 3).
  static double GetLengthConversion();
  static void SetLengthConversion(double factor);

  // The text behind VER for a format index; the program's own outside the table.
  static SString VersionText(int index);
  // The number behind the FTYP magic for a format index; the current number outside it.
  static int FileNumber(int index);
  // The newest FTYP number this program knows for a file type code (0 above 50).
  static int CurrentFileNumber(int fileType);
  static bool IsNewer(int fileNumber, int fileType) { return fileNumber > CurrentFileNumber(fileType); }

  // The running program as the header block names it, and the version text of its files.
  static SString ProgramName();
  static SString ProgramVersion();
  static SString OwnVersionText() { return "17.52"; }
};

#endif
