#ifndef SORDERED_H
#define SORDERED_H

#include "SCollection.h"

#include <vector>

// A sequence of object pointers in insertion order.
class SOrdered : public SCollection {
  SCOLLECTABLE_DECLARE(SOrdered)
  SCOLLECTABLE_COPYABLE(SOrdered)
public:
  static constexpr size_t npos = static_cast<size_t>(-1);

  SOrdered() {}
  SOrdered(const SOrdered& other) : SCollection(other), itsItems(other.itsItems) {}
  SOrdered& operator=(const SOrdered& other) {
    itsItems = other.itsItems;
    return *this;
  }
  ~SOrdered() override {}

  // Class number, then count, then element by element (1 at the first difference).
  int compareTo(const SCollectable* other) const override;
  bool isEqual(const SCollectable* other) const override { return compareTo(other) == 0; }

  void clear() override { itsItems.clear(); }
  void clearAndDestroy() override;
  bool contains(const SCollectable* object) const override { return index(object) != npos; }
  size_t entries() const override { return itsItems.size(); }
  SCollectable* find(const SCollectable* object) const override;
  SCollectable* insert(SCollectable* object) override;
  bool isEmpty() const override { return itsItems.empty(); }
  size_t occurrencesOf(const SCollectable* object) const override;
  SCollectable* remove(const SCollectable* object) override;
  void removeAndDestroy(const SCollectable* object) override;

  virtual SCollectable* append(SCollectable* object);
  // An index at or past the end is a program error.
  virtual SCollectable*& at(size_t i);
  virtual SCollectable* at(size_t i) const;
  virtual SCollectable* first() const { return itsItems.empty() ? nullptr : itsItems.front(); }
  virtual SCollectable* last() const { return itsItems.empty() ? nullptr : itsItems.back(); }
  // Position of the first match, or npos.
  virtual size_t index(const SCollectable* object) const;
  virtual SCollectable* insertAt(size_t i, SCollectable* object);
  virtual SCollectable* prepend(SCollectable* object);
  virtual SCollectable* insertAfter(int i, SCollectable* object);
  // A new list holding the same pointers.
  virtual SOrdered* copyFrom() const { return new SOrdered(*this); }
  void copyFrom(const SOrdered& list) { itsItems = list.itsItems; }

  SCollectable* operator[](size_t i) const { return at(i); }
  // Takes out the element at a position and returns it; null past the end.
  SCollectable* removeAt(size_t i);
  SCollectable* removeFirst() { return itsItems.empty() ? nullptr : removeAt(0); }
  SCollectable* removeLast() { return itsItems.empty() ? nullptr : removeAt(itsItems.size() - 1); }
  // Orders by a function, keeping equal elements in place (stable).
  void sort(bool (*less)(const SCollectable*, const SCollectable*));

  typedef std::vector<SCollectable*>::const_iterator const_iterator;
  const_iterator begin() const { return itsItems.begin(); }
  const_iterator end() const { return itsItems.end(); }

protected:
  void boundsCheck(size_t i) const;
  std::vector<SCollectable*> itsItems;
};

// Walks an SOrdered; `next` returns null behind the last element.
class SOrderedIterator {
public:
  explicit SOrderedIterator(SOrdered& list) : itsList(&list) {}
  SCollectable* next();
  // Moves to the next element that isEqual to `object`; null when there is none.
  SCollectable* findNext(const SCollectable* object);
  SCollectable* key() const;
  SCollectable* operator()() { return next(); }
  void reset() { itsPosition = -1; }
  // Takes out the current element; the walk goes on with the one behind it.
  SCollectable* remove();
  // Puts an element behind the current one.
  SCollectable* insertAfterPoint(SCollectable* object);
  SOrdered* container() const { return itsList; }

private:
  SOrdered* itsList;
  long long itsPosition = -1;
};

class SOrderedConstIterator {
public:
  explicit SOrderedConstIterator(const SOrdered& list) : itsList(&list) {}
  const SCollectable* next();
  const SCollectable* findNext(const SCollectable* object);
  const SCollectable* key() const;
  const SCollectable* operator()() { return next(); }
  void reset() { itsPosition = -1; }

private:
  const SOrdered* itsList;
  long long itsPosition = -1;
};

#endif
