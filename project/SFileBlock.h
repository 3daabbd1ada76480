#ifndef SFILEBLOCK_H
#define SFILEBLOCK_H

#include "SCollectable.h"
#include "SProjectStream.h"
#include "SString.h"

#include <QStringList>

class SDimensionBlock;
class SFile;
class SProject;
class SProjectErrorManager;

// Base of the blocks a project file holds at top level: "NAME ...", a body, "END NAME".
// Readers take one line at a time; a body reader returns with the file on the first line
// it did not take (normally the END line), and the frame does the rest.
class SFileBlock : public SCollectable {
  SCOLLECTABLE_DECLARE(SFileBlock)
public:
  SFileBlock(SProject* owner, const SString& name) : itsOwner(owner), itsName(name) {}
  ~SFileBlock() override {}

  virtual bool Read(SFile& file, SProjectErrorManager& errors);
  // Called on the block's first line behind its name; the base goes to the next line.
  virtual bool ReadFirstLine(SFile& file);
  virtual bool ReadBody(SFile& file, SProjectErrorManager& errors);
  // Steps over the block up to its "END <name>" line; the content is dropped.
  virtual bool Skip(SFile& file);
  // Adds to `problems` what the format can't hold; true when there is nothing.
  virtual bool CheckFormat(int format, QStringList& problems);
  // An unknown keyword in the body, judged by the FTYP number of the file: true means go on.
  virtual bool HandleUnknown(const SString& keyword, const SString& lineText, int lineNumber,
                             SProjectErrorManager& errors);
  virtual void SetDefaults();
  virtual void ChangeUnits(const SDimensionBlock& newUnits);
  virtual bool Validate(SProjectErrorManager& errors);
  virtual bool Write(SProjectStream& out);
  virtual void WriteFirstLine(SProjectStream& out);
  virtual void WriteBody(SProjectStream& out);
  virtual void Compare(SString& report, const SFileBlock& other) const;
  virtual void Difference(SString& report, const SFileBlock& other) const;
  // A copy bound to `owner`.
  virtual SFileBlock* Clone(SProject* owner) const;
  // The project's file name changed (blocks that keep names relative to it listen).
  virtual void FileNameChanged(const SString& newName) { (void)newName; }
  // A variable of the project was renamed: references to it by name follow.
  virtual void RenameVariable(const SString& oldName, const SString& newName) {
    (void)oldName;
    (void)newName;
  }

  SProject* GetOwner() const { return itsOwner; }
  void SetOwner(SProject* owner) { itsOwner = owner; }
  const SString& GetName() const { return itsName; }
  bool IsPresent() const { return itsPresent; }
  void SetPresent(bool on) { itsPresent = on; }
  int GetStartLine() const { return itsStartLine; }
  int GetEndLine() const { return itsEndLine; }

  // The keyword test of every block reader: `token` begins with `keyword`, in any case.
  static bool Match(const SString& token, const char* keyword);
  static bool Match(const SString& token, const SString& keyword);
  static int LineOf(const SFile& file);
  // On an END line inside a body: a bare "END" closes a section and is taken, "END <name>"
  // closes the block and is left for it. False on any other line.
  static bool TakeSectionEnd(SFile& file);
  // The write format of the process (SProjectFormat).
  static int Format();

protected:
  // HandleUnknown for the current line, then on to the next line when it lets the read go on.
  bool Unknown(SFile& file, const SString& keyword, SProjectErrorManager& errors);
  // What the block's frequencies are multiplied by to go into the frequency unit of
  // `newUnits`; 1 when the unit stays or one of them is unknown.
  double FrequencyRatio(const SDimensionBlock& newUnits) const;
  // The body as written, for comparisons.
  SString BodyText() const;

  SProject* itsOwner = nullptr;
  SString itsName;
  bool itsPresent = false;
  int itsStartLine = -1;
  int itsEndLine = -1;
};

#endif
