#include "SBinaryTreeNoDuplicates.h"
#include "SSortedVector.h"

#include <QDebug>

SCOLLECTABLE_DEFINE(SSortedVector, SID_SORTEDVECTOR, &SOrdered::staticTypeInfo())
SCOLLECTABLE_DEFINE(SBinaryTreeNoDuplicates, SID_BINARYTREENODUPLICATES, &SSortedVector::staticTypeInfo())

namespace {
void Disallowed() { qDebug("Disallowed in this class."); }
}  // namespace

long long SSortedVector::search(const SCollectable* object, size_t& place) const {
  long long low = 0;
  long long high = static_cast<long long>(itsItems.size()) - 1;
  while (low <= high) {
    const long long mid = low + (high - low) / 2;
    const int order = object->compareTo(itsItems[static_cast<size_t>(mid)]);
    if (order == 0) {
      place = static_cast<size_t>(mid);
      return mid;
    }
    if (order < 0)
      high = mid - 1;
    else
      low = mid + 1;
  }
  place = static_cast<size_t>(low);
  return -1;
}

SCollectable* SSortedVector::find(const SCollectable* object) const {
  const size_t i = index(object);
  return i == npos ? nullptr : itsItems[i];
}

SCollectable* SSortedVector::insert(SCollectable* object) {
  if (!object) return nullptr;
  size_t place = 0;
  if (search(object, place) < 0) {
    // The search ends next to the place; move down while the new one sorts before.
    while (place > 0 && object->compareTo(itsItems[place - 1]) < 0) --place;
    while (place < itsItems.size() && object->compareTo(itsItems[place]) > 0) ++place;
  }
  itsItems.insert(itsItems.begin() + static_cast<std::ptrdiff_t>(place), object);
  return object;
}

SCollectable* SSortedVector::remove(const SCollectable* object) {
  const size_t i = index(object);
  return i == npos ? nullptr : removeAt(i);
}

size_t SSortedVector::index(const SCollectable* object) const {
  if (!object) return npos;
  size_t place = 0;
  const long long found = search(object, place);
  return found < 0 ? npos : static_cast<size_t>(found);
}

SCollectable* SSortedVector::append(SCollectable*) {
  Disallowed();
  return nullptr;
}

SCollectable*& SSortedVector::at(size_t i) {
  Disallowed();
  return SOrdered::at(i);
}

SCollectable* SSortedVector::insertAt(size_t, SCollectable*) {
  Disallowed();
  return nullptr;
}

SCollectable* SSortedVector::prepend(SCollectable*) {
  Disallowed();
  return nullptr;
}

SCollectable* SSortedVector::insertAfter(int, SCollectable*) {
  Disallowed();
  return nullptr;
}

SCollectable* SBinaryTreeNoDuplicates::insert(SCollectable* object) {
  if (!object || contains(object)) return nullptr;
  return SSortedVector::insert(object);
}
