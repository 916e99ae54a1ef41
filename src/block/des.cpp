// DES core, Triple DES EDE and their instances of the mode engine.
//
// The rounds keep both halves rotated left by one bit. In that form the
// expansion step needs no table: the eight 6-bit S-box inputs sit in the low
// six bits of the bytes of the half (S2, S4, S6, S8) and of the half rotated
// right by four (S1, S3, S5, S7). Round keys are packed to match, and the
// merged tables give the permuted S-box output in the same rotated form.
#include "block/des.h"

#include <cstring>

#include "block/mode_engine.h"
#include "util/bytes.h"
#include "util/wipe.h"
#include "verimond.h"

namespace {

// Initial permutation as five exchanges of bit groups between the halves.
inline void InitialPermutation(uint32_t& l, uint32_t& r) {
    uint32_t t;
    t = ((l >> 4) ^ r) & 0x0f0f0f0fu; r ^= t; l ^= t << 4;
    t = ((l >> 16) ^ r) & 0x0000ffffu; r ^= t; l ^= t << 16;
    t = ((r >> 2) ^ l) & 0x33333333u; l ^= t; r ^= t << 2;
    t = ((r >> 8) ^ l) & 0x00ff00ffu; l ^= t; r ^= t << 8;
    t = ((l >> 1) ^ r) & 0x55555555u; r ^= t; l ^= t << 1;
}

// The same exchanges in reverse order.
inline void FinalPermutation(uint32_t& l, uint32_t& r) {
    uint32_t t;
    t = ((l >> 1) ^ r) & 0x55555555u; r ^= t; l ^= t << 1;
    t = ((r >> 8) ^ l) & 0x00ff00ffu; l ^= t; r ^= t << 8;
    t = ((r >> 2) ^ l) & 0x33333333u; l ^= t; r ^= t << 2;
    t = ((l >> 16) ^ r) & 0x0000ffffu; r ^= t; l ^= t << 16;
    t = ((l >> 4) ^ r) & 0x0f0f0f0fu; r ^= t; l ^= t << 4;
}

inline uint32_t RoundFunction(uint32_t half, const uint32_t* k) {
    uint32_t w = Rotr32(half, 4) ^ k[0];
    uint32_t f = kDesSp[0][(w >> 24) & 0x3f] | kDesSp[2][(w >> 16) & 0x3f] | kDesSp[4][(w >> 8) & 0x3f] |
                 kDesSp[6][w & 0x3f];
    w = half ^ k[1];
    f |= kDesSp[1][(w >> 24) & 0x3f] | kDesSp[3][(w >> 16) & 0x3f] | kDesSp[5][(w >> 8) & 0x3f] |
         kDesSp[7][w & 0x3f];
    return f;
}

inline int KeyBit(const uint8_t* key, int n) { return (key[(n - 1) >> 3] >> (7 - ((n - 1) & 7))) & 1; }

}  // namespace

void DesSetKey(uint32_t* schedule, const uint8_t* key, int encrypt) {
    uint8_t pc1[56];  // the key through PC-1, one bit per byte
    uint8_t cd[56];   // both halves after the round's cumulative rotation
    for (int i = 0; i < 56; ++i) pc1[i] = uint8_t(KeyBit(key, kDesPc1[i]));
    int shift = 0;
    for (int round = 0; round < 16; ++round) {
        shift += kDesShifts[round];
        for (int i = 0; i < 28; ++i) {
            cd[i] = pc1[(i + shift) % 28];
            cd[28 + i] = pc1[28 + (i + shift) % 28];
        }
        // PC-2 into two words of 24 bits: S-box inputs 1-4 and 5-8.
        uint32_t w0 = 0, w1 = 0;
        for (int i = 0; i < 24; ++i) {
            w0 = (w0 << 1) | cd[kDesPc2[i] - 1];
            w1 = (w1 << 1) | cd[kDesPc2[24 + i] - 1];
        }
        // Repack the 6-bit groups, one per byte, in the order RoundFunction
        // reads them: groups 1, 3, 5, 7 in the first word, 2, 4, 6, 8 in the
        // second.
        const uint32_t a = ((w0 >> 18) & 0x3f) << 24 | ((w0 >> 6) & 0x3f) << 16 | ((w1 >> 18) & 0x3f) << 8 |
                           ((w1 >> 6) & 0x3f);
        const uint32_t b = ((w0 >> 12) & 0x3f) << 24 | (w0 & 0x3f) << 16 | ((w1 >> 12) & 0x3f) << 8 | (w1 & 0x3f);
        const int slot = encrypt ? round : 15 - round;
        schedule[2 * slot] = a;
        schedule[2 * slot + 1] = b;
    }
    SecureWipe(pc1, sizeof pc1);
    SecureWipe(cd, sizeof cd);
}

void DesBlock(uint32_t* block, const uint32_t* k) {
    uint32_t l = block[0], r = block[1];
    InitialPermutation(l, r);
    l = Rotl32(l, 1);
    r = Rotl32(r, 1);
    for (int i = 0; i < 8; ++i, k += 4) {
        l ^= RoundFunction(r, k);
        r ^= RoundFunction(l, k + 2);
    }
    // The output block is R16 L16.
    l = Rotr32(l, 1);
    r = Rotr32(r, 1);
    FinalPermutation(r, l);
    block[0] = r;
    block[1] = l;
}

void DesLoadIv(uint32_t* reg, const uint8_t* bytes) {
    reg[0] = Load32Be(bytes);
    reg[1] = Load32Be(bytes + 4);
}

int DesCheckWeak(const uint8_t* key, size_t keyLength) {
    if (keyLength != 8 && keyLength != 16 && keyLength != 24) return BAD_KEY_LEN_ERROR;
    if (key == nullptr) return NULL_ERROR;
    int result = 0;
    uint8_t part[8];
    for (size_t off = 0; off < keyLength && result == 0; off += 8) {
        for (int i = 0; i < 8; ++i) {
            const uint8_t b = key[off + i];
            const int ones = __builtin_popcount(b >> 1);
            part[i] = uint8_t((b & 0xfe) | ((ones & 1) ? 0 : 1));
        }
        for (const auto& group : kDesWeakKeys) {
            if (group[0][0] != part[0]) continue;
            for (const auto& weak : group)
                if (std::memcmp(weak, part, 8) == 0) result = WEAK_KEY_ERROR;
        }
    }
    SecureWipe(part, sizeof part);
    return result;
}

namespace {

inline void LoadWords(uint32_t* w, const uint8_t* in) {
    w[0] = Load32Be(in);
    w[1] = Load32Be(in + 4);
}
inline void StoreWords(uint8_t* out, const uint32_t* w) {
    Store32Be(out, w[0]);
    Store32Be(out + 4, w[1]);
}

// The schedule holds the direction, so one routine serves both ways.
struct DesCipher {
    using Context = DesContext;
    static constexpr size_t kBlock = 8;
    static void Encrypt(const DesContext& c, const uint8_t* in, uint8_t* out) {
        uint32_t w[2];
        LoadWords(w, in);
        DesBlock(w, c.schedule);
        StoreWords(out, w);
    }
    static void Decrypt(const DesContext& c, const uint8_t* in, uint8_t* out) { Encrypt(c, in, out); }
    static void LoadRegister(const DesContext& c, uint8_t* reg) { StoreWords(reg, c.iv); }
    static void StoreRegister(DesContext& c, const uint8_t* reg) { LoadWords(c.iv, reg); }
};

// Three passes, each with its own initial and final permutation; the set-up
// orders the schedules by mode and direction.
struct TdeaCipher {
    using Context = TdeaContext;
    static constexpr size_t kBlock = 8;
    static void Encrypt(const TdeaContext& c, const uint8_t* in, uint8_t* out) {
        uint32_t w[2];
        LoadWords(w, in);
        DesBlock(w, c.schedule[0]);
        DesBlock(w, c.schedule[1]);
        DesBlock(w, c.schedule[2]);
        StoreWords(out, w);
    }
    static void Decrypt(const TdeaContext& c, const uint8_t* in, uint8_t* out) { Encrypt(c, in, out); }
    static void LoadRegister(const TdeaContext& c, uint8_t* reg) { StoreWords(reg, c.iv); }
    static void StoreRegister(TdeaContext& c, const uint8_t* reg) { LoadWords(c.iv, reg); }
};

// Steps shared by both set-ups: IV before mode, then the record's fields.
template <class Context>
int SetupCommon(Context* ctx, int32_t mode, const uint8_t* key, int32_t direction, const uint8_t* iv) {
    if (mode != 0 && iv == nullptr) return BAD_IV_ERROR;
    if (uint32_t(mode) > mode_engine::kCtr) return BAD_MODE_ERROR;
    ctx->direction = uint32_t(direction);
    ctx->mode = uint32_t(mode);
    if (key == nullptr) return BAD_KEY_ERROR;
    return 0;
}

template <class Context>
void StoreIv(Context* ctx, int32_t mode, const uint8_t* iv) {
    if (mode == 0) return;
    DesLoadIv(ctx->iv, iv);
    DesLoadIv(ctx->initialIv, iv);
}

}  // namespace

int DesSetupMode(DesContext* ctx, int32_t mode, const uint8_t* key, int32_t direction, const uint8_t* iv) {
    const int status = SetupCommon(ctx, mode, key, direction, iv);
    if (status != 0) return status;
    // CFB, OFB and CTR run the forward transform in both directions.
    DesSetKey(ctx->schedule, key, direction != 0 || mode > int32_t(mode_engine::kCbc));
    StoreIv(ctx, mode, iv);
    return 0;
}

int TdeaSetupMode(TdeaContext* ctx, int32_t mode, const uint8_t* key, int32_t direction, const uint8_t* iv) {
    const int status = SetupCommon(ctx, mode, key, direction, iv);
    if (status != 0) return status;
    if (direction == 0 && mode <= int32_t(mode_engine::kCbc)) {
        // Decrypting: K3 decrypt, K2 encrypt, K1 decrypt.
        DesSetKey(ctx->schedule[0], key + 16, 0);
        DesSetKey(ctx->schedule[1], key + 8, 1);
        DesSetKey(ctx->schedule[2], key, 0);
    } else {
        DesSetKey(ctx->schedule[0], key, 1);
        DesSetKey(ctx->schedule[1], key + 8, 0);
        DesSetKey(ctx->schedule[2], key + 16, 1);
    }
    StoreIv(ctx, mode, iv);
    return 0;
}

int DesProcess(DesContext* ctx, uint8_t* output, const uint8_t* input, size_t length) {
    return mode_engine::Process<DesCipher>(ctx, output, input, length);
}

int TdeaProcess(TdeaContext* ctx, uint8_t* output, const uint8_t* input, size_t length) {
    return mode_engine::Process<TdeaCipher>(ctx, output, input, length);
}

void DesWipeContext(DesContext* ctx) {
    if (ctx != nullptr) WipeObject(*ctx);
}

void TdeaWipeContext(TdeaContext* ctx) {
    if (ctx != nullptr) WipeObject(*ctx);
}
