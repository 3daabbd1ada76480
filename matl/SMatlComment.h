#ifndef SMATLCOMMENT_H
#define SMATLCOMMENT_H

#include "SMatlMaterial.h"

#include <QList>

// The comment lines of a material file, without their leaders. The header lines that the
// writer puts at the top aren't kept, so that a file read back doesn't gather them.
class SMatlComment : public SMatlMaterial {
  SCOLLECTABLE_DECLARE(SMatlComment)
public:
  SMatlComment() {}
  SMatlComment(const SMatlComment& other) = default;

  int GetKind() const override { return CommentKind; }
  // Each comment as "; " and its text, then a blank line; nothing without comments.
  bool Write(SProjectStream& out) const override;
  SMatlMaterial* Clone() const override { return new SMatlComment(*this); }
  // The whole current line (the keyword token is no keyword here).
  bool Read(SCommentedFile& file) override;
  bool IsEqual(const SMatlMaterial& other) const override;

  // Stores the text of one line unless it is empty or a header line; true when stored.
  bool AddLine(const SString& line);
  const QList<SString>& GetLines() const { return itsLines; }
  int GetCount() const { return itsLines.size(); }
  void Clear() { itsLines.clear(); }

private:
  QList<SString> itsLines;
};

#endif
