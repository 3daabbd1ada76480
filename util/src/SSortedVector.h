#ifndef SSORTEDVECTOR_H
#define SSORTEDVECTOR_H

#include "SOrdered.h"

// An SOrdered kept ascending by compareTo. Equal elements stand together, the
// later insert in front. Positional inserts would break the order and are refused.
class SSortedVector : public SOrdered {
  SCOLLECTABLE_DECLARE(SSortedVector)
  SCOLLECTABLE_COPYABLE(SSortedVector)
public:
  SSortedVector() {}

  SCollectable* find(const SCollectable* object) const override;
  SCollectable* insert(SCollectable* object) override;
  SCollectable* remove(const SCollectable* object) override;
  // Some equal element of a run, found by binary search; npos when none.
  size_t index(const SCollectable* object) const override;

  SCollectable* append(SCollectable* object) override;
  SCollectable*& at(size_t i) override;
  using SOrdered::at;
  SCollectable* insertAt(size_t i, SCollectable* object) override;
  SCollectable* prepend(SCollectable* object) override;
  SCollectable* insertAfter(int i, SCollectable* object) override;
  SOrdered* copyFrom() const override { return new SSortedVector(*this); }
  using SOrdered::copyFrom;

protected:
  // Position of an equal element, or -1 with `place` at the insertion point.
  long long search(const SCollectable* object, size_t& place) const;
};

#endif
