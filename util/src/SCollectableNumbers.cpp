#include "SCollectableAssociation.h"
#include "SCollectableComplex.h"
#include "SCollectableDouble.h"
#include "SCollectableInt.h"

#include <QHash>

SCOLLECTABLE_DEFINE(SCollectableInt, SID_COLLECTABLEINT, &SCollectable::staticTypeInfo())
SCOLLECTABLE_DEFINE(SCollectableDouble, SID_COLLECTABLEDOUBLE, &SCollectable::staticTypeInfo())
SCOLLECTABLE_DEFINE(SCollectableComplex, SID_COLLECTABLECOMPLEX, &SCollectable::staticTypeInfo())
SCOLLECTABLE_DEFINE(SCollectableAssociation, SID_COLLECTABLEASSOCIATION, &SCollectable::staticTypeInfo())
SCOLLECTABLE_DEFINE(SCollectableIDAssociation, SID_COLLECTABLEIDASSOCIATION,
                    &SCollectableAssociation::staticTypeInfo())

namespace {
template <typename T>
int Order(T a, T b) {
  return a < b ? -1 : (b < a ? 1 : 0);
}

// Class numbers first, so that boxes of different kinds never compare equal.
bool DifferentClass(const SCollectable* self, const SCollectable* other, int& result) {
  if (!other) {
    result = 1;
    return true;
  }
  if (self->isA() != other->isA()) {
    result = int(self->isA()) - int(other->isA());
    return true;
  }
  return false;
}
}  // namespace

int SCollectableInt::compareTo(const SCollectable* other) const {
  int result = 0;
  if (DifferentClass(this, other, result)) return result;
  return Order(itsValue, static_cast<const SCollectableInt*>(other)->itsValue);
}

unsigned SCollectableInt::hash() const { return qHash(itsValue); }

int SCollectableDouble::compareTo(const SCollectable* other) const {
  int result = 0;
  if (DifferentClass(this, other, result)) return result;
  return Order(itsValue, static_cast<const SCollectableDouble*>(other)->itsValue);
}

unsigned SCollectableDouble::hash() const { return qHash(itsValue == 0.0 ? 0.0 : itsValue); }

int SCollectableComplex::compareTo(const SCollectable* other) const {
  int result = 0;
  if (DifferentClass(this, other, result)) return result;
  const std::complex<double> theirs = static_cast<const SCollectableComplex*>(other)->itsValue;
  const int real = Order(itsValue.real(), theirs.real());
  return real != 0 ? real : Order(itsValue.imag(), theirs.imag());
}

unsigned SCollectableComplex::hash() const {
  return qHash(itsValue.real() == 0.0 ? 0.0 : itsValue.real()) ^
         (qHash(itsValue.imag() == 0.0 ? 0.0 : itsValue.imag()) * 31u);
}

int SCollectableAssociation::compareTo(const SCollectable* other) const {
  const SCollectableAssociation* pair = dynamic_cast<const SCollectableAssociation*>(other);
  const SCollectable* theirKey = pair ? pair->itsKey : other;
  if (!itsKey || !theirKey) return itsKey == theirKey ? 0 : (itsKey ? 1 : -1);
  return itsKey->compareTo(theirKey);
}

unsigned SCollectableAssociation::hash() const { return itsKey ? itsKey->hash() : 0u; }

bool SCollectableAssociation::isEqual(const SCollectable* other) const {
  const SCollectableAssociation* pair = dynamic_cast<const SCollectableAssociation*>(other);
  const SCollectable* theirKey = pair ? pair->itsKey : other;
  if (!itsKey || !theirKey) return itsKey == theirKey;
  return itsKey->isEqual(theirKey);
}
