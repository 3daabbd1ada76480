#include "SGdsLayerMapping.h"

#include <QTextStream>

#include "SLayerFile.h"

SCOLLECTABLE_DEFINE(SGdsLayerMapping, SID_GDSLAYERMAPPING, &SLayerMapping::staticTypeInfo())

// A LAYER of 32768 or more reads as negative. The pair is kept as read, since the
// translation looks its polygons up by it; but no level is negative, so such a layer is
// proposed for level 0, which every file reads back, rather than for a level tens of
// thousands deep that the unsigned value would name.
SGdsLayerMapping::SGdsLayerMapping(int layer, int datatype)
    : itsStreamLayer(layer), itsStreamDatatype(datatype)
{
    SetGeoNumber(layer < 0 ? 0 : layer);
}

int SGdsLayerMapping::compareTo(const SCollectable* other) const
{
    const SGdsLayerMapping* mapping = static_cast<const SGdsLayerMapping*>(other);
    if (itsStreamLayer != mapping->itsStreamLayer)
        return itsStreamLayer < mapping->itsStreamLayer ? -1 : 1;
    if (itsStreamDatatype != mapping->itsStreamDatatype)
        return itsStreamDatatype < mapping->itsStreamDatatype ? -1 : 1;
    return 0;
}

unsigned SGdsLayerMapping::hash() const
{
    return unsigned(itsStreamLayer) * 65599u + unsigned(itsStreamDatatype);
}

void SGdsLayerMapping::WriteStreamNumbers(QTextStream& stream) const
{
    stream << itsStreamLayer << ' ' << itsStreamDatatype;
}

bool SGdsLayerMapping::ReadStreamNumbers(SLayerFile& file)
{
    // These two texts carry their own place and line end.
    if (!file.GetInt(itsStreamLayer)) {
        file.SetErrorText(file.LinePrefix() + "StreamLayerNumber token read failed\n");
        return false;
    }
    if (!file.GetInt(itsStreamDatatype)) {
        file.SetErrorText(file.LinePrefix() + "DataTypeNumber token read failed\n");
        return false;
    }
    return true;
}

bool SGdsLayerMapping::SameKey(const SLayerMapping& other) const
{
    if (!other.isKindOf(SID_GDSLAYERMAPPING))
        return false;
    return compareTo(&other) == 0;
}

SString SGdsLayerMapping::GetLayerText() const
{
    return SString::number(static_cast<long long>(itsStreamLayer));
}

bool SGdsLayerMapping::SetLayerFromText(const SString& text)
{
    bool ok = false;
    int layer = text.toInt(&ok);
    if (ok)
        itsStreamLayer = layer;
    return ok;
}

SString SGdsLayerMapping::GetDatatypeText() const
{
    return SString::number(static_cast<long long>(itsStreamDatatype));
}
