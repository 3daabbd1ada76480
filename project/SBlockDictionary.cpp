#include "SBlockDictionary.h"

#include "SCollectableString.h"
#include "SFileBlock.h"
#include "SProjectClassID.h"

SCOLLECTABLE_DEFINE(SBlockDictionary, SID_BLOCKDICTIONARY, &SHashDictionary::staticTypeInfo())

bool SBlockDictionary::Add(SFileBlock* block) {
  SCollectableString* key = new SCollectableString(block->GetName());
  if (!insertKeyAndValue(key, block)) {
    delete key;
    delete block;
    return false;
  }
  itsOrder.push_back(block);
  return true;
}

SFileBlock* SBlockDictionary::Find(const SString& name) const {
  const SCollectableString key(name);
  return static_cast<SFileBlock*>(findValue(&key));
}

void SBlockDictionary::Clear() {
  clearAndDestroy();
  itsOrder.clear();
}
