#ifndef SMATERIALTYPE_H
#define SMATERIALTYPE_H

#include "SEnclosure.h"
#include "SMaterialTypeData.h"

#include <utility>

// A metal, via or brick type as an object of the circuit's list: it goes by its type name,
// and a type that a technology file brought names that file.
template <class Data> class SMaterialType : public SEnclosure, public Data {
public:
  template <class... Args> explicit SMaterialType(Args&&... args) : Data(std::forward<Args>(args)...) {}

  SString GetName() const override { return Data::itsTypeName; }
  void SetName(const SString& name) { Data::SetTypeName(name); }
  bool IsFromSTF() const override { return !Data::itsTechFile.isEmpty(); }
};

#endif
