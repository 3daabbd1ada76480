#include "SXMLElement.h"

#include "SXMLFile.h"

#include <QTextStream>

SCOLLECTABLE_DEFINE(SXMLAttribute, SID_XMLATTRIBUTE, &SCaseInsensitiveCollectableString::staticTypeInfo())
SCOLLECTABLE_DEFINE(SXMLElement, SID_XMLELEMENT, &SCaseInsensitiveCollectableString::staticTypeInfo())

namespace {
// Escaping goes down this table, replacing goes up it, so that "&amp;lt;" reads as "&lt;".
const char* const kEntities[][2] = {{"&", "&amp;"}, {"<", "&lt;"}, {">", "&gt;"}, {"'", "&apos;"}, {"\"", "&quot;"}};
const int kEntityCount = 5;

int SkipSpace(const QString& text, int pos) {
  while (pos < text.size() && text.at(pos).isSpace()) ++pos;
  return pos;
}
}  // namespace

SXMLElement::SXMLElement(const SString& name, SXMLElement* parent)
    : SCaseInsensitiveCollectableString(name), itsParent(parent) {}

SXMLElement::~SXMLElement() {
  itsAttributes.clearAndDestroy();
  itsChildren.clearAndDestroy();
}

SCollectable* SXMLElement::copy() const {
  SXMLElement* twin = new SXMLElement(GetName());
  twin->itsKind = itsKind;
  twin->itsText = itsText;
  twin->itsLeadingLines = itsLeadingLines;
  twin->itsLinesBeforeEnd = itsLinesBeforeEnd;
  twin->itsLine = itsLine;
  twin->itsNewlineAfterStart = itsNewlineAfterStart;
  twin->itsNewlineAfterEnd = itsNewlineAfterEnd;
  twin->itsSingleLine = itsSingleLine;
  for (SCollectable* attribute : itsAttributes) twin->itsAttributes.append(attribute->copy());
  for (SCollectable* child : itsChildren) {
    SXMLElement* childTwin = static_cast<SXMLElement*>(child->copy());
    childTwin->itsParent = twin;
    twin->itsChildren.append(childTwin);
  }
  return twin;
}

void SXMLElement::Reset() {
  itsAttributes.clearAndDestroy();
  itsChildren.clearAndDestroy();
  SetName(SString());
  itsKind = STANDARD;
  itsText.clear();
  itsLeadingLines.clear();
  itsLinesBeforeEnd.clear();
  itsLine = -1;
  itsNewlineAfterStart = false;
  itsNewlineAfterEnd = true;
  itsSingleLine = true;
}

void SXMLElement::SetAttribute(const SString& name, const SString& value) {
  SXMLAttribute* found = GetAttribute(name);
  if (found)
    found->SetValue(value);
  else
    itsAttributes.append(new SXMLAttribute(name, value));
}

SXMLAttribute* SXMLElement::GetAttribute(const SString& name) const {
  const SXMLAttribute probe(name, SString());
  return static_cast<SXMLAttribute*>(itsAttributes.find(&probe));
}

void SXMLElement::AddChild(SXMLElement* child) {
  child->itsParent = this;
  itsChildren.append(child);
  itsSingleLine = false;
  itsNewlineAfterStart = true;
}

void SXMLElement::AddData(const SString& text) {
  SXMLElement* data = new SXMLElement(SString(), this);
  data->itsKind = DATA;
  data->itsText = text;
  itsChildren.append(data);
  itsSingleLine = true;
}

SXMLElement* SXMLElement::FindChild(const SString& name) const {
  for (SCollectable* object : itsChildren) {
    SXMLElement* child = static_cast<SXMLElement*>(object);
    if (child->itsKind == STANDARD && child->compare(name, true) == 0) return child;
  }
  return nullptr;
}

SXMLElement* SXMLElement::FindDeep(const SString& name) const {
  if (SXMLElement* found = FindChild(name)) return found;
  for (SCollectable* child : itsChildren)
    if (SXMLElement* found = static_cast<SXMLElement*>(child)->FindDeep(name)) return found;
  return nullptr;
}

SString SXMLElement::GetData() const {
  for (SCollectable* object : itsChildren) {
    const SXMLElement* child = static_cast<const SXMLElement*>(object);
    if (child->itsKind == DATA) return child->itsText;
  }
  return SString();
}

const char* SXMLElement::GetKindName() const {
  switch (itsKind) {
    case STANDARD:
      return "STANDARD";
    case DATA:
      return "DATA";
    case COMMENT:
      return "COMMENT";
    default:
      return "UNKNOWN";
  }
}

SString SXMLElement::Escape(const SString& text) {
  QString result = text.qstring();
  for (int i = 0; i < kEntityCount; ++i)
    result.replace(QLatin1String(kEntities[i][0]), QLatin1String(kEntities[i][1]));
  return SString(result);
}

SString SXMLElement::Unescape(const SString& text) {
  QString result = text.qstring();
  if (!result.contains(QLatin1Char('&'))) return text;
  for (int i = kEntityCount - 1; i >= 0; --i)
    result.replace(QLatin1String(kEntities[i][1]), QLatin1String(kEntities[i][0]));
  return SString(result);
}

void SXMLElement::Write(QTextStream& out) const {
  out << itsLeadingLines.qstring();
  if (itsKind == DATA) {
    out << Escape(itsText).qstring();
    return;
  }
  if (itsKind == COMMENT) {
    // Written whatever the parent's layout: a comment is content, not layout.
    out << itsText.qstring();
    return;
  }
  // The blanks in front of the tag stand in front of the end tag as well; the root's aren't
  // written at all.
  const bool indented = itsParent && !itsParent->itsSingleLine;
  if (indented) out << itsText.qstring();
  out << '<' << qstring();
  for (SCollectable* object : itsAttributes) {
    const SXMLAttribute* attribute = static_cast<const SXMLAttribute*>(object);
    out << ' ' << Escape(attribute->GetName()).qstring() << "=\"" << Escape(attribute->GetValue()).qstring() << '"';
  }
  if (WritesEmptyTag()) {
    out << "/>";
    if (itsNewlineAfterEnd) out << '\n';
    return;
  }
  out << '>';
  if (itsNewlineAfterStart) out << '\n';
  for (SCollectable* child : itsChildren) static_cast<const SXMLElement*>(child)->Write(out);
  out << itsLinesBeforeEnd.qstring();
  // Data that ends within its line already holds what stands before the end tag: the blanks
  // in front of the tag added again would grow with every read and write.
  const SXMLElement* last =
      itsChildren.entries() > 0 ? static_cast<const SXMLElement*>(itsChildren.last()) : nullptr;
  const bool dataBeforeEnd = last && last->itsKind == DATA && itsLinesBeforeEnd.isEmpty() &&
                             !last->itsText.endsWith("\n");
  if (indented && !itsSingleLine && !dataBeforeEnd) out << itsText.qstring();
  out << "</" << qstring() << '>';
  if (itsNewlineAfterEnd) out << '\n';
}

bool SXMLElement::BreaksLine() const {
  if (!itsLeadingLines.isEmpty()) return true;
  if (itsKind == DATA || itsKind == COMMENT) return itsText.contains(QLatin1Char('\n'));
  if (WritesEmptyTag()) return itsNewlineAfterEnd;
  return itsNewlineAfterEnd || !itsSingleLine;
}

bool SXMLElement::HoldsLineBreak() const {
  if (itsNewlineAfterStart || !itsLinesBeforeEnd.isEmpty()) return true;
  for (SCollectable* child : itsChildren)
    if (static_cast<const SXMLElement*>(child)->BreaksLine()) return true;
  return false;
}

bool SXMLElement::RawTerminator(const QStringRef& chunk, int& openLength, QString& terminator) {
  static const struct {
    const char* open;
    const char* close;
  } kRaw[] = {{"<!--", "-->"}, {"<![CDATA[", "]]>"}, {"<?", "?>"}, {"<!", ">"}};
  for (const auto& raw : kRaw)
    if (chunk.startsWith(QLatin1String(raw.open))) {
      openLength = static_cast<int>(qstrlen(raw.open));
      terminator = QLatin1String(raw.close);
      return true;
    }
  return false;
}

bool SXMLElement::Parse(SXMLFile& file, int depth) {
  const int first = file.ChunkStart();
  const QStringRef chunk = file.itsScanLine.midRef(first);
  int openLength = 0;
  QString terminator;
  if (!chunk.startsWith(QLatin1Char('<'))) {
    ParseData(file);
    return true;
  }
  if (RawTerminator(chunk, openLength, terminator)) {
    ParseRaw(file, first + openLength, terminator);
    return true;
  }
  return ParseTag(file, depth);
}

void SXMLElement::ParseData(SXMLFile& file) {
  itsKind = DATA;
  const int start = file.itsScanPos;
  const int next = file.itsScanLine.indexOf(QLatin1Char('<'), start);
  QString text = file.itsScanLine.mid(start, next < 0 ? -1 : next - start);
  bool atEnd = false;
  if (next >= 0) {
    file.itsScanPos = next;
  } else {
    // The text runs on over the lines, with their line ends, up to a line that begins with
    // a tag; that line's indentation belongs to the tag.
    file.itsScanLoaded = false;
    atEnd = true;
    while (file.LoadLine()) {
      text += QLatin1Char('\n');
      const QString& line = file.itsScanLine;
      const int tag = line.indexOf(QLatin1Char('<'));
      if (tag < 0) {
        text += line;
        file.itsScanLoaded = false;
        continue;
      }
      atEnd = false;
      if (tag > SkipSpace(line, 0)) {
        text += line.leftRef(tag);
        file.itsScanPos = tag;
      }
      break;
    }
  }
  // Blank lines at the end of a file don't all come back from it: a text that ran to the
  // end, or a root, which nothing follows when written, ends with its last non-blank character.
  if (atEnd || !itsParent) {
    int end = text.size();
    while (end > 0 && text.at(end - 1).isSpace()) --end;
    text.truncate(end);
  }
  itsText = Unescape(SString(text));
}

void SXMLElement::ParseRaw(SXMLFile& file, int searchFrom, const QString& terminator) {
  itsKind = COMMENT;
  QString text;
  const bool closed = file.CollectUntil(file.itsScanPos, searchFrom, terminator, QStringLiteral("\n"), text);
  // Closed on writing when the file ended first, as an element left open is, so that it
  // can't swallow what the writer puts behind it.
  text += terminator;
  // The line end stays with the text, as there is no end tag to carry it.
  if (!closed || file.TakeLineEnd()) text += QLatin1Char('\n');
  itsText = SString(text);
}

bool SXMLElement::ParseTag(SXMLFile& file, int depth) {
  if (depth > kMaxDepth) return false;
  itsKind = STANDARD;
  const int first = file.ChunkStart();
  itsText = SString(file.itsScanLine.mid(file.itsScanPos, first - file.itsScanPos));
  QString inside;
  const bool closed = file.CollectUntil(first + 1, first + 1, QStringLiteral(">"), QStringLiteral(" "), inside);
  const bool lineEnded = !closed || file.TakeLineEnd();

  // Only the end is trimmed: a tag word must follow "<" directly, so that a name never
  // begins with a character that would make it another kind of markup when written.
  int end = inside.size();
  while (end > 0 && inside.at(end - 1).isSpace()) --end;
  const bool selfClosing = closed && end > 0 && inside.at(end - 1) == QLatin1Char('/');
  if (selfClosing) --end;
  inside.truncate(end);
  int nameEnd = 0;
  while (nameEnd < inside.size() && !inside.at(nameEnd).isSpace()) ++nameEnd;
  // A name ending in "/" would be written as a self-closing tag.
  int nameLength = nameEnd;
  while (nameLength > 0 && inside.at(nameLength - 1) == QLatin1Char('/')) --nameLength;
  SetName(SString(inside.left(nameLength)));
  if (inside.indexOf(QLatin1Char('='), nameEnd) >= 0) ParseAttributes(inside, nameEnd);

  if (selfClosing) {
    itsNewlineAfterEnd = lineEnded;
    file.ElementDone(this);
    return true;
  }
  itsNewlineAfterStart = lineEnded;
  if (closed && !ParseContent(file, depth)) return false;
  // Judged by what the writer will put between the tags rather than by their line numbers,
  // which differ for a start tag over several lines that is written on one.
  itsSingleLine = !HoldsLineBreak();
  file.ElementDone(this);
  return true;
}

bool SXMLElement::ParseContent(SXMLFile& file, int depth) {
  SString newlines;
  while (file.NextChunk(newlines)) {
    const QString& line = file.itsScanLine;
    const int first = file.ChunkStart();
    if (line.midRef(first).startsWith(QLatin1String("</"))) {
      int nameEnd = first + 2;
      while (nameEnd < line.size() && !line.at(nameEnd).isSpace() && line.at(nameEnd) != QLatin1Char('>')) ++nameEnd;
      const SString name(line.mid(first + 2, nameEnd - first - 2));
      if (compare(name, true) == 0) {
        itsLinesBeforeEnd = newlines;
        QString ignored;
        itsNewlineAfterEnd = !file.CollectUntil(first, first, QStringLiteral(">"), QStringLiteral(" "), ignored) ||
                             file.TakeLineEnd();
        return true;
      }
      // The end tag of an element further out closes this one as well and is left to it;
      // an end tag that closes nothing is dropped.
      if (ClosesAncestor(name)) {
        itsLinesBeforeEnd = newlines;
        return true;
      }
      QString ignored;
      if (!file.CollectUntil(first, first, QStringLiteral(">"), QStringLiteral(" "), ignored)) break;
      file.TakeLineEnd();
      continue;
    }
    SXMLElement* child = new SXMLElement(SString(), this);
    itsChildren.append(child);
    child->itsLeadingLines = newlines;
    child->itsLine = static_cast<int>(file.LineCount());
    newlines.clear();
    if (!child->Parse(file, depth + 1)) return false;
  }
  // The file ended with this element open.
  itsLinesBeforeEnd = newlines;
  return true;
}

bool SXMLElement::ClosesAncestor(const SString& name) const {
  for (const SXMLElement* ancestor = itsParent; ancestor; ancestor = ancestor->itsParent)
    if (ancestor->compare(name, true) == 0) return true;
  return false;
}

void SXMLElement::ParseAttributes(const QString& inside, int from) {
  const int size = inside.size();
  int pos = from;
  while (true) {
    pos = SkipSpace(inside, pos);
    if (pos >= size || inside.at(pos) == QLatin1Char('/')) return;
    const int equals = inside.indexOf(QLatin1Char('='), pos);
    if (equals < 0) return;
    const QString name = inside.mid(pos, equals - pos).trimmed();
    pos = SkipSpace(inside, equals + 1);
    QString value;
    if (pos < size && (inside.at(pos) == QLatin1Char('"') || inside.at(pos) == QLatin1Char('\''))) {
      int close = inside.indexOf(inside.at(pos), pos + 1);
      if (close < 0) close = size;
      value = inside.mid(pos + 1, close - pos - 1);
      pos = close + 1;
    } else {
      const int start = pos;
      while (pos < size && !inside.at(pos).isSpace()) ++pos;
      value = inside.mid(start, pos - start);
    }
    SetAttribute(Unescape(SString(name)), Unescape(SString(value)));
  }
}
