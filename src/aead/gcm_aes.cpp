// The forward AES of the GCM mode (FIPS 197), by the four T-tables and the
// S-box table with the byte in every place (the block core's fixed tables).
// Table lookups are indexed by key and data: not constant-time. Three entries: a plain block for H, a
// counter-block start that caches the first-round sums of the three fixed
// columns, and a counter step that redoes only the fourth column.
#include <cstring>

#include "aead/gcm.h"
#include "aead/ghash.h"
#include "block/aes.h"
#include "util/bytes.h"
#include "util/wipe.h"

namespace {
int RoundCount(const GcmKeyTables* t) { return int(t->keyBits / 32) + 6; }

// Rounds 2 to the last, from the state after round 1.
void RemainingRounds(const uint32_t* rk, int rounds, uint32_t t0, uint32_t t1, uint32_t t2, uint32_t t3,
                     uint8_t out[16]) {
    for (int r = 2; r < rounds; ++r) {
        rk += 4;
        uint32_t s0 = kTe0[t0 >> 24] ^ kTe1[(t1 >> 16) & 0xff] ^ kTe2[(t2 >> 8) & 0xff] ^ kTe3[t3 & 0xff] ^ rk[4];
        uint32_t s1 = kTe0[t1 >> 24] ^ kTe1[(t2 >> 16) & 0xff] ^ kTe2[(t3 >> 8) & 0xff] ^ kTe3[t0 & 0xff] ^ rk[5];
        uint32_t s2 = kTe0[t2 >> 24] ^ kTe1[(t3 >> 16) & 0xff] ^ kTe2[(t0 >> 8) & 0xff] ^ kTe3[t1 & 0xff] ^ rk[6];
        uint32_t s3 = kTe0[t3 >> 24] ^ kTe1[(t0 >> 16) & 0xff] ^ kTe2[(t1 >> 8) & 0xff] ^ kTe3[t2 & 0xff] ^ rk[7];
        t0 = s0;
        t1 = s1;
        t2 = s2;
        t3 = s3;
    }
    rk += 8;
    Store32Be(out, (kTe4[t0 >> 24] & 0xff000000) ^ (kTe4[(t1 >> 16) & 0xff] & 0x00ff0000) ^
                       (kTe4[(t2 >> 8) & 0xff] & 0x0000ff00) ^ (kTe4[t3 & 0xff] & 0x000000ff) ^ rk[0]);
    Store32Be(out + 4, (kTe4[t1 >> 24] & 0xff000000) ^ (kTe4[(t2 >> 16) & 0xff] & 0x00ff0000) ^
                           (kTe4[(t3 >> 8) & 0xff] & 0x0000ff00) ^ (kTe4[t0 & 0xff] & 0x000000ff) ^ rk[1]);
    Store32Be(out + 8, (kTe4[t2 >> 24] & 0xff000000) ^ (kTe4[(t3 >> 16) & 0xff] & 0x00ff0000) ^
                           (kTe4[(t0 >> 8) & 0xff] & 0x0000ff00) ^ (kTe4[t1 & 0xff] & 0x000000ff) ^ rk[2]);
    Store32Be(out + 12, (kTe4[t3 >> 24] & 0xff000000) ^ (kTe4[(t0 >> 16) & 0xff] & 0x00ff0000) ^
                            (kTe4[(t1 >> 8) & 0xff] & 0x0000ff00) ^ (kTe4[t2 & 0xff] & 0x000000ff) ^ rk[3]);
}
}  // namespace

const uint32_t kGcmReduction[256] = {
    0x00000000, 0x01c20000, 0x03840000, 0x02460000, 0x07080000, 0x06ca0000,
    0x048c0000, 0x054e0000, 0x0e100000, 0x0fd20000, 0x0d940000, 0x0c560000,
    0x09180000, 0x08da0000, 0x0a9c0000, 0x0b5e0000, 0x1c200000, 0x1de20000,
    0x1fa40000, 0x1e660000, 0x1b280000, 0x1aea0000, 0x18ac0000, 0x196e0000,
    0x12300000, 0x13f20000, 0x11b40000, 0x10760000, 0x15380000, 0x14fa0000,
    0x16bc0000, 0x177e0000, 0x38400000, 0x39820000, 0x3bc40000, 0x3a060000,
    0x3f480000, 0x3e8a0000, 0x3ccc0000, 0x3d0e0000, 0x36500000, 0x37920000,
    0x35d40000, 0x34160000, 0x31580000, 0x309a0000, 0x32dc0000, 0x331e0000,
    0x24600000, 0x25a20000, 0x27e40000, 0x26260000, 0x23680000, 0x22aa0000,
    0x20ec0000, 0x212e0000, 0x2a700000, 0x2bb20000, 0x29f40000, 0x28360000,
    0x2d780000, 0x2cba0000, 0x2efc0000, 0x2f3e0000, 0x70800000, 0x71420000,
    0x73040000, 0x72c60000, 0x77880000, 0x764a0000, 0x740c0000, 0x75ce0000,
    0x7e900000, 0x7f520000, 0x7d140000, 0x7cd60000, 0x79980000, 0x785a0000,
    0x7a1c0000, 0x7bde0000, 0x6ca00000, 0x6d620000, 0x6f240000, 0x6ee60000,
    0x6ba80000, 0x6a6a0000, 0x682c0000, 0x69ee0000, 0x62b00000, 0x63720000,
    0x61340000, 0x60f60000, 0x65b80000, 0x647a0000, 0x663c0000, 0x67fe0000,
    0x48c00000, 0x49020000, 0x4b440000, 0x4a860000, 0x4fc80000, 0x4e0a0000,
    0x4c4c0000, 0x4d8e0000, 0x46d00000, 0x47120000, 0x45540000, 0x44960000,
    0x41d80000, 0x401a0000, 0x425c0000, 0x439e0000, 0x54e00000, 0x55220000,
    0x57640000, 0x56a60000, 0x53e80000, 0x522a0000, 0x506c0000, 0x51ae0000,
    0x5af00000, 0x5b320000, 0x59740000, 0x58b60000, 0x5df80000, 0x5c3a0000,
    0x5e7c0000, 0x5fbe0000, 0xe1000000, 0xe0c20000, 0xe2840000, 0xe3460000,
    0xe6080000, 0xe7ca0000, 0xe58c0000, 0xe44e0000, 0xef100000, 0xeed20000,
    0xec940000, 0xed560000, 0xe8180000, 0xe9da0000, 0xeb9c0000, 0xea5e0000,
    0xfd200000, 0xfce20000, 0xfea40000, 0xff660000, 0xfa280000, 0xfbea0000,
    0xf9ac0000, 0xf86e0000, 0xf3300000, 0xf2f20000, 0xf0b40000, 0xf1760000,
    0xf4380000, 0xf5fa0000, 0xf7bc0000, 0xf67e0000, 0xd9400000, 0xd8820000,
    0xdac40000, 0xdb060000, 0xde480000, 0xdf8a0000, 0xddcc0000, 0xdc0e0000,
    0xd7500000, 0xd6920000, 0xd4d40000, 0xd5160000, 0xd0580000, 0xd19a0000,
    0xd3dc0000, 0xd21e0000, 0xc5600000, 0xc4a20000, 0xc6e40000, 0xc7260000,
    0xc2680000, 0xc3aa0000, 0xc1ec0000, 0xc02e0000, 0xcb700000, 0xcab20000,
    0xc8f40000, 0xc9360000, 0xcc780000, 0xcdba0000, 0xcffc0000, 0xce3e0000,
    0x91800000, 0x90420000, 0x92040000, 0x93c60000, 0x96880000, 0x974a0000,
    0x950c0000, 0x94ce0000, 0x9f900000, 0x9e520000, 0x9c140000, 0x9dd60000,
    0x98980000, 0x995a0000, 0x9b1c0000, 0x9ade0000, 0x8da00000, 0x8c620000,
    0x8e240000, 0x8fe60000, 0x8aa80000, 0x8b6a0000, 0x892c0000, 0x88ee0000,
    0x83b00000, 0x82720000, 0x80340000, 0x81f60000, 0x84b80000, 0x857a0000,
    0x873c0000, 0x86fe0000, 0xa9c00000, 0xa8020000, 0xaa440000, 0xab860000,
    0xaec80000, 0xaf0a0000, 0xad4c0000, 0xac8e0000, 0xa7d00000, 0xa6120000,
    0xa4540000, 0xa5960000, 0xa0d80000, 0xa11a0000, 0xa35c0000, 0xa29e0000,
    0xb5e00000, 0xb4220000, 0xb6640000, 0xb7a60000, 0xb2e80000, 0xb32a0000,
    0xb16c0000, 0xb0ae0000, 0xbbf00000, 0xba320000, 0xb8740000, 0xb9b60000,
    0xbcf80000, 0xbd3a0000, 0xbf7c0000, 0xbebe0000,
};

void GcmAesSetKey(GcmKeyTables* tables, const uint8_t* key, uint32_t keyBits) {
    uint32_t* w = tables->schedule;
    const int nk = int(keyBits / 32);
    const int total = 4 * (nk + 7);
    tables->keyBits = keyBits;
    for (int i = 0; i < nk; ++i) w[i] = Load32Be(key + 4 * i);
    for (int i = nk; i < total; ++i) {
        uint32_t t = w[i - 1];
        if (i % nk == 0) {
            t = (kTe4[(t >> 16) & 0xff] & 0xff000000) ^ (kTe4[(t >> 8) & 0xff] & 0x00ff0000) ^
                (kTe4[t & 0xff] & 0x0000ff00) ^ (kTe4[t >> 24] & 0x000000ff) ^ kAesRoundConstants[i / nk - 1];
        } else if (nk > 6 && i % nk == 4) {
            t = (kTe4[t >> 24] & 0xff000000) ^ (kTe4[(t >> 16) & 0xff] & 0x00ff0000) ^
                (kTe4[(t >> 8) & 0xff] & 0x0000ff00) ^ (kTe4[t & 0xff] & 0x000000ff);
        }
        w[i] = w[i - nk] ^ t;
    }
    for (int i = total; i < 60; ++i) w[i] = 0;
}

void GcmAesEncryptBlock(const GcmKeyTables* tables, const uint8_t in[16], uint8_t out[16]) {
    const uint32_t* rk = tables->schedule;
    uint32_t s0 = Load32Be(in) ^ rk[0], s1 = Load32Be(in + 4) ^ rk[1];
    uint32_t s2 = Load32Be(in + 8) ^ rk[2], s3 = Load32Be(in + 12) ^ rk[3];
    uint32_t t0 = kTe0[s0 >> 24] ^ kTe1[(s1 >> 16) & 0xff] ^ kTe2[(s2 >> 8) & 0xff] ^ kTe3[s3 & 0xff] ^ rk[4];
    uint32_t t1 = kTe0[s1 >> 24] ^ kTe1[(s2 >> 16) & 0xff] ^ kTe2[(s3 >> 8) & 0xff] ^ kTe3[s0 & 0xff] ^ rk[5];
    uint32_t t2 = kTe0[s2 >> 24] ^ kTe1[(s3 >> 16) & 0xff] ^ kTe2[(s0 >> 8) & 0xff] ^ kTe3[s1 & 0xff] ^ rk[6];
    uint32_t t3 = kTe0[s3 >> 24] ^ kTe1[(s0 >> 16) & 0xff] ^ kTe2[(s1 >> 8) & 0xff] ^ kTe3[s2 & 0xff] ^ rk[7];
    RemainingRounds(rk, RoundCount(tables), t0, t1, t2, t3, out);
}

void GcmAesCounterStart(GcmKeyTables* tables, const uint32_t fixed[3], uint32_t counter, uint8_t out[16]) {
    const uint32_t* rk = tables->schedule;
    uint32_t s0 = fixed[0] ^ rk[0], s1 = fixed[1] ^ rk[1], s2 = fixed[2] ^ rk[2];
    // Each first-round column takes one byte of the fourth word; all else is
    // fixed for the nonce and cached.
    uint32_t* c = tables->roundCache;
    c[0] = kTe0[s0 >> 24] ^ kTe1[(s1 >> 16) & 0xff] ^ kTe2[(s2 >> 8) & 0xff] ^ rk[4];
    c[1] = kTe0[s1 >> 24] ^ kTe1[(s2 >> 16) & 0xff] ^ kTe3[s0 & 0xff] ^ rk[5];
    c[2] = kTe0[s2 >> 24] ^ kTe2[(s0 >> 8) & 0xff] ^ kTe3[s1 & 0xff] ^ rk[6];
    c[3] = kTe1[(s0 >> 16) & 0xff] ^ kTe2[(s1 >> 8) & 0xff] ^ kTe3[s2 & 0xff] ^ rk[7];
    uint32_t s3 = counter ^ rk[3];
    RemainingRounds(rk, RoundCount(tables), c[0] ^ kTe3[s3 & 0xff], c[1] ^ kTe2[(s3 >> 8) & 0xff],
                    c[2] ^ kTe1[(s3 >> 16) & 0xff], c[3] ^ kTe0[s3 >> 24], out);
}

void GcmAesCounterNext(const GcmKeyTables* tables, uint32_t* counter, uint8_t out[16]) {
    const uint32_t* rk = tables->schedule;
    const uint32_t* c = tables->roundCache;
    uint32_t s3 = ++*counter ^ rk[3];
    RemainingRounds(rk, RoundCount(tables), c[0] ^ kTe3[s3 & 0xff], c[1] ^ kTe2[(s3 >> 8) & 0xff],
                    c[2] ^ kTe1[(s3 >> 16) & 0xff], c[3] ^ kTe0[s3 >> 24], out);
}
