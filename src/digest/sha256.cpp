// SHA-256 and SHA-224, FIPS 180-4. Portable core.
#include "digest/sha256.h"

#include "digest/digest_x86.h"
#include "digest/md_common.h"
#include "util/bytes.h"
#include "util/cpu.h"
#include "util/wipe.h"

namespace {
constexpr uint32_t kK[64] = {
    0x428a2f98, 0x71374491, 0xb5c0fbcf, 0xe9b5dba5, 0x3956c25b, 0x59f111f1, 0x923f82a4, 0xab1c5ed5,
    0xd807aa98, 0x12835b01, 0x243185be, 0x550c7dc3, 0x72be5d74, 0x80deb1fe, 0x9bdc06a7, 0xc19bf174,
    0xe49b69c1, 0xefbe4786, 0x0fc19dc6, 0x240ca1cc, 0x2de92c6f, 0x4a7484aa, 0x5cb0a9dc, 0x76f988da,
    0x983e5152, 0xa831c66d, 0xb00327c8, 0xbf597fc7, 0xc6e00bf3, 0xd5a79147, 0x06ca6351, 0x14292967,
    0x27b70a85, 0x2e1b2138, 0x4d2c6dfc, 0x53380d13, 0x650a7354, 0x766a0abb, 0x81c2c92e, 0x92722c85,
    0xa2bfe8a1, 0xa81a664b, 0xc24b8b70, 0xc76c51a3, 0xd192e819, 0xd6990624, 0xf40e3585, 0x106aa070,
    0x19a4c116, 0x1e376c08, 0x2748774c, 0x34b0bcb5, 0x391c0cb3, 0x4ed8aa4a, 0x5b9cca4f, 0x682e6ff3,
    0x748f82ee, 0x78a5636f, 0x84c87814, 0x8cc70208, 0x90befffa, 0xa4506ceb, 0xbef9a3f7, 0xc67178f2,
};
}  // namespace

namespace {
void CompressPortable(uint32_t h[8], const uint8_t* block) {
    uint32_t w[64];
    for (int i = 0; i < 16; ++i) w[i] = Load32Be(block + 4 * i);
    for (int i = 16; i < 64; ++i) {
        uint32_t s0 = Rotr32(w[i - 15], 7) ^ Rotr32(w[i - 15], 18) ^ (w[i - 15] >> 3);
        uint32_t s1 = Rotr32(w[i - 2], 17) ^ Rotr32(w[i - 2], 19) ^ (w[i - 2] >> 10);
        w[i] = w[i - 16] + s0 + w[i - 7] + s1;
    }
    uint32_t a = h[0], b = h[1], c = h[2], d = h[3], e = h[4], f = h[5], g = h[6], hh = h[7];
    for (int i = 0; i < 64; ++i) {
        uint32_t t1 = hh + (Rotr32(e, 6) ^ Rotr32(e, 11) ^ Rotr32(e, 25)) + ((e & f) ^ (~e & g)) +
                      kK[i] + w[i];
        uint32_t t2 = (Rotr32(a, 2) ^ Rotr32(a, 13) ^ Rotr32(a, 22)) + ((a & b) ^ (a & c) ^ (b & c));
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

void Sha256BlocksPortable(uint32_t h[8], const uint8_t* data, size_t blocks) {
    for (; blocks != 0; --blocks, data += 64) CompressPortable(h, data);
}

void Sha256CompressBlocks(uint32_t h[8], const uint8_t* data, size_t blocks) {
    if (g_cpu.shani && g_cpu.sse41) {
        Sha256BlocksShaNi(h, data, blocks);
        return;
    }
    Sha256BlocksPortable(h, data, blocks);
}

void Sha256Compress(uint32_t h[8], const uint8_t* block) { Sha256CompressBlocks(h, block, 1); }

void Sha256Start(Sha256Context* ctx) {
    static constexpr uint32_t kStart[8] = {0x6a09e667, 0xbb67ae85, 0x3c6ef372, 0xa54ff53a,
                                           0x510e527f, 0x9b05688c, 0x1f83d9ab, 0x5be0cd19};
    for (int i = 0; i < 8; ++i) ctx->h[i] = kStart[i];
    ctx->countLow = 0;
    ctx->countHigh = 0;
}

void Sha224Start(Sha256Context* ctx) {
    static constexpr uint32_t kStart[8] = {0xc1059ed8, 0x367cd507, 0x3070dd17, 0xf70e5939,
                                           0xffc00b31, 0x68581511, 0x64f98fa7, 0xbefa4fa4};
    for (int i = 0; i < 8; ++i) ctx->h[i] = kStart[i];
    ctx->countLow = 0;
    ctx->countHigh = 0;
    ctx->isSha224 = 1;
}

void Sha256Update(Sha256Context* ctx, const uint8_t* data, uint32_t length) {
    MdUpdate64<Sha256Context, Sha256Compress, Sha256CompressBlocks>(ctx, data, length);
}

void Sha256Final(uint8_t* output, Sha256Context* ctx) {
    MdPad64<Sha256Context, Sha256Compress, true>(ctx);
    for (int i = 0; i < 8; ++i) Store32Be(output + 4 * i, ctx->h[i]);
    ctx->h[0] = 0;  // only the first four bytes: kept as the record's contract
}

void Sha224Final(uint8_t* output, Sha256Context* ctx) {
    uint8_t full[32];
    Sha256Final(full, ctx);
    for (int i = 0; i < 28; ++i) output[i] = full[i];
    SecureWipe(full, sizeof full);
}
