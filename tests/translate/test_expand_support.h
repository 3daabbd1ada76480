#ifndef GDS_TESTS_EXPAND_SUPPORT_H
#define GDS_TESTS_EXPAND_SUPPORT_H

// Streams with placed references, read and flattened as the program does,
// and the settings file that chooses the array method.

#include <QByteArray>
#include <QFile>
#include <QTemporaryDir>

#include <cmath>
#include <memory>
#include <string>
#include <vector>

#include "RecordReader.h"
#include "SGdsExpander.h"
#include "SGdsPolygon.h"
#include "SGdsPolygonList.h"
#include "SInitializationFile.h"
#include "StreamWriter.h"

namespace expandtest {

using gdstest::StreamWriter;
using Points = std::vector<std::pair<long long, long long>>;

struct Placement
{
    double angle = 0.0;
    double magnification = 1.0;
    bool reflection = false;
    bool absoluteAngle = false;
    bool absoluteMagnification = false;
};

// STRANS, MAG and ANGLE; nothing for the identity.
inline void Strans(StreamWriter& s, const Placement& p)
{
    if (!p.reflection && !p.absoluteAngle && !p.absoluteMagnification && p.angle == 0.0 && p.magnification == 1.0)
        return;
    unsigned char low = (p.absoluteMagnification ? 0x04 : 0) | (p.absoluteAngle ? 0x02 : 0);
    s.BitArray(gdstest::STRANS, p.reflection ? 0x80 : 0x00, low);
    if (p.magnification != 1.0)
        s.Real(gdstest::MAG, {p.magnification});
    if (p.angle != 0.0)
        s.Real(gdstest::ANGLE, {p.angle});
}

inline StreamWriter& Sref(StreamWriter& s, const std::string& name, long long x, long long y, const Placement& p = {})
{
    s.NoData(gdstest::SREF).String(gdstest::SNAME, name);
    Strans(s, p);
    return s.Xy({{x, y}}).Endel();
}

inline StreamWriter& Aref(StreamWriter& s, const std::string& name, int columns, int rows, const Points& points,
                          const Placement& p = {})
{
    s.NoData(gdstest::AREF).String(gdstest::SNAME, name);
    Strans(s, p);
    s.Int2(gdstest::COLROW, {columns, rows});
    return s.Xy(points).Endel();
}

// One database unit is one user unit, so that coordinates read as written.
inline StreamWriter Library()
{
    StreamWriter s;
    s.Header().Bgnlib().Libname().Units(1.0, 1e-6);
    return s;
}

// Area by the shoelace formula, of either orientation.
inline double Area(const SGdsPolygon& polygon)
{
    double twice = 0.0;
    int n = polygon.GetPointCount();
    for (int i = 0; i < n; ++i) {
        const SPoint& a = polygon.GetPoint(i);
        const SPoint& b = polygon.GetPoint((i + 1) % n);
        twice += a.x() * b.y() - b.x() * a.y();
    }
    return std::fabs(twice) / 2.0;
}

// A stream read and built, and the polygons of its last flattening.
class Flattener
{
public:
    bool Load(const StreamWriter& stream, bool buildWhileReading = false)
    {
        return itsReader.Load(stream, buildWhileReading) && itsReader.Build();
    }

    // `spendRecords` gives the records' memory to the polygons on the way, as a translation
    // does; the structures can't be walked again after that.
    bool Expand(const std::string& name, double factor = 1.0, bool roundWhilePlacing = false,
                bool spendRecords = false)
    {
        itsPolygons.reset(new SGdsPolygonList(&itsReader.List()));
        itsPolygons->itsConversionFactor = factor;
        itsPolygons->itsRoundWhilePlacing = roundWhilePlacing;
        return ExpandStructure(itsReader.List(), *itsPolygons, SString(name.c_str()),
                               spendRecords ? &itsReader.Records() : nullptr);
    }

    SGdsRecordList& Records() { return itsReader.Records(); }

    SGdsStructureList& Structures() { return itsReader.List(); }
    SGdsPolygonList& Polygons() { return *itsPolygons; }
    size_t Count() const { return itsPolygons ? itsPolygons->entries() : 0; }
    const SGdsPolygon& At(size_t i) const { return *itsPolygons->at(i); }
    std::vector<SPoint> PointsOf(size_t i) const
    {
        const SGdsPolygon& polygon = At(i);
        return std::vector<SPoint>(polygon.begin(), polygon.end());
    }

private:
    gdstest::RecordReader itsReader;
    std::unique_ptr<SGdsPolygonList> itsPolygons;
};

// The process's settings file holding one key, for the life of the object.
class SettingsScope
{
public:
    explicit SettingsScope(const std::string& text)
    {
        itsOldIni = qgetenv("VELORA_INI_FILE");
        itsOldUser = qgetenv("VELORA_USER_INI_FILE");
        QString path = itsDir.path() + "/velora.ini";
        QFile file(path);
        file.open(QIODevice::WriteOnly);
        file.write(text.c_str());
        file.close();
        qputenv("VELORA_INI_FILE", path.toUtf8());
        qputenv("VELORA_USER_INI_FILE", (itsDir.path() + "/none.ini").toUtf8());
        SInitializationFile::DestroyGlobal();
        SInitializationFile::CreateGlobal();
    }
    ~SettingsScope()
    {
        SInitializationFile::DestroyGlobal();
        Restore("VELORA_INI_FILE", itsOldIni);
        Restore("VELORA_USER_INI_FILE", itsOldUser);
    }
    SettingsScope(const SettingsScope&) = delete;
    SettingsScope& operator=(const SettingsScope&) = delete;

private:
    static void Restore(const char* name, const QByteArray& value)
    {
        if (value.isNull())
            qunsetenv(name);
        else
            qputenv(name, value);
    }

    QTemporaryDir itsDir;
    QByteArray itsOldIni;
    QByteArray itsOldUser;
};

inline std::string ArefMethod(int method)
{
    return "[gds]\nArefMethod=" + std::to_string(method) + "\n";
}

} // namespace expandtest

#endif
