#ifndef SXMLFILE_H
#define SXMLFILE_H

#include "SFile.h"
#include "SXMLElement.h"

// A small XML document: the prolog and one tree, read line by line and tolerantly. Bad XML
// gives a partial tree, never a stop; a file that was read writes back with its own layout.
class SXMLFile : public SFile {
public:
  SXMLFile();
  // The file is opened by Read, not here, so that a file to be written need not exist.
  explicit SXMLFile(const SString& fileName);
  // Reads from a stream the caller owns.
  explicit SXMLFile(QTextStream* stream);
  SXMLFile(const SString& fileName, const SString& rootName);

  // False with "Unable to open file." when the file can't be opened, and false when the
  // elements nest too deeply; an empty file gives true with that same text.
  bool Read(SString& errorText);
  // The prolog and the tree, replacing the file only when complete; false on failure, with
  // the reason in GetWriteError().
  bool Write();
  // The document as Write puts it into the file.
  SString Text() const;
  const SString& GetWriteError() const { return itsWriteError; }

  SXMLElement* GetRoot() { return &itsRoot; }
  const SXMLElement* GetRoot() const { return &itsRoot; }
  void SetFile(const SString& fileName, const SString& rootName);
  // The declaration and whatever stood in front of the root; empty when the file had none.
  const SString& GetProlog() const { return itsProlog; }
  void SetProlog(const SString& prolog) { itsProlog = prolog; }

protected:
  // Called when an element of the tree has been read completely.
  virtual void ElementDone(SXMLElement* element);

private:
  friend class SXMLElement;

  // The scanner works on what is left of the current line: itsScanLine from itsScanPos on.
  // With no line loaded the next chunk starts on a new line.
  bool LoadLine();
  // Moves to the next non-blank text; each blank line passed adds a newline to `newlines`.
  bool NextChunk(SString& newlines);
  // Position of the first non-blank character of the current chunk.
  int ChunkStart() const;
  // Collects the text from `textFrom` up to `terminator`, searched from `searchFrom`, over
  // lines joined by `joint`; the scanner then stands behind the terminator. False when
  // the file ends first, with everything collected.
  bool CollectUntil(int textFrom, int searchFrom, const QString& terminator, const QString& joint, QString& text);
  // True, and the line done, when nothing but blanks is left of it.
  bool TakeLineEnd();
  // The prolog, then the root.
  bool ReadDocument(SString& errorText);

  SXMLElement itsRoot;
  SString itsProlog;
  SString itsWriteError;
  QString itsScanLine;
  int itsScanPos = 0;
  bool itsScanLoaded = false;
};

#endif
