#ifndef SXMLELEMENT_H
#define SXMLELEMENT_H

#include "SCollectableString.h"
#include "SOrdered.h"

#include <QStringRef>

class QTextStream;
class SXMLFile;

// Class numbers of the document tree, in the foundation library's range.
enum SXMLClassID : ClassID { SID_XMLATTRIBUTE = 22, SID_XMLELEMENT = 23 };

// One attribute; its string is the name, compared regardless of case.
class SXMLAttribute : public SCaseInsensitiveCollectableString {
  SCOLLECTABLE_DECLARE(SXMLAttribute)
  SCOLLECTABLE_COPYABLE(SXMLAttribute)
public:
  SXMLAttribute() {}
  SXMLAttribute(const SString& name, const SString& value) : SCaseInsensitiveCollectableString(name), itsValue(value) {}

  const SString& GetName() const { return *this; }
  const SString& GetValue() const { return itsValue; }
  void SetValue(const SString& value) { itsValue = value; }

private:
  SString itsValue;
};

// A node of the document tree; its string is the tag, compared regardless of case. A tree
// that was read keeps its layout in the text and line flags, so that it writes back as it
// stood; a built tree leaves them at their defaults and gets one element a line.
class SXMLElement : public SCaseInsensitiveCollectableString {
  SCOLLECTABLE_DECLARE(SXMLElement)
public:
  enum Kind { STANDARD = 0, DATA = 1, COMMENT = 2 };
  // Beyond this many levels a read stops with an error rather than recursing on.
  static const int kMaxDepth = 200;

  explicit SXMLElement(const SString& name = SString(), SXMLElement* parent = nullptr);
  SXMLElement(const SXMLElement&) = delete;
  SXMLElement& operator=(const SXMLElement&) = delete;
  ~SXMLElement() override;

  SCollectable* newSpecies() const override { return new SXMLElement(); }
  // A deep copy without a parent.
  SCollectable* copy() const override;

  const SString& GetName() const { return *this; }
  void SetName(const SString& name) { SString::operator=(name); }

  // Replaces the value of an attribute of the same name, or appends a new one.
  void SetAttribute(const SString& name, const SString& value);
  SXMLAttribute* GetAttribute(const SString& name) const;
  const SOrdered& GetAttributes() const { return itsAttributes; }

  // Takes ownership. This element then gets the writer's layout: its children one a line.
  void AddChild(SXMLElement* child);
  // Appends a DATA child holding `text` and keeps this element on one line.
  void AddData(const SString& text);
  // First STANDARD child of that name, or null.
  SXMLElement* FindChild(const SString& name) const;
  // As FindChild, then depth first through the children.
  SXMLElement* FindDeep(const SString& name) const;
  const SOrdered& GetChildren() const { return itsChildren; }
  SXMLElement* GetParent() const { return itsParent; }
  // The text of the first DATA child; empty when there is none.
  SString GetData() const;

  int GetKind() const { return itsKind; }
  // STANDARD, DATA, COMMENT or UNKNOWN.
  const char* GetKindName() const;
  // A DATA or COMMENT element's text; of a STANDARD element, the blanks in front of its tag.
  const SString& GetText() const { return itsText; }
  const SString& GetLeadingLines() const { return itsLeadingLines; }
  int GetLine() const { return itsLine; }
  bool IsSingleLine() const { return itsSingleLine; }
  bool HasNewlineAfterStart() const { return itsNewlineAfterStart; }
  bool HasNewlineAfterEnd() const { return itsNewlineAfterEnd; }

  void Write(QTextStream& out) const;

  // The entity table: & < > ' and the double quote.
  static SString Escape(const SString& text);
  static SString Unescape(const SString& text);

private:
  friend class SXMLFile;

  // Empties the element for a new read.
  void Reset();
  // Parses the element that starts at the file's current chunk. False only when the
  // nesting is too deep.
  bool Parse(SXMLFile& file, int depth);
  void ParseData(SXMLFile& file);
  // Text copied raw up to and including `terminator`, searched from `searchFrom`.
  void ParseRaw(SXMLFile& file, int searchFrom, const QString& terminator);
  bool ParseTag(SXMLFile& file, int depth);
  // Children up to the end tag, or up to an end tag of an element further out.
  bool ParseContent(SXMLFile& file, int depth);
  bool ClosesAncestor(const SString& name) const;
  void ParseAttributes(const QString& inside, int from);
  // Markup copied raw rather than parsed (comments, declarations): the length of its opening
  // and its terminator.
  static bool RawTerminator(const QStringRef& chunk, int& openLength, QString& terminator);
  // Whether the text between the start and the end tag, as written, breaks a line.
  bool HoldsLineBreak() const;
  // Whether Write of this element puts out a line break.
  bool BreaksLine() const;
  bool WritesEmptyTag() const { return itsKind != DATA && itsKind != COMMENT && itsChildren.isEmpty() && !itsAttributes.isEmpty(); }

  SOrdered itsAttributes;
  SOrdered itsChildren;
  SXMLElement* itsParent = nullptr;
  int itsKind = STANDARD;
  SString itsText;
  SString itsLeadingLines;
  // Blank lines in front of the end tag, which the element's layout would otherwise lose.
  SString itsLinesBeforeEnd;
  int itsLine = -1;
  bool itsNewlineAfterStart = false;
  bool itsNewlineAfterEnd = true;
  bool itsSingleLine = true;
};

#endif
