// Writes large streams for timing.
//
//   gdsgen out.gds [count] [--hier | --tree | --paths | --overlap]
//
// Without a mode: one structure "cell" with count boundaries of seven points
// each (a closed hexagon), spread over 16 layers; --hier adds a structure
// "top" that places it four times.
// --tree: a hierarchy that flattens to about count polygons: "leaf" holds 50
// boundaries, "mid" places it 20 times turned, mirrored and scaled, and "top"
// places "mid" in an array that is itself turned and mirrored.
// --paths: "wires" holds up to 20,000 paths of two to six points with bends,
// of the three end types, placed by an array in "top" to about count paths.

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace {

std::vector<unsigned char> out;
FILE* file = nullptr;

void Flush(bool force = false)
{
    if (force || out.size() > (1 << 22)) {
        fwrite(out.data(), 1, out.size(), file);
        out.clear();
    }
}

void Put16(int v) { out.push_back((v >> 8) & 0xff); out.push_back(v & 0xff); }
void Put32(int32_t v)
{
    uint32_t u = uint32_t(v);
    for (int s = 24; s >= 0; s -= 8)
        out.push_back((u >> s) & 0xff);
}
void Header(int length, int type, int dataType) { Put16(length); out.push_back(type); out.push_back(dataType); }
void Name(int type, const char* text)
{
    int n = int(strlen(text));
    int padded = n + (n & 1);
    Header(4 + padded, type, 6);
    out.insert(out.end(), text, text + n);
    if (n & 1)
        out.push_back(0);
}
void Dates(int type)
{
    Header(28, type, 2);
    for (int i = 0; i < 2; ++i) {
        int date[6] = {2026, 11, 23, 12, 0, 0};
        for (int v : date)
            Put16(v);
    }
}
// An excess-64 base-16 real; exact for the values used here.
void Real(double value)
{
    unsigned char bytes[8] = {0};
    if (value != 0.0) {
        int sign = value < 0 ? 0x80 : 0;
        value = std::fabs(value);
        int exponent = 0;
        while (value >= 1.0) {
            value /= 16.0;
            ++exponent;
        }
        while (value < 1.0 / 16.0) {
            value *= 16.0;
            --exponent;
        }
        uint64_t mantissa = uint64_t(std::ldexp(value, 56));
        bytes[0] = (unsigned char)(sign | (exponent + 64));
        for (int i = 7; i >= 1; --i, mantissa >>= 8)
            bytes[i] = mantissa & 0xff;
    }
    out.insert(out.end(), bytes, bytes + 8);
}
void Int2(int type, int value) { Header(6, type, 2); Put16(value); }
void Xy(const std::vector<int32_t>& values)
{
    Header(4 + 4 * int(values.size()), 16, 3);
    for (int32_t v : values)
        Put32(v);
}
void Boundary(int layer, const std::vector<int32_t>& points)
{
    Header(4, 8, 0);
    Int2(13, layer);
    Int2(14, 0);
    Xy(points);
    Header(4, 17, 0);
    Flush();
}
// STRANS, MAG and ANGLE of a reference.
void Placement(bool reflection, double magnification, double angle)
{
    Header(6, 26, 1);
    out.push_back(reflection ? 0x80 : 0);
    out.push_back(0);
    Header(12, 27, 5);
    Real(magnification);
    Header(12, 28, 5);
    Real(angle);
}
void Sref(const char* name, bool reflection, double magnification, double angle, int32_t x, int32_t y)
{
    Header(4, 10, 0);
    Name(18, name);
    Placement(reflection, magnification, angle);
    Xy({x, y});
    Header(4, 17, 0);
}
void Aref(const char* name, bool reflection, double angle, int columns, int rows, int32_t x, int32_t y,
          int32_t pitch)
{
    Header(4, 11, 0);
    Name(18, name);
    Placement(reflection, 1.0, angle);
    Header(8, 19, 2);
    Put16(columns);
    Put16(rows);
    Xy({x, y, x + columns * pitch, y, x, y + rows * pitch});
    Header(4, 17, 0);
}
void Begin()
{
    Header(6, 0, 2);
    Put16(600);
    Dates(1);
    Name(2, "BENCH");
    Header(20, 3, 5);
    Real(0.001);
    Real(1e-9);
}
void Structure(const char* name)
{
    Dates(5);
    Name(6, name);
}
void End() { Header(4, 7, 0); }

// Columns and rows of an array of about cells cells.
void Grid(long cells, int& columns, int& rows)
{
    if (cells < 1)
        cells = 1;
    columns = int(std::ceil(std::sqrt(double(cells))));
    if (columns > 32767)
        columns = 32767;
    rows = int((cells + columns - 1) / columns);
    if (rows > 32767)
        rows = 32767;
}

void Flat(long count, bool hier, bool overlap = false)
{
    Structure("cell");
    const int32_t dx[7] = {0, 1000, 2000, 2000, 1000, 0, 0};
    const int32_t dy[7] = {500, 0, 500, 1500, 2000, 1500, 500};
    for (long i = 0; i < count; ++i) {
        // Overlapping: rows of hexagons that each overlap the next, a row of one layer merging
        // into one polygon.
        const int32_t x = int32_t((i % 1000) * (overlap ? 1500 : 3000));
        const int32_t y = int32_t((i / 1000) * 3000);
        std::vector<int32_t> points;
        for (int k = 0; k < 7; ++k) {
            points.push_back(x + dx[k]);
            points.push_back(y + dy[k]);
        }
        Boundary(int(overlap ? (i / 1000) % 16 : i % 16), points);
    }
    End();
    if (hier) {
        Structure("top");
        for (int k = 0; k < 4; ++k) {
            Header(4, 10, 0);
            Name(18, "cell");
            Xy({k * 4000000, 0});
            Header(4, 17, 0);
        }
        End();
    }
}

void Tree(long count)
{
    Structure("leaf");
    for (int i = 0; i < 50; ++i) {
        int32_t x = (i % 10) * 3000, y = (i / 10) * 3000;
        if (i % 2)
            Boundary(i % 4, {x, y, x + 2000, y, x + 2000, y + 1000, x, y + 1000, x, y});
        else
            Boundary(i % 4, {x, y + 500, x + 1000, y, x + 2000, y + 500, x + 2000, y + 1500, x + 1000, y + 2000, x,
                             y + 1500, x, y + 500});
    }
    End();
    Structure("mid");
    const double angles[6] = {0, 90, 180, 270, 30, 45};
    const double magnifications[3] = {1, 0.5, 2};
    for (int i = 0; i < 20; ++i)
        Sref("leaf", i % 2 == 1, magnifications[i % 3], angles[i % 6], (i % 5) * 80000, (i / 5) * 80000);
    End();
    int columns, rows;
    Grid((count + 999) / 1000, columns, rows);
    Structure("top");
    Aref("mid", true, 90, columns, rows, 0, 0, 500000);
    End();
}

void Paths(long count)
{
    long per = count < 20000 ? count : 20000;
    Structure("wires");
    for (long i = 0; i < per; ++i) {
        int32_t x = int32_t((i % 200) * 5000), y = int32_t((i / 200) * 5000);
        int points = 2 + int(i % 5);
        std::vector<int32_t> xy;
        for (int k = 0; k < points; ++k) {
            // Right-angle and 45-degree bends in turn.
            int32_t dx = k * 800, dy = (k % 2) * (i % 2 ? 800 : 600);
            xy.push_back(x + dx);
            xy.push_back(y + dy);
        }
        const int types[3] = {0, 2, 4};
        Header(4, 9, 0);
        Int2(13, int(i % 8));
        Int2(14, 0);
        Int2(33, types[i % 3]);
        Header(8, 15, 3);
        Put32(100 + int32_t(i % 4) * 50);
        if (types[i % 3] == 4) {
            Header(8, 48, 3);
            Put32(30);
            Header(8, 49, 3);
            Put32(-20);
        }
        Xy(xy);
        Header(4, 17, 0);
        Flush();
    }
    End();
    int columns, rows;
    Grid((count + per - 1) / per, columns, rows);
    Structure("top");
    Aref("wires", false, 0, columns, rows, 0, 0, 2000000);
    End();
}

} // namespace

int main(int argc, char** argv)
{
    if (argc < 2) {
        fprintf(stderr, "usage: gdsgen out.gds [count] [--hier | --tree | --paths | --overlap]\n");
        return 2;
    }
    long count = argc > 2 ? atol(argv[2]) : 1000000;
    const char* mode = argc > 3 ? argv[3] : "";
    file = fopen(argv[1], "wb");
    if (!file) {
        perror(argv[1]);
        return 1;
    }
    Begin();
    if (strcmp(mode, "--tree") == 0)
        Tree(count);
    else if (strcmp(mode, "--paths") == 0)
        Paths(count);
    else
        Flat(count, strcmp(mode, "--hier") == 0, strcmp(mode, "--overlap") == 0);
    Header(4, 4, 0);
    Flush(true);
    return fclose(file) == 0 ? 0 : 1;
}
