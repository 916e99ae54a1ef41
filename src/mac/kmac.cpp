// KMAC (SP 800-185 section 4): cSHAKE with the function name "KMAC", the
// key absorbed as bytepad(encode_string(K), rate), the message, then
// right_encode of the output length in bits, domain byte 0x04.
#include "mac/kmac.h"

#include <cstring>

#include "digest/sha3.h"
#include "util/wipe.h"
#include "verimond.h"

namespace {
constexpr uint8_t kZeros[200] = {};

// Sha3Absorb takes 32-bit counts; longer inputs go in slices.
void Absorb(Sha3Context* ctx, const uint8_t* data, size_t length) {
    while (length > 0) {
        uint32_t part = length > 0x40000000u ? 0x40000000u : uint32_t(length);
        Sha3Absorb(ctx, data, part);
        data += part;
        length -= part;
    }
}

// left_encode(x) (leftmost byte the count) or right_encode(x) (count last):
// the big-endian value in the fewest bytes, at least one. Returns the bytes.
size_t EncodeLength(uint8_t out[5], uint32_t x, bool left) {
    uint8_t digits[4];
    size_t n = 0;
    do {
        digits[n++] = uint8_t(x);
        x >>= 8;
    } while (x != 0);
    size_t at = 0;
    if (left) out[at++] = uint8_t(n);
    while (n > 0) out[at++] = digits[--n];
    if (!left) {
        out[at] = uint8_t(at);
        ++at;
    }
    return at;
}

// Zeroes to the next multiple of the rate; total is what this bytepad has
// absorbed so far.
void PadToRate(Sha3Context* ctx, uint64_t total) {
    uint32_t rest = uint32_t(total % ctx->rate);
    if (rest != 0) Sha3Absorb(ctx, kZeros, ctx->rate - rest);
}

// bytepad(left_encode(rate) || encodings..., rate) starts with the rate.
uint64_t AbsorbRateHeader(Sha3Context* ctx) {
    uint8_t header[5];
    size_t n = EncodeLength(header, ctx->rate, true);
    Sha3Absorb(ctx, header, uint32_t(n));
    return n;
}

// encode_string(s): left_encode of the bit length (wrapping in 32 bits), s.
uint64_t AbsorbEncodedString(Sha3Context* ctx, const uint8_t* s, size_t length) {
    uint8_t prefix[5];
    size_t n = EncodeLength(prefix, uint32_t(length * 8), true);
    Sha3Absorb(ctx, prefix, uint32_t(n));
    Absorb(ctx, s, length);
    return n + length;
}
}  // namespace

int32_t Kmac(uint8_t* output, uint32_t outputLength, const uint8_t* message, size_t messageLength,
             const uint8_t* key, size_t keyLength, const char* customString, uint32_t strength) {
    Sha3Context ctx;
    if ((strength != 128 && strength != 256) || ShakeStart(&ctx, strength) != 0) return -1;
    static const uint8_t kName[4] = {'K', 'M', 'A', 'C'};
    const char* custom = customString != nullptr ? customString : "";

    uint64_t total = AbsorbRateHeader(&ctx);
    total += AbsorbEncodedString(&ctx, kName, sizeof kName);
    total += AbsorbEncodedString(&ctx, reinterpret_cast<const uint8_t*>(custom), std::strlen(custom));
    PadToRate(&ctx, total);

    total = AbsorbRateHeader(&ctx);
    total += AbsorbEncodedString(&ctx, key, keyLength);
    PadToRate(&ctx, total);

    Absorb(&ctx, message, messageLength);
    uint8_t trailer[5];
    size_t n = EncodeLength(trailer, outputLength * 8u, false);
    Sha3Absorb(&ctx, trailer, uint32_t(n));
    SpongeFinish(output, outputLength, &ctx, 0x04);
    return int32_t(outputLength);
}

int32_t Shake(uint8_t* output, uint32_t outputLength, const uint8_t* message, size_t messageLength,
              uint32_t bits) {
    if (bits != 128 && bits != 256) return -1;
    if (outputLength != 0) SpongeOneShot(output, outputLength, bits == 128 ? 168 : 136, 0x1F, message, messageLength);
    return int32_t(outputLength);
}

int32_t KmacCodeLength(int32_t low12) {
    switch (low12) {
        case OPT_KMAC_128: return 32;
        case OPT_KMAC_256: return 64;
        default: return 0;
    }
}
