#ifndef SVALVARLINE_H
#define SVALVARLINE_H

#include "SString.h"

#include <functional>

class SFile;
class SProject;
class SProjectErrorManager;
class SProjectStream;
class SValueVarDouble;

// The file forms of a named value, shared by the GEO block's variables and the variable
// lists of VAR and the sweeps:
//   VALVAR <name> <unit keyword> <number | "equation" | <HIDDEN>> "<description>"
//   VCNSTR <EM|TUNE|OPT> <name> <minimum> <maximum> <rest of the kind>
// Equations name files in double quotes; in memory they are absolute, in the file relative
// to the project, with each double quote escaped.
class SValvarLine {
public:
  // The name and unit keyword behind VALVAR. An unknown keyword is project error 6036, and
  // false: the entry is not to be added.
  static bool ReadHead(SFile& file, SString& name, int& unitKind, SProjectErrorManager& errors);
  // The value and description behind the unit keyword into `value`, which is marked stored.
  // A number is set; an equation is held as text with its file names absolute against
  // `project`; a missing file is message 5318, severity 1, and reading goes on.
  static void ReadValue(SFile& file, SValueVarDouble& value, const SProject* project, SProjectErrorManager& errors);
  // Both, setting the unit kind of `value`.
  static bool Read(SFile& file, SString& name, SValueVarDouble& value, const SProject* project,
                   SProjectErrorManager& errors);

  // The VALVAR line, then from format index 21 the constraint lines EM, TUNE, OPT. Callers
  // write it from format index 9 on; below that index an equation goes out as its number.
  static void Write(SProjectStream& out, const SString& name, const SValueVarDouble& value, const SProject* project);
  // Only the value as the VALVAR line writes it.
  static void WriteValue(SProjectStream& out, const SValueVarDouble& value, const SProject* project);

  enum ConstraintResult { ConstraintRead, ConstraintSkipped, ConstraintUnknownKind };
  // Kind and name behind VCNSTR; the rest of the line goes to the constraint of that kind of
  // the value `find` gives for the name. A name it doesn't know is skipped.
  static ConstraintResult ReadConstraint(SFile& file, const std::function<SValueVarDouble*(const SString&)>& find);

  // The directory that an equation's file names are relative to; empty without a file.
  static SString ProjectDirectory(const SProject* project);
  // The equation with each double-quoted file name made absolute, or relative, against
  // `directory` (unchanged when it's empty).
  static SString AbsoluteFileNames(const SString& equation, const SString& directory);
  static SString RelativeFileNames(const SString& equation, const SString& directory);
};

#endif
