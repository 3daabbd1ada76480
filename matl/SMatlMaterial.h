#ifndef SMATLMATERIAL_H
#define SMATLMATERIAL_H

#include "SEnclosure.h"

class SCommentedFile;
class SFile;
class SMatlInterface;
class SProjectStream;

// Base of every entry of a material file (and of the file itself).
//
// Reading: the owner makes an entry (a clone of its prototype), gives it the owner with
// SetMatl, and calls Read(file) with the file standing on the entry's line and the keyword
// token already taken: the next token of the file is the first field. An entry that needs
// its keyword (tech layers, fast options) reads it again with GetFirstToken. Read takes
// what it needs of the line and doesn't move to the next line. It returns false after a
// message (through SMatlReporting) that names the file, the line number and the line text;
// a false stops the file. Warnings leave the result true.
//
// Writing: Write(out) appends the entry's line(s) with their line ends, so that Read gives
// back an entry equal (IsEqual) to this one; numbers with the significant digits of
// SMatlUtil, texts in double quotes. The base writes nothing and returns true.
class SMatlMaterial : public SEnclosure {
  SCOLLECTABLE_DECLARE(SMatlMaterial)
public:
  // The kind decides the owner's list that an entry joins.
  enum Kind {
    NoKind = -1,
    DielectricKind = 0,
    ViaDrawLayerKind = 1,
    MetalDrawLayerKind = 2,
    ViaMaterialKind = 3,
    MetalMaterialKind = 4,
    UnitKind = 5,
    ColorKind = 6,
    CommentKind = 7,
    TechLayerKind = 8,
    TechLayerFastOptKind = 9,
    VariableKind = 10,
    BrickKind = 11
  };

  SMatlMaterial() {}
  // The copy keeps the owner but isn't placed in any tree.
  SMatlMaterial(const SMatlMaterial& other);
  ~SMatlMaterial() override;

  virtual int GetKind() const { return NoKind; }
  virtual bool Write(SProjectStream& out) const;
  // A new entry of the same class and content; null for the base.
  virtual SMatlMaterial* Clone() const { return nullptr; }
  virtual bool Read(SCommentedFile& file);
  // Equal content: same class and same values. The base compares kinds.
  virtual bool IsEqual(const SMatlMaterial& other) const;
  // Multiplies the values of one dimension (SMatlUtil::Dimension) by `factor`.
  virtual void Scale(int dimension, double factor);

  bool operator==(const SMatlMaterial& other) const { return IsEqual(other); }
  bool operator!=(const SMatlMaterial& other) const { return !IsEqual(other); }

  SMatlInterface* GetMatl() const { return itsMatl; }
  // Also makes the owner the enclosure's owner when it is an enclosure.
  void SetMatl(SMatlInterface* owner);

protected:
  // The file name that messages give: the owner's input file, else the file's own name.
  SString MessageFileName(const SFile& file) const;

  SMatlInterface* itsMatl = nullptr;
};

#endif
