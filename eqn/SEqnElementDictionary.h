#ifndef SEQNELEMENTDICTIONARY_H
#define SEQNELEMENTDICTIONARY_H

#include "SEqnElement.h"
#include "SHashDictionary.h"

// Names of functions, operators, constants and properties to prototype elements. Keys are kept
// in upper case and lookups are upper-cased, so names are case-blind. Owns its keys and elements.
class SEqnElementDictionary : public SHashDictionary {
  SCOLLECTABLE_DECLARE(SEqnElementDictionary)
public:
  // Filled with the whole table.
  SEqnElementDictionary();
  ~SEqnElementDictionary() override;
  SEqnElementDictionary(const SEqnElementDictionary&) = delete;
  SEqnElementDictionary& operator=(const SEqnElementDictionary&) = delete;
  SCollectable* newSpecies() const override { return new SEqnElementDictionary(); }
  SCollectable* copy() const override { return new SEqnElementDictionary(); }

  // Takes the element; a name already there keeps its first element.
  void AddElement(const SString& name, SEqnElement* element);
  // The prototype of a name in any case, or null.
  const SEqnElement* FindElement(const SString& name) const;

  // The process's table, made on first use and never changed, shared by all equations.
  static const SEqnElementDictionary& Standard();
};

#endif
