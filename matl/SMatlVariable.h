#ifndef SMATLVARIABLE_H
#define SMATLVARIABLE_H

#include "SMatlMaterial.h"
#include "SVariablePair.h"

// A "VAR" line: name = value. A value in number form is a number, any other an expression.
class SMatlVariable : public SMatlMaterial {
  SCOLLECTABLE_DECLARE(SMatlVariable)
public:
  SMatlVariable() {}
  SMatlVariable(const SMatlVariable& other) = default;

  int GetKind() const override { return VariableKind; }
  // VAR "name" = value, the value as a number with the significant digits of SMatlUtil or
  // as the expression's text.
  bool Write(SProjectStream& out) const override;
  SMatlMaterial* Clone() const override { return new SMatlVariable(*this); }
  // A trailing " true" or " false" is cut; the name loses blanks and double quotes at both
  // ends, the value its blanks. A variable of that name in the owner's scratch project takes
  // the value, with the description "Variable set in material file".
  bool Read(SCommentedFile& file) override;
  bool IsEqual(const SMatlMaterial& other) const override;
  SString GetName() const override { return itsPair.GetName(); }

  // Name and value; text in number form becomes a number.
  void Set(const SString& name, const SString& value);
  SVariablePair& Pair() { return itsPair; }
  const SVariablePair& GetPair() const { return itsPair; }
  // The value's text: the number with 15 significant digits, or the expression.
  SString GetValueText() const;
  // Gives the value to the variable of the same name in `project`, when it has one.
  bool SetIntoProject(SProject* project) const;

private:
  SVariablePair itsPair;
};

#endif
