#include "SCollectableString.h"

SCOLLECTABLE_DEFINE(SCollectableString, SID_COLLECTABLESTRING, &SCollectable::staticTypeInfo())
SCOLLECTABLE_DEFINE(SCaseInsensitiveCollectableString, SID_CASEINSENSITIVECOLLECTABLESTRING,
                    &SCollectableString::staticTypeInfo())

int SCollectableString::compareTo(const SCollectable* other) const {
  if (!other) return 1;
  const SCollectableString* text = dynamic_cast<const SCollectableString*>(other);
  const int mine = isA();
  const int theirs = other->isA();
  if (!text) return mine != theirs ? mine - theirs : SCollectable::compareTo(other);
  if (mine != theirs && mine != SID_COLLECTABLESTRING && theirs != SID_COLLECTABLESTRING) return mine - theirs;
  return compareText(*text);
}

int SCollectableString::compareText(const SCollectableString& other) const { return compare(other, false); }

unsigned SCollectableString::hash() const { return qHash(static_cast<const SString&>(*this)); }

int SCaseInsensitiveCollectableString::compareText(const SCollectableString& other) const {
  return compare(other, true);
}

unsigned SCaseInsensitiveCollectableString::hash() const { return qHash(qstring().toCaseFolded()); }
