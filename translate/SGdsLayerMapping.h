#ifndef SGDSLAYERMAPPING_H
#define SGDSLAYERMAPPING_H

#include "SLayerMapping.h"

// A mapping keyed by a stream layer and datatype pair. Mappings order by
// layer, then datatype.
class SGdsLayerMapping : public SLayerMapping
{
    SCOLLECTABLE_DECLARE(SGdsLayerMapping)
    SCOLLECTABLE_COPYABLE(SGdsLayerMapping)
public:
    SGdsLayerMapping() {}
    // A fresh mapping of a pair maps stream layer n to level n.
    SGdsLayerMapping(int layer, int datatype);

    int compareTo(const SCollectable* other) const override;
    bool isEqual(const SCollectable* other) const override { return compareTo(other) == 0; }
    unsigned hash() const override;

    void WriteStreamNumbers(QTextStream& stream) const override;
    bool ReadStreamNumbers(SLayerFile& file) override;
    bool SameKey(const SLayerMapping& other) const override;
    SString GetLayerText() const override;
    bool SetLayerFromText(const SString& text) override;
    SString GetDatatypeText() const override;
    void SetDatatype(int datatype) override { itsStreamDatatype = datatype; }
    void SetStreamNumbers(int layer, int datatype) override
    {
        itsStreamLayer = layer;
        itsStreamDatatype = datatype;
    }

    int itsStreamLayer = 0;
    int itsStreamDatatype = 0;
};

#endif
