#ifndef SVARIABLESPECIFICATION_H
#define SVARIABLESPECIFICATION_H

#include "SCollectable.h"
#include "SOrdered.h"
#include "SString.h"

class SFile;
class SProject;
class SProjectErrorManager;
class SProjectStream;
class SVariablePair;

// An ordered list of named values (owned pairs): the VAR block's parameters, the values of
// one sweep point, the best values of an optimisation.
//
// Text of the list, one entry a line:
//   <name> = <value> [true|false]     value a number or an equation
//   VALVAR ... / VCNSTR ...           as SValvarLine reads them
class SVariableSpecification : public SCollectable {
  SCOLLECTABLE_DECLARE(SVariableSpecification)
public:
  // What one line of a variable list was.
  enum LineResult { LineTaken, LineNotInList, LineFailed };

  SVariableSpecification() {}
  SVariableSpecification(const SVariableSpecification& other);
  SVariableSpecification& operator=(const SVariableSpecification& other);
  ~SVariableSpecification() override { itsPairs.clearAndDestroy(); }
  SCollectable* newSpecies() const override { return new SVariableSpecification(); }
  SCollectable* copy() const override { return new SVariableSpecification(*this); }

  // Same class: pair by pair by name, then by count; with another class by class id.
  int compareTo(const SCollectable* other) const override;
  bool isEqual(const SCollectable* other) const override { return compareTo(other) == 0; }

  size_t Count() const { return itsPairs.entries(); }
  SVariablePair* At(size_t i) const;
  SVariablePair* Find(const SString& name) const;
  // The number of a pair (an equation's last worked-out value); false without the name.
  bool GetValue(const SString& name, double& value) const;
  // Takes the pair out and destroys it; false without the name.
  bool Remove(const SString& name);
  // A pair of that name gets the value, or a new one is appended.
  SVariablePair* AddValue(const SString& name, double value, bool inUse = true);
  SVariablePair* AddEquation(const SString& name, const SString& text, bool inUse = true);
  // Numeric text to AddValue, other text to AddEquation.
  SVariablePair* Add(const SString& name, const SString& text, bool inUse = true);
  // Moves the pair of `name` to `index` (to the end past it); false without the name.
  bool Move(const SString& name, size_t index);
  // Appends or replaces the pair of its name; takes ownership.
  void Add(SVariablePair* pair);
  void Clear() { itsPairs.clearAndDestroy(); }

  // "<name> = <value> [true|false]": blanks and double quotes are trimmed from the name,
  // blanks from the value; a trailing " false" clears inUse. False without "=" or a name.
  bool ParseLine(const SString& line);
  // "<name> = <value>" lines up to a line that starts with `stopKeyword` (which is left
  // for the caller) or the end of the file.
  bool ReadSection(SFile& file, const SString& stopKeyword);
  // One line of a variable list: "=" lines, VALVAR lines, and VCNSTR lines once the list
  // has entries. The file stays on the line unless it was taken.
  LineResult ReadLine(SFile& file, SProject* project, SProjectErrorManager& errors);
  // Lines up to the first that isn't part of the list (normally END); false on an error
  // that ends the read.
  bool ReadList(SFile& file, SProject* project, SProjectErrorManager& errors);

  // Each entry on its line, behind `prefix` and a blank when `prefix` isn't empty. With
  // `withFlag` and without `useValvar`: "<name> = <value> true|false". From format index 21
  // with `useValvar`: the VALVAR form. Otherwise "<name> = <value>".
  void Write(SProjectStream& out, const SString& prefix, bool withFlag, bool useValvar) const;
  static void WritePair(SProjectStream& out, const SVariablePair& pair, const SString& prefix, bool withFlag,
                        bool useValvar);
  // Items "<name>=<value>" (8 significant digits, an equation as its text). Modes 0, 1:
  // joined by blanks; 6, 7: by line feeds; 8: by ", ". Modes 1, 7, 8 take only pairs in use.
  // Modes 2 to 5: the pairs of second kind 0 (with the project's frequency unit), a line
  // feed, the others; the first list only in use in modes 4, 5, the second in modes 3, 5.
  SString GetListText(int mode) const;
  // One ParseLine per line.
  bool FromText(const SString& text);
  // A copy without the pair of `name`, marked as such a copy.
  SVariableSpecification* CloneExcept(const SString& name) const;

  bool IsPartialCopy() const { return itsPartialCopy != 0; }
  // Kept by copies.
  int itsIdentifier = 1;
  unsigned char itsFlag = 0;

private:
  void CopyFrom(const SVariableSpecification& other);
  // ParseLine, giving the pair it set.
  SVariablePair* ParseLineInto(const SString& line);
  SVariablePair* FindOrAppend(const SString& name, bool inUse);

  unsigned char itsPartialCopy = 0;
  SOrdered itsPairs;
};

#endif
