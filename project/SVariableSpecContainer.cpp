#include "SVariableSpecContainer.h"

#include "SVariablePair.h"
#include "SVariableSpecification.h"

#include <QStringList>

SVariableSpecContainer::SVariableSpecContainer(const SVariableSpecContainer& other) { *this = other; }

SVariableSpecContainer& SVariableSpecContainer::operator=(const SVariableSpecContainer& other) {
  if (this == &other) return *this;
  Clear();
  for (SCollectable* item : other.itsSpecifications) itsSpecifications.append(item->copy());
  for (SCollectable* item : other.itsShared) itsShared.append(item->copy());
  return *this;
}

SVariableSpecContainer::~SVariableSpecContainer() { Clear(); }

void SVariableSpecContainer::Clear() {
  itsSpecifications.clearAndDestroy();
  itsShared.clearAndDestroy();
}

SVariableSpecification* SVariableSpecContainer::At(size_t i) const {
  return static_cast<SVariableSpecification*>(itsSpecifications.at(i));
}

namespace {
SVariablePair* FindIn(const SOrdered& pairs, const SString& name) {
  for (SCollectable* item : pairs) {
    auto* pair = static_cast<SVariablePair*>(item);
    if (pair->GetName() == name) return pair;
  }
  return nullptr;
}
}  // namespace

void SVariableSpecContainer::AddShared(SVariablePair* pair) {
  SVariablePair* old = FindIn(itsShared, pair->GetName());
  if (old) {
    itsShared.at(itsShared.index(old)) = pair;
    delete old;
  } else {
    itsShared.append(pair);
  }
}

SVariablePair* SVariableSpecContainer::Find(const SString& name) const {
  if (SVariablePair* pair = FindIn(itsShared, name)) return pair;
  for (SCollectable* item : itsSpecifications)
    if (SVariablePair* pair = static_cast<SVariableSpecification*>(item)->Find(name)) return pair;
  return nullptr;
}

void SVariableSpecContainer::SetUnused(const SString& name) {
  if (SVariablePair* pair = FindIn(itsShared, name)) pair->SetInUse(false);
  for (SCollectable* item : itsSpecifications)
    if (SVariablePair* pair = static_cast<SVariableSpecification*>(item)->Find(name)) pair->SetInUse(false);
}

void SVariableSpecContainer::Add(SVariableSpecification* values) { itsSpecifications.append(values); }

void SVariableSpecContainer::Remove(const SString& name) {
  if (SVariablePair* pair = FindIn(itsShared, name)) {
    itsShared.remove(pair);
    delete pair;
  }
  for (SCollectable* item : itsSpecifications) static_cast<SVariableSpecification*>(item)->Remove(name);
}

void SVariableSpecContainer::Reorder(const SString& name, size_t index) {
  if (SVariablePair* pair = FindIn(itsShared, name)) {
    itsShared.remove(pair);
    if (index >= itsShared.entries())
      itsShared.append(pair);
    else
      itsShared.insertAt(index, pair);
  }
  for (SCollectable* item : itsSpecifications) static_cast<SVariableSpecification*>(item)->Move(name, index);
}

void SVariableSpecContainer::ApplyFlags(const SVariableSpecContainer& other) {
  auto apply = [&other](SVariablePair* pair) {
    if (const SVariablePair* source = other.Find(pair->GetName())) pair->SetInUse(source->IsInUse());
  };
  for (SCollectable* item : itsShared) apply(static_cast<SVariablePair*>(item));
  for (SCollectable* item : itsSpecifications) {
    auto* values = static_cast<SVariableSpecification*>(item);
    for (size_t i = 0; i < values->Count(); ++i) apply(values->At(i));
  }
}

std::vector<SVariableSpecification*> SVariableSpecContainer::Expand(const SVariableSpecification& base, bool useFlags,
                                                                   bool useAll) const {
  // The distinct values of each name, by their text, in order of appearance.
  QStringList names;
  std::vector<std::vector<const SVariablePair*>> values;
  for (SCollectable* item : itsSpecifications) {
    const auto* set = static_cast<const SVariableSpecification*>(item);
    for (size_t i = 0; i < set->Count(); ++i) {
      const SVariablePair* pair = set->At(i);
      if (useFlags && !pair->IsInUse()) continue;
      int at = names.indexOf(pair->GetName().qstring());
      if (at < 0) {
        names << pair->GetName().qstring();
        values.emplace_back();
        at = names.size() - 1;
      }
      auto& list = values[static_cast<size_t>(at)];
      bool seen = false;
      for (const SVariablePair* known : list) seen = seen || known->Value().GetText() == pair->Value().GetText();
      if (!seen) list.push_back(pair);
    }
  }
  std::vector<SVariableSpecification*> results;
  std::vector<size_t> choice(values.size(), 0);
  for (;;) {
    auto* result = new SVariableSpecification(base);
    for (size_t n = 0; n < values.size(); ++n) {
      auto* pair = new SVariablePair(*values[n][choice[n]]);
      pair->SetInUse(true);
      result->Add(pair);
    }
    if (useAll)
      for (SCollectable* item : itsShared) {
        const auto* shared = static_cast<const SVariablePair*>(item);
        if (!result->Find(shared->GetName())) result->Add(new SVariablePair(*shared));
      }
    results.push_back(result);
    // The next combination, the last name counting fastest.
    size_t n = values.size();
    while (n > 0) {
      --n;
      if (++choice[n] < values[n].size()) break;
      choice[n] = 0;
      if (n == 0) return results;
    }
    if (values.empty()) return results;
  }
}
