#ifndef SBLOCKDICTIONARY_H
#define SBLOCKDICTIONARY_H

#include "SHashDictionary.h"
#include "SString.h"

#include <vector>

class SFileBlock;

// The blocks of a project by name. Owns names and blocks; also keeps the order in which
// they were added, so that walks over all blocks are the same in every run.
class SBlockDictionary : public SHashDictionary {
  SCOLLECTABLE_DECLARE(SBlockDictionary)
public:
  SBlockDictionary() {}
  ~SBlockDictionary() override { Clear(); }
  SBlockDictionary(const SBlockDictionary&) = delete;
  SBlockDictionary& operator=(const SBlockDictionary&) = delete;
  SCollectable* newSpecies() const override { return new SBlockDictionary(); }
  SCollectable* copy() const override { return new SBlockDictionary(); }

  // Takes ownership; false (and the block is deleted) when the name is taken.
  bool Add(SFileBlock* block);
  // Whole, case-sensitive name; null when there is no such block.
  SFileBlock* Find(const SString& name) const;
  const std::vector<SFileBlock*>& InOrder() const { return itsOrder; }
  void Clear();

private:
  std::vector<SFileBlock*> itsOrder;
};

#endif
