#ifndef SCOLLECTABLEASSOCIATION_H
#define SCOLLECTABLEASSOCIATION_H

#include "SCollectable.h"

// A key and value pair; owns neither. Compares, hashes and matches by its key.
class SCollectableAssociation : public SCollectable {
  SCOLLECTABLE_DECLARE(SCollectableAssociation)
  SCOLLECTABLE_COPYABLE(SCollectableAssociation)
public:
  SCollectableAssociation(SCollectable* key = nullptr, SCollectable* value = nullptr)
      : itsKey(key), itsValue(value) {}

  SCollectable* key() const { return itsKey; }
  SCollectable* value() const { return itsValue; }
  SCollectable* value(SCollectable* newValue) {
    SCollectable* old = itsValue;
    itsValue = newValue;
    return old;
  }

  int compareTo(const SCollectable* other) const override;
  unsigned hash() const override;
  bool isEqual(const SCollectable* other) const override;

private:
  SCollectable* itsKey;
  SCollectable* itsValue;
};

class SCollectableIDAssociation : public SCollectableAssociation {
  SCOLLECTABLE_DECLARE(SCollectableIDAssociation)
  SCOLLECTABLE_COPYABLE(SCollectableIDAssociation)
public:
  SCollectableIDAssociation(SCollectable* key = nullptr, SCollectable* value = nullptr)
      : SCollectableAssociation(key, value) {}
};

#endif
