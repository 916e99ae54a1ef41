// MD5, RFC 1321. Straight-line compression; little-endian words and count.
// Whole input blocks are compressed in place, only a tail goes through the
// record's buffer. The final pads through the ordinary update and then
// zeroes the whole record.
#include "digest/md5.h"

#include <cstring>

#include "util/bytes.h"
#include "util/wipe.h"

namespace {
inline uint32_t F(uint32_t x, uint32_t y, uint32_t z) { return z ^ (x & (y ^ z)); }
inline uint32_t G(uint32_t x, uint32_t y, uint32_t z) { return y ^ (z & (x ^ y)); }
inline uint32_t H(uint32_t x, uint32_t y, uint32_t z) { return x ^ y ^ z; }
inline uint32_t I(uint32_t x, uint32_t y, uint32_t z) { return y ^ (x | ~z); }

// 0x80 and then zeros: the padding is taken from here by Md5Update.
constexpr uint8_t kPadding[64] = {0x80};
}  // namespace

#define MD5_STEP(f, a, b, c, d, x, s, t) (a) = (b) + Rotl32((a) + f((b), (c), (d)) + (x) + (t), (s))

void Md5Compress(uint32_t h[4], const uint8_t* block) {
    uint32_t x[16];
    for (int i = 0; i < 16; ++i) x[i] = Load32Le(block + 4 * i);
    uint32_t a = h[0], b = h[1], c = h[2], d = h[3];

    MD5_STEP(F, a, b, c, d, x[0], 7, 0xd76aa478);
    MD5_STEP(F, d, a, b, c, x[1], 12, 0xe8c7b756);
    MD5_STEP(F, c, d, a, b, x[2], 17, 0x242070db);
    MD5_STEP(F, b, c, d, a, x[3], 22, 0xc1bdceee);
    MD5_STEP(F, a, b, c, d, x[4], 7, 0xf57c0faf);
    MD5_STEP(F, d, a, b, c, x[5], 12, 0x4787c62a);
    MD5_STEP(F, c, d, a, b, x[6], 17, 0xa8304613);
    MD5_STEP(F, b, c, d, a, x[7], 22, 0xfd469501);
    MD5_STEP(F, a, b, c, d, x[8], 7, 0x698098d8);
    MD5_STEP(F, d, a, b, c, x[9], 12, 0x8b44f7af);
    MD5_STEP(F, c, d, a, b, x[10], 17, 0xffff5bb1);
    MD5_STEP(F, b, c, d, a, x[11], 22, 0x895cd7be);
    MD5_STEP(F, a, b, c, d, x[12], 7, 0x6b901122);
    MD5_STEP(F, d, a, b, c, x[13], 12, 0xfd987193);
    MD5_STEP(F, c, d, a, b, x[14], 17, 0xa679438e);
    MD5_STEP(F, b, c, d, a, x[15], 22, 0x49b40821);

    MD5_STEP(G, a, b, c, d, x[1], 5, 0xf61e2562);
    MD5_STEP(G, d, a, b, c, x[6], 9, 0xc040b340);
    MD5_STEP(G, c, d, a, b, x[11], 14, 0x265e5a51);
    MD5_STEP(G, b, c, d, a, x[0], 20, 0xe9b6c7aa);
    MD5_STEP(G, a, b, c, d, x[5], 5, 0xd62f105d);
    MD5_STEP(G, d, a, b, c, x[10], 9, 0x02441453);
    MD5_STEP(G, c, d, a, b, x[15], 14, 0xd8a1e681);
    MD5_STEP(G, b, c, d, a, x[4], 20, 0xe7d3fbc8);
    MD5_STEP(G, a, b, c, d, x[9], 5, 0x21e1cde6);
    MD5_STEP(G, d, a, b, c, x[14], 9, 0xc33707d6);
    MD5_STEP(G, c, d, a, b, x[3], 14, 0xf4d50d87);
    MD5_STEP(G, b, c, d, a, x[8], 20, 0x455a14ed);
    MD5_STEP(G, a, b, c, d, x[13], 5, 0xa9e3e905);
    MD5_STEP(G, d, a, b, c, x[2], 9, 0xfcefa3f8);
    MD5_STEP(G, c, d, a, b, x[7], 14, 0x676f02d9);
    MD5_STEP(G, b, c, d, a, x[12], 20, 0x8d2a4c8a);

    MD5_STEP(H, a, b, c, d, x[5], 4, 0xfffa3942);
    MD5_STEP(H, d, a, b, c, x[8], 11, 0x8771f681);
    MD5_STEP(H, c, d, a, b, x[11], 16, 0x6d9d6122);
    MD5_STEP(H, b, c, d, a, x[14], 23, 0xfde5380c);
    MD5_STEP(H, a, b, c, d, x[1], 4, 0xa4beea44);
    MD5_STEP(H, d, a, b, c, x[4], 11, 0x4bdecfa9);
    MD5_STEP(H, c, d, a, b, x[7], 16, 0xf6bb4b60);
    MD5_STEP(H, b, c, d, a, x[10], 23, 0xbebfbc70);
    MD5_STEP(H, a, b, c, d, x[13], 4, 0x289b7ec6);
    MD5_STEP(H, d, a, b, c, x[0], 11, 0xeaa127fa);
    MD5_STEP(H, c, d, a, b, x[3], 16, 0xd4ef3085);
    MD5_STEP(H, b, c, d, a, x[6], 23, 0x04881d05);
    MD5_STEP(H, a, b, c, d, x[9], 4, 0xd9d4d039);
    MD5_STEP(H, d, a, b, c, x[12], 11, 0xe6db99e5);
    MD5_STEP(H, c, d, a, b, x[15], 16, 0x1fa27cf8);
    MD5_STEP(H, b, c, d, a, x[2], 23, 0xc4ac5665);

    MD5_STEP(I, a, b, c, d, x[0], 6, 0xf4292244);
    MD5_STEP(I, d, a, b, c, x[7], 10, 0x432aff97);
    MD5_STEP(I, c, d, a, b, x[14], 15, 0xab9423a7);
    MD5_STEP(I, b, c, d, a, x[5], 21, 0xfc93a039);
    MD5_STEP(I, a, b, c, d, x[12], 6, 0x655b59c3);
    MD5_STEP(I, d, a, b, c, x[3], 10, 0x8f0ccc92);
    MD5_STEP(I, c, d, a, b, x[10], 15, 0xffeff47d);
    MD5_STEP(I, b, c, d, a, x[1], 21, 0x85845dd1);
    MD5_STEP(I, a, b, c, d, x[8], 6, 0x6fa87e4f);
    MD5_STEP(I, d, a, b, c, x[15], 10, 0xfe2ce6e0);
    MD5_STEP(I, c, d, a, b, x[6], 15, 0xa3014314);
    MD5_STEP(I, b, c, d, a, x[13], 21, 0x4e0811a1);
    MD5_STEP(I, a, b, c, d, x[4], 6, 0xf7537e82);
    MD5_STEP(I, d, a, b, c, x[11], 10, 0xbd3af235);
    MD5_STEP(I, c, d, a, b, x[2], 15, 0x2ad7d2bb);
    MD5_STEP(I, b, c, d, a, x[9], 21, 0xeb86d391);

    h[0] += a;
    h[1] += b;
    h[2] += c;
    h[3] += d;
}

#undef MD5_STEP

void Md5Start(Md5Context* ctx) {
    ctx->h[0] = 0x67452301u;
    ctx->h[1] = 0xefcdab89u;
    ctx->h[2] = 0x98badcfeu;
    ctx->h[3] = 0x10325476u;
    ctx->countLow = 0;
    ctx->countHigh = 0;
}

void Md5Update(Md5Context* ctx, const uint8_t* data, uint32_t length) {
    if (length == 0) return;
    uint32_t buffered = (ctx->countLow >> 3) & 63;
    uint32_t low = ctx->countLow + (length << 3);
    if (low < ctx->countLow) ++ctx->countHigh;
    ctx->countLow = low;
    ctx->countHigh += length >> 29;
    if (buffered != 0) {
        uint32_t room = 64 - buffered;
        if (length < room) {
            std::memcpy(ctx->block + buffered, data, length);
            return;
        }
        std::memcpy(ctx->block + buffered, data, room);
        Md5Compress(ctx->h, ctx->block);
        data += room;
        length -= room;
    }
    for (; length >= 64; data += 64, length -= 64) Md5Compress(ctx->h, data);
    if (length != 0) std::memcpy(ctx->block, data, length);
}

void Md5Final(uint8_t* output, Md5Context* ctx) {
    uint8_t count[8];
    Store32Le(count, ctx->countLow);
    Store32Le(count + 4, ctx->countHigh);
    uint32_t buffered = (ctx->countLow >> 3) & 63;
    Md5Update(ctx, kPadding, buffered < 56 ? 56 - buffered : 120 - buffered);
    Md5Update(ctx, count, 8);
    for (int i = 0; i < 4; ++i) Store32Le(output + 4 * i, ctx->h[i]);
    WipeObject(*ctx);
}
