#ifndef SCALCULATION_H
#define SCALCULATION_H

#include "SCollectableString.h"
#include "SEqnArgumentImp.h"
#include "SEqnClassID.h"
#include "SOrdered.h"

#include <QStringList>

class SEqnOwner;

// A named calculation bound to its formal arguments and to the object that owns it. The string
// is the name. Owns its arguments.
class SCalculation : public SCollectableString {
  SCOLLECTABLE_DECLARE(SCalculation)
public:
  explicit SCalculation(SEqnOwner* owner = nullptr) : itsOwner(owner) {}
  // Copies clone the arguments.
  SCalculation(const SCalculation& other);
  SCalculation& operator=(const SCalculation& other);
  ~SCalculation() override;

  virtual SCalculation* Clone() const = 0;
  SCollectable* newSpecies() const override { return Clone(); }
  SCollectable* copy() const override { return Clone(); }

  void SetOwner(SEqnOwner* owner) { itsOwner = owner; }
  SEqnOwner* GetOwner() const { return itsOwner; }

  // Replaces the arguments by plain ones of these names.
  void SetArguments(const QStringList& names);
  // Replaces the arguments, taking those of the list (SEqnArgumentImp only).
  void SetArguments(const SOrdered& arguments);
  // Takes the argument.
  void AddArgument(SEqnArgumentImp* argument);
  void AddArgument(const SString& name) { AddArgument(new SEqnArgumentImp(name)); }
  const SOrdered& GetArguments() const { return itsArguments; }
  SEqnArgumentImp* GetArgument(int index) const;
  QStringList GetArgumentNames() const;
  // Position of the argument of that name in any case, or -1.
  int FindArgument(const SString& name) const;
  void ClearArguments() { itsArguments.clearAndDestroy(); }

protected:
  SOrdered itsArguments;
  SEqnOwner* itsOwner;
};

#endif
