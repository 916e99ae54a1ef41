// SHA-1, FIPS 180-4. Portable; no secret-dependent branches or table
// indexes. The record is the caller's; nothing here allocates.
#include "digest/sha1.h"

#include "digest/digest_x86.h"
#include "digest/md_common.h"
#include "util/bytes.h"
#include "util/cpu.h"

namespace {
void CompressPortable(uint32_t h[5], const uint8_t* block) {
    uint32_t w[80];
    for (int i = 0; i < 16; ++i) w[i] = Load32Be(block + 4 * i);
    for (int i = 16; i < 80; ++i) w[i] = Rotl32(w[i - 3] ^ w[i - 8] ^ w[i - 14] ^ w[i - 16], 1);
    uint32_t a = h[0], b = h[1], c = h[2], d = h[3], e = h[4];
    for (int i = 0; i < 80; ++i) {
        uint32_t f, k;
        if (i < 20) {
            f = (b & c) | (~b & d);
            k = 0x5a827999u;
        } else if (i < 40) {
            f = b ^ c ^ d;
            k = 0x6ed9eba1u;
        } else if (i < 60) {
            f = (b & c) | (b & d) | (c & d);
            k = 0x8f1bbcdcu;
        } else {
            f = b ^ c ^ d;
            k = 0xca62c1d6u;
        }
        uint32_t t = Rotl32(a, 5) + f + e + k + w[i];
        e = d;
        d = c;
        c = Rotl32(b, 30);
        b = a;
        a = t;
    }
    h[0] += a;
    h[1] += b;
    h[2] += c;
    h[3] += d;
    h[4] += e;
}
}  // namespace

void Sha1BlocksPortable(uint32_t h[5], const uint8_t* data, size_t blocks) {
    for (; blocks != 0; --blocks, data += 64) CompressPortable(h, data);
}

void Sha1CompressBlocks(uint32_t h[5], const uint8_t* data, size_t blocks) {
    if (g_cpu.shani && g_cpu.sse41) {
        Sha1BlocksShaNi(h, data, blocks);
        return;
    }
    Sha1BlocksPortable(h, data, blocks);
}

void Sha1Compress(uint32_t h[5], const uint8_t* block) { Sha1CompressBlocks(h, block, 1); }

void Sha1Start(Sha1Context* ctx) {
    ctx->h[0] = 0x67452301u;
    ctx->h[1] = 0xefcdab89u;
    ctx->h[2] = 0x98badcfeu;
    ctx->h[3] = 0x10325476u;
    ctx->h[4] = 0xc3d2e1f0u;
    ctx->countLow = 0;
    ctx->countHigh = 0;
}

void Sha1Update(Sha1Context* ctx, const uint8_t* data, uint32_t length) {
    MdUpdate64<Sha1Context, Sha1Compress, Sha1CompressBlocks>(ctx, data, length);
}

void Sha1Final(uint8_t* output, Sha1Context* ctx) {
    MdPad64<Sha1Context, Sha1Compress, true>(ctx);
    for (int i = 0; i < 5; ++i) Store32Be(output + 4 * i, ctx->h[i]);
    ctx->h[0] = 0;  // only the first four bytes: kept as the record's contract
}
