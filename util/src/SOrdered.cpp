#include "SOrdered.h"

#include <unordered_set>

#include "SVeloraError.h"

#include <algorithm>

SCOLLECTABLE_DEFINE(SCollection, SID_COLLECTION, &SCollectable::staticTypeInfo())
SCOLLECTABLE_DEFINE(SOrdered, SID_ORDERED, &SCollection::staticTypeInfo())

int SOrdered::compareTo(const SCollectable* other) const {
  if (!other) return 1;
  if (isA() != other->isA()) return int(isA()) - int(other->isA());
  const SOrdered* list = dynamic_cast<const SOrdered*>(other);
  if (!list) return SCollectable::compareTo(other);
  if (itsItems.size() != list->itsItems.size())
    return itsItems.size() < list->itsItems.size() ? -1 : 1;
  for (size_t i = 0; i < itsItems.size(); ++i)
    if (itsItems[i]->compareTo(list->itsItems[i]) != 0) return 1;
  return 0;
}

void SOrdered::clearAndDestroy() {
  // Taken out first, so that a destructor looking back at the list finds nothing stale.
  std::vector<SCollectable*> items;
  items.swap(itsItems);
  // The same pointer may stand more than once; it dies once. Lists of
  // millions of elements make a pairwise search too slow.
  std::unordered_set<SCollectable*> seen;
  seen.reserve(items.size());
  for (SCollectable* object : items) {
    if (object && seen.insert(object).second) delete object;
  }
}

SCollectable* SOrdered::find(const SCollectable* object) const {
  const size_t i = index(object);
  return i == npos ? nullptr : itsItems[i];
}

SCollectable* SOrdered::insert(SCollectable* object) {
  if (object) itsItems.push_back(object);
  return object;
}

size_t SOrdered::occurrencesOf(const SCollectable* object) const {
  if (!object) return 0;
  size_t count = 0;
  for (SCollectable* item : itsItems)
    if (item->isEqual(object)) ++count;
  return count;
}

SCollectable* SOrdered::remove(const SCollectable* object) {
  const size_t i = index(object);
  return i == npos ? nullptr : removeAt(i);
}

void SOrdered::removeAndDestroy(const SCollectable* object) { delete remove(object); }

SCollectable* SOrdered::append(SCollectable* object) { return SOrdered::insert(object); }

void SOrdered::boundsCheck(size_t i) const {
  if (i >= itsItems.size())
    VeloraFatalError("VL1003", "void SOrdered::boundsCheck(size_t) const", __LINE__, "i < size_t(vec.size())");
}

SCollectable*& SOrdered::at(size_t i) {
  boundsCheck(i);
  return itsItems[i];
}

SCollectable* SOrdered::at(size_t i) const {
  boundsCheck(i);
  return itsItems[i];
}

size_t SOrdered::index(const SCollectable* object) const {
  if (!object) return npos;
  for (size_t i = 0; i < itsItems.size(); ++i)
    if (itsItems[i]->isEqual(object)) return i;
  return npos;
}

SCollectable* SOrdered::insertAt(size_t i, SCollectable* object) {
  if (!object) return nullptr;
  if (i > itsItems.size()) boundsCheck(i);
  itsItems.insert(itsItems.begin() + static_cast<std::ptrdiff_t>(i), object);
  return object;
}

SCollectable* SOrdered::prepend(SCollectable* object) {
  if (!object) return nullptr;
  itsItems.insert(itsItems.begin(), object);
  return object;
}

SCollectable* SOrdered::insertAfter(int i, SCollectable* object) {
  if (!object) return nullptr;
  long long position = static_cast<long long>(i) + 1;
  if (position < 0) position = 0;
  if (position >= static_cast<long long>(itsItems.size())) {
    itsItems.push_back(object);
  } else {
    itsItems.insert(itsItems.begin() + static_cast<std::ptrdiff_t>(position), object);
  }
  return object;
}

SCollectable* SOrdered::removeAt(size_t i) {
  if (i >= itsItems.size()) return nullptr;
  SCollectable* object = itsItems[i];
  itsItems.erase(itsItems.begin() + static_cast<std::ptrdiff_t>(i));
  return object;
}

void SOrdered::sort(bool (*less)(const SCollectable*, const SCollectable*)) {
  if (less) std::stable_sort(itsItems.begin(), itsItems.end(), less);
}

SCollectable* SOrderedIterator::next() {
  const long long size = static_cast<long long>(itsList->entries());
  if (itsPosition < size) ++itsPosition;
  return itsPosition < size ? static_cast<const SOrdered*>(itsList)->at(static_cast<size_t>(itsPosition)) : nullptr;
}

SCollectable* SOrderedIterator::findNext(const SCollectable* object) {
  while (SCollectable* item = next())
    if (item->isEqual(object)) return item;
  return nullptr;
}

SCollectable* SOrderedIterator::key() const {
  if (itsPosition < 0 || itsPosition >= static_cast<long long>(itsList->entries())) return nullptr;
  return static_cast<const SOrdered*>(itsList)->at(static_cast<size_t>(itsPosition));
}

SCollectable* SOrderedIterator::remove() {
  if (itsPosition < 0 || itsPosition >= static_cast<long long>(itsList->entries())) return nullptr;
  SCollectable* object = itsList->removeAt(static_cast<size_t>(itsPosition));
  --itsPosition;
  return object;
}

SCollectable* SOrderedIterator::insertAfterPoint(SCollectable* object) {
  return itsList->insertAfter(static_cast<int>(itsPosition), object);
}

const SCollectable* SOrderedConstIterator::next() {
  const long long size = static_cast<long long>(itsList->entries());
  if (itsPosition < size) ++itsPosition;
  return itsPosition < size ? itsList->at(static_cast<size_t>(itsPosition)) : nullptr;
}

const SCollectable* SOrderedConstIterator::findNext(const SCollectable* object) {
  while (const SCollectable* item = next())
    if (item->isEqual(object)) return item;
  return nullptr;
}

const SCollectable* SOrderedConstIterator::key() const {
  if (itsPosition < 0 || itsPosition >= static_cast<long long>(itsList->entries())) return nullptr;
  return itsList->at(static_cast<size_t>(itsPosition));
}
