#ifndef SHASHDICTIONARY_H
#define SHASHDICTIONARY_H

#include "SCollectableAssociation.h"
#include "SSet.h"

// Key and value pairs looked up by the key's hash and isEqual. The dictionary
// owns the pairs; keys and values die only through the ...AndDestroy calls.
class SHashDictionary : public SSet {
  SCOLLECTABLE_DECLARE(SHashDictionary)
public:
  SHashDictionary() {}
  SHashDictionary(const SHashDictionary& other);
  SHashDictionary& operator=(const SHashDictionary& other);
  ~SHashDictionary() override;
  SCollectable* newSpecies() const override { return new SHashDictionary(); }
  SCollectable* copy() const override { return new SHashDictionary(*this); }

  // Returns `key`, or null when the key is there already (nothing changes then).
  SCollectable* insertKeyAndValue(SCollectable* key, SCollectable* value);
  // The value of the key, or null.
  SCollectable* findValue(const SCollectable* key) const;
  // The stored key, with its value in `value`; null when absent.
  SCollectable* findKeyAndValue(const SCollectable* key, SCollectable*& value) const;
  // The stored key, or null.
  SCollectable* find(const SCollectable* key) const override;
  bool contains(const SCollectable* key) const override { return find(key) != nullptr; }
  // As insertKeyAndValue with a null value unless `key` is an association, which is taken over.
  SCollectable* insert(SCollectable* key) override;
  size_t occurrencesOf(const SCollectable* key) const override { return find(key) ? 1 : 0; }
  // Drops the pair of the first key that isEqual to `key` and returns the stored key.
  SCollectable* remove(const SCollectable* key) override;
  // Deletes key, value and pair.
  void removeAndDestroy(const SCollectable* key) override;
  void clear() override;
  void clearAndDestroy() override;

private:
  SCollectableAssociation* findAssociation(const SCollectable* key) const;
  void copyPairs(const SHashDictionary& other);
};

// Walks the pairs; `next` returns the key, null behind the last.
class SHashDictionaryIterator {
public:
  explicit SHashDictionaryIterator(SHashDictionary& dictionary) : itsSet(dictionary) {}
  SCollectable* next();
  SCollectable* key() const;
  SCollectable* value() const;
  // Sets the value of the current pair and returns the old one.
  SCollectable* value(SCollectable* newValue);
  SCollectable* operator()() { return next(); }
  void reset() { itsSet.reset(); }
  // Drops the current pair and hands back its key.
  SCollectable* remove();

private:
  SSetIterator itsSet;
};

class SHashDictionaryConstIterator {
public:
  explicit SHashDictionaryConstIterator(const SHashDictionary& dictionary) : itsSet(dictionary) {}
  const SCollectable* next();
  const SCollectable* key() const;
  const SCollectable* value() const;
  const SCollectable* operator()() { return next(); }
  void reset() { itsSet.reset(); }

private:
  SSetConstIterator itsSet;
};

#endif
