#include "TestPrint.h"
#include "SBinaryTreeNoDuplicates.h"
#include "SCollectableAssociation.h"
#include "SCollectableDouble.h"
#include "SCollectableInt.h"
#include "SCollectableString.h"
#include "SHashDictionary.h"
#include "SOrdered.h"
#include "SSet.h"
#include "SSortedVector.h"

#include <gtest/gtest.h>

namespace {
// Counts its deletions so that tests can see who destroys what.
class SCounted : public SCollectableInt {
public:
  SCounted(int value, int* deaths) : SCollectableInt(value), itsDeaths(deaths) {}
  ~SCounted() override { ++*itsDeaths; }

private:
  int* itsDeaths;
};

// Equal by value, told apart by a tag, to watch the order of equal elements.
class STagged : public SCollectableInt {
public:
  STagged(int value, char tag) : SCollectableInt(value), itsTag(tag) {}
  char tag() const { return itsTag; }

private:
  char itsTag;
};

SString Text(const SCollectable* object) { return *static_cast<const SCollectableString*>(object); }
}  // namespace

TEST(SCollectable, TypeInfoAndKindOf) {
  SCaseInsensitiveCollectableString name("x");
  EXPECT_EQ(name.isA(), SID_CASEINSENSITIVECOLLECTABLESTRING);
  EXPECT_TRUE(name.isKindOf(SID_COLLECTABLESTRING));
  EXPECT_TRUE(name.isKindOf(SID_COLLECTABLE));
  EXPECT_FALSE(name.isKindOf(SID_ORDERED));
  SSortedVector sorted;
  EXPECT_TRUE(sorted.isKindOf(SOrdered::staticTypeInfo()));
  EXPECT_STREQ(sorted.typeInfo()->name(), "SSortedVector");
  ASSERT_NE(CTypeInfo::Find(SID_SORTEDVECTOR), nullptr);
  EXPECT_EQ(CTypeInfo::Find(SID_SORTEDVECTOR)->name(), sorted.typeInfo()->name());
}

TEST(SCollectable, StringComparisons) {
  SCollectableString a("abc"), b("ABC");
  EXPECT_NE(a.compareTo(&b), 0);
  EXPECT_FALSE(a.isEqual(&b));
  SCaseInsensitiveCollectableString ca("abc"), cb("ABC");
  EXPECT_EQ(ca.compareTo(&cb), 0);
  EXPECT_EQ(ca.hash(), cb.hash());
  // A plain string against a subclass still compares the text.
  EXPECT_EQ(a.compareTo(&ca), 0);
  // Different kinds are ordered by class number, never equal.
  SCollectableInt number(3);
  EXPECT_NE(a.compareTo(&number), 0);
  EXPECT_FALSE(number.isEqual(&a));
  SCollectable* copy = ca.copy();
  EXPECT_EQ(copy->isA(), SID_CASEINSENSITIVECOLLECTABLESTRING);
  EXPECT_TRUE(copy->isEqual(&cb));
  delete copy;
}

TEST(SOrdered, FindAndIndexGiveTheFirstMatch) {
  SOrdered list;
  SCollectableString first("a"), second("a"), other("b");
  list.insert(&first);
  list.insert(&other);
  list.insert(&second);
  SCollectableString probe("a");
  EXPECT_EQ(list.find(&probe), &first);
  EXPECT_EQ(list.index(&probe), 0u);
  EXPECT_EQ(list.occurrencesOf(&probe), 2u);
  SCollectableString missing("z");
  EXPECT_EQ(list.index(&missing), SOrdered::npos);
  EXPECT_FALSE(list.contains(&missing));
  EXPECT_EQ(list.remove(&probe), &first);
  EXPECT_EQ(list.entries(), 2u);
  EXPECT_EQ(list.first(), &other);
  EXPECT_EQ(list.last(), &second);
}

TEST(SOrdered, PositionalInserts) {
  SOrdered list;
  SCollectableString a("a"), b("b"), c("c"), d("d"), e("e");
  list.append(&b);
  list.prepend(&a);
  list.insertAt(2, &d);
  list.insertAfter(1, &c);    // behind b
  list.insertAfter(99, &e);   // past the end appends
  ASSERT_EQ(list.entries(), 5u);
  SString joined;
  for (size_t i = 0; i < list.entries(); ++i) joined += Text(list.at(i));
  EXPECT_EQ(joined, SString("abcde"));
  SCollectableString f("f");
  list.insertAfter(-5, &f);  // a negative place becomes the front
  EXPECT_EQ(list.first(), &f);
  list.at(0) = &a;
  EXPECT_EQ(list.first(), &a);
  EXPECT_EQ(SOrdered().first(), nullptr);
}

TEST(SOrdered, ClearKeepsObjectsAndClearAndDestroyDeletesOnce) {
  int deaths = 0;
  SCounted* a = new SCounted(1, &deaths);
  SCounted* b = new SCounted(2, &deaths);
  {
    SOrdered list;
    list.insert(a);
    list.insert(b);
    list.clear();
    EXPECT_TRUE(list.isEmpty());
    EXPECT_EQ(deaths, 0);
    EXPECT_EQ(a->value(), 1);
    list.insert(a);
    list.insert(b);
    list.insert(a);  // the same object twice still dies once
    list.clearAndDestroy();
    EXPECT_EQ(deaths, 2);
  }
  SSortedVector sorted;
  sorted.insert(new SCounted(5, &deaths));
  sorted.insert(new SCounted(3, &deaths));
  sorted.insert(new SCounted(4, &deaths));
  sorted.clearAndDestroy();
  EXPECT_EQ(deaths, 5);
  EXPECT_TRUE(sorted.isEmpty());
}

TEST(SOrdered, CompareToAndCopy) {
  SCollectableString a("a"), b("b"), a2("a");
  SOrdered one, two;
  one.insert(&a);
  one.insert(&b);
  two.insert(&a2);
  EXPECT_NE(one.compareTo(&two), 0);
  two.insert(&b);
  EXPECT_EQ(one.compareTo(&two), 0);
  SOrdered* copy = one.copyFrom();
  EXPECT_EQ(copy->entries(), 2u);
  EXPECT_EQ(copy->at(1), &b);
  delete copy;
}

TEST(SOrderedDeathTest, IndexPastTheEndIsAProgramError) {
  SOrdered list;
  EXPECT_EXIT(list.at(0), ::testing::ExitedWithCode(1), "VL1003");
}

TEST(SSortedVector, KeepsOrderAndPutsTheLaterEqualFirst) {
  SSortedVector sorted;
  STagged three(3, 'x'), one(1, 'o'), first(2, 'a'), second(2, 'b'), four(4, 'f');
  sorted.insert(&three);
  sorted.insert(&one);
  sorted.insert(&first);
  sorted.insert(&four);
  sorted.insert(&second);
  ASSERT_EQ(sorted.entries(), 5u);
  const SSortedVector& view = sorted;
  SString tags;
  for (size_t i = 0; i < view.entries(); ++i) tags += static_cast<const STagged*>(view.at(i))->tag();
  EXPECT_EQ(tags, SString("obaxf"));
  STagged probe(2, '?');
  EXPECT_TRUE(sorted.contains(&probe));
  EXPECT_EQ(static_cast<STagged*>(sorted.find(&probe))->value(), 2);
  EXPECT_NE(sorted.remove(&probe), nullptr);
  EXPECT_NE(sorted.remove(&probe), nullptr);
  EXPECT_EQ(sorted.remove(&probe), nullptr);
  EXPECT_EQ(sorted.entries(), 3u);
}

TEST(SSortedVector, PositionalInsertsAreRefused) {
  SSortedVector sorted;
  SCollectableInt a(1);
  EXPECT_EQ(sorted.append(&a), nullptr);
  EXPECT_EQ(sorted.prepend(&a), nullptr);
  EXPECT_EQ(sorted.insertAfter(0, &a), nullptr);
  EXPECT_TRUE(sorted.isEmpty());
}

TEST(SSortedVector, ManyRandomInsertsStaySorted) {
  SSortedVector sorted;
  std::vector<SCollectableInt*> owned;
  unsigned seed = 12345;
  for (int i = 0; i < 500; ++i) {
    seed = seed * 1103515245u + 12345u;
    owned.push_back(new SCollectableInt((seed >> 16) % 50));
    sorted.insert(owned.back());
  }
  const SSortedVector& view = sorted;
  for (size_t i = 1; i < view.entries(); ++i)
    EXPECT_LE(static_cast<SCollectableInt*>(view.at(i - 1))->value(), static_cast<SCollectableInt*>(view.at(i))->value());
  sorted.clearAndDestroy();
}

TEST(SBinaryTreeNoDuplicates, RefusesEqualElements) {
  SBinaryTreeNoDuplicates tree;
  SCaseInsensitiveCollectableString a("Top"), b("TOP"), c("cell");
  EXPECT_EQ(tree.insert(&a), &a);
  EXPECT_EQ(tree.insert(&b), nullptr);
  EXPECT_EQ(tree.insert(&c), &c);
  EXPECT_EQ(tree.entries(), 2u);
}

TEST(SSet, SecondInsertOfEqualTextReturnsTheFirst) {
  SSet set;
  SCollectableString* first = new SCollectableString("net");
  SCollectableString* second = new SCollectableString("net");
  EXPECT_EQ(set.insert(first), first);
  EXPECT_EQ(set.insert(second), first);
  EXPECT_EQ(set.entries(), 1u);
  delete second;
  SCollectableString probe("net");
  EXPECT_EQ(set.find(&probe), first);
  EXPECT_EQ(set.occurrencesOf(&probe), 1u);
  set.removeAndDestroy(&probe);
  EXPECT_TRUE(set.isEmpty());
}

TEST(SSet, IteratorVisitsAllAndCanRemove) {
  SSet set;
  std::vector<SCollectableInt> numbers;
  numbers.reserve(20);
  for (int i = 0; i < 20; ++i) numbers.emplace_back(i);
  for (SCollectableInt& n : numbers) set.insert(&n);
  SSetIterator it(set);
  int seen = 0;
  while (SCollectable* object = it.next()) {
    ++seen;
    if (static_cast<SCollectableInt*>(object)->value() % 2 == 0) {
      EXPECT_EQ(it.remove(), object);
    }
  }
  EXPECT_EQ(seen, 20);
  EXPECT_EQ(it.next(), nullptr);
  EXPECT_EQ(set.entries(), 10u);
  it.reset();
  long long sum = 0;
  while (SCollectable* object = it.next()) sum += static_cast<SCollectableInt*>(object)->value();
  EXPECT_EQ(sum, 1 + 3 + 5 + 7 + 9 + 11 + 13 + 15 + 17 + 19);
  SSetConstIterator constIt(set);
  int count = 0;
  while (constIt.next()) ++count;
  EXPECT_EQ(count, 10);
}

TEST(SHashDictionary, InsertFindAndRemove) {
  SHashDictionary dictionary;
  SCollectableString* key = new SCollectableString("width");
  SCollectableDouble* value = new SCollectableDouble(2.5);
  EXPECT_EQ(dictionary.insertKeyAndValue(key, value), key);
  SCollectableString probe("width");
  SCollectableDouble other(1.0);
  EXPECT_EQ(dictionary.insertKeyAndValue(&probe, &other), nullptr);
  EXPECT_EQ(dictionary.entries(), 1u);
  EXPECT_EQ(dictionary.findValue(&probe), value);
  SCollectable* found = nullptr;
  EXPECT_EQ(dictionary.findKeyAndValue(&probe, found), key);
  EXPECT_EQ(found, value);
  SCollectableString absent("height");
  EXPECT_EQ(dictionary.findValue(&absent), nullptr);
  EXPECT_EQ(dictionary.findKeyAndValue(&absent, found), nullptr);
  EXPECT_EQ(found, nullptr);
  EXPECT_EQ(dictionary.remove(&probe), key);
  EXPECT_TRUE(dictionary.isEmpty());
  delete key;
  delete value;
}

TEST(SHashDictionary, DestroyCallsDeleteKeysAndValues) {
  int deaths = 0;
  SHashDictionary dictionary;
  for (int i = 0; i < 4; ++i) dictionary.insertKeyAndValue(new SCounted(i, &deaths), new SCounted(100 + i, &deaths));
  SCollectableInt probe(2);
  dictionary.removeAndDestroy(&probe);
  EXPECT_EQ(deaths, 2);
  EXPECT_EQ(dictionary.entries(), 3u);
  dictionary.clearAndDestroy();
  EXPECT_EQ(deaths, 8);
}

TEST(SHashDictionary, IteratorGivesKeysAndValues) {
  SHashDictionary dictionary;
  SCollectableInt k1(1), k2(2), v1(10), v2(20);
  dictionary.insertKeyAndValue(&k1, &v1);
  dictionary.insertKeyAndValue(&k2, &v2);
  SHashDictionaryIterator it(dictionary);
  long long total = 0;
  while (SCollectable* key = it.next()) {
    total += static_cast<SCollectableInt*>(key)->value() * static_cast<SCollectableInt*>(it.value())->value();
  }
  EXPECT_EQ(total, 1 * 10 + 2 * 20);
  it.reset();
  SCollectable* key = it.next();
  EXPECT_EQ(it.remove(), key);
  EXPECT_EQ(dictionary.entries(), 1u);
  SHashDictionaryConstIterator constIt(dictionary);
  EXPECT_NE(constIt.next(), nullptr);
  EXPECT_NE(constIt.value(), nullptr);
  EXPECT_EQ(constIt.next(), nullptr);
}

TEST(SOrderedIterator, WalksAndFindsNext) {
  SOrdered list;
  SCollectableString a("a"), b("b"), a2("a");
  list.insert(&a);
  list.insert(&b);
  list.insert(&a2);
  SOrderedIterator it(list);
  SCollectableString probe("a");
  EXPECT_EQ(it.findNext(&probe), &a);
  EXPECT_EQ(it.findNext(&probe), &a2);
  EXPECT_EQ(it.findNext(&probe), nullptr);
  EXPECT_EQ(it.next(), nullptr);
  it.reset();
  EXPECT_EQ(it.next(), &a);
  EXPECT_EQ(it.remove(), &a);
  EXPECT_EQ(it.next(), &b);
  EXPECT_EQ(list.entries(), 2u);
}
