#include "SHashDictionary.h"
#include "SSet.h"

#include <QSet>

SCOLLECTABLE_DEFINE(SSet, SID_SET, &SCollection::staticTypeInfo())
SCOLLECTABLE_DEFINE(SHashDictionary, SID_HASHDICTIONARY, &SSet::staticTypeInfo())

void SSet::clearAndDestroy() {
  Table table;
  table.swap(itsTable);
  QSet<SCollectable*> seen;
  for (SCollectable* object : table)
    if (!seen.contains(object)) {
      seen.insert(object);
      delete object;
    }
}

SCollectable* SSet::find(const SCollectable* object) const {
  if (!object) return nullptr;
  for (Table::const_iterator it = itsTable.constFind(object->hash()); it != itsTable.cend() && it.key() == object->hash(); ++it)
    if (it.value()->isEqual(object)) return it.value();
  return nullptr;
}

SCollectable* SSet::insert(SCollectable* object) {
  if (!object) return nullptr;
  if (SCollectable* existing = find(object)) return existing;
  itsTable.insert(object->hash(), object);
  return object;
}

size_t SSet::occurrencesOf(const SCollectable* object) const {
  if (!object) return 0;
  size_t count = 0;
  for (Table::const_iterator it = itsTable.constFind(object->hash()); it != itsTable.cend() && it.key() == object->hash(); ++it)
    if (it.value()->isEqual(object)) ++count;
  return count;
}

SCollectable* SSet::remove(const SCollectable* object) {
  if (!object) return nullptr;
  const unsigned hash = object->hash();
  for (Table::iterator it = itsTable.find(hash); it != itsTable.end() && it.key() == hash; ++it)
    if (it.value()->isEqual(object)) {
      SCollectable* found = it.value();
      itsTable.erase(it);
      return found;
    }
  return nullptr;
}

void SSet::removeAndDestroy(const SCollectable* object) { delete remove(object); }

SCollectable* SSetIterator::next() {
  if (!itsStarted) {
    itsIt = itsSet->itsTable.begin();
    itsStarted = true;
  } else if (itsRemoved) {
    itsRemoved = false;
  } else if (itsIt != itsSet->itsTable.end()) {
    ++itsIt;
  }
  return itsIt != itsSet->itsTable.end() ? itsIt.value() : nullptr;
}

SCollectable* SSetIterator::key() const {
  if (!itsStarted || itsRemoved || itsIt == itsSet->itsTable.end()) return nullptr;
  return itsIt.value();
}

SCollectable* SSetIterator::remove() {
  if (!itsStarted || itsRemoved || itsIt == itsSet->itsTable.end()) return nullptr;
  SCollectable* object = itsIt.value();
  itsIt = itsSet->itsTable.erase(itsIt);
  itsRemoved = true;
  return object;
}

const SCollectable* SSetConstIterator::next() {
  if (!itsStarted) {
    itsIt = itsSet->itsTable.cbegin();
    itsStarted = true;
  } else if (itsIt != itsSet->itsTable.cend()) {
    ++itsIt;
  }
  return itsIt != itsSet->itsTable.cend() ? itsIt.value() : nullptr;
}

const SCollectable* SSetConstIterator::key() const {
  if (!itsStarted || itsIt == itsSet->itsTable.cend()) return nullptr;
  return itsIt.value();
}

SHashDictionary::SHashDictionary(const SHashDictionary& other) : SSet() { copyPairs(other); }

SHashDictionary& SHashDictionary::operator=(const SHashDictionary& other) {
  if (this != &other) {
    clear();
    copyPairs(other);
  }
  return *this;
}

SHashDictionary::~SHashDictionary() { clear(); }

void SHashDictionary::copyPairs(const SHashDictionary& other) {
  for (SCollectable* object : other.itsTable) {
    SCollectableAssociation* pair = static_cast<SCollectableAssociation*>(object);
    itsTable.insert(pair->hash(), new SCollectableAssociation(pair->key(), pair->value()));
  }
}

SCollectableAssociation* SHashDictionary::findAssociation(const SCollectable* key) const {
  if (!key) return nullptr;
  const unsigned hash = key->hash();
  for (Table::const_iterator it = itsTable.constFind(hash); it != itsTable.cend() && it.key() == hash; ++it) {
    SCollectableAssociation* pair = static_cast<SCollectableAssociation*>(it.value());
    if (pair->key()->isEqual(key)) return pair;
  }
  return nullptr;
}

SCollectable* SHashDictionary::insertKeyAndValue(SCollectable* key, SCollectable* value) {
  if (!key || findAssociation(key)) return nullptr;
  itsTable.insert(key->hash(), new SCollectableAssociation(key, value));
  return key;
}

SCollectable* SHashDictionary::insert(SCollectable* key) {
  if (SCollectableAssociation* pair = dynamic_cast<SCollectableAssociation*>(key)) {
    if (!pair->key()) return nullptr;
    if (SCollectableAssociation* existing = findAssociation(pair->key())) return existing;
    itsTable.insert(pair->hash(), pair);
    return pair;
  }
  return insertKeyAndValue(key, nullptr);
}

SCollectable* SHashDictionary::findValue(const SCollectable* key) const {
  SCollectableAssociation* pair = findAssociation(key);
  return pair ? pair->value() : nullptr;
}

SCollectable* SHashDictionary::findKeyAndValue(const SCollectable* key, SCollectable*& value) const {
  SCollectableAssociation* pair = findAssociation(key);
  value = pair ? pair->value() : nullptr;
  return pair ? pair->key() : nullptr;
}

SCollectable* SHashDictionary::find(const SCollectable* key) const {
  SCollectableAssociation* pair = findAssociation(key);
  return pair ? pair->key() : nullptr;
}

SCollectable* SHashDictionary::remove(const SCollectable* key) {
  if (!key) return nullptr;
  // The whole table is walked, so a key whose hash disagrees with isEqual is still found.
  for (Table::iterator it = itsTable.begin(); it != itsTable.end(); ++it) {
    SCollectableAssociation* pair = static_cast<SCollectableAssociation*>(it.value());
    if (pair->key()->isEqual(key)) {
      SCollectable* found = pair->key();
      itsTable.erase(it);
      delete pair;
      return found;
    }
  }
  return nullptr;
}

void SHashDictionary::removeAndDestroy(const SCollectable* key) {
  if (!key) return;
  for (Table::iterator it = itsTable.begin(); it != itsTable.end(); ++it) {
    SCollectableAssociation* pair = static_cast<SCollectableAssociation*>(it.value());
    if (pair->key()->isEqual(key)) {
      itsTable.erase(it);
      SCollectable* storedKey = pair->key();
      SCollectable* value = pair->value();
      delete pair;
      if (value != storedKey) delete value;
      delete storedKey;
      return;
    }
  }
}

void SHashDictionary::clear() {
  Table table;
  table.swap(itsTable);
  for (SCollectable* pair : table) delete pair;
}

void SHashDictionary::clearAndDestroy() {
  Table table;
  table.swap(itsTable);
  QSet<SCollectable*> seen;
  for (SCollectable* object : table) {
    SCollectableAssociation* pair = static_cast<SCollectableAssociation*>(object);
    SCollectable* parts[2] = {pair->key(), pair->value()};
    for (SCollectable* part : parts)
      if (part && !seen.contains(part)) {
        seen.insert(part);
        delete part;
      }
    delete pair;
  }
}

SCollectable* SHashDictionaryIterator::next() {
  SCollectable* pair = itsSet.next();
  return pair ? static_cast<SCollectableAssociation*>(pair)->key() : nullptr;
}

SCollectable* SHashDictionaryIterator::key() const {
  SCollectable* pair = itsSet.key();
  return pair ? static_cast<SCollectableAssociation*>(pair)->key() : nullptr;
}

SCollectable* SHashDictionaryIterator::value() const {
  SCollectable* pair = itsSet.key();
  return pair ? static_cast<SCollectableAssociation*>(pair)->value() : nullptr;
}

SCollectable* SHashDictionaryIterator::value(SCollectable* newValue) {
  SCollectable* pair = itsSet.key();
  return pair ? static_cast<SCollectableAssociation*>(pair)->value(newValue) : nullptr;
}

SCollectable* SHashDictionaryIterator::remove() {
  SCollectable* pair = itsSet.remove();
  if (!pair) return nullptr;
  SCollectable* key = static_cast<SCollectableAssociation*>(pair)->key();
  delete pair;
  return key;
}

const SCollectable* SHashDictionaryConstIterator::next() {
  const SCollectable* pair = itsSet.next();
  return pair ? static_cast<const SCollectableAssociation*>(pair)->key() : nullptr;
}

const SCollectable* SHashDictionaryConstIterator::key() const {
  const SCollectable* pair = itsSet.key();
  return pair ? static_cast<const SCollectableAssociation*>(pair)->key() : nullptr;
}

const SCollectable* SHashDictionaryConstIterator::value() const {
  const SCollectable* pair = itsSet.key();
  return pair ? static_cast<const SCollectableAssociation*>(pair)->value() : nullptr;
}
