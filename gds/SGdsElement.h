#ifndef SGDSELEMENT_H
#define SGDSELEMENT_H

// The element classes: what a structure holds, as data.

#include <cstdint>

#include "SCollectable.h"
#include "SOrdered.h"
#include "SPoint.h"
#include "SString.h"
#include "SXtrans.h"

class SGdsRecord;
class SGdsRecXy;
class SGdsStructureList;

class SGdsElement : public SCollectable
{
public:
    // Keeps the opening record's number and type, not the record: a stream's records
    // need not outlive the reading.
    explicit SGdsElement(const SGdsRecord* record);

    virtual const char* GetName() const { return "UNKNOWN"; }
    const char* GetRecordName() const;
    int64_t GetRecordNumber() const;
    // Appends the leaf elements reachable from this one; false on a cycle.
    virtual bool CollectElements(SOrdered& elements, SGdsStructureList& list);
    // Leaf elements an expansion visits, every placement counted.
    virtual int64_t GetSize(SGdsStructureList& list);
    virtual bool IsReference() const { return false; }
    virtual bool IsPath() const { return false; }

    int itsDatatype = 0;
    int itsLayer = 0;
    // The opening record's number << 8 | its type; 0xff: none.
    uint64_t itsRecordTag;
    // The points stay in their record, kept as long as the elements, so that
    // they are scaled by the stream's unit when they are used.
    const SGdsRecXy* itsXyRecord = nullptr;
};

class SGdsElementBoundary : public SGdsElement
{
public:
    using SGdsElement::SGdsElement;
    const char* GetName() const override { return "Boundary"; }
};

class SGdsElementBox : public SGdsElementBoundary
{
public:
    using SGdsElementBoundary::SGdsElementBoundary;
    const char* GetName() const override { return "Box"; }
};

class SGdsElementPath : public SGdsElement
{
public:
    using SGdsElement::SGdsElement;
    const char* GetName() const override { return "Path"; }
    bool IsPath() const override { return true; }

    int itsPathType = 1;
    double itsWidth = 0.0;
    double itsBeginExtension = 0.0;
    double itsEndExtension = 0.0;
    // The lengths in stream units, bit n set for length n given (width, begin, end), so
    // that they can be scaled again by the stream's last unit (SGdsStructureList::Rescale).
    int32_t itsRawLengths[3] = {0, 0, 0};
    uint8_t itsRawLengthsSet = 0;
};

class SGdsElementSref : public SGdsElement
{
public:
    using SGdsElement::SGdsElement;
    const char* GetName() const override { return "SRef"; }
    bool IsReference() const override { return true; }
    bool CollectElements(SOrdered& elements, SGdsStructureList& list) override;
    int64_t GetSize(SGdsStructureList& list) override;

    SString itsStructureName;
    SXtrans itsTransform;
    bool itsCollecting = false;
    // The XY points in stream units once given (a reference one, an array three), for
    // SGdsStructureList::Rescale.
    bool itsRawPointsSet = false;
    int32_t itsRawPoints[6] = {0, 0, 0, 0, 0, 0};
};

class SGdsElementAref : public SGdsElementSref
{
public:
    using SGdsElementSref::SGdsElementSref;
    const char* GetName() const override { return "ARef"; }
    int64_t GetSize(SGdsStructureList& list) override;

    SPoint itsReferencePoint;
    SPoint itsColumnPoint;
    SPoint itsRowPoint;
    int itsColumns = 0;
    int itsRows = 0;
};

#endif
