// RIPEMD-160 (Dobbertin, Bosselaers, Preneel): two parallel lines of 80
// steps over little-endian words. Table-driven; no secret-dependent
// indexes (the tables are indexed by step number only).
#include "digest/ripemd160.h"

#include "digest/md_common.h"
#include "util/bytes.h"

namespace {
// Message word per step, left and right line.
constexpr uint8_t kWordLeft[80] = {
    0, 1,  2,  3,  4,  5,  6,  7,  8, 9,  10, 11, 12, 13, 14, 15, 7, 4,  13, 1,  10, 6,  15, 3,  12, 0, 9,  5,  2,  14, 11, 8,
    3, 10, 14, 4,  9,  15, 8,  1,  2, 7,  0,  6,  13, 11, 5,  12, 1, 9,  11, 10, 0,  8,  12, 4,  13, 3, 7,  15, 14, 5,  6,  2,
    4, 0,  5,  9,  7,  12, 2,  10, 14, 1, 3,  8,  11, 6,  15, 13};
constexpr uint8_t kWordRight[80] = {
    5,  14, 7,  0, 9, 2,  11, 4,  13, 6,  15, 8,  1,  10, 3,  12, 6,  11, 3,  7, 0,  13, 5,  10, 14, 15, 8,  12, 4, 9,  1,  2,
    15, 5,  1,  3, 7, 14, 6,  9,  11, 8,  12, 2,  10, 0,  4,  13, 8,  6,  4,  1, 3,  11, 15, 0,  5,  12, 2,  13, 9, 7,  10, 14,
    12, 15, 10, 4, 1, 5,  8,  7,  6,  2,  13, 14, 0,  3,  9,  11};
// Rotation per step.
constexpr uint8_t kRotLeft[80] = {
    11, 14, 15, 12, 5,  8,  7,  9,  11, 13, 14, 15, 6,  7,  9,  8,  7,  6,  8,  13, 11, 9,  7,  15, 7,  12, 15, 9,  11, 7,  13, 12,
    11, 13, 6,  7,  14, 9,  13, 15, 14, 8,  13, 6,  5,  12, 7,  5,  11, 12, 14, 15, 14, 15, 9,  8,  9,  14, 5,  6,  8,  6,  5,  12,
    9,  15, 5,  11, 6,  8,  13, 12, 5,  12, 13, 14, 11, 8,  5,  6};
constexpr uint8_t kRotRight[80] = {
    8,  9,  9,  11, 13, 15, 15, 5,  7,  7,  8,  11, 14, 14, 12, 6,  9,  13, 15, 7,  12, 8,  9,  11, 7,  7,  12, 7,  6,  15, 13, 11,
    9,  7,  15, 11, 8,  6,  6,  14, 12, 13, 5,  14, 13, 13, 7,  5,  15, 5,  8,  11, 14, 14, 6,  14, 6,  9,  12, 9,  12, 5,  15, 8,
    8,  5,  12, 9,  12, 5,  14, 6,  8,  13, 6,  5,  15, 13, 11, 11};
constexpr uint32_t kConstLeft[5] = {0x00000000u, 0x5a827999u, 0x6ed9eba1u, 0x8f1bbcdcu, 0xa953fd4eu};
constexpr uint32_t kConstRight[5] = {0x50a28be6u, 0x5c4dd124u, 0x6d703ef3u, 0x7a6d76e9u, 0x00000000u};

// The five boolean functions; the right line runs them in reverse order.
inline uint32_t Boolean(int round, uint32_t x, uint32_t y, uint32_t z) {
    switch (round) {
        case 0: return x ^ y ^ z;
        case 1: return (x & y) | (~x & z);
        case 2: return (x | ~y) ^ z;
        case 3: return (x & z) | (y & ~z);
        default: return x ^ (y | ~z);
    }
}
}  // namespace

void Ripemd160Compress(uint32_t h[5], const uint8_t* block) {
    uint32_t x[16];
    for (int i = 0; i < 16; ++i) x[i] = Load32Le(block + 4 * i);
    uint32_t al = h[0], bl = h[1], cl = h[2], dl = h[3], el = h[4];
    uint32_t ar = h[0], br = h[1], cr = h[2], dr = h[3], er = h[4];
    for (int j = 0; j < 80; ++j) {
        int round = j >> 4;
        uint32_t t = Rotl32(al + Boolean(round, bl, cl, dl) + x[kWordLeft[j]] + kConstLeft[round], kRotLeft[j]) + el;
        al = el;
        el = dl;
        dl = Rotl32(cl, 10);
        cl = bl;
        bl = t;
        t = Rotl32(ar + Boolean(4 - round, br, cr, dr) + x[kWordRight[j]] + kConstRight[round], kRotRight[j]) + er;
        ar = er;
        er = dr;
        dr = Rotl32(cr, 10);
        cr = br;
        br = t;
    }
    uint32_t t = h[1] + cl + dr;
    h[1] = h[2] + dl + er;
    h[2] = h[3] + el + ar;
    h[3] = h[4] + al + br;
    h[4] = h[0] + bl + cr;
    h[0] = t;
}

void Ripemd160Update(Ripemd160Context* ctx, const uint8_t* data, uint32_t length) {
    MdUpdate64<Ripemd160Context, Ripemd160Compress, CompressEach<Ripemd160Compress>>(ctx, data, length);
}

void Ripemd160Final(uint8_t* output, Ripemd160Context* ctx) {
    MdPad64<Ripemd160Context, Ripemd160Compress, false>(ctx);
    for (int i = 0; i < 5; ++i) Store32Le(output + 4 * i, ctx->h[i]);
    ctx->h[0] = 0;  // only the first four bytes: the owner decides on more
}
