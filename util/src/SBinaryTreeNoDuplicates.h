#ifndef SBINARYTREENODUPLICATES_H
#define SBINARYTREENODUPLICATES_H

#include "SSortedVector.h"

// A sorted vector that refuses an element equal to one it has.
class SBinaryTreeNoDuplicates : public SSortedVector {
  SCOLLECTABLE_DECLARE(SBinaryTreeNoDuplicates)
  SCOLLECTABLE_COPYABLE(SBinaryTreeNoDuplicates)
public:
  // Null, and nothing added, when an equal element exists.
  SCollectable* insert(SCollectable* object) override;
  SOrdered* copyFrom() const override { return new SBinaryTreeNoDuplicates(*this); }
  using SOrdered::copyFrom;
};

#endif
