#ifndef SVARIABLESPECCONTAINER_H
#define SVARIABLESPECCONTAINER_H

#include "SOrdered.h"
#include "SString.h"

#include <vector>

class SVariablePair;
class SVariableSpecification;

// The value sets of a sweep: specifications (owned), each one set of named values, and the
// pairs that all of them share (owned).
class SVariableSpecContainer {
public:
  SVariableSpecContainer() {}
  SVariableSpecContainer(const SVariableSpecContainer& other);
  SVariableSpecContainer& operator=(const SVariableSpecContainer& other);
  ~SVariableSpecContainer();

  size_t Count() const { return itsSpecifications.entries(); }
  SVariableSpecification* At(size_t i) const;
  const SOrdered& SharedPairs() const { return itsShared; }
  // Takes ownership of a shared pair; one of the same name is replaced.
  void AddShared(SVariablePair* pair);

  // The shared pair of that name, else the first pair of that name in one of the sets.
  SVariablePair* Find(const SString& name) const;
  // Every pair of that name leaves use.
  void SetUnused(const SString& name);
  // Takes ownership.
  void Add(SVariableSpecification* values);
  // Every pair of that name goes.
  void Remove(const SString& name);
  // Every pair of that name moves to `index` of its list (to the end past it).
  void Reorder(const SString& name, size_t index);
  // Pairs take the inUse flag of the pair of the same name in `other`.
  void ApplyFlags(const SVariableSpecContainer& other);
  // The specifications that a sweep over the pairs gives: the cartesian product of the
  // distinct values each name takes in the specifications (names in order of appearance),
  // each combination laid over a copy of `base`. With `useFlags` only pairs in use are
  // swept; with `useAll` the shared pairs are added to each result where it lacks them.
  // The caller owns the results.
  std::vector<SVariableSpecification*> Expand(const SVariableSpecification& base, bool useFlags, bool useAll) const;

  void Clear();

private:
  SOrdered itsSpecifications;
  SOrdered itsShared;
};

#endif
