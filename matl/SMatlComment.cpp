#include "SMatlComment.h"

#include "SCommentedFile.h"
#include "SMatlClassID.h"
#include "SMatlUtil.h"
#include "SProjectStream.h"
#include "SRegexp.h"
#include "SVeloraTrace.h"

SCOLLECTABLE_DEFINE(SMatlComment, SID_MATLCOMMENT, &SMatlMaterial::staticTypeInfo())

bool SMatlComment::AddLine(const SString& line) {
  const SString text = SMatlUtil::StripCommentLeader(line);
  if (text.isEmpty()) return false;
  // The writer's own header, read back, isn't a comment of the user's.
  static const char* const kHeaders[] = {"Layer file for Cadence ADE and/or Keysight ADS to Velora em translation",
                                         "Layer file for Cadence ADE and/or Agilent ADS to Velora em translation",
                                         "Translated from "};
  for (const char* header : kHeaders)
    if (text.index(SRegexp(header)) >= 0) return false;
  VeloraTrace(5, TRACE_GENERAL, "AEL comment found: '%s'.", text.data());
  itsLines.append(text);
  return true;
}

bool SMatlComment::Read(SCommentedFile& file) {
  AddLine(file.CurrentLine());
  file.SkipLine();
  return true;
}

bool SMatlComment::Write(SProjectStream& out) const {
  if (itsLines.isEmpty()) return true;
  for (const SString& line : itsLines) {
    // The token reader lets an open quote run on into the next line, even in a comment: a
    // comment read that way holds line ends, and one with an odd number of quotes would take
    // the line after it along. Written, each stays one line and takes nothing along.
    QString text = line.qstring();
    text.replace(QLatin1Char('\r'), QLatin1Char(' ')).replace(QLatin1Char('\n'), QLatin1Char(' '));
    if (text.count(QLatin1Char('"')) % 2 != 0) text.replace(QLatin1Char('"'), QLatin1Char('\''));
    out << "; " << SString(text) << '\n';
  }
  out << '\n';
  return true;
}

bool SMatlComment::IsEqual(const SMatlMaterial& other) const {
  const SMatlComment* o = dynamic_cast<const SMatlComment*>(&other);
  return o && itsLines == o->itsLines;
}
