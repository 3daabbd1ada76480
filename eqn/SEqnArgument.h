#ifndef SEQNARGUMENT_H
#define SEQNARGUMENT_H

#include "SCollectable.h"
#include "SEqnClassID.h"
#include "SString.h"

#include <QStringList>

class QTextStream;

// An argument as an equation file declares it: name, annotation and the response it refers to.
class SEqnArgument : public SCollectable {
  SCOLLECTABLE_DECLARE(SEqnArgument)
  SCOLLECTABLE_COPYABLE(SEqnArgument)
public:
  SEqnArgument() {}
  SEqnArgument(const SString& name, const SString& annotation, const SString& reference)
      : itsName(name), itsAnnotation(annotation), itsReference(reference) {}

  const SString& GetName() const { return itsName; }
  const SString& GetAnnotation() const { return itsAnnotation; }
  // The response kind: "S, Y, Z: nm", "Y, Z: Any", "S, Y: 1_2", "NONE" ...
  const SString& GetReference() const { return itsReference; }
  void SetName(const SString& name) { itsName = name; }
  void SetAnnotation(const SString& annotation) { itsAnnotation = annotation; }
  // False, changing nothing, for a response kind that isn't accepted.
  bool SetReference(const SString& reference);
  static bool IsValidReference(const SString& reference);

  // The text form, `number` counting the arguments of the file from 1.
  void Write(QTextStream& stream, int number) const;
  // Reads the text form from lines[index] on; index ends behind "END ARG". False with the
  // words and the line in errorText.
  bool Read(const QStringList& lines, int& index, SString& errorText);

private:
  SString itsName;
  SString itsAnnotation;
  SString itsReference = "NONE";
};

#endif
