#ifndef SCOLLECTABLEDOUBLE_H
#define SCOLLECTABLEDOUBLE_H

#include "SCollectable.h"

class SCollectableDouble : public SCollectable {
  SCOLLECTABLE_DECLARE(SCollectableDouble)
  SCOLLECTABLE_COPYABLE(SCollectableDouble)
public:
  SCollectableDouble(double value = 0.0) : itsValue(value) {}
  double value() const { return itsValue; }
  void setValue(double value) { itsValue = value; }

  int compareTo(const SCollectable* other) const override;
  unsigned hash() const override;
  bool isEqual(const SCollectable* other) const override { return compareTo(other) == 0; }

private:
  double itsValue;
};

#endif
