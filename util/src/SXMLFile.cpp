#include "SXMLFile.h"

#include "SSafeSave.h"

#include <QTextStream>

namespace {
const char* const kDefaultProlog = "<?xml version=\"1.0\" standalone=\"yes\"?>";
}

SXMLFile::SXMLFile() : itsProlog(kDefaultProlog) {}

SXMLFile::SXMLFile(const SString& fileName) : itsProlog(kDefaultProlog) { itsFileName = fileName; }

SXMLFile::SXMLFile(QTextStream* stream) : SFile(stream), itsProlog(kDefaultProlog) {}

SXMLFile::SXMLFile(const SString& fileName, const SString& rootName) : itsRoot(rootName), itsProlog(kDefaultProlog) {
  itsFileName = fileName;
}

void SXMLFile::SetFile(const SString& fileName, const SString& rootName) {
  Close();
  itsFileName = fileName;
  itsRoot.SetName(rootName);
}

void SXMLFile::ElementDone(SXMLElement*) {}

bool SXMLFile::Read(SString& errorText) {
  errorText.clear();
  bool opened = false;
  if (!IsOpen()) {
    if (!Open(itsFileName)) {
      errorText = "Unable to open file.";
      return false;
    }
    opened = true;
  }
  itsRoot.Reset();
  itsProlog.clear();
  itsScanLoaded = false;
  const bool ok = ReadDocument(errorText);
  itsScanLine.clear();
  itsScanLoaded = false;
  if (opened) Close();
  return ok;
}

bool SXMLFile::ReadDocument(SString& errorText) {
  SString newlines;
  if (!NextChunk(newlines)) {
    if (LineCount() == 0) errorText = "Unable to open file.";
    return true;
  }
  // The prolog is the declaration and any other such markup in front of the root, kept as
  // it stood with the blank lines between and behind; a file without it has none.
  QString prolog;
  newlines.clear();
  bool any = false;
  bool lineEnded = false;
  while (true) {
    const int first = ChunkStart();
    int openLength = 0;
    QString terminator;
    if (!SXMLElement::RawTerminator(itsScanLine.midRef(first), openLength, terminator)) break;
    if (any) {
      if (lineEnded) prolog += QLatin1Char('\n');
      prolog += newlines.qstring();
    }
    newlines.clear();
    any = true;
    QString text;
    const bool closed = CollectUntil(itsScanPos, first + openLength, terminator, QStringLiteral("\n"), text);
    prolog += text;
    if (closed) prolog += terminator;
    lineEnded = !closed || TakeLineEnd();
    if (!closed || !NextChunk(newlines)) {
      itsProlog = SString(closed ? prolog : prolog + terminator);
      return true;
    }
  }
  if (any) prolog += newlines.qstring();
  itsProlog = SString(prolog);

  // End tags in front of the root close nothing.
  while (itsScanLine.midRef(ChunkStart()).startsWith(QLatin1String("</"))) {
    QString ignored;
    if (!CollectUntil(ChunkStart(), ChunkStart(), QStringLiteral(">"), QStringLiteral(" "), ignored)) return true;
    TakeLineEnd();
    if (!NextChunk(newlines)) return true;
  }
  itsRoot.itsLine = static_cast<int>(LineCount());
  if (!itsRoot.Parse(*this, 0)) {
    errorText = SString::format("Elements nested deeper than %d levels at line %lld.", SXMLElement::kMaxDepth,
                                LineCount());
    return false;
  }
  return true;
}

SString SXMLFile::Text() const {
  QString text;
  QTextStream out(&text);
  // A root that was never named or filled (a file of only a prolog) writes nothing, and
  // blank lines behind the prolog would then end the file, where a read doesn't see them.
  const bool withRoot = !itsRoot.isEmpty() || !itsRoot.GetChildren().isEmpty() ||
                        !itsRoot.GetAttributes().isEmpty() || itsRoot.GetKind() != SXMLElement::STANDARD;
  QString prolog = itsProlog.qstring();
  if (!withRoot)
    while (prolog.endsWith(QLatin1Char('\n'))) prolog.chop(1);
  if (!prolog.isEmpty()) out << prolog << '\n';
  if (withRoot) itsRoot.Write(out);
  out.flush();
  // One line end at the end, whether or not the root's layout gave it one.
  if (!text.isEmpty() && !text.endsWith(QLatin1Char('\n'))) text += QLatin1Char('\n');
  return SString(text);
}

bool SXMLFile::Write() {
  itsWriteError.clear();
  if (itsFileName.isEmpty()) {
    itsWriteError = "No file name.";
    return false;
  }
  const QByteArray bytes = Text().toUtf8();
  SSafeSave save(itsFileName);
  if (!save.Commit(bytes.constData(), static_cast<size_t>(bytes.size()))) {
    itsWriteError = save.GetErrorText();
    return false;
  }
  return true;
}

bool SXMLFile::LoadLine() {
  SString line;
  if (!ReadPhysicalLine(line)) {
    itsScanLoaded = false;
    return false;
  }
  itsScanLine = line.qstring();
  itsScanPos = 0;
  itsScanLoaded = true;
  return true;
}

int SXMLFile::ChunkStart() const {
  int pos = itsScanPos;
  while (pos < itsScanLine.size() && itsScanLine.at(pos).isSpace()) ++pos;
  return pos;
}

bool SXMLFile::NextChunk(SString& newlines) {
  while (true) {
    bool fresh = false;
    if (!itsScanLoaded) {
      if (!LoadLine()) return false;
      fresh = true;
    }
    if (ChunkStart() < itsScanLine.size()) return true;
    // Only a whole blank line counts; the blank end of a line that held markup doesn't.
    if (fresh) newlines += '\n';
    itsScanLoaded = false;
  }
}

bool SXMLFile::CollectUntil(int textFrom, int searchFrom, const QString& terminator, const QString& joint,
                            QString& text) {
  int found = itsScanLine.indexOf(terminator, searchFrom);
  if (found >= 0) {
    text = itsScanLine.mid(textFrom, found - textFrom);
    itsScanPos = found + terminator.size();
    return true;
  }
  text = itsScanLine.mid(textFrom);
  itsScanLoaded = false;
  while (LoadLine()) {
    text += joint;
    found = itsScanLine.indexOf(terminator);
    if (found >= 0) {
      text += itsScanLine.leftRef(found);
      itsScanPos = found + terminator.size();
      return true;
    }
    text += itsScanLine;
    itsScanLoaded = false;
  }
  return false;
}

bool SXMLFile::TakeLineEnd() {
  if (!itsScanLoaded) return true;
  if (ChunkStart() < itsScanLine.size()) return false;
  itsScanLoaded = false;
  return true;
}
