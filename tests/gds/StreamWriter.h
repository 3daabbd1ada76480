#ifndef GDS_TESTS_STREAMWRITER_H
#define GDS_TESTS_STREAMWRITER_H

// Builds binary streams record by record, so that a test states its input in
// a few lines. Coordinates are database units; nothing is checked, so broken
// streams are as easy to make as good ones.

#include <cmath>
#include <cstdint>
#include <fstream>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

namespace gdstest {

using Bytes = std::vector<unsigned char>;

enum RecordType {
    HEADER = 0, BGNLIB = 1, LIBNAME = 2, UNITS = 3, ENDLIB = 4, BGNSTR = 5, STRNAME = 6, ENDSTR = 7,
    BOUNDARY = 8, PATH = 9, SREF = 10, AREF = 11, TEXT = 12, LAYER = 13, DATATYPE = 14, WIDTH = 15,
    XY = 16, ENDEL = 17, SNAME = 18, COLROW = 19, TEXTNODE = 20, NODE = 21, TEXTTYPE = 22,
    PRESENTATION = 23, SPACING = 24, STRING = 25, STRANS = 26, MAG = 27, ANGLE = 28, PATHTYPE = 33,
    PROPATTR = 43, PROPVALUE = 44, BOX = 45, BOXTYPE = 46, BGNEXTN = 48, ENDTEXTN = 49, ENDMASKS = 56
};

enum DataType { NO_DATA = 0, BIT_ARRAY = 1, INT2 = 2, INT4 = 3, REAL4 = 4, REAL8 = 5, ASCII = 6 };

// Excess-64 base-16 real, made from the double's own bits with no floating
// arithmetic, so that it is an independent witness for the reader's coder.
// Mantissa digits beyond the seven bytes are cut off, as the stream format's
// writers do.
inline void EncodeReal(double value, unsigned char out[8])
{
    for (int i = 0; i < 8; ++i)
        out[i] = 0;
    if (value == 0.0)
        return;
    int sign = value < 0 ? 0x80 : 0;
    int e2;
    double fraction = std::frexp(std::fabs(value), &e2); // value = fraction * 2^e2, fraction in [0.5, 1)
    uint64_t mantissa = uint64_t(std::ldexp(fraction, 53)); // 53 significant bits, exact
    // value = mantissa * 2^(e2 - 53) = m56 * 2^-56 * 16^e16.
    int e16 = (e2 + 3) >= 0 ? (e2 + 3) / 4 : -((-(e2 + 3) + 3) / 4); // ceil(e2 / 4)
    int shift = 56 - 53 + e2 - 4 * e16; // 0 to 3: the first hex digit is never zero
    uint64_t m56 = mantissa << shift;
    out[0] = static_cast<unsigned char>(sign | ((e16 + 64) & 0x7f));
    for (int i = 7; i >= 1; --i) {
        out[i] = static_cast<unsigned char>(m56 & 0xff);
        m56 >>= 8;
    }
}

// Bytes from a text of hexadecimal pairs with blanks between them.
inline Bytes Hex(const std::string& text)
{
    Bytes bytes;
    int high = -1;
    for (char c : text) {
        int v = c >= '0' && c <= '9' ? c - '0' : c >= 'a' && c <= 'f' ? c - 'a' + 10 : c >= 'A' && c <= 'F' ? c - 'A' + 10 : -1;
        if (v < 0)
            continue;
        if (high < 0) {
            high = v;
        } else {
            bytes.push_back(static_cast<unsigned char>(high * 16 + v));
            high = -1;
        }
    }
    return bytes;
}

class StreamWriter
{
public:
    // Any record with the length field computed from the data.
    StreamWriter& Record(int type, int dataType, const Bytes& data = {})
    {
        return RecordWithLength(int(data.size()) + 4, type, dataType, data);
    }

    // A record whose length field says what the test wants, whatever follows.
    StreamWriter& RecordWithLength(int length, int type, int dataType, const Bytes& data = {})
    {
        itsBytes.push_back(static_cast<unsigned char>((length >> 8) & 0xff));
        itsBytes.push_back(static_cast<unsigned char>(length & 0xff));
        itsBytes.push_back(static_cast<unsigned char>(type));
        itsBytes.push_back(static_cast<unsigned char>(dataType));
        return Raw(data);
    }

    StreamWriter& Raw(const Bytes& data)
    {
        itsBytes.insert(itsBytes.end(), data.begin(), data.end());
        return *this;
    }

    StreamWriter& NoData(int type) { return Record(type, NO_DATA); }

    StreamWriter& Int2(int type, std::initializer_list<int> values)
    {
        Bytes data;
        for (int v : values) {
            data.push_back(static_cast<unsigned char>((v >> 8) & 0xff));
            data.push_back(static_cast<unsigned char>(v & 0xff));
        }
        return Record(type, INT2, data);
    }

    StreamWriter& Int4(int type, const std::vector<long long>& values)
    {
        Bytes data;
        for (long long v : values)
            for (int shift = 24; shift >= 0; shift -= 8)
                data.push_back(static_cast<unsigned char>((uint32_t(v) >> shift) & 0xff));
        return Record(type, INT4, data);
    }

    StreamWriter& Real(int type, std::initializer_list<double> values)
    {
        Bytes data;
        for (double v : values) {
            unsigned char bytes[8];
            EncodeReal(v, bytes);
            data.insert(data.end(), bytes, bytes + 8);
        }
        return Record(type, REAL8, data);
    }

    // Padded with a zero byte to an even length, as writers do.
    StreamWriter& String(int type, const std::string& text)
    {
        Bytes data(text.begin(), text.end());
        if (data.size() % 2)
            data.push_back(0);
        return Record(type, ASCII, data);
    }

    StreamWriter& BitArray(int type, unsigned char high, unsigned char low)
    {
        return Record(type, BIT_ARRAY, {high, low});
    }

    // Library frame.
    StreamWriter& Header(int version = 600) { return Int2(HEADER, {version}); }
    StreamWriter& Bgnlib() { return Int2(BGNLIB, {2026, 11, 23, 9, 30, 5, 95, 13, 1, 0, 0, 0}); }
    StreamWriter& Libname(const std::string& name = "LIB") { return String(LIBNAME, name); }
    StreamWriter& Units(double userPerDbu = 0.001, double metresPerDbu = 1e-9)
    {
        return Real(UNITS, {userPerDbu, metresPerDbu});
    }
    // HEADER, BGNLIB, LIBNAME and UNITS.
    StreamWriter& Begin() { return Header().Bgnlib().Libname().Units(); }
    StreamWriter& Endlib() { return NoData(ENDLIB); }

    // BGNSTR and STRNAME.
    StreamWriter& Bgnstr(const std::string& name)
    {
        Int2(BGNSTR, {2026, 1, 2, 3, 4, 5, 2026, 1, 2, 3, 4, 5});
        return String(STRNAME, name);
    }
    StreamWriter& Endstr() { return NoData(ENDSTR); }
    StreamWriter& Endel() { return NoData(ENDEL); }

    StreamWriter& Xy(const std::vector<std::pair<long long, long long>>& points)
    {
        std::vector<long long> values;
        for (const auto& p : points) {
            values.push_back(p.first);
            values.push_back(p.second);
        }
        return Int4(XY, values);
    }

    // A closed rectangle from (x0, y0) to (x1, y1).
    static std::vector<std::pair<long long, long long>> Rect(long long x0, long long y0, long long x1, long long y1)
    {
        return {{x0, y0}, {x1, y0}, {x1, y1}, {x0, y1}, {x0, y0}};
    }

    StreamWriter& Boundary(int layer, int datatype, const std::vector<std::pair<long long, long long>>& points)
    {
        NoData(BOUNDARY).Int2(LAYER, {layer}).Int2(DATATYPE, {datatype});
        return Xy(points).Endel();
    }

    StreamWriter& Box(int layer, int boxtype, const std::vector<std::pair<long long, long long>>& points)
    {
        NoData(BOX).Int2(LAYER, {layer}).Int2(BOXTYPE, {boxtype});
        return Xy(points).Endel();
    }

    // pathtype < 0 leaves the PATHTYPE record out.
    StreamWriter& Path(int layer, int datatype, long long width,
                       const std::vector<std::pair<long long, long long>>& points, int pathtype = -1)
    {
        NoData(PATH).Int2(LAYER, {layer}).Int2(DATATYPE, {datatype});
        if (pathtype >= 0)
            Int2(PATHTYPE, {pathtype});
        Int4(WIDTH, {width});
        return Xy(points).Endel();
    }

    StreamWriter& Sref(const std::string& name, long long x, long long y)
    {
        NoData(SREF).String(SNAME, name);
        return Xy({{x, y}}).Endel();
    }

    // The three points: origin, past the last column, past the last row.
    StreamWriter& Aref(const std::string& name, int columns, int rows,
                       const std::vector<std::pair<long long, long long>>& points)
    {
        NoData(AREF).String(SNAME, name).Int2(COLROW, {columns, rows});
        return Xy(points).Endel();
    }

    // A structure of one boundary on layer 1.
    StreamWriter& Cell(const std::string& name, int elements = 1)
    {
        Bgnstr(name);
        for (int i = 0; i < elements; ++i)
            Boundary(1, 0, Rect(0, 0, 10 + i, 10));
        return Endstr();
    }

    const Bytes& bytes() const { return itsBytes; }
    size_t size() const { return itsBytes.size(); }

    bool Save(const std::string& path) const
    {
        std::ofstream out(path, std::ios::binary | std::ios::trunc);
        out.write(reinterpret_cast<const char*>(itsBytes.data()), std::streamsize(itsBytes.size()));
        return bool(out);
    }

private:
    Bytes itsBytes;
};

} // namespace gdstest

#endif
