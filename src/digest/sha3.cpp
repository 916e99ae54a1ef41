// Keccak-f[1600] and the sponge of FIPS 202. The permutation keeps the state
// in 50 locals and runs two rounds per loop turn, from A into E and back,
// so no lane is copied between rounds. Not secret-dependent in timing.
#include "digest/sha3.h"

#include <cstring>

#include "util/bytes.h"
#include "util/wipe.h"

namespace {
constexpr uint64_t kRoundConstants[24] = {
    0x0000000000000001ull, 0x0000000000008082ull, 0x800000000000808aull, 0x8000000080008000ull,
    0x000000000000808bull, 0x0000000080000001ull, 0x8000000080008081ull, 0x8000000000008009ull,
    0x000000000000008aull, 0x0000000000000088ull, 0x0000000080008009ull, 0x000000008000000aull,
    0x000000008000808bull, 0x800000000000008bull, 0x8000000000008089ull, 0x8000000000008003ull,
    0x8000000000008002ull, 0x8000000000000080ull, 0x000000000000800aull, 0x800000008000000aull,
    0x8000000080008081ull, 0x8000000000008080ull, 0x0000000080000001ull, 0x8000000080008008ull,
};

int StartWith(Sha3Context* ctx, uint32_t rate, uint32_t digestLength) {
    std::memset(ctx, 0, sizeof *ctx);
    if (rate == 0) return -1;
    ctx->rate = rate;
    ctx->laneCount = rate / 8;
    ctx->digestLength = digestLength;
    ctx->marker = kSha3Marker;
    return 0;
}

// Domain byte at the buffered position, zeros to the end of the rate, 0x80
// OR-ed into the rate's last byte (the same byte when one is left), absorb.
void PadAndAbsorb(Sha3Context* ctx, uint8_t domainByte) {
    uint32_t at = ctx->buffered;
    ctx->block[at] = domainByte;
    std::memset(ctx->block + at + 1, 0, ctx->rate - at - 1);
    ctx->block[ctx->rate - 1] |= 0x80;
    Sha3AbsorbBlock(ctx);
    ctx->buffered = 0;
}
}  // namespace

// Theta, rho and pi, chi and iota of one round, from the lanes of A into
// those of E. Row names b g k m s are y = 0..4, column names a e i o u x = 0..4.
#define KECCAK_ROUND(A, E, rc)                                                        \
    do {                                                                              \
        uint64_t ca = A##ba ^ A##ga ^ A##ka ^ A##ma ^ A##sa;                           \
        uint64_t ce = A##be ^ A##ge ^ A##ke ^ A##me ^ A##se;                           \
        uint64_t ci = A##bi ^ A##gi ^ A##ki ^ A##mi ^ A##si;                           \
        uint64_t co = A##bo ^ A##go ^ A##ko ^ A##mo ^ A##so;                           \
        uint64_t cu = A##bu ^ A##gu ^ A##ku ^ A##mu ^ A##su;                           \
        uint64_t da = cu ^ Rotl64(ce, 1), de = ca ^ Rotl64(ci, 1), di = ce ^ Rotl64(co, 1); \
        uint64_t dO = ci ^ Rotl64(cu, 1), du = co ^ Rotl64(ca, 1);                     \
        uint64_t b0 = A##ba ^ da, b1 = Rotl64(A##ge ^ de, 44), b2 = Rotl64(A##ki ^ di, 43); \
        uint64_t b3 = Rotl64(A##mo ^ dO, 21), b4 = Rotl64(A##su ^ du, 14);              \
        E##ba = b0 ^ (~b1 & b2) ^ (rc);                                               \
        E##be = b1 ^ (~b2 & b3);                                                      \
        E##bi = b2 ^ (~b3 & b4);                                                      \
        E##bo = b3 ^ (~b4 & b0);                                                      \
        E##bu = b4 ^ (~b0 & b1);                                                      \
        b0 = Rotl64(A##bo ^ dO, 28), b1 = Rotl64(A##gu ^ du, 20), b2 = Rotl64(A##ka ^ da, 3); \
        b3 = Rotl64(A##me ^ de, 45), b4 = Rotl64(A##si ^ di, 61);                      \
        E##ga = b0 ^ (~b1 & b2);                                                      \
        E##ge = b1 ^ (~b2 & b3);                                                      \
        E##gi = b2 ^ (~b3 & b4);                                                      \
        E##go = b3 ^ (~b4 & b0);                                                      \
        E##gu = b4 ^ (~b0 & b1);                                                      \
        b0 = Rotl64(A##be ^ de, 1), b1 = Rotl64(A##gi ^ di, 6), b2 = Rotl64(A##ko ^ dO, 25); \
        b3 = Rotl64(A##mu ^ du, 8), b4 = Rotl64(A##sa ^ da, 18);                       \
        E##ka = b0 ^ (~b1 & b2);                                                      \
        E##ke = b1 ^ (~b2 & b3);                                                      \
        E##ki = b2 ^ (~b3 & b4);                                                      \
        E##ko = b3 ^ (~b4 & b0);                                                      \
        E##ku = b4 ^ (~b0 & b1);                                                      \
        b0 = Rotl64(A##bu ^ du, 27), b1 = Rotl64(A##ga ^ da, 36), b2 = Rotl64(A##ke ^ de, 10); \
        b3 = Rotl64(A##mi ^ di, 15), b4 = Rotl64(A##so ^ dO, 56);                      \
        E##ma = b0 ^ (~b1 & b2);                                                      \
        E##me = b1 ^ (~b2 & b3);                                                      \
        E##mi = b2 ^ (~b3 & b4);                                                      \
        E##mo = b3 ^ (~b4 & b0);                                                      \
        E##mu = b4 ^ (~b0 & b1);                                                      \
        b0 = Rotl64(A##bi ^ di, 62), b1 = Rotl64(A##go ^ dO, 55), b2 = Rotl64(A##ku ^ du, 39); \
        b3 = Rotl64(A##ma ^ da, 41), b4 = Rotl64(A##se ^ de, 2);                       \
        E##sa = b0 ^ (~b1 & b2);                                                      \
        E##se = b1 ^ (~b2 & b3);                                                      \
        E##si = b2 ^ (~b3 & b4);                                                      \
        E##so = b3 ^ (~b4 & b0);                                                      \
        E##su = b4 ^ (~b0 & b1);                                                      \
    } while (0)

void KeccakF1600(uint64_t s[25]) {
    uint64_t Aba = s[0], Abe = s[1], Abi = s[2], Abo = s[3], Abu = s[4];
    uint64_t Aga = s[5], Age = s[6], Agi = s[7], Ago = s[8], Agu = s[9];
    uint64_t Aka = s[10], Ake = s[11], Aki = s[12], Ako = s[13], Aku = s[14];
    uint64_t Ama = s[15], Ame = s[16], Ami = s[17], Amo = s[18], Amu = s[19];
    uint64_t Asa = s[20], Ase = s[21], Asi = s[22], Aso = s[23], Asu = s[24];
    uint64_t Eba, Ebe, Ebi, Ebo, Ebu, Ega, Ege, Egi, Ego, Egu, Eka, Eke, Eki, Eko, Eku;
    uint64_t Ema, Eme, Emi, Emo, Emu, Esa, Ese, Esi, Eso, Esu;
    for (int round = 0; round < 24; round += 2) {
        KECCAK_ROUND(A, E, kRoundConstants[round]);
        KECCAK_ROUND(E, A, kRoundConstants[round + 1]);
    }
    s[0] = Aba, s[1] = Abe, s[2] = Abi, s[3] = Abo, s[4] = Abu;
    s[5] = Aga, s[6] = Age, s[7] = Agi, s[8] = Ago, s[9] = Agu;
    s[10] = Aka, s[11] = Ake, s[12] = Aki, s[13] = Ako, s[14] = Aku;
    s[15] = Ama, s[16] = Ame, s[17] = Ami, s[18] = Amo, s[19] = Amu;
    s[20] = Asa, s[21] = Ase, s[22] = Asi, s[23] = Aso, s[24] = Asu;
}

#undef KECCAK_ROUND

int Sha3Start(Sha3Context* ctx, uint32_t bits) {
    switch (bits) {
        case 224: return StartWith(ctx, 144, 28);
        case 256: return StartWith(ctx, 136, 32);
        case 384: return StartWith(ctx, 104, 48);
        case 512: return StartWith(ctx, 72, 64);
        default: return StartWith(ctx, 0, 0);
    }
}

int ShakeStart(Sha3Context* ctx, uint32_t bits) {
    switch (bits) {
        case 128: return StartWith(ctx, 168, 0);
        case 256: return StartWith(ctx, 136, 0);
        default: return StartWith(ctx, 0, 0);
    }
}

void Sha3AbsorbBlock(Sha3Context* ctx) {
    for (uint32_t lane = ctx->laneCount; lane-- > 0;) ctx->state[lane] ^= Load64Le(ctx->block + 8 * lane);
    KeccakF1600(ctx->state);
}

uint32_t Sha3Absorb(Sha3Context* ctx, const uint8_t* data, uint32_t length) {
    uint32_t rate = ctx->rate;
    if (rate == 0) return 0;  // never started: nothing can be absorbed
    if (ctx->buffered != 0) {
        uint32_t room = rate - ctx->buffered;
        if (length < room) {
            if (length != 0) std::memcpy(ctx->block + ctx->buffered, data, length);
            ctx->buffered += length;
            return ctx->buffered;
        }
        std::memcpy(ctx->block + ctx->buffered, data, room);
        Sha3AbsorbBlock(ctx);
        data += room;
        length -= room;
    }
    for (; length >= rate; data += rate, length -= rate) {
        std::memcpy(ctx->block, data, rate);
        Sha3AbsorbBlock(ctx);
    }
    if (length != 0) std::memcpy(ctx->block, data, length);
    ctx->buffered = length;
    return length;
}

void Sha3Squeeze(uint8_t* output, uint32_t outputLength, Sha3Context* ctx) {
    for (;;) {
        uint32_t take = outputLength < ctx->rate ? outputLength : ctx->rate;
        std::memcpy(output, ctx->state, take);  // lanes are little-endian in memory
        output += take;
        outputLength -= take;
        if (outputLength == 0) return;
        KeccakF1600(ctx->state);
    }
}

uint32_t Sha3Finish(uint8_t* output, uint32_t capacity, Sha3Context* ctx) {
    uint32_t count = ctx->digestLength < capacity ? ctx->digestLength : capacity;
    if (ctx->rate != 0) {
        PadAndAbsorb(ctx, 0x06);
        if (count != 0) Sha3Squeeze(output, count, ctx);
    }
    WipeObject(*ctx);
    return count;
}

uint32_t SpongeFinish(uint8_t* output, uint32_t outputLength, Sha3Context* ctx, uint8_t domainByte) {
    if (ctx->rate == 0) {
        WipeObject(*ctx);
        return 0;
    }
    PadAndAbsorb(ctx, domainByte);
    if (outputLength != 0) Sha3Squeeze(output, outputLength, ctx);
    WipeObject(*ctx);
    return outputLength;
}
