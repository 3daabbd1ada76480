#include "SLayerFile.h"

#include <QTextStream>

#include <algorithm>
#include <vector>

#include "SLayerMapping.h"
#include "SOrdered.h"
#include "SSafeSave.h"
#include "SSortedVector.h"
#include "SVeloraError.h"

namespace {

const int kUnableToOpenLayerFile = 7071;
const int kUnableToWriteFile = 5670;

// Counts by position, for the batch insert below.
class SCountTree
{
public:
    explicit SCountTree(size_t size, int initial = 0) : itsTree(size + 1, 0)
    {
        for (size_t i = 1; i <= size; ++i) {
            itsTree[i] += initial;
            size_t parent = i + (i & (~i + 1));
            if (parent <= size)
                itsTree[parent] += itsTree[i];
        }
    }
    void Add(size_t index, int value)
    {
        for (size_t i = index + 1; i < itsTree.size(); i += i & (~i + 1))
            itsTree[i] += value;
    }
    // The sum over [0, index).
    size_t Before(size_t index) const
    {
        long long sum = 0;
        for (size_t i = index; i > 0; i -= i & (~i + 1))
            sum += itsTree[i];
        return size_t(sum);
    }
    // The first index at which the sum from the start, that index included, reaches `count`.
    size_t Nth(size_t count) const
    {
        size_t at = 0;
        size_t step = 1;
        while (step * 2 < itsTree.size())
            step *= 2;
        for (; step > 0; step /= 2) {
            if (at + step < itsTree.size() && size_t(itsTree[at + step]) < count) {
                at += step;
                count -= size_t(itsTree[at]);
            }
        }
        return at;
    }

private:
    std::vector<long long> itsTree;
};

// Where SSortedVector::insert puts an element into `size` elements of which `less` sort
// before it and `equal` the same: before whichever equal one its binary search meets first.
size_t InsertPlace(size_t size, size_t less, size_t equal)
{
    long long low = 0;
    long long high = (long long)size - 1;
    while (equal > 0 && low <= high) {
        long long mid = low + (high - low) / 2;
        if (mid < (long long)less)
            low = mid + 1;
        else if (mid >= (long long)(less + equal))
            high = mid - 1;
        else
            return size_t(mid);
    }
    return less;
}

// Inserts `added` into `sorted` as inserting them one by one would, in n log n rather than
// a move of the whole vector for each. The place of an element among equal ones hangs on
// the whole vector at its insert, and lookups return equal pairs in that order; so each
// place is worked out from counts, and the places are then undone from the last insert
// back to give every element its final slot.
void InsertAll(SSortedVector& sorted, const std::vector<SCollectable*>& added)
{
    if (added.empty())
        return;
    std::vector<SCollectable*> all(sorted.begin(), sorted.end());
    const size_t kept = all.size();
    all.insert(all.end(), added.begin(), added.end());
    const size_t count = all.size();

    std::vector<size_t> byKey(count);
    for (size_t i = 0; i < count; ++i)
        byKey[i] = i;
    std::sort(byKey.begin(), byKey.end(),
              [&all](size_t a, size_t b) { return all[a]->compareTo(all[b]) < 0; });
    std::vector<size_t> rank(count);
    size_t ranks = 0;
    for (size_t i = 0; i < count; ++i) {
        if (i > 0 && all[byKey[i - 1]]->compareTo(all[byKey[i]]) != 0)
            ++ranks;
        rank[byKey[i]] = ranks;
    }

    SCountTree before(count);
    std::vector<size_t> equal(count, 0);
    std::vector<size_t> place(count);
    for (size_t i = 0; i < count; ++i) {
        // Those already in the vector stand where they are, as if appended in turn.
        place[i] = i < kept ? i : InsertPlace(i, before.Before(rank[i]), equal[rank[i]]);
        before.Add(rank[i], 1);
        ++equal[rank[i]];
    }

    std::vector<SCollectable*> result(count);
    SCountTree free(count, 1);
    for (size_t i = count; i-- > 0;) {
        size_t slot = free.Nth(place[i] + 1);
        result[slot] = all[i];
        free.Add(slot, -1);
    }
    SOrdered merged;
    for (SCollectable* item : result)
        merged.append(item);
    sorted.copyFrom(merged);
}

} // namespace

// No continuation marker: a name may end in any character.
SLayerFile::SLayerFile()
{
    SetCommentStart("#");
    SetContinuation("");
}

SLayerFile::~SLayerFile()
{
    ClearMappings();
    delete itsProbe;
}

// One probe serves every lookup: a translation looks up each polygon.
const SLayerMapping& SLayerFile::Probe(int layer, int datatype) const
{
    if (!itsProbe)
        itsProbe = NewMapping(layer, datatype);
    itsProbe->SetStreamNumbers(layer, datatype);
    return *itsProbe;
}

SLayerMapping* SLayerFile::At(size_t index) const
{
    return index < itsMappings.entries() ? static_cast<SLayerMapping*>(itsMappings.begin()[index]) : nullptr;
}

SString SLayerFile::LinePrefix() const
{
    return SString::format("%s:%lld: ", GetFilename().data(), LineCount());
}

void SLayerFile::ClearMappings()
{
    for (SCollectable* item : itsPending)
        delete item;
    itsPending.clear();
    itsMappings.clearAndDestroy();
    MappingsChanged();
}

void SLayerFile::Insert(SLayerMapping* mapping)
{
    if (!mapping)
        return;
    if (itsDeferInserts)
        itsPending.push_back(mapping);
    else
        itsMappings.insert(mapping);
    MappingsChanged();
}

void SLayerFile::InsertPending()
{
    itsDeferInserts = false;
    InsertAll(itsMappings, itsPending);
    itsPending.clear();
    MappingsChanged();
}

SLayerMapping* SLayerFile::NewMapping(int, int) const
{
    return new SLayerMapping;
}

bool SLayerFile::Read(const SString& path)
{
    itsErrorText.clear();
    if (!Open(path)) {
        VeloraFormatMessage(itsErrorText, kUnableToOpenLayerFile, path.data());
        return false;
    }
    ClearMappings();
    // A file of many lines is put in order once at the end.
    DeferInserts();
    bool ok = true;
    while (ok && NextLine())
        ok = ReadMapping();
    Close();
    InsertPending();
    if (ok)
        FinishRead();
    return ok;
}

bool SLayerFile::ReadMapping()
{
    SLayerMapping* mapping = NewMapping(0, 0);
    if (!mapping->Read(*this)) {
        delete mapping;
        return false;
    }
    Insert(mapping);
    return true;
}

void SLayerFile::FinishRead()
{
    uint64_t maxLevel = 0;
    for (SCollectable* item : itsMappings) {
        uint64_t level = static_cast<SLayerMapping*>(item)->itsMaxLevel;
        if (level > maxLevel)
            maxLevel = level;
    }
    size_t count = itsMappings.entries();
    for (size_t i = 0; i < count; ++i)
        At(i)->itsLevelCount = maxLevel + 1;
    // Mappings of one pair stand together, so a neighbour tells whether the
    // pair's default name needs a suffix to stay unique.
    for (size_t i = 0; i < count; ++i) {
        SLayerMapping* mapping = At(i);
        if (!mapping->itsTechLayerName.isEmpty())
            continue;
        bool shared = (i > 0 && At(i - 1)->SameKey(*mapping)) || (i + 1 < count && At(i + 1)->SameKey(*mapping));
        mapping->SetDefaultTechLayerName(shared);
    }
}

bool SLayerFile::Write(const SString& path)
{
    itsErrorText.clear();
    // Replaced whole or not at all: a file cut short would read back with fewer mappings.
    SSafeSave save(path);
    bool ok = save.Begin();
    QString text;
    QTextStream stream(&text);
    auto flush = [&]() {
        stream.flush();
        QByteArray bytes = text.toUtf8();
        text.clear();
        return save.Append(bytes.constData(), size_t(bytes.size()));
    };
    const int kChunk = 1 << 20;
    for (auto it = itsMappings.begin(); ok && it != itsMappings.end(); ++it) {
        static_cast<const SLayerMapping*>(*it)->Write(stream);
        if (text.size() >= kChunk)
            ok = flush();
    }
    ok = ok && flush() && save.Finish();
    if (!ok) {
        save.Abort();
        VeloraFormatMessage(itsErrorText, kUnableToWriteFile, path.data());
    }
    return ok;
}

void SLayerFile::RemoveAt(size_t index)
{
    delete itsMappings.removeAt(index);
    MappingsChanged();
}

void SLayerFile::Rebuild()
{
    std::vector<SCollectable*> all(itsMappings.begin(), itsMappings.end());
    itsMappings.clear();
    InsertAll(itsMappings, all);
    MappingsChanged();
}

bool SLayerFile::FindRange(const SLayerMapping& probe, size_t& first, size_t& last) const
{
    auto before = [](const SCollectable* item, const SLayerMapping* key) { return item->compareTo(key) < 0; };
    auto after = [](const SLayerMapping* key, const SCollectable* item) { return item->compareTo(key) > 0; };
    auto begin = itsMappings.begin();
    auto low = std::lower_bound(begin, itsMappings.end(), &probe, before);
    auto high = std::upper_bound(low, itsMappings.end(), &probe, after);
    first = size_t(low - begin);
    last = size_t(high - begin);
    return first < last;
}

bool SLayerFile::FindPair(int layer, int datatype, size_t& first, size_t& last) const
{
    SLastPair& memo = itsLastPair;
    if (!memo.valid || memo.layer != layer || memo.datatype != datatype) {
        memo.found = FindRange(Probe(layer, datatype), memo.first, memo.last);
        memo.layer = layer;
        memo.datatype = datatype;
        memo.valid = true;
    }
    first = memo.first;
    last = memo.last;
    return memo.found;
}

void SLayerFile::GetByPurpose(SOrdered& list, int purpose) const
{
    for (SCollectable* item : itsMappings) {
        if (static_cast<SLayerMapping*>(item)->itsPurpose == purpose)
            list.append(item);
    }
}

SLayerMapping* SLayerFile::Find(int layer, int datatype) const
{
    size_t first = 0;
    size_t last = 0;
    if (!FindPair(layer, datatype, first, last))
        return nullptr;
    for (size_t i = first; i < last; ++i) {
        if (At(i)->itsMapped)
            return At(i);
    }
    return nullptr;
}

SLayerMapping* SLayerFile::AddMapping(int layer, int datatype)
{
    SLayerMapping* mapping = NewMapping(layer, datatype);
    Insert(mapping);
    return mapping;
}

SLayerMapping* SLayerFile::AddMapping(int layer, int datatype, int level)
{
    SLayerMapping* mapping = NewMapping(layer, datatype);
    mapping->itsMaxLevel = 0;
    mapping->SetGeoNumber(level);
    Insert(mapping);
    return mapping;
}

void SLayerFile::GetMappings(SOrdered& list, int layer, int datatype) const
{
    GetMappings(list, layer, datatype, -1);
}

void SLayerFile::GetMappings(SOrdered& list, int layer, int datatype, int purpose) const
{
    size_t first = 0;
    size_t last = 0;
    if (!FindPair(layer, datatype, first, last))
        return;
    for (size_t i = first; i < last; ++i) {
        SLayerMapping* mapping = At(i);
        if (mapping->itsMapped && (purpose < 0 || mapping->itsPurpose == purpose))
            list.append(mapping);
    }
}

void SLayerFile::GetMapped(SOrdered& list) const
{
    for (SCollectable* item : itsMappings) {
        if (static_cast<SLayerMapping*>(item)->itsMapped)
            list.append(item);
    }
}

void SLayerFile::BindProject(SXtranProject& project)
{
    for (SCollectable* item : itsMappings)
        static_cast<SLayerMapping*>(item)->BindProject(project);
}

void SLayerFile::BindProjectOnce(SXtranProject& project)
{
    for (SCollectable* item : itsMappings)
        static_cast<SLayerMapping*>(item)->BindProjectOnce(project);
}
