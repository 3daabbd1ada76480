#ifndef SPARAMETERBLOCK_H
#define SPARAMETERBLOCK_H

#include "SFileBlock.h"
#include "SVariableSpecification.h"

// VAR: named values of a project without a geometry, as a variable list. An entry read
// from a VALVAR line, or holding a unit, description, hidden value or constraints, goes out
// in that form from format index 21 on; the others as "<name> = <value>", with " false"
// from format index 9 on for an entry out of use.
class SParameterBlock : public SFileBlock {
  SCOLLECTABLE_DECLARE(SParameterBlock)
  SCOLLECTABLE_COPYABLE(SParameterBlock)
public:
  explicit SParameterBlock(SProject* owner = nullptr) : SFileBlock(owner, "VAR") {}

  bool ReadBody(SFile& file, SProjectErrorManager& errors) override;
  void WriteBody(SProjectStream& out) override;
  // The copy's values refer to `owner`.
  SFileBlock* Clone(SProject* owner) const override;

  SVariableSpecification& GetSpecification() { return itsList; }
  const SVariableSpecification& GetSpecification() const { return itsList; }
  void Clear() { itsList.Clear(); }

private:
  SVariableSpecification itsList;
};

#endif
