// The sponge of FIPS 202 over Keccak-f[1600] (keccak_f1600.h). Not
// secret-dependent in timing.
#include "digest/sha3.h"

#include <cstring>

#include "digest/digest_x86.h"
#include "digest/keccak_f1600.h"
#include "util/bytes.h"
#include "util/cpu.h"
#include "util/wipe.h"

namespace {
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

void KeccakF1600Portable(uint64_t s[25]) KECCAK_F1600_BODY(s)
}  // namespace

void KeccakF1600(uint64_t s[25]) {
    if (g_cpu.bmi1) {
        KeccakF1600Bmi(s);
        return;
    }
    KeccakF1600Portable(s);
}

void KeccakF1600Reference(uint64_t s[25]) { KeccakF1600Portable(s); }

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

namespace {
void XorLanes(uint64_t* state, const uint8_t* data, size_t lanes) {
    for (size_t lane = 0; lane < lanes; ++lane) state[lane] ^= Load64Le(data + 8 * lane);
}

void AbsorbFrom(Sha3Context* ctx, const uint8_t* block) {
    XorLanes(ctx->state, block, ctx->laneCount);
    KeccakF1600(ctx->state);
}
}  // namespace

void Sha3AbsorbBlock(Sha3Context* ctx) { AbsorbFrom(ctx, ctx->block); }

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
    // Whole blocks straight from the caller's buffer.
    for (; length >= rate; data += rate, length -= rate) AbsorbFrom(ctx, data);
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

void SpongeOneShot(uint8_t* output, uint32_t outputLength, uint32_t rate, uint8_t domainByte,
                   const uint8_t* message, size_t length) {
    const uint32_t lanes = rate / 8;
    uint64_t state[25] = {};
    for (; length >= rate; message += rate, length -= rate) {
        XorLanes(state, message, lanes);
        KeccakF1600(state);
    }
    // The tail, the domain byte after it and the rate's closing bit go into
    // the state directly: no block buffer to fill, pad and wipe.
    const size_t whole = length / 8, rest = length % 8;
    XorLanes(state, message, whole);
    uint64_t last = uint64_t(domainByte) << (8 * rest);
    for (size_t i = 0; i < rest; ++i) last |= uint64_t(message[8 * whole + i]) << (8 * i);
    state[whole] ^= last;
    state[lanes - 1] ^= 0x8000000000000000ull;
    for (;;) {
        KeccakF1600(state);
        uint32_t take = outputLength < rate ? outputLength : rate;
        std::memcpy(output, state, take);  // lanes are little-endian in memory
        output += take;
        outputLength -= take;
        if (outputLength == 0) break;
    }
    SecureWipe(state, sizeof state);
    SecureWipe(&last, sizeof last);
}

uint32_t Sha3Digest(uint8_t out[64], uint32_t bits, const uint8_t* message, size_t length) {
    if (bits != 224 && bits != 256 && bits != 384 && bits != 512) return 0;
    SpongeOneShot(out, bits / 8, 200 - bits / 4, 0x06, message, length);
    return bits / 8;
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
