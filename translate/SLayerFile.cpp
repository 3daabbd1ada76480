#include "SLayerFile.h"

#include <QTextStream>

#include "SLayerMapping.h"
#include "SOrdered.h"
#include "SSafeSave.h"
#include "SVeloraError.h"

namespace {

const int kUnableToOpenLayerFile = 7071;
const int kUnableToWriteFile = 5670;

} // namespace

// No continuation marker: a name may end in any character.
SLayerFile::SLayerFile()
{
    SetCommentStart("#");
    SetContinuation("");
}

SLayerFile::~SLayerFile()
{
    itsMappings.clearAndDestroy();
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
    itsMappings.clearAndDestroy();
}

void SLayerFile::Insert(SLayerMapping* mapping)
{
    if (mapping)
        itsMappings.insert(mapping);
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
    bool ok = true;
    while (ok && NextLine())
        ok = ReadMapping();
    Close();
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
    itsMappings.insert(mapping);
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
}

void SLayerFile::Rebuild()
{
    SOrdered all;
    all.copyFrom(itsMappings);
    itsMappings.clear();
    for (SCollectable* item : all)
        itsMappings.insert(item);
}

bool SLayerFile::FindRange(const SLayerMapping& probe, size_t& first, size_t& last) const
{
    size_t at = itsMappings.index(&probe);
    if (at == SOrdered::npos)
        return false;
    first = at;
    while (first > 0 && At(first - 1)->compareTo(&probe) == 0)
        --first;
    last = at + 1;
    while (last < itsMappings.entries() && At(last)->compareTo(&probe) == 0)
        ++last;
    return true;
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
    if (!FindRange(Probe(layer, datatype), first, last))
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
    itsMappings.insert(mapping);
    return mapping;
}

SLayerMapping* SLayerFile::AddMapping(int layer, int datatype, int level)
{
    SLayerMapping* mapping = NewMapping(layer, datatype);
    mapping->itsMaxLevel = 0;
    mapping->SetGeoNumber(level);
    itsMappings.insert(mapping);
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
    if (!FindRange(Probe(layer, datatype), first, last))
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
