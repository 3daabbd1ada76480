// Writes a large stream for timing: one structure "cell" with N boundaries of
// seven points each (a closed hexagon), spread over 16 layers; with --hier a
// structure "top" that places it four times as well.
//
//   gdsgen out.gds [boundaries] [--hier]

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace {

std::vector<unsigned char> out;

void Put16(int v) { out.push_back((v >> 8) & 0xff); out.push_back(v & 0xff); }
void Put32(int32_t v)
{
    uint32_t u = uint32_t(v);
    for (int s = 24; s >= 0; s -= 8)
        out.push_back((u >> s) & 0xff);
}
void Header(int length, int type, int dataType) { Put16(length); out.push_back(type); out.push_back(dataType); }
void Real(const unsigned char* bytes) { out.insert(out.end(), bytes, bytes + 8); }
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

} // namespace

int main(int argc, char** argv)
{
    if (argc < 2) {
        fprintf(stderr, "usage: gdsgen out.gds [boundaries] [--hier]\n");
        return 2;
    }
    long count = argc > 2 ? atol(argv[2]) : 1000000;
    bool hier = argc > 3 && strcmp(argv[3], "--hier") == 0;
    FILE* file = fopen(argv[1], "wb");
    if (!file) {
        perror(argv[1]);
        return 1;
    }
    // 0.001 and 1e-9 as stream reals.
    static const unsigned char kUser[8] = {0x3E, 0x41, 0x89, 0x37, 0x4B, 0xC6, 0xA7, 0xF0};
    static const unsigned char kMetre[8] = {0x39, 0x44, 0xB8, 0x2F, 0xA0, 0x9B, 0x5A, 0x54};

    Header(6, 0, 2);
    Put16(600);
    Dates(1);
    Name(2, "BENCH");
    Header(20, 3, 5);
    Real(kUser);
    Real(kMetre);
    Dates(5);
    Name(6, "cell");
    for (long i = 0; i < count; ++i) {
        int32_t x = int32_t((i % 1000) * 3000);
        int32_t y = int32_t((i / 1000) * 3000);
        Header(4, 8, 0);
        Header(6, 13, 2);
        Put16(int(i % 16));
        Header(6, 14, 2);
        Put16(0);
        Header(4 + 7 * 8, 16, 3);
        const int32_t dx[7] = {0, 1000, 2000, 2000, 1000, 0, 0};
        const int32_t dy[7] = {500, 0, 500, 1500, 2000, 1500, 500};
        for (int k = 0; k < 7; ++k) {
            Put32(x + dx[k]);
            Put32(y + dy[k]);
        }
        Header(4, 17, 0);
        if (out.size() > (1 << 22)) {
            fwrite(out.data(), 1, out.size(), file);
            out.clear();
        }
    }
    Header(4, 7, 0);
    if (hier) {
        Dates(5);
        Name(6, "top");
        for (int k = 0; k < 4; ++k) {
            Header(4, 10, 0);
            Name(18, "cell");
            Header(12, 16, 3);
            Put32(k * 4000000);
            Put32(0);
            Header(4, 17, 0);
        }
        Header(4, 7, 0);
    }
    Header(4, 4, 0);
    fwrite(out.data(), 1, out.size(), file);
    return fclose(file) == 0 ? 0 : 1;
}
