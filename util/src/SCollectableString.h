#ifndef SCOLLECTABLESTRING_H
#define SCOLLECTABLESTRING_H

#include "SCollectable.h"
#include "SString.h"

// A text that can live in a collection; compares case-sensitively.
class SCollectableString : public SString, public SCollectable {
  SCOLLECTABLE_DECLARE(SCollectableString)
  SCOLLECTABLE_COPYABLE(SCollectableString)
public:
  SCollectableString() {}
  SCollectableString(const char* latin1) : SString(latin1) {}
  SCollectableString(const QString& text) : SString(text) {}
  SCollectableString(const SString& text) : SString(text) {}
  SCollectableString(const SCollectableString& other) : SString(other), SCollectable(other) {}
  SCollectableString& operator=(const SCollectableString& other) {
    SString::operator=(other);
    return *this;
  }
  using SString::operator=;
  using SString::operator==;
  using SString::operator!=;

  int compareTo(const SCollectable* other) const override;
  unsigned hash() const override;
  bool isEqual(const SCollectable* other) const override { return compareTo(other) == 0; }

protected:
  // Text comparison used once both sides are known to be strings.
  virtual int compareText(const SCollectableString& other) const;
};

// Names of options, structures, sections and files: equal regardless of case.
class SCaseInsensitiveCollectableString : public SCollectableString {
  SCOLLECTABLE_DECLARE(SCaseInsensitiveCollectableString)
  SCOLLECTABLE_COPYABLE(SCaseInsensitiveCollectableString)
public:
  SCaseInsensitiveCollectableString() {}
  SCaseInsensitiveCollectableString(const char* latin1) : SCollectableString(latin1) {}
  SCaseInsensitiveCollectableString(const QString& text) : SCollectableString(text) {}
  SCaseInsensitiveCollectableString(const SString& text) : SCollectableString(text) {}
  using SCollectableString::operator=;

  // Hashes the folded text so that equal names meet in a hash table.
  unsigned hash() const override;

protected:
  int compareText(const SCollectableString& other) const override;
};

#endif
