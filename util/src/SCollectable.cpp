#include "SCollectable.h"

#include <QHash>
#include <QMutex>
#include <QMutexLocker>

namespace {
QHash<ClassID, const CTypeInfo*>& Registry() {
  static QHash<ClassID, const CTypeInfo*> registry;
  return registry;
}
QMutex& RegistryMutex() {
  static QMutex mutex;
  return mutex;
}
// Base chains are short; the limit only guards against a record listing itself.
const int kMaxTypeDepth = 64;
}  // namespace

CTypeInfo::CTypeInfo(ClassID id, const char* name, const CTypeInfo* const* bases)
    : itsId(id), itsName(name), itsBases(bases) {
  QMutexLocker lock(&RegistryMutex());
  if (!Registry().contains(id)) Registry().insert(id, this);
}

bool CTypeInfo::isKindOf(ClassID id) const { return isKindOf(id, 0); }

bool CTypeInfo::isKindOf(ClassID id, int depth) const {
  if (itsId == id) return true;
  if (depth >= kMaxTypeDepth || !itsBases) return false;
  for (const CTypeInfo* const* base = itsBases; *base; ++base)
    if ((*base)->isKindOf(id, depth + 1)) return true;
  return false;
}

const CTypeInfo* CTypeInfo::Find(ClassID id) {
  QMutexLocker lock(&RegistryMutex());
  return Registry().value(id, nullptr);
}

const CTypeInfo& SCollectable::staticTypeInfo() {
  static const CTypeInfo* const bases[] = {nullptr};
  static const CTypeInfo info(SID_COLLECTABLE, "SCollectable", bases);
  return info;
}

SCollectable::~SCollectable() {}

SCollectable* SCollectable::newSpecies() const { return new SCollectable(); }

SCollectable* SCollectable::copy() const { return new SCollectable(*this); }

int SCollectable::compareTo(const SCollectable* other) const {
  if (this == other) return 0;
  return reinterpret_cast<uintptr_t>(this) < reinterpret_cast<uintptr_t>(other) ? -1 : 1;
}

unsigned SCollectable::hash() const { return static_cast<unsigned>(reinterpret_cast<uintptr_t>(this)); }

bool SCollectable::isKindOf(ClassID id) const { return typeInfo()->isKindOf(id); }
