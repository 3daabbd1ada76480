#ifndef SGDSSTRUCTURELIST_H
#define SGDSSTRUCTURELIST_H

#include <cstdint>
#include <vector>

#include "SGdsArena.h"
#include "SOrdered.h"
#include <QHash>
#include <new>
#include <QString>

#include "SString.h"

class SGdsElement;
class SGdsRecord;
class SGdsStructure;

// -P: which structure is taken when -p names none.
enum { kDefaultStructureFirst = 0, kDefaultStructureLast = 1, kDefaultStructureBest = 2 };

// All structures of a stream, and the state of the one being built.
class SGdsStructureList
{
public:
    SGdsStructureList();
    virtual ~SGdsStructureList();
    SGdsStructureList(const SGdsStructureList&) = delete;
    SGdsStructureList& operator=(const SGdsStructureList&) = delete;

    // The name chosen by -P; empty when there is none.
    virtual SString GetDefaultStructure(int mode);
    // The leaf elements reachable from a structure, each structure's once however often it
    // is placed; false on a cycle.
    virtual bool CollectElements(SOrdered& elements, const SString& name);

    SGdsStructure* OpenStructure(int64_t bgnstrRecord);
    void CloseStructure() { itsOpenStructure = nullptr; }
    SGdsStructure* GetOpenStructure() const { return itsOpenStructure; }
    SGdsElement* GetOpenElement() const;
    void SetStructureName(const SString& name);
    // The open structure, or null after reporting that the record stands
    // outside any structure.
    SGdsStructure* RequireOpenStructure(const SGdsRecord& record);
    // Adds a new element to the open structure, reporting why when it can't.
    bool AddElement(SGdsElement* element, const SGdsRecord& record);
    // Elements live in the list's arena: a stream may hold millions.
    template <class T> T* NewElement(const SGdsRecord* record)
    {
        return new (itsElementArena.Allocate(sizeof(T))) T(record);
    }
    static void DestroyElement(SGdsElement* element);

    // The first structure of that name in file order.
    SGdsStructure* FindStructure(const SString& name) const;
    int64_t GetSize(const SString& name);
    // Names on standard output, or with a file name the -z list.
    bool ListStructures(const SString& fileName, int mode);

    const SOrdered& GetStructures() const { return itsStructures; }

    SOrdered itsStructures;
    // First structure of each name, so that references resolve in constant time.
    QHash<QString, SGdsStructure*> itsByName;
    SGdsStructure* itsOpenStructure = nullptr;
    SString itsUnitName;
    SString itsLibraryName;
    double itsUnitValue = 1.0;
    // Structures opened but not yet named, owned here; a structure that never
    // gets a STRNAME is in no table.
    std::vector<SGdsStructure*> itsUnnamed;
    // Lengths and reference points are scaled by the unit in force when their record is
    // applied. Built while reading, a unit that changes after some were scaled must be
    // applied to them again, as if all were built after the reading (Rescale).
    void NoteScaleUsed(double scale)
    {
        if (!itsScaleUsed) {
            itsScaleUsed = true;
            itsUsedScale = scale;
        } else if (!(scale == itsUsedScale)) {
            itsScalesDiffer = true;
        }
    }
    // Scales every length and reference point again by the unit in force, when one was
    // scaled by another.
    void Rescale();
    bool itsScaleUsed = false;
    bool itsScalesDiffer = false;
    double itsUsedScale = 1.0;

    // The last record an element took its points from: when structures are built while the
    // stream is read, it is the one record the reader must keep.
    const SGdsRecord* itsKeptRecord = nullptr;
    // Outlives the structures: the destructor ends the elements first.
    SGdsArena itsElementArena;
};

#endif
