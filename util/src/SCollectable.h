#ifndef SCOLLECTABLE_H
#define SCOLLECTABLE_H

#include <cstdint>

typedef unsigned short ClassID;

// Class numbers of the foundation library. Numbers below 1000 belong here;
// the other libraries take their own ranges.
enum SUtilClassID : ClassID {
  SID_COLLECTABLE = 1,
  SID_COLLECTABLESTRING = 2,
  SID_CASEINSENSITIVECOLLECTABLESTRING = 3,
  SID_COLLECTABLEINT = 4,
  SID_COLLECTABLEDOUBLE = 5,
  SID_COLLECTABLECOMPLEX = 6,
  SID_COLLECTABLEASSOCIATION = 7,
  SID_COLLECTABLEIDASSOCIATION = 8,
  SID_COLLECTION = 9,
  SID_ORDERED = 10,
  SID_SORTEDVECTOR = 11,
  SID_BINARYTREENODUPLICATES = 12,
  SID_SET = 13,
  SID_HASHDICTIONARY = 14,
  SID_FILENAME = 15,
  SID_VELORAFILENAME = 16,
  SID_INITIALIZATIONSECTION = 17,
  SID_INITIALIZATIONKEY = 18,
  SID_ERRORMESSAGES = 19,
  SID_TRACEEVENT = 20,
  SID_VARRWCSTRING = 21
};

// Run-time type record of one class number: its name and its bases.
class CTypeInfo {
public:
  // `bases` is a null-ended array that must outlive the record.
  CTypeInfo(ClassID id, const char* name, const CTypeInfo* const* bases);

  ClassID id() const { return itsId; }
  const char* name() const { return itsName; }
  const CTypeInfo* const* bases() const { return itsBases; }

  // True for this record and any record reached through the bases.
  bool isKindOf(ClassID id) const;
  bool isKindOf(const CTypeInfo& other) const { return isKindOf(other.itsId); }

  // The record of a class number whose record was made already, or null.
  static const CTypeInfo* Find(ClassID id);

private:
  bool isKindOf(ClassID id, int depth) const;

  ClassID itsId;
  const char* itsName;
  const CTypeInfo* const* itsBases;
};

// Declares the type record of a class; pair it with SCOLLECTABLE_DEFINE in the source.
#define SCOLLECTABLE_DECLARE(Class)            \
public:                                        \
  static const CTypeInfo& staticTypeInfo();    \
  const CTypeInfo* typeInfo() const override { return &staticTypeInfo(); }

// SCOLLECTABLE_DEFINE(SMyClass, 1234, &SBase::staticTypeInfo()) - bases after the number.
#define SCOLLECTABLE_DEFINE(Class, Id, ...)                                      \
  const CTypeInfo& Class::staticTypeInfo() {                                     \
    static const CTypeInfo* const bases[] = {__VA_ARGS__, nullptr};              \
    static const CTypeInfo info(static_cast<ClassID>(Id), #Class, bases);        \
    return info;                                                                 \
  }

// Newspecies and copy for classes that can be default-made and copied.
#define SCOLLECTABLE_COPYABLE(Class)                                       \
public:                                                                    \
  SCollectable* newSpecies() const override { return new Class(); }        \
  SCollectable* copy() const override { return new Class(*this); }

// Root of every object kept in a collection.
class SCollectable {
public:
  SCollectable() {}
  SCollectable(const SCollectable&) {}
  SCollectable& operator=(const SCollectable&) { return *this; }

  virtual SCollectable* newSpecies() const;
  virtual SCollectable* copy() const;
  virtual ClassID isA() const { return typeInfo()->id(); }
  virtual SCollectable* self() { return this; }
  virtual const SCollectable* self() const { return this; }
  virtual ~SCollectable();
  // Address order by default: -1, 0 or 1.
  virtual int compareTo(const SCollectable* other) const;
  virtual unsigned hash() const;
  virtual bool isEqual(const SCollectable* other) const { return this == other; }

  static const CTypeInfo& staticTypeInfo();
  virtual const CTypeInfo* typeInfo() const { return &staticTypeInfo(); }
  bool isKindOf(ClassID id) const;
  bool isKindOf(const CTypeInfo& info) const { return isKindOf(info.id()); }
};

#endif
