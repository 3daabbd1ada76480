#include "SEqnArgument.h"

#include "SRegexp.h"

#include <QTextStream>

SCOLLECTABLE_DEFINE(SEqnArgument, SID_EQNARGUMENT, &SCollectable::staticTypeInfo())

namespace {
// The keyword's rest of line, when the line starts with it in any case.
bool Keyword(const QString& line, const char* keyword, SString& rest) {
  const QString word = QString::fromLatin1(keyword);
  if (!line.startsWith(word, Qt::CaseInsensitive)) return false;
  QString tail = line.mid(word.size());
  const int comment = tail.indexOf(QLatin1Char('!'));
  if (comment >= 0) tail.truncate(comment);
  rest = SString(tail.trimmed());
  return true;
}
}  // namespace

bool SEqnArgument::IsValidReference(const SString& reference) {
  const SString text = reference.stripped();
  if (text == "NONE") return true;
  const int colon = text.index(SString(":"));
  if (colon < 0) return false;
  const SString kinds = text.left(colon);
  const SString ports = text.mid(colon + 1).stripped();
  if (!SRegexp("[SYZ, ]+").exactMatch(kinds)) return false;
  const SString compact(QString(kinds.qstring()).remove(QLatin1Char(' ')));
  if (compact != "S,Y,Z" && compact != "S,Y" && compact != "S,Z" && compact != "Y,Z") return false;
  return SRegexp("[Nn][Mm]").exactMatch(ports) || SRegexp("[Nn][Nn]").exactMatch(ports) || ports == "Any" ||
         SRegexp("[0-9_]+").exactMatch(ports);
}

bool SEqnArgument::SetReference(const SString& reference) {
  if (!IsValidReference(reference)) return false;
  itsReference = reference.stripped();
  return true;
}

void SEqnArgument::Write(QTextStream& stream, int number) const {
  stream << "ARG " << itsName.qstring() << " ! begin arg " << number << " definition\n";
  stream << "NAME " << itsName.qstring() << "\n";
  stream << "ANN " << itsAnnotation.qstring() << "\n";
  stream << "RES " << itsReference.qstring() << "\n";
  stream << "END ARG ! end of arg " << number << "\n";
}

bool SEqnArgument::Read(const QStringList& lines, int& index, SString& errorText) {
  SString rest;
  if (index < 0 || index >= lines.size() || !Keyword(lines[index].trimmed(), "ARG", rest)) {
    errorText = SString::format("line %d: an argument must begin with ARG", index + 1);
    return false;
  }
  itsName = rest;
  for (++index; index < lines.size(); ++index) {
    const QString line = lines[index].trimmed();
    if (line.isEmpty() || line.startsWith(QLatin1Char('!'))) continue;
    if (Keyword(line, "END ARG", rest)) {
      ++index;
      return true;
    }
    if (Keyword(line, "NAME", rest)) {
      itsName = rest;
    } else if (Keyword(line, "ANN", rest)) {
      itsAnnotation = rest;
    } else if (Keyword(line, "RES", rest)) {
      if (!SetReference(rest)) {
        errorText = SString::format("line %d: unknown response kind %s", index + 1, rest.data());
        return false;
      }
    } else {
      errorText = SString::format("line %d: unknown keyword in an argument: %s", index + 1,
                                  SString(line).data());
      return false;
    }
  }
  errorText = SString::format("line %d: the argument %s has no END ARG", index, itsName.data());
  return false;
}
