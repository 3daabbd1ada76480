#ifndef SSET_H
#define SSET_H

#include "SCollection.h"

#include <QMultiHash>

// A hash table of objects keyed by their hash and told apart by isEqual.
// Iteration follows the table's order.
class SSet : public SCollection {
  SCOLLECTABLE_DECLARE(SSet)
  SCOLLECTABLE_COPYABLE(SSet)
public:
  SSet() {}
  SSet(const SSet& other) : SCollection(other), itsTable(other.itsTable) {}
  SSet& operator=(const SSet& other) {
    itsTable = other.itsTable;
    return *this;
  }

  void clear() override { itsTable.clear(); }
  void clearAndDestroy() override;
  bool contains(const SCollectable* object) const override { return find(object) != nullptr; }
  size_t entries() const override { return static_cast<size_t>(itsTable.size()); }
  SCollectable* find(const SCollectable* object) const override;
  // Returns the element already there when one is equal, else adds and returns `object`.
  SCollectable* insert(SCollectable* object) override;
  bool isEmpty() const override { return itsTable.isEmpty(); }
  size_t occurrencesOf(const SCollectable* object) const override;
  SCollectable* remove(const SCollectable* object) override;
  void removeAndDestroy(const SCollectable* object) override;

protected:
  typedef QMultiHash<unsigned, SCollectable*> Table;
  Table itsTable;

  friend class SSetIterator;
  friend class SSetConstIterator;
  friend class SHashDictionaryIterator;
  friend class SHashDictionaryConstIterator;
};

// Walks a set; `next` returns null behind the last element.
class SSetIterator {
public:
  explicit SSetIterator(SSet& set) : itsSet(&set) {}
  SCollectable* next();
  SCollectable* key() const;
  SCollectable* operator()() { return next(); }
  void reset() { itsStarted = false; itsRemoved = false; }
  // Takes out the current element and returns it; the walk goes on behind it.
  SCollectable* remove();

protected:
  SSet* itsSet;
  SSet::Table::iterator itsIt;
  bool itsStarted = false;
  bool itsRemoved = false;
};

class SSetConstIterator {
public:
  explicit SSetConstIterator(const SSet& set) : itsSet(&set) {}
  const SCollectable* next();
  const SCollectable* key() const;
  const SCollectable* operator()() { return next(); }
  void reset() { itsStarted = false; }

protected:
  const SSet* itsSet;
  SSet::Table::const_iterator itsIt;
  bool itsStarted = false;
};

#endif
