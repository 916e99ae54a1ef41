// SHA-512 and SHA-384, FIPS 180-4. Portable core: a loop of 80 steps over a
// 16-word rolling schedule.
#include "digest/sha512.h"

#include <cstring>

#include "digest/digest_x86.h"
#include "util/bytes.h"
#include "util/cpu.h"
#include "util/wipe.h"

namespace {
constexpr uint64_t kK[80] = {
    0x428a2f98d728ae22, 0x7137449123ef65cd, 0xb5c0fbcfec4d3b2f, 0xe9b5dba58189dbbc, 0x3956c25bf348b538,
    0x59f111f1b605d019, 0x923f82a4af194f9b, 0xab1c5ed5da6d8118, 0xd807aa98a3030242, 0x12835b0145706fbe,
    0x243185be4ee4b28c, 0x550c7dc3d5ffb4e2, 0x72be5d74f27b896f, 0x80deb1fe3b1696b1, 0x9bdc06a725c71235,
    0xc19bf174cf692694, 0xe49b69c19ef14ad2, 0xefbe4786384f25e3, 0x0fc19dc68b8cd5b5, 0x240ca1cc77ac9c65,
    0x2de92c6f592b0275, 0x4a7484aa6ea6e483, 0x5cb0a9dcbd41fbd4, 0x76f988da831153b5, 0x983e5152ee66dfab,
    0xa831c66d2db43210, 0xb00327c898fb213f, 0xbf597fc7beef0ee4, 0xc6e00bf33da88fc2, 0xd5a79147930aa725,
    0x06ca6351e003826f, 0x142929670a0e6e70, 0x27b70a8546d22ffc, 0x2e1b21385c26c926, 0x4d2c6dfc5ac42aed,
    0x53380d139d95b3df, 0x650a73548baf63de, 0x766a0abb3c77b2a8, 0x81c2c92e47edaee6, 0x92722c851482353b,
    0xa2bfe8a14cf10364, 0xa81a664bbc423001, 0xc24b8b70d0f89791, 0xc76c51a30654be30, 0xd192e819d6ef5218,
    0xd69906245565a910, 0xf40e35855771202a, 0x106aa07032bbd1b8, 0x19a4c116b8d2d0c8, 0x1e376c085141ab53,
    0x2748774cdf8eeb99, 0x34b0bcb5e19b48a8, 0x391c0cb3c5c95a63, 0x4ed8aa4ae3418acb, 0x5b9cca4f7763e373,
    0x682e6ff3d6b2b8a3, 0x748f82ee5defb2fc, 0x78a5636f43172f60, 0x84c87814a1f0ab72, 0x8cc702081a6439ec,
    0x90befffa23631e28, 0xa4506cebde82bde9, 0xbef9a3f7b2c67915, 0xc67178f2e372532b, 0xca273eceea26619c,
    0xd186b8c721c0c207, 0xeada7dd6cde0eb1e, 0xf57d4f7fee6ed178, 0x06f067aa72176fba, 0x0a637dc5a2c898a6,
    0x113f9804bef90dae, 0x1b710b35131c471b, 0x28db77f523047d84, 0x32caab7b40c72493, 0x3c9ebe0a15c9bebc,
    0x431d67c49c100d4c, 0x4cc5d4becb3e42b6, 0x597f299cfc657e2a, 0x5fcb6fab3ad6faec, 0x6c44198c4a475817,
};
}  // namespace

namespace {
void CompressPortable(uint64_t h[8], const uint8_t* block) {
    uint64_t w[16];
    for (int i = 0; i < 16; ++i) w[i] = Load64Be(block + 8 * i);
    uint64_t a = h[0], b = h[1], c = h[2], d = h[3], e = h[4], f = h[5], g = h[6], hh = h[7];
    for (int i = 0; i < 80; ++i) {
        uint64_t wi;
        if (i < 16) {
            wi = w[i];
        } else {
            uint64_t x = w[(i + 1) & 15];
            uint64_t y = w[(i + 14) & 15];
            uint64_t s0 = Rotr64(x, 1) ^ Rotr64(x, 8) ^ (x >> 7);
            uint64_t s1 = Rotr64(y, 19) ^ Rotr64(y, 61) ^ (y >> 6);
            wi = w[i & 15] += s0 + s1 + w[(i + 9) & 15];
        }
        uint64_t t1 = hh + (Rotr64(e, 14) ^ Rotr64(e, 18) ^ Rotr64(e, 41)) + ((e & f) ^ (~e & g)) + kK[i] + wi;
        uint64_t t2 = (Rotr64(a, 28) ^ Rotr64(a, 34) ^ Rotr64(a, 39)) + ((a & b) ^ (a & c) ^ (b & c));
        hh = g;
        g = f;
        f = e;
        e = d + t1;
        d = c;
        c = b;
        b = a;
        a = t1 + t2;
    }
    h[0] += a;
    h[1] += b;
    h[2] += c;
    h[3] += d;
    h[4] += e;
    h[5] += f;
    h[6] += g;
    h[7] += hh;
}
}  // namespace

void Sha512BlocksPortable(uint64_t h[8], const uint8_t* data, size_t blocks) {
    for (; blocks != 0; --blocks, data += 128) CompressPortable(h, data);
}

void Sha512CompressBlocks(uint64_t h[8], const uint8_t* data, size_t blocks) {
    if (g_cpu.avx2 && g_cpu.bmi2) {
        Sha512BlocksAvx2(h, data, blocks);
        return;
    }
    Sha512BlocksPortable(h, data, blocks);
}

void Sha512Compress(uint64_t h[8], const uint8_t* block) { Sha512CompressBlocks(h, block, 1); }

void Sha512Start(Sha512Context* ctx) {
    static constexpr uint64_t kStart[8] = {0x6a09e667f3bcc908, 0xbb67ae8584caa73b, 0x3c6ef372fe94f82b,
                                           0xa54ff53a5f1d36f1, 0x510e527fade682d1, 0x9b05688c2b3e6c1f,
                                           0x1f83d9abfb41bd6b, 0x5be0cd19137e2179};
    for (int i = 0; i < 8; ++i) ctx->h[i] = kStart[i];
    ctx->countLow = 0;
    ctx->countHigh = 0;
    ctx->isSha384 = 0;
}

void Sha384Start(Sha512Context* ctx) {
    static constexpr uint64_t kStart[8] = {0xcbbb9d5dc1059ed8, 0x629a292a367cd507, 0x9159015a3070dd17,
                                           0x152fecd8f70e5939, 0x67332667ffc00b31, 0x8eb44a8768581511,
                                           0xdb0c2e0d64f98fa7, 0x47b5481dbefa4fa4};
    for (int i = 0; i < 8; ++i) ctx->h[i] = kStart[i];
    ctx->countLow = 0;
    ctx->countHigh = 0;
    ctx->isSha384 = 1;
}

void Sha512Update(Sha512Context* ctx, const uint8_t* data, uint32_t length) {
    if (length == 0) return;
    uint32_t buffered = uint32_t(ctx->countLow >> 3) & 127;
    uint64_t low = ctx->countLow + (uint64_t(length) << 3);
    if (low < ctx->countLow) ++ctx->countHigh;
    ctx->countLow = low;
    if (buffered != 0) {
        uint32_t room = 128 - buffered;
        if (length < room) {
            std::memcpy(ctx->block + buffered, data, length);
            return;
        }
        std::memcpy(ctx->block + buffered, data, room);
        Sha512Compress(ctx->h, ctx->block);
        data += room;
        length -= room;
    }
    // Whole blocks straight from the input; the last one is then left in the
    // buffer, as if each had passed through it.
    size_t blocks = length / 128;
    if (blocks != 0) {
        Sha512CompressBlocks(ctx->h, data, blocks);
        std::memcpy(ctx->block, data + 128 * (blocks - 1), 128);
        data += 128 * blocks;
        length -= uint32_t(128 * blocks);
    }
    if (length != 0) std::memcpy(ctx->block, data, length);
}

int Sha512Final(uint8_t* output, Sha512Context* ctx) {
    uint32_t buffered = uint32_t(ctx->countLow >> 3) & 127;
    ctx->block[buffered++] = 0x80;
    if (buffered > 112) {
        std::memset(ctx->block + buffered, 0, 128 - buffered);
        Sha512Compress(ctx->h, ctx->block);
        buffered = 0;
    }
    std::memset(ctx->block + buffered, 0, 112 - buffered);
    Store64Be(ctx->block + 112, ctx->countHigh);
    Store64Be(ctx->block + 120, ctx->countLow);
    Sha512Compress(ctx->h, ctx->block);
    for (int i = 0; i < 8; ++i) Store64Be(output + 8 * i, ctx->h[i]);
    std::memset(ctx->h, 0, 4);  // only the first four bytes: kept as the record's contract
    return 64;
}

int Sha384Final(uint8_t* output, Sha512Context* ctx) {
    uint8_t full[64];
    Sha512Final(full, ctx);
    std::memcpy(output, full, 48);
    SecureWipe(full, sizeof full);
    return 48;
}
