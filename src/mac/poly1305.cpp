#include "mac/poly1305.h"

#include <cstring>

#include "convert/codec.h"
#include "frame/memory.h"
#include "mac/poly1305_x86.h"
#include "util/bytes.h"
#include "util/cpu.h"
#include "util/ct.h"
#include "util/wipe.h"
#include "verimond.h"

namespace {
constexpr uint32_t kMask26 = 0x3ffffff;

// Below this many bytes the eight-lane kernel costs more to start (its
// powers of r) than it saves.
constexpr size_t kIfmaMinimum = 512;

// The wide paths: 64-bit limbs, and eight lanes for long runs.
bool WideBlocks(Poly1305Context* ctx, const uint8_t* m, size_t length) {
    if (!g_cpu.bmi2) return false;
    Poly1305Wide wide;
    Poly1305WideLoad(&wide, ctx);
    if (g_cpu.avx512ifma && length >= kIfmaMinimum && ctx->final == 0) {
        size_t groups = length / 128;
        Poly1305BlocksIfma(&wide, m, groups);
        m += 128 * groups;
        length -= 128 * groups;
    }
    Poly1305BlocksScalar64(&wide, m, length / 16, ctx->final ? 0 : 1);
    Poly1305WideStore(ctx, &wide);
    SecureWipe(&wide, sizeof wide);
    return true;
}

// h = (h + m) * r mod 2^130 - 5 for each 16-byte block; on return every limb
// of h is below 2^26 but h1, which may carry a few bits more.
void Blocks(Poly1305Context* ctx, const uint8_t* m, size_t length) {
    if (WideBlocks(ctx, m, length)) return;
    const uint32_t hibit = ctx->final ? 0 : (1u << 24);
    const uint32_t r0 = ctx->r[0], r1 = ctx->r[1], r2 = ctx->r[2], r3 = ctx->r[3], r4 = ctx->r[4];
    const uint32_t s1 = r1 * 5, s2 = r2 * 5, s3 = r3 * 5, s4 = r4 * 5;
    uint32_t h0 = ctx->h[0], h1 = ctx->h[1], h2 = ctx->h[2], h3 = ctx->h[3], h4 = ctx->h[4];
    while (length >= 16) {
        h0 += Load32Le(m) & kMask26;
        h1 += (Load32Le(m + 3) >> 2) & kMask26;
        h2 += (Load32Le(m + 6) >> 4) & kMask26;
        h3 += (Load32Le(m + 9) >> 6) & kMask26;
        h4 += (Load32Le(m + 12) >> 8) | hibit;
        uint64_t d0 = uint64_t(h0) * r0 + uint64_t(h1) * s4 + uint64_t(h2) * s3 + uint64_t(h3) * s2 + uint64_t(h4) * s1;
        uint64_t d1 = uint64_t(h0) * r1 + uint64_t(h1) * r0 + uint64_t(h2) * s4 + uint64_t(h3) * s3 + uint64_t(h4) * s2;
        uint64_t d2 = uint64_t(h0) * r2 + uint64_t(h1) * r1 + uint64_t(h2) * r0 + uint64_t(h3) * s4 + uint64_t(h4) * s3;
        uint64_t d3 = uint64_t(h0) * r3 + uint64_t(h1) * r2 + uint64_t(h2) * r1 + uint64_t(h3) * r0 + uint64_t(h4) * s4;
        uint64_t d4 = uint64_t(h0) * r4 + uint64_t(h1) * r3 + uint64_t(h2) * r2 + uint64_t(h3) * r1 + uint64_t(h4) * r0;
        uint32_t c = uint32_t(d0 >> 26);
        h0 = uint32_t(d0) & kMask26;
        d1 += c;
        c = uint32_t(d1 >> 26);
        h1 = uint32_t(d1) & kMask26;
        d2 += c;
        c = uint32_t(d2 >> 26);
        h2 = uint32_t(d2) & kMask26;
        d3 += c;
        c = uint32_t(d3 >> 26);
        h3 = uint32_t(d3) & kMask26;
        d4 += c;
        c = uint32_t(d4 >> 26);
        h4 = uint32_t(d4) & kMask26;
        h0 += c * 5;  // 2^130 = 5 modulo the prime
        c = h0 >> 26;
        h0 &= kMask26;
        h1 += c;
        m += 16;
        length -= 16;
    }
    ctx->h[0] = h0;
    ctx->h[1] = h1;
    ctx->h[2] = h2;
    ctx->h[3] = h3;
    ctx->h[4] = h4;
}

int32_t HexOut(char* output, int32_t outputLength, const uint8_t tag[16]) {
    if (output == nullptr || outputLength < 1) return 32;
    size_t count = outputLength < 32 ? size_t(outputLength) / 2 : 16;
    HexEncodeBoundedLower(output, 2 * count + 1, tag, count);
    return int32_t(2 * count);
}

// Strict decoding into a wiped heap block; -1 for text that is not an even
// run of hex digits.
int64_t DecodeStrict(const char* text, uint8_t** bytes, size_t* capacity) {
    *capacity = std::strlen(text) / 2;
    *bytes = static_cast<uint8_t*>(SafeAlloc(*capacity));
    return HexDecodeStrict(*bytes, *capacity, text);
}
}  // namespace

void Poly1305Init(Poly1305Context* ctx, const uint8_t key[32]) {
    // Clamping folded into the limb masks (RFC 8439 2.5.1).
    ctx->r[0] = Load32Le(key) & 0x3ffffff;
    ctx->r[1] = (Load32Le(key + 3) >> 2) & 0x3ffff03;
    ctx->r[2] = (Load32Le(key + 6) >> 4) & 0x3ffc0ff;
    ctx->r[3] = (Load32Le(key + 9) >> 6) & 0x3f03fff;
    ctx->r[4] = (Load32Le(key + 12) >> 8) & 0x00fffff;
    for (int i = 0; i < 5; ++i) ctx->h[i] = 0;
    for (int i = 0; i < 4; ++i) ctx->pad[i] = Load32Le(key + 16 + 4 * i);
    ctx->leftover = 0;
    ctx->final = 0;
}

void Poly1305Update(Poly1305Context* ctx, const uint8_t* data, size_t length) {
    if (ctx->leftover != 0) {
        size_t want = 16 - ctx->leftover;
        if (want > length) want = length;
        std::memcpy(ctx->buffer + ctx->leftover, data, want);
        data += want;
        length -= want;
        ctx->leftover += uint32_t(want);
        if (ctx->leftover < 16) return;
        Blocks(ctx, ctx->buffer, 16);
        ctx->leftover = 0;
    }
    size_t whole = length & ~size_t(15);
    if (whole != 0) {
        Blocks(ctx, data, whole);
        data += whole;
        length -= whole;
    }
    if (length != 0) {
        std::memcpy(ctx->buffer, data, length);
        ctx->leftover = uint32_t(length);
    }
}

void Poly1305Final(Poly1305Context* ctx, uint8_t tag[16]) {
    if (ctx->leftover != 0) {
        size_t i = ctx->leftover;
        ctx->buffer[i++] = 1;
        for (; i < 16; ++i) ctx->buffer[i] = 0;
        ctx->final = 1;
        Blocks(ctx, ctx->buffer, 16);
    }
    uint32_t h0 = ctx->h[0], h1 = ctx->h[1], h2 = ctx->h[2], h3 = ctx->h[3], h4 = ctx->h[4];
    uint32_t c = h1 >> 26;
    h1 &= kMask26;
    h2 += c;
    c = h2 >> 26;
    h2 &= kMask26;
    h3 += c;
    c = h3 >> 26;
    h3 &= kMask26;
    h4 += c;
    c = h4 >> 26;
    h4 &= kMask26;
    h0 += c * 5;
    c = h0 >> 26;
    h0 &= kMask26;
    h1 += c;

    // g = h + 5 - 2^130; h < 2^130 - 5 exactly when g is negative, read from
    // its top bit, and the choice is made by masks alone.
    uint32_t g0 = h0 + 5;
    c = g0 >> 26;
    g0 &= kMask26;
    uint32_t g1 = h1 + c;
    c = g1 >> 26;
    g1 &= kMask26;
    uint32_t g2 = h2 + c;
    c = g2 >> 26;
    g2 &= kMask26;
    uint32_t g3 = h3 + c;
    c = g3 >> 26;
    g3 &= kMask26;
    uint32_t g4 = h4 + c - (1u << 26);
    uint32_t useG = CtMaskZero(g4 >> 31);
    h0 = CtSelect(useG, g0, h0);
    h1 = CtSelect(useG, g1, h1);
    h2 = CtSelect(useG, g2, h2);
    h3 = CtSelect(useG, g3, h3);
    h4 = CtSelect(useG, g4, h4);

    uint32_t w0 = h0 | (h1 << 26);
    uint32_t w1 = (h1 >> 6) | (h2 << 20);
    uint32_t w2 = (h2 >> 12) | (h3 << 14);
    uint32_t w3 = (h3 >> 18) | (h4 << 8);
    uint64_t f = uint64_t(w0) + ctx->pad[0];
    Store32Le(tag, uint32_t(f));
    f = uint64_t(w1) + ctx->pad[1] + (f >> 32);
    Store32Le(tag + 4, uint32_t(f));
    f = uint64_t(w2) + ctx->pad[2] + (f >> 32);
    Store32Le(tag + 8, uint32_t(f));
    f = uint64_t(w3) + ctx->pad[3] + (f >> 32);
    Store32Le(tag + 12, uint32_t(f));

    SecureWipe(ctx->r, sizeof ctx->r);
    SecureWipe(ctx->h, sizeof ctx->h);
    SecureWipe(ctx->pad, sizeof ctx->pad);
}

int32_t Poly1305Bytes(uint8_t* output, int32_t outputLength, const uint8_t* message, size_t messageLength,
                      const uint8_t key[32]) {
    Poly1305Context ctx;
    uint8_t tag[16];
    Poly1305Init(&ctx, key);
    Poly1305Update(&ctx, message, messageLength);
    Poly1305Final(&ctx, tag);
    int32_t result = 16;
    if (output != nullptr && outputLength >= 1) {
        result = outputLength < 16 ? outputLength : 16;
        std::memcpy(output, tag, size_t(result));
    }
    SecureWipe(tag, sizeof tag);
    WipeObject(ctx);
    return result;
}

int32_t Poly1305HexFromBytes(char* output, int32_t outputLength, const uint8_t* message, size_t messageLength,
                             const uint8_t key[32]) {
    uint8_t tag[16];
    Poly1305Bytes(tag, 16, message, messageLength, key);
    int32_t result = HexOut(output, outputLength, tag);
    SecureWipe(tag, sizeof tag);
    return result;
}

int32_t Poly1305HexFromHex(char* output, int32_t outputLength, const char* messageHex, const char* keyHex) {
    if (messageHex == nullptr || keyHex == nullptr) return -BAD_PARAM_ERROR;
    if (keyHex[0] == '\0') return -BAD_KEY_LEN_ERROR;
    uint8_t* key;
    size_t keyCapacity;
    int64_t keyLength = DecodeStrict(keyHex, &key, &keyCapacity);
    int32_t result;
    if (keyLength < 0) {
        result = -BAD_FORMAT_ERROR;
    } else if (keyLength != 32) {
        result = -BAD_KEY_LEN_ERROR;
    } else {
        uint8_t* message;
        size_t messageCapacity;
        int64_t messageLength = DecodeStrict(messageHex, &message, &messageCapacity);
        if (messageLength < 0) {
            result = -BAD_FORMAT_ERROR;
        } else {
            result = Poly1305HexFromBytes(output, outputLength, message, size_t(messageLength), key);
        }
        SafeWipeFree(message, messageCapacity);
    }
    SafeWipeFree(key, keyCapacity);
    return result;
}
