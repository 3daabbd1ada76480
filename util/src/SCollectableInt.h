#ifndef SCOLLECTABLEINT_H
#define SCOLLECTABLEINT_H

#include "SCollectable.h"

class SCollectableInt : public SCollectable {
  SCOLLECTABLE_DECLARE(SCollectableInt)
  SCOLLECTABLE_COPYABLE(SCollectableInt)
public:
  SCollectableInt(long long value = 0) : itsValue(value) {}
  long long value() const { return itsValue; }
  void setValue(long long value) { itsValue = value; }

  int compareTo(const SCollectable* other) const override;
  unsigned hash() const override;
  bool isEqual(const SCollectable* other) const override { return compareTo(other) == 0; }

private:
  long long itsValue;
};

#endif
