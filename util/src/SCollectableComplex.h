#ifndef SCOLLECTABLECOMPLEX_H
#define SCOLLECTABLECOMPLEX_H

#include "SCollectable.h"

#include <complex>

class SCollectableComplex : public SCollectable {
  SCOLLECTABLE_DECLARE(SCollectableComplex)
  SCOLLECTABLE_COPYABLE(SCollectableComplex)
public:
  SCollectableComplex(std::complex<double> value = std::complex<double>()) : itsValue(value) {}
  std::complex<double> value() const { return itsValue; }
  void setValue(std::complex<double> value) { itsValue = value; }

  // Ordered by real part, then imaginary part.
  int compareTo(const SCollectable* other) const override;
  unsigned hash() const override;
  bool isEqual(const SCollectable* other) const override { return compareTo(other) == 0; }

private:
  std::complex<double> itsValue;
};

#endif
