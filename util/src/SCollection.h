#ifndef SCOLLECTION_H
#define SCOLLECTION_H

#include "SCollectable.h"

#include <cstddef>

// Interface of the containers. They hold pointers and never null; whether the
// objects die with the container is said by the call that empties it.
class SCollection : public SCollectable {
  SCOLLECTABLE_DECLARE(SCollection)
public:
  virtual void clear() = 0;
  // Deletes each object once.
  virtual void clearAndDestroy() = 0;
  virtual bool contains(const SCollectable* object) const = 0;
  virtual size_t entries() const = 0;
  // First element that isEqual to `object`, or null.
  virtual SCollectable* find(const SCollectable* object) const = 0;
  virtual SCollectable* insert(SCollectable* object) = 0;
  virtual bool isEmpty() const = 0;
  virtual size_t occurrencesOf(const SCollectable* object) const = 0;
  // Takes the first match out and returns it, or null.
  virtual SCollectable* remove(const SCollectable* object) = 0;
  virtual void removeAndDestroy(const SCollectable* object) = 0;
};

#endif
