#ifndef SENCLOSURE_H
#define SENCLOSURE_H

#include "SCollectable.h"
#include "SOrdered.h"
#include "SString.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

class SCircuit;

// A node of a circuit's object tree. Children are owned; most leaves (polygons) never get
// any, so the list is made on the first child: a million polygons shouldn't carry a million
// empty lists.
class SBaseEnclosure : public SCollectable {
  SCOLLECTABLE_DECLARE(SBaseEnclosure)
public:
  SBaseEnclosure() {}
  explicit SBaseEnclosure(SBaseEnclosure* owner) : itsOwner(owner) {}
  SBaseEnclosure(const SBaseEnclosure&) = delete;
  SBaseEnclosure& operator=(const SBaseEnclosure&) = delete;
  ~SBaseEnclosure() override;

  SBaseEnclosure* GetOwner() const { return itsOwner; }
  // Refuses anything that isn't an enclosure (internal error).
  void SetOwner(SCollectable* owner);

  size_t GetNumberOfChildren() const { return itsChildren ? itsChildren->entries() : 0; }
  SBaseEnclosure* GetChild(size_t i) const { return static_cast<SBaseEnclosure*>(itsChildren->at(i)); }
  // Appends and takes ownership; the child's owner becomes this node.
  void AddChild(SBaseEnclosure* child);
  void InsertChild(size_t index, SBaseEnclosure* child);
  // Takes the child out without destroying it; false when it isn't here.
  bool RemoveChild(SBaseEnclosure* child);
  // Takes every child that `which` picks out of the list in one pass (removing many one by
  // one would cost a search each), in their order, into `taken`; they keep no owner.
  void TakeChildren(const std::function<bool(const SBaseEnclosure*)>& which, std::vector<SBaseEnclosure*>& taken);
  void DestroyChildren();
  const SOrdered* Children() const { return itsChildren.get(); }

  SBaseEnclosure* GetTop();
  // The circuit above this node, or null for a node outside a circuit.
  SCircuit* GetCircuit() const;

protected:
  // Told of each child that comes (+1) or goes (-1), so that a node can count kinds of them.
  virtual void NoteChild(const SBaseEnclosure* child, int change) {
    (void)child;
    (void)change;
  }

  SBaseEnclosure* itsOwner = nullptr;
  std::unique_ptr<SOrdered> itsChildren;
};

class SEnclosure : public SBaseEnclosure {
  SCOLLECTABLE_DECLARE(SEnclosure)
public:
  SEnclosure() {}
  explicit SEnclosure(SBaseEnclosure* owner) : SBaseEnclosure(owner) {}

  virtual bool IsChanged() const { return itsChanged != 0; }
  virtual void SetChanged(bool on) { itsChanged = on ? 1 : 0; }
  virtual bool IsFromSTF() const { return false; }
  virtual void SetFromSTF(bool) {}
  virtual SString GetName() const { return SString(); }
  void SetChangedAll(bool on);

  long long GetId() const { return itsId; }
  void SetId(long long id) { itsId = id; }
  long long GetLine() const { return itsLine; }
  // A line past the 32-bit range is kept as the largest one it holds: a project that
  // long lies beyond what anyone edits by line number.
  void SetLine(long long line) { itsLine = static_cast<int32_t>(line > INT32_MAX ? INT32_MAX : (line < 0 ? 0 : line)); }
  bool IsWritable() const { return itsWritable != 0; }
  void SetWritable(bool on) { itsWritable = on ? 1 : 0; }
  bool IsHidden() const { return itsHidden != 0; }
  void SetHidden(bool on) { itsHidden = on ? 1 : 0; }

protected:
  unsigned char itsWritable = 1;
  unsigned char itsChanged = 1;
  unsigned char itsHidden = 0;
  // Beside the flags, so that a polygon stays within its allocation size.
  int32_t itsLine = 0;
  long long itsId = 0;
};

// A group: its children are polygons and further groups.
class SObjectEnclosure : public SEnclosure {
  SCOLLECTABLE_DECLARE(SObjectEnclosure)
public:
  SObjectEnclosure() {}
  explicit SObjectEnclosure(SBaseEnclosure* owner) : SEnclosure(owner) {}
};

#endif
