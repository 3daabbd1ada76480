#include "SEnclosure.h"

#include "SCircuit.h"
#include "SGeoClassID.h"
#include "SVeloraError.h"

SCOLLECTABLE_DEFINE(SBaseEnclosure, SID_BASEENCLOSURE, &SCollectable::staticTypeInfo())
SCOLLECTABLE_DEFINE(SEnclosure, SID_ENCLOSURE, &SBaseEnclosure::staticTypeInfo())
SCOLLECTABLE_DEFINE(SObjectEnclosure, SID_OBJECTENCLOSURE, &SEnclosure::staticTypeInfo())

SBaseEnclosure::~SBaseEnclosure() { DestroyChildren(); }

void SBaseEnclosure::SetOwner(SCollectable* owner) {
  if (owner != nullptr && !owner->isKindOf(SBaseEnclosure::staticTypeInfo()))
    SFATAL("VL1001", "Expected: %s Found: %s", "SBaseEnclosure", owner->typeInfo()->name());
  itsOwner = static_cast<SBaseEnclosure*>(owner);
}

void SBaseEnclosure::AddChild(SBaseEnclosure* child) {
  if (!itsChildren) itsChildren.reset(new SOrdered);
  child->itsOwner = this;
  itsChildren->append(child);
  NoteChild(child, 1);
}

void SBaseEnclosure::InsertChild(size_t index, SBaseEnclosure* child) {
  if (!itsChildren) itsChildren.reset(new SOrdered);
  child->itsOwner = this;
  if (index >= itsChildren->entries())
    itsChildren->append(child);
  else
    itsChildren->insertAt(index, child);
  NoteChild(child, 1);
}

bool SBaseEnclosure::RemoveChild(SBaseEnclosure* child) {
  if (!itsChildren) return false;
  // The newest children are the likely ones to go.
  for (size_t i = itsChildren->entries(); i-- > 0;) {
    if (itsChildren->at(i) == child) {
      itsChildren->removeAt(i);
      child->itsOwner = nullptr;
      NoteChild(child, -1);
      return true;
    }
  }
  return false;
}

void SBaseEnclosure::TakeChildren(const std::function<bool(const SBaseEnclosure*)>& which,
                                  std::vector<SBaseEnclosure*>& taken) {
  if (!itsChildren) return;
  std::vector<SCollectable*> kept;
  for (SCollectable* item : *itsChildren) {
    SBaseEnclosure* child = static_cast<SBaseEnclosure*>(item);
    if (which(child)) {
      child->itsOwner = nullptr;
      NoteChild(child, -1);
      taken.push_back(child);
    } else {
      kept.push_back(item);
    }
  }
  if (kept.size() == itsChildren->entries()) return;
  itsChildren->clear();
  for (SCollectable* item : kept) itsChildren->append(item);
}

void SBaseEnclosure::DestroyChildren() {
  if (!itsChildren) return;
  for (SCollectable* c : *itsChildren) {
    NoteChild(static_cast<SBaseEnclosure*>(c), -1);
    delete c;
  }
  itsChildren.reset();
}

SBaseEnclosure* SBaseEnclosure::GetTop() {
  SBaseEnclosure* node = this;
  while (node->itsOwner != nullptr) node = node->itsOwner;
  return node;
}

SCircuit* SBaseEnclosure::GetCircuit() const {
  for (const SBaseEnclosure* node = this; node != nullptr; node = node->itsOwner)
    if (node->isKindOf(SCircuit::staticTypeInfo()))
      return const_cast<SCircuit*>(static_cast<const SCircuit*>(node));
  return nullptr;
}

void SEnclosure::SetChangedAll(bool on) {
  SetChanged(on);
  for (size_t i = 0; i < GetNumberOfChildren(); ++i)
    if (GetChild(i)->isKindOf(SEnclosure::staticTypeInfo()))
      static_cast<SEnclosure*>(GetChild(i))->SetChangedAll(on);
}
