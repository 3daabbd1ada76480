#ifndef SLAYERFILE_H
#define SLAYERFILE_H

// The layer file: one mapping a line, "#" starts a comment. The mappings are
// kept sorted by their outside layer, so a written file is sorted too.

#include <cstddef>
#include <vector>

#include "SCommentedFile.h"
#include "SLayerMapping.h"
#include "SSortedVector.h"
#include "SString.h"

class SOrdered;
class SXtranProject;

class SLayerFile : public SCommentedFile
{
public:
    SLayerFile();
    ~SLayerFile() override;
    SLayerFile(const SLayerFile&) = delete;
    SLayerFile& operator=(const SLayerFile&) = delete;

    virtual ClassID isA() const { return SID_LAYERFILE; }

    // Replaces the mappings by those of the file. False with GetErrorText() set,
    // "name:line: " in front of a line's error.
    bool Read(const SString& path);
    // Replaces the file whole, through a temporary beside it, or leaves it as it was;
    // false with GetErrorText() set when it can't be written.
    bool Write(const SString& path);

    // The current line as a new mapping, kept on success.
    virtual bool ReadMapping();
    // Ties every mapping to the project's materials.
    virtual void BindProject(SXtranProject& project);
    virtual void BindProjectOnce(SXtranProject& project);
    // Deletes the mapping at a position of GetAll().
    virtual void RemoveAt(size_t index);
    // Sorts anew, after keys were changed in place.
    virtual void Rebuild();
    // Every mapping of a purpose, on or off.
    virtual void GetByPurpose(SOrdered& list, int purpose) const;
    // The first mapping of the pair that is on, or null.
    virtual SLayerMapping* Find(int layer, int datatype) const;
    // A new metal mapping of the pair on the level of the layer number.
    virtual SLayerMapping* AddMapping(int layer, int datatype);
    virtual SLayerMapping* AddMapping(int layer, int datatype, int level);
    // The mappings of the pair that are on, in the order kept; a purpose of -1
    // takes every purpose.
    virtual void GetMappings(SOrdered& list, int layer, int datatype) const;
    virtual void GetMappings(SOrdered& list, int layer, int datatype, int purpose) const;
    // Every mapping that is on.
    virtual void GetMapped(SOrdered& list) const;

    // Takes ownership and puts the mapping in its place; it must be of the kind
    // this file makes. While a batch is open it waits for InsertPending.
    void Insert(SLayerMapping* mapping);
    // Opens a batch: inserts wait until InsertPending puts them all in place at once, in
    // the order that inserting them one by one would give.
    void DeferInserts() { itsDeferInserts = true; }
    void InsertPending();
    void ClearMappings();
    // Owned SLayerMapping objects, sorted.
    const SSortedVector& GetAll() const { return itsMappings; }
    size_t Entries() const { return itsMappings.entries(); }
    SLayerMapping* At(size_t index) const;

    const SString& GetErrorText() const { return itsErrorText; }
    void SetErrorText(const SString& text) { itsErrorText = text; }
    // "name:line: " of the line being read.
    SString LinePrefix() const;

protected:
    // A blank mapping of the kind this file holds, keyed by the pair.
    virtual SLayerMapping* NewMapping(int layer, int datatype) const;
    // Level count and default technology layer names, once all lines are in.
    void FinishRead();
    // Index range [first, last) of the mappings equal to the probe.
    bool FindRange(const SLayerMapping& probe, size_t& first, size_t& last) const;
    const SLayerMapping& Probe(int layer, int datatype) const;
    // FindRange for a pair. A translation looks up every polygon, mostly the pair of the
    // one before, so the last answer is kept until the mappings change.
    bool FindPair(int layer, int datatype, size_t& first, size_t& last) const;
    void MappingsChanged() { itsLastPair.valid = false; }

    SSortedVector itsMappings;
    // Inserted during a batch, in the order they came, owned.
    std::vector<SCollectable*> itsPending;
    bool itsDeferInserts = false;
    SString itsErrorText;
    mutable SLayerMapping* itsProbe = nullptr;
    struct SLastPair
    {
        bool valid = false;
        bool found = false;
        int layer = 0;
        int datatype = 0;
        size_t first = 0;
        size_t last = 0;
    };
    mutable SLastPair itsLastPair;
};

#endif
